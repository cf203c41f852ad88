#include "io/identifier.h"

#include <utf8.h>

#include "io/io_test_support.h"

namespace tabrin {
namespace {

TEST(IsIdentifier, TakesLettersDigitsAndUnderscores) {
    for (const std::string_view text : {"a", "Z", "_", "a1", "_1", "AZaz09_", "__Engine_Temp"}) {
        EXPECT_TRUE(IsIdentifier(text)) << Shown(text);
    }
}

TEST(IsIdentifier, HasOneToThirtyTwoCharacters) {
    EXPECT_FALSE(IsIdentifier(""));
    EXPECT_TRUE(IsIdentifier("a"));
    EXPECT_TRUE(IsIdentifier("abcdefghijklmnopqrstuvwxyz012345"));
    EXPECT_FALSE(IsIdentifier("abcdefghijklmnopqrstuvwxyz0123456"));
}

TEST(IsIdentifier, DoesNotBeginWithADigit) {
    for (const std::string_view text : {"0", "9", "1a", "5_"}) {
        EXPECT_FALSE(IsIdentifier(text)) << Shown(text);
    }
}

TEST(IsIdentifier, EveryCharacterIsChecked) {
    for (int byte = 0; byte < 256; ++byte) {
        const bool digit = byte >= 0x30 && byte <= 0x39;
        const bool letter = (byte >= 0x41 && byte <= 0x5A) || (byte >= 0x61 && byte <= 0x7A);
        const char c = static_cast<char>(byte);
        EXPECT_EQ(IsIdentifier({&c, 1}), letter || byte == 0x5F) << byte;
        EXPECT_EQ(IsIdentifier(std::string("a") + c), letter || digit || byte == 0x5F) << byte;
        EXPECT_EQ(IsIdentifier(std::string("a") + c + 'z'), letter || digit || byte == 0x5F) << byte;
    }
}

TEST(AsciiFold, WritesOneUnderscoreForEachLongerCharacter) {
    const std::pair<std::string_view, std::string_view> rows[] = {
        {"", ""},
        {"abc -;\x01\x7F", "abc -;\x01\x7F"},
        {"a\0b"sv, "a\0b"sv},
        {"\xC2\x80", "_"},
        {"M\xC3\xBC"
         "ller",
         "M_ller"},
        {"\xE2\x82\xAC", "_"},
        {"\xF0\x9F\x98\x80", "_"},
        {"\xC3\xA4\xC3\xB6x\xC3\xBC", "__x_"},
    };
    for (const auto& [text, folded] : rows) {
        EXPECT_EQ(AsciiFold(text), folded) << Shown(text);
    }
}

TEST(AsciiFold, ThrowsOnWhatIsNotUtf8) {
    EXPECT_THROW(AsciiFold("\x80"), utf8::invalid_utf8);
    EXPECT_THROW(AsciiFold("a\xE4 b"), utf8::invalid_utf8);
    EXPECT_THROW(AsciiFold("\xC0\x80"), utf8::invalid_utf8);
    EXPECT_THROW(AsciiFold("a\xC3"), utf8::not_enough_room);
    EXPECT_THROW(AsciiFold("\xED\xA0\x80"), utf8::invalid_code_point);
}

TEST(MakeIdentifier, ReplacesWhatAnIdentifierCannotHave) {
    const std::pair<std::string_view, std::string_view> rows[] = {
        {"", ""},
        {"EngineTemp", "EngineTemp"},
        {"1 Engine-Temp", "__Engine_Temp"},
        {"1", "_"},
        {"12", "_2"},
        {"9a", "_a"},
        {"a1", "a1"},
        {" A", "_A"},
        {" 1", "_1"},
        {"-", "_"},
        {"a.b:c", "a_b_c"},
        {"a\0b"sv, "a_b"},
        {"G\xC3\xA4ng\xC3\xA9", "G_ng_"},
        {"\xC3\xA4", "_"},
        {"\xE2\x82\xAC"
         "1",
         "_1"},
        {"\xF0\x9F\x98\x80", "_"},
    };
    for (const auto& [text, identifier] : rows) {
        EXPECT_EQ(MakeIdentifier(text), identifier) << Shown(text);
    }
}

TEST(MakeIdentifier, IsCutToThirtyTwoCharacters) {
    const std::pair<std::string_view, std::string_view> rows[] = {
        {"abcdefghijklmnopqrstuvwxyz012345", "abcdefghijklmnopqrstuvwxyz012345"},
        {"abcdefghijklmnopqrstuvwxyz0123456", "abcdefghijklmnopqrstuvwxyz012345"},
        {"abcdefghijklmnopqrstuvwxyz0123456789ABCD", "abcdefghijklmnopqrstuvwxyz012345"},
        {"abcdefghijklmnopqrstuvwxyz01234-", "abcdefghijklmnopqrstuvwxyz01234_"},
    };
    for (const auto& [text, identifier] : rows) {
        EXPECT_EQ(MakeIdentifier(text), identifier) << Shown(text);
    }
}

TEST(MakeIdentifier, GivesWhatCountsAsAnIdentifier) {
    for (const std::string_view text : {"EngineTemp", "1", "-", " A", "\xC3\xA4", "\xF0\x9F\x98\x80",
                                        "1bcdefghijklmnopqrstuvwxyz0123456789 and more"}) {
        EXPECT_TRUE(IsIdentifier(MakeIdentifier(text))) << Shown(text);
    }
}

TEST(MakeIdentifier, IsCutAfterFolding) {
    EXPECT_EQ(MakeIdentifier("abcdefghijklmnopqrstuvwxyz01234\xC3\xA4x"), "abcdefghijklmnopqrstuvwxyz01234_");
    EXPECT_EQ(MakeIdentifier("\xC3\xA4"
                             "bcdefghijklmnopqrstuvwxyz012345"),
              "_bcdefghijklmnopqrstuvwxyz012345");
}

TEST(MakeIdentifier, ThirtyTwoOfTheLongestCharactersAreEnough) {
    for (const std::string_view front : {"", "a", "ab", "abc", "abcd"}) {
        std::string text(front);
        for (int i = 0; i < 40; ++i) {
            text += "\xF0\x9F\x98\x80";
        }
        EXPECT_EQ(MakeIdentifier(text), std::string(front) + std::string(32 - front.size(), '_')) << Shown(text);
    }
}

TEST(MakeIdentifier, WhatLiesBehindTheTextDoesNotMatter) {
    std::string text;
    for (int i = 0; i < 32; ++i) {
        text += "\xF0\x9F\x98\x80";
    }
    text += '\x80';
    EXPECT_EQ(MakeIdentifier(std::string_view(text).substr(0, 128)), "________________________________");
}

TEST(MakeIdentifier, TextBehindTheCutIsStillCheckedForUtf8) {
    EXPECT_THROW(MakeIdentifier("abcdefghijklmnopqrstuvwxyz012345\x80"), utf8::invalid_utf8);
}

TEST(AppendIdentifier, KeepsWhatStandsInFront) {
    std::string text = "BO_ 1 ";
    AppendIdentifier(text, "Engine");
    AppendIdentifier(text, "");
    AppendIdentifier(text += ' ', "1 Engine-Temp");
    AppendIdentifier(text += ' ', "abcdefghijklmnopqrstuvwxyz0123456");
    EXPECT_EQ(text, "BO_ 1 Engine __Engine_Temp abcdefghijklmnopqrstuvwxyz012345");
}

TEST(MakeIdentifier, ThrowsOnWhatIsNotUtf8) {
    EXPECT_THROW(MakeIdentifier("\x80"), utf8::invalid_utf8);
    EXPECT_THROW(MakeIdentifier("a\xC3"), utf8::not_enough_room);
    EXPECT_THROW(MakeIdentifier("\xF4\x90\x80\x80"), utf8::invalid_code_point);
}

}  // namespace
}  // namespace tabrin
