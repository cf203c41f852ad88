// Scanning of statement text: blanks, keywords, number tokens, pieces between delimiters.
//
// Positions are byte indices into the text; kNpos means no position. None of the functions copies text: what they hand
// back is a view into the text they were given.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "io/byte_block.h"

namespace tabrin {

inline constexpr size_t kNpos = std::string_view::npos;

// The blanks between tokens, the same in every statement: space, tab and the line and page breaks.
constexpr bool IsBlank(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

constexpr bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

// The first blank at or after `pos`, or the end of the text.
inline size_t FindBlankOrEnd(std::string_view text, size_t pos) {
    pos = std::min(pos, text.size());
    for (; text.size() - pos >= ByteBlock::kSize; pos += ByteBlock::kSize) {
        const ByteBlock block(text.data() + pos);
        const uint32_t blanks = block.Between('\t', '\r') | block.Between(' ', ' ');
        if (blanks != 0) {
            return pos + FirstMarked(blanks);
        }
    }
    while (pos < text.size() && !IsBlank(text[pos])) {
        ++pos;
    }
    return pos;
}

// The first position at or after `pos` that is no blank, and the last at or before it.
inline size_t FindNonBlank(std::string_view text, size_t pos) {
    while (pos < text.size() && IsBlank(text[pos])) {
        ++pos;
    }
    return pos < text.size() ? pos : kNpos;
}
inline size_t FindLastNonBlank(std::string_view text, size_t pos) {
    // One more than the position looked at, so that the search can end in front of the text.
    size_t end = pos < text.size() ? pos + 1 : text.size();
    while (end > 0 && IsBlank(text[end - 1])) {
        --end;
    }
    return end > 0 ? end - 1 : kNpos;
}

inline void TakeBlanks(std::string_view& text) {
    while (!text.empty() && IsBlank(text.front())) {
        text.remove_prefix(1);
    }
}

// Whether `keyword` is the first token at or after `pos`. It must be followed by a blank inside the same text, so a
// keyword at the very end, or with ":" directly behind it, is none. `end` is where the keyword would end, whether or
// not it is there; kNpos when there is no token at all.
inline bool KeywordAt(std::string_view text, std::string_view keyword, size_t pos, size_t& end) {
    end = kNpos;
    const size_t start = FindNonBlank(text, pos);
    if (start == kNpos) {
        return false;
    }
    end = start + keyword.size();
    if (end >= text.size() || !IsBlank(text[end])) {
        return false;
    }
    return text.substr(start, keyword.size()) == keyword;
}

// Reads the first token at or after `pos` as an unsigned number. It must be followed by a blank. On success `end` is
// the index of that blank; on failure `value` is 0 and `end` kNpos.
bool UnsignedToken(std::string_view text, size_t pos, uint32_t& value, size_t& end);

// The text from `pos` up to, not including, the next `delimiter`, whose position goes to `found`; an empty text and
// kNpos when there is none.
inline std::string_view TextUntilChar(std::string_view text, size_t pos, char delimiter, size_t& found) {
    found = text.find(delimiter, pos);
    return found == kNpos ? std::string_view() : text.substr(pos, found - pos);
}

// The text from `pos` to `last` inclusive without the blanks at both ends. Empty unless pos < last: a piece of a single
// character counts as empty, which the statements rely on.
std::string_view TrimmedBetween(std::string_view text, size_t pos, size_t last);

// The whole text without the blanks at both ends; here a single character is kept.
inline std::string_view Trimmed(std::string_view text) {
    const size_t first = FindNonBlank(text, 0);
    if (first == kNpos) {
        return {};
    }
    return text.substr(first, FindLastNonBlank(text, kNpos) - first + 1);
}

// Turns the blanks that would break a line or a column into spaces, in place.
void NormaliseBlanks(std::string& text);

}  // namespace tabrin
