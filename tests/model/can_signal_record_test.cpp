// Signals and the records of the interface.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

#include "model/can_signal.h"
#include "model/description_texts.h"
#include "model/own_arena.h"
#include "model/records.h"
#include "model/reset_state.h"
#include "shown.h"

namespace tabrin {
namespace {

// Not UTF-8, and long enough for every field, so that no copy of it can succeed.
const std::string kBroken = std::string(300, '\xFF');

void FillForRecord(CANSignal& signal) {
    signal.invalid = false;
    signal.identifierName = "Engine_Speed";
    signal.name = "Engine Speed";
    signal.SetUnit(
        "\xC2\xB0"
        "C");
    signal.AppendComment("say \\\"hi\\\"");
    signal.multiplexKind = 2;
    signal.multiplexValue = 4000000001U;
    signal.startBit = 4000000002U;
    signal.length = 4000000003U;
    signal.byteOrder = 4000000004U;
    signal.valueType = 4000000005U;
    signal.factor = 0.5;
    signal.offset = -40.0;
    signal.minimum = -1e300;
    signal.maximum = std::numeric_limits<double>::infinity();
    signal.receivers.Assign(signal.GetArena(), "A, B,C");
    signal.valueDescriptions.Add(0, "Off");
    signal.valueDescriptions.Add(1, "On");
    signal.startValue = 4000000006U;
    signal.inactiveValue = 4000000007U;
}

TEST(CanSignalRecord, IsFilledInItsFieldsOnly) {
    OwnSignal signal;
    FillForRecord(signal);
    auto record = UntouchedRecord<CanSignalData>();
    EXPECT_TRUE(signal.GetData(&record));
    RecordImage<CanSignalData> image;
    image.Text(0, "Engine_Speed")
        .Text(33, "Engine Speed")
        .Text(289, "_C")
        .Text(322, "A,B,C")
        .Text(578, "say \\\"hi\\\"")
        .Number<uint32_t>(836, 2)
        .Number<uint32_t>(840, 4000000001U)
        .Number<uint32_t>(844, 4000000002U)
        .Number<uint32_t>(848, 4000000003U)
        .Number<uint32_t>(852, 4000000004U)
        .Number<uint32_t>(856, 4000000005U)
        .Number<double>(864, 0.5)
        .Number<double>(872, -40.0)
        .Number<double>(880, -1e300)
        .Number<double>(888, std::numeric_limits<double>::infinity())
        .Number<uint32_t>(896, 2)
        .Number<uint32_t>(900, 4000000006U)
        .Number<uint32_t>(904, 4000000007U)
        .Text(908,
              "\xC2\xB0"
              "C");
    EXPECT_EQ(image.FirstDifference(record), 944U);
}

TEST(CanSignalRecord, InvalidSignalIsFilledInButReported) {
    OwnSignal signal;
    FillForRecord(signal);
    signal.invalid = true;
    auto record = UntouchedRecord<CanSignalData>();
    EXPECT_FALSE(signal.GetData(&record));
    EXPECT_EQ(std::string(record.name), "Engine Speed");
    EXPECT_EQ(record.inactiveValue, 4000000007U);
}

TEST(CanSignalRecord, NoRecordFails) {
    OwnSignal signal;
    FillForRecord(signal);
    EXPECT_FALSE(signal.GetData(nullptr));
}

TEST(CanSignalRecord, SignalWithoutReceiversHasAnEmptyField) {
    OwnSignal signal;
    signal.invalid = false;
    auto record = UntouchedRecord<CanSignalData>();
    EXPECT_TRUE(signal.GetData(&record));
    EXPECT_EQ(std::string(record.receivers), "");
}

// The comment has a type of its own; no member stands for it.
using Text = std::string_view CANSignal::*;
constexpr Text kComment = nullptr;

void SetText(CANSignal& signal, Text text, std::string_view value) {
    if (text != kComment) {
        signal.*text = value;
        return;
    }
    signal.comment.Clear();
    signal.AppendComment(value);
}

// The texts come first, in an order of their own; what follows a failure stays.
TEST(CanSignalRecord, FillingStopsAtTheFirstTextThatFails) {
    struct Row {
        Text text;
        size_t offset;
        const char* filled;  // by FillForRecord
    };
    const Row kRows[] = {{&CANSignal::identifierName, 0, "Engine_Speed"},
                         {&CANSignal::name, 33, "Engine Speed"},
                         {&CANSignal::unit, 289, "_C"},
                         {&CANSignal::unitAsWritten, 908,
                          "\xC2\xB0"
                          "C"},
                         {kComment, 578, "say \\\"hi\\\""}};
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.offset);
        OwnSignal signal;
        FillForRecord(signal);
        SetText(signal, row.text, kBroken);
        auto record = UntouchedRecord<CanSignalData>();
        EXPECT_FALSE(signal.GetData(&record));

