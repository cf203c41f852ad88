#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tabrin_tool {

// Paints words, or leaves them as they are where nobody would see colours.
class Paint {
public:
    explicit Paint(bool colours) : colours_(colours) {}

    std::string Bold(std::string_view text) const;
    std::string Faint(std::string_view text) const;
    std::string Red(std::string_view text) const;

    // One of a few colours that are easy to tell apart, in turn.
    std::string Numbered(std::size_t number, std::string_view text) const;

private:
    std::string With(std::string_view code, std::string_view text) const;

    bool colours_;
};

// One line of plain text: line ends and tabs become blanks, and control characters, which a terminal might obey, "?".
std::string OneLine(std::string_view text);

// Each line of the text, cleaned like OneLine, with blanks in front and a line end behind.
std::string Indented(std::size_t indent, std::string_view text);

// Columns that a UTF-8 text takes on a terminal: two for the wide characters of East Asia, none for accents set on
// others.
std::size_t DisplayWidth(std::string_view text);

// The beginning of a text that takes at most `width` columns; a text that does not fit ends with an ellipsis.
std::string Shortened(std::string_view text, std::size_t width);

std::string PaddedRight(std::string_view text, std::size_t width);
std::string PaddedLeft(std::string_view text, std::size_t width);

// Decimal, at most 15 digits: as a person would have written it into the file.
std::string NumberText(double number);

// A text table. Columns are as wide as their longest cell, and those without any text are left out.
class Table {
public:
    enum class Align { Left, Right };

    void AddColumn(std::string title, Align align);
    void AddRow(std::vector<std::string> cells);

    // The cells of the first column are painted one after the other with Paint::Numbered.
    std::string Print(std::size_t indent, const Paint& paint) const;

private:
    struct Column {
        std::string title;
        Align align;
        std::size_t width;
        bool used;
    };

    std::string PrintCell(std::size_t column, const std::string& text) const;

    std::vector<Column> columns_;
    std::vector<std::vector<std::string>> rows_;
};

}  // namespace tabrin_tool
