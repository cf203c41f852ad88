#include "io/text_number.h"

#include <charconv>
#include <limits>
#include <system_error>

#include "io/text_scan.h"

namespace tabrin {

namespace {

// Takes leading blanks and a sign off the text; the result is whether the sign was a minus.
bool TakeSign(std::string_view& text) {
    const size_t first = FindNonBlank(text, 0);
    text.remove_prefix(first == kNpos ? text.size() : first);
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) {
        text.remove_prefix(1);
    }
    return negative;
}

template <typename Unsigned>
bool ToMagnitude(std::string_view digits, Unsigned& magnitude) {
    const char* end = digits.data() + digits.size();
    return std::from_chars(digits.data(), end, magnitude).ec == std::errc();
}

template <typename Signed, typename Unsigned>
bool ToSigned(std::string_view text, Signed& value) {
    value = 0;
    const bool negative = TakeSign(text);
    Unsigned magnitude = 0;
    const auto most = static_cast<Unsigned>(std::numeric_limits<Signed>::max());
    if (!ToMagnitude(text, magnitude) || magnitude > most + (negative ? 1U : 0U)) {
        return false;
    }
    value = static_cast<Signed>(negative ? Unsigned{0} - magnitude : magnitude);
    return true;
}

bool IsHexDigit(char c) {
    return IsDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

// "0x" counts as the hexadecimal mark only with a digit behind it; else the number is the "0".
bool HasHexMark(std::string_view text) {
    if (text.size() < 3 || text[0] != '0' || (text[1] != 'x' && text[1] != 'X')) {
        return false;
    }
    return IsHexDigit(text[2]) || (text[2] == '.' && text.size() > 3 && IsHexDigit(text[3]));
}

template <typename Number, typename... Format>
void AppendWith(std::string& text, Number value, Format... format) {
    char buffer[40];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value, format...);
    text.append(buffer, result.ptr);
}

}  // namespace

bool ToU32(std::string_view text, uint32_t& value) {
    value = 0;
    const bool negative = TakeSign(text);
    uint32_t magnitude = 0;
    if (!ToMagnitude(text, magnitude)) {
        return false;
    }
    value = negative ? 0U - magnitude : magnitude;
    return true;
}

bool ToI32(std::string_view text, int32_t& value) {
    return ToSigned<int32_t, uint32_t>(text, value);
}

bool ToI64(std::string_view text, int64_t& value) {
    return ToSigned<int64_t, uint64_t>(text, value);
}

bool ToDouble(std::string_view text, double& value) {
    value = 0.0;
    const bool negative = TakeSign(text);
    // from_chars would take a second minus sign.
    if (text.starts_with('-')) {
        return false;
    }
    auto format = std::chars_format::general;
    if (HasHexMark(text)) {
        format = std::chars_format::hex;
        text.remove_prefix(2);
    }
    double magnitude = 0.0;
    if (std::from_chars(text.data(), text.data() + text.size(), magnitude, format).ec != std::errc()) {
        return false;
    }
    value = negative ? -magnitude : magnitude;
    return true;
}

void AppendNumber(std::string& text, uint32_t value) {
    AppendWith(text, value);
}

void AppendNumber(std::string& text, int32_t value) {
    AppendWith(text, value);
}

void AppendNumber(std::string& text, double value) {
    AppendWith(text, value, std::chars_format::general, 10);
}

}  // namespace tabrin