        RecordImage<CanSignalData> image;
        for (const Row& done : kRows) {
            if (done.offset == row.offset) {
                break;
            }
            image.Text(done.offset, done.filled);
        }
        image.Text(row.offset, "");
        if (row.offset == 578) {
            image.Text(322, "A,B,C");  // receivers are identifiers and cannot fail
        }
        EXPECT_EQ(image.FirstDifference(record), 944U);
    }
}

TEST(CanSignalRecord, EachTextIsCutToItsField) {
    const std::string kLong(300, 'a');
    OwnSignal signal;
    FillForRecord(signal);
    signal.identifierName = signal.name = signal.unit = signal.unitAsWritten = signal.GetArena().Keep(kLong);
    SetText(signal, kComment, kLong);
    std::string receivers;
    for (int i = 0; i < 100; ++i) {
        receivers += "abc,";
    }
    signal.receivers.Assign(signal.GetArena(), receivers);
    auto record = UntouchedRecord<CanSignalData>();
    EXPECT_TRUE(signal.GetData(&record));
    EXPECT_EQ(std::string(record.identifierName).size(), 32U);
    EXPECT_EQ(std::string(record.name).size(), 255U);
    EXPECT_EQ(std::string(record.unit).size(), 32U);
    EXPECT_EQ(std::string(record.unitAsWritten).size(), 32U);
    EXPECT_EQ(std::string(record.receivers), receivers.substr(0, 255));
    EXPECT_EQ(std::string(record.comment).size(), 255U);
}

TEST(CanSignalRecord, UnitIsCutInFrontOfACharacter) {
    OwnSignal signal;
    FillForRecord(signal);
    signal.unitAsWritten = signal.GetArena().Keep(std::string(31, 'a') + "\xC2\xB0");
    auto record = UntouchedRecord<CanSignalData>();
    EXPECT_TRUE(signal.GetData(&record));
    EXPECT_EQ(std::string(record.unitAsWritten), std::string(31, 'a'));
}

CanSignalData GivenRecord() {
    auto record = UntouchedRecord<CanSignalData>();
    SetField(record.name, "Engine\tSpeed");
    SetField(record.unit,
             "\xC2\xB0"
             "C");
    SetField(record.receivers, "A, Node 1,,");
    SetField(record.comment, "say \"hi\"");
    record.multiplexKind = 2;
    record.multiplexValue = 3;
    record.startBit = 4;
    record.length = 5;
    record.byteOrder = 0;
    record.valueType = 1;
    record.factor = 6.5;
    record.offset = -7.5;
    record.minimum = 9.0;  // greater than the maximum, and not swapped
    record.maximum = 8.0;
    record.startValue = 10;
    record.inactiveValue = 11;
    return record;
}

