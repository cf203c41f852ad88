#include "io/text_scan.h"

#include "io/io_test_support.h"

namespace tabrin {
namespace {

TEST(Blanks, AreTheSixOfTheClassicLocale) {
    for (int byte = 0; byte < 256; ++byte) {
        const bool blank = byte == 0x20 || byte == 0x0C || byte == 0x0A || byte == 0x0D || byte == 0x09 || byte == 0x0B;
        EXPECT_EQ(IsBlank(static_cast<char>(byte)), blank) << byte;
    }
}

TEST(Digits, AreTheTenOfTheClassicLocale) {
    for (int byte = 0; byte < 256; ++byte) {
        EXPECT_EQ(IsDigit(static_cast<char>(byte)), byte >= 0x30 && byte <= 0x39) << byte;
    }
}

TEST(TakeBlanks, TakesThoseAtTheFront) {
    const struct {
        std::string_view text;
        std::string_view rest;
    } rows[] = {
        {"", ""},
        {" ", ""},
        {" \f\n\r\t\v", ""},
        {"a", "a"},
        {"a b ", "a b "},
        {"  a b ", "a b "},
        {"\t\n7|", "7|"},
        {"\0 a"sv, "\0 a"sv},
        {"\x08 a", "\x08 a"},
        {"\xA0 a", "\xA0 a"},
        {"\x85 a", "\x85 a"},
    };
    for (const auto& row : rows) {
        std::string_view text = row.text;
        TakeBlanks(text);
        EXPECT_EQ(text, row.rest) << Shown(row.text);
        EXPECT_EQ(text.data(), row.text.data() + row.text.size() - row.rest.size()) << Shown(row.text);
    }
}

struct KeywordRow {
    std::string_view text;
    std::string_view keyword;
    size_t pos;
    bool found;
    size_t end;
};

void CheckKeywords(const std::vector<KeywordRow>& rows) {
    for (const KeywordRow& row : rows) {
        SCOPED_TRACE(Shown(row.text) + " at " + std::to_string(row.pos));
        size_t end = 77;
        EXPECT_EQ(KeywordAt(row.text, row.keyword, row.pos, end), row.found);
        EXPECT_EQ(end, row.end);
    }
}

TEST(KeywordAt, IsTheFirstTokenFollowedByABlank) {
    CheckKeywords({
        {"BO_ 100 X: 8 Y", "BO_", 0, true, 3},
        {"BO_ ", "BO_", 0, true, 3},
        {"  BO_\t1", "BO_", 0, true, 5},
        {" \f\n\r\t\vBO_ ", "BO_", 0, true, 9},
        {"CM_ BO_ 100", "BO_", 3, true, 7},
        {"CM_ BO_ 100", "BO_", 4, true, 7},
        {"XBO_ 1", "BO_", 1, true, 4},
    });
}

TEST(KeywordAt, EveryBlankMayFollow) {
    CheckKeywords({
        {"BO_ ", "BO_", 0, true, 3},
        {"BO_\f", "BO_", 0, true, 3},
        {"BO_\n", "BO_", 0, true, 3},
        {"BO_\r", "BO_", 0, true, 3},
        {"BO_\t", "BO_", 0, true, 3},
        {"BO_\v", "BO_", 0, true, 3},
    });
}

TEST(KeywordAt, WithoutABlankBehindItIsNone) {
    CheckKeywords({
        {"BO_", "BO_", 0, false, 3},
        {"  BO_", "BO_", 0, false, 5},
        {"BO_1", "BO_", 0, false, 3},
        {"BO_1 X", "BO_", 0, false, 3},
        {"BS_:", "BS_", 0, false, 3},
        {"BO__ 1", "BO_", 0, false, 3},
        {"BO_\0 "sv, "BO_", 0, false, 3},
        {"BO_\x08 ", "BO_", 0, false, 3},
        {"BO_\x0E ", "BO_", 0, false, 3},
        {"BO_\x1F ", "BO_", 0, false, 3},
        {"BO_\x85 ", "BO_", 0, false, 3},
        {"BO_\xA0 ", "BO_", 0, false, 3},
    });
}

TEST(KeywordAt, EveryCharacterMustMatch) {
    CheckKeywords({
        {"bo_ 1", "BO_", 0, false, 3},
        {"XO_ 1", "BO_", 0, false, 3},
        {"BX_ 1", "BO_", 0, false, 3},
        {"BOX 1", "BO_", 0, false, 3},
        {"BO  1", "BO_", 0, false, 3},
    });
}

TEST(KeywordAt, LaterTokensAreNotLookedAt) {
    CheckKeywords({
        {"A BO_ 1", "BO_", 0, false, 3},
        {"AAA BO_ 1", "BO_", 0, false, 3},
        {"CM_ BO_ 100", "BO_", 5, false, 8},
    });
}

TEST(KeywordAt, WithoutATokenHasNoEnd) {
    CheckKeywords({
        {"", "BO_", 0, false, kNpos},
        {"   ", "BO_", 0, false, kNpos},
        {" \f\n\r\t\v", "BO_", 0, false, kNpos},
        {"BO_ ", "BO_", 3, false, kNpos},
        {"BO_ ", "BO_", 4, false, kNpos},
        {"BO_ ", "BO_", 99, false, kNpos},
        {"BO_ ", "BO_", kNpos, false, kNpos},
    });
}

struct NumberRow {
    std::string_view text;
    size_t pos;
    uint32_t value;
    size_t end;
};

void CheckNumbers(const std::vector<NumberRow>& rows) {
    for (const NumberRow& row : rows) {
        SCOPED_TRACE(Shown(row.text) + " at " + std::to_string(row.pos));
        uint32_t value = 77;
        size_t end = 77;
        EXPECT_TRUE(UnsignedToken(row.text, row.pos, value, end));
        EXPECT_EQ(value, row.value);
        EXPECT_EQ(end, row.end);
    }
}

TEST(UnsignedToken, IsANumberFollowedByABlank) {
    CheckNumbers({
        {"BO_ 2147483648 Msg", 3, 2147483648U, 14},
        {"0 ", 0, 0, 1},
        {"1 ", 0, 1, 1},
        {"9 ", 0, 9, 1},
        {"10 ", 0, 10, 2},
        {"99 ", 0, 99, 2},
        {"100 ", 0, 100, 3},
        {"999999999 ", 0, 999999999, 9},
        {"1000000000 ", 0, 1000000000, 10},
        {"4294967295 ", 0, 4294967295U, 10},
        {"1234 ", 2, 34, 4},
        {" 5 x", 0, 5, 2},
        {" \f\n\r\t\v5 ", 0, 5, 7},
        {"5\f", 0, 5, 1},
        {"5\n", 0, 5, 1},
        {"5\r", 0, 5, 1},
        {"5\t", 0, 5, 1},
        {"5\v", 0, 5, 1},
    });
}

TEST(UnsignedToken, LeadingZerosAreSkipped) {
    CheckNumbers({
        {"00 ", 0, 0, 2},
        {"000 ", 0, 0, 3},
        {"0000000000000 ", 0, 0, 13},
        {"05 ", 0, 5, 2},
        {"007 ", 0, 7, 3},
        {"0070 ", 0, 70, 4},
        {"0010 ", 0, 10, 4},
        {"00004294967295 ", 0, 4294967295U, 14},
        {"00000000009 ", 0, 9, 11},
        {"00000000010 ", 0, 10, 11},
        {"00000000100 ", 0, 100, 11},
    });
}

// A negative number wraps around to 4294967296 less its magnitude. What is then compared is only the number of
// characters with the number of digits, and both are ten here.
TEST(UnsignedToken, NegativeNumberOfTenCharactersPassesWrappedAround) {
    CheckNumbers({
        {"-429496729 ", 0, 3865470567U, 10},
        {"-294967296 ", 0, 4000000000U, 10},
        {"-999999999 ", 0, 3294967297U, 10},
        {"-000000001 ", 0, 4294967295U, 10},
    });
}

struct RejectedRow {
    std::string_view text;
    size_t pos = 0;
};

void CheckRejected(const std::vector<RejectedRow>& rows) {
    for (const RejectedRow& row : rows) {
        SCOPED_TRACE(Shown(row.text) + " at " + std::to_string(row.pos));
        uint32_t value = 77;
        size_t end = 77;
        EXPECT_FALSE(UnsignedToken(row.text, row.pos, value, end));
        EXPECT_EQ(value, 0U);
        EXPECT_EQ(end, kNpos);
    }
}

TEST(UnsignedToken, WithoutABlankBehindItFails) {
    CheckRejected({{"BO_ 12", 3}, {"5"}, {"0"}, {" 5"}, {"5\x08"}, {"5\xA0"}, {"5\0"sv}});
}

TEST(UnsignedToken, WithoutATokenFails) {
    CheckRejected({{""}, {"   "}, {" \f\n\r\t\v"}, {"5 ", 1}, {"5 ", 2}, {"5 ", 9}, {"5 ", kNpos}});
}

TEST(UnsignedToken, WhatIsNoNumberFails) {
    CheckRejected({{"a "}, {"- "}, {"+ "}, {"x5 "}, {". "}, {"\"5\" "}});
}

TEST(UnsignedToken, NumbersBeyondThirtyTwoBitsFail) {
    CheckRejected({{"4294967296 "}, {"99999999999999999999999 "}, {"-4294967296 "}});
}

TEST(UnsignedToken, ZeroWithAnythingElseFails) {
    CheckRejected({{"+0 "}, {"-0 "}, {"0x1 "}, {"0a "}, {"a0 "}, {"00: "}, {"0.0 "}, {"0-1 "}, {"0\0 "sv}});
}

TEST(UnsignedToken, NumberWithAnythingElseFails) {
    CheckRejected({{"+5 "},
                   {"5a "},
                   {"5: "},
                   {"-1 "},
                   {"12.5 "},
                   {"12|8 "},
                   {"0005a "},
                   {"5\0 "sv},
                   {"+429496729 "},
                   {"-42949672 "},
                   {"-4294967295 "},
                   {"-0000000001 "}});
}

struct UntilRow {
    std::string_view text;
    size_t pos;
    char delimiter;
    std::string_view result;
    size_t found;
};

void CheckUntilChar(const std::vector<UntilRow>& rows) {
    for (const UntilRow& row : rows) {
        SCOPED_TRACE(Shown(row.text) + " from " + std::to_string(row.pos) + " to " + row.delimiter);
        size_t found = 77;
        EXPECT_EQ(TextUntilChar(row.text, row.pos, row.delimiter, found), row.result);
        EXPECT_EQ(found, row.found);
    }
}

TEST(TextUntilChar, StopsInFrontOfTheFirstDelimiter) {
    CheckUntilChar({
        {"abc:def", 0, ':', "abc", 3},
        {"abc:def", 2, ':', "c", 3},
        {"abc:def", 3, ':', "", 3},
        {"a:b:c", 0, ':', "a", 1},
        {"a:b:c", 2, ':', "b", 3},
        {":", 0, ':', "", 0},
        {"abc:", 0, ':', "abc", 3},
        {"  a : b", 0, ':', "  a ", 4},
        {"x \n\"y", 1, '"', " \n", 3},
        {"a\xC3\xA4;", 0, ';', "a\xC3\xA4", 3},
    });
}

TEST(TextUntilChar, MissingDelimiterYieldsNothing) {
    CheckUntilChar({
        {"abc", 0, ':', "", kNpos},
        {"", 0, ':', "", kNpos},
        {"abc:def", 4, ':', "", kNpos},
        {"abc:def", 7, ':', "", kNpos},
        {"abc:def", 100, ':', "", kNpos},
        {"abc:def", kNpos, ':', "", kNpos},
    });
}

struct BetweenRow {
    std::string_view text;
    size_t pos;
    size_t last;
    std::string_view result;
};

void CheckBetween(const std::vector<BetweenRow>& rows) {
    for (const BetweenRow& row : rows) {
        SCOPED_TRACE(Shown(row.text) + ' ' + std::to_string(row.pos) + ' ' + std::to_string(row.last));
        EXPECT_EQ(TrimmedBetween(row.text, row.pos, row.last), row.result);
    }
}

TEST(TrimmedBetween, TheLastPositionIsInclusive) {
    CheckBetween({
        {"abc", 0, 2, "abc"},
        {"abc", 0, 1, "ab"},
        {"abc", 1, 2, "bc"},
    });
}

TEST(TrimmedBetween, BlanksAtBothEndsAreLeftOut) {
    CheckBetween({
        {"  ab  ", 0, 5, "ab"},
        {"  ab  ", 1, 4, "ab"},
        {"a b", 0, 2, "a b"},
        {"a bc", 0, 1, "a"},
        {" \f\n\r\t\vX \f\n\r\t\v", 0, 12, "X"},
        {"\b x \b", 0, 4, "\b x \b"},
    });
}

TEST(TrimmedBetween, PieceOfOneCharacterCountsAsEmpty) {
    CheckBetween({
        {"abc", 0, 0, ""},
        {"abc", 1, 1, ""},
        {"abc", 2, 2, ""},
        {"a", 0, 0, ""},
    });
}

TEST(TrimmedBetween, OneCharacterBetweenBlanksIsKept) {
    CheckBetween({
        {"   x", 0, 3, "x"},
        {"x   ", 0, 3, "x"},
        {" x ", 0, 1, "x"},
        {"x ", 0, 1, "x"},
    });
}

TEST(TrimmedBetween, TheLastPositionMayLieBehindTheText) {
    CheckBetween({
        {"abc ", 0, 4, "abc"},
        {"abc ", 0, 99, "abc"},
        {"abc ", 0, kNpos, "abc"},
        {"abc", 2, 3, "c"},
    });
}

TEST(TrimmedBetween, IsEmptyWhereThereIsNothing) {
    CheckBetween({
        {"", 0, 5, ""},
        {"abc", 3, 9, ""},
        {"abc", 4, 9, ""},
        {"abc", kNpos, kNpos, ""},
        {"abc", 2, 1, ""},
        {"   ", 0, 2, ""},
        {"   ", 0, 9, ""},
        {"   x", 0, 2, ""},
        {"a  x", 1, 2, ""},
    });
}

TEST(Trimmed, LosesTheBlanksAtBothEnds) {
    const std::pair<std::string_view, std::string_view> rows[] = {
        {"", ""},     {" ", ""},      {" \f\n\r\t\v", ""},  {"a", "a"},
        {" a ", "a"}, {"a b", "a b"}, {"  a b\r\n", "a b"}, {" \f\n\r\t\va \f\n\r\t\v", "a"},
    };
    for (const auto& [text, result] : rows) {
        EXPECT_EQ(Trimmed(text), result) << Shown(text);
    }
}

struct NonBlankRow {
    std::string_view text;
    size_t pos;
    size_t result;
};

TEST(FindNonBlank, SkipsBlanksOnly) {
    const NonBlankRow rows[] = {
        {"a", 0, 0},    {" a", 0, 1},     {" \f\n\r\t\va", 0, 6}, {"a b", 1, 2},   {"ab", 1, 1},    {"\b", 0, 0},
        {"", 0, kNpos}, {"  ", 0, kNpos}, {"a ", 1, kNpos},       {"a", 1, kNpos}, {"a", 9, kNpos},
    };
    for (const NonBlankRow& row : rows) {
        SCOPED_TRACE(Shown(row.text) + ' ' + std::to_string(row.pos));
        EXPECT_EQ(FindNonBlank(row.text, row.pos), row.result);
    }
}

TEST(FindBlankOrEnd, StopsAtEveryBlankWhereverItStands) {
    for (const char blank : {' ', '\f', '\n', '\r', '\t', '\v'}) {
        for (size_t size = 1; size <= 50; ++size) {
            for (size_t place = 0; place < size; ++place) {
                std::string text(size, 'x');
                text[place] = blank;
                text.back() = blank;
                EXPECT_EQ(FindBlankOrEnd(text, 0), place) << Shown(text);
                EXPECT_EQ(FindBlankOrEnd(text, place), place) << Shown(text);
                EXPECT_EQ(FindBlankOrEnd(text, place + 1), place + 1 < size ? size - 1 : size) << Shown(text);
            }
        }
    }
}

TEST(FindBlankOrEnd, NothingElseIsABlank) {
    for (int byte = 0; byte < 256; ++byte) {
        const char c = static_cast<char>(byte);
        const bool blank = byte == 0x20 || (byte >= 0x09 && byte <= 0x0D);
        EXPECT_EQ(FindBlankOrEnd(std::string(3, c), 0), blank ? 0U : 3U) << byte;
        EXPECT_EQ(FindBlankOrEnd(std::string(20, c), 0), blank ? 0U : 20U) << byte;
    }
}

TEST(FindBlankOrEnd, WithoutABlankIsTheEnd) {
    EXPECT_EQ(FindBlankOrEnd("", 0), 0U);
    EXPECT_EQ(FindBlankOrEnd("abc", 3), 3U);
    EXPECT_EQ(FindBlankOrEnd("a c", 4), 3U);
    EXPECT_EQ(FindBlankOrEnd("a c", kNpos - 20), 3U);
    EXPECT_EQ(FindBlankOrEnd("a c", kNpos), 3U);
}

TEST(FindLastNonBlank, SkipsBlanksBackwards) {
    const NonBlankRow rows[] = {
        {"a", 0, 0},      {"a", kNpos, 0},        {"a", 9, 0},     {"abc", 1, 1},   {"abc", 2, 2},
        {"abc", 3, 2},    {"abc  ", kNpos, 2},    {"abc  ", 4, 2}, {"abc  ", 3, 2}, {"a b", 1, 0},
        {" a", 0, kNpos}, {"a \f\n\r\t\v", 6, 0}, {"a\b ", 2, 1},  {"", 0, kNpos},  {"", kNpos, kNpos},
        {"  ", 1, kNpos}, {"  ", kNpos, kNpos},
    };
    for (const NonBlankRow& row : rows) {
        SCOPED_TRACE(Shown(row.text) + ' ' + std::to_string(row.pos));
        EXPECT_EQ(FindLastNonBlank(row.text, row.pos), row.result);
    }
}

TEST(NormaliseBlanks, TurnsControlBlanksIntoSpaces) {
    const std::pair<std::string_view, std::string_view> rows[] = {
        {"", ""},
        {"a\tb\nc\vd\fe\rf g", "a b c d e f g"},
        {"\r\n", "  "},
        {"a\t\t b", "a   b"},
        {"\x08\x0E\x1F\x7F", "\x08\x0E\x1F\x7F"},
        {"\xC3\xA4\n", "\xC3\xA4 "},
    };
    for (const auto& [text, result] : rows) {
        std::string normalised(text);
        NormaliseBlanks(normalised);
        EXPECT_EQ(normalised, result) << Shown(text);
    }
}

}  // namespace
}  // namespace tabrin
