#include "io/text_number.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

namespace tabrin {

namespace {

// Takes leading blanks and a sign off the text; the result is whether the sign was a minus.
bool TakeSign(std::string_view& text) {
    TakeBlanks(text);
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) {
        text.remove_prefix(1);
    }
    return negative;
}

template <typename Unsigned>
bool ToMagnitude(std::string_view text, Unsigned& magnitude) {
    std::string_view rest = text;
    uint64_t number = 0;
    const size_t count = TakeDigits(rest, number);
    if (count <= kSafeDigits) {
        magnitude = static_cast<Unsigned>(number);
        return count != 0;
    }
    return std::from_chars(text.data(), text.data() + text.size(), magnitude).ec == std::errc();
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

// Takes up to 15 digits with a point somewhere among them off the text: the digits and the power of ten below them are
// exact doubles then, and their quotient is the nearest double.
bool TakeShortDecimal(std::string_view& text, double& value) {
    constexpr size_t kMostDigits = 15;
    uint64_t digits = 0;
    size_t count = TakeDigits(text, digits);
    size_t decimals = 0;
    if (text.starts_with('.')) {
        text.remove_prefix(1);
        decimals = TakeDigits(text, digits);
        count += decimals;
    }
    if (count == 0 || count > kMostDigits) {
        return false;
    }
    value = static_cast<double>(digits);
    if (decimals != 0) {
        value /= kPowersOfTen[decimals];
    }
    return true;
}

// Declines when anything but a blank follows.
bool ToShortDecimal(std::string_view text, double& value) {
    return TakeShortDecimal(text, value) && (text.empty() || IsBlank(text.front()));
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

constexpr int kSignificantDigits = 10;

// Written from the last digit to the first; there is one in front of the point at least.
char* FormatDecimal(char* buffer, bool negative, uint64_t digits, int decimals) {
    char reversed[kLongestNumber];
    char* const end = reversed + sizeof reversed;
    char* first = end;
    for (int place = 0; digits != 0 || place <= decimals; ++place) {
        if (place == decimals && decimals != 0) {
            *--first = '.';
        }
        *--first = static_cast<char>('0' + digits % 10);
        digits /= 10;
    }
    if (negative) {
        *--first = '-';
    }
    return std::copy(first, end, buffer);
}

// Most numbers in files have few digits. Where one is the double nearest to a decimal of at most ten digits, that
// decimal is what rounding to ten digits gives: a double is closer to it than any rounding boundary by orders of
// magnitude. nullptr for other numbers.
char* FormatShortDecimal(char* buffer, double value) {
    constexpr double kTooLong = 1e10;
    constexpr double kRounding = 1e-15;
    const double magnitude = std::fabs(value);
    if (!(magnitude >= 1e-4 && magnitude < 1e10)) {
        return nullptr;
    }
    for (int decimals = 0; decimals < kSignificantDigits; ++decimals) {
        const double scaled = magnitude * kPowersOfTen[decimals];
        if (scaled >= kTooLong) {
            break;
        }
        // The product of a short decimal is off its digits by rounding at most; to try one by division takes longer.
        auto digits = static_cast<uint64_t>(scaled);
        digits += scaled - static_cast<double>(digits) > 0.5 ? 1 : 0;
        const auto nearest = static_cast<double>(digits);
        if (std::fabs(scaled - nearest) <= kRounding * scaled && nearest / kPowersOfTen[decimals] == magnitude) {
            return FormatDecimal(buffer, value < 0, digits, decimals);
        }
    }
    return nullptr;
}

}  // namespace

bool AnyU32UntilChar(std::string_view text, size_t pos, char delimiter, uint32_t& value, size_t& found) {
    return ToU32(TextUntilChar(text, pos, delimiter, found), value);
}

bool AnyI32UntilChar(std::string_view text, size_t pos, char delimiter, int32_t& value, size_t& found) {
    return ToI32(TextUntilChar(text, pos, delimiter, found), value);
}

bool AnyDoubleUntilChar(std::string_view text, size_t pos, char delimiter, double& value, size_t& found) {
    return ToDouble(TextUntilChar(text, pos, delimiter, found), value);
}

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
    double magnitude = 0.0;
    if (ToShortDecimal(text, magnitude)) {
        value = negative ? -magnitude : magnitude;
        return true;
    }
    auto format = std::chars_format::general;
    if (HasHexMark(text)) {
        format = std::chars_format::hex;
        text.remove_prefix(2);
    }
    if (std::from_chars(text.data(), text.data() + text.size(), magnitude, format).ec != std::errc()) {
        return false;
    }
    value = negative ? -magnitude : magnitude;
    return true;
}

char* FormatNumber(char* buffer, uint32_t value) {
    return std::to_chars(buffer, buffer + kLongestNumber, value).ptr;
}

char* FormatNumber(char* buffer, int32_t value) {
    return std::to_chars(buffer, buffer + kLongestNumber, value).ptr;
}

char* FormatNumber(char* buffer, double value) {
    // Whole numbers that are not large are the most frequent; a zero that is negative keeps its sign below.
    if (std::fabs(value) < 1e9 && (value != 0.0 || !std::signbit(value))) {
        const auto whole = static_cast<int32_t>(value);
        if (whole == value) {
            return FormatNumber(buffer, whole);
        }
    }
    if (char* const end = FormatShortDecimal(buffer, value); end != nullptr) {
        return end;
    }
    return std::to_chars(buffer, buffer + kLongestNumber, value, std::chars_format::general, kSignificantDigits).ptr;
}

}  // namespace tabrin
