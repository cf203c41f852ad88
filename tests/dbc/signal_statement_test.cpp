#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "io/io_test_support.h"
#include "model/can_signal.h"
#include "model/own_arena.h"
#include "shown.h"

namespace tabrin {
namespace {

// Everything behind the name.
const std::string kRest = ": 0|8@1+ (1,0) [0|255] \"\" A";

struct RoundTrip {
    std::string line;
    std::string written;
};

TEST(SignalStatement, WrittenLineTellsWhatWasRead) {
    const RoundTrip kRows[] = {
        {"SG_ S : 0|8@1+ (1,0) [0|255] \"\" A,B", " SG_ S : 0|8@1+ (1,0) [0|255] \"\" A,B"},
        {" SG_ EngSpeed m3 : 24|16@1+ (0.125,0) [0|8031.875] \"rpm\" Kestrune",
         " SG_ EngSpeed m3 : 24|16@1+ (0.125,0) [0|8031.875] \"rpm\" Kestrune"},
        {"SG_ Val m2 : 8|8@1- (1,0) [0|0] \"\" X", " SG_ Val m2 : 8|8@1- (1,0) [0|0] \"\" X"},
        {"SG_ Mode M : 0|2@1+ (1,0) [0|3] \"\" X", " SG_ Mode M : 0|2@1+ (1,0) [0|3] \"\" X"},
        {"SG_ S : 7|8@0 (1,0) [0|1] \"\"", " SG_ S : 7|8@0+ (1,0) [0|1] \"\" Kestrune"},
        {"SG_ S : 0|8 (1,0) [0|255] \"\"", " SG_ S : 0|8@1+ (1,0) [0|255] \"\" Kestrune"},
        {"SG_ S : 0|8@1+ (1,0) [10|0] \"\"", " SG_ S : 0|8@1+ (1,0) [0|10] \"\" Kestrune"},
        {"SG_ S : 0|8@1+ (1,0) [0|-0] \"\"", " SG_ S : 0|8@1+ (1,0) [0|-0] \"\" Kestrune"},  // both are 0
        {"SG_ S : 0|8@1+ (1,0) [0|1] \"\xC2\xB5s\" X", " SG_ S : 0|8@1+ (1,0) [0|1] \"_s\" X"},
        {"SG_ My Signal : 0|8@1+ (1,0) [0|1] \"\" X", " SG_ My_Signal : 0|8@1+ (1,0) [0|1] \"\" X"},
        {"SG_ S:0|8@1+(1,0)[0|255]\"km/h\"A", " SG_ S : 0|8@1+ (1,0) [0|255] \"km/h\" A"},
        {"\r\n\tSG_\n\vS\f: 0 | 8 @ 1 + ( 1 , 0 ) [ 0 | 255 ] \" km/h \" A , B \r\n",
         " SG_ S : 0|8@1+ (1,0) [0|255] \"km/h\" A,B"},
    };
    for (const RoundTrip& row : kRows) {
        SCOPED_TRACE(Shown(row.line));
        OwnSignal signal;
        ASSERT_TRUE(signal.ParseLine(row.line));
        EXPECT_FALSE(signal.invalid);
        EXPECT_TRUE(signal.parseErrors.IsEmpty());
        EXPECT_EQ(signal.WriteDefinitionLine(), row.written);
    }
}

struct Name {
    std::string line;  // up to the colon
    std::string name;
    std::string identifierName;
    uint32_t multiplexKind;
    uint32_t multiplexValue;
};

void CheckNames(std::span<const Name> rows) {
    for (const Name& row : rows) {
        SCOPED_TRACE(Shown(row.line));
        OwnSignal signal;
        ASSERT_TRUE(signal.ParseLine(row.line + kRest));
        EXPECT_EQ(signal.name, row.name);
        EXPECT_EQ(signal.identifierName, row.identifierName);
        EXPECT_EQ(signal.multiplexKind, row.multiplexKind);
        EXPECT_EQ(signal.multiplexValue, row.multiplexValue);
        EXPECT_EQ(signal.length, 8U);
    }
}

TEST(SignalStatement, NameAndMultiplexerAreToldApart) {
    const std::string kName32 = "Abcdefghijklmnopqrstuvwxyz_01234";
    const Name kRows[] = {
        {"SG_ S ", "S", "S", 0, 0},
        {"SG_ S", "S", "S", 0, 0},
        {"SG_\tSpeed\n", "Speed", "Speed", 0, 0},
        {"SG_ 1st-Gear ", "1st-Gear", "_st_Gear", 0, 0},
        {"SG_ \xC3\x84"
         "B ",
         "\xC3\x84"
         "B",
         "_B", 0, 0},
        {"SG_ " + kName32, kName32, kName32, 0, 0},
        {"SG_ " + kName32 + "5", kName32 + "5", kName32, 0, 0},
        {"SG_ a\tb\nc\vd\fe\rf ", "a b c d e f", "a_b_c_d_e_f", 0, 0},

        // The multiplexor.
        {"SG_ S M ", "S", "S", 1, 0},
        {"SG_ S M", "S", "S", 1, 0},
        {"SG_ S\tM\t\n\v\f\r ", "S", "S", 1, 0},
        {"SG_ Two Words  M ", "Two Words", "Two_Words", 1, 0},
        {"SG_ M ", "", "", 1, 0},  // a signal named just M
        {"SG_  M", "", "", 1, 0},
        {"SG_ M M ", "M", "M", 1, 0},
        {"SG_ m M ", "m", "m", 1, 0},
        {"SG_ SM ", "SM", "SM", 0, 0},
        {"SG_ S Mx ", "S Mx", "S_Mx", 0, 0},
        {"SG_ S M1 ", "S M1", "S_M1", 0, 0},
        {"SG_ S M N ", "S M N", "S_M_N", 0, 0},
        {"SG_ S_M ", "S_M", "S_M", 0, 0},

        // Multiplexed: the value is decimal up to the first character that is no digit.
        {"SG_ S m0 ", "S", "S", 2, 0},
        {"SG_ S m7 ", "S", "S", 2, 7},
        {"SG_ S m7", "S", "S", 2, 7},
        {"SG_ S m007 ", "S", "S", 2, 7},
        {"SG_ S m4294967295 ", "S", "S", 2, 4294967295U},
        {"SG_ S\tm7\t", "S", "S", 2, 7},
        {"SG_ S m 7 ", "S", "S", 2, 7},
        {"SG_ S m7 8 ", "S", "S", 2, 7},
        {"SG_ S m1F ", "S", "S", 2, 1},
        {"SG_ S m0x10 ", "S", "S", 2, 0},
        {"SG_ S m1abcdefABCDEFx ", "S", "S", 2, 1},
        {"SG_ m2 ", "", "", 2, 2},
        {"SG_ m m2 ", "m", "m", 2, 2},
        {"SG_ M m2 ", "M", "M", 2, 2},
        {"SG_ S m4294967296 ", "S m4294967296", "S_m4294967296", 0, 0},  // no 32-bit number
        {"SG_ S m", "S m", "S_m", 0, 0},
        {"SG_ S m ", "S m", "S_m", 0, 0},
        {"SG_ m ", "m", "m", 0, 0},
        {"SG_ S mA ", "S mA", "S_mA", 0, 0},
        {"SG_ S m-1 ", "S m-1", "S_m_1", 0, 0},
        {"SG_ S m+1 ", "S m+1", "S_m_1", 0, 0},
        {"SG_ S m1g ", "S m1g", "S_m1g", 0, 0},
        {"SG_ S m1G ", "S m1G", "S_m1G", 0, 0},
        {"SG_ S m1X ", "S m1X", "S_m1X", 0, 0},
        {"SG_ S m1~ ", "S m1~", "S_m1_", 0, 0},
        {"SG_ S m1\n", "S m1", "S_m1", 0, 0},  // of the blanks, only spaces and tabs may follow
        {"SG_ S m1\v", "S m1", "S_m1", 0, 0},
        {"SG_ S m1\r", "S m1", "S_m1", 0, 0},
        {"SG_ Sm1 ", "Sm1", "Sm1", 0, 0},
        {"SG_ S_m1 ", "S_m1", "S_m1", 0, 0},

        // Only the two simple forms, and only the last "m" or "M" is looked at.
        {"SG_ S m3M ", "S m3M", "S_m3M", 0, 0},
        {"SG_ S m3 xM ", "S m3 xM", "S_m3_xM", 0, 0},
        {"SG_ S M m3 ", "S M", "S_M", 2, 3},
        {"SG_ S m3 M ", "S m3", "S_m3", 1, 0},
        {"SG_ S m1 m2 ", "S m1", "S_m1", 2, 2},

        // A name of nothing but blanks is an empty one.
        {"SG_ ", "", "", 0, 0},
        {"SG_ \t ", "", "", 0, 0},
    };
    CheckNames(kRows);
}

// What stands in front of the colon is mostly short and plain, and read in a way of its own then.
TEST(SignalStatement, ShortNamesAndMultiplexers) {
    const Name kRows[] = {
        {"SG_ Speed", "Speed", "Speed", 0, 0},
        {"SG_ Speed ", "Speed", "Speed", 0, 0},
        {"SG_   Speed   ", "Speed", "Speed", 0, 0},
        {"SG_\t\tSpeed\t\t", "Speed", "Speed", 0, 0},
        {"SG_\r\nSpeed\v\f", "Speed", "Speed", 0, 0},
        {"SG_ _ ", "_", "_", 0, 0},
        {"SG_ _m5 ", "_m5", "_m5", 0, 0},
        {"SG_ Speed M", "Speed", "Speed", 1, 0},
        {"SG_ Speed  M  ", "Speed", "Speed", 1, 0},
        {"SG_ Speed\tM\t", "Speed", "Speed", 1, 0},
        {"SG_ Speed\nM\n", "Speed", "Speed", 1, 0},
        {"SG_ Speed M \v ", "Speed", "Speed", 1, 0},
        {"SG_ Speed m5", "Speed", "Speed", 2, 5},
        {"SG_ Speed  m5  ", "Speed", "Speed", 2, 5},
        {"SG_ Speed\tm5", "Speed", "Speed", 2, 5},
        {"SG_ Speed \t m5 \t ", "Speed", "Speed", 2, 5},
        {"SG_ Speed\nm5 ", "Speed", "Speed", 2, 5},
        {"SG_ Speed\v\f\r\nm5\t", "Speed", "Speed", 2, 5},
        {"SG_\nSpeed m5", "Speed", "Speed", 2, 5},

        // Behind a value, a blank other than space and tab makes a name of all of it.
        {"SG_ Speed m5\n", "Speed m5", "Speed_m5", 0, 0},
        {"SG_ Speed m5 \n", "Speed m5", "Speed_m5", 0, 0},
        {"SG_ Speed m5\n ", "Speed m5", "Speed_m5", 0, 0},
        {"SG_ Speed m5\t\v", "Speed m5", "Speed_m5", 0, 0},
        {"SG_ Speed m5\f\t", "Speed m5", "Speed_m5", 0, 0},
        {"SG_ Speed m5\r\n", "Speed m5", "Speed_m5", 0, 0},
        {"SG_ Speed m5\r", "Speed m5", "Speed_m5", 0, 0},

        // Names that look like a multiplexer at the beginning.
        {"SG_ mode ", "mode", "mode", 0, 0},
        {"SG_ Mode ", "Mode", "Mode", 0, 0},
        {"SG_ mode m5 ", "mode", "mode", 2, 5},
        {"SG_ Mode m5 ", "Mode", "Mode", 2, 5},
        {"SG_ mode M ", "mode", "mode", 1, 0},
        {"SG_ Mode M ", "Mode", "Mode", 1, 0},
        {"SG_ Mm ", "Mm", "Mm", 0, 0},
        {"SG_ M5 ", "M5", "M5", 0, 0},
        {"SG_ M5 m5 ", "M5", "M5", 2, 5},
        {"SG_ m5x ", "", "", 2, 5},
        {"SG_ m5x M ", "m5x", "m5x", 1, 0},
        {"SG_ m5 m6 ", "m5", "m5", 2, 6},
        {"SG_ m5 M ", "m5", "m5", 1, 0},
        {"SG_ M M m5 ", "M M", "M_M", 2, 5},

        // The multiplexer alone leaves no name. It needs a blank in front.
        {"SG_ M", "", "", 1, 0},
        {"SG_ M  ", "", "", 1, 0},
        {"SG_\tM\n", "", "", 1, 0},
        {"SG_ m5", "", "", 2, 5},
        {"SG_\tm5\t", "", "", 2, 5},
        {"SG_  m5  ", "", "", 2, 5},
        {"SG_ m5\n", "m5", "m5", 0, 0},
        {"SG_ m", "m", "m", 0, 0},

        // Names that are no identifiers.
        {"SG_ 5 ", "5", "_", 0, 0},
        {"SG_ 5m ", "5m", "_m", 0, 0},
        {"SG_ 5peed ", "5peed", "_peed", 0, 0},
        {"SG_ 5peed M ", "5peed", "_peed", 1, 0},
        {"SG_ 5peed m5 ", "5peed", "_peed", 2, 5},
        {"SG_ 123 m5 ", "123", "_23", 2, 5},
        {"SG_ Sp-eed m5 ", "Sp-eed", "Sp_eed", 2, 5},
        {"SG_ \"Speed\" M ", "\"Speed\"", "_Speed_", 1, 0},
        {"SG_ L\xC3\xA4nge", "L\xC3\xA4nge", "L_nge", 0, 0},
        {"SG_ L\xC3\xA4nge M ", "L\xC3\xA4nge", "L_nge", 1, 0},
        {"SG_ L\xC3\xA4nge m5 ", "L\xC3\xA4nge", "L_nge", 2, 5},
        {"SG_ \xE2\x82\xAC m5 ", "\xE2\x82\xAC", "_", 2, 5},
        {"SG_ Speed m\xC3\xA4 ", "Speed m\xC3\xA4", "Speed_m_", 0, 0},

        // Behind the name stands something else.
        {"SG_ Speed m", "Speed m", "Speed_m", 0, 0},
        {"SG_ Speed m ", "Speed m", "Speed_m", 0, 0},
        {"SG_ Speed mM", "Speed mM", "Speed_mM", 0, 0},
        {"SG_ Speed Mm", "Speed Mm", "Speed_Mm", 0, 0},
        {"SG_ Speed MM", "Speed MM", "Speed_MM", 0, 0},
        {"SG_ Speed mm5", "Speed mm5", "Speed_mm5", 0, 0},
        {"SG_ Speed m3M", "Speed m3M", "Speed_m3M", 0, 0},
        {"SG_ Speed M5", "Speed M5", "Speed_M5", 0, 0},
        {"SG_ Speed M x", "Speed M x", "Speed_M_x", 0, 0},
        {"SG_ Speed x M", "Speed x", "Speed_x", 1, 0},
        {"SG_ Speed x m5", "Speed x", "Speed_x", 2, 5},
        {"SG_ Speed m1 m2", "Speed m1", "Speed_m1", 2, 2},
        {"SG_ Speed m1 x", "Speed", "Speed", 2, 1},  // an "x" may stand in a value
        {"SG_ Speed m1 y", "Speed m1 y", "Speed_m1_y", 0, 0},
        {"SG_ Speed m1 2", "Speed", "Speed", 2, 1},
        {"SG_ Speed m1 aF", "Speed", "Speed", 2, 1},
        {"SG_ Speed m1_", "Speed m1_", "Speed_m1_", 0, 0},
        {"SG_ Speed m1F", "Speed", "Speed", 2, 1},
        {"SG_ Speed m0x10", "Speed", "Speed", 2, 0},
        {"SG_ Speed mx10", "Speed mx10", "Speed_mx10", 0, 0},
        {"SG_ Speed m+5", "Speed m+5", "Speed_m_5", 0, 0},
        {"SG_ Speed m-5", "Speed m-5", "Speed_m_5", 0, 0},
        {"SG_ Speed m 5", "Speed", "Speed", 2, 5},
        {"SG_ Speed m\t5", "Speed", "Speed", 2, 5},
        {"SG_ Speed m\n5", "Speed m 5", "Speed_m_5", 0, 0},
        {"SG_ Speed 5", "Speed 5", "Speed_5", 0, 0},
        {"SG_ Speed x", "Speed x", "Speed_x", 0, 0},
        {"SG_ Speed _", "Speed _", "Speed__", 0, 0},
        {"SG_ Two Words", "Two Words", "Two_Words", 0, 0},

        // Values of 8, 9, 10 and 11 digits.
        {"SG_ S m12345678", "S", "S", 2, 12345678},
        {"SG_ S m123456789", "S", "S", 2, 123456789},
        {"SG_ S m999999999", "S", "S", 2, 999999999},
        {"SG_ S m1234567890", "S", "S", 2, 1234567890},
        {"SG_ S m4294967295", "S", "S", 2, 4294967295U},
        {"SG_ S m4294967296", "S m4294967296", "S_m4294967296", 0, 0},
        {"SG_ S m9999999999", "S m9999999999", "S_m9999999999", 0, 0},
        {"SG_ S m00000000012", "S", "S", 2, 12},
        {"SG_ S m000000012", "S", "S", 2, 12},
        {"SG_ S m12345678901", "S m12345678901", "S_m12345678901", 0, 0},
        {"SG_ S m18446744073709551621", "S m18446744073709551621", "S_m18446744073709551621", 0, 0},
    };
    CheckNames(kRows);
}

// With 30 to 34 characters in front of the colon, the blanks included.
TEST(SignalStatement, NamesAroundThirtyTwoCharacters) {
    const Name kRows[] = {
        {"SG_ Abcdefghijklopqrstuvwxyz_0123", "Abcdefghijklopqrstuvwxyz_0123", "Abcdefghijklopqrstuvwxyz_0123", 0, 0},
        {"SG_ Abcdefghijklopqrstuvwxyz_01234", "Abcdefghijklopqrstuvwxyz_01234", "Abcdefghijklopqrstuvwxyz_01234", 0,
         0},
        {"SG_ Abcdefghijklopqrstuvwxyz_012345", "Abcdefghijklopqrstuvwxyz_012345", "Abcdefghijklopqrstuvwxyz_012345", 0,
         0},
        {"SG_ Abcdefghijklopqrstuvwxyz_0123456", "Abcdefghijklopqrstuvwxyz_0123456", "Abcdefghijklopqrstuvwxyz_0123456",
         0, 0},
        {"SG_ Abcdefghijklopqrstuvwxyz_01234567", "Abcdefghijklopqrstuvwxyz_01234567",
         "Abcdefghijklopqrstuvwxyz_0123456", 0, 0},
        {"SG_ Abcdefghijklopqrstuvwxyz_01 M", "Abcdefghijklopqrstuvwxyz_01", "Abcdefghijklopqrstuvwxyz_01", 1, 0},
        {"SG_ Abcdefghijklopqrstuvwxyz_012 M", "Abcdefghijklopqrstuvwxyz_012", "Abcdefghijklopqrstuvwxyz_012", 1, 0},
        {"SG_ Abcdefghijklopqrstuvwxyz_0123 M", "Abcdefghijklopqrstuvwxyz_0123", "Abcdefghijklopqrstuvwxyz_0123", 1, 0},
        {"SG_ Abcdefghijklopqrstuvwxyz_01234 M", "Abcdefghijklopqrstuvwxyz_01234", "Abcdefghijklopqrstuvwxyz_01234", 1,
         0},
        {"SG_ Abcdefghijklopqrstuvwxyz_0 m7", "Abcdefghijklopqrstuvwxyz_0", "Abcdefghijklopqrstuvwxyz_0", 2, 7},
        {"SG_ Abcdefghijklopqrstuvwxyz_01 m7", "Abcdefghijklopqrstuvwxyz_01", "Abcdefghijklopqrstuvwxyz_01", 2, 7},
        {"SG_ Abcdefghijklopqrstuvwxyz_012 m7", "Abcdefghijklopqrstuvwxyz_012", "Abcdefghijklopqrstuvwxyz_012", 2, 7},
        {"SG_ Abcdefghijklopqrstuvwxyz_0 m78", "Abcdefghijklopqrstuvwxyz_0", "Abcdefghijklopqrstuvwxyz_0", 2, 78},
        {"SG_ Abcdefghijklopqrstuvwxyz_0 m7 ", "Abcdefghijklopqrstuvwxyz_0", "Abcdefghijklopqrstuvwxyz_0", 2, 7},
        {"SG_ Abcdefghijklopqrstuvwxyz_0 m7  ", "Abcdefghijklopqrstuvwxyz_0", "Abcdefghijklopqrstuvwxyz_0", 2, 7},
        {"SG_ Abcdefghijklopqrstuvwxyz_0 m7\n", "Abcdefghijklopqrstuvwxyz_0 m7", "Abcdefghijklopqrstuvwxyz_0_m7", 0, 0},
        {"SG_ Abcdefghijklopqrstuvwxyz_0 m7x", "Abcdefghijklopqrstuvwxyz_0", "Abcdefghijklopqrstuvwxyz_0", 2, 7},
        {"SG_ Abcdefghijklopqrstuvwxyz_0 m7M", "Abcdefghijklopqrstuvwxyz_0 m7M", "Abcdefghijklopqrstuvwxyz_0_m7M", 0,
         0},
        {"SG_                               S", "S", "S", 0, 0},
        {"SG_ S                             M", "S", "S", 1, 0},
        {"SG_ S                            m7", "S", "S", 2, 7},
        {"SG_                            S m7", "S", "S", 2, 7},
    };
    for (const Name& row : kRows) {
        SCOPED_TRACE(Shown(row.line) + " of " + std::to_string(row.line.size() - 3));
        OwnSignal signal;
        ASSERT_TRUE(signal.ParseLine(row.line + kRest));
        EXPECT_EQ(signal.name, row.name);
        EXPECT_EQ(signal.identifierName, row.identifierName);
        EXPECT_EQ(signal.multiplexKind, row.multiplexKind);
        EXPECT_EQ(signal.multiplexValue, row.multiplexValue);
    }
}

// The first colon ends the name, whatever comes behind.
TEST(SignalStatement, OnlyTheFirstColonEndsTheName) {
    for (const std::string_view front : {"SG_ Speed m5 ", "SG_ Speed m5", "SG_                          Speed m5 "}) {
        for (const std::string_view bits : {"0|8@1+", ":0|8@1+", " : 0|8@1+", " M : 0|8@1+", "::0|8@1+"}) {
            const std::string line = std::string(front).append(":").append(bits).append(" (1,0) [0|1] \":\" A:B");
            SCOPED_TRACE(line);
            OwnSignal signal;
            // Text in front of the start bit is none.
            const bool isRead = bits.front() == '0';
            ASSERT_EQ(signal.ParseLine(line), isRead);
            EXPECT_EQ(signal.name, isRead ? "Speed" : "");
            EXPECT_EQ(signal.multiplexValue, isRead ? 5U : 0U);
            EXPECT_EQ(signal.unit, isRead ? ":" : "");
            EXPECT_EQ(signal.receivers.Joined(), isRead ? "A_B" : "");
        }
    }
}

// A statement that ends with its first colon, or has none, is refused with nothing left of it, be it short or long.
TEST(SignalStatement, NothingIsLeftOfANameWithoutAnythingBehind) {
    for (const std::string_view text :
         {"S", "S ", "S M", "S m5", "S m5 ", "Two Words m5", "M", "", "   ", "L\xC3\xA4nge m5"}) {
        for (const size_t blanks : {1, 25, 28, 29, 30, 31, 32, 40}) {
            for (const std::string_view end : {"", ":"}) {
                const std::string line = "SG_" + std::string(blanks, ' ') + std::string(text).append(end);
                SCOPED_TRACE(Shown(line));
                OwnSignal signal;
                EXPECT_FALSE(signal.ParseLine(line));
                EXPECT_TRUE(signal.invalid);
                EXPECT_EQ(signal.name, "");
                EXPECT_EQ(signal.nameAsRead, "");
                EXPECT_EQ(signal.identifierName, "");
                EXPECT_EQ(signal.multiplexKind, 0U);
                EXPECT_EQ(signal.multiplexValue, 0U);
                EXPECT_EQ(signal.parseErrors.Codes(), std::vector<uint32_t>{3});
            }
        }
    }
}

// More blanks in front make a text that is no short one, and mean nothing.
TEST(SignalStatement, ShortAndLongTextsReadTheSame) {
    static constexpr std::string_view kPieces[] = {"S", "m", "M",  " M", " m12", "m5", "5",        "x", "_",
                                                   " ", " ", "\t", "\n", "0",    "Ab", "\xC3\xA4", "-"};
    Random random(17);
    const std::string blanks(40, ' ');
    size_t kinds[3] = {};
    for (int round = 0; round < 30000; ++round) {
        std::string text;
        for (size_t i = random.Below(8); i > 0; --i) {
            text += kPieces[random.Below(std::size(kPieces))];
        }
        SCOPED_TRACE(Shown(text));
        OwnSignal shortOne;
        OwnSignal longOne;
        ASSERT_TRUE(shortOne.ParseLine("SG_ " + text + kRest));
        ASSERT_TRUE(longOne.ParseLine("SG_ " + blanks + text + kRest));
        ASSERT_EQ(shortOne.nameAsRead, longOne.nameAsRead);
        ASSERT_EQ(shortOne.name, longOne.name);
        ASSERT_EQ(shortOne.identifierName, longOne.identifierName);
        ASSERT_EQ(shortOne.multiplexKind, longOne.multiplexKind);
        ASSERT_EQ(shortOne.multiplexValue, longOne.multiplexValue);
        ASSERT_EQ(shortOne.WriteDefinitionLine(), longOne.WriteDefinitionLine());
        ++kinds[shortOne.multiplexKind];
    }
    for (const size_t count : kinds) {
        EXPECT_GT(count, 1000U);
    }
}

TEST(SignalStatement, NameAsReadKeepsItsBlanks) {
    OwnSignal signal;
    ASSERT_TRUE(signal.ParseLine("SG_ \tEngine\t \vSpeed\n m4 " + kRest));
    EXPECT_EQ(signal.nameAsRead, "Engine\t \vSpeed");
    EXPECT_EQ(signal.name, "Engine   Speed");
}

struct Bits {
    std::string text;  // between the colon and the factor
    uint32_t startBit;
    uint32_t length;
    uint32_t byteOrder;
    uint32_t valueType;
};

TEST(SignalStatement, BitsAreRead) {
    const Bits kRows[] = {
        {" 0|8@1+ ", 0, 8, 1, 0},
        {" 7|16@0- ", 7, 16, 0, 1},
        {" 7|16@1- ", 7, 16, 1, 1},
        {" 7|16@0+ ", 7, 16, 0, 0},
        {"7|8@0", 7, 8, 0, 0},  // no sign: unsigned
        {" 7|8@1 ", 7, 8, 1, 0},
        {" 7|8@1 - ", 7, 8, 1, 1},
        {" 7|8@ \t1\n- ", 7, 8, 1, 1},
        {" 7|8@1x ", 7, 8, 1, 0},
        {" 7|8@1-- ", 7, 8, 1, 1},
        {" 4294967295|4294967295@1+ ", 4294967295U, 4294967295U, 1, 0},
        {"\t7 | 8 @1+ ", 7, 8, 1, 0},
        {" +7|+8@1+ ", 7, 8, 1, 0},
        {" -1|8@1+ ", 4294967295U, 8, 1, 0},
        {" 7|-1@1+ ", 7, 4294967295U, 1, 0},
        {" 007|008@1+ ", 7, 8, 1, 0},
        {" 7x|8x@1+ ", 7, 8, 1, 0},  // text behind the numbers is ignored
        {" 7 x|8 x@1+ ", 7, 8, 1, 0},
        {" 0x7|0x8@1+ ", 0, 0, 1, 0},
        {" 0|0@1+ ", 0, 0, 1, 0},
        // Without "@" the order is little-endian and the value unsigned.
        {" 7|8 ", 7, 8, 1, 0},
        {" 7| 8-", 7, 8, 1, 0},
        {"7|8", 7, 8, 1, 0},
        // The bracket may stand where ten digits, those of 4294967295, would end.
        {"7|-1 ///////", 7, 4294967295U, 1, 0},
    };
    for (const Bits& row : kRows) {
        SCOPED_TRACE(Shown(row.text));
        OwnSignal signal;
        ASSERT_TRUE(signal.ParseLine("SG_ S :" + row.text + "(2,3) [0|255] \"\" A"));
        EXPECT_EQ(signal.startBit, row.startBit);
        EXPECT_EQ(signal.length, row.length);
        EXPECT_EQ(signal.byteOrder, row.byteOrder);
        EXPECT_EQ(signal.valueType, row.valueType);
        EXPECT_EQ(signal.factor, 2.0);
    }
}

struct Number {
    std::string text;
    double value;
};

TEST(SignalStatement, EachOfTheFourNumbersIsRead) {
    const Number kRows[] = {
        {"0", 0.0},
        {"1", 1.0},
        {"-40", -40.0},
        {"+0.5", 0.5},
        {" \t2.5 ", 2.5},
        {".25", 0.25},
        {"1e3", 1000.0},
        {"1E-2", 0.01},
        {"0x10", 16.0},
        {"3abc", 3.0},
        {"4 5", 4.0},
        {"1.7976931348623157e308", std::numeric_limits<double>::max()},
        {"4.9406564584124654e-324", std::numeric_limits<double>::denorm_min()},
        {"inf", std::numeric_limits<double>::infinity()},
        {"-inf", -std::numeric_limits<double>::infinity()},
    };
    for (const Number& row : kRows) {
        SCOPED_TRACE(Shown(row.text));
        OwnSignal signal;
        ASSERT_TRUE(signal.ParseLine("SG_ S : 0|8@1+ (" + row.text + ",7) [-inf|inf] \"\" A"));
        EXPECT_EQ(signal.factor, row.value);
        EXPECT_EQ(signal.offset, 7.0);
        ASSERT_TRUE(signal.ParseLine("SG_ S : 0|8@1+ (7," + row.text + ") [-inf|inf] \"\" A"));
        EXPECT_EQ(signal.factor, 7.0);
        EXPECT_EQ(signal.offset, row.value);
        ASSERT_TRUE(signal.ParseLine("SG_ S : 0|8@1+ (1,0) [" + row.text + "|inf] \"\" A"));
        EXPECT_EQ(signal.minimum, row.value);
        EXPECT_EQ(signal.maximum, std::numeric_limits<double>::infinity());
        ASSERT_TRUE(signal.ParseLine("SG_ S : 0|8@1+ (1,0) [-inf|" + row.text + "] \"\" A"));
        EXPECT_EQ(signal.minimum, -std::numeric_limits<double>::infinity());
        EXPECT_EQ(signal.maximum, row.value);
    }
}

TEST(SignalStatement, TextBetweenThePartsIsPassedOver) {
    OwnSignal signal;
    ASSERT_TRUE(signal.ParseLine("SG_ S : 0|8@1+ junk [9|9] (2(x,3,y) ) (4,5) [6[x|7|y] ] x \"u\" A"));
    EXPECT_EQ(signal.factor, 2.0);
    EXPECT_EQ(signal.offset, 3.0);
    EXPECT_EQ(signal.minimum, 6.0);
    EXPECT_EQ(signal.maximum, 7.0);
    EXPECT_EQ(signal.unit, "u");
    EXPECT_EQ(signal.receivers.Joined(), "A");
}

struct Range {
    std::string text;
    double minimum;
    double maximum;
};

TEST(SignalStatement, RangeTheWrongWayRoundIsSwapped) {
    const Range kRows[] = {
        {"[10|0]", 0.0, 10.0}, {"[0|10]", 0.0, 10.0},         {"[-5|-10]", -10.0, -5.0},
        {"[1|1]", 1.0, 1.0},   {"[0.25|0.125]", 0.125, 0.25}, {"[inf|0]", 0.0, std::numeric_limits<double>::infinity()},
    };
    for (const Range& row : kRows) {
        SCOPED_TRACE(Shown(row.text));
        OwnSignal signal;
        ASSERT_TRUE(signal.ParseLine("SG_ S : 0|8@1+ (1,0) " + row.text + " \"\" A"));
        EXPECT_EQ(signal.minimum, row.minimum);
        EXPECT_EQ(signal.maximum, row.maximum);
    }
}

TEST(SignalStatement, RangeWithNotANumberIsNotSwapped) {
    OwnSignal signal;
    ASSERT_TRUE(signal.ParseLine("SG_ S : 0|8@1+ (1,0) [nan|0] \"\" A"));
    EXPECT_TRUE(std::isnan(signal.minimum));
    EXPECT_EQ(signal.maximum, 0.0);
}

struct Tail {
    std::string text;  // behind "]"
    std::string unitAsWritten;
    std::string unit;
    std::string receivers;
};

TEST(SignalStatement, UnitAndReceiversAreRead) {
    const std::string kNode32 = "Node_efghijklmnopqrstuvwxyz01234";
    const Tail kRows[] = {
        {" \"rpm\" A", "rpm", "rpm", "A"},
        {" \"\" A", "", "", "A"},
        {" \" \t\" A", "", "", "A"},
        {" \" \tkm h\n \" A", "km h", "km h", "A"},
        {" \"%\" A", "%", "%", "A"},  // one character is a unit
        {" \"\xC2\xB5s\" A", "\xC2\xB5s", "_s", "A"},
        {" \"\xE2\x82\xAC/\xF0\x9F\x9A\x97\" A", "\xE2\x82\xAC/\xF0\x9F\x9A\x97", "_/_", "A"},
        {" x \"u\" A", "u", "u", "A"},
        {"\"u\"A", "u", "u", "A"},
        {" \"u\\\" A", "u\\", "u\\", "A"},  // a backslash escapes nothing
        {" \"u\" A\"B\"", "u", "u", "A_B_"},

        // No unit: the receivers begin one character behind "]".
        {"", "", "", ""},
        {" ", "", "", ""},
        {"X", "", "", ""},
        {"XA", "", "", "A"},
        {" A", "", "", "A"},
        {" A,B", "", "", "A,B"},
        {" \"A", "", "", "_A"},
        {"\"A,B", "", "", "A,B"},

        {" \"u\"", "u", "u", ""},
        {" \"u\"\r\n", "u", "u", ""},
        {" \"u\" X", "u", "u", "X"},  // one character is a receiver
        {" \"u\" ECU1, ECU2", "u", "u", "ECU1,ECU2"},
        {" \"u\" ECU1 ECU2", "u", "u", "ECU1_ECU2"},
        {" \"u\" A,B;", "u", "u", "A,B_"},
        {" \"u\" A\t\n , \v\f B\r\n ", "u", "u", "A,B"},
        {" \"u\" ,A,,B, ,C,", "u", "u", "A,B,C"},
        {" \"u\" , ,\t,", "u", "u", ""},
        {" \"u\" A,A", "u", "u", "A,A"},
        {" \"u\" 1A,2", "u", "u", "_A,_"},
        {" \"u\" B\xC3\xB6-1", "u", "u", "B__1"},
        {" \"u\" " + kNode32 + "," + kNode32 + "5", "u", "u", kNode32 + "," + kNode32},
    };
    for (const Tail& row : kRows) {
        SCOPED_TRACE(Shown(row.text));
        OwnSignal signal;
        ASSERT_TRUE(signal.ParseLine("SG_ S : 0|8@1+ (1,0) [0|255]" + row.text));
        EXPECT_EQ(signal.unitAsWritten, row.unitAsWritten);
        EXPECT_EQ(signal.unit, row.unit);
        EXPECT_EQ(signal.receivers.Joined(), row.receivers);
    }
}

struct WrittenNumber {
    double value;
    std::string text;
};

TEST(SignalStatement, DoublesAreWrittenWithTenDigits) {
    const WrittenNumber kRows[] = {
        {0.0, "0"},
        {1.0, "1"},
        {-40.0, "-40"},
        {0.125, "0.125"},
        {0.1, "0.1"},
        {1.0 / 3.0, "0.3333333333"},
        {2.0 / 3.0, "0.6666666667"},
        {8031.875, "8031.875"},
        {4294967295.0, "4294967295"},
        {9999999999.0, "9999999999"},
        {9999999999.6, "1e+10"},
        {1e10, "1e+10"},
        {1.5e12, "1.5e+12"},
        {123456.7891234, "123456.7891"},
        {0.0001, "0.0001"},
        {0.00001, "1e-05"},
        {0.0000123456789123, "1.234567891e-05"},
        {1e100, "1e+100"},
        {-1e-100, "-1e-100"},
        {std::numeric_limits<double>::infinity(), "inf"},
    };
    for (const WrittenNumber& row : kRows) {
        SCOPED_TRACE(Shown(row.text));
        OwnSignal signal;
        signal.invalid = false;
        signal.factor = signal.offset = signal.minimum = signal.maximum = row.value;
        EXPECT_EQ(signal.WriteDefinitionLine(), " SG_  : 0|0@1+ (" + row.text + "," + row.text + ") [" + row.text +
                                                    "|" + row.text + "] \"\" Kestrune");
    }
}

struct WrittenCodes {
    uint32_t multiplexKind;
    uint32_t byteOrder;
    uint32_t valueType;
    std::string_view written;
};

TEST(SignalStatement, CodesAreWritten) {
    const WrittenCodes kRows[] = {
        {0, 1, 0, " SG_ S : 4294967295|4294967294@1+ (0,0) [0|0] \"\" Kestrune"},
        {1, 1, 0, " SG_ S M : 4294967295|4294967294@1+ (0,0) [0|0] \"\" Kestrune"},
        {2, 1, 0, " SG_ S m4294967293 : 4294967295|4294967294@1+ (0,0) [0|0] \"\" Kestrune"},
        {0, 0, 0, " SG_ S : 4294967295|4294967294@0+ (0,0) [0|0] \"\" Kestrune"},
        {0, 1, 1, " SG_ S : 4294967295|4294967294@1- (0,0) [0|0] \"\" Kestrune"},
        {0, 1, 2, " SG_ S : 4294967295|4294967294@1- (0,0) [0|0] \"\" Kestrune"},  // float
        {0, 1, 3, " SG_ S : 4294967295|4294967294@1- (0,0) [0|0] \"\" Kestrune"},  // double
        // Values outside the lists.
        {7, 5, 7, " SG_ S : 4294967295|4294967294@1- (0,0) [0|0] \"\" Kestrune"},
    };
    for (const WrittenCodes& row : kRows) {
        SCOPED_TRACE(row.written);
        OwnSignal signal;
        signal.invalid = false;
        signal.identifierName = "S";
        signal.multiplexKind = row.multiplexKind;
        signal.multiplexValue = 4294967293U;
        signal.startBit = 4294967295U;
        signal.length = 4294967294U;
        signal.byteOrder = row.byteOrder;
        signal.valueType = row.valueType;
        EXPECT_EQ(signal.WriteDefinitionLine(), row.written);
    }
}

TEST(SignalStatement, WrittenTextsAreThoseReducedToAscii) {
    OwnSignal signal;
    ASSERT_TRUE(signal.ParseLine("SG_ \xC3\x84 1 : 0|8@1+ (1,0) [0|1] \"\xC2\xB0 C\" B\xC3\xA4r"));
    signal.name = "Another Name";
    EXPECT_EQ(signal.WriteDefinitionLine(), " SG_ __1 : 0|8@1+ (1,0) [0|1] \"_ C\" B_r");
}

}  // namespace
}  // namespace tabrin