TEST(CanSignalRecord, AppendingTakesAllButTheFieldsThatAreResults) {
    const CanSignalData record = GivenRecord();
    OwnSignal signal;
    FillEveryField(signal);

    EXPECT_TRUE(signal.SetFromRecord(&record));

    EXPECT_FALSE(signal.invalid);
    EXPECT_EQ(signal.name, "Engine Speed");
    EXPECT_EQ(signal.identifierName, "Engine_Speed");
    EXPECT_EQ(signal.nameAsRead, "Engine Speed");
    EXPECT_EQ(signal.unit, "_C");
    EXPECT_EQ(signal.unitAsWritten,
              "\xC2\xB0"
              "C");
    EXPECT_EQ(signal.receivers.Joined(), "A,Node_1");
    EXPECT_EQ(signal.comment, "say \\\"hi\\\"");
    EXPECT_EQ(signal.multiplexKind, 2U);
    EXPECT_EQ(signal.multiplexValue, 3U);
    EXPECT_EQ(signal.startBit, 4U);
    EXPECT_EQ(signal.length, 5U);
    EXPECT_EQ(signal.byteOrder, 0U);
    EXPECT_EQ(signal.valueType, 1U);
    EXPECT_EQ(signal.factor, 6.5);
    EXPECT_EQ(signal.offset, -7.5);
    EXPECT_EQ(signal.minimum, 9.0);
    EXPECT_EQ(signal.maximum, 8.0);
    EXPECT_EQ(signal.startValue, 10U);
    EXPECT_EQ(signal.inactiveValue, 11U);
    EXPECT_EQ(signal.valueDescriptions.Size(), 0U);
    EXPECT_FALSE(signal.suffixApplied);
}

TEST(CanSignalRecord, EmptyRecordIsTaken) {
    const auto record = EmptyRecord<CanSignalData>();
    OwnSignal signal;
    EXPECT_TRUE(signal.SetFromRecord(&record));
    EXPECT_FALSE(signal.invalid);
    EXPECT_EQ(signal.byteOrder, 0U);
    EXPECT_EQ(signal.name, "");
    EXPECT_EQ(signal.identifierName, "");
    EXPECT_EQ(signal.unit, "");
    EXPECT_EQ(signal.comment, "");
    EXPECT_EQ(signal.receivers.Joined(), "");
}

TEST(CanSignalRecord, AppendingFromNoRecordFails) {
    OwnSignal signal;
    FillEveryField(signal);
    EXPECT_FALSE(signal.SetFromRecord(nullptr));
    ExpectReset(signal);
}

TEST(CanSignalRecord, BrokenTextFails) {
    for (const std::string broken : {"\xFF"
                                     "abcd",
                                     "ab\x80"
                                     "cdef",
                                     "\xC0\x80"
                                     "abcd"}) {
        for (int field = 0; field < 4; ++field) {
            SCOPED_TRACE(Shown(broken) + " in field " + std::to_string(field));
            CanSignalData record = GivenRecord();
            SetField(record.name, field == 0 ? broken : "Name");
            SetField(record.unit, field == 1 ? broken : "unit");
            SetField(record.receivers, field == 2 ? broken : "Node");
            SetField(record.comment, field == 3 ? broken : "comment");
            OwnSignal signal;
            FillEveryField(signal);
            EXPECT_FALSE(signal.SetFromRecord(&record));
            ExpectReset(signal);
        }
    }
}

TEST(CanSignalRecord, CharacterCutOffByTheEndIsDropped) {
    auto record = EmptyRecord<CanSignalData>();
    SetField(record.name, "n\xC3");
    SetField(record.unit, "u\xE2\x82");
    SetField(record.receivers, "r\xE2");
    SetField(record.comment, "c\xF0\x9F\x9A");
    OwnSignal signal;
    EXPECT_TRUE(signal.SetFromRecord(&record));
    EXPECT_EQ(signal.name, "n");
    EXPECT_EQ(signal.unitAsWritten, "u");
    EXPECT_EQ(signal.receivers.Joined(), "r");
    EXPECT_EQ(signal.comment, "c");
}

