#include "source_lines.h"

#include <algorithm>
#include <fstream>

#include "file_system.h"

namespace tabrin_tool {

namespace {

// The library leaves out control characters and writes "_" for bytes that are not UTF-8, so "_" matches any of those.
bool IsLeftOut(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return (byte < ' ' && (byte < '\t' || byte > '\r')) || byte == '\r' || byte == 0x7F;
}

bool Matches(char inFile, char inStatement) {
    return inFile == inStatement || (inStatement == '_' && static_cast<unsigned char>(inFile) >= 0x80);
}

std::string FirstLine(const char* text) {
    std::string line(text);
    line.erase(std::min(line.find_first_of("\r\n"), line.size()));
    return line;
}

}  // namespace

SourceLines::SourceLines(const std::string& file) {
    std::ifstream stream(PathFromUtf8(file), std::ios::binary);
    std::string line;
    while (std::getline(stream, line)) {
        line.erase(std::remove_if(line.begin(), line.end(), IsLeftOut), line.end());
        lines_.push_back(line);
    }
}

bool SourceLines::Contains(std::uint32_t line, const std::string& text) const {
    if (line == 0 || line > lines_.size()) {
        return false;
    }
    const std::string& source = lines_[line - 1];
    return std::search(source.begin(), source.end(), text.begin(), text.end(), Matches) != source.end();
}

std::uint32_t SourceLines::LineOf(const CanErrorData& error, std::uint32_t previous) const {
    const std::string text = FirstLine(error.text);
    if (text.empty()) {
        return error.line;
    }
    for (std::uint32_t line = error.line; line > previous; --line) {
        if (Contains(line, text)) {
            return line;
        }
    }
    if (Contains(error.line + 1, text)) {
        return error.line + 1;
    }
    return previous != 0 && Contains(previous, text) ? previous : error.line;
}

}  // namespace tabrin_tool
