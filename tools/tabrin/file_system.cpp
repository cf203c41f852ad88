#include "file_system.h"

namespace tabrin_tool {

std::filesystem::path PathFromUtf8(const std::string& text) {
    return {std::u8string(text.begin(), text.end())};
}

std::string Utf8FromPath(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

}  // namespace tabrin_tool
