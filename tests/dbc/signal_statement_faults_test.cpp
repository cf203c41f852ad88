// What is not read as a signal.
#include <gtest/gtest.h>
#include <utf8.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "model/can_signal.h"
#include "model/own_arena.h"
#include "model/reset_state.h"
#include "shown.h"

namespace tabrin {
namespace {

struct Faults {
    std::vector<uint32_t> codes;
    std::vector<std::string_view> lines;
};

TEST(SignalStatement, FaultyLinesAreRejectedWithTheCodeOfTheStep) {
    const Faults kRows[] = {
        // Something else than a signal.
        {{},
         {"", " \n", "SG_", " SG_", "SG_S : 0|8@1+ (1,0) [0|1] \"\" A", "SG_: 0|8@1+ (1,0) [0|1] \"\" A",
          "sg_ S : 0|8@1+ (1,0) [0|1] \"\" A", "BO_ 100 Msg: 8 ECU", "x SG_ S : 0|8@1+ (1,0) [0|1] \"\" A"}},
        // Name.
        {{3}, {"SG_ ", "SG_ S", "SG_ S 0|8@1+ (1,0) [0|1] \"\" A", "SG_ S :", "SG_ S M :", "SG_ :"}},
        // Start bit.
        {{4},
         {"SG_ S : ", "SG_ S :0", "SG_ S : 0 8@1+ (1,0) [0 1] \"\" A", "SG_ S :|8@1+ (1,0) [0|1] \"\" A",
          "SG_ S : |8@1+ (1,0) [0|1] \"\" A", "SG_ S : x|8@1+ (1,0) [0|1] \"\" A", "SG_ S :: 0|8@1+ (1,0) [0|1] \"\" A",
          "SG_ S : 4294967296|8@1+ (1,0) [0|1] \"\" A", "SG_ S : -4294967296|8@1+ (1,0) [0|1] \"\" A", "SG_ S : 0|"}},
        // Length.
        {{4},
         {"SG_ S : 0|@1+ (1,0) [0|1] \"\" A", "SG_ S : 0| @1+ (1,0) [0|1] \"\" A", "SG_ S : 0|x8@1+ (1,0) [0|1] \"\" A",
          "SG_ S : 0|4294967296@1+ (1,0) [0|1] \"\" A", "SG_ S : 0|x (1,0) [0|1] \"\" A",
          "SG_ S : 0|(1,0) [0|1] \"\" A", "SG_ S : 0|4294967296 (1,0) [0|1] \"\" A", "SG_ S : 0| "}},
        // Byte order and sign: a character must follow each.
        {{4},
         {"SG_ S : 0|8@", "SG_ S : 0|8@ ", "SG_ S : 0|8@1", "SG_ S : 0|8@1 ", "SG_ S : 0|8@1+", "SG_ S : 0|8@1 -",
          "SG_ S : 0|8@1(", "SG_ S : 0|8@2+ (1,0) [0|1] \"\" A", "SG_ S : 0|8@x1+ (1,0) [0|1] \"\" A",
          "SG_ S : 0|8@+ (1,0) [0|1] \"\" A", "SG_ S : 0|8@-1 (1,0) [0|1] \"\" A",
          // Any "@" counts, also one in the unit.
          "SG_ S : 0|8 (1,0) [0|1] \"@\" A"}},
        // Factor and offset.
        {{5},
         {"SG_ S : 0|8", "SG_ S : 0|8@1+ ", "SG_ S : 0|8@1( ", "SG_ S : 0|8@1+ (", "SG_ S : 0|8@1+ (1",
          "SG_ S : 0|8@1+ (1,", "SG_ S : 0|8@1+ [0|1] \"\" A", "SG_ S : 0|8@1+ 1,0) [0|1] \"\" A",
          "SG_ S : 0|8@1+ (1,0 [0|1] \"\" A", "SG_ S : 0|8@1+ (1 0) [0|1] \"\" A",
          "SG_ S : 0|8@1+ (1 0) [0|1] \"\" A,B", "SG_ S : 0|8@1+ (,0) [0|1] \"\" A", "SG_ S : 0|8@1+ (1,) [0|1] \"\" A",
          "SG_ S : 0|8@1+ ( ,0) [0|1] \"\" A", "SG_ S : 0|8@1+ (1, ) [0|1] \"\" A", "SG_ S : 0|8@1+ (x,0) [0|1] \"\" A",
          "SG_ S : 0|8@1+ (1,x) [0|1] \"\" A", "SG_ S : 0|8@1+ (1e999,0) [0|1] \"\" A",
          "SG_ S : 0|8@1+ (1,-1e999) [0|1] \"\" A", "SG_ S : 0|8@1+ (1e-999,0) [0|1] \"\" A",
          "SG_ S : 0|8@1+ (1,1e-999) [0|1] \"\" A",
          // Bits without "|" take that of the range, and no bracket is left behind it.
          "SG_ S : 0 8 (1,0) [0|1] \"\" A",
          // The short form steps over as many characters as 4294967295 has digits.
          "SG_ S : 0|-1 (1,0) [0|1] \"\" A", "SG_ S : 0|-1 //////(1,0) [0|1] \"\" A"}},
        // Range.
        {{6},
         {"SG_ S : 0|8@1+ (1,0)", "SG_ S : 0|8@1+ (1,0) [", "SG_ S : 0|8@1+ (1,0) [0", "SG_ S : 0|8@1+ (1,0) [0|",
          "SG_ S : 0|8@1+ (1,0) [0|1", "SG_ S : 0|8@1+ (1,0) 0|1] \"\" A", "SG_ S : 0|8@1+ (1,0) [0,1] \"\" A",
          "SG_ S : 0|8@1+ (1,0) [|1] \"\" A", "SG_ S : 0|8@1+ (1,0) [0|] \"\" A", "SG_ S : 0|8@1+ (1,0) [ |1] \"\" A",
          "SG_ S : 0|8@1+ (1,0) [0| ] \"\" A", "SG_ S : 0|8@1+ (1,0) [x|1] \"\" A", "SG_ S : 0|8@1+ (1,0) [0|x] \"\" A",
          "SG_ S : 0|8@1+ (1,0) [1e999|1] \"\" A", "SG_ S : 0|8@1+ (1,0) [0|1e-999] \"\" A",
          // The parts have an order.
          "SG_ S : 0|8@1+ [0|1] (1,0) \"\" A"}},
        // Only the first fault is told.
        {{3}, {"SG_ S"}},
        {{4}, {"SG_ S : x|8@1+ (x,0) [x|1] \"\" A"}},
        {{5}, {"SG_ S : 0|8@1+ (x,0) [x|1] \"\" A"}},
    };
    for (const Faults& row : kRows) {
        for (const std::string_view line : row.lines) {
            SCOPED_TRACE(Shown(line));
            OwnSignal signal;
            FillEveryField(signal);
            EXPECT_FALSE(signal.ParseLine(line));
            ExpectReset(signal);
            EXPECT_EQ(signal.parseErrors.Codes(), row.codes);
            EXPECT_EQ(signal.WriteDefinitionLine(), "");
        }
    }
}

TEST(SignalStatement, ParsingStartsAfresh) {
    OwnSignal signal;
    FillEveryField(signal);
    ASSERT_TRUE(signal.ParseLine("SG_ S : 0|8 (1,0) [0|1]"));
    EXPECT_TRUE(signal.parseErrors.IsEmpty());
    EXPECT_EQ(signal.multiplexKind, 0U);
    EXPECT_EQ(signal.multiplexValue, 0U);
    EXPECT_EQ(signal.byteOrder, 1U);
    EXPECT_EQ(signal.valueType, 0U);
    EXPECT_EQ(signal.unit, "");
    EXPECT_EQ(signal.unitAsWritten, "");
    EXPECT_EQ(signal.comment, "");
    EXPECT_EQ(signal.receivers.Joined(), "");
    EXPECT_EQ(signal.valueDescriptions.Size(), 0U);
    EXPECT_EQ(signal.startValue, 0U);
    EXPECT_EQ(signal.inactiveValue, 0U);
    EXPECT_FALSE(signal.suffixApplied);
}

TEST(SignalStatement, BrokenUtf8IsThrown) {
    const std::string_view kLines[] = {
        "SG_ \xFF : 0|8@1+ (1,0) [0|1] \"\" A",
        "SG_ S : 0|8@1+ (1,0) [0|1] \"\xC3\" A",
        "SG_ S : 0|8@1+ (1,0) [0|1] \"\" A,\xC0\x80",
    };
    for (const std::string_view line : kLines) {
        SCOPED_TRACE(Shown(line));
        OwnSignal signal;
        EXPECT_THROW(signal.ParseLine(line), utf8::exception);
    }
}

}  // namespace
}  // namespace tabrin
