// The VAL_ and SIG_VALTYPE_ lines of written files.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "dbc/value_statements.h"
#include "dbc/writing.h"

namespace tabrin {
namespace {

using Descriptions = std::vector<std::pair<int32_t, std::string_view>>;

void Describe(CANSignal& signal, const Descriptions& descriptions) {
    for (const auto& [value, text] : descriptions) {
        signal.valueDescriptions.Add(value, text);
    }
}

// --- VAL_

struct DescriptionLineCase {
    std::string name;
    uint32_t id;
    uint32_t valueType;
    uint32_t length;
    Descriptions descriptions;
    std::string_view line;
};

const DescriptionLineCase kDescriptionLineCases[] = {
    {"Gear",
     100,
     TABRIN_VALUE_SIGNED,
     8,
     {{1, "First"}, {-1, "Reverse"}, {0, "Neutral"}},
     R"(VAL_ 100 Gear -1 "Reverse" 0 "Neutral" 1 "First";)"},
    {"S", 4294967295, TABRIN_VALUE_UNSIGNED, 8, {{0, "Off"}}, R"(VAL_ 4294967295 S 0 "Off";)"},
    {"S",
     0,
     TABRIN_VALUE_UNSIGNED,
     8,
     {{2147483647, "most"}, {-2147483647 - 1, "least"}},
     R"(VAL_ 0 S -2147483648 "least" 2147483647 "most";)"},
    {"S",
     1,
     TABRIN_VALUE_UNSIGNED,
     8,
     {{10, "ten"}, {9, "nine"}, {-10, "minus ten"}, {-9, "minus nine"}},
     R"(VAL_ 1 S -10 "minus ten" -9 "minus nine" 9 "nine" 10 "ten";)"},
    {"S", 1, TABRIN_VALUE_UNSIGNED, 8, {{0, ""}, {1, " x "}}, R"(VAL_ 1 S 0 "" 1 " x ";)"},
    {"S", 1, TABRIN_VALUE_UNSIGNED, 8, {{0, R"(a "quoted" \ text)"}}, R"(VAL_ 1 S 0 "a "quoted" \ text";)"},
    {"S", 1, TABRIN_VALUE_UNSIGNED, 8, {{0, "a"}, {0, "b"}}, R"(VAL_ 1 S 0 "a - b";)"},
    {"My Sig", 1, TABRIN_VALUE_UNSIGNED, 8, {{0, "x"}}, R"(VAL_ 1 My_Sig 0 "x";)"},
    {"", 1, TABRIN_VALUE_UNSIGNED, 8, {{0, "x"}}, R"(VAL_ 1  0 "x";)"},
    {"S", 1, TABRIN_VALUE_UNSIGNED, 8, {}, ""},
    {"S", 1, TABRIN_VALUE_FLOAT, 32, {{0, "x"}}, ""},
    {"S", 1, TABRIN_VALUE_DOUBLE, 64, {{0, "x"}}, ""},
    {"S", 1, 7, 32, {{0, "x"}}, R"(VAL_ 1 S 0 "x";)"},
};

TEST(ValueDescriptionLine, ListsValuesInAscendingOrder) {
    for (const DescriptionLineCase& row : kDescriptionLineCases) {
        SCOPED_TRACE(testing::Message() << row.name << " of " << row.id << " with type " << row.valueType << ", "
                                        << testing::PrintToString(row.descriptions));
        CANDatabase database;
        CANSignal& signal =
            AddSignal(AddMessage(database), {.name = row.name, .length = row.length, .valueType = row.valueType});
        Describe(signal, row.descriptions);
        EXPECT_EQ(signal.WriteValueDescriptionLine(row.id), row.line);
    }
}

// The room for a line grows with it, whatever it is that comes next.
TEST(ValueDescriptionLine, HasItsNumbersAtAnyPlace) {
    const std::string more(20000, 'y');
    for (size_t size = 0; size < 600; ++size) {
        SCOPED_TRACE(size);
        const std::string text(size, 'x');
        CANDatabase database;
        CANSignal& signal = AddSignal(AddMessage(database));
        Describe(signal, {{0, text}, {2147483647, more}});
        ASSERT_TRUE(signal.WriteValueDescriptionLine(1) == "VAL_ 1 S 0 \"" + text + "\" 2147483647 \"" + more + "\";");
    }
}

// --- SIG_VALTYPE_

struct TypeLineCase {
    std::string name;
    uint32_t id;
    uint32_t valueType;
    uint32_t length;
    std::string_view line;
};

const TypeLineCase kTypeLineCases[] = {
    {"Temperature", 100, TABRIN_VALUE_FLOAT, 32, "SIG_VALTYPE_ 100 Temperature : 1;"},
    {"Temperature", 100, TABRIN_VALUE_DOUBLE, 64, "SIG_VALTYPE_ 100 Temperature : 2;"},
    {"S", 4294967295, TABRIN_VALUE_FLOAT, 32, "SIG_VALTYPE_ 4294967295 S : 1;"},
    {"My Sig", 1, TABRIN_VALUE_FLOAT, 32, "SIG_VALTYPE_ 1 My_Sig : 1;"},
    {"", 1, TABRIN_VALUE_DOUBLE, 64, "SIG_VALTYPE_ 1  : 2;"},
    {"S", 1, TABRIN_VALUE_UNSIGNED, 32, ""},
    {"S", 1, TABRIN_VALUE_SIGNED, 64, ""},
    {"S", 1, 4, 64, ""},
    {"S", 1, 7, 32, ""},
};

TEST(ValueTypeLine, IsThatOfFloatsAndDoubles) {
    for (const TypeLineCase& row : kTypeLineCases) {
        SCOPED_TRACE(testing::Message() << row.name << " of " << row.id << " with type " << row.valueType << " and "
                                        << row.length << " bits");
        CANDatabase database;
        const CANSignal& signal =
            AddSignal(AddMessage(database), {.name = row.name, .length = row.length, .valueType = row.valueType});
        EXPECT_EQ(signal.WriteValueTypeLine(row.id), row.line);
    }
}

// --- The sections

// Two messages of two signals each, one of them a float, all with descriptions.
class ValueSections : public testing::Test {
protected:
    ValueSections() {
        for (const uint32_t id : {200U, 100U}) {
            CANMessage& message = AddMessage(database_, {.id = id});
            Describe(AddSignal(message, {.name = "Bits"}), {{0, "Off"}});
            Describe(AddSignal(message, {.name = "Ratio", .length = 32, .valueType = TABRIN_VALUE_FLOAT}), {{0, "x"}});
            AddSignal(message, {.name = "Bare"});
            Describe(AddSignal(message, {.name = "Angle", .length = 64, .valueType = TABRIN_VALUE_DOUBLE}), {{0, "x"}});
            Describe(AddSignal(message, {.name = "Acts"}), {{-1, "None"}, {1, "All"}});
        }
    }

