#include "model/attribute_store.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "model/attribute_text.h"

namespace tabrin {
namespace {

using Object = AttributeObjectType;
using Type = AttributeValueType;
using Texts = std::vector<std::string>;

constexpr std::array<Object, 3> kObjectTypes = {Object::General, Object::Message, Object::Signal};
constexpr std::array<Type, 3> kValueTypes = {Type::Int, Type::Enum, Type::String};

Attribute IntValue(const char* name, Object objectType, uint32_t id, const char* signal, int32_t value) {
    Attribute attribute = MakeAttribute(name, objectType, Type::Int);
    attribute.objectId = id;
    attribute.signalName = signal;
    attribute.minimum = 0;
    attribute.maximum = 100;
    attribute.intValue = value;
    return attribute;
}

TEST(AttributeNameFilter, NewStoreAcceptsEveryName) {
    const AttributeStore store;
    for (const char* name : {"BusType", "Anything", ""}) {
        SCOPED_TRACE(name);
        EXPECT_FALSE(store.IsNameRejected(name));
    }
}

TEST(AttributeNameFilter, AcceptsItsNamesOnly) {
    static constexpr std::array<std::string_view, 2> kNames = {"First", "Second"};
    AttributeStore store;
    store.Clear(kNames);
    const struct {
        const char* name;
        bool rejected;
    } rows[] = {
        {"First", false}, {"Second", false}, {"Third", true},  {"first", true},       {"FIRST", true},
        {"Firs", true},   {"First ", true},  {" First", true}, {"FirstSecond", true}, {"", true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(store.IsNameRejected(row.name), row.rejected);
    }
}

TEST(AttributeNameFilter, StaysWhenTheStoreIsEmptied) {
    static constexpr std::array<std::string_view, 1> kNames = {"First"};
    AttributeStore store;
    store.Clear(kNames);
    store.Clear();
    EXPECT_FALSE(store.IsNameRejected("First"));
    EXPECT_TRUE(store.IsNameRejected("Second"));
}

TEST(AttributeNameFilter, IsReplacedByANewOne) {
    static constexpr std::array<std::string_view, 1> kOld = {"First"};
    static constexpr std::array<std::string_view, 1> kNew = {"Second"};
    AttributeStore store;
    store.Clear(kOld);
    store.Clear(kNew);
    EXPECT_TRUE(store.IsNameRejected("First"));
    EXPECT_FALSE(store.IsNameRejected("Second"));
}

// The parser of statements asks; the writer fills its store with whatever it likes.
TEST(AttributeNameFilter, IsNotAskedInAdding) {
    static constexpr std::array<std::string_view, 1> kNames = {"First"};
    AttributeStore store;
    store.Clear(kNames);
    store.AddDefinition(MakeAttribute("Second", Object::General, Type::Int));
    store.AddValue(MakeAttribute("Second", Object::General, Type::Int));
    EXPECT_EQ(store.Definitions().size(), 1U);
    EXPECT_EQ(store.Values().size(), 1U);
}

TEST(AttributeDefinitions, FirstOneOfAKeyWins) {
    AttributeStore store;
    Attribute first = MakeAttribute("Name", Object::Message, Type::Enum);
    first.minimum = 1;
    first.maximum = 2;
    first.intValue = 1;
    first.enumIndex = 1;
    first.enumValues = EnumList({"A", "B"});
    first.stringValue = "first";
    Attribute second = MakeAttribute("Name", Object::Message, Type::Enum);
    second.minimum = 3;
    second.maximum = 4;
    second.intValue = 3;
    second.enumIndex = 2;
    second.enumValues = EnumList({"X", "Y", "Z"});
    second.stringValue = "second";
    store.AddDefinition(first);
    store.AddDefinition(second);
    const Texts expected = {"Message Enum Name 1..2 {A|B} int=1 index=1 text=[first]"};
    EXPECT_EQ(AttributeTexts(store.Definitions()), expected);
    const Attribute* found = store.FindDefinition(second, Type::Enum);
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(AttributeText(*found), expected[0]);
}

// What tells values apart does not tell definitions apart.
TEST(AttributeDefinitions, MessageAndSignalAreNoPartOfTheKey) {
    AttributeStore store;
    store.AddDefinition(IntValue("Name", Object::Signal, 1, "A", 10));
    store.AddDefinition(IntValue("Name", Object::Signal, 2, "B", 20));
    EXPECT_EQ(AttributeTexts(store.Definitions()), Texts{"Signal Int Name 0..100 id=1 signal=A int=10"});
    EXPECT_NE(store.FindDefinition(IntValue("Name", Object::Signal, 3, "C", 0), Type::Int), nullptr);
}

TEST(AttributeDefinitions, OneNameCanHaveOneForEachObjectAndValueType) {
    AttributeStore store;
    for (const Type valueType : kValueTypes) {
        for (const Object objectType : kObjectTypes) {
            Attribute attribute = MakeAttribute("Name", objectType, valueType);
            attribute.minimum = 0;
            attribute.maximum = 1;
            store.AddDefinition(attribute);
        }
    }
    EXPECT_EQ(AttributeTexts(store.Definitions()),
              (Texts{"General Int Name 0..1", "Message Int Name 0..1", "Signal Int Name 0..1",     //
                     "General Enum Name 0..1", "Message Enum Name 0..1", "Signal Enum Name 0..1",  //
                     "General String Name 0..1", "Message String Name 0..1", "Signal String Name 0..1"}));
}

TEST(AttributeDefinitions, AreFoundByNameObjectAndTheValueTypeAskedFor) {
    AttributeStore store;
    store.AddDefinition(MakeAttribute("Name", Object::Message, Type::String));
    const struct {
        const char* name;
        Object objectType;
        Type valueType;
        bool found;
    } rows[] = {
        {"Name", Object::Message, Type::String, true},       {"Name", Object::Message, Type::Int, false},
        {"Name", Object::Message, Type::Enum, false},        {"Name", Object::Message, Type::Unsupported, false},
        {"Name", Object::General, Type::String, false},      {"Name", Object::Signal, Type::String, false},
        {"name", Object::Message, Type::String, false},      {"", Object::Message, Type::String, false},
        {"Name$$Msg", Object::Message, Type::String, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.name << ", object " << static_cast<uint32_t>(row.objectType) << ", type "
                                        << static_cast<uint32_t>(row.valueType));
        for (const Type own : kValueTypes) {
            const Attribute* found = store.FindDefinition(MakeAttribute(row.name, row.objectType, own), row.valueType);
            EXPECT_EQ(found != nullptr, row.found) << "asked for with type " << static_cast<uint32_t>(own);
        }
    }
}

// General, Message, Signal; in each Int, String, Enum. Here they are added the other way round.
TEST(AttributeDefinitions, OfOneNameHaveAnOrderForValues) {
    constexpr std::array<Object, 3> kObjects = {Object::Signal, Object::Message, Object::General};
    constexpr std::array<Type, 3> kTypes = {Type::Enum, Type::String, Type::Int};
    const char* const expected[] = {"Signal Enum Name",  "Signal String Name",  "Signal Int Name 5..9",
                                    "Message Enum Name", "Message String Name", "Message Int Name 5..9",
                                    "General Enum Name", "General String Name", "General Int Name 5..9"};
    AttributeStore store;
    store.AddDefinition(MakeAttribute("Nam", Object::General, Type::Int));
    EXPECT_EQ(store.FindDefinitionForValue("Name"), nullptr);
    size_t row = 0;
    for (const Object objectType : kObjects) {
        for (const Type valueType : kTypes) {
            SCOPED_TRACE(expected[row]);
            Attribute attribute = MakeAttribute("Name", objectType, valueType);
            if (valueType == Type::Int) {
                attribute.minimum = 5;
                attribute.maximum = 9;
            }
            store.AddDefinition(attribute);
            const Attribute* found = store.FindDefinitionForValue("Name");
            ASSERT_NE(found, nullptr);
            EXPECT_EQ(AttributeText(*found), expected[row++]);
        }
    }
}

TEST(AttributeDefinitions, AddedLaterDoNotComeFirstForValues) {
    AttributeStore store;
    store.AddDefinition(MakeAttribute("Name", Object::General, Type::Int));
    store.AddDefinition(MakeAttribute("Name", Object::General, Type::String));
    store.AddDefinition(MakeAttribute("Name", Object::General, Type::Enum));
    store.AddDefinition(MakeAttribute("Name", Object::Message, Type::Int));
    store.AddDefinition(MakeAttribute("Name", Object::Signal, Type::Int));
    const Attribute* found = store.FindDefinitionForValue("Name");
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->objectType, Object::General);
    EXPECT_EQ(found->valueType, Type::Int);
}

// Whatever was found before, also by another name of the same length.
TEST(AttributeDefinitions, AddedLaterAreFoundForValues) {
    AttributeStore store;
    store.AddDefinition(MakeAttribute("Name", Object::Signal, Type::Int));
    const Attribute* signal = store.FindDefinitionForValue("Name");
    ASSERT_NE(signal, nullptr);
    EXPECT_EQ(signal->objectType, Object::Signal);
    EXPECT_EQ(store.FindDefinitionForValue("Nama"), nullptr);
    store.AddDefinition(MakeAttribute("Nama", Object::Signal, Type::Int));
    store.AddDefinition(MakeAttribute("Name", Object::Message, Type::Int));
    const Attribute* message = store.FindDefinitionForValue("Name");
    ASSERT_NE(message, nullptr);
    EXPECT_EQ(message->objectType, Object::Message);
    const Attribute* other = store.FindDefinitionForValue("Nama");
    ASSERT_NE(other, nullptr);
    EXPECT_EQ(other->name, "Nama");
    EXPECT_EQ(store.FindDefinitionForValue("Name"), message);
    EXPECT_EQ(store.FindDefinitionForValue("Nam"), nullptr);
    EXPECT_EQ(store.FindDefinitionForValue(std::string(32, 'x') + "Name"), nullptr);
    store.Clear();
    EXPECT_EQ(store.FindDefinitionForValue("Name"), nullptr);
}

TEST(AttributeDefinitions, OfRejectedNamesAreNotFoundForValues) {
    static constexpr std::array<std::string_view, 1> kNames = {"First"};
    AttributeStore store;
    store.Clear(kNames);
    store.AddDefinition(MakeAttribute("First", Object::General, Type::Int));
    store.AddDefinition(MakeAttribute("Other", Object::General, Type::Int));
    for (int time = 0; time < 2; ++time) {
        EXPECT_NE(store.FindDefinitionForValue("First"), nullptr);
        EXPECT_EQ(store.FindDefinitionForValue("Other"), nullptr);
    }
}

TEST(AttributeDefinitions, AreCopies) {
    AttributeStore store;
    Attribute attribute = IntValue("Name", Object::General, 0, "", 5);
    store.AddDefinition(attribute);
    attribute.intValue = 6;
    EXPECT_EQ(AttributeTexts(store.Definitions()), Texts{"General Int Name 0..100 int=5"});
}

TEST(AttributeValues, FirstOneOfAKeyWins) {
    AttributeStore store;
    store.AddValue(IntValue("Name", Object::Message, 100, "", 5));
    store.AddValue(IntValue("Name", Object::Message, 100, "", 6));
    EXPECT_EQ(AttributeTexts(store.Values()), Texts{"Message Int Name 0..100 id=100 int=5"});
    const std::optional<Attribute> found = store.FindValue(IntValue("Name", Object::Message, 100, "", 0), Type::Int);
    ASSERT_TRUE(found.has_value());
    EXPECT_EQ(found->intValue, 5);
}

TEST(AttributeValues, EachObjectHasItsOwnInTheOrderAdded) {
    AttributeStore store;
    store.AddValue(IntValue("Name", Object::Signal, 100, "Speed", 1));
    store.AddValue(IntValue("Name", Object::Signal, 100, "Torque", 2));
    store.AddValue(IntValue("Name", Object::Signal, 99, "Speed", 3));
    store.AddValue(IntValue("Name", Object::Message, 100, "", 4));
    store.AddValue(IntValue("Name", Object::Message, 99, "", 5));
    store.AddValue(IntValue("Name", Object::General, 0, "", 6));
    store.AddValue(IntValue("Else", Object::General, 0, "", 7));
    EXPECT_EQ(
        AttributeTexts(store.Values()),
        (Texts{"Signal Int Name 0..100 id=100 signal=Speed int=1", "Signal Int Name 0..100 id=100 signal=Torque int=2",
               "Signal Int Name 0..100 id=99 signal=Speed int=3", "Message Int Name 0..100 id=100 int=4",
               "Message Int Name 0..100 id=99 int=5", "General Int Name 0..100 int=6",
               "General Int Else 0..100 int=7"}));
}

TEST(AttributeValues, OfDifferentValueTypesStandSideBySide) {
    AttributeStore store;
    for (const Type valueType : kValueTypes) {
        Attribute attribute = MakeAttribute("Name", Object::Message, valueType);
        attribute.objectId = 1;
        store.AddValue(attribute);
    }
    EXPECT_EQ(store.Values().size(), 3U);
}

TEST(AttributeValues, AreFoundByEverythingThatTellsThemApart) {
    AttributeStore store;
    store.AddValue(IntValue("Name", Object::Signal, 100, "Speed", 1));
    const struct {
        const char* name;
        Object objectType;
        uint32_t id;
        const char* signal;
        Type valueType;
        bool found;
    } rows[] = {
        {"Name", Object::Signal, 100, "Speed", Type::Int, true},
        {"Name", Object::Signal, 100, "Speed", Type::Enum, false},
        {"Name", Object::Signal, 100, "Speed", Type::String, false},
        {"Name", Object::Signal, 101, "Speed", Type::Int, false},
        {"Name", Object::Signal, 100, "speed", Type::Int, false},
        {"Name", Object::Signal, 100, "", Type::Int, false},
        {"Name", Object::Message, 100, "Speed", Type::Int, false},
        {"Name", Object::General, 100, "Speed", Type::Int, false},
        {"NAME", Object::Signal, 100, "Speed", Type::Int, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.name << ", object " << static_cast<uint32_t>(row.objectType) << ", "
                                        << row.id << ", " << row.signal << ", type "
                                        << static_cast<uint32_t>(row.valueType));
        Attribute probe = IntValue(row.name, row.objectType, row.id, row.signal, 0);
        for (const Type own : kValueTypes) {
            probe.valueType = own;
            EXPECT_EQ(store.FindValue(probe, row.valueType).has_value(), row.found)
                << "asked for with type " << static_cast<uint32_t>(own);
        }
    }
}

TEST(AttributeValues, OfTheWholeDatabaseAreFoundWhereverTheyStand) {
    AttributeStore store;
    const Attribute probe = IntValue("Name", Object::General, 0, "", 0);
    for (int32_t number = 1; number <= 3; ++number) {
        store.AddValue(IntValue("Name", Object::Message, 0, "", number));
        EXPECT_FALSE(store.FindValue(probe, Type::Int).has_value());
    }
    store.AddValue(IntValue("Name", Object::General, 0, "", 4));
    store.AddValue(IntValue("Name", Object::Message, 0, "", 5));
    const std::optional<Attribute> found = store.FindValue(probe, Type::Int);
    ASSERT_TRUE(found.has_value());
    EXPECT_EQ(found->intValue, 4);
    EXPECT_TRUE(store.FindValue(IntValue("Name", Object::Message, 0, "", 0), Type::Int).has_value());
    store.Clear();
    EXPECT_FALSE(store.FindValue(probe, Type::Int).has_value());
}

// Identifiers with bit 31 set are large numbers, not negative ones, and differ from those without.
TEST(AttributeValues, GoByTheWholeUnsignedIdentifier) {
    AttributeStore store;
    store.AddValue(IntValue("Name", Object::Signal, 2147483748U, "S", 1));
    store.AddValue(IntValue("Name", Object::Signal, 100, "S", 2));
    store.AddValue(IntValue("Name", Object::Signal, 4294967295U, "S", 3));
    const struct {
        uint32_t id;
        int32_t expected;  // 0: not found
    } rows[] = {{2147483748U, 1}, {100, 2}, {4294967295U, 3}, {2147483648U, 0}, {0, 0}, {21474837, 0}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.id);
        const std::optional<Attribute> found =
            store.FindValue(IntValue("Name", Object::Signal, row.id, "S", 0), Type::Int);
        EXPECT_EQ(found.has_value() ? found->intValue : 0, row.expected);
    }
}

// Identifiers and names that would look the same written one behind the other.
TEST(AttributeValues, OfSimilarObjectsAreKeptApart) {
    AttributeStore store;
    store.AddValue(IntValue("Name", Object::Signal, 1, "2S", 1));
    store.AddValue(IntValue("Name", Object::Signal, 12, "S", 2));
    store.AddValue(IntValue("Name1", Object::Signal, 2, "S", 3));
    store.AddValue(IntValue("Nam", Object::Signal, 12, "S", 4));
    EXPECT_EQ(store.Values().size(), 4U);
}

TEST(AttributeValues, AreFoundAmongMany) {
    AttributeStore store;
    for (uint32_t id = 0; id < 1000; ++id) {
        for (const char* signal : {"A", "B", "C"}) {
            store.AddValue(IntValue("Name", Object::Signal, id, signal, static_cast<int32_t>(id) + signal[0]));
            store.AddValue(IntValue("Name", Object::Signal, id, signal, -1));
        }
    }
    EXPECT_EQ(store.Values().size(), 3000U);
    for (uint32_t id = 0; id < 1000; ++id) {
        const std::optional<Attribute> found = store.FindValue(IntValue("Name", Object::Signal, id, "B", 0), Type::Int);
        ASSERT_TRUE(found.has_value()) << id;
        EXPECT_EQ(found->intValue, static_cast<int32_t>(id) + 'B');
    }
    EXPECT_FALSE(store.FindValue(IntValue("Name", Object::Signal, 1000, "B", 0), Type::Int).has_value());
}

TEST(AttributeValues, OfADefinitionHaveTheRestFromIt) {
    AttributeStore store;
    Attribute number = IntValue("Number", Object::Signal, 0, "", 7);
    store.AddDefinition(number);
    Attribute choice = MakeAttribute("Choice", Object::Message, Type::Enum);
    choice.enumValues = EnumList({"A", "B"});
    store.AddDefinition(choice);
    store.AddDefinition(MakeAttribute("Text", Object::Message, Type::String));
    std::string name = "Speed";
    std::string text = "old";
    store.AddValue({store.FindDefinitionForValue("Number"), 100, 5, name, {}});
    store.AddValue({store.FindDefinitionForValue("Choice"), 100, 1, {}, {}});
    store.AddValue({store.FindDefinitionForValue("Text"), 100, 0, {}, text});
    store.AddValue({store.FindDefinitionForValue("Text"), 100, 0, {}, "later"});
    name.assign("Other");
    text.assign("new");
    EXPECT_EQ(AttributeTexts(store.Values()),
              (Texts{"Signal Int Number 0..100 id=100 signal=Speed int=5", "Message Enum Choice {A|B} id=100 index=1",
                     "Message String Text id=100 text=[old]"}));
}

TEST(AttributeValues, AreVisitedWithTheLaterOnesOfAKey) {
    AttributeStore store;
    store.AddDefinition(IntValue("Name", Object::Message, 0, "", 0));
    const Attribute* definition = store.FindDefinitionForValue("Name");
    for (int32_t number = 0; number < 1000; ++number) {
        store.AddValue({definition, 100, number, {}, {}});
    }
    int32_t expected = 0;
    store.ForEachValue([&](const AttributeValue& value) {
        EXPECT_EQ(value.definition, definition);
        EXPECT_EQ(value.objectId, 100U);
        EXPECT_EQ(value.number, expected++);
    });
    EXPECT_EQ(expected, 1000);
}

TEST(AttributeValues, AreNoDefinitions) {
    AttributeStore store;
    store.AddValue(IntValue("Value", Object::General, 0, "", 1));
    store.AddDefinition(IntValue("Definition", Object::General, 0, "", 1));
    EXPECT_EQ(store.FindDefinition(IntValue("Value", Object::General, 0, "", 0), Type::Int), nullptr);
    EXPECT_FALSE(store.FindValue(IntValue("Definition", Object::General, 0, "", 0), Type::Int).has_value());
    EXPECT_EQ(store.Definitions().size(), 1U);
    EXPECT_EQ(store.Values().size(), 1U);
}

TEST(AttributeStoreDefaults, ReachEveryDefinitionOfTheNameThatTheyFit) {
    const struct {
        const char* text;
        Texts expected;
    } rows[] = {
        {"1",
         {"General Int Name 0..1 int=1", "Message Int Name 0..50 int=1", "Signal Enum Name {A|B} index=1",
          "Message String Name", "General Int Other 0..50"}},
        {"50",
         {"General Int Name 0..1", "Message Int Name 0..50 int=50", "Signal Enum Name {A|B}", "Message String Name",
          "General Int Other 0..50"}},
        {"\"B\"",
         {"General Int Name 0..1", "Message Int Name 0..50", "Signal Enum Name {A|B} index=1",
          "Message String Name text=[B]", "General Int Other 0..50"}},
        {"\"C\"",
         {"General Int Name 0..1", "Message Int Name 0..50", "Signal Enum Name {A|B}", "Message String Name text=[C]",
          "General Int Other 0..50"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        AttributeStore store;
        Attribute definition = MakeAttribute("Name", Object::General, Type::Int);
        definition.minimum = 0;
        definition.maximum = 1;
        store.AddDefinition(definition);
        definition.objectType = Object::Message;
        definition.maximum = 50;
        store.AddDefinition(definition);
        definition = MakeAttribute("Name", Object::Signal, Type::Enum);
        definition.enumValues = EnumList({"A", "B"});
        store.AddDefinition(definition);
        store.AddDefinition(MakeAttribute("Name", Object::Message, Type::String));
        definition = MakeAttribute("Other", Object::General, Type::Int);
        definition.minimum = 0;
        definition.maximum = 50;
        store.AddDefinition(definition);
        store.SetDefaults("Name", row.text);
        EXPECT_EQ(AttributeTexts(store.Definitions()), row.expected);
    }
}

TEST(AttributeStoreDefaults, AreSeenByLaterLookUps) {
    AttributeStore store;
    const Attribute definition = IntValue("Name", Object::General, 0, "", 5);
    store.AddDefinition(definition);
    store.SetDefaults("Name", "6");
    const Attribute* found = store.FindDefinition(definition, Type::Int);
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->intValue, 6);
}

TEST(AttributeStoreDefaults, DoNotTouchValues) {
    AttributeStore store;
    store.AddValue(IntValue("Name", Object::General, 0, "", 5));
    store.SetDefaults("Name", "6");
    EXPECT_EQ(AttributeTexts(store.Values()), Texts{"General Int Name 0..100 int=5"});
}

TEST(AttributeStore, HasTextsOfItsOwn) {
    std::string text = "old";
    std::string quoted = "\"old\"";
    Attribute attribute = MakeAttribute("", Object::Signal, Type::String);
    attribute.name = attribute.signalName = attribute.stringValue = text;
    AttributeStore store;
    store.AddDefinition(attribute);
    store.AddDefinition(MakeAttribute("Name", Object::General, Type::String));
    store.SetDefaults("Name", quoted);
    store.AddValue(attribute);
    text.assign("new");
    quoted.assign("\"new\"");
    EXPECT_EQ(AttributeTexts(store.Definitions()),
              (Texts{"Signal String old signal=old text=[old]", "General String Name text=[old]"}));
    EXPECT_EQ(AttributeTexts(store.Values()), Texts{"Signal String old signal=old text=[old]"});
}

TEST(AttributeStore, ClearLetsGoOfTheListsOfNames) {
    AttributeStore store;
    Attribute attribute = MakeAttribute("Name", Object::General, Type::Enum);
    attribute.enumValues = EnumList({"A", "B"});
    const std::weak_ptr<const EnumValues> definition = attribute.enumValues;
    store.AddDefinition(attribute);
    attribute.enumValues = EnumList({"A", "B"});
    const std::weak_ptr<const EnumValues> value = attribute.enumValues;
    store.AddValue(attribute);
    attribute.enumValues.reset();
    EXPECT_FALSE(definition.expired());
    EXPECT_FALSE(value.expired());
    store.Clear();
    EXPECT_TRUE(definition.expired());
    EXPECT_TRUE(value.expired());
}

TEST(AttributeStore, ClearForgetsDefinitionsAndValues) {
    const Attribute attribute = IntValue("Name", Object::General, 0, "", 5);
    AttributeStore store;
    store.AddDefinition(attribute);
    store.AddValue(attribute);
    store.Clear();
    EXPECT_TRUE(store.Definitions().empty());
    EXPECT_TRUE(store.Values().empty());
    EXPECT_EQ(store.FindDefinition(attribute, Type::Int), nullptr);
    EXPECT_FALSE(store.FindValue(attribute, Type::Int).has_value());
}

TEST(AttributeStore, TakesTheSameKeysAgainOnceCleared) {
    AttributeStore store;
    store.AddDefinition(IntValue("Name", Object::General, 0, "", 5));
    store.AddValue(IntValue("Name", Object::General, 0, "", 5));
    store.Clear();
    store.AddDefinition(IntValue("Name", Object::General, 0, "", 6));
    store.AddValue(IntValue("Name", Object::General, 0, "", 7));
    EXPECT_EQ(AttributeTexts(store.Definitions()), Texts{"General Int Name 0..100 int=6"});
    EXPECT_EQ(AttributeTexts(store.Values()), Texts{"General Int Name 0..100 int=7"});
}

TEST(AttributeStore, NewFilterForgetsDefinitionsAndValues) {
    static constexpr std::array<std::string_view, 1> kNames = {"Name"};
    AttributeStore store;
    store.AddDefinition(IntValue("Name", Object::General, 0, "", 5));
    store.AddValue(IntValue("Name", Object::General, 0, "", 5));
    store.Clear(kNames);
    EXPECT_TRUE(store.Definitions().empty());
    EXPECT_TRUE(store.Values().empty());
}

}  // namespace
}  // namespace tabrin
