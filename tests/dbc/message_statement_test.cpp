#include <gtest/gtest.h>
#include <utf8.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "model/can_message.h"
#include "model/own_arena.h"
#include "model/reset_state.h"
#include "shown.h"

namespace tabrin {
namespace {

const std::string kName32 = "Abcdefghijklmnopqrstuvwxyz_01234";

struct Accepted {
    std::string line;
    uint32_t id;
    std::string name;
    std::string identifierName;
    uint32_t dlc;
    std::string transmitter;
    std::string written;
};

const std::vector<Accepted>& AcceptedLines() {
    static const std::vector<Accepted> rows = {
        {"BO_ 100 Msg: 8 ECU", 100, "Msg", "Msg", 8, "ECU", "BO_ 100 Msg: 8 ECU"},
        {"BO_ 2364540158 EEC1: 8 Kestrune", 2364540158U, "EEC1", "EEC1", 8, "Kestrune",
         "BO_ 2364540158 EEC1: 8 Kestrune"},

        // The keyword: blanks of any kind around it.
        {" \t\r\n\v\fBO_\t100 Msg: 8 ECU", 100, "Msg", "Msg", 8, "ECU", "BO_ 100 Msg: 8 ECU"},
        {"BO_\n\v\f\r 100\tMsg: 8 ECU", 100, "Msg", "Msg", 8, "ECU", "BO_ 100 Msg: 8 ECU"},

        // The identifier: all 32 bits, leading zeros lost.
        {"BO_ 0 Msg: 8 ECU", 0, "Msg", "Msg", 8, "ECU", "BO_ 0 Msg: 8 ECU"},
        {"BO_ 2147483648 Msg: 8 ECU", 2147483648U, "Msg", "Msg", 8, "ECU", "BO_ 2147483648 Msg: 8 ECU"},
        {"BO_ 4294967295 Msg: 8 ECU", 4294967295U, "Msg", "Msg", 8, "ECU", "BO_ 4294967295 Msg: 8 ECU"},
        {"BO_ 00100 Msg: 8 ECU", 100, "Msg", "Msg", 8, "ECU", "BO_ 100 Msg: 8 ECU"},
        // A sign takes the place of the tenth digit: 4294967296 - 429496729.
        {"BO_ -429496729 Msg: 8 ECU", 3865470567U, "Msg", "Msg", 8, "ECU", "BO_ 3865470567 Msg: 8 ECU"},

        // The name: everything up to the first colon.
        {"BO_ 100 Engine Data: 8 ECU", 100, "Engine Data", "Engine_Data", 8, "ECU", "BO_ 100 Engine_Data: 8 ECU"},
        {"BO_ 100 1Msg: 8 ECU", 100, "1Msg", "_Msg", 8, "ECU", "BO_ 100 _Msg: 8 ECU"},
        {"BO_ 100 A: 8 ECU", 100, "A", "A", 8, "ECU", "BO_ 100 A: 8 ECU"},
        {"BO_ 100 \t Msg \v: 8 ECU", 100, "Msg", "Msg", 8, "ECU", "BO_ 100 Msg: 8 ECU"},
        {"BO_ 100 Msg : 8 ECU", 100, "Msg", "Msg", 8, "ECU", "BO_ 100 Msg: 8 ECU"},
        {"BO_ 100 a\tb\nc\vd\fe\rf: 8 ECU", 100, "a b c d e f", "a_b_c_d_e_f", 8, "ECU", "BO_ 100 a_b_c_d_e_f: 8 ECU"},
        {"BO_ 100 Stra\xC3\x9F"
         "e-7: 8 ECU",
         100,
         "Stra\xC3\x9F"
         "e-7",
         "Stra_e_7", 8, "ECU", "BO_ 100 Stra_e_7: 8 ECU"},
        {"BO_ 100 " + kName32 + ": 8 ECU", 100, kName32, kName32, 8, "ECU", "BO_ 100 " + kName32 + ": 8 ECU"},
        {"BO_ 100 " + kName32 + "5: 8 ECU", 100, kName32 + "5", kName32, 8, "ECU", "BO_ 100 " + kName32 + ": 8 ECU"},

        // The data length: any 32-bit number, wherever its digits end.
        {"BO_ 100 Msg:8 ECU", 100, "Msg", "Msg", 8, "ECU", "BO_ 100 Msg: 8 ECU"},
        {"BO_ 100 Msg: \t\n\v\f\r8 ECU", 100, "Msg", "Msg", 8, "ECU", "BO_ 100 Msg: 8 ECU"},
        {"BO_ 100 Msg: 0 ECU", 100, "Msg", "Msg", 0, "ECU", "BO_ 100 Msg: 0 ECU"},
        {"BO_ 100 Msg: 64 ECU", 100, "Msg", "Msg", 64, "ECU", "BO_ 100 Msg: 64 ECU"},
        {"BO_ 100 Msg: 1000 ECU", 100, "Msg", "Msg", 1000, "ECU", "BO_ 100 Msg: 1000 ECU"},
        {"BO_ 100 Msg: 4294967295 ECU", 100, "Msg", "Msg", 4294967295U, "ECU", "BO_ 100 Msg: 4294967295 ECU"},
        {"BO_ 100 Msg: 008 ECU", 100, "Msg", "Msg", 8, "ECU", "BO_ 100 Msg: 8 ECU"},
        {"BO_ 100 Msg: 8ECU", 100, "Msg", "Msg", 8, "ECU", "BO_ 100 Msg: 8 ECU"},
        {"BO_ 100 Msg: 8.5", 100, "Msg", "Msg", 8, "_5", "BO_ 100 Msg: 8 _5"},

        // The transmitter: all the rest, made an identifier.
        {"BO_ 100 Msg: 8", 100, "Msg", "Msg", 8, "", "BO_ 100 Msg: 8 Kestrune"},
        {"BO_ 100 Msg: 8 ", 100, "Msg", "Msg", 8, "", "BO_ 100 Msg: 8 Kestrune"},
        {"BO_ 100 Msg: 8 \r\n", 100, "Msg", "Msg", 8, "", "BO_ 100 Msg: 8 Kestrune"},
        {"BO_ 100 Msg: 8 \t ECU \r\n ", 100, "Msg", "Msg", 8, "ECU", "BO_ 100 Msg: 8 ECU"},
        {"BO_ 100 Msg: 8 ECU extra", 100, "Msg", "Msg", 8, "ECU_extra", "BO_ 100 Msg: 8 ECU_extra"},
        {"BO_ 100 Msg: 8 Node 1", 100, "Msg", "Msg", 8, "Node_1", "BO_ 100 Msg: 8 Node_1"},
        {"BO_ 100 Msg: 8 1Node", 100, "Msg", "Msg", 8, "_Node", "BO_ 100 Msg: 8 _Node"},
        {"BO_ 100 Msg: 8 ECU;", 100, "Msg", "Msg", 8, "ECU_", "BO_ 100 Msg: 8 ECU_"},
        {"BO_ 100 Msg: 8 ECU:B", 100, "Msg", "Msg", 8, "ECU_B", "BO_ 100 Msg: 8 ECU_B"},
        {"BO_ 100 Msg: 8 ECU\n\nnext", 100, "Msg", "Msg", 8, "ECU__next", "BO_ 100 Msg: 8 ECU__next"},
        {"BO_ 100 Msg: 8 T\xC3\xBCr", 100, "Msg", "Msg", 8, "T_r", "BO_ 100 Msg: 8 T_r"},
        {"BO_ 100 Msg: 8 " + kName32 + "5", 100, "Msg", "Msg", 8, kName32, "BO_ 100 Msg: 8 " + kName32},
        {"BO_ 100 Msg: 8 X", 100, "Msg", "Msg", 8, "X", "BO_ 100 Msg: 8 X"},
        // One single character right behind the digits at the end of the text is too short to be seen.
        {"BO_ 100 Msg: 8X", 100, "Msg", "Msg", 8, "", "BO_ 100 Msg: 8 Kestrune"},
        {"BO_ 100 Msg: 8X\n", 100, "Msg", "Msg", 8, "X", "BO_ 100 Msg: 8 X"},
    };
    return rows;
}

TEST(MessageStatement, AcceptedLinesAreRead) {
    for (const Accepted& row : AcceptedLines()) {
        SCOPED_TRACE(Shown(row.line));
        OwnMessage message;
        ASSERT_TRUE(message.ParseLine(row.line));
        EXPECT_FALSE(message.invalid);
        EXPECT_EQ(message.id, row.id);
        EXPECT_EQ(message.name, row.name);
        EXPECT_EQ(message.identifierName, row.identifierName);
        EXPECT_EQ(message.dlc, row.dlc);
        EXPECT_EQ(message.transmitter, row.transmitter);
        EXPECT_EQ(message.parseErrors.Codes(), std::vector<uint32_t>());
    }
}

TEST(MessageStatement, AcceptedLinesAreWrittenBack) {
    for (const Accepted& row : AcceptedLines()) {
        SCOPED_TRACE(Shown(row.line));
        OwnMessage message;
        ASSERT_TRUE(message.ParseLine(row.line));
        EXPECT_EQ(message.WriteDefinitionLine(), row.written);
    }
}

struct Rejected {
    std::string_view line;
    std::vector<uint32_t> codes;
};

void ExpectRejected(const Rejected& row) {
    SCOPED_TRACE(Shown(row.line));
    OwnMessage message;
    FillEveryField(message);
    EXPECT_FALSE(message.ParseLine(row.line));
    ExpectReset(message);
    EXPECT_EQ(message.parseErrors.Codes(), row.codes);
    EXPECT_EQ(message.WriteDefinitionLine(), "");
}

TEST(MessageStatement, OtherLinesFailWithoutCode) {
    const Rejected kRows[] = {
        {"", {}},
        {" \t\n", {}},
        {"BO_", {}},
        {"  BO_", {}},
        {"BO_100 Msg: 8 ECU", {}},
        {"BO_: 100 Msg: 8 ECU", {}},
        {"bo_ 100 Msg: 8 ECU", {}},
        {"BU_ 100 Msg: 8 ECU", {}},
        {"SG_ S : 0|8@1+ (1,0) [0|255] \"\" A", {}},
        {"x BO_ 100 Msg: 8 ECU", {}},
        {"BO_TX_BU_ 100 Msg: 8 ECU", {}},
    };
    for (const Rejected& row : kRows) {
        ExpectRejected(row);
    }
}

TEST(MessageStatement, IdentifierThatIsNoPlainNumberFailsWithCodeZero) {
    const Rejected kRows[] = {
        {"BO_ ", {0}},
        {"BO_ \n", {0}},
        {"BO_ x Msg: 8 ECU", {0}},
        {"BO_ 100: 8 ECU", {0}},
        {"BO_ 100", {0}},  // no blank behind the number
        {"BO_ 100x Msg: 8 ECU", {0}},
        {"BO_ 0x64 Msg: 8 ECU", {0}},
        {"BO_ +100 Msg: 8 ECU", {0}},
        {"BO_ -1 Msg: 8 ECU", {0}},
        {"BO_ 1.5 Msg: 8 ECU", {0}},
        {"BO_ 4294967296 Msg: 8 ECU", {0}},
        {"BO_ Msg 100: 8 ECU", {0}},
        {"BO_ x : x", {0}},  // the first step that fails is the only one told
    };
    for (const Rejected& row : kRows) {
        ExpectRejected(row);
    }
}

TEST(MessageStatement, MissingNameFailsWithCodeOne) {
    const Rejected kRows[] = {
        {"BO_ 100 : 8 ECU", {1}},   {"BO_ 100 \t : 8 ECU", {1}},  {"BO_ 100 :: 8 ECU", {1}}, {"BO_ 100 ", {1}},
        {"BO_ 100 Msg 8 ECU", {1}}, {"BO_ 100 Msg 8 ECU\n", {1}}, {"BO_ 100 : ECU", {1}},
    };
    for (const Rejected& row : kRows) {
        ExpectRejected(row);
    }
}

TEST(MessageStatement, MissingDataLengthFailsWithCodeTwo) {
    const Rejected kRows[] = {
        {"BO_ 100 Msg:", {2}},
        {"BO_ 100 Msg: ", {2}},
        {"BO_ 100 Msg:\n", {2}},
        {"BO_ 100 Msg: ECU", {2}},
        {"BO_ 100 Msg: x8 ECU", {2}},
        {"BO_ 100 Msg: -8 ECU", {2}},
        {"BO_ 100 Msg: +8 ECU", {2}},
        {"BO_ 100 Msg:: 8 ECU", {2}},  // the name ends at the first colon
        {"BO_ 100 Msg: 4294967296 ECU", {2}},
        {"BO_ 100 Msg: 99999999999999999999999 ECU", {2}},
    };
    for (const Rejected& row : kRows) {
        ExpectRejected(row);
    }
}

TEST(MessageStatement, NameAsReadKeepsItsBlanks) {
    OwnMessage message;
    ASSERT_TRUE(message.ParseLine("BO_ 100 \tEngine\t \vData\n : 8 ECU"));
    EXPECT_EQ(message.nameAsRead, "Engine\t \vData");
    EXPECT_EQ(message.name, "Engine   Data");
}

TEST(MessageStatement, ParsingStartsAfresh) {
    OwnMessage message;
    FillEveryField(message);
    ASSERT_TRUE(message.ParseLine("BO_ 100 Msg: 8"));
    EXPECT_TRUE(message.parseErrors.IsEmpty());
    EXPECT_EQ(message.comment, "");
    EXPECT_EQ(message.sendType, "");
    EXPECT_EQ(message.transmitter, "");
    EXPECT_EQ(message.cycleTime, 0U);
    EXPECT_TRUE(message.signals.empty());
}

TEST(MessageStatement, OneFailureLeavesOneCodeHoweverOftenItIsParsed) {
    OwnMessage message;
    EXPECT_FALSE(message.ParseLine("BO_ x Msg: 8 ECU"));
    EXPECT_FALSE(message.ParseLine("BO_ 100 Msg: ECU"));
    EXPECT_EQ(message.parseErrors.Codes(), std::vector<uint32_t>({2}));
}

TEST(MessageStatement, BrokenUtf8IsThrown) {
    for (const std::string_view line :
         {"BO_ 100 Ms\xFFg: 8 ECU", "BO_ 100 Msg: 8 EC\xC3", "BO_ 100 \xED\xA0\x80: 8 ECU"}) {
        SCOPED_TRACE(Shown(line));
        OwnMessage message;
        EXPECT_THROW(message.ParseLine(line), utf8::exception);
    }
}

TEST(MessageStatement, LongNameGivenLaterIsNotWritten) {
    OwnMessage message;
    ASSERT_TRUE(message.ParseLine("BO_ 100 Msg: 8 ECU"));
    message.name = "Another Name";
    EXPECT_EQ(message.WriteDefinitionLine(), "BO_ 100 Msg: 8 ECU");
}

}  // namespace
}  // namespace tabrin
