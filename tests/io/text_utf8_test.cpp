#include "io/text_utf8.h"

#include <utf8.h>

#include "io/io_test_support.h"

namespace tabrin {
namespace {

TEST(IsAscii, LooksAtEveryByte) {
    for (size_t size = 0; size <= 50; ++size) {
        std::string text(size, 'a');
        EXPECT_TRUE(IsAscii(text)) << size;
        for (size_t place = 0; place < size; ++place) {
            for (const char byte : {'\0', '\x01', '\x7F'}) {
                text[place] = byte;
                EXPECT_TRUE(IsAscii(text)) << Shown(text);
            }
            for (const char byte : {'\x80', '\xC3', '\xFF'}) {
                text[place] = byte;
                EXPECT_FALSE(IsAscii(text)) << Shown(text);
            }
            text[place] = 'a';
        }
    }
}

// What stands beside the text does not count.
TEST(IsAscii, LooksAtNothingElse) {
    for (size_t size = 0; size <= 50; ++size) {
        const std::string text = "\xFF" + std::string(size, 'a') + std::string(20, '\xFF');
        EXPECT_TRUE(IsAscii(std::string_view(text).substr(1, size))) << size;
    }
}

struct InvalidRow {
    std::string_view text;
    size_t index;
};

void CheckFirstInvalid(const std::vector<InvalidRow>& rows) {
    for (const InvalidRow& row : rows) {
        EXPECT_EQ(FirstInvalidUtf8(row.text), row.index) << Shown(row.text);
    }
}

TEST(FirstInvalidUtf8, ValidTextIsPassedToItsEnd) {
    CheckFirstInvalid({
        {"", 0},
        {"abc", 3},
        {"abcdefgh", 8},
        {"abcdefghijklmnopq", 17},
        {"\0\x01\x7F"sv, 3},
        {"\x7F\xC3\xA4", 3},
        {"\xDF\xBF\xC3\xA4", 4},
        {"\xEF\xBF\xBF\xC3\xA4", 5},
        {"\xC2\x80", 2},
        {"\xDF\xBF", 2},
        {"\xE0\xA0\x80", 3},
        {"\xED\x9F\xBF", 3},
        {"\xEE\x80\x80", 3},
        {"\xEF\xBB\xBF", 3},
        {"\xEF\xBF\xBE", 3},
        {"\xEF\xBF\xBF", 3},
        {"\xF0\x90\x80\x80", 4},
        {"\xF4\x8F\xBF\xBF", 4},
        {"abcdefg\xC3\xA4", 9},
        {"abcdefgh\xE2\x82\xAC"
         "ijklmnop\xC3\xA4z",
         22},
    });
}

TEST(FirstInvalidUtf8, InvalidLeadByte) {
    CheckFirstInvalid({
        {"\x80", 0},
        {"\xBF", 0},
        {"\xF8\x88\x80\x80\x80", 0},
        {"\xFE", 0},
        {"\xFF", 0},
        {"\xC3\xA4\xA4", 2},
        {"\xC3\xA4x\xA4", 3},
    });
}

TEST(FirstInvalidUtf8, IncompleteSequence) {
    CheckFirstInvalid({
        {"\xC3", 0},
        {"\xE2\x82", 0},
        {"\xF0\x9F\x98", 0},
        {"\xC3"
         "A",
         0},
        {"\xE2\x82"
         "A",
         0},
        {"\xF0\x9F\x98"
         "A",
         0},
        {"\xC3\xC3\xA4", 0},
        {"\xE2\x82\xE2\x82\xAC", 0},
    });
}

TEST(FirstInvalidUtf8, OverlongSequence) {
    CheckFirstInvalid({
        {"\xC0\x80", 0},
        {"\xC1\xBF", 0},
        {"\xE0\x80\x80", 0},
        {"\xE0\x9F\xBF", 0},
        {"\xF0\x80\x80\x80", 0},
        {"\xF0\x8F\xBF\xBF", 0},
    });
}

TEST(FirstInvalidUtf8, InvalidCodePoint) {
    CheckFirstInvalid({
        {"\xED\xA0\x80", 0},
        {"\xED\xBF\xBF", 0},
        {"\xF4\x90\x80\x80", 0},
        {"\xF5\x80\x80\x80", 0},
        {"\xF7\xBF\xBF\xBF", 0},
    });
}

TEST(FirstInvalidUtf8, IsFoundAtEveryPosition) {
    for (size_t before = 0; before <= 40; ++before) {
        for (size_t behind = 0; behind <= 20; ++behind) {
            const std::string text = std::string(before, 'a') + '\x80' + std::string(behind, 'b');
            EXPECT_EQ(FirstInvalidUtf8(text), before) << before << " before, " << behind << " behind";
        }
    }
}

struct RepairRow {
    std::string_view text;
    std::string_view repaired;
};

TEST(RepairUtf8, EachByteOfABrokenSequenceIsReplaced) {
    const RepairRow rows[] = {
        {"", ""},
        {"abc", "abc"},
        {"\xC3\xA4", "\xC3\xA4"},
        {"\xE4"
         "A",
         "_A"},
        {"\xE4\xB6", "__"},
        {"Stra\xDF"
         "e",
         "Stra_e"},
        {"a\x80z", "a_z"},
        {"\x80\x80\x80", "___"},
        {"\xC0\x80", "__"},
        {"\xED\xA0\x80", "___"},
        {"\xF4\x90\x80\x80", "____"},
        {"\xF0\x9F\x98"
         "A",
         "___A"},
        {"\xC3\xC3\xA4", "_\xC3\xA4"},
        {"\xE4\xC3\xA4", "_\xC3\xA4"},
        {"\xF0\x9F\xC3\xA4", "__\xC3\xA4"},
        {"\xE2\x82\xE2\x82\xAC", "__\xE2\x82\xAC"},
        {"\xC3\xA4\xA4", "\xC3\xA4_"},
        {"\xC3\xA4\xE4 \xC3\xA4\xE4", "\xC3\xA4_ \xC3\xA4_"},
    };
    for (const RepairRow& row : rows) {
        std::string text(row.text);
        RepairUtf8(text.data(), text.size());
        EXPECT_EQ(text, row.repaired) << Shown(row.text);
    }
}

struct LengthRow {
    std::string_view text;
    size_t size;
    size_t length;
};

void CheckLengths(const std::vector<LengthRow>& rows) {
    for (const LengthRow& row : rows) {
        SCOPED_TRACE(Shown(row.text) + " in " + std::to_string(row.size));
        size_t length = 77;
        EXPECT_TRUE(Utf8SafeLength(row.text, row.size, length));
        EXPECT_EQ(length, row.length);
    }
}

struct NoLengthRow {
    std::string_view text;
    size_t size;
};

void CheckNoLengths(const std::vector<NoLengthRow>& rows) {
    for (const NoLengthRow& row : rows) {
        SCOPED_TRACE(Shown(row.text) + " in " + std::to_string(row.size));
        size_t length = 77;
        EXPECT_FALSE(Utf8SafeLength(row.text, row.size, length));
        EXPECT_EQ(length, 0U);
    }
}

TEST(Utf8SafeLength, WithoutRoomForACharacterFails) {
    CheckNoLengths({{"", 0}, {"", 1}, {"a", 0}, {"a", 1}, {"abc", 1}});
}

TEST(Utf8SafeLength, OneByteIsKeptForTheNul) {
    CheckLengths({{"a", 2, 1}, {"ab", 2, 1}, {"abc", 3, 2}, {"abc", 4, 3}, {"abcdefgh", 5, 4}});
}

TEST(Utf8SafeLength, TextThatFitsIsTakenWhole) {
    CheckLengths({{"", 2, 0}, {"a", 3, 1}, {"abc", 5, 3}, {"abc", 400, 3}, {"\xC3\xA4", 4, 2}});
}

TEST(Utf8SafeLength, TextThatFitsWithRoomToSpareIsNotValidated) {
    CheckLengths({{"\x80", 3, 1}, {"a\xC3", 4, 2}, {"\xFF\xFF\xFF", 5, 3}});
}

TEST(Utf8SafeLength, TextThatJustFitsIsValidated) {
    CheckNoLengths({{"\x80", 2},
                    {"a\x80", 3},
                    {"\x80"
                     "a",
                     3}});
}

TEST(Utf8SafeLength, WhatLiesBehindTheCutIsNotValidated) {
    CheckLengths({{"ab\x80", 3, 2}, {"ab\xC3\xA4", 3, 2}, {"a\xC3\xA4\xA4", 4, 3}});
}

TEST(Utf8SafeLength, NoCharacterIsSplit) {
    CheckLengths({
        {"a\xC3\xA4", 3, 1},
        {"a\xC3\xA4", 4, 3},
        {"x\xE2\x82\xAC", 3, 1},
        {"x\xE2\x82\xAC", 4, 1},
        {"x\xE2\x82\xAC", 5, 4},
        {"x\xF0\x9F\x98\x80", 3, 1},
        {"x\xF0\x9F\x98\x80", 4, 1},
        {"x\xF0\x9F\x98\x80", 5, 1},
        {"x\xF0\x9F\x98\x80", 6, 5},
        {"\xC3\xA4\xC3\xA4", 4, 2},
        {"\xC3\xA4\xE2\x82\xAC\xC3\xA4", 5, 2},
    });
}

TEST(Utf8SafeLength, TheSplitCharacterMayBeTheFirst) {
    CheckLengths({
        {"\xC3\xA4", 2, 0},
        {"\xE2\x82\xAC", 2, 0},
        {"\xE2\x82\xAC", 3, 0},
        {"\xF0\x9F\x98\x80", 2, 0},
        {"\xF0\x9F\x98\x80", 3, 0},
        {"\xF0\x9F\x98\x80", 4, 0},
        {"\xF0\x9F\x98\x80", 5, 4},
    });
}

// Each row lies on the other side of a limit from one of the next test.
TEST(Utf8SafeLength, LeadByteMustBeLongEnoughForWhatIsLeft) {
    CheckLengths({
        {"a\xC0", 3, 1},
        {"a\xFF", 3, 1},
        {"a\xE0"
         "b",
         4, 1},
        {"a\xFF"
         "b",
         4, 1},
        {"a\xF0"
         "bc",
         5, 1},
        {"a\xFF"
         "bc",
         5, 1},
        {"\xC0", 2, 0},
        {"\xE0"
         "b",
         3, 0},
        {"\xF0"
         "bc",
         4, 0},
    });
}

TEST(Utf8SafeLength, LeadByteThatIsTooShortFails) {
    CheckNoLengths({
        {"a\xBF", 3},
        {"a\xDF"
         "b",
         4},
        {"a\xEF"
         "bc",
         5},
        {"a\xF0"
         "bcd",
         6},
        {"a\xFF"
         "bcd",
         6},
        {"\xBF", 2},
        {"\xDF"
         "b",
         3},
        {"\xC0"
         "A",
         3},
        {"\xEF"
         "bc",
         4},
        {"\xF0\x9F\x98\x80\x80", 6},
    });
}

TEST(Utf8SafeLength, BytesBehindTheLeadByteAreNotLookedAt) {
    CheckLengths({{"a\xE0"
                   "A",
                   4, 1},
                  {"a\xF0"
                   "AB",
                   5, 1},
                  {"a\xF0\xFF\x80", 5, 1},
                  {"a\xE0\x80", 4, 1}});
}

TEST(Utf8SafeLength, EverythingInFrontOfTheCutMustBeValid) {
    CheckNoLengths({
        {"\x80\xC3", 3},
        {"a\x80"
         "bc",
         5},
        {"a\x80"
         "b\xE2\x82",
         6},
        {"\x80"
         "b\xF0\x9F\x98",
         6},
        {"\xC3\xE0\x80", 4},
        {"\x80"
         "abc\xC3\xA4",
         6},
    });
}

TEST(Utf8SafeLength, TheShortestCutThatFitsIsTaken) {
    CheckLengths({
        {"\xE0\xC3", 3, 0},
        {"\xF0\xE0\xC3", 4, 0},
        {"a\xF0\xE0\xC3", 5, 1},
        {"a\xF0\xC3\xC3", 5, 1},
        {"ab\xE0\xC3", 5, 2},
        {"\xC3\xA4\xC3", 4, 2},
    });
}

struct CopyRow {
    std::string_view text;
    size_t size;
    bool copied;
    std::string_view buffer;  // what the twelve bytes of the buffer are afterwards
};

void CheckCopied(const std::vector<CopyRow>& rows) {
    for (const CopyRow& row : rows) {
        SCOPED_TRACE(Shown(row.text) + " into " + std::to_string(row.size));
        std::string buffer(12, '#');
        EXPECT_EQ(CopyToBuffer(buffer.data(), row.text, row.size), row.copied);
        EXPECT_EQ(buffer, row.buffer);
    }
}

TEST(CopyToBuffer, TouchesNothingBehindTheNulOfWhatFits) {
    CheckCopied({
        {"", 12, true, "\0###########"sv},
        {"abc", 12, true, "abc\0########"sv},
        {"abc", 5, true, "abc\0########"sv},
        {"abc", 4, true, "abc\0########"sv},
        {"abcdef", 4, true, "abc\0########"sv},
        {"ab", 2, true, "a\0##########"sv},
        {"abcdefghijk", 12, true, "abcdefghijk\0"sv},
        {"abcdefghijkl", 12, true, "abcdefghijk\0"sv},
        {"ab\xC3\xA4"
         "cd",
         4, true, "ab\0#########"sv},
        {"ab\xC3\xA4"
         "cd",
         5, true, "ab\xC3\xA4\0#######"sv},
        {"\xC3\xA4", 2, true, "\0###########"sv},
        {"a\x80", 4, true, "a\x80\0#########"sv},
    });
}

TEST(CopyToBuffer, LeavesAnEmptyTextWhereItCannotCopy) {
    CheckCopied({
        {"abc", 1, false, "\0###########"sv},
        {"", 1, false, "\0###########"sv},
        {"a\x80", 3, false, "\0###########"sv},
        {"a\x80"
         "bcdef",
         5, false, "\0###########"sv},
    });
}

TEST(CopyToBuffer, NothingIsWrittenIntoABufferOfNoSize) {
    std::string buffer(12, '#');
    EXPECT_FALSE(CopyToBuffer(buffer.data(), "abc", 0));
    EXPECT_EQ(buffer, "############");
}

TEST(CopyToBuffer, CutsInFrontOfATwoByteCharacterAtTheEnd) {
    for (size_t size = 3; size <= 12; ++size) {
        const std::string front(size - 2, 'a');
        std::string buffer(12, '#');
        EXPECT_TRUE(CopyToBuffer(buffer.data(),
                                 front + "\xC3\xA4"
                                         "bc",
                                 size))
            << size;
        EXPECT_EQ(buffer, front + '\0' + std::string(12 - (size - 1), '#')) << size;
    }
}

struct TakeRow {
    std::string_view buffer;
    size_t size;
    std::string_view text;
};

void CheckTaken(const std::vector<TakeRow>& rows) {
    for (const TakeRow& row : rows) {
        SCOPED_TRACE(Shown(row.buffer) + " of " + std::to_string(row.size));
        std::string text = "before";
        EXPECT_TRUE(StringFromBuffer(text, row.buffer.data(), row.size));
        EXPECT_EQ(text, row.text);
    }
}

TEST(StringFromBuffer, EndsAtTheFirstNul) {
    CheckTaken({
        {"abc\0def"sv, 7, "abc"},
        {"abc\0"sv, 4, "abc"},
        {"a\0b\0"sv, 4, "a"},
        {"a\0"sv, 2, "a"},
        {"abc\0\x80"sv, 5, "abc"},
    });
}

TEST(StringFromBuffer, WithoutANulLosesTheLastByte) {
    CheckTaken({{"abcd", 4, "abc"}, {"abcdef", 4, "abc"}, {"ab", 2, "a"}, {"abc\0"sv, 3, "ab"}, {"ab\x80", 3, "ab"}});
}

TEST(StringFromBuffer, EmptyTextSucceeds) {
    CheckTaken({{"abc", 0, ""}, {"\0abc"sv, 4, ""}, {"\0"sv, 1, ""}});
}

TEST(StringFromBuffer, DropsACharacterThatIsCutOff) {
    CheckTaken({
        {"ab\xC3\0"sv, 4, "ab"},
        {"ab\xC3\xA4", 4, "ab"},
        {"ab\xE2\x82\0"sv, 5, "ab"},
        {"ab\xF0\x9F\x98\0"sv, 6, "ab"},
        {"\xC3\0"sv, 2, ""},
        {"ab\xC3\xA4\0"sv, 5, "ab\xC3\xA4"},
        {"ab\xC3\xA4\xC3\0"sv, 6, "ab\xC3\xA4"},
    });
}

TEST(StringFromBuffer, FailsOnWhatIsNotUtf8) {
    const TakeRow rows[] = {
        {"a\x80"
         "b\0"sv,
         4, ""},
        {"\x80\0"sv, 2, ""},
        {"\xE4"
         "bc\0"sv,
         4, ""},
        {"ab\xA4\0"sv, 4, ""},
        {"\x80"
         "abc\xC3\0"sv,
         6, ""},
        {"ab\xC3\xA4\x80"
         "c",
         6, ""},
    };
    for (const TakeRow& row : rows) {
        SCOPED_TRACE(Shown(row.buffer) + " of " + std::to_string(row.size));
        std::string text = "before";
        EXPECT_FALSE(StringFromBuffer(text, row.buffer.data(), row.size));
        EXPECT_EQ(text, "");
    }
}

// Its only byte is dropped for the NUL, and then there is no room for a character.
TEST(StringFromBuffer, FailsOnASingleByteWithoutNul) {
    std::string text = "before";
    EXPECT_FALSE(StringFromBuffer(text, "a", 1));
    EXPECT_EQ(text, "");
}

TEST(Utf8ToWide, ConvertsEveryCodePoint) {
    const std::pair<std::string_view, std::u16string_view> rows[] = {
        {"", u""},
        {"abc", u"abc"},
        {"\x7F", u"\u007F"},
        {"a\xC3\xA4z", u"a\u00E4z"},
        {"\xE2\x82\xAC", u"\u20AC"},
        {"\xEF\xBF\xBF", u"\uFFFF"},
        {"\xF0\x90\x80\x80", u"\xD800\xDC00"},
        {"\xF0\x9F\x98\x80", u"\xD83D\xDE00"},
        {"\xF4\x8F\xBF\xBF", u"\xDBFF\xDFFF"},
    };
    for (const auto& [text, wide] : rows) {
        EXPECT_TRUE(Utf8ToWide(text) == wide) << Shown(text);
    }
}

TEST(Utf8ToWide, ThrowsOnWhatIsNotUtf8) {
    for (const std::string_view text : {"\x80", "a\xFF",
                                        "\xC3"
                                        "A",
                                        "\xC0\x80", "\xE0\x80\x80"}) {
        EXPECT_THROW(Utf8ToWide(text), utf8::invalid_utf8) << Shown(text);
    }
    for (const std::string_view text : {"\xED\xA0\x80", "\xF4\x90\x80\x80"}) {
        EXPECT_THROW(Utf8ToWide(text), utf8::invalid_code_point) << Shown(text);
    }
    for (const std::string_view text : {"\xC3", "a\xE2\x82", "\xF0\x9F\x98"}) {
        EXPECT_THROW(Utf8ToWide(text), utf8::not_enough_room) << Shown(text);
    }
}

}  // namespace
}  // namespace tabrin
