#include <cstdint>

#include "abi/interface_test.h"

namespace tabrin_test {
namespace {

constexpr int32_t kLeast = INT32_MIN;
constexpr int32_t kMost = INT32_MAX;

class AppendedValueDescription : public InterfaceTest {
protected:
    void SetUp() override {
        InterfaceTest::SetUp();
        ASSERT_TRUE(AppendMessage(1, "M"));
        ASSERT_TRUE(AppendSignal(0, "S"));
    }
};

TEST_F(AppendedValueDescription, ComesInTheOrderOfTheSignedValues) {
    for (const int32_t value : {5, -1, kMost, 0, kLeast, 1, -2}) {
        ASSERT_TRUE(AppendEnum(0, 0, value, "v"));
    }
    EXPECT_EQ(EnumsOf(0, 0), "-2147483648=v;-2=v;-1=v;0=v;1=v;5=v;2147483647=v;");
}

TEST_F(AppendedValueDescription, OfAValueDescribedBeforeIsJoinedToTheOldText) {
    ASSERT_TRUE(AppendEnum(0, 0, 1, "On"));
    ASSERT_TRUE(AppendEnum(0, 0, 1, "On"));
    EXPECT_EQ(EnumsOf(0, 0), "1=On - On;");
    ASSERT_TRUE(AppendEnum(0, 0, 1, "Aus"));
    EXPECT_EQ(EnumsOf(0, 0), "1=On - On - Aus;");
    EXPECT_EQ(NumEnums(0, 0), 1U);
    EXPECT_EQ(SignalAt(0, 0).numValueDescriptions, 1U);
}

TEST_F(AppendedValueDescription, IsJoinedAlsoWhenATextIsEmpty) {
    ASSERT_TRUE(AppendEnum(0, 0, 1, ""));
    ASSERT_TRUE(AppendEnum(0, 0, 1, ""));
    ASSERT_TRUE(AppendEnum(0, 0, 2, "A"));
    ASSERT_TRUE(AppendEnum(0, 0, 2, ""));
    ASSERT_TRUE(AppendEnum(0, 0, 3, ""));
    ASSERT_TRUE(AppendEnum(0, 0, 3, "B"));
    EXPECT_EQ(EnumsOf(0, 0), "1= - ;2=A - ;3= - B;");
}

TEST_F(AppendedValueDescription, TextIsKeptByteForByte) {
    const char* const texts[] = {"", " ", " a  b ", "say \"hi\"", "back\\slash", "a\tb\nc", "\xC3\xA4\xE2\x82\xAC"};
    int32_t value = 0;
    for (const char* text : texts) {
        SCOPED_TRACE(Shown(text));
        ASSERT_TRUE(AppendEnum(0, 0, value, text));
        EXPECT_EQ(Field(EnumAt(0, 0, static_cast<uint32_t>(value)).text), text);
        ++value;
    }
}

TEST_F(AppendedValueDescription, BelongsToItsSignalAlone) {
    ASSERT_TRUE(AppendSignal(0, "T"));
    ASSERT_TRUE(AppendMessage(1, "M"));
    ASSERT_TRUE(AppendSignal(1, "S"));
    ASSERT_TRUE(AppendEnum(0, 1, 1, "One"));
    EXPECT_EQ(EnumsOf(0, 0), "");
    EXPECT_EQ(EnumsOf(0, 1), "1=One;");
    EXPECT_EQ(EnumsOf(1, 0), "");
}

TEST_F(AppendedValueDescription, GoesToAFloatSignalToo) {
    CanSignalData record = SignalRecord("F");
    record.valueType = TABRIN_VALUE_FLOAT;
    record.length = 32;
    ASSERT_TRUE(Library().AppendCanSignalToCanMessage(0, &record));
    ASSERT_TRUE(AppendEnum(0, 1, 1, "One"));
    EXPECT_EQ(EnumsOf(0, 1), "1=One;");
    EXPECT_EQ(SignalAt(0, 1).valueType, 2U);
}

TEST_F(AppendedValueDescription, JoinsTheOnesReadFromAFile) {
    ASSERT_EQ(ReadText("BO_ 1 M: 8 N\n SG_ S : 0|8@1+ (1,0) [0|1] \"\" N\nVAL_ 1 S 0 \"Off\" 2 \"Two\" ;\n"), kDone);
    ASSERT_TRUE(AppendEnum(0, 0, 0, "Aus"));
    ASSERT_TRUE(AppendEnum(0, 0, 1, "Ein"));
    EXPECT_EQ(EnumsOf(0, 0), "0=Off - Aus;1=Ein;2=Two;");
}

TEST_F(AppendedValueDescription, MayBeAskedForInAnyOrder) {
    for (int32_t value = 0; value < 100; ++value) {
        ASSERT_TRUE(AppendEnum(0, 0, value, "v"));
    }
    for (const uint32_t index : {0U, 99U, 98U, 50U, 49U, 51U, 1U, 0U, 99U, 10U, 4U, 6U, 5U, 5U}) {
        EXPECT_EQ(EnumAt(0, 0, index).value, static_cast<int32_t>(index)) << index;
    }
}

// Appending in between moves what was asked for last.
TEST_F(AppendedValueDescription, IsFoundAtItsNewPlaceAfterAnotherCameInFrontOfIt) {
    ASSERT_TRUE(AppendEnum(0, 0, 10, "ten"));
    ASSERT_TRUE(AppendEnum(0, 0, 20, "twenty"));
    ASSERT_TRUE(AppendEnum(0, 0, 30, "thirty"));
    EXPECT_EQ(EnumAt(0, 0, 1).value, 20);
    ASSERT_TRUE(AppendEnum(0, 0, 5, "in front"));
    EXPECT_EQ(EnumAt(0, 0, 2).value, 20);
    EXPECT_EQ(EnumAt(0, 0, 1).value, 10);
    ASSERT_TRUE(AppendEnum(0, 0, 15, "behind"));
    EXPECT_EQ(EnumAt(0, 0, 1).value, 10);
    EXPECT_EQ(EnumAt(0, 0, 2).value, 15);
    EXPECT_EQ(EnumAt(0, 0, 3).value, 20);
    ASSERT_TRUE(AppendEnum(0, 0, 15, "joined"));
    EXPECT_EQ(EnumAt(0, 0, 3).value, 20);
    EXPECT_EQ(EnumsOf(0, 0), "5=in front;10=ten;15=behind - joined;20=twenty;30=thirty;");
}

TEST_F(AppendedValueDescription, ThousandsInDescendingOrderAreWalkedAscending) {
    constexpr int32_t kCount = 20000;
    for (int32_t value = kCount; value > 0; --value) {
        ASSERT_TRUE(AppendEnum(0, 0, value, "v"));
    }
    ASSERT_EQ(NumEnums(0, 0), 20000U);
    for (uint32_t index = 0; index < 20000; ++index) {
        ASSERT_EQ(EnumAt(0, 0, index).value, static_cast<int32_t>(index) + 1);
    }
}

}  // namespace
}  // namespace tabrin_test
