#include "io/text_scan.h"

#include <algorithm>

#include "io/text_number.h"

namespace tabrin {

namespace {

size_t FindBlank(std::string_view text, size_t pos) {
    while (pos < text.size() && !IsBlank(text[pos])) {
        ++pos;
    }
    return pos < text.size() ? pos : kNpos;
}

size_t DecimalDigits(uint32_t value) {
    size_t digits = 1;
    while (value >= 10) {
        value /= 10;
        ++digits;
    }
    return digits;
}

// Only the number of characters behind the leading zeros is compared with the number of digits. That turns away "+5",
// "5a" and "-1", but lets "-429496729" pass as 3865470567, because both have ten characters.
bool IsPlainNumber(std::string_view token, uint32_t value) {
    const size_t zeros = std::min(token.find_first_not_of('0'), token.size());
    if (value == 0) {
        return zeros == token.size();
    }
    const size_t significant = token.size() == 1 ? 1 : token.size() - zeros;
    return significant == DecimalDigits(value);
}

}  // namespace

size_t FindLastNonBlank(std::string_view text, size_t pos) {
    // One more than the position looked at, so that the search can end in front of the text.
    size_t end = pos < text.size() ? pos + 1 : text.size();
    while (end > 0 && IsBlank(text[end - 1])) {
        --end;
    }
    return end > 0 ? end - 1 : kNpos;
}

bool KeywordAt(std::string_view text, std::string_view keyword, size_t pos, size_t& end) {
    end = kNpos;
    const size_t start = FindNonBlank(text, pos);
    if (start == kNpos) {
        return false;
    }
    end = start + keyword.size();
    if (end >= text.size() || !IsBlank(text[end])) {
        return false;
    }
    return text.compare(start, keyword.size(), keyword) == 0;
}

bool UnsignedToken(std::string_view text, size_t pos, uint32_t& value, size_t& end) {
    value = 0;
    end = kNpos;
    const size_t start = FindNonBlank(text, pos);
    if (start == kNpos) {
        return false;
    }
    const size_t blank = FindBlank(text, start);
    if (blank == kNpos) {
        return false;
    }
    const std::string_view token = text.substr(start, blank - start);
    uint32_t number = 0;
    if (!ToU32(token, number) || !IsPlainNumber(token, number)) {
        return false;
    }
    value = number;
    end = blank;
    return true;
}

std::string_view TrimmedBetween(std::string_view text, size_t pos, size_t last) {
    if (pos >= text.size() || pos >= last) {
        return {};
    }
    const size_t first = FindNonBlank(text, pos);
    if (first == kNpos || first > last) {
        return {};
    }
    const size_t end = FindLastNonBlank(text, last);
    return text.substr(first, end - first + 1);
}

std::string_view Trimmed(std::string_view text) {
    const size_t first = FindNonBlank(text, 0);
    if (first == kNpos) {
        return {};
    }
    return text.substr(first, FindLastNonBlank(text, kNpos) - first + 1);
}

void NormaliseBlanks(std::string& text) {
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c >= '\t' && c <= '\r'; }, ' ');
}

}  // namespace tabrin
