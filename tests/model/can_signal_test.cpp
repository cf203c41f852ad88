#include "model/can_signal.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "model/arena_level.h"
#include "model/own_arena.h"
#include "model/reset_state.h"

namespace tabrin {
namespace {

const std::string k27 = "abcdefghijklmnopqrstuvwxyzA";

TEST(CanSignal, NewSignalIsAsReset) {
    const OwnSignal signal;
    ExpectReset(signal);
    EXPECT_TRUE(signal.parseErrors.IsEmpty());
}

TEST(CanSignal, ResetLeavesOnlyTheParseErrors) {
    OwnSignal signal;
    FillEveryField(signal);
    signal.Reset();
    ExpectReset(signal);
    EXPECT_EQ(signal.parseErrors.Codes(), std::vector<uint32_t>({3}));
}

TEST(CanSignal, FloatsAreTheTwoFloatingPointTypes) {
    OwnSignal signal;
    const bool kExpected[] = {false, false, true, true, false};
    for (uint32_t valueType = 0; valueType < 5; ++valueType) {
        SCOPED_TRACE(valueType);
        signal.valueType = valueType;
        EXPECT_EQ(signal.IsFloat(), kExpected[valueType]);
    }
}

struct Suffixed {
    std::string name;
    uint32_t index;
    std::string result;
};

TEST(CanSignal, SuffixIsAppendedOrTakesTheEnd) {
    const Suffixed kRows[] = {
        {"S", 0, "S_0000"},
        {"S", 7, "S_0007"},
        {"S", 10, "S_0010"},
        {"S", 123, "S_0123"},
        {"S", 1000, "S_1000"},
        {"S", 9999, "S_9999"},
        {"", 1, "_0001"},
        {"S_0001", 2, "S_0001_0002"},
        {k27.substr(1), 1, k27.substr(1) + "_0001"},
        {k27, 1, k27 + "_0001"},
        {k27 + "B", 1, k27 + "_0001"},
        {k27 + "BCDE", 1, k27 + "_0001"},  // 31 characters
        {k27 + "BCDEF", 1, k27 + "_0001"},
    };
    for (const Suffixed& row : kRows) {
        SCOPED_TRACE(row.name + ", " + std::to_string(row.index));
        OwnSignal signal;
        signal.invalid = false;
        signal.identifierName = row.name;
        EXPECT_TRUE(signal.ApplyUniqueSuffix(row.index));
        EXPECT_TRUE(signal.suffixApplied);
        EXPECT_EQ(signal.identifierName, row.result);
    }
}

TEST(CanSignal, SuffixReplacesAnEarlierOne) {
    for (const std::string& name : {std::string("S"), std::string(), k27.substr(1), k27, k27 + "BCDEF"}) {
        SCOPED_TRACE(name);
        OwnSignal signal;
        signal.invalid = false;
        signal.identifierName = name;
        EXPECT_TRUE(signal.ApplyUniqueSuffix(9999));
        EXPECT_TRUE(signal.ApplyUniqueSuffix(12));
        EXPECT_EQ(signal.identifierName, name.substr(0, 27) + "_0012");
    }
}

TEST(CanSignal, SameSuffixAgainTakesNoMemory) {
    TABRIN_SKIP_WITHOUT_LEVELS();
    OwnSignal signal;
    signal.invalid = false;
    signal.identifierName = "S";
    EXPECT_TRUE(signal.ApplyUniqueSuffix(3));
    const char* level = LevelOf(signal.GetArena());
    for (int i = 0; i < 1000; ++i) {
        EXPECT_TRUE(signal.ApplyUniqueSuffix(3));
    }
    EXPECT_EQ(signal.identifierName, "S_0003");
    EXPECT_EQ(LevelOf(signal.GetArena()), level);
}

TEST(CanSignal, SuffixIsRefusedFromTenThousandOn) {
    for (const uint32_t index : {10000U, 10001U, 4294967295U}) {
        SCOPED_TRACE(index);
        OwnSignal signal;
        signal.invalid = false;
        signal.identifierName = "S";
        EXPECT_FALSE(signal.ApplyUniqueSuffix(index));
        EXPECT_FALSE(signal.suffixApplied);
        EXPECT_EQ(signal.identifierName, "S");
    }
}

TEST(CanSignal, SuffixIsRefusedForAnInvalidSignal) {
    OwnSignal signal;
    signal.identifierName = "S";
    EXPECT_FALSE(signal.ApplyUniqueSuffix(1));
    EXPECT_FALSE(signal.suffixApplied);
    EXPECT_EQ(signal.identifierName, "S");
}

TEST(CanSignal, UnsuffixedNameLeavesOutOnlyAnAppliedSuffix) {
    OwnSignal signal;
    signal.invalid = false;
    signal.identifierName = "S_0001";
    EXPECT_EQ(signal.UnsuffixedName(), "S_0001");
    signal.ApplyUniqueSuffix(2);
    EXPECT_EQ(signal.UnsuffixedName(), "S_0001");
    signal.identifierName = signal.GetArena().Keep(k27 + "BCDEF");
    signal.suffixApplied = false;
    signal.ApplyUniqueSuffix(2);
    EXPECT_EQ(signal.UnsuffixedName(), k27);
}

}  // namespace
}  // namespace tabrin
