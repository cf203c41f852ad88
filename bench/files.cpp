#include "files.h"

#include <fstream>
#include <iterator>

#include "library_calls.h"

namespace tabrin::bench {

FilesFolder::FilesFolder(const std::string& name) : outer_(std::filesystem::current_path()), folder_(outer_ / name) {
    std::filesystem::create_directories(folder_);
    std::filesystem::current_path(folder_);
}

FilesFolder::~FilesFolder() {
    std::error_code ignored;
    std::filesystem::current_path(outer_, ignored);
    std::filesystem::remove_all(folder_, ignored);
}

void Save(const std::string& path, std::string_view content) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(content.data(), static_cast<std::streamsize>(content.size()));
    file.close();
    if (!file) {
        GiveUp("cannot write " + path);
    }
}

std::string Load(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::string content{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    if (!file || content.empty()) {
        GiveUp("cannot read " + path);
    }
    return content;
}

std::string WithCrLf(std::string_view text) {
    std::string result;
    result.reserve(text.size() + text.size() / 16);
    for (const char c : text) {
        if (c == '\n') {
            result += '\r';
        }
        result += c;
    }
    return result;
}

}  // namespace tabrin::bench
