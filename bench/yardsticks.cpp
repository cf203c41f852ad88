#include "yardsticks.h"

#include <utf8.h>

#include <array>
#include <cstdio>
#include <fstream>

#include "library_calls.h"

namespace tabrin::bench {

size_t CheckLines(const std::string& path) {
    // What a stream has on Linux. Other systems give it less, and the yardstick would be made of their system calls.
    std::array<char, 8192> buffer;
    std::ifstream file;
    file.rdbuf()->pubsetbuf(buffer.data(), buffer.size());
    file.open(path, std::ios::binary);
    size_t invalid = 0;
    std::string line;
    while (std::getline(file, line)) {
        invalid += utf8::find_invalid(line.begin(), line.end()) != line.end() ? 1U : 0U;
    }
    if (!file.eof()) {
        GiveUp("cannot read " + path);
    }
    return invalid;
}

std::vector<std::string_view> LinesOf(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const size_t end = text.find('\n');
        const size_t size = end == std::string_view::npos ? text.size() : end + 1;
        lines.push_back(text.substr(0, size));
        text.remove_prefix(size);
    }
    return lines;
}

void WriteLines(const std::string& path, const std::vector<std::string_view>& lines) {
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (file == nullptr) {
        GiveUp("cannot write " + path);
    }
    // Without a buffer, every fwrite is one write of the system.
    bool good = std::setvbuf(file, nullptr, _IONBF, 0) == 0;
    for (const std::string_view line : lines) {
        good = std::fwrite(line.data(), 1, line.size(), file) == line.size() && good;
    }
    good = std::fclose(file) == 0 && good;
    if (!good) {
        GiveUp("cannot write " + path);
    }
}

}  // namespace tabrin::bench