TEST(CanSignalRecord, FieldWithoutEndLosesItsLastByte) {
    auto record = EmptyRecord<CanSignalData>();
    SetField(record.name, std::string(255, 'n') + "x");
    SetField(record.unit, std::string(32, 'u') + "x");
    SetField(record.receivers, std::string(250, ' ') + "A,B,Cx");
    SetField(record.comment, std::string(255, 'c') + "x");
    OwnSignal signal;
    EXPECT_TRUE(signal.SetFromRecord(&record));
    EXPECT_EQ(signal.name, std::string(255, 'n'));
    EXPECT_EQ(signal.identifierName, std::string(32, 'n'));
    EXPECT_EQ(signal.unit, std::string(32, 'u'));
    EXPECT_EQ(signal.receivers.Joined(), "A,B,C");
    EXPECT_EQ(signal.comment, std::string(255, 'c'));
}

TEST(CanSignalRecord, AppendedNameIsNotTrimmed) {
    auto record = EmptyRecord<CanSignalData>();
    SetField(record.name, " A ");
    OwnSignal signal;
    EXPECT_TRUE(signal.SetFromRecord(&record));
    EXPECT_EQ(signal.name, " A ");
    EXPECT_EQ(signal.identifierName, "_A_");
    EXPECT_EQ(signal.nameAsRead, " A ");
}

TEST(CanSignalRecord, AppendedUnitIsNotTrimmed) {
    auto record = EmptyRecord<CanSignalData>();
    SetField(record.unit, "\tkm ");
    OwnSignal signal;
    EXPECT_TRUE(signal.SetFromRecord(&record));
    EXPECT_EQ(signal.unitAsWritten, "\tkm ");
    EXPECT_EQ(signal.unit, "\tkm ");
}

struct TypeOfLength {
    uint32_t given;
    uint32_t length;
    uint32_t kept;
};

TEST(CanSignalRecord, FloatOfTheWrongSizeBecomesASignedInteger) {
    const TypeOfLength kRows[] = {
        {0, 32, 0}, {0, 64, 0}, {1, 32, 1}, {1, 16, 1}, {2, 32, 2},
        {2, 16, 1}, {2, 31, 1}, {2, 33, 1}, {2, 64, 1}, {2, 0, 1},
        {3, 64, 3}, {3, 32, 1}, {3, 63, 1}, {3, 65, 1}, {3, 0, 1},
        {4, 16, 4}, {7, 8, 7},  {7, 32, 7}, {7, 64, 7}, {4294967295U, 8, 4294967295U},
    };
    for (const TypeOfLength& row : kRows) {
        SCOPED_TRACE(std::to_string(row.given) + " with length " + std::to_string(row.length));
        auto record = EmptyRecord<CanSignalData>();
        record.valueType = row.given;
        record.length = row.length;
        OwnSignal signal;
        EXPECT_TRUE(signal.SetFromRecord(&record));
        EXPECT_EQ(signal.valueType, row.kept);
        EXPECT_EQ(signal.length, row.length);
    }
}

TEST(CanSignalRecord, CodesOutsideTheListsAreKept) {
    auto record = EmptyRecord<CanSignalData>();
    record.multiplexKind = 7;
    record.byteOrder = 5;
    OwnSignal signal;
    EXPECT_TRUE(signal.SetFromRecord(&record));
    EXPECT_EQ(signal.multiplexKind, 7U);
    EXPECT_EQ(signal.byteOrder, 5U);
}

CanSignalEnumData Description(int32_t value, const std::string& text) {
    auto record = UntouchedRecord<CanSignalEnumData>();
    record.value = value;
    SetField(record.text, text);
    return record;
}

TEST(CanSignalRecord, ValueDescriptionsAreJoined) {
    OwnSignal signal;
    const CanSignalEnumData record = Description(1, "On");
    EXPECT_TRUE(signal.AppendValueDescription(&record));
    EXPECT_TRUE(signal.AppendValueDescription(&record));
    EXPECT_EQ(TextsOf(signal.valueDescriptions), DescriptionTexts({{1, "On - On"}}));
}

