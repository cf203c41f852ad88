#include "io/text_scan.h"

#include <algorithm>
#include <limits>

#include "io/text_number.h"

namespace tabrin {

namespace {

constexpr uint32_t kLargest = std::numeric_limits<uint32_t>::max();
constexpr size_t kMostDigits = 10;  // that the largest has

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
    return token.size() - zeros == DecimalDigits(value);
}

}  // namespace

bool UnsignedToken(std::string_view text, size_t pos, uint32_t& value, size_t& end) {
    value = 0;
    end = kNpos;
    const size_t start = FindNonBlank(text, pos);
    if (start == kNpos) {
        return false;
    }
    // Most tokens are nothing but digits, and not too many of them.
    std::string_view rest = text.substr(start);
    uint64_t digits = 0;
    const size_t count = TakeDigits(rest, digits);
    if (count <= kMostDigits && digits <= kLargest && !rest.empty() && IsBlank(rest.front())) {
        value = static_cast<uint32_t>(digits);
        end = start + count;
        return true;
    }
    const size_t blank = FindBlankOrEnd(text, start);
    if (blank == text.size()) {
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
    if (pos >= last) {
        return {};
    }
    const size_t first = FindNonBlank(text, pos);
    if (first == kNpos || first > last) {
        return {};
    }
    const size_t end = FindLastNonBlank(text, last);
    return text.substr(first, end - first + 1);
}

void NormaliseBlanks(std::string& text) {
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c >= '\t' && c <= '\r'; }, ' ');
}

}  // namespace tabrin
