// Numbers from text and back, the same on every platform and under every locale.
//
// The conversions from text follow the C runtime's strtoul, strtol, strtoll and strtod where `long` has 32 bits: leading
// blanks and a sign are taken, trailing characters ignored, numbers out of range refused. On failure the value is 0.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tabrin {

// A minus sign wraps around: "-1" is 4294967295. Magnitudes above 4294967295 fail with either sign.
bool ToU32(std::string_view text, uint32_t& value);
bool ToI32(std::string_view text, int32_t& value);
bool ToI64(std::string_view text, int64_t& value);

// Also takes hexadecimal ("0x1.8p3"), "inf" and "nan". Fails on overflow and on underflow to zero; subnormals pass.
bool ToDouble(std::string_view text, double& value);

void AppendNumber(std::string& text, uint32_t value);
void AppendNumber(std::string& text, int32_t value);

// Ten significant digits, trailing zeros dropped, scientific form only where the exponent asks for it: 0.125, 1e+10.
void AppendNumber(std::string& text, double value);

}  // namespace tabrin
