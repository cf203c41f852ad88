#include "text.h"

#include <utf8.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>

namespace tabrin_tool {

namespace {

struct Range {
    char32_t first;
    char32_t last;
};

// Enough for names and units; a full table would be a library of its own.
constexpr std::array kWide = {Range{0x1100, 0x115F},   Range{0x2E80, 0x303E},  Range{0x3041, 0xA4CF},
                              Range{0xAC00, 0xD7A3},   Range{0xF900, 0xFAFF},  Range{0xFE30, 0xFE6F},
                              Range{0xFF00, 0xFF60},   Range{0xFFE0, 0xFFE6},  Range{0x1F300, 0x1F64F},
                              Range{0x1F900, 0x1F9FF}, Range{0x20000, 0x3FFFD}};
constexpr std::array kNarrowest = {Range{0x0300, 0x036F}, Range{0x200B, 0x200F}, Range{0x20D0, 0x20FF},
                                   Range{0xFE00, 0xFE0F}};

template <typename Ranges>
bool IsIn(const Ranges& ranges, char32_t c) {
    return std::any_of(ranges.begin(), ranges.end(), [c](Range range) { return c >= range.first && c <= range.last; });
}

std::size_t CharacterWidth(char32_t c) {
    if (IsIn(kNarrowest, c)) {
        return 0;
    }
    return IsIn(kWide, c) ? 2 : 1;
}

bool IsControl(char32_t c) {
    return c < 0x20 || (c >= 0x7F && c < 0xA0);
}

bool IsLineBlank(char32_t c) {
    return c >= '\t' && c <= '\r';
}

// The texts of the library are valid UTF-8, arguments need not be: what is not valid counts and prints as "?".
template <typename Visit>
void ForEachCharacter(std::string_view text, Visit visit) {
    const char* position = text.data();
    const char* end = position + text.size();
    while (position != end) {
        const char* next = position;
        char32_t c = '?';
        try {
            c = utf8::next(next, end);
        } catch (const utf8::exception&) {
            next = position + 1;
        }
        visit(c, std::string_view(position, static_cast<std::size_t>(next - position)));
        position = next;
    }
}

}  // namespace

std::string Paint::With(std::string_view code, std::string_view text) const {
    if (!colours_ || text.empty()) {
        return std::string(text);
    }
    std::string painted = "\x1B[";
    painted.append(code).append("m").append(text).append("\x1B[0m");
    return painted;
}

std::string Paint::Bold(std::string_view text) const {
    return With("1", text);
}

std::string Paint::Faint(std::string_view text) const {
    return With("2", text);
}

std::string Paint::Red(std::string_view text) const {
    return With("1;31", text);
}

std::string Paint::Numbered(std::size_t number, std::string_view text) const {
    static constexpr std::array<std::string_view, 5> kCodes = {"36", "33", "35", "32", "34"};
    return With(kCodes[number % kCodes.size()], text);
}

std::string OneLine(std::string_view text) {
    std::string line;
    ForEachCharacter(text, [&line](char32_t c, std::string_view bytes) {
        if (IsLineBlank(c)) {
            line += ' ';
        } else if (IsControl(c) || (bytes.size() == 1 && c == '?')) {
            line += '?';
        } else {
            line += bytes;
        }
    });
    return line;
}

std::string Indented(std::size_t indent, std::string_view text) {
    std::string lines;
    while (!text.empty()) {
        const std::size_t end = text.find_first_of("\r\n");
        const std::string_view line = text.substr(0, end);
        if (!line.empty()) {
            lines.append(indent, ' ').append(OneLine(line)).append("\n");
        }
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return lines;
}

std::size_t DisplayWidth(std::string_view text) {
    std::size_t width = 0;
    ForEachCharacter(text, [&width](char32_t c, std::string_view) { width += CharacterWidth(c); });
    return width;
}

std::string Shortened(std::string_view text, std::size_t width) {
    if (DisplayWidth(text) <= width) {
        return std::string(text);
    }
    std::string kept;
    std::size_t used = 1;  // the ellipsis
    ForEachCharacter(text, [&](char32_t c, std::string_view bytes) {
        used += CharacterWidth(c);
        if (used <= width) {
            kept += bytes;
        }
    });
    return width == 0 ? kept : kept + "…";
}

std::string PaddedRight(std::string_view text, std::size_t width) {
    const std::size_t used = DisplayWidth(text);
    return std::string(text) + std::string(width > used ? width - used : 0, ' ');
}

std::string PaddedLeft(std::string_view text, std::size_t width) {
    const std::size_t used = DisplayWidth(text);
    return std::string(width > used ? width - used : 0, ' ') + std::string(text);
}

std::string NumberText(double number) {
    std::array<char, 64> text{};
    constexpr int kDigits = 15;
    const auto end = std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::general, kDigits);
    return {text.data(), end.ptr};
}

void Table::AddColumn(std::string title, Align align) {
    const std::size_t width = DisplayWidth(title);
    columns_.push_back({std::move(title), align, width, false});
}

void Table::AddRow(std::vector<std::string> cells) {
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        columns_[i].width = std::max(columns_[i].width, DisplayWidth(cells[i]));
        columns_[i].used = columns_[i].used || !cells[i].empty();
    }
    rows_.push_back(std::move(cells));
}

std::string Table::PrintCell(std::size_t column, const std::string& text) const {
    const Column& format = columns_[column];
    return format.align == Align::Left ? PaddedRight(text, format.width) : PaddedLeft(text, format.width);
}

std::string Table::Print(std::size_t indent, const Paint& paint) const {
    const auto printRow = [&](const auto& cellOf) {
        std::string line(indent, ' ');
        for (std::size_t i = 0; i < columns_.size(); ++i) {
            if (columns_[i].used) {
                line += cellOf(i) + "  ";
            }
        }
        line.erase(line.find_last_not_of(' ') + 1);
        return line;
    };
    std::string text = paint.Faint(printRow([&](std::size_t i) { return PrintCell(i, columns_[i].title); })) + "\n";
    for (std::size_t row = 0; row < rows_.size(); ++row) {
        text += printRow([&](std::size_t i) {
            const std::string cell = PrintCell(i, rows_[row][i]);
            return i == 0 ? paint.Numbered(row, cell) : cell;
        });
        text += "\n";
    }
    return text;
}

}  // namespace tabrin_tool
