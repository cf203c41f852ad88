// Numbers from text and back, the same on every platform and under every locale.
//
// The conversions from text follow the C runtime's strtoul, strtol, strtoll and strtod where `long` has 32 bits:
// leading blanks and a sign are taken, trailing characters ignored, numbers out of range refused. On failure the value
// is 0.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "io/text_head.h"
#include "io/text_scan.h"

namespace tabrin {

// Powers of ten that a double holds exactly.
inline constexpr double kPowersOfTen[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                          1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};

// The number that the front of a text begins with, when it has less than eight digits; all eight of them when it has
// more. The text is one of eight characters as HeadOf gives it. There is no loop: hardly anything else in a file is as
// hard to guess for the processor as how many digits the next number has.
struct LeadingDigits {
    explicit LeadingDigits(uint64_t head) {
        // Digits become 0 to 9. All others get their highest bit set, and those behind the first of them any bits.
        constexpr uint64_t kEach = 0x0101'0101'0101'0101;
        const uint64_t digits = head ^ ('0' * kEach);
        const uint64_t others = (digits | (digits + (0x80 - 10) * kEach)) & (0x80 * kEach);
        count = static_cast<size_t>(std::countr_zero(others)) / 8;
        if (count != 0) {
            value = ValueOfEight(digits << (64 - 8 * count));
        }
    }

    // Whether there are digits, and no more of them.
    [[nodiscard]] bool AreAll() const { return count - 1 < 7; }

    size_t count = 0;
    uint64_t value = 0;

private:
    // Pairs of digits, then pairs of those: the first digit is lowest and counts most.
    static uint64_t ValueOfEight(uint64_t digits) {
        digits = (digits * (10 * 0x100 + 1)) >> 8;
        digits = ((digits & 0x00FF'00FF'00FF'00FF) * (100 * 0x1'0000 + 1)) >> 16;
        return ((digits & 0x0000'FFFF'0000'FFFF) * (10000 * 0x1'0000'0000 + 1)) >> 32;
    }
};

// Takes the digits at the front of the text and puts them behind those of the number; the result is how many. More than
// 19 of them wrap around.
inline size_t TakeDigits(std::string_view& text, uint64_t& number) {
    constexpr uint64_t kPowers[] = {1, 10, 100, 1000, 10000, 100000, 1000000, 10000000, 100000000};
    size_t all = 0;
    for (;;) {
        const LeadingDigits digits(HeadOf(text));
        number = number * kPowers[digits.count] + digits.value;
        text.remove_prefix(digits.count);
        all += digits.count;
        if (digits.count != 8) {
            return all;
        }
    }
}

// As many digits as fit into 32 bits whatever they are.
inline constexpr size_t kSafeDigits = 9;

// A minus sign wraps around: "-1" is 4294967295. Magnitudes above 4294967295 fail with either sign.
bool ToU32(std::string_view text, uint32_t& value);
bool ToI32(std::string_view text, int32_t& value);
bool ToI64(std::string_view text, int64_t& value);

// Also takes hexadecimal ("0x1.8p3"), "inf" and "nan". Fails on overflow and on underflow to zero; subnormals pass.
bool ToDouble(std::string_view text, double& value);

// The number in front of the next `delimiter` at or after `pos`, whose position goes to `found`, kNpos when there is
// none: what ToU32, ToI32 and ToDouble make of TextUntilChar.
bool AnyU32UntilChar(std::string_view text, size_t pos, char delimiter, uint32_t& value, size_t& found);
bool AnyI32UntilChar(std::string_view text, size_t pos, char delimiter, int32_t& value, size_t& found);
bool AnyDoubleUntilChar(std::string_view text, size_t pos, char delimiter, double& value, size_t& found);

// Less than eight digits with something behind them, and with a sign in front.
inline constexpr size_t kRoomForPlain = 8;
inline constexpr size_t kRoomForSigned = 1 + kRoomForPlain;
// The same with a point and as many digits more.
inline constexpr size_t kRoomForDecimal = kRoomForSigned + kRoomForPlain;

inline bool HasRoom(std::string_view text, size_t pos, size_t room) {
    return pos < text.size() && text.size() - pos >= room;
}

// Takes such a decimal without sign. Its digits and the power of ten below them are exact doubles, and their quotient is
// the nearest double.
inline bool TakePlainDecimal(const char*& text, double& value) {
    const LeadingDigits whole(HeadAt(text));
    if (!whole.AreAll()) {
        return false;
    }
    text += whole.count;
    value = static_cast<double>(whole.value);
    if (*text != '.') {
        return true;
    }
    const LeadingDigits decimals(HeadAt(text + 1));
    const double power = kPowersOfTen[decimals.count];
    text += 1 + decimals.count;
    value = (value * power + static_cast<double>(decimals.value)) / power;
    return decimals.AreAll();
}

// The same as those above. Plain numbers right in front of the delimiter, as most are, are read without looking for it
// first. The delimiter must be none of the characters that numbers and the blanks around them consist of.
inline bool U32UntilChar(std::string_view text, size_t pos, char delimiter, uint32_t& value, size_t& found) {
    const size_t first = FindNonBlank(text, pos);
    if (HasRoom(text, first, kRoomForPlain)) {
        const LeadingDigits digits(HeadAt(text.data() + first));
        found = first + digits.count;
        if (digits.AreAll() && text[found] == delimiter) {
            value = static_cast<uint32_t>(digits.value);
            return true;
        }
    }
    return AnyU32UntilChar(text, pos, delimiter, value, found);
}

inline bool I32UntilChar(std::string_view text, size_t pos, char delimiter, int32_t& value, size_t& found) {
    // With one blank at each end, as in VAL_ statements.
    if (HasRoom(text, pos, 1 + kRoomForSigned + 1)) {
        const char* end = text.data() + pos;
        end += *end == ' ' ? 1 : 0;
        const bool negative = *end == '-';
        end += negative ? 1 : 0;
        const LeadingDigits digits(HeadAt(end));
        end += digits.count;
        end += *end == ' ' ? 1 : 0;
        if (digits.AreAll() && *end == delimiter) {
            const auto magnitude = static_cast<int32_t>(digits.value);
            value = negative ? -magnitude : magnitude;
            found = static_cast<size_t>(end - text.data());
            return true;
        }
    }
    return AnyI32UntilChar(text, pos, delimiter, value, found);
}

inline bool DoubleUntilChar(std::string_view text, size_t pos, char delimiter, double& value, size_t& found) {
    if (HasRoom(text, pos, kRoomForDecimal)) {
        const char* end = text.data() + pos;
        const uint64_t negative = *end == '-' ? 1 : 0;
        end += negative;
        double magnitude = 0.0;
        if (TakePlainDecimal(end, magnitude) && *end == delimiter) {
            value = std::bit_cast<double>(std::bit_cast<uint64_t>(magnitude) | negative << 63);
            found = static_cast<size_t>(end - text.data());
            return true;
        }
    }
    return AnyDoubleUntilChar(text, pos, delimiter, value, found);
}

// Enough room for every number in the formats below.
inline constexpr size_t kLongestNumber = 32;

// Write a number into a buffer of that size; the result is the end of what was written.
char* FormatNumber(char* buffer, uint32_t value);
char* FormatNumber(char* buffer, int32_t value);

// Ten significant digits, trailing zeros dropped, scientific form only where the exponent asks for it: 0.125, 1e+10.
char* FormatNumber(char* buffer, double value);

}  // namespace tabrin
