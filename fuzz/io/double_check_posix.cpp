#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "fuzz/check.h"
#include "fuzz/io/scan_check.h"
#include "io/text_number.h"

namespace tabrin_fuzz {

namespace {

// Numbers that are too small for full precision are no failure, those that become 0 are.
bool ConvertedByCLibrary(const std::string& text, double& value) {
    char* end = nullptr;
    errno = 0;
    value = std::strtod(text.c_str(), &end);
    const bool outOfRange = errno == ERANGE && (value == 0.0 || std::isinf(value));
    if (end == text.c_str() || outOfRange) {
        value = 0.0;
        return false;
    }
    return true;
}

void CheckWritten(double value) {
    char expected[40];
    std::snprintf(expected, sizeof expected, "%.10g", value);
    char buffer[tabrin::kLongestNumber];
    const std::string text(buffer, tabrin::FormatNumber(buffer, value));
    Require(text == expected, "FormatNumber of a number with a fraction", [&] { return text + " is not " + expected; });
}

void CheckRead(const std::string& text) {
    double expected = 0.0;
    double value = 99.0;
    const bool converted = ConvertedByCLibrary(text, expected);
    Require(tabrin::ToDouble(text, value) == converted, "ToDouble accepts another text", [&] { return text; });
    const bool same = std::isnan(expected) ? std::isnan(value) : value == expected;
    Require(same && std::signbit(value) == std::signbit(expected), "ToDouble", [&] { return text; });
    CheckWritten(value);
}

}  // namespace

void CheckDoubles(std::string_view bytes) {
    CheckRead(std::string(bytes));
    if (bytes.size() >= sizeof(double)) {
        double value = 0.0;
        std::memcpy(&value, bytes.data(), sizeof value);
        CheckWritten(value);
        char text[40];
        std::snprintf(text, sizeof text, "%.17g", value);
        CheckRead(text);
    }
}

}  // namespace tabrin_fuzz
