#include "io/text_number.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>
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

// The texts of the numbers below 1000, as they are and with zeros in front.
struct SmallNumbers {
    struct Text {
        char digits[3];
        uint8_t size;
    };

    std::array<Text, 1000> plain{};
    std::array<Text, 1000> padded{};

    constexpr SmallNumbers() {  // never run: evaluated in compiling
        for (uint32_t value = 0; value < plain.size(); ++value) {
            const char digits[] = {static_cast<char>('0' + value / 100), static_cast<char>('0' + value / 10 % 10),
                                   static_cast<char>('0' + value % 10)};
            const size_t zeros = value < 10 ? 2 : (value < 100 ? 1 : 0);
            padded[value] = {{digits[0], digits[1], digits[2]}, 3};
            plain[value].size = static_cast<uint8_t>(3 - zeros);
            std::copy(digits + zeros, digits + 3, plain[value].digits);
        }
    }
};

constexpr SmallNumbers kSmallNumbers;

// Of a whole number. There may be a sign in front of them already.
constexpr size_t kMostWholeDigits = 20;

// Writes as many characters whatever the text has, as there is room.
char* AppendText(char* buffer, const SmallNumbers::Text& text) {
    std::memcpy(buffer, &text, sizeof text);
    return buffer + text.size;
}

constexpr int kSignificantDigits = 10;

// Writes digits with a point in front of the last `decimals` of them, which are 9 at most. Behind the point there are
// always nine of them written, and as many kept as there should be.
char* FormatDecimal(char* buffer, uint64_t digits, size_t decimals) {
    constexpr size_t kMostDecimals = 9;
    constexpr uint64_t kPowers[] = {1, 10, 100, 1000, 10000, 100000, 1000000, 10000000, 100000000, 1000000000};
    if (decimals == 0) {
        return std::to_chars(buffer, buffer + kMostWholeDigits, digits).ptr;
    }
    char* const point = FormatNumber(buffer, static_cast<uint32_t>(digits / kPowers[decimals]));
    const auto behind = static_cast<uint32_t>(digits % kPowers[decimals] * kPowers[kMostDecimals - decimals]);
    *point = '.';
    char* end = AppendText(point + 1, kSmallNumbers.padded[behind / 1000000]);
    end = AppendText(end, kSmallNumbers.padded[behind / 1000 % 1000]);
    AppendText(end, kSmallNumbers.padded[behind % 1000]);
    return point + 1 + decimals;
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
    for (size_t decimals = 0; decimals < kSignificantDigits; ++decimals) {
        const double scaled = magnitude * kPowersOfTen[decimals];
        if (scaled >= kTooLong) {
            break;
        }
        // The product of a short decimal is off its digits by rounding at most; to try one by division takes longer.
        auto digits = static_cast<uint64_t>(scaled);
        digits += scaled - static_cast<double>(digits) > 0.5 ? 1 : 0;
        const auto nearest = static_cast<double>(digits);
        if (std::fabs(scaled - nearest) <= kRounding * scaled && nearest / kPowersOfTen[decimals] == magnitude) {
            *buffer = '-';
            return FormatDecimal(value < 0 ? buffer + 1 : buffer, digits, decimals);
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

// Most numbers in files are small.
char* FormatNumber(char* buffer, uint32_t value) {
    if (value < 1000) {
        return AppendText(buffer, kSmallNumbers.plain[value]);
    }
    if (value < 1000 * 1000) {
        return AppendText(AppendText(buffer, kSmallNumbers.plain[value / 1000]), kSmallNumbers.padded[value % 1000]);
    }
    return std::to_chars(buffer, buffer + kMostWholeDigits, value).ptr;
}

char* FormatNumber(char* buffer, int32_t value) {
    *buffer = '-';
    const auto magnitude = static_cast<uint32_t>(value);
    return value < 0 ? FormatNumber(buffer + 1, 0U - magnitude) : FormatNumber(buffer, magnitude);
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
