// What becomes of the fields of an appended record.
#include <cstdint>
#include <limits>
#include <vector>

#include "abi/interface_test.h"

namespace tabrin_test {
namespace {

struct NameRow {
    std::string given;
    std::string name;
    std::string identifierName;
};

// Names of messages and signals follow the same rules.
const NameRow kNames[] = {
    {"Engine", "Engine", "Engine"},
    {"E", "E", "E"},
    {"_", "_", "_"},
    {"Az09_", "Az09_", "Az09_"},
    {"", "", ""},
    {" A", " A", "_A"},  // not trimmed
    {"A ", "A ", "A_"},
    {" ", " ", "_"},
    {"Engine Data", "Engine Data", "Engine_Data"},
    {"1Msg", "1Msg", "_Msg"},  // a leading digit is replaced, not preceded
    {"12", "12", "_2"},
    {"1 Engine-Temp", "1 Engine-Temp", "__Engine_Temp"},
    {"a:b\"c", "a:b\"c", "a_b_c"},
    {"A\tB\nC\vD\fE\rF", "A B C D E F", "A_B_C_D_E_F"},
    {"A\x01"
     "B\x7F",
     "A\x01"
     "B\x7F",
     "A_B_"},  // other control characters stay in the long name
    {"\xC3\xA4", "\xC3\xA4", "_"},
    {"\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80x", "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80x", "___x"},
    {std::string(32, 'a'), std::string(32, 'a'), std::string(32, 'a')},
    {std::string(33, 'a'), std::string(33, 'a'), std::string(32, 'a')},
    {std::string(40, 'a'), std::string(40, 'a'), std::string(32, 'a')},
    // 32 characters count after each of several bytes has become one.
    {std::string(31, 'a') + "\xC3\xA4"
                            "b",
     std::string(31, 'a') + "\xC3\xA4"
                            "b",
     std::string(31, 'a') + "_"},
    {"Mode M", "Mode M", "Mode_M"},  // what marks a multiplexor in a file is part of a name here
};

class AppendedMessage : public InterfaceTest {};

TEST_F(AppendedMessage, NameIsKept) {
    for (const NameRow& row : kNames) {
        SCOPED_TRACE(Shown(row.given));
        const uint32_t index = NumMessages();
        ASSERT_TRUE(AppendMessage(1, row.given));
        EXPECT_EQ(Field(MessageAt(index).name), row.name);
    }
}

TEST_F(AppendedMessage, NameIsMadeAnIdentifier) {
    for (const NameRow& row : kNames) {
        SCOPED_TRACE(Shown(row.given));
        const uint32_t index = NumMessages();
        ASSERT_TRUE(AppendMessage(1, row.given));
        EXPECT_EQ(Field(MessageAt(index).identifierName), row.identifierName);
    }
}

TEST_F(AppendedMessage, TransmitterIsMadeAnIdentifier) {
    const struct {
        std::string given;
        std::string expected;
    } rows[] = {
        {"", ""},
        {"ECU", "ECU"},
        {"E", "E"},
        {"Node 1", "Node_1"},
        {" A", "_A"},
        {"A ", "A_"},
        {"A\tB", "A_B"},
        {"1st", "_st"},
        {"\xC3\xA4", "_"},
        {"A,B", "A_B"},
        {std::string(32, 't'), std::string(32, 't')},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(Shown(row.given));
        CanMessageData record = MessageRecord(1, "M");
        SetField(record.transmitter, row.given);
        const uint32_t index = NumMessages();
        ASSERT_TRUE(Library().AppendCanMessage(&record));
        EXPECT_EQ(Field(MessageAt(index).transmitter), row.expected);
    }
}

struct CommentRow {
    const char* given;
    const char* expected;
};

constexpr CommentRow kComments[] = {
    {"", ""},
    {"Status", "Status"},
    {" a  b ", " a  b "},
    {"two\r\nlines\t", "two\r\nlines\t"},
    {"say \"hi\"", "say \\\"hi\\\""},
    {"say \\\"hi\\\"", "say \\\"hi\\\""},  // quotes that have their backslash are left alone
    {"\"", "\\\""},
    {"\"\"", "\\\"\\\""},
    {"a\\b", "a\\b"},
    {"a\\\\\"b", "a\\\\\"b"},  // any backslash in front of a quote counts
};

TEST_F(AppendedMessage, CommentGetsItsQuotesEscaped) {
    for (const CommentRow& row : kComments) {
        SCOPED_TRACE(Shown(row.given));
        CanMessageData record = MessageRecord(1, "M");
        SetField(record.comment, row.given);
        const uint32_t index = NumMessages();
        ASSERT_TRUE(Library().AppendCanMessage(&record));
        EXPECT_EQ(Field(MessageAt(index).comment), row.expected);
    }
}

TEST_F(AppendedMessage, AnEmptyCommentReadsBackEmpty) {
    ASSERT_TRUE(AppendMessage(1, "M"));
    CanMessageData record{};
    SetField(record.comment, "left over");
    EXPECT_TRUE(Library().GetCanMessageData(0, &record));
    EXPECT_EQ(Field(record.comment), "");
}

constexpr uint32_t kAnyNumbers[] = {0, 1, 8, 64, 1000, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU};

TEST_F(AppendedMessage, AnyIdentifierIsKept) {
    for (const uint32_t id : kAnyNumbers) {
        SCOPED_TRACE(id);
        const uint32_t index = NumMessages();
        ASSERT_TRUE(AppendMessage(id, "M"));
        EXPECT_EQ(MessageAt(index).id, id);
    }
}

TEST_F(AppendedMessage, AnyDataLengthIsKept) {
    for (const uint32_t dlc : kAnyNumbers) {
        SCOPED_TRACE(dlc);
        CanMessageData record = MessageRecord(1, "M");
        record.dlc = dlc;
        const uint32_t index = NumMessages();
        ASSERT_TRUE(Library().AppendCanMessage(&record));
        EXPECT_EQ(MessageAt(index).dlc, dlc);
    }
}

TEST_F(AppendedMessage, KeepsItsPlaceAlsoWithAnIdentifierUsedBefore) {
    ASSERT_TRUE(AppendMessage(7, "First"));
    ASSERT_TRUE(AppendMessage(5, "Second"));
    ASSERT_TRUE(AppendMessage(7, "Third"));
    ASSERT_TRUE(AppendMessage(9, "First"));
    EXPECT_EQ(DumpDatabase(),
              "info 0 0\n"
              "message 7|First|First|8||||0|0\n"
              "message 5|Second|Second|8||||0|0\n"
              "message 7|Third|Third|8||||0|0\n"
              "message 9|First|First|8||||0|0\n");
}

TEST_F(AppendedMessage, FollowsThoseThatWereRead) {
    ASSERT_EQ(ReadText("BO_ 100 Read: 8 N\nBO_ x Bad: 8 N\n"), kDone);
    ASSERT_TRUE(AppendMessage(100, "Appended"));
    ASSERT_TRUE(AppendSignal(0, "New"));
    EXPECT_EQ(NumMessages(), 2U);
    EXPECT_EQ(Field(MessageAt(1).name), "Appended");
    EXPECT_EQ(Field(SignalAt(0, 0).name), "New");
    EXPECT_EQ(NumErrors(), 1U);
}

// A later read starts from nothing, so statements in it find no message that was appended before.
TEST_F(AppendedMessage, IsGoneAfterTheNextRead) {
    ASSERT_TRUE(AppendMessage(100, "Appended"));
    ASSERT_EQ(ReadText("CM_ BO_ 100 \"lost\";\nBO_ 100 Read: 8 N\n"), kDone);
    EXPECT_EQ(DumpDatabase(), "info 0 0\nmessage 100|Read|Read|8|N|||0|0\n");
}

class AppendedSignal : public InterfaceTest {
protected:
    void SetUp() override {
        InterfaceTest::SetUp();
        ASSERT_TRUE(AppendMessage(1, "M"));
    }

