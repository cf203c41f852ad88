#include "model/attribute.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "model/attribute_text.h"
#include "shown.h"

namespace tabrin {
namespace {

constexpr int32_t kLeast = std::numeric_limits<int32_t>::min();
constexpr int32_t kMost = std::numeric_limits<int32_t>::max();

TEST(Attribute, FreshOneIsAnIntOfTheWholeDatabase) {
    const Attribute attribute;
    EXPECT_EQ(attribute.name, "");
    EXPECT_EQ(attribute.objectType, AttributeObjectType::General);
    EXPECT_EQ(attribute.objectId, 0U);
    EXPECT_EQ(attribute.signalName, "");
    EXPECT_EQ(attribute.valueType, AttributeValueType::Int);
    EXPECT_EQ(attribute.intValue, 0);
    EXPECT_EQ(attribute.minimum, -2147483647 - 1);
    EXPECT_EQ(attribute.maximum, 2147483647);
    EXPECT_EQ(attribute.enumIndex, 0);
    EXPECT_TRUE(attribute.enumValues == nullptr || attribute.enumValues->empty());
    EXPECT_EQ(attribute.stringValue, "");
}

TEST(Attribute, CodesOfObjectAndValueTypes) {
    EXPECT_EQ(static_cast<uint32_t>(AttributeObjectType::General), 0U);
    EXPECT_EQ(static_cast<uint32_t>(AttributeObjectType::Message), 1U);
    EXPECT_EQ(static_cast<uint32_t>(AttributeObjectType::Signal), 2U);
    EXPECT_EQ(static_cast<uint32_t>(AttributeValueType::Unsupported), 0U);
    EXPECT_EQ(static_cast<uint32_t>(AttributeValueType::Int), 1U);
    EXPECT_EQ(static_cast<uint32_t>(AttributeValueType::Enum), 2U);
    EXPECT_EQ(static_cast<uint32_t>(AttributeValueType::String), 3U);
}

TEST(Attribute, CopyHasEveryField) {
    Attribute original = MakeAttribute("Name", AttributeObjectType::Signal, AttributeValueType::Enum);
    original.objectId = 7;
    original.signalName = "Speed";
    original.intValue = -3;
    original.minimum = -5;
    original.maximum = 5;
    original.enumIndex = 1;
    original.enumValues = EnumList({"A", "B"});
    original.stringValue = "text";
    const Attribute copy = original;
    original = Attribute();
    EXPECT_EQ(AttributeText(copy), "Signal Enum Name -5..5 {A|B} id=7 signal=Speed int=-3 index=1 text=[text]");
}

TEST(Attribute, EnumTextIsTheNameAtTheIndex) {
    const struct {
        std::vector<std::string> values;
        int32_t index;
        const char* expected;  // nullptr: none
    } rows[] = {
        {{"A", "B"}, 0, "A"},
        {{"A", "B"}, 1, "B"},
        {{"A", "B"}, 2, nullptr},
        {{"A", "B"}, -1, nullptr},
        {{"A", "B"}, kLeast, nullptr},
        {{"A", "B"}, kMost, nullptr},
        {{}, 0, nullptr},
        {{}, -1, nullptr},
        {{""}, 0, ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.values.size() << " values, index " << row.index);
        Attribute attribute = MakeAttribute("Name", AttributeObjectType::General, AttributeValueType::Enum);
        attribute.enumValues = EnumList(row.values);
        attribute.enumIndex = row.index;
        const std::string* text = attribute.EnumText();
        EXPECT_EQ(text != nullptr, row.expected != nullptr);
        if (text != nullptr && row.expected != nullptr) {
            EXPECT_EQ(*text, row.expected);
        }
        attribute.enumIndex = 77;
        EXPECT_EQ(attribute.EnumTextAt(row.index), text);
    }
}

TEST(Attribute, EnumTextWithoutAListIsNone) {
    const Attribute attribute = MakeAttribute("Name", AttributeObjectType::General, AttributeValueType::Enum);
    EXPECT_EQ(attribute.EnumText(), nullptr);
}

TEST(Attribute, AcceptsTheNumbersOfItsType) {
    Attribute number = MakeAttribute("Name", AttributeObjectType::General, AttributeValueType::Int);
    number.minimum = -2;
    number.maximum = 3;
    Attribute choice = MakeAttribute("Name", AttributeObjectType::General, AttributeValueType::Enum);
    choice.enumValues = EnumList({"A", "B"});
    const Attribute text = MakeAttribute("Name", AttributeObjectType::General, AttributeValueType::String);
    const Attribute none = MakeAttribute("Name", AttributeObjectType::General, AttributeValueType::Unsupported);
    const struct {
        int32_t number;
        bool isInRange;
        bool isIndex;
    } rows[] = {{kLeast, false, false}, {-3, false, false},   {-2, true, false}, {-1, true, false},
                {0, true, true},        {1, true, true},      {2, true, false},  {3, true, false},
                {4, false, false},      {kMost, false, false}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.number);
        EXPECT_EQ(number.Accepts(row.number), row.isInRange);
        EXPECT_EQ(choice.Accepts(row.number), row.isIndex);
        EXPECT_FALSE(text.Accepts(row.number));
        EXPECT_FALSE(none.Accepts(row.number));
    }
}

// What stands in the value stays where the token is refused, and the definition stays anyway.
TEST(AttributeValueFromText, ValueTakesWhatItsDefinitionFits) {
    const struct {
        AttributeValueType valueType;
        const char* token;
        bool taken;
        int32_t number;
        const char* text;
    } rows[] = {
        {AttributeValueType::Int, "9", true, 9, "old"},           {AttributeValueType::Int, "10", false, 77, "old"},
        {AttributeValueType::Int, "\"9\"", false, 77, "old"},     {AttributeValueType::Enum, "1", true, 1, "old"},
        {AttributeValueType::Enum, "2", false, 77, "old"},        {AttributeValueType::Enum, "\"B\"", true, 1, "old"},
        {AttributeValueType::Enum, "2\"B\"", true, 1, "old"},     {AttributeValueType::Enum, "\"C\"", false, 77, "old"},
        {AttributeValueType::String, "\"B\"", true, 77, "B"},     {AttributeValueType::String, "5", true, 77, ""},
        {AttributeValueType::Unsupported, "5", false, 77, "old"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << Shown(row.token) << ", type " << static_cast<uint32_t>(row.valueType));
        Attribute definition = MakeAttribute("Name", AttributeObjectType::Message, row.valueType);
        definition.minimum = 0;
        definition.maximum = 9;
        definition.enumValues = EnumList({"A", "B"});
        const std::string before = AttributeText(definition);
        AttributeValue value{&definition, 100, 77, "S", "old"};
        EXPECT_EQ(SetValueFromText(value, row.token), row.taken);
        EXPECT_EQ(value.number, row.number);
        EXPECT_EQ(value.text, row.text);
        EXPECT_EQ(value.objectId, 100U);
        EXPECT_EQ(value.signalName, "S");
        EXPECT_EQ(AttributeText(definition), before);
    }
}

TEST(AttributeValueFromText, IntTakesANumberWithinItsRange) {
    constexpr int32_t kOld = 77;  // stays where the text is refused
    const struct {
        int32_t minimum;
        int32_t maximum;
        const char* text;
        bool taken;
        int32_t expected;
    } rows[] = {
        {0, 1, "1", true, 1},
        {0, 1, "0", true, 0},
        {0, 1, "2", false, kOld},
        {0, 1, "-1", false, kOld},
        {-10, 100, "-10", true, -10},
        {-10, 100, "-11", false, kOld},
        {-10, 100, "100", true, 100},
        {-10, 100, "101", false, kOld},
        {-10, 100, "-5", true, -5},
        {5, 5, "5", true, 5},
        {5, 5, "4", false, kOld},
        {5, 5, "6", false, kOld},
        {10, 0, "5", false, kOld},
        {10, 0, "10", false, kOld},
        {10, 0, "0", false, kOld},
        {kLeast, kMost, "2147483647", true, kMost},
        {kLeast, kMost, "2147483648", false, kOld},
        {kLeast, kMost, "-2147483648", true, kLeast},
        {kLeast, kMost, "-2147483649", false, kOld},
        {kLeast, kMost, "4294967296", false, kOld},
        {kLeast, kMost, "99999999999999999999", false, kOld},
        // Text behind the number is ignored.
        {-10, 100, "12abc", true, 12},
        {-10, 100, "12.9", true, 12},
        {-10, 100, "12\"50\"", true, 12},
        {-10, 100, "1e2", true, 1},
        {-10, 100, "0x10", true, 0},
        // A sign, leading zeros and leading blanks are part of a number.
        {-10, 100, "+5", true, 5},
        {-10, 100, "007", true, 7},
        {-10, 100, " \t7", true, 7},
        {-10, 100, "- 5", false, kOld},
        {-10, 100, "--5", false, kOld},
        // What is no number leaves the value alone, also where 0 would be in the range.
        {-10, 100, "", false, kOld},
        {-10, 100, "abc", false, kOld},
        {-10, 100, "-", false, kOld},
        {-10, 100, "\"5\"", false, kOld},
        {-10, 100, "\"\"", false, kOld},
        // There is no second chance with a quoted text behind the number.
        {0, 1, "5\"1\"", false, kOld},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << Shown(row.text) << " in " << row.minimum << ".." << row.maximum);
        Attribute attribute = MakeAttribute("Name", AttributeObjectType::General, AttributeValueType::Int);
        attribute.minimum = row.minimum;
        attribute.maximum = row.maximum;
        attribute.intValue = kOld;
        EXPECT_EQ(SetValueFromText(attribute, row.text), row.taken);
        EXPECT_EQ(attribute.intValue, row.expected);
    }
}