TEST(CanSignalRecord, ValueDescriptionOfNoRecordFails) {
    OwnSignal signal;
    EXPECT_FALSE(signal.AppendValueDescription(nullptr));
    EXPECT_EQ(signal.valueDescriptions.Size(), 0U);
}

TEST(CanSignalRecord, BrokenValueDescriptionFails) {
    OwnSignal signal;
    const CanSignalEnumData good = Description(1, "On");
    const CanSignalEnumData broken = Description(1,
                                                 "\xFF"
                                                 "abcd");
    const CanSignalEnumData brokenOther = Description(2,
                                                      "\xFF"
                                                      "abcd");
    EXPECT_TRUE(signal.AppendValueDescription(&good));
    EXPECT_FALSE(signal.AppendValueDescription(&broken));
    EXPECT_FALSE(signal.AppendValueDescription(&brokenOther));
    EXPECT_EQ(TextsOf(signal.valueDescriptions), DescriptionTexts({{1, "On"}}));
}

TEST(CanSignalRecord, ValueDescriptionWithoutEndLosesItsLastByte) {
    OwnSignal signal;
    const CanSignalEnumData record = Description(-5, std::string(255, 't') + "x");
    EXPECT_TRUE(signal.AppendValueDescription(&record));
    EXPECT_EQ(TextsOf(signal.valueDescriptions), DescriptionTexts({{-5, std::string(255, 't')}}));
}

TEST(CanSignalRecord, ValueDescriptionsAreHandedOutInOrder) {
    OwnSignal signal;
    for (const int32_t value : {3, -1, 2147483647, -2147483647 - 1}) {
        const CanSignalEnumData record = Description(value, std::to_string(value));
        EXPECT_TRUE(signal.AppendValueDescription(&record));
    }
    const int32_t kExpected[] = {-2147483647 - 1, -1, 3, 2147483647};
    for (uint32_t index = 0; index < 4; ++index) {
        SCOPED_TRACE(index);
        auto record = UntouchedRecord<CanSignalEnumData>();
        EXPECT_TRUE(signal.GetValueDescription(index, &record));
        RecordImage<CanSignalEnumData> image;
        image.Number<int32_t>(0, kExpected[index]).Text(4, std::to_string(kExpected[index]));
        EXPECT_EQ(image.FirstDifference(record), 260U);
    }
}

TEST(CanSignalRecord, ValueDescriptionBeyondTheLastFails) {
    OwnSignal signal;
    auto record = UntouchedRecord<CanSignalEnumData>();
    EXPECT_FALSE(signal.GetValueDescription(0, &record));
    signal.valueDescriptions.Add(0, "Off");
    EXPECT_FALSE(signal.GetValueDescription(1, &record));
    EXPECT_FALSE(signal.GetValueDescription(4294967295U, &record));
    EXPECT_EQ(RecordImage<CanSignalEnumData>().FirstDifference(record), 260U);
    EXPECT_FALSE(signal.GetValueDescription(0, nullptr));
}

TEST(CanSignalRecord, ValueDescriptionIsCutToItsField) {
    OwnSignal signal;
    signal.valueDescriptions.Add(0, std::string(254, 'a') + "\xC3\xA4");
    auto record = UntouchedRecord<CanSignalEnumData>();
    EXPECT_TRUE(signal.GetValueDescription(0, &record));
    EXPECT_EQ(std::string(record.text), std::string(254, 'a'));
}

TEST(CanSignalRecord, ValueOfADescriptionThatFailsIsNotWritten) {
    OwnSignal signal;
    signal.valueDescriptions.Add(7, kBroken);
    auto record = UntouchedRecord<CanSignalEnumData>();
    EXPECT_FALSE(signal.GetValueDescription(0, &record));
    RecordImage<CanSignalEnumData> image;
    image.Text(4, "");
    EXPECT_EQ(image.FirstDifference(record), 260U);
}

}  // namespace
}  // namespace tabrin
