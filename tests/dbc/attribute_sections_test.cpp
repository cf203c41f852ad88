#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "dbc/attribute_statements.h"
#include "model/attribute_store.h"
#include "model/attribute_text.h"

namespace tabrin {
namespace {

using Object = AttributeObjectType;
using Type = AttributeValueType;

Attribute IntDefinition(Object objectType, int32_t minimum, int32_t maximum, int32_t value) {
    Attribute attribute = MakeAttribute("X", objectType, Type::Int);
    attribute.minimum = minimum;
    attribute.maximum = maximum;
    attribute.intValue = value;
    return attribute;
}

Attribute EnumDefinition(Object objectType, std::vector<std::string> values, int32_t index) {
    Attribute attribute = MakeAttribute("X", objectType, Type::Enum);
    attribute.enumValues = EnumList(std::move(values));
    attribute.enumIndex = index;
    return attribute;
}

Attribute StringDefinition(const char* name, Object objectType, const char* text) {
    Attribute attribute = MakeAttribute(name, objectType, Type::String);
    attribute.stringValue = text;
    return attribute;
}

TEST(AttributeSections, OfAnEmptyStoreAreEmpty) {
    EXPECT_EQ(WriteAttributeSections(AttributeStore()), "");
}

TEST(AttributeSections, HaveOneLineForADefinitionAndOneForItsDefault) {
    constexpr int32_t kLeast = std::numeric_limits<int32_t>::min();
    constexpr int32_t kMost = std::numeric_limits<int32_t>::max();
    const struct {
        Attribute definition;
        const char* expected;
    } rows[] = {
        {StringDefinition("BusType", Object::General, "CAN FD"),
         "BA_DEF_ \"BusType\" STRING ;\nBA_DEF_DEF_ \"BusType\" \"CAN FD\";"},
        {StringDefinition("Kestrune_Msg_Name", Object::Message, ""),
         "BA_DEF_ BO_ \"Kestrune_Msg_Name\" STRING ;\nBA_DEF_DEF_ \"Kestrune_Msg_Name\" \"\";"},
        {StringDefinition("X", Object::Signal, "a"), "BA_DEF_ SG_ \"X\" STRING ;\nBA_DEF_DEF_ \"X\" \"a\";"},
        {IntDefinition(Object::General, 0, 1, 1), "BA_DEF_ \"X\" INT 0 1;\nBA_DEF_DEF_ \"X\" 1;"},
        {IntDefinition(Object::Message, -10, 100, -5), "BA_DEF_ BO_ \"X\" INT -10 100;\nBA_DEF_DEF_ \"X\" -5;"},
        {IntDefinition(Object::Signal, kLeast, kMost, kLeast),
         "BA_DEF_ SG_ \"X\" INT -2147483648 2147483647;\nBA_DEF_DEF_ \"X\" -2147483648;"},
        // A default is not held against the range.
        {IntDefinition(Object::General, 5, 3, 0), "BA_DEF_ \"X\" INT 5 3;\nBA_DEF_DEF_ \"X\" 0;"},
        {EnumDefinition(Object::General, {"Only"}, 0), "BA_DEF_ \"X\" ENUM \"Only\";\nBA_DEF_DEF_ \"X\" \"Only\";"},
        {EnumDefinition(Object::Message, {"Cyclic", "Event"}, 1),
         "BA_DEF_ BO_ \"X\" ENUM \"Cyclic\",\"Event\";\nBA_DEF_DEF_ \"X\" \"Event\";"},
        {EnumDefinition(Object::Signal, {"A b", "", "C"}, 1),
         "BA_DEF_ SG_ \"X\" ENUM \"A b\",\"\",\"C\";\nBA_DEF_DEF_ \"X\" \"\";"},
        // Without an enumeration value at the index there is no default line.
        {EnumDefinition(Object::General, {"A", "B"}, 2), "BA_DEF_ \"X\" ENUM \"A\",\"B\";"},
        {EnumDefinition(Object::General, {"A", "B"}, -1), "BA_DEF_ \"X\" ENUM \"A\",\"B\";"},
        {EnumDefinition(Object::General, {}, 0), "BA_DEF_ \"X\" ENUM;"},
        {MakeAttribute("X", Object::General, Type::Enum), "BA_DEF_ \"X\" ENUM;"},
        // Nothing is escaped.
        {StringDefinition("a\"b", Object::General, "say \"hi\" \\"),
         "BA_DEF_ \"a\"b\" STRING ;\nBA_DEF_DEF_ \"a\"b\" \"say \"hi\" \\\";"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.expected);
        AttributeStore store;
        store.AddDefinition(row.definition);
        EXPECT_EQ(WriteAttributeSections(store), row.expected);
    }
}

TEST(AttributeSections, HaveOneLineForAValue) {
    const struct {
        Attribute attribute;
        uint32_t id;
        const char* signal;
        const char* expected;
    } rows[] = {
        {StringDefinition("Kestrune_Msg_Name", Object::Message, "Engine data"), 100, "",
         "BA_ \"Kestrune_Msg_Name\" BO_ 100 \"Engine data\";"},
        {StringDefinition("Kestrune_Sig_Name", Object::Signal, "Engine speed"), 100, "EngSpeed",
         "BA_ \"Kestrune_Sig_Name\" SG_ 100 EngSpeed \"Engine speed\";"},
        {StringDefinition("X", Object::Message, ""), 0, "", "BA_ \"X\" BO_ 0 \"\";"},
        {StringDefinition("X", Object::Message, "a \"b\""), 1, "", "BA_ \"X\" BO_ 1 \"a \"b\"\";"},
        {StringDefinition("X", Object::Message, "a"), 4294967295U, "unused", "BA_ \"X\" BO_ 4294967295 \"a\";"},
        {IntDefinition(Object::Message, 0, 9, 7), 2147483748U, "", "BA_ \"X\" BO_ 2147483748 7;"},
        {IntDefinition(Object::Signal, -9, 9, -7), 4294967295U, "S", "BA_ \"X\" SG_ 4294967295 S -7;"},
        {EnumDefinition(Object::Message, {"A", "B"}, 0), 1, "", "BA_ \"X\" BO_ 1 0;"},
        {EnumDefinition(Object::Signal, {"A", "B"}, 1), 1, "S", "BA_ \"X\" SG_ 1 S 1;"},
        {EnumDefinition(Object::Message, {"A", "B"}, 2), 1, "", ""},
        {EnumDefinition(Object::Signal, {"A", "B"}, -1), 1, "S", ""},
        {EnumDefinition(Object::Message, {}, 0), 1, "", ""},
        // Values of the database itself are never written: the defaults stand for them.
        {StringDefinition("X", Object::General, "a"), 0, "", ""},
        {IntDefinition(Object::General, 0, 9, 7), 0, "", ""},
        {EnumDefinition(Object::General, {"A", "B"}, 1), 0, "", ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << AttributeText(row.attribute) << " of " << row.id << " " << row.signal);
        Attribute value = row.attribute;
        value.objectId = row.id;
        value.signalName = row.signal;
        AttributeStore store;
        store.AddValue(value);
        EXPECT_EQ(WriteAttributeSections(store), row.expected);
    }
}

// Lines that are left out leave no gap, wherever they stand.
TEST(AttributeSections, StandInOrderWithALineFeedInBetween) {
    AttributeStore store;
    const auto addValue = [&store](Attribute value, uint32_t id, const char* signal) {
        value.objectId = id;
        value.signalName = signal;
        store.AddValue(value);
    };
    addValue(IntDefinition(Object::General, 0, 9, 5), 0, "");
    addValue(StringDefinition("S", Object::Signal, "later"), 7, "Speed");
    addValue(EnumDefinition(Object::Message, {"A"}, 1), 1, "");
    addValue(IntDefinition(Object::Message, 0, 9, 6), 9, "");
    addValue(IntDefinition(Object::Message, 0, 9, 4), 8, "");
    addValue(EnumDefinition(Object::Message, {"A"}, -1), 2, "");
    store.AddDefinition(EnumDefinition(Object::Signal, {"A", "B"}, 5));
    store.AddDefinition(StringDefinition("S", Object::Signal, "none"));
    store.AddDefinition(EnumDefinition(Object::General, {"A", "B"}, 1));
    store.AddDefinition(IntDefinition(Object::Message, 0, 9, 3));
    EXPECT_EQ(WriteAttributeSections(store),
              "BA_DEF_ SG_ \"X\" ENUM \"A\",\"B\";\n"
              "BA_DEF_ SG_ \"S\" STRING ;\n"
              "BA_DEF_ \"X\" ENUM \"A\",\"B\";\n"
              "BA_DEF_ BO_ \"X\" INT 0 9;\n"
              "BA_DEF_DEF_ \"S\" \"none\";\n"
              "BA_DEF_DEF_ \"X\" \"B\";\n"
              "BA_DEF_DEF_ \"X\" 3;\n"
              "BA_ \"S\" SG_ 7 Speed \"later\";\n"
              "BA_ \"X\" BO_ 9 6;\n"
              "BA_ \"X\" BO_ 8 4;");
}

TEST(AttributeSections, RestoreTheStoreTheyWereParsedInto) {
    const char* const text =
        "BA_DEF_ \"J1939PGN\" INT 0 1;\n"
        "BA_DEF_ BO_ \"GenMsgSendType\" ENUM \"Cyclic\",\"Event\";\n"
        "BA_DEF_ SG_ \"Kestrune_Sig_Name\" STRING ;\n"
        "BA_DEF_DEF_ \"J1939PGN\" 1;\n"
        "BA_DEF_DEF_ \"GenMsgSendType\" \"Event\";\n"
        "BA_DEF_DEF_ \"Kestrune_Sig_Name\" \"\";\n"
        "BA_ \"GenMsgSendType\" BO_ 2147483748 0;\n"
        "BA_ \"Kestrune_Sig_Name\" SG_ 100 EngSpeed \"Engine speed\";";
    AttributeStore store;
    const std::string lines(text);
    size_t start = 0;
    while (start < lines.size()) {
        const size_t end = std::min(lines.find('\n', start), lines.size());
        ParseAttributeStatement(store, lines.substr(start, end - start));
        start = end + 1;
    }
    EXPECT_EQ(WriteAttributeSections(store), text);
}

}  // namespace
}  // namespace tabrin