    // Appends the record to the message and returns what the library has of it.
    static CanSignalData Append(const CanSignalData& record) {
        const uint32_t index = NumSignals(0);
        EXPECT_TRUE(Library().AppendCanSignalToCanMessage(0, &record));
        return SignalAt(0, index);
    }
};

TEST_F(AppendedSignal, NameIsKept) {
    for (const NameRow& row : kNames) {
        SCOPED_TRACE(Shown(row.given));
        EXPECT_EQ(Field(Append(SignalRecord(row.given)).name), row.name);
    }
}

TEST_F(AppendedSignal, NameIsMadeAnIdentifier) {
    for (const NameRow& row : kNames) {
        SCOPED_TRACE(Shown(row.given));
        EXPECT_EQ(Field(Append(SignalRecord(row.given)).identifierName), row.identifierName);
    }
}

TEST_F(AppendedSignal, NameMakesNoMultiplexor) {
    for (const char* name : {"Mode M", "Mode m1"}) {
        SCOPED_TRACE(name);
        EXPECT_EQ(Append(SignalRecord(name)).multiplexKind, 0U);
    }
}

TEST_F(AppendedSignal, CommentGetsItsQuotesEscaped) {
    for (const CommentRow& row : kComments) {
        SCOPED_TRACE(Shown(row.given));
        CanSignalData record = SignalRecord("S");
        SetField(record.comment, row.given);
        EXPECT_EQ(Field(Append(record).comment), row.expected);
    }
}

struct UnitRow {
    const char* given;
    const char* folded;
};

// Neither form is trimmed.
constexpr UnitRow kUnits[] = {
    {"", ""},
    {"V", "V"},
    {"km/h", "km/h"},
    {" V ", " V "},
    {"a\tb", "a\tb"},
    {"\"", "\""},
    {"\xC2\xB5s", "_s"},
    {"\xE2\x84\xA6", "_"},
    {"\xF0\x9F\x98\x80/\xC2\xB0"
     "C",
     "_/_C"},
};

TEST_F(AppendedSignal, UnitIsFoldedToAscii) {
    for (const UnitRow& row : kUnits) {
        SCOPED_TRACE(Shown(row.given));
        CanSignalData record = SignalRecord("S");
        SetField(record.unit, row.given);
        EXPECT_EQ(Field(Append(record).unit), row.folded);
    }
}

TEST_F(AppendedSignal, UnitAsWrittenIsTheOneGiven) {
    for (const UnitRow& row : kUnits) {
        SCOPED_TRACE(Shown(row.given));
        CanSignalData record = SignalRecord("S");
        SetField(record.unit, row.given);
        EXPECT_EQ(Field(Append(record).unitAsWritten), row.given);
    }
}

struct ReceiversRow {
    std::string given;
    std::string expected;
};

void ExpectReceivers(const std::vector<ReceiversRow>& rows) {
    for (const ReceiversRow& row : rows) {
        SCOPED_TRACE(Shown(row.given));
        CanSignalData record = SignalRecord("S");
        SetField(record.receivers, row.given);
        const uint32_t index = NumSignals(0);
        ASSERT_TRUE(Library().AppendCanSignalToCanMessage(0, &record));
        EXPECT_EQ(Field(SignalAt(0, index).receivers), row.expected);
    }
}

TEST_F(AppendedSignal, ReceiversAreSplitAtCommas) {
    ExpectReceivers({
        {"", ""},
        {"A", "A"},
        {"ECU1,ECU2", "ECU1,ECU2"},
        {"A,A", "A,A"},
        {",", ""},
        {",A", "A"},
        {"A,", "A"},
        {",,A,,B,,", "A,B"},
    });
}

TEST_F(AppendedSignal, ReceiversAreTrimmed) {
    ExpectReceivers({
        {"ECU1, ECU2", "ECU1,ECU2"},
        {" \t\n\v\f\rA \t\n\v\f\r", "A"},
        {" , ", ""},
    });
}

TEST_F(AppendedSignal, ReceiversAreMadeIdentifiers) {
    ExpectReceivers({
        {"ECU1 ECU2", "ECU1_ECU2"},
        {"ECU1  ECU2", "ECU1__ECU2"},
        {"A;", "A_"},
        {"A;B", "A_B"},
        {"1A,2B", "_A,_B"},
        {"\xC3\xA4,B\xE2\x82\xAC", "_,B_"},
        {std::string(32, 'r') + ",B", std::string(32, 'r') + ",B"},
        {std::string(33, 'r') + ",B", std::string(32, 'r') + ",B"},
        {std::string(31, 'r') + "\xC3\xA4"
                                "x,B",
         std::string(31, 'r') + "_,B"},
    });
}

TEST_F(AppendedSignal, AFloatOfAnotherSizeBecomesASignedInteger) {
    const struct {
        uint32_t valueType;
        uint32_t length;
        uint32_t expected;
    } rows[] = {
        {2, 32, 2},
        {2, 31, 1},
        {2, 33, 1},
        {2, 16, 1},
        {2, 64, 1},
        {2, 0, 1},
        {3, 64, 3},
        {3, 63, 1},
        {3, 65, 1},
        {3, 32, 1},
        {3, 0, 1},
        {0, 16, 0},
        {0, 32, 0},
        {1, 16, 1},
        {1, 64, 1},
        {4, 16, 4},
        {7, 5, 7},
        {7, 32, 7},
        {0xFFFFFFFFU, 8, 0xFFFFFFFFU},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << "type " << row.valueType << " length " << row.length);
        CanSignalData record = SignalRecord("S");
        record.valueType = row.valueType;
        record.length = row.length;
        const CanSignalData data = Append(record);
        EXPECT_EQ(data.valueType, row.expected);
        EXPECT_EQ(data.length, row.length);
    }
}

TEST_F(AppendedSignal, NumbersOutsideTheListsAreKept) {
    CanSignalData record = SignalRecord("S");
    record.multiplexKind = 7;
    record.multiplexValue = 0xFFFFFFFFU;
    record.startBit = 0xFFFFFFFEU;
    record.length = 0xFFFFFFFDU;
    record.byteOrder = 5;
    record.startValue = 0xFFFFFFFCU;
    record.inactiveValue = 0xFFFFFFFBU;
    const CanSignalData data = Append(record);
    EXPECT_EQ(data.multiplexKind, 7U);
    EXPECT_EQ(data.multiplexValue, 0xFFFFFFFFU);
    EXPECT_EQ(data.startBit, 0xFFFFFFFEU);
    EXPECT_EQ(data.length, 0xFFFFFFFDU);
    EXPECT_EQ(data.byteOrder, 5U);
    EXPECT_EQ(data.startValue, 0xFFFFFFFCU);
    EXPECT_EQ(data.inactiveValue, 0xFFFFFFFBU);
}

TEST_F(AppendedSignal, ASwitchValueIsKeptWithoutASwitch) {
    CanSignalData record = SignalRecord("S");
    record.multiplexKind = 0;
    record.multiplexValue = 3;
    const CanSignalData data = Append(record);
    EXPECT_EQ(data.multiplexKind, 0U);
    EXPECT_EQ(data.multiplexValue, 3U);
}

TEST_F(AppendedSignal, ARangeTheWrongWayRoundIsNotSwapped) {
    CanSignalData record = SignalRecord("S");
    record.minimum = 10.0;
    record.maximum = -10.0;
    const CanSignalData data = Append(record);
    EXPECT_EQ(data.minimum, 10.0);
    EXPECT_EQ(data.maximum, -10.0);
}

TEST_F(AppendedSignal, DoublesAreKeptToTheBit) {
    const double values[] = {0.0,
                             -0.0,
                             0.1,
                             -1e-300,
                             1e300,
                             std::numeric_limits<double>::denorm_min(),
                             std::numeric_limits<double>::infinity(),
                             -std::numeric_limits<double>::infinity(),
                             std::numeric_limits<double>::quiet_NaN()};
    for (const double value : values) {
        SCOPED_TRACE(Bits(value));
        CanSignalData record = SignalRecord("S");
        record.factor = value;
        record.offset = -value;
        record.minimum = value;
        record.maximum = -value;
        const CanSignalData data = Append(record);
        EXPECT_EQ(Bits(data.factor), Bits(value));
        EXPECT_EQ(Bits(data.offset), Bits(-value));
        EXPECT_EQ(Bits(data.minimum), Bits(value));
        EXPECT_EQ(Bits(data.maximum), Bits(-value));
    }
}

TEST_F(AppendedSignal, GoesToItsMessageInOrder) {
    ASSERT_TRUE(AppendMessage(2, "N"));
    ASSERT_TRUE(AppendSignal(1, "B"));
    ASSERT_TRUE(AppendSignal(0, "Z"));
    ASSERT_TRUE(AppendSignal(0, "A"));
    ASSERT_TRUE(AppendSignal(0, "Z"));
    EXPECT_EQ(NumSignals(0), 3U);
    EXPECT_EQ(NumSignals(1), 1U);
    EXPECT_EQ(MessageAt(0).numSignals, 3U);
    EXPECT_EQ(MessageAt(1).numSignals, 1U);
    EXPECT_EQ(Field(SignalAt(0, 0).name), "Z");
    EXPECT_EQ(Field(SignalAt(0, 1).name), "A");
    EXPECT_EQ(Field(SignalAt(0, 2).name), "Z");
    EXPECT_EQ(Field(SignalAt(1, 0).name), "B");
}

// A message that takes no more signals; the last one is named "Last".
class SignalBeyondTenThousand : public AppendedSignal {
protected:
    void SetUp() override {
        AppendedSignal::SetUp();
        const CanSignalData record = SignalRecord("S");
        for (int i = 0; i < 9999; ++i) {
            ASSERT_TRUE(Library().AppendCanSignalToCanMessage(0, &record)) << i;
        }
        ASSERT_TRUE(AppendSignal(0, "Last"));
        ASSERT_EQ(NumSignals(0), 10000U);
    }
};

TEST_F(SignalBeyondTenThousand, IsDropped) {
    AppendSignal(0, "Dropped");
    AppendSignal(0, "Dropped");
    EXPECT_EQ(NumSignals(0), 10000U);
    EXPECT_EQ(MessageAt(0).numSignals, 10000U);
    EXPECT_EQ(Field(SignalAt(0, 9999).name), "Last");
    CanSignalData data{};
    EXPECT_FALSE(Library().GetCanSignalData(0, 10000, &data));
}

TEST_F(SignalBeyondTenThousand, IsNoFailure) {
    EXPECT_TRUE(AppendSignal(0, "Dropped"));
    EXPECT_TRUE(AppendSignal(0, "Dropped"));
}

TEST_F(SignalBeyondTenThousand, OfOneMessageLeavesRoomInAnother) {
    ASSERT_TRUE(AppendMessage(2, "Other"));
    EXPECT_TRUE(AppendSignal(1, "Fits"));
    EXPECT_EQ(NumSignals(1), 1U);
}

TEST_F(SignalBeyondTenThousand, WithABrokenTextIsRefusedAllTheSame) {
    EXPECT_FALSE(AppendSignal(0, "\x80"));
}

}  // namespace
}  // namespace tabrin_test
