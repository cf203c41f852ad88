// Messages and the records of the interface.
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "model/can_message.h"
#include "model/can_signal.h"
#include "model/own_arena.h"
#include "model/records.h"
#include "model/reset_state.h"
#include "shown.h"

namespace tabrin {
namespace {

// Not UTF-8, and long enough for every field, so that no copy of it can succeed.
const std::string kBroken = std::string(300, '\xFF');

void FillForRecord(CANMessage& message) {
    message.invalid = false;
    message.id = 0x87654321;
    message.name = "Engine Data";
    message.identifierName = "Engine_Data";
    message.transmitter = "ECU";
    message.sendType = "Cyclic";
    message.cycleTime = 4000000000U;
    message.AppendComment("say \\\"hi\\\"");
    message.dlc = 64;
    message.signals.resize(3);
}

TEST(CanMessageRecord, IsFilledInItsFieldsOnly) {
    OwnMessage message;
    FillForRecord(message);
    auto record = UntouchedRecord<CanMessageData>();
    EXPECT_TRUE(message.GetData(&record));
    RecordImage<CanMessageData> image;
    image.Number<uint32_t>(0, 0x87654321)
        .Text(4, "Engine_Data")
        .Number<uint32_t>(40, 64)
        .Text(44, "Engine Data")
        .Text(300, "ECU")
        .Number<uint32_t>(336, 3)
        .Text(344, "say \\\"hi\\\"")
        .Text(600, "Cyclic")
        .Number<uint32_t>(636, 4000000000U);
    EXPECT_EQ(image.FirstDifference(record), 640U);
}

TEST(CanMessageRecord, InvalidMessageIsFilledInButReported) {
    OwnMessage message;
    message.dlc = 8;
    message.cycleTime = 7;
    auto record = UntouchedRecord<CanMessageData>();
    EXPECT_FALSE(message.GetData(&record));
    RecordImage<CanMessageData> image;
    image.Number<uint32_t>(0, 0)
        .Text(4, "")
        .Number<uint32_t>(40, 8)
        .Text(44, "")
        .Text(300, "")
        .Number<uint32_t>(336, 0)
        .Text(344, "")
        .Text(600, "")
        .Number<uint32_t>(636, 7);
    EXPECT_EQ(image.FirstDifference(record), 640U);
}

TEST(CanMessageRecord, NoRecordFails) {
    OwnMessage message;
    FillForRecord(message);
    EXPECT_FALSE(message.GetData(nullptr));
}

// The comment has a type of its own; no member stands for it.
using Text = std::string_view CANMessage::*;
constexpr Text kComment = nullptr;

void SetText(CANMessage& message, Text text, std::string_view value) {
    if (text != kComment) {
        message.*text = value;
        return;
    }
    message.comment.Clear();
    message.AppendComment(value);
}

// The texts come in a fixed order, the numbers between the comment and the send type; what follows a failure stays.
TEST(CanMessageRecord, FillingStopsAtTheFirstTextThatFails) {
    struct Row {
        Text text;
        size_t offset;
        const char* filled;  // by FillForRecord
    };
    const Row kRows[] = {{&CANMessage::identifierName, 4, "Engine_Data"},
                         {&CANMessage::name, 44, "Engine Data"},
                         {&CANMessage::transmitter, 300, "ECU"},
                         {kComment, 344, "say \\\"hi\\\""},
                         {&CANMessage::sendType, 600, "Cyclic"}};
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.offset);
        OwnMessage message;
        FillForRecord(message);
        SetText(message, row.text, kBroken);
        auto record = UntouchedRecord<CanMessageData>();
        EXPECT_FALSE(message.GetData(&record));

        RecordImage<CanMessageData> image;
        for (const Row& done : kRows) {
            if (done.offset == row.offset) {
                break;
            }
            image.Text(done.offset, done.filled);
        }
        image.Text(row.offset, "");
        if (row.offset == 600) {
            image.Number<uint32_t>(0, 0x87654321).Number<uint32_t>(40, 64).Number<uint32_t>(336, 3);
        }
        EXPECT_EQ(image.FirstDifference(record), 640U);
    }
}

struct Cut {
    std::string text;
    size_t length;
};

TEST(CanMessageRecord, LongNameIsCutInFrontOfACharacter) {
    const std::string kTwo = "\xC3\xA4";
    const std::string kThree = "\xE2\x82\xAC";
    const std::string kFour = "\xF0\x9F\x9A\x97";
    const Cut kRows[] = {
        {std::string(254, 'a'), 254},
        {std::string(255, 'a'), 255},
        {std::string(256, 'a'), 255},
        {std::string(300, 'a'), 255},
        {std::string(253, 'a') + kTwo + std::string(45, 'a'), 255},
        {std::string(254, 'a') + kTwo + std::string(44, 'a'), 254},
        {std::string(252, 'a') + kThree + "a", 255},
        {std::string(253, 'a') + kThree + "a", 253},
        {std::string(254, 'a') + kThree + "a", 254},
        {std::string(251, 'a') + kFour + "a", 255},
        {std::string(252, 'a') + kFour + "a", 252},
        {std::string(253, 'a') + kFour + "a", 253},
        {std::string(254, 'a') + kFour + "a", 254},
        {std::string(254, 'a') + "\xC3", 254},  // a character that is not whole anyway
        {std::string(250, 'a') + "\xFF", 251},  // a text with room to spare is not looked at
    };
    for (const Cut& row : kRows) {
        SCOPED_TRACE(Shown(row.text));
        OwnMessage message;
        FillForRecord(message);
        message.name = row.text;
        auto record = UntouchedRecord<CanMessageData>();
        EXPECT_TRUE(message.GetData(&record));
        EXPECT_EQ(std::string(record.name), row.text.substr(0, row.length));
    }
}

