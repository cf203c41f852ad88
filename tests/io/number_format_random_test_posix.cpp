// The short cut for numbers of few digits against printf. Not on Windows, whose printf writes exponents of three
// digits.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <ios>
#include <string>

#include "io/io_test_support.h"
#include "io/text_number.h"

namespace tabrin {
namespace {

std::string Printed(double value) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.10g", value);
    return buffer;
}

double AnyBits(uint64_t bits) {
    double value = 0.0;
    std::memcpy(&value, &bits, sizeof value);
    return std::isnan(value) ? 0.0 : value;
}

TEST(NumberFormat, AgreesWithPrintfOnRandomNumbers) {
    Random random(12);
    for (int round = 0; round < 200000; ++round) {
        const auto number = static_cast<double>(random.Below(20'000'000'000U));
        const double decimal = number / std::pow(10.0, static_cast<double>(random.Below(16)));
        const double values[] = {
            decimal,
            std::nextafter(decimal, 0.0),
            std::nextafter(decimal, 1e300),
            number / std::pow(2.0, static_cast<double>(random.Below(40))),
            AnyBits((uint64_t{random.Below(0x100000000U)} << 32) | random.Below(0x100000000U)),
        };
        for (const double value : values) {
            for (const double either : {value, -value}) {
                std::string text;
                AppendNumber(text, either);
                ASSERT_EQ(text, Printed(either)) << std::hexfloat << either << ", round " << round;
            }
        }
    }
}

}  // namespace
}  // namespace tabrin