TEST(AttributeValueFromText, EnumTakesAnIndexOrAQuotedName) {
    constexpr int32_t kOld = 77;
    const std::vector<std::string> ab = {"A", "B"};
    const struct {
        std::vector<std::string> values;
        const char* text;
        bool taken;
        int32_t expected;
    } rows[] = {
        {ab, "1", true, 1},
        {ab, "0", true, 0},
        {ab, "2", false, kOld},
        {ab, "-1", false, kOld},
        {ab, "\"B\"", true, 1},
        {ab, "\"A\"", true, 0},
        {ab, "\"C\"", false, kOld},
        {ab, "\"a\"", false, kOld},
        {ab, "\"A \"", false, kOld},
        {ab, "\"AB\"", false, kOld},
        {ab, "B", false, kOld},
        {ab, "", false, kOld},
        {ab, "\"\"", false, kOld},
        {ab, "\"B", false, kOld},
        {ab, "x\"B\"y", true, 1},
        {ab, "1x", true, 1},
        {ab, "4294967297", false, kOld},
        // A number outside the list leaves the name behind it; one inside the list goes first.
        {ab, "5\"B\"", true, 1},
        {ab, "-1\"B\"", true, 1},
        {ab, "0\"B\"", true, 0},
        // A quoted number is a name, a bare one an index.
        {{"1", "0"}, "\"1\"", true, 0},
        {{"1", "0"}, "1", true, 1},
        {{"A", "B", "A"}, "\"A\"", true, 0},
        {{"x", "A", "A"}, "\"A\"", true, 1},
        // Text without quotes stands for an empty name.
        {{"A", ""}, "abc", true, 1},
        {{"A", ""}, "7", true, 1},
        {{"A", ""}, "\"\"", true, 1},
        {{}, "0", false, kOld},
        {{}, "\"A\"", false, kOld},
        {{}, "\"\"", false, kOld},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << Shown(row.text) << " of " << testing::PrintToString(row.values));
        Attribute attribute = MakeAttribute("Name", AttributeObjectType::General, AttributeValueType::Enum);
        attribute.enumValues = EnumList(row.values);
        attribute.enumIndex = kOld;
        EXPECT_EQ(SetValueFromText(attribute, row.text), row.taken);
        EXPECT_EQ(attribute.enumIndex, row.expected);
    }
}

