#include "io/text_number.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

#include "io/text_scan.h"

namespace tabrin {

namespace {

// Powers of ten that a double holds exactly.
constexpr double kPowersOfTen[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                   1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};

// Takes leading blanks and a sign off the text; the result is whether the sign was a minus.
bool TakeSign(std::string_view& text) {
    while (!text.empty() && IsBlank(text.front())) {
        text.remove_prefix(1);
    }
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) {
        text.remove_prefix(1);
    }
    return negative;
}

// Takes the digits at the front of the text. Too many of them wrap around.
size_t TakeDigits(std::string_view& text, uint64_t& number) {
    size_t count = 0;
    while (count < text.size() && IsDigit(text[count])) {
        number = number * 10 + static_cast<uint64_t>(text[count] - '0');
        ++count;
    }
    text.remove_prefix(count);
    return count;
}

template <typename Unsigned>
bool ToMagnitude(std::string_view text, Unsigned& magnitude) {
    constexpr size_t kSafeDigits = 9;
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

// Takes up to 15 digits with a point somewhere among them: the digits and the power of ten below them are exact doubles
// then, and their quotient is the nearest double. Declines when anything but a blank follows.
bool ToShortDecimal(std::string_view text, double& value) {
    constexpr size_t kMostDigits = 15;
    uint64_t digits = 0;
    size_t count = TakeDigits(text, digits);
    size_t decimals = 0;
    if (text.starts_with('.')) {
        text.remove_prefix(1);
        decimals = TakeDigits(text, digits);
        count += decimals;
    }
    if (count == 0 || count > kMostDigits || (!text.empty() && !IsBlank(text.front()))) {
        return false;
    }
    value = static_cast<double>(digits);
    if (decimals != 0) {
        value /= kPowersOfTen[decimals];
    }
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

constexpr int kSignificantDigits = 10;

// Enough for every number in the formats used here.
constexpr size_t kLongestNumber = 32;

template <typename Number, typename... Format>
void AppendWith(std::string& text, Number value, Format... format) {
    char buffer[kLongestNumber];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value, format...);
    text.append(buffer, result.ptr);
}

// Written from the last digit to the first; there is one in front of the point at least.
void AppendDecimal(std::string& text, bool negative, uint64_t digits, int decimals) {
    char buffer[kLongestNumber];
    char* const end = buffer + sizeof buffer;
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
    text.append(first, end);
}

// Most numbers in files have few digits. Where one is the double nearest to a decimal of at most ten digits, that decimal
// is what rounding to ten digits gives: a double is closer to it than any rounding boundary by orders of magnitude.
bool AppendShortDecimal(std::string& text, double value) {
    if (value == 0.0 && !std::signbit(value)) {
        text += '0';
        return true;
    }
    const double magnitude = std::fabs(value);
    if (!(magnitude >= 1e-4 && magnitude < 1e10)) {
        return false;
    }
    for (int decimals = 0; decimals < kSignificantDigits; ++decimals) {
        const double scaled = magnitude * kPowersOfTen[decimals];
        // The product may come out a little too small.
        const auto below = static_cast<uint64_t>(scaled);
        for (const uint64_t digits : {below, below + 1}) {
            if (digits < 10'000'000'000U && static_cast<double>(digits) / kPowersOfTen[decimals] == magnitude) {
                AppendDecimal(text, value < 0, digits, decimals);
                return true;
            }
        }
        if (below >= 10'000'000'000U) {
            return false;
        }
    }
    return false;
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

void AppendNumber(std::string& text, uint32_t value) {
    AppendWith(text, value);
}

void AppendNumber(std::string& text, int32_t value) {
    AppendWith(text, value);
}

void AppendNumber(std::string& text, double value) {
    if (!AppendShortDecimal(text, value)) {
        AppendWith(text, value, std::chars_format::general, kSignificantDigits);
    }
}

}  // namespace tabrin
