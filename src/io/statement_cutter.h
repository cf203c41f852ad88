// Cuts the lines of a DBC file into statements. A statement runs from its keyword to just before the next one, whatever
// the lines: keywords are recognised wherever a token begins, also inside quoted text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "io/dbc_keywords.h"
#include "io/line_buffer.h"

namespace tabrin {

struct KeywordHit {
    const StatementKeyword* keyword = nullptr;
    size_t start = 0;
    size_t end = 0;
};

// Whether a keyword ends at this position: a blank must be there.
bool KeywordEndsAt(std::string_view text, size_t blank, KeywordHit& hit);

class StatementCutter {
public:
    explicit StatementCutter(LineBuffer& lines) : lines_(lines) {}

    // Forgets everything, for the next file.
    void Reset();

    // Goes on to the next statement; false when there is none, because the end of the file or a failure was met.
    bool Next();

    // The statement that Next found, with its trailing line end and the indentation that precedes the next keyword. The
    // view holds until the next call.
    [[nodiscard]] std::string_view Text() const { return text_; }
    [[nodiscard]] const StatementKeyword& Keyword() const { return *current_.keyword; }

    // How the last attempt to read a line ended; nothing is read any more once it is not Line.
    [[nodiscard]] LineBuffer::Result LastRead() const { return lastRead_; }
    [[nodiscard]] uint32_t LinesRead() const { return linesRead_; }

private:
    bool ReadLine();
    bool FindKeyword(KeywordHit& hit);
    bool SeekKeyword();
    bool RunToNextKeyword();

    LineBuffer& lines_;

    LineBuffer::Result lastRead_ = LineBuffer::Result::Line;
    uint32_t linesRead_ = 0;
    bool pending_ = false;  // next_ is the keyword that ended the statement
    KeywordHit current_;
    KeywordHit next_;
    std::string_view text_;
};

}  // namespace tabrin