TEST(AttributeValueFromText, EnumWithoutAListTakesNothing) {
    for (const char* text : {"0", "\"A\"", "\"\"", ""}) {
        SCOPED_TRACE(Shown(text));
        Attribute attribute = MakeAttribute("Name", AttributeObjectType::General, AttributeValueType::Enum);
        attribute.enumIndex = 77;
        EXPECT_FALSE(SetValueFromText(attribute, text));
        EXPECT_EQ(attribute.enumIndex, 77);
    }
}

TEST(AttributeValueFromText, AttributeOfNoTypeTakesNothing) {
    for (const char* text : {"0", "\"A\"", "A", ""}) {
        SCOPED_TRACE(Shown(text));
        Attribute attribute = MakeAttribute("Name", AttributeObjectType::General, AttributeValueType::Unsupported);
        EXPECT_FALSE(SetValueFromText(attribute, text));
        EXPECT_EQ(attribute.intValue, 0);
        EXPECT_EQ(attribute.stringValue, "");
    }
}

TEST(AttributeValueFromText, StringTakesWhatStandsBetweenTheOuterQuotes) {
    const struct {
        const char* text;
        const char* expected;
    } rows[] = {
        {"\"a b\"", "a b"}, {"abc", ""},        {"\"\"", ""},       {"", ""},         {"12", ""},
        {"\"", ""},         {"\"abc", ""},      {"abc\"", ""},      {"x\"y\"z", "y"}, {"\"a\"b\"c\"", "a\"b\"c"},
        {"\"\"\"", "\""},   {"\"a\\\"", "a\\"}, {"\" a \"", " a "}, {"\"5\"", "5"},   {"\"\xC3\xA4\"", "\xC3\xA4"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(Shown(row.text));
        Attribute attribute = MakeAttribute("Name", AttributeObjectType::General, AttributeValueType::String);
        attribute.stringValue = "old";
        EXPECT_TRUE(SetValueFromText(attribute, row.text));
        EXPECT_EQ(attribute.stringValue, row.expected);
    }
}

TEST(AttributeValueFromText, OnlyTheFieldOfTheValueTypeChanges) {
    const struct {
        AttributeValueType valueType;
        const char* text;
        const char* expected;
    } rows[] = {
        {AttributeValueType::Int, "1", "Message Int Name 0..9 {A|B|C} id=4 signal=S int=1 index=2 text=[old]"},
        {AttributeValueType::Enum, "1", "Message Enum Name 0..9 {A|B|C} id=4 signal=S int=5 index=1 text=[old]"},
        {AttributeValueType::Enum, "\"B\"", "Message Enum Name 0..9 {A|B|C} id=4 signal=S int=5 index=1 text=[old]"},
        {AttributeValueType::String, "\"B\"", "Message String Name 0..9 {A|B|C} id=4 signal=S int=5 index=2 text=[B]"},
        // Refused: nothing changes at all.
        {AttributeValueType::Int, "\"B\"", "Message Int Name 0..9 {A|B|C} id=4 signal=S int=5 index=2 text=[old]"},
        {AttributeValueType::Enum, "3", "Message Enum Name 0..9 {A|B|C} id=4 signal=S int=5 index=2 text=[old]"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << "type " << static_cast<uint32_t>(row.valueType) << ", " << row.text);
        Attribute attribute = MakeAttribute("Name", AttributeObjectType::Message, row.valueType);
        attribute.objectId = 4;
        attribute.signalName = "S";
        attribute.intValue = 5;
        attribute.minimum = 0;
        attribute.maximum = 9;
        attribute.enumIndex = 2;
        attribute.enumValues = EnumList({"A", "B", "C"});
        attribute.stringValue = "old";
        SetValueFromText(attribute, row.text);
        EXPECT_EQ(AttributeText(attribute), row.expected);
    }
}

}  // namespace
}  // namespace tabrin
