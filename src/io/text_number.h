// Numbers from text and back, the same on every platform and under every locale.
//
// The conversions from text follow the C runtime's strtoul, strtol, strtoll and strtod where `long` has 32 bits:
// leading blanks and a sign are taken, trailing characters ignored, numbers out of range refused. On failure the value
// is 0.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "io/text_scan.h"

namespace tabrin {

// Takes the digits at the front of the text; the result is how many. More than 19 of them wrap around.
inline size_t TakeDigits(std::string_view& text, uint64_t& number) {
    const char* const begin = text.data();
    const char* const end = begin + text.size();
    const char* position = begin;
    for (; position != end && IsDigit(*position); ++position) {
        number = number * 10 + static_cast<uint64_t>(*position - '0');
    }
    const auto count = static_cast<size_t>(position - begin);
    text.remove_prefix(count);
    return count;
}

// A minus sign wraps around: "-1" is 4294967295. Magnitudes above 4294967295 fail with either sign.
bool ToU32(std::string_view text, uint32_t& value);
bool ToI32(std::string_view text, int32_t& value);
bool ToI64(std::string_view text, int64_t& value);

// Also takes hexadecimal ("0x1.8p3"), "inf" and "nan". Fails on overflow and on underflow to zero; subnormals pass.
bool ToDouble(std::string_view text, double& value);

// The number in front of the next `delimiter` at or after `pos`, whose position goes to `found`, kNpos when there is
// none: what ToU32, ToI32 and ToDouble make of TextUntilChar. A plain number right in front of it is read without
// looking for it first. The delimiter must be none of the characters that numbers and the blanks around them consist
// of.
bool U32UntilChar(std::string_view text, size_t pos, char delimiter, uint32_t& value, size_t& found);
bool I32UntilChar(std::string_view text, size_t pos, char delimiter, int32_t& value, size_t& found);
bool DoubleUntilChar(std::string_view text, size_t pos, char delimiter, double& value, size_t& found);

// Enough room for every number in the formats below.
inline constexpr size_t kLongestNumber = 32;

// Write a number into a buffer of that size; the result is the end of what was written.
char* FormatNumber(char* buffer, uint32_t value);
char* FormatNumber(char* buffer, int32_t value);

// Ten significant digits, trailing zeros dropped, scientific form only where the exponent asks for it: 0.125, 1e+10.
char* FormatNumber(char* buffer, double value);

}  // namespace tabrin
