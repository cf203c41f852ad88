#include "io/text_number.h"

#include <cmath>
#include <ios>
#include <limits>
#include <locale>

#include "io/io_test_support.h"
#include "locale/decimal_comma.h"

namespace tabrin {
namespace {

template <typename Number>
struct Row {
    std::string_view text;
    Number value;
};

template <typename Number, size_t Count>
void CheckTaken(bool (*convert)(std::string_view, Number&), const Row<Number> (&rows)[Count]) {
    for (const auto& row : rows) {
        Number value = 77;
        EXPECT_TRUE(convert(row.text, value)) << Shown(row.text);
        EXPECT_EQ(value, row.value) << Shown(row.text);
    }
}

template <typename Number>
void CheckRefused(bool (*convert)(std::string_view, Number&), const std::vector<std::string_view>& texts) {
    for (const std::string_view text : texts) {
        Number value = 77;
        EXPECT_FALSE(convert(text, value)) << Shown(text);
        EXPECT_EQ(value, Number{0}) << Shown(text);
    }
}

TEST(ToU32, TakesWhatTheConversionTakes) {
    const Row<uint32_t> rows[] = {
        {"0", 0},
        {"42", 42},
        {"007", 7},
        {"00000000000000000000000000000000000001", 1},
        {"4294967294", 4294967294U},
        {"4294967295", 4294967295U},
        {"+5", 5},
        {" \f\n\r\t\v7", 7},
        {" +7", 7},
    };
    CheckTaken(ToU32, rows);
}

TEST(ToU32, MinusSignWrapsAround) {
    const Row<uint32_t> rows[] = {
        {"-0", 0}, {"-1", 4294967295U}, {" -2", 4294967294U}, {"-2147483648", 2147483648U}, {"-4294967295", 1},
    };
    CheckTaken(ToU32, rows);
}

TEST(ToU32, TrailingCharactersAreIgnored) {
    const Row<uint32_t> rows[] = {
        {"12abc", 12}, {"12 34", 12}, {"12.9", 12},    {"1e3", 1},
        {"0x10", 0},   {"5-", 5},     {"5\0007"sv, 5}, {"4294967295x", 4294967295U},
    };
    CheckTaken(ToU32, rows);
}

// Of all integer conversions alike.
const std::vector<std::string_view> kNoInteger = {
    "",
    " ",
    " \f\n\r\t\v",
    "abc",
    "a1",
    "-",
    "+",
    "+-5",
    "-+5",
    "--5",
    "++5",
    "- 5",
    "+ 5",
    ".5",
    "\"5",
    "\x08"
    "5",
    "\xA0"
    "5",
    "\0005"sv,
    "inf",
    "_1",
};

TEST(ToU32, NoNumberFails) {
    CheckRefused(ToU32, kNoInteger);
}

TEST(ToU32, OutOfRangeFails) {
    CheckRefused(ToU32, {"4294967296", "4294967296x", "-4294967296", "-4294967297", "9999999999",
                         "18446744073709551615", "18446744073709551617", "99999999999999999999999"});
}

TEST(ToI32, TakesWhatTheConversionTakes) {
    const Row<int32_t> rows[] = {
        {"0", 0},
        {"-0", 0},
        {"42", 42},
        {"-42", -42},
        {"+42", 42},
        {" \f\n\r\t\v-7", -7},
        {"-12abc", -12},
        {"12.9", 12},
        {"-1e3", -1},
        {"0x10", 0},
        {"007", 7},
        {"2147483647", 2147483647},
        {"-2147483647", -2147483647},
        {"-2147483648", std::numeric_limits<int32_t>::min()},
        {"2147483647;", 2147483647},
    };
    CheckTaken(ToI32, rows);
}

TEST(ToI32, NoNumberFails) {
    CheckRefused(ToI32, kNoInteger);
}

TEST(ToI32, OutOfRangeFails) {
    CheckRefused(ToI32, {"2147483648", "-2147483649", "4294967295", "-4294967295", "4294967296", "-4294967296",
                         "9223372036854775807", "2147483648x"});
}

TEST(ToI64, TakesWhatTheConversionTakes) {
    const Row<int64_t> rows[] = {
        {"0", 0},
        {"-5", -5},
        {"+5", 5},
        {" \f\n\r\t\v7", 7},
        {"12abc", 12},
        {"0x10", 0},
        {"4294967296", 4294967296},
        {"9223372036854775807", 9223372036854775807},
        {"-9223372036854775807", -9223372036854775807},
        {"-9223372036854775808", std::numeric_limits<int64_t>::min()},
    };
    CheckTaken(ToI64, rows);
}

TEST(ToI64, NoNumberFails) {
    CheckRefused(ToI64, kNoInteger);
}

TEST(ToI64, OutOfRangeFails) {
    CheckRefused(ToI64, {"9223372036854775808", "-9223372036854775809", "18446744073709551615", "-18446744073709551615",
                         "18446744073709551616", "9223372036854775808x"});
}

void CheckDoubles(const std::vector<Row<double>>& rows) {
    for (const auto& row : rows) {
        double value = 77;
        EXPECT_TRUE(ToDouble(row.text, value)) << Shown(row.text);
        EXPECT_EQ(value, row.value) << Shown(row.text);
    }
}

void CheckNoDoubles(const std::vector<std::string_view>& texts) {
    for (const std::string_view text : texts) {
        double value = 77;
        EXPECT_FALSE(ToDouble(text, value)) << Shown(text);
        EXPECT_EQ(value, 0.0) << Shown(text);
        EXPECT_FALSE(std::signbit(value)) << Shown(text);
    }
}

TEST(ToDouble, TakesDecimalNumbers) {
    CheckDoubles({
        {"0", 0},       {"1", 1},        {"0.125", 0.125},    {"-2.5", -2.5}, {"+4", 4},
        {".5", 0.5},    {"-.5", -0.5},   {"5.", 5},           {"1e3", 1000},  {"1E3", 1000},
        {"1e+3", 1000}, {"25e-2", 0.25}, {"1.5e2", 150},      {"007", 7},     {"0.1", 0.1},
        {"1e22", 1e22}, {"1e-3", 0.001}, {" \f\n\r\t\v7", 7}, {" -7", -7},    {" +7", 7},
    });
}

TEST(ToDouble, TakesTheNearestNumber) {
    CheckDoubles({
        {"0.1000000000000000055511151231257827021181583404541015625", 0.1},
        {"9007199254740993", 9007199254740992.0},
        {"9007199254740993.00000000000000000000000000001", 9007199254740994.0},
        {"123456789012345678901234567890", 123456789012345678901234567890.0},
        {"4294967295.5", 4294967295.5},
    });
}

// Short numbers are converted in a way of their own.
TEST(ToDouble, TakesNumbersOfAnyLength) {
    CheckDoubles({
        {"12345678901234", 12345678901234.0},
        {"999999999999999", 999999999999999.0},
        {"1234567890123456", 1234567890123456.0},
        {"9999999999999999", 1e16},
        {"99999999999999999999", 1e20},
        {"18446744073709551617", 18446744073709551616.0},
        {"18446744073709551617.5", 18446744073709551616.0},
        {"0000000000000000000000005", 5},
        {"5.00000000000000000000000", 5},
        {"1234567.89012345", 1234567.89012345},
        {"1234567.890123456", 1234567.890123456},
        {"12345678901234567890.12345", 12345678901234567890.12345},
        {".00000000001", 1e-11},
        {".000000000001", 1e-12},
        {".0000000000001", 1e-13},
        {".000000000000001", 1e-15},
        {".0000000000000001", 1e-16},
        {"0.00000000000001", 1e-14},
        {"99999999.9999999 ", 99999999.9999999},
        {"0.3", 0.3},
        {"123.456\t", 123.456},
        {"-123.456\n", -123.456},
        {"123.456,", 123.456},
        {"123.456e1", 1234.56},
        {"12.34;", 12.34},
    });
}

TEST(ToDouble, TrailingCharactersAreIgnored) {
    CheckDoubles({
        {"1.5abc", 1.5}, {"1,5", 1},  {"1.5.5", 1.5}, {"1e", 1},       {"1e+", 1},  {"1ex", 1}, {"2-", 2},
        {"2 3", 2},      {"2f", 2},   {"3)", 3},      {"5\0006"sv, 5}, {"0x", 0},   {"0xg", 0}, {"0xG", 0},
        {"0x.", 0},      {"0x.g", 0}, {"0xp1", 0},    {"0x-1", 0},     {"0x 1", 0}, {"1x5", 1},
    });
}

TEST(ToDouble, TakesHexadecimalNumbers) {
    CheckDoubles({
        {"0x1.8p3", 12},
        {"0X1.8P3", 12},
        {"0x10", 16},
        {"0xA", 10},
        {"0xa", 10},
        {"0xF", 15},
        {"0xf", 15},
        {"-0x.8", -0.5},
        {"+0x1", 1},
        {" 0x1", 1},
        {"0x1p", 1},
        {"0x1p+", 1},
        {"0x1.p3", 8},
        {"0x1p-1", 0.5},
        {"0x1p+1", 2},
        {"0x1g", 1},
        {"0x0", 0},
        {"0x.0", 0},
        {"0x9", 9},
        {"0x.A", 0.625},
        {"0x1.00000000000008p0", 1},
        {"0x1.000000000000081p0", 1.0000000000000002},
    });
}

TEST(ToDouble, TakesInfinity) {
    const double infinity = std::numeric_limits<double>::infinity();
    CheckDoubles({
        {"inf", infinity},
        {"INF", infinity},
        {"Inf", infinity},
        {"infinity", infinity},
        {"INFINITY", infinity},
        {"-inf", -infinity},
        {"+inf", infinity},
        {"-infinity", -infinity},
        {" inf", infinity},
        {"inform", infinity},
        {"infinit", infinity},
    });
}

TEST(ToDouble, TakesNotANumber) {
    for (const std::string_view text : {"nan", "NAN", "NaN", "-nan", "+nan", " nan", "nan(12)", "nan(", "nano"}) {
        double value = 77;
        EXPECT_TRUE(ToDouble(text, value)) << Shown(text);
        EXPECT_TRUE(std::isnan(value)) << Shown(text);
    }
}

TEST(ToDouble, KeepsTheSignOfZero) {
    double value = 77;
    EXPECT_TRUE(ToDouble("-0", value));
    EXPECT_TRUE(std::signbit(value));
    EXPECT_TRUE(ToDouble("0", value));
    EXPECT_FALSE(std::signbit(value));
    EXPECT_TRUE(ToDouble("-0x0", value));
    EXPECT_TRUE(std::signbit(value));
}

TEST(ToDouble, NoNumberFails) {
    CheckNoDoubles({"",
                    " ",
                    " \f\n\r\t\v",
                    "abc",
                    "x1",
                    "-",
                    "+",
                    ".",
                    "-.",
                    "e5",
                    ".e5",
                    "+-5",
                    "-+5",
                    "--5",
                    "++5",
                    "- 5",
                    "+ 5",
                    "in",
                    "na",
                    "-in",
                    "\"1",
                    ",5",
                    "\xA0"
                    "5",
                    "\x08"
                    "5",
                    "\0005"sv,
                    "--inf",
                    "-+0x1",
                    "--0x1"});
}

TEST(ToDouble, OverflowFails) {
    CheckNoDoubles({"1.8e308", "-1.8e308", "1.7976931348623159e308", "1e309", "1e400", "-1e400", "1e400abc",
                    "1e99999999999999999999", "0x1p1024", "-0x1p1024", "0x1p99999"});
}

TEST(ToDouble, UnderflowToZeroFails) {
    CheckNoDoubles({"2e-324", "-2e-324", "1e-400", "-1e-400", "1e-400abc", "1e-99999999999999999999", "0x1p-1076",
                    "-0x1p-1076", "0x1p-99999"});
}

TEST(ToDouble, TakesTheLimitsOfTheRange) {
    const double smallest = std::numeric_limits<double>::denorm_min();
    CheckDoubles({
        {"1.7976931348623157e308", std::numeric_limits<double>::max()},
        {"-1.7976931348623157e308", std::numeric_limits<double>::lowest()},
        {"0x1.fffffffffffffp1023", std::numeric_limits<double>::max()},
        {"2.2250738585072014e-308", std::numeric_limits<double>::min()},
        {"4.9406564584124654e-324", smallest},
        {"-4.9406564584124654e-324", -smallest},
        {"3e-324", smallest},
        {"1e-323", 2 * smallest},
        {"1e-310", 1e-310},
        {"0x1p-1022", std::numeric_limits<double>::min()},
        {"0x1p-1074", smallest},
        {"0x3p-1074", 3 * smallest},
    });
}

TEST(ToDouble, ZeroWithAnyExponentIsZero) {
    CheckDoubles({{"0e400", 0}, {"0e-400", 0}, {"0.000e999", 0}, {"0.0e-999", 0}, {"0x0p9999", 0}, {"0x0p-9999", 0}});
}

// The comma of the host's locale, without depending on the locales that a machine has.
class CommaPoint : public std::numpunct<char> {
protected:
    [[nodiscard]] char do_decimal_point() const override { return ','; }
    [[nodiscard]] char do_thousands_sep() const override { return '.'; }
    [[nodiscard]] std::string do_grouping() const override { return "\3"; }
};

void CheckPointIsAPoint() {
    double value = 0;
    EXPECT_TRUE(ToDouble("1234.5", value));
    EXPECT_EQ(value, 1234.5);
    EXPECT_TRUE(ToDouble("1,5", value));
    EXPECT_EQ(value, 1.0);
    uint32_t integer = 0;
    EXPECT_TRUE(ToU32("1.234", integer));
    EXPECT_EQ(integer, 1U);
    std::string text;
    AppendNumber(text, 1234567.5);
    AppendNumber(text += ' ', uint32_t{1234567});
    AppendNumber(text += ' ', int32_t{-1234567});
    EXPECT_EQ(text, "1234567.5 1234567 -1234567");
}

// --- Digits, and numbers in front of a delimiter

TEST(LeadingDigits, OfEightCharacters) {
    const struct {
        std::string_view text;
        size_t count;
        uint64_t value;
    } rows[] = {
        {"abcdefgh", 0, 0},
        {"-1234567", 0, 0},
        {" 1234567", 0, 0},
        {"/1234567", 0, 0},
        {":1234567", 0, 0},
        {"\xFF\x31\x32xxxxx", 0, 0},
        {"\x8A\x31xxxxxx", 0, 0},
        {"\xB0\xB1\xB2xxxxx", 0, 0},
        {"0xxxxxxx", 1, 0},
        {"7|12345,", 1, 7},
        {"9/999999", 1, 9},
        {"9:999999", 1, 9},
        {"42 34567", 2, 42},
        {"99.99999", 2, 99},
        {"007abcde", 3, 7},
        {"12345678", 8, 12345678},
        {"1234|567", 4, 1234},
        {"12345@67", 5, 12345},
        {"123456)7", 6, 123456},
        {"1234567]", 7, 1234567},
        {"99999999", 8, 99999999},
        {"00000000", 8, 0},
        {"0000001 ", 7, 1},
        {"98765432", 8, 98765432},
        {"12\0"
         "34567"sv,
         2, 12},
        {"12\xFF"
         "34567",
         2, 12},
        {"9876543\x8A", 7, 9876543},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(Shown(row.text));
        ASSERT_EQ(row.text.size(), 8U);
        const LeadingDigits digits(HeadAt(row.text.data()));
        EXPECT_EQ(digits.count, row.count);
        EXPECT_EQ(digits.value, row.value);
        EXPECT_EQ(digits.AreAll(), row.count >= 1 && row.count <= 7);
    }
}

TEST(LeadingDigits, OfShorterTexts) {
    const struct {
        std::string_view text;
        size_t count;
        uint64_t value;
    } rows[] = {
        {"", 0, 0},           {"x", 0, 0},       {"5", 1, 5},         {"50", 2, 50},         {"5x", 1, 5},
        {"507", 3, 507},      {"5070", 4, 5070}, {"50709", 5, 50709}, {"507091", 6, 507091}, {"5070912", 7, 5070912},
        {"50709x", 5, 50709},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(Shown(row.text));
        const LeadingDigits digits(HeadOf(row.text));
        EXPECT_EQ(digits.count, row.count);
        EXPECT_EQ(digits.value, row.value);
        EXPECT_EQ(digits.AreAll(), row.count != 0);
    }
}

// Whatever ends the digits, and whatever comes behind that.
TEST(LeadingDigits, EveryByteBehindEveryNumberOfDigits) {
    constexpr uint64_t kValues[2][8] = {{0, 1, 19, 190, 1909, 19090, 190909, 1909090},
                                        {0, 9, 99, 999, 9999, 99999, 999999, 9999999}};
    constexpr std::string_view kDigits[2] = {"1909090", "9999999"};
    size_t checked = 0;
    for (size_t i = 0; i < 2; ++i) {
        for (size_t count = 0; count < 8; ++count) {
            for (int byte = 0; byte < 256; ++byte) {
                if (byte >= '0' && byte <= '9') {
                    continue;
                }
                for (const char behind : {'\0', '0', '9', ':', 'x', '\x80', '\x8A', '\xC6', '\xFF'}) {
                    std::string text(8, behind);
                    text.replace(0, count, kDigits[i].substr(0, count));
                    text[count] = static_cast<char>(byte);
                    const LeadingDigits digits(HeadAt(text.data()));
                    ASSERT_EQ(digits.count, count) << Shown(text);
                    ASSERT_EQ(digits.value, kValues[i][count]) << Shown(text);
                    ASSERT_EQ(digits.AreAll(), count != 0) << Shown(text);
                    ++checked;
                }
            }
        }
    }
    EXPECT_EQ(checked, 2U * 8U * 246U * 9U);
}

TEST(TakeDigits, TakesThoseAtTheFront) {
    const struct {
        std::string_view text;
        uint64_t before;
        size_t count;
        uint64_t number;
        std::string_view rest;
    } rows[] = {
        {"", 0, 0, 0, ""},
        {"x1", 0, 0, 0, "x1"},
        {" 1", 0, 0, 0, " 1"},
        {"-1", 0, 0, 0, "-1"},
        {"0", 0, 1, 0, ""},
        {"007x", 0, 3, 7, "x"},
        {"12.5", 0, 2, 12, ".5"},
        {"9:", 0, 1, 9, ":"},
        {"1/", 0, 1, 1, "/"},
        {"34", 12, 2, 1234, ""},
        {"x", 12, 0, 12, "x"},
        {"1\x002"sv, 0, 1, 1, "\x002"sv},
        {"9999999999999999999", 0, 19, 9999999999999999999U, ""},
        {"18446744073709551615", 0, 20, 18446744073709551615U, ""},
        // What follows counts from 0 again.
        {"18446744073709551616", 0, 20, 0, ""},
        {"18446744073709551623", 0, 20, 7, ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(Shown(row.text));
        std::string_view text = row.text;
        uint64_t number = row.before;
        EXPECT_EQ(TakeDigits(text, number), row.count);
        EXPECT_EQ(number, row.number);
        EXPECT_EQ(text, row.rest);
    }
}

// From none to more than 64 bits hold, with a number in front of them, in memory of just their size.
TEST(TakeDigits, TakesAnyNumberOfThem) {
    constexpr std::string_view kDigits = "9018273645546372819012345";
    for (const uint64_t before : {uint64_t{0}, uint64_t{1}, uint64_t{42}, uint64_t{18446744073709551615U}}) {
        for (size_t count = 0; count <= kDigits.size(); ++count) {
            // Digit by digit; what does not fit any more wraps around.
            uint64_t expected = before;
            for (size_t i = 0; i < count; ++i) {
                expected = expected * 10 + static_cast<uint64_t>(kDigits[i] - '0');
            }
            for (const std::string_view behind :
                 {"", ".", ":", "/", " 1", "x1234567", "\xFF\x31\x31", "\x8A", "-123456789"}) {
                const std::string text = std::string(kDigits.substr(0, count)).append(behind);
                SCOPED_TRACE(Shown(text) + " behind " + std::to_string(before));
                const std::vector<char> bytes(text.begin(), text.end());
                std::string_view rest(bytes.data(), bytes.size());
                uint64_t number = before;
                ASSERT_EQ(TakeDigits(rest, number), count);
                ASSERT_EQ(number, expected);
                ASSERT_EQ(rest, behind);
            }
        }
    }
}

template <typename Number>
struct UntilRow {
    std::string_view text;
    size_t pos;
    char delimiter;
    bool taken;
    Number value;
    size_t found;
};

template <typename Number, size_t Count>
void CheckUntilChar(bool (*convert)(std::string_view, size_t, char, Number&, size_t&),
                    const UntilRow<Number> (&rows)[Count]) {
    for (const auto& row : rows) {
        SCOPED_TRACE(Shown(row.text) + " from " + std::to_string(row.pos) + " to " + row.delimiter);
        Number value = 77;
        size_t found = 77;
        EXPECT_EQ(convert(row.text, row.pos, row.delimiter, value, found), row.taken);
        EXPECT_EQ(value, row.value);
        EXPECT_EQ(found, row.found);
    }
}

TEST(U32UntilChar, IsTheNumberInFrontOfTheDelimiter) {
    const UntilRow<uint32_t> rows[] = {
        {"12|8@", 0, '|', true, 12, 2},
        {"12|8@", 1, '|', true, 2, 2},
        {"12|8@", 3, '@', true, 8, 4},
        {"12|8@", 0, '@', true, 12, 4},
        {"0|", 0, '|', true, 0, 1},
        {"1|2|", 0, '|', true, 1, 1},
        {" \t\n7|", 0, '|', true, 7, 4},
        {"7 |", 0, '|', true, 7, 2},
        {"1 2|", 0, '|', true, 1, 3},
        {"12x|", 0, '|', true, 12, 3},
        {"12.5|", 0, '|', true, 12, 4},
        {"+5|", 0, '|', true, 5, 2},
        {"-1|", 0, '|', true, 4294967295U, 2},
        {"0000000012|", 0, '|', true, 12, 10},
        {"123456789|", 0, '|', true, 123456789, 9},
        {"999999999|", 0, '|', true, 999999999, 9},
        {"1234567890|", 0, '|', true, 1234567890, 10},
        {"4294967295|", 0, '|', true, 4294967295U, 10},
        {"4294967296|", 0, '|', false, 0, 10},
        {"99999999999999999999|", 0, '|', false, 0, 20},
        {"18446744073709551617|", 0, '|', false, 0, 20},
        {"|", 0, '|', false, 0, 0},
        {" |", 0, '|', false, 0, 1},
        {"|5|", 0, '|', false, 0, 0},
        {"x5|", 0, '|', false, 0, 2},
        {"- 5|", 0, '|', false, 0, 3},
        {"--5|", 0, '|', false, 0, 3},
        // Without a delimiter there is no number.
        {"", 0, '|', false, 0, kNpos},
        {"12", 0, '|', false, 0, kNpos},
        {"12 ", 0, '|', false, 0, kNpos},
        {"12|", 2, '@', false, 0, kNpos},
        {"12|", 3, '|', false, 0, kNpos},
        {"12|", 4, '|', false, 0, kNpos},
        {"12|", kNpos, '|', false, 0, kNpos},
    };
    CheckUntilChar(U32UntilChar, rows);
}

TEST(I32UntilChar, IsTheNumberInFrontOfTheDelimiter) {
    const UntilRow<int32_t> rows[] = {
        {"12;8|", 0, ';', true, 12, 2},
        {"12;8|", 1, ';', true, 2, 2},
        {"12;8|", 3, '|', true, 8, 4},
        {"12;8|", 0, '|', true, 12, 4},
        {"-12;-8|", 0, ';', true, -12, 3},
        {"-12;-8|", 4, '|', true, -8, 6},
        {" \t\n-7;", 0, ';', true, -7, 5},
        {"-7 ;", 0, ';', true, -7, 3},
        {"1 2;", 0, ';', true, 1, 3},
        {"12.5;", 0, ';', true, 12, 4},
        {"2147483647;", 0, ';', true, 2147483647, 10},
        {"-2147483648;", 0, ';', true, std::numeric_limits<int32_t>::min(), 11},
        {"2147483648;", 0, ';', false, 0, 10},
        {"-2147483649;", 0, ';', false, 0, 11},
        {";", 0, ';', false, 0, 0},
        {" ;", 0, ';', false, 0, 1},
        {"x5;", 0, ';', false, 0, 2},
        {"- 5;", 0, ';', false, 0, 3},
        {"", 0, ';', false, 0, kNpos},
        {"12", 0, ';', false, 0, kNpos},
        {"12;", 2, '|', false, 0, kNpos},
        {"12;", 3, ';', false, 0, kNpos},
        {"12;", 4, ';', false, 0, kNpos},
        {"12;", kNpos, ';', false, 0, kNpos},
    };
    CheckUntilChar(I32UntilChar, rows);
}

TEST(DoubleUntilChar, IsTheNumberInFrontOfTheDelimiter) {
    const UntilRow<double> rows[] = {
        {"0.5,-40)", 0, ',', true, 0.5, 3},
        {"0.5,-40)", 4, ')', true, -40.0, 7},
        {"0.5,-40)", 0, ')', true, 0.5, 7},
        {"1,", 0, ',', true, 1.0, 1},
        {" \t1,", 0, ',', true, 1.0, 3},
        {"1 ,", 0, ',', true, 1.0, 2},
        {"+1.25,", 0, ',', true, 1.25, 5},
        {"-1.25,", 0, ',', true, -1.25, 5},
        {".5,", 0, ',', true, 0.5, 2},
        {"5.,", 0, ',', true, 5.0, 2},
        {"-.5,", 0, ',', true, -0.5, 3},
        {"0.001,", 0, ',', true, 0.001, 5},
        {"8031.875]", 0, ']', true, 8031.875, 8},
        {"1;2,", 0, ',', true, 1.0, 3},
        {"1.5.2,", 0, ',', true, 1.5, 5},
        {"1e3,", 0, ',', true, 1000.0, 3},
        {"1E-2,", 0, ',', true, 0.01, 4},
        {"0x10,", 0, ',', true, 16.0, 4},
        {"12x,", 0, ',', true, 12.0, 3},
        {"123456789012345,", 0, ',', true, 123456789012345.0, 15},
        {"1234567890123456,", 0, ',', true, 1234567890123456.0, 16},
        {"0.000000000000001,", 0, ',', true, 1e-15, 17},
        {"-inf,", 0, ',', true, -std::numeric_limits<double>::infinity(), 4},
        {",", 0, ',', false, 0.0, 0},
        {" ,", 0, ',', false, 0.0, 1},
        {".,", 0, ',', false, 0.0, 1},
        {"-,", 0, ',', false, 0.0, 1},
        {"x,", 0, ',', false, 0.0, 1},
        {"--5,", 0, ',', false, 0.0, 3},
        {"+-5,", 0, ',', false, 0.0, 3},
        {"- 5,", 0, ',', false, 0.0, 3},
        {"1e999,", 0, ',', false, 0.0, 5},
        {"1e-999,", 0, ',', false, 0.0, 6},
        {"", 0, ',', false, 0.0, kNpos},
        {"0.5", 0, ',', false, 0.0, kNpos},
        {"0.5,", 3, ')', false, 0.0, kNpos},
        {"0.5,", 4, ',', false, 0.0, kNpos},
        {"0.5,", 5, ',', false, 0.0, kNpos},
        {"0.5,", kNpos, ',', false, 0.0, kNpos},
    };
    CheckUntilChar(DoubleUntilChar, rows);
}

TEST(DoubleUntilChar, KeepsTheSignOfZero) {
    double value = 77.0;
    size_t found = 77;
    EXPECT_TRUE(DoubleUntilChar("-0,", 0, ',', value, found));
    EXPECT_TRUE(value == 0.0 && std::signbit(value));
    EXPECT_TRUE(DoubleUntilChar("0,", 0, ',', value, found));
    EXPECT_TRUE(value == 0.0 && !std::signbit(value));
}

TEST(DoubleUntilChar, TakesNotANumber) {
    double value = 77.0;
    size_t found = 77;
    EXPECT_TRUE(DoubleUntilChar("nan,", 0, ',', value, found));
    EXPECT_TRUE(std::isnan(value));
    EXPECT_EQ(found, 3U);
}

// --- The same wherever the text ends: what is plain and has room behind it is read in a way of its own

template <typename Number>
struct InFrontRow {
    std::string_view text;
    bool taken;
    Number value;
};

bool AreSame(double a, double b) {
    return a == b && std::signbit(a) == std::signbit(b);
}
template <typename Number>
bool AreSame(Number a, Number b) {
    return a == b;
}

template <typename Number>
void CheckOneInFront(bool (*convert)(std::string_view, size_t, char, Number&, size_t&), const InFrontRow<Number>& row,
                     std::string_view before, std::string_view behind) {
    const std::string whole = std::string(before).append(row.text).append(behind);
    SCOPED_TRACE(Shown(whole) + " from " + std::to_string(before.size()));
    const std::vector<char> bytes(whole.begin(), whole.end());
    const bool isThere = !behind.empty();
    Number value = 77;
    size_t found = 77;
    EXPECT_EQ(convert({bytes.data(), bytes.size()}, before.size(), '|', value, found), isThere && row.taken);
    EXPECT_TRUE(AreSame(value, isThere ? row.value : Number{0})) << value << " instead of " << row.value;
    EXPECT_EQ(found, isThere ? before.size() + row.text.size() : kNpos);
}

// The text ends 0 to 18 characters behind the number: with the delimiter, if there is a character at all.
template <typename Number, size_t Count>
void CheckWhereverTheTextEnds(bool (*convert)(std::string_view, size_t, char, Number&, size_t&),
                              const InFrontRow<Number> (&rows)[Count]) {
    for (const std::string_view filler :
         {"|123456789012345678", "|abcdefghijklmnopqr", "||||||||||||||||||||", "|.5|-6.25|+7|8e3|12",
          "|\xFF\xB1\x8A \xFF\xB1\x8A \xFF\xB1\x8A \xFF\xB1\x8A \xFF\xB1\x8A "}) {
        for (const auto& row : rows) {
            for (size_t size = 0; size <= 18; ++size) {
                CheckOneInFront(convert, row, "", filler.substr(0, size));
                CheckOneInFront(convert, row, "12345678|", filler.substr(0, size));
            }
        }
    }
}

TEST(U32UntilChar, IsTheSameWhereverTheTextEnds) {
    const InFrontRow<uint32_t> rows[] = {
        {"", false, 0},
        {" ", false, 0},
        {"0", true, 0},
        {"7", true, 7},
        {"63", true, 63},
        {"123456", true, 123456},
        {"1234567", true, 1234567},
        {"9999999", true, 9999999},
        {"12345678", true, 12345678},
        {"99999999", true, 99999999},
        {"123456789", true, 123456789},
        {"1234567890", true, 1234567890},
        {"4294967295", true, 4294967295U},
        {"4294967296", false, 0},
        {"0000000", true, 0},
        {"0000012", true, 12},
        {"00000012", true, 12},
        {"0000000012", true, 12},
        {"-0", true, 0},
        {"-5", true, 4294967291U},
        {"+5", true, 5},
        {"-", false, 0},
        {"+", false, 0},
        {"5.", true, 5},
        {".5", false, 0},
        {"1.25", true, 1},
        {" 5", true, 5},
        {"\t\n 1234567", true, 1234567},
        {"5 ", true, 5},
        {"1234567 \r", true, 1234567},
        {" \v5\f ", true, 5},
        {"1 2", true, 1},
        {"1 234567", true, 1},
        {"12345x", true, 12345},
        {"x12345", false, 0},
        {"123456\xFF", true, 123456},
        {"\xA0"
         "5",
         false, 0},
        {"12,34", true, 12},
        {"1e3", true, 1},
    };
    CheckWhereverTheTextEnds(U32UntilChar, rows);
}

TEST(I32UntilChar, IsTheSameWhereverTheTextEnds) {
    const InFrontRow<int32_t> rows[] = {
        {"", false, 0},
        {" ", false, 0},
        {"0", true, 0},
        {"-0", true, 0},
        {"7", true, 7},
        {"-7", true, -7},
        {"1234567", true, 1234567},
        {"-1234567", true, -1234567},
        {"-9999999", true, -9999999},
        {"12345678", true, 12345678},
        {"-12345678", true, -12345678},
        {"123456789", true, 123456789},
        {"-123456789", true, -123456789},
        {"1234567890", true, 1234567890},
        {"2147483647", true, 2147483647},
        {"2147483648", false, 0},
        {"-2147483648", true, std::numeric_limits<int32_t>::min()},
        {"-2147483649", false, 0},
        {"4294967295", false, 0},
        {"-0000005", true, -5},
        {"-00000005", true, -5},
        {"+5", true, 5},
        {"-", false, 0},
        {"--5", false, 0},
        {"+-5", false, 0},
        {"- 5", false, 0},
        {"-x", false, 0},
        {"5.", true, 5},
        {"-5.5", true, -5},
        {".5", false, 0},
        {" 5", true, 5},
        {" \t-1234567", true, -1234567},
        {"5 ", true, 5},
        {"-5 \v", true, -5},
        {"\n-1234567\f\r ", true, -1234567},
        {"-1 2", true, -1},
        {"1 -2", true, 1},
        {"5-", true, 5},
        {"12345x", true, 12345},
        {"-12345 x", true, -12345},
        {"x12345", false, 0},
        {"\xFF", false, 0},
    };
    CheckWhereverTheTextEnds(I32UntilChar, rows);
}

TEST(DoubleUntilChar, IsTheSameWhereverTheTextEnds) {
    const InFrontRow<double> rows[] = {
        {"", false, 0.0},
        {" ", false, 0.0},
        {"0", true, 0.0},
        {"-0", true, -0.0},
        {"-0.0", true, -0.0},
        {"-.0", true, -0.0},
        {"-0.000", true, -0.0},
        {"0.0", true, 0.0},
        {"+0", true, 0.0},
        {"1", true, 1.0},
        {"-40", true, -40.0},
        {"1234567", true, 1234567.0},
        {"-1234567", true, -1234567.0},
        {"12345678", true, 12345678.0},
        {"-12345678", true, -12345678.0},
        {"123456789", true, 123456789.0},
        {"4294967295", true, 4294967295.0},
        {"12345678.5", true, 12345678.5},
        {"-12345678.5", true, -12345678.5},
        {"1234567.5", true, 1234567.5},
        {"0.1", true, 0.1},
        {"0.3", true, 0.3},
        {"-0.7", true, -0.7},
        {"1.25", true, 1.25},
        {"-1.25", true, -1.25},
        {"8031.875", true, 8031.875},
        {"1.2345678", true, 1.2345678},
        {"1.23456789", true, 1.23456789},
        {"-1.2345678", true, -1.2345678},
        {"-1.23456789", true, -1.23456789},
        {"0.0000001", true, 1e-7},
        {"0.00000001", true, 1e-8},
        {"0.0000000", true, 0.0},
        {"1234567.1234567", true, 1234567.1234567},
        {"-1234567.1234567", true, -1234567.1234567},
        {"9999999.9999999", true, 9999999.9999999},
        {"-9999999.9999999", true, -9999999.9999999},
        {"1234567.12345678", true, 1234567.12345678},
        {"-1234567.12345678", true, -1234567.12345678},
        {"12345678.1234567", true, 12345678.1234567},
        {"0000001.5000000", true, 1.5},
        {"00000001.5", true, 1.5},
        {"5.", true, 5.0},
        {"-5.", true, -5.0},
        {"1234567.", true, 1234567.0},
        {".5", true, 0.5},
        {"-.5", true, -0.5},
        {".1234567", true, 0.1234567},
        {"+5", true, 5.0},
        {"+1.25", true, 1.25},
        {"-", false, 0.0},
        {"+", false, 0.0},
        {".", false, 0.0},
        {"-.", false, 0.0},
        {"--5", false, 0.0},
        {"-+5", false, 0.0},
        {"- 5", false, 0.0},
        {" 1.25", true, 1.25},
        {"\t\n-1.25", true, -1.25},
        {"1.25 ", true, 1.25},
        {"-1.25 \r\v\f", true, -1.25},
        {"1 .25", true, 1.0},
        {"1. 25", true, 1.0},
        {"1 2", true, 1.0},
        {"1.5.5", true, 1.5},
        {"1..5", true, 1.0},
        {"1.-5", true, 1.0},
        {"1-5", true, 1.0},
        {"1,5", true, 1.0},
        {"1.25x", true, 1.25},
        {"x1.25", false, 0.0},
        {"1.25\xFF", true, 1.25},
        {"1\xB1", true, 1.0},
        {"1e3", true, 1000.0},
        {"1.5e2", true, 150.0},
        {"1.5E-2", true, 0.015},
        {"0x10", true, 16.0},
        {"inf", true, std::numeric_limits<double>::infinity()},
        {"-inf", true, -std::numeric_limits<double>::infinity()},
        {"1e999", false, 0.0},
        {"1e-999", false, 0.0},
    };
    CheckWhereverTheTextEnds(DoubleUntilChar, rows);
}

std::string RandomNumberText(Random& random) {
    static constexpr std::string_view kCharacters = "01234567899901......-+ \teEx";
    std::string text;
    for (size_t i = random.Below(6); i > 0; --i) {
        for (size_t length = random.Below(12); length > 0; --length) {
            text += kCharacters[random.Below(random.Below(2) == 0 ? 14 : kCharacters.size())];
        }
        text += "|@,)]"[random.Below(5)];
    }
    return text;
}

// They only save the way: what counts is the text up to the delimiter.
TEST(NumbersUntilChar, AreThoseOfTheTextUntilThere) {
    Random random(5);
    size_t whole = 0;
    size_t fractions = 0;
    for (int round = 0; round < 100000; ++round) {
        const std::string text = RandomNumberText(random);
        const size_t pos = random.Below(text.size() + 2);
        const char delimiter = "|@,)]"[random.Below(5)];
        size_t expectedFound = 77;
        const std::string_view number = TextUntilChar(text, pos, delimiter, expectedFound);
        uint32_t expectedU32 = 77;
        double expected = 77.0;
        const bool isU32 = ToU32(number, expectedU32);
        const bool isDouble = ToDouble(number, expected);

        SCOPED_TRACE(Shown(text) + " from " + std::to_string(pos) + " to " + delimiter);
        uint32_t u32 = 78;
        size_t found = 78;
        ASSERT_EQ(U32UntilChar(text, pos, delimiter, u32, found), isU32);
        ASSERT_EQ(u32, expectedU32);
        ASSERT_EQ(found, expectedFound);
        double value = 78.0;
        found = 78;
        ASSERT_EQ(DoubleUntilChar(text, pos, delimiter, value, found), isDouble);
        ASSERT_EQ(value, expected);
        ASSERT_EQ(std::signbit(value), std::signbit(expected));
        ASSERT_EQ(found, expectedFound);
        whole += isU32 ? 1 : 0;
        fractions += isDouble && value != std::floor(value) ? 1 : 0;
    }
    EXPECT_GT(whole, 10000U);
    EXPECT_GT(fractions, 2000U);
}

// A number that is read without a look at what follows, or almost one.
std::string RandomPlainNumber(Random& random) {
    const auto digits = [&random](size_t most) {
        std::string text;
        for (size_t count = random.Below(most + 1); count > 0; --count) {
            text += static_cast<char>('0' + random.Below(10));
        }
        return text;
    };
    std::string text = random.Below(3) == 0 ? "-" : "";
    text += digits(random.Below(8) == 0 ? 11 : 8);
    if (random.Below(2) == 0) {
        text += '.' + digits(9);
    }
    if (random.Below(8) == 0) {
        text.insert(random.Below(text.size() + 1), 1, " \t+-x\xFF"[random.Below(6)]);
    }
    return text;
}

template <typename Number>
bool AgreesWithTextUntilThere(bool (*untilChar)(std::string_view, size_t, char, Number&, size_t&),
                              bool (*convert)(std::string_view, Number&), std::string_view text, size_t pos,
                              char delimiter, bool& isTaken) {
    size_t expectedFound = 77;
    Number expected = 77;
    const bool isExpected = convert(TextUntilChar(text, pos, delimiter, expectedFound), expected);
    Number value = 78;
    size_t found = 78;
    isTaken = untilChar(text, pos, delimiter, value, found);
    return isTaken == isExpected && AreSame(value, expected) && found == expectedFound;
}

TEST(NumbersUntilChar, AreThoseOfTheTextUntilThereAtEveryPosition) {
    Random random(15);
    size_t taken = 0;
    for (int round = 0; round < 4000; ++round) {
        std::string text;
        for (size_t i = 1 + random.Below(5); i > 0; --i) {
            text += RandomPlainNumber(random) + "|,;"[random.Below(3)];
        }
        const std::vector<char> bytes(text.begin(), text.end());
        const std::string_view view(bytes.data(), bytes.size());
        for (size_t pos = 0; pos <= text.size() + 1; ++pos) {
            for (const char delimiter : {'|', ',', ';'}) {
                SCOPED_TRACE(Shown(text) + " from " + std::to_string(pos) + " to " + delimiter);
                bool isU32 = false;
                bool isI32 = false;
                bool isDouble = false;
                ASSERT_TRUE(AgreesWithTextUntilThere(U32UntilChar, ToU32, view, pos, delimiter, isU32));
                ASSERT_TRUE(AgreesWithTextUntilThere(I32UntilChar, ToI32, view, pos, delimiter, isI32));
                ASSERT_TRUE(AgreesWithTextUntilThere(DoubleUntilChar, ToDouble, view, pos, delimiter, isDouble));
                taken += (isU32 ? 1 : 0) + (isI32 ? 1 : 0) + (isDouble ? 1 : 0);
            }
        }
    }
    EXPECT_GT(taken, 300000U);
}

TEST(Numbers, DoNotDependOnTheLocaleOfStreams) {
    const std::locale before = std::locale::global(std::locale(std::locale::classic(), new CommaPoint));
    CheckPointIsAPoint();
    std::locale::global(before);
}

TEST(Numbers, DoNotDependOnTheLocaleOfTheHost) {
    const tabrin_test::LocaleScope scope;
    if (!tabrin_test::UseAnyLocaleWithDecimalComma()) {
        GTEST_SKIP() << tabrin_test::kNoDecimalComma;
    }
    CheckPointIsAPoint();
}

TEST(AppendNumber, IntegersAreWrittenInDecimal) {
    std::string text = "x";
    AppendNumber(text, uint32_t{0});
    AppendNumber(text += ' ', uint32_t{7});
    AppendNumber(text += ' ', uint32_t{4294967295U});
    AppendNumber(text += ' ', int32_t{0});
    AppendNumber(text += ' ', int32_t{2147483647});
    AppendNumber(text += ' ', std::numeric_limits<int32_t>::min());
    EXPECT_EQ(text, "x0 7 4294967295 0 2147483647 -2147483648");
}

TEST(AppendNumber, IntegersHaveAllTheirDigitsAndNoMore) {
    constexpr std::string_view kTexts[] = {"0",       "9",       "10",       "99",        "100",      "101",
                                           "999",     "1000",    "1001",     "9999",      "10000",    "10010",
                                           "99999",   "100000",  "100100",   "999000",    "999999",   "1000000",
                                           "1000001", "9999999", "12345678", "123456789", "999999999"};
    for (const std::string_view expected : kTexts) {
        const int32_t number = std::stoi(std::string(expected));
        std::string text;
        AppendNumber(text, static_cast<uint32_t>(number));
        EXPECT_EQ(text, expected);
        text.clear();
        AppendNumber(text, number);
        EXPECT_EQ(text, expected);
        if (number != 0) {
            text.clear();
            AppendNumber(text, -number);
            EXPECT_EQ(text, "-" + std::string(expected));
        }
    }
}

TEST(AppendNumber, DoublesHaveTenSignificantDigits) {
    const double infinity = std::numeric_limits<double>::infinity();
    const Row<double> rows[] = {
        {"0", 0.0},
        {"-0", -0.0},
        {"1", 1.0},
        {"-1", -1.0},
        {"0.125", 0.125},
        {"0.1", 0.1},
        {"0.3", 0.1 + 0.2},
        // Some of the smallest steps away from the doubles of these decimals.
        {"0.0001013", 0x1.a8e20bf93285fp-14},
        {"0.00010193", 0x1.ab86810e07802p-14},
        {"-2.5", -2.5},
        {"100000", 100000.0},
        {"1000000", 1000000.0},
        {"1000000000", 1e9},
        {"9999999999", 9999999999.0},
        {"4294967295", 4294967295.0},
        {"1234567891", 1234567890.6},
        {"1234567890", 1234567890.4},
        {"123456789.1", 123456789.12},
        {"0.3333333333", 1.0 / 3.0},
        {"0.6666666667", 2.0 / 3.0},
        {"1.23456789", 1.23456789012},
        {"1.234567891", 1.23456789087},
        {"0.000123456789", 0.00012345678901},
        {"0.0001", 0.0001},
        {"0.00012345", 0.00012345},
        {"0.00010001", 0.00010001},
        {"0.000999999", 0.000999999},
        {"0.123999999", 0.123999999},
        {"1.2345678", 1.2345678},
        {"12.3456789", 12.3456789},
        {"1.000000001", 1.000000001},
        {"1", 1.0000000001},
        {"0.100000001", 0.100000001},
        {"0.1000000001", 0.1000000001},
        {"0.1", 0.10000000001},
        {"99999.99999", 99999.99999},
        {"-123.456", -123.456},
        {"1.05", 1.05},
        {"10.01", 10.01},
        {"1000000001", 1000000001.0},
        {"-0.5", -0.5},
        {"inf", infinity},
        {"-inf", -infinity},
        {"nan", std::numeric_limits<double>::quiet_NaN()},
    };
    for (const auto& row : rows) {
        std::string text;
        AppendNumber(text, row.value);
        EXPECT_EQ(text, row.text) << std::hexfloat << row.value;
    }
}

TEST(AppendNumber, LargeAndSmallDoublesHaveAnExponent) {
    const Row<double> rows[] = {
        {"1e+10", 1e10},
        {"-1e+10", -1e10},
        {"1e+10", 9999999999.9},
        {"1.23456789e+10", 12345678901.0},
        {"1.5e+10", 1.5e10},
        {"1.844674407e+19", 18446744073709551615.0},
        {"1e+100", 1e100},
        {"1.797693135e+308", std::numeric_limits<double>::max()},
        {"1e-05", 0.00001},
        {"1.5e-05", 0.000015},
        {"9.9999e-05", 0.000099999},
        {"1e-300", 1e-300},
        {"4.940656458e-324", std::numeric_limits<double>::denorm_min()},
    };
    for (const auto& row : rows) {
        std::string text = "f=";
        AppendNumber(text, row.value);
        EXPECT_EQ(text, "f=" + std::string(row.text)) << std::hexfloat << row.value;
    }
}

}  // namespace
}  // namespace tabrin