TEST(CanMessageRecord, EachTextIsCutToItsField) {
    const std::string kLong(300, 'a');
    OwnMessage message;
    FillForRecord(message);
    message.identifierName = message.name = message.transmitter = message.sendType = kLong;
    SetText(message, kComment, kLong);
    auto record = UntouchedRecord<CanMessageData>();
    EXPECT_TRUE(message.GetData(&record));
    EXPECT_EQ(std::string(record.identifierName).size(), 32U);
    EXPECT_EQ(std::string(record.name).size(), 255U);
    EXPECT_EQ(std::string(record.transmitter).size(), 32U);
    EXPECT_EQ(std::string(record.comment).size(), 255U);
    EXPECT_EQ(std::string(record.sendType).size(), 32U);
}

TEST(CanMessageRecord, AppendingTakesFiveFields) {
    auto record = UntouchedRecord<CanMessageData>();
    record.id = 0x80000001;
    record.dlc = 1000;
    SetField(record.name, "Engine\tData");
    SetField(record.transmitter, "Node 1");
    SetField(record.comment, "say \"hi\"");
    OwnMessage message;
    FillEveryField(message);

    EXPECT_TRUE(message.SetFromRecord(&record));

    EXPECT_FALSE(message.invalid);
    EXPECT_EQ(message.id, 0x80000001U);
    EXPECT_EQ(message.dlc, 1000U);
    EXPECT_EQ(message.name, "Engine Data");
    EXPECT_EQ(message.identifierName, "Engine_Data");
    EXPECT_EQ(message.transmitter, "Node_1");
    EXPECT_EQ(message.comment, "say \\\"hi\\\"");
    EXPECT_EQ(message.sendType, "");
    EXPECT_EQ(message.cycleTime, 0U);
    EXPECT_TRUE(message.signals.empty());
}

TEST(CanMessageRecord, EmptyTextsAreTaken) {
    const auto record = EmptyRecord<CanMessageData>();
    OwnMessage message;
    EXPECT_TRUE(message.SetFromRecord(&record));
    EXPECT_FALSE(message.invalid);
    EXPECT_EQ(message.name, "");
    EXPECT_EQ(message.identifierName, "");
    EXPECT_EQ(message.transmitter, "");
    EXPECT_EQ(message.comment, "");
}

TEST(CanMessageRecord, AppendingFromNoRecordFails) {
    OwnMessage message;
    FillEveryField(message);
    EXPECT_FALSE(message.SetFromRecord(nullptr));
    ExpectReset(message);
}

TEST(CanMessageRecord, AppendedNamesAreNotTrimmed) {
    struct Row {
        std::string given;
        std::string identifier;
    };
    const Row kRows[] = {{" A", "_A"}, {"A ", "A_"}, {"\tA", "_A"}, {" ", "_"}, {"1A", "_A"}, {"\xC3\xA4", "_"}};
    for (const Row& row : kRows) {
        SCOPED_TRACE(Shown(row.given));
        auto record = EmptyRecord<CanMessageData>();
        SetField(record.name, row.given);
        SetField(record.transmitter, row.given);
        OwnMessage message;
        EXPECT_TRUE(message.SetFromRecord(&record));
        EXPECT_EQ(message.identifierName, row.identifier);
        EXPECT_EQ(message.transmitter, row.identifier);
    }
}

TEST(CanMessageRecord, FieldWithoutEndLosesItsLastByte) {
    auto record = EmptyRecord<CanMessageData>();
    SetField(record.name, std::string(255, 'n') + "x");
    SetField(record.transmitter, std::string(32, 't') + "x");
    SetField(record.comment, std::string(255, 'c') + "x");
    OwnMessage message;
    EXPECT_TRUE(message.SetFromRecord(&record));
    EXPECT_EQ(message.name, std::string(255, 'n'));
    EXPECT_EQ(message.identifierName, std::string(32, 'n'));
    EXPECT_EQ(message.transmitter, std::string(32, 't'));
    EXPECT_EQ(message.comment, std::string(255, 'c'));
}

TEST(CanMessageRecord, CharacterCutOffByTheEndIsDropped) {
    auto record = EmptyRecord<CanMessageData>();
    SetField(record.name, "n\xC3");
    SetField(record.transmitter, "t\xE2\x82");
    SetField(record.comment, "c\xF0\x9F\x9A");
    OwnMessage message;
    EXPECT_TRUE(message.SetFromRecord(&record));
    EXPECT_EQ(message.name, "n");
    EXPECT_EQ(message.transmitter, "t");
    EXPECT_EQ(message.comment, "c");
}

TEST(CanMessageRecord, BrokenTextFails) {
    for (const std::string broken : {"\xFF"
                                     "abcd",
                                     "ab\x80"
                                     "cdef",
                                     "\xC0\x80"
                                     "abcd"}) {
        for (int field = 0; field < 3; ++field) {
            SCOPED_TRACE(Shown(broken) + " in field " + std::to_string(field));
            auto record = EmptyRecord<CanMessageData>();
            record.id = 100;
            record.dlc = 8;
            SetField(record.name, field == 0 ? broken : "Name");
            SetField(record.transmitter, field == 1 ? broken : "Node");
            SetField(record.comment, field == 2 ? broken : "comment");
            OwnMessage message;
            FillEveryField(message);
            EXPECT_FALSE(message.SetFromRecord(&record));
            ExpectReset(message);
        }
    }
}

}  // namespace
}  // namespace tabrin