    CANDatabase database_;
};

TEST_F(ValueSections, DescriptionsStandInTheOrderOfMessagesAndSignals) {
    EXPECT_EQ(StreamBytes([&](DbcFileStream& stream) {
                  WriteValueDescriptionsSection(stream, LinesBehind(database_.messages).valueDescriptions);
              }),
              "VAL_ 200 Bits 0 \"Off\";\r\n"
              "VAL_ 200 Acts -1 \"None\" 1 \"All\";\r\n"
              "VAL_ 100 Bits 0 \"Off\";\r\n"
              "VAL_ 100 Acts -1 \"None\" 1 \"All\";\r\n");
}

TEST_F(ValueSections, TypesStandInTheOrderOfMessagesAndSignals) {
    EXPECT_EQ(StreamBytes([&](DbcFileStream& stream) {
                  WriteValueTypesSection(stream, LinesBehind(database_.messages).valueTypes);
              }),
              "SIG_VALTYPE_ 200 Ratio : 1;\r\n"
              "SIG_VALTYPE_ 200 Angle : 2;\r\n"
              "SIG_VALTYPE_ 100 Ratio : 1;\r\n"
              "SIG_VALTYPE_ 100 Angle : 2;\r\n");
}

TEST_F(ValueSections, NothingIsWrittenToAClosedStream) {
    DbcFileStream stream;
    WriteValueDescriptionsSection(stream, LinesBehind(database_.messages).valueDescriptions);
    WriteValueTypesSection(stream, LinesBehind(database_.messages).valueTypes);
    EXPECT_EQ(stream.Status(), FileStatus::Closed);
    // A line that was tried all the same would be told of here.
    stream.Close();
    EXPECT_EQ(stream.Status(), FileStatus::Closed);
}

TEST(ValueDescriptionLine, LineBreakInATextIsALineEndOfTheFile) {
    CANDatabase database;
    Describe(AddSignal(AddMessage(database)), {{0, "a\nb"}});
    EXPECT_EQ(StreamBytes([&](DbcFileStream& stream) {
                  WriteValueDescriptionsSection(stream, LinesBehind(database.messages).valueDescriptions);
              }),
              "VAL_ 1 S 0 \"a\r\nb\";\r\n");
}

}  // namespace
}  // namespace tabrin
