#include "model/can_database.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "model/arena_level.h"
#include "model/own_arena.h"
#include "model/records.h"
#include "shown.h"

namespace tabrin {
namespace {

std::shared_ptr<CANMessage> MakeMessage(uint32_t id) {
    auto message = std::make_shared<OwnMessage>();
    message->invalid = false;
    message->id = id;
    return message;
}

Attribute MakeAttribute(const char* name) {
    Attribute attribute;
    attribute.name = name;
    return attribute;
}

const std::array<std::string_view, 9> kNames = {"BusType",           "J1939PGN",         "IsNMEA",
                                                "Kestrune_Msg_Name", "GenMsgSendType",   "GenMsgCycleTime",
                                                "Kestrune_Sig_Name", "GenSigStartValue", "GenSigInactiveValue"};

void ExpectWellKnownNamesOnly(const CANDatabase& database) {
    for (const std::string_view name : kNames) {
        EXPECT_FALSE(database.attributes.IsNameRejected(name)) << name;
    }
    for (const std::string_view name :
         {"", "bustype", "busType", "BusTyp", "BusType2", "Bus Type", "J1939", "IsNMEA ", "GenMsgCycle",
          "GenMsgCycleTimes", "GenMsgDelayTime", "Kestrune_Msg", "Kestrune_Name", "GenSigSendType", "GenSigCycleTime",
          "SystemSignalLongSymbol"}) {
        EXPECT_TRUE(database.attributes.IsNameRejected(name)) << name;
    }
}

TEST(CanDatabase, NewDatabaseIsEmpty) {
    const CANDatabase database;
    EXPECT_EQ(database.info.protocolType, 0U);
    EXPECT_EQ(database.info.canFd, 0U);
    EXPECT_TRUE(database.messages.empty());
    EXPECT_TRUE(database.identifierIndex.IsEmpty());
    EXPECT_TRUE(database.errors.empty());
    EXPECT_TRUE(database.attributes.Definitions().empty());
    EXPECT_TRUE(database.attributes.Values().empty());
}

TEST(CanDatabase, NewDatabaseTakesTheWellKnownAttributesOnly) {
    const CANDatabase database;
    ExpectWellKnownNamesOnly(database);
}

TEST(CanDatabase, WellKnownNamesHaveTheirOrder) {
    EXPECT_EQ(kWellKnownAttributes, kNames);
}

TEST(CanDatabase, ClearTakesTheProtocolBack) {
    CANDatabase database;
    database.info = {2, 1};
    database.Clear();
    EXPECT_EQ(database.info.protocolType, 0U);
}

TEST(CanDatabase, ClearLeavesTheCanFdFlag) {
    for (const uint32_t flag : {0U, 1U, 2U}) {
        SCOPED_TRACE(flag);
        CANDatabase database;
        database.info = {2, flag};
        database.Clear();
        EXPECT_EQ(database.info.canFd, flag);
    }
}

TEST(CanDatabase, ClearReleasesTheMessages) {
    CANDatabase database;
    const std::weak_ptr<CANMessage> released = database.messages.emplace_back(MakeMessage(100));
    database.Clear();
    EXPECT_TRUE(database.messages.empty());
    EXPECT_TRUE(released.expired());
}

TEST(CanDatabase, ClearEmptiesTheErrors) {
    CANDatabase database;
    database.RecordErrors("BO_ x\n", 1, {0});
    database.Clear();
    EXPECT_TRUE(database.errors.empty());
}

TEST(CanDatabase, ClearEmptiesTheAttributes) {
    CANDatabase database;
    const Attribute attribute = MakeAttribute("BusType");
    database.attributes.AddDefinition(attribute);
    database.attributes.AddValue(attribute);
    database.Clear();
    EXPECT_TRUE(database.attributes.Definitions().empty());
    EXPECT_TRUE(database.attributes.Values().empty());
    EXPECT_EQ(database.attributes.FindDefinition(attribute, AttributeValueType::Int), nullptr);
    EXPECT_FALSE(database.attributes.FindValue(attribute, AttributeValueType::Int).has_value());
}

TEST(CanDatabase, ClearTakesTheWellKnownAttributesOnly) {
    const std::array<std::string_view, 1> kOther = {"Other"};
    CANDatabase database;
    database.attributes.Clear(kOther);
    EXPECT_TRUE(database.attributes.IsNameRejected("BusType"));
    database.Clear();
    ExpectWellKnownNamesOnly(database);
    EXPECT_TRUE(database.attributes.IsNameRejected("Other"));
}

// The messages that the index finds.
std::vector<const CANMessage*> Found(CANDatabase& database, uint32_t id) {
    std::vector<const CANMessage*> found;
    for (const CANMessage* message : database.FindMessages(id)) {
        found.push_back(message);
    }
    return found;
}

TEST(CanDatabase, ClearEmptiesTheIndex) {
    CANDatabase database;
    database.AddParsedMessage(MakeMessage(100));
    database.Clear();
    EXPECT_TRUE(database.identifierIndex.IsEmpty());
    EXPECT_TRUE(database.FindMessages(100).empty());
}

TEST(CanDatabase, ParsedMessagesAreFoundInFileOrder) {
    CANDatabase database;
    const auto first = MakeMessage(100);
    const auto other = MakeMessage(0x80000064);
    const auto second = MakeMessage(100);
    for (const auto& message : {first, other, second}) {
        database.AddParsedMessage(message);
    }
    EXPECT_EQ(database.messages, CANDatabase::Messages({first, other, second}));
    EXPECT_EQ(Found(database, 100), std::vector<const CANMessage*>({first.get(), second.get()}));
    EXPECT_EQ(Found(database, 0x80000064), std::vector<const CANMessage*>({other.get()}));
    EXPECT_TRUE(database.FindMessages(101).empty());
}

TEST(CanDatabase, LookingForAMessageDoesNotMakeOne) {
    CANDatabase database;
    EXPECT_TRUE(database.FindMessages(100).empty());
    EXPECT_TRUE(database.identifierIndex.IsEmpty());
    EXPECT_TRUE(database.messages.empty());
}

TEST(CanDatabase, EndOfReadingLeavesWhatWasRead) {
    CANDatabase database;
    database.info = {1, 1};
    database.AddParsedMessage(MakeMessage(100));
    database.RecordErrors("BO_ x\n", 1, {0});
    database.EndReading();
    EXPECT_EQ(database.messages.size(), 1U);
    EXPECT_EQ(database.errors.size(), 1U);
    EXPECT_EQ(database.info.protocolType, 1U);
    EXPECT_EQ(database.info.canFd, 1U);
}

TEST(CanDatabase, EndOfReadingEmptiesTheIndex) {
    CANDatabase database;
    database.AddParsedMessage(MakeMessage(100));
    database.EndReading();
    EXPECT_TRUE(database.FindMessages(100).empty());
    EXPECT_TRUE(database.identifierIndex.IsEmpty());
}

TEST(CanDatabase, EndOfReadingEmptiesTheAttributes) {
    CANDatabase database;
    database.attributes.AddDefinition(MakeAttribute("BusType"));
    database.attributes.AddValue(MakeAttribute("BusType"));
    database.EndReading();
    EXPECT_TRUE(database.attributes.Definitions().empty());
    EXPECT_TRUE(database.attributes.Values().empty());
    ExpectWellKnownNamesOnly(database);
}

void AddMessageWithSignals(CANDatabase& database, uint32_t id, std::initializer_list<const char*> names) {
    const auto message = MakeMessage(id);
    database.AddParsedMessage(message);
    for (const char* name : names) {
        message->signals.push_back(std::make_shared<OwnSignal>());
        message->signals.back()->nameAsRead = name;
        database.identifierIndex.AddSignal(*message->signals.back());
    }
}

int CountSignals(CANDatabase& database, uint32_t id, std::string_view name) {
    int found = 0;
    database.FindSignalNames(id).ForEachRead(name, [&found](const CANSignal&) { ++found; });
    return found;
}

TEST(CanDatabase, SignalNamesAreThoseOfAllMessagesOfTheIdentifier) {
    CANDatabase database;
    AddMessageWithSignals(database, 100, {"Speed", "Speed", "Torque"});
    AddMessageWithSignals(database, 101, {"Speed"});
    EXPECT_EQ(CountSignals(database, 100, "Speed"), 2);
    EXPECT_EQ(CountSignals(database, 101, "Speed"), 1);
    EXPECT_EQ(CountSignals(database, 102, "Speed"), 0);
}

TEST(CanDatabase, SignalNamesOfALaterMessageAreFoundToo) {
    CANDatabase database;
    for (int messages = 1; messages <= 20; ++messages) {
        AddMessageWithSignals(database, 100, {"Speed", "Torque"});
        EXPECT_EQ(CountSignals(database, 100, "Speed"), messages);
        EXPECT_EQ(CountSignals(database, 100, "Torque"), messages);
    }
}

TEST(CanDatabase, EndOfReadingForgetsTheSignalNames) {
    CANDatabase database;
    AddMessageWithSignals(database, 100, {"Speed"});
    EXPECT_EQ(CountSignals(database, 100, "Speed"), 1);
    database.EndReading();
    EXPECT_EQ(CountSignals(database, 100, "Speed"), 0);
}

CanMessageData GivenRecord() {
    auto record = EmptyRecord<CanMessageData>();
    record.id = 100;
    record.dlc = 8;
    SetField(record.name, "Engine Data");
    SetField(record.transmitter, "Node");
    SetField(record.comment, "comment");
    return record;
}

TEST(CanDatabase, AppendedMessageIsTheLastOne) {
    CANDatabase database;
    database.AddParsedMessage(MakeMessage(7));
    const CanMessageData record = GivenRecord();
    EXPECT_TRUE(database.AppendMessage(&record));
    ASSERT_EQ(database.messages.size(), 2U);
    EXPECT_EQ(database.messages[0]->id, 7U);
    EXPECT_FALSE(database.messages[1]->invalid);
    EXPECT_EQ(database.messages[1]->id, 100U);
    EXPECT_EQ(database.messages[1]->name, "Engine Data");
}

TEST(CanDatabase, AppendedMessageIsNotFoundByItsIdentifier) {
    CANDatabase database;
    database.AddParsedMessage(MakeMessage(100));
    const CanMessageData record = GivenRecord();
    EXPECT_TRUE(database.AppendMessage(&record));
    EXPECT_EQ(Found(database, 100).size(), 1U);
}

TEST(CanDatabase, AppendedMessagesMayShareAnIdentifier) {
    CANDatabase database;
    const CanMessageData record = GivenRecord();
    EXPECT_TRUE(database.AppendMessage(&record));
    EXPECT_TRUE(database.AppendMessage(&record));
    ASSERT_EQ(database.messages.size(), 2U);
    EXPECT_NE(database.messages[0], database.messages[1]);
}

TEST(CanDatabase, NothingIsAppendedFromNoRecord) {
    CANDatabase database;
    EXPECT_FALSE(database.AppendMessage(nullptr));
    EXPECT_TRUE(database.messages.empty());
}

TEST(CanDatabase, NothingIsAppendedFromBrokenText) {
    const std::string kBroken =
        "\xFF"
        "abcd";
    for (int field = 0; field < 3; ++field) {
        SCOPED_TRACE(field);
        CANDatabase database;
        CanMessageData record = GivenRecord();
        if (field == 0) {
            SetField(record.name, kBroken);
        } else if (field == 1) {
            SetField(record.transmitter, kBroken);
        } else {
            SetField(record.comment, kBroken);
        }
        EXPECT_FALSE(database.AppendMessage(&record));
        EXPECT_TRUE(database.messages.empty());
    }
}

TEST(CanDatabase, MessagesThatAreRefusedGiveTheirMemoryBack) {
    TABRIN_SKIP_WITHOUT_LEVELS();
    CANDatabase database;
    CanMessageData record = GivenRecord();
    EXPECT_TRUE(database.AppendMessage(&record));
    const char* level = LevelOf(database.arena);
    EXPECT_FALSE(database.AppendMessage(nullptr));
    EXPECT_EQ(LevelOf(database.arena), level);
    SetField(record.comment, std::string(255, '\xFF'));
    for (int i = 0; i < 100; ++i) {
        EXPECT_FALSE(database.AppendMessage(&record));
    }
    EXPECT_EQ(LevelOf(database.arena), level);
}

struct Recorded {
    std::string statement;
    std::string text;
};

TEST(CanDatabase, ErrorTextIsTheStatementWithoutItsLastCharacter) {
    const std::string kTwo = "\xC3\xA4";
    const std::string kFour = "\xF0\x9F\x9A\x97";
    const Recorded kRows[] = {
        {"BO_ 1 Bad\n", "BO_ 1 Bad"},
        {"BO_ 1 Bad\n\n ", "BO_ 1 Bad\n\n"},
        {"BO_ 1 Bad", "BO_ 1 Ba"},
        {"", ""},
        {"B", ""},
        {"BO", "B"},
        {std::string(253, 'a'), std::string(252, 'a')},
        {std::string(254, 'a'), std::string(253, 'a')},
        {std::string(255, 'a'), std::string(254, 'a')},
        {std::string(256, 'a'), std::string(254, 'a')},
        {std::string(257, 'a'), std::string(254, 'a')},
        {std::string(5000, 'a'), std::string(254, 'a')},
        // A character is not split.
        {kTwo + "\n", kTwo},
        {"a" + kTwo, "a"},
        {kTwo, ""},
        {"a" + kFour, "a"},
        {std::string(252, 'a') + kTwo + "\n\n", std::string(252, 'a') + kTwo},
        {std::string(253, 'a') + kTwo + "\n\n", std::string(253, 'a')},
        {std::string(251, 'a') + kFour + "\n\n", std::string(251, 'a')},
        // Text that is not UTF-8 is left out, but not the error.
        {"\xFF"
         "abc\n",
         ""},
    };
    for (const Recorded& row : kRows) {
        SCOPED_TRACE(Shown(row.statement));
        CANDatabase database;
        database.RecordErrors(row.statement, 17, {6});
        ASSERT_EQ(database.errors.size(), 1U);
        EXPECT_EQ(database.errors[0].code, 6U);
        EXPECT_EQ(database.errors[0].line, 17U);
        std::string expected = row.text;
        expected.resize(256, '\0');
        EXPECT_EQ(std::string(database.errors[0].text, 256), expected);
    }
}

TEST(CanDatabase, EachCodeBecomesAnErrorInItsOrder) {
    CANDatabase database;
    database.RecordErrors("first\n", 4294967295U, {2, 0});
    database.RecordErrors("none\n", 2, {});
    database.RecordErrors("second\n", 3, {5});
    ASSERT_EQ(database.errors.size(), 3U);
    const uint32_t kCodes[] = {2, 0, 5};
    const uint32_t kLines[] = {4294967295U, 4294967295U, 3};
    const std::string_view kTexts[] = {"first", "first", "second"};
    for (size_t i = 0; i < 3; ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(database.errors[i].code, kCodes[i]);
        EXPECT_EQ(database.errors[i].line, kLines[i]);
        EXPECT_EQ(std::string_view(database.errors[i].text), kTexts[i]);
    }
}

TEST(CanDatabase, ErrorIsHandedOutInItsFieldsOnly) {
    CANDatabase database;
    database.RecordErrors("BO_ 1 Bad\n", 3, {1});
    database.RecordErrors("SG_ Bad\n", 4, {3});
    auto record = UntouchedRecord<CanErrorData>();
    EXPECT_TRUE(database.GetErrorData(1, &record));
    RecordImage<CanErrorData> image;
    image.Number<uint32_t>(0, 3).Number<uint32_t>(4, 4).Text(8, "SG_ Bad");
    EXPECT_EQ(image.FirstDifference(record), 264U);
}

TEST(CanDatabase, ErrorBeyondTheLastFails) {
    CANDatabase database;
    auto record = UntouchedRecord<CanErrorData>();
    EXPECT_FALSE(database.GetErrorData(0, &record));
    database.RecordErrors("BO_ 1 Bad\n", 3, {1});
    EXPECT_FALSE(database.GetErrorData(1, &record));
    EXPECT_FALSE(database.GetErrorData(4294967295U, &record));
    EXPECT_EQ(RecordImage<CanErrorData>().FirstDifference(record), 264U);
}

TEST(CanDatabase, ErrorWithoutARecordFails) {
    CANDatabase database;
    database.RecordErrors("BO_ 1 Bad\n", 3, {1});
    EXPECT_FALSE(database.GetErrorData(0, nullptr));
}

TEST(CanDatabase, ErrorWhoseTextFailsIsNotHandedOut) {
    CANDatabase database;
    CanErrorData& error = database.errors.emplace_back();
    SetField(error.text, std::string(255, '\xFF'));
    auto record = UntouchedRecord<CanErrorData>();
    EXPECT_FALSE(database.GetErrorData(0, &record));
    RecordImage<CanErrorData> image;
    image.Text(8, "");
    EXPECT_EQ(image.FirstDifference(record), 264U);
}

}  // namespace
}  // namespace tabrin
