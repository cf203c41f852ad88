// Databases built by the append functions are written and read again: what comes back, and what a file cannot carry.
#include <limits>

#include "abi/database_copy.h"
#include "abi/interface_test.h"

namespace tabrin_test {
namespace {

// A signal that is appended as `set` makes it, and what `change` makes different when it is read again.
struct SignalRow {
    const char* what;
    void (*set)(CanSignalData&);
    void (*change)(CanSignalData&) = [](CanSignalData&) {};
};

// All of these stand in one message, each under the name "S" and its index, with the receiver "Dash".
const SignalRow kSignalRows[] = {
    {"nothing but numbers", [](CanSignalData&) {}},
    // Names
    {"long name with blanks", [](CanSignalData& data) { SetField(data.name, "Two words"); }},
    {"long name beyond ASCII", [](CanSignalData& data) { SetField(data.name, "\xC3\x96l"); }},
    {"long name with a digit in front", [](CanSignalData& data) { SetField(data.name, "1st"); }},
    {"long name of 40 characters", [](CanSignalData& data) { SetField(data.name, std::string(40, 'L')); }},
    {"long name with a blank at its end", [](CanSignalData& data) { SetField(data.name, "trail "); }},
    {"long name with a colon", [](CanSignalData& data) { SetField(data.name, "c:d"); }},
    {"long name with a quote in a word", [](CanSignalData& data) { SetField(data.name, "e\"f"); }},
    {"long name with a quote in front of a word", [](CanSignalData& data) { SetField(data.name, "g \"h"); }},
    {"long name with a quote behind a word, which ends the text",
     [](CanSignalData& data) { SetField(data.name, "i\" j"); }, [](CanSignalData& data) { SetField(data.name, "i"); }},
    {"blanks in a long name become one", [](CanSignalData& data) { SetField(data.name, "k  \t l"); },
     [](CanSignalData& data) { SetField(data.name, "k l"); }},
    {"semicolons and commas in a long name become a blank", [](CanSignalData& data) { SetField(data.name, "m;n,;o"); },
     [](CanSignalData& data) { SetField(data.name, "m n o"); }},
    // The quote in front of the blank is a token of its own, and no text.
    {"long name with a blank in front is lost", [](CanSignalData& data) { SetField(data.name, " lead"); },
     [](CanSignalData& data) { SetField(data.name, "_lead"); }},
    {"first of two equal names gets a number", [](CanSignalData& data) { SetField(data.name, "Same"); },
     [](CanSignalData& data) { SetField(data.identifierName, "Same_0000"); }},
    {"second of two equal names gets a number", [](CanSignalData& data) { SetField(data.name, "Same"); },
     [](CanSignalData& data) { SetField(data.identifierName, "Same_0001"); }},
    {"no name", [](CanSignalData& data) { SetField(data.name, ""); }},
    // Units
    {"unit", [](CanSignalData& data) { SetField(data.unit, "1/min"); }},
    {"unit of 32 characters", [](CanSignalData& data) { SetField(data.unit, std::string(32, 'u')); }},
    {"unit beyond ASCII is folded",
     [](CanSignalData& data) {
         SetField(data.unit,
                  "\xC2\xB0"
                  "C");
     },
     [](CanSignalData& data) { SetField(data.unitAsWritten, "_C"); }},
    {"blanks around a unit are taken off", [](CanSignalData& data) { SetField(data.unit, " V "); },
     [](CanSignalData& data) {
         SetField(data.unit, "V");
         SetField(data.unitAsWritten, "V");
     }},
    {"quote in a unit ends it, the rest becomes a receiver", [](CanSignalData& data) { SetField(data.unit, "v\"w"); },
     [](CanSignalData& data) {
         SetField(data.unit, "v");
         SetField(data.unitAsWritten, "v");
         SetField(data.receivers, "w__Dash");  // w" Dash
     }},
    // Receivers
    {"several receivers", [](CanSignalData& data) { SetField(data.receivers, "Dash, Log 2,Dash"); }},
    {"nobody becomes the default node", [](CanSignalData& data) { SetField(data.receivers, ""); },
     [](CanSignalData& data) { SetField(data.receivers, "Kestrune"); }},
    // Comments
    {"comment with quotes", [](CanSignalData& data) { SetField(data.comment, "say \"hi\""); }},
    {"comment that is a quote", [](CanSignalData& data) { SetField(data.comment, "\""); }},
    {"comment with a backslash at its end", [](CanSignalData& data) { SetField(data.comment, "x\\"); }},
    {"comment of several lines", [](CanSignalData& data) { SetField(data.comment, "one\n two\r\n\nthree;\n"); }},
    {"comment beyond ASCII", [](CanSignalData& data) { SetField(data.comment, "\xE6\x97\xA5"); }},
    {"comment with a keyword in its first line", [](CanSignalData& data) { SetField(data.comment, "a VAL_ b"); }},
    {"comment with a keyword in a later line is cut there, so that it has no closing quote",
     [](CanSignalData& data) { SetField(data.comment, "a\nVAL_ b"); },
     [](CanSignalData& data) { SetField(data.comment, ""); }},
    {"control characters in a comment are left out",
     [](CanSignalData& data) {
         SetField(data.comment,
                  "a\x01\x7F"
                  "b");
     },
     [](CanSignalData& data) { SetField(data.comment, "ab"); }},
    // Multiplexing
    {"multiplexor", [](CanSignalData& data) { data.multiplexKind = TABRIN_MULTIPLEX_MULTIPLEXOR; }},
    {"multiplexed",
     [](CanSignalData& data) {
         data.multiplexKind = TABRIN_MULTIPLEX_MULTIPLEXED;
         data.multiplexValue = 4294967295U;
     }},
    {"value of a switch is written only of multiplexed signals", [](CanSignalData& data) { data.multiplexValue = 5; },
     [](CanSignalData& data) { data.multiplexValue = 0; }},
    {"kind outside the list is written as none", [](CanSignalData& data) { data.multiplexKind = 7; },
     [](CanSignalData& data) { data.multiplexKind = TABRIN_MULTIPLEX_NONE; }},
    // Bits
    {"large start bit and length",
     [](CanSignalData& data) {
         data.startBit = 4294967295U;
         data.length = 4294967295U;
     }},
    {"big-endian", [](CanSignalData& data) { data.byteOrder = TABRIN_BYTE_ORDER_BIG_ENDIAN; }},
    {"byte order outside the list is written as 1", [](CanSignalData& data) { data.byteOrder = 5; },
     [](CanSignalData& data) { data.byteOrder = TABRIN_BYTE_ORDER_LITTLE_ENDIAN; }},
    {"signed", [](CanSignalData& data) { data.valueType = TABRIN_VALUE_SIGNED; }},
    {"float",
     [](CanSignalData& data) {
         data.length = 32;
         data.valueType = TABRIN_VALUE_FLOAT;
     }},
    {"double",
     [](CanSignalData& data) {
         data.length = 64;
         data.valueType = TABRIN_VALUE_DOUBLE;
     }},
    {"value type outside the list is written as signed", [](CanSignalData& data) { data.valueType = 7; },
     [](CanSignalData& data) { data.valueType = TABRIN_VALUE_SIGNED; }},
    // Numbers
    {"numbers of ten digits",
     [](CanSignalData& data) {
         data.factor = 1.234567891e-300;
         data.offset = -0.0;
         data.minimum = -9999999999.0;
         data.maximum = 4294967295.0;
     }},
    {"infinite numbers",
     [](CanSignalData& data) {
         data.minimum = -std::numeric_limits<double>::infinity();
         data.maximum = std::numeric_limits<double>::infinity();
     }},
    {"numbers of more digits are rounded",
     [](CanSignalData& data) {
         data.factor = 1.0 / 3.0;
         data.offset = 2.0 / 3.0;
         data.minimum = -12345678901.0;
         data.maximum = 12345678906.0;
     },
     [](CanSignalData& data) {
         data.factor = 0.3333333333;
         data.offset = 0.6666666667;
         data.minimum = -12345678900.0;
         data.maximum = 12345678910.0;
     }},
    {"range the wrong way round is swapped",
     [](CanSignalData& data) {
         data.minimum = 10.0;
         data.maximum = -10.0;
     },
     [](CanSignalData& data) {
         data.minimum = -10.0;
         data.maximum = 10.0;
     }},
    // Attributes that are read and never written
    {"start value is not written", [](CanSignalData& data) { data.startValue = 5; },
     [](CanSignalData& data) { data.startValue = 0; }},
    {"inactive value is not written", [](CanSignalData& data) { data.inactiveValue = 6; },
     [](CanSignalData& data) { data.inactiveValue = 0; }},
};

struct MessageRow {
    const char* what;
    void (*set)(CanMessageData&);
    void (*change)(CanMessageData&) = [](CanMessageData&) {};
};

// Each with an identifier from 1001 on, the name "N" and its index, and the transmitter "ECU".
const MessageRow kMessageRows[] = {
    {"nothing but numbers", [](CanMessageData&) {}},
    {"29-bit identifier", [](CanMessageData& data) { data.id = 2364540158U; }},
    {"large data length", [](CanMessageData& data) { data.dlc = 4294967295U; }},
    {"transmitter made an identifier when appended", [](CanMessageData& data) { SetField(data.transmitter, "ECU 1"); }},
    {"nobody becomes the default node", [](CanMessageData& data) { SetField(data.transmitter, ""); },
     [](CanMessageData& data) { SetField(data.transmitter, "Kestrune"); }},
    {"comment with quotes", [](CanMessageData& data) { SetField(data.comment, "say \"hi\"\n\"ho\""); }},
    {"comment with a keyword in its first line", [](CanMessageData& data) { SetField(data.comment, "a SG_ b"); }},
    {"comment with a keyword in a later line is cut there, so that it has no closing quote",
     [](CanMessageData& data) { SetField(data.comment, "a\nVAL_ b"); },
     [](CanMessageData& data) { SetField(data.comment, ""); }},
    {"long name with blanks", [](CanMessageData& data) { SetField(data.name, "Two words"); }},
    {"long name beyond ASCII", [](CanMessageData& data) { SetField(data.name, "\xE6\x97\xA5"); }},
    {"long name of 255 characters", [](CanMessageData& data) { SetField(data.name, std::string(255, 'L')); }},
    {"equal names stay equal", [](CanMessageData& data) { SetField(data.name, "Same"); }},
    {"equal names stay equal, again", [](CanMessageData& data) { SetField(data.name, "Same"); }},
    {"blanks and semicolons in a long name become a blank", [](CanMessageData& data) { SetField(data.name, "a;  b"); },
     [](CanMessageData& data) { SetField(data.name, "a b"); }},
    {"long name with a blank in front is lost", [](CanMessageData& data) { SetField(data.name, " lead"); },
     [](CanMessageData& data) { SetField(data.name, "_lead"); }},
};

// The value descriptions of a signal of a message of its own, and what comes back of them.
struct DescriptionRow {
    const char* what;
    const char* signal;
    uint32_t valueType;
    Descriptions appended;
    Descriptions readBack;
};

const Descriptions kLimits = {{-2147483647 - 1, "least"}, {-1, ""}, {0, "zero"}, {2147483647, "most"}};

const DescriptionRow kDescriptionRows[] = {
    {"any values and an empty text", "S", TABRIN_VALUE_SIGNED, kLimits, kLimits},
    {"texts of several lines, of blanks, beyond ASCII",
     "S",
     TABRIN_VALUE_UNSIGNED,
     {{1, "a\nb\r"}, {2, " "}, {3, "\xC3\xA4"}},
     {{1, "a\nb\r"}, {2, " "}, {3, "\xC3\xA4"}}},
    // Behind the quote stands no number, up to the quote that was to end the text.
    {"quote in a text ends it", "S", TABRIN_VALUE_UNSIGNED, {{1, "a\"b"}, {2, "c"}}, {{1, "a"}, {2, "c"}}},
    {"keyword in a text ends the statement",
     "S",
     TABRIN_VALUE_UNSIGNED,
     {{1, "a"}, {2, "b FILTER c"}, {3, "d"}},
     {{1, "a"}, {2, ""}}},
    {"floats have none in a file", "S", TABRIN_VALUE_FLOAT, {{1, "a"}}, {}},
    {"a signal without name is not found", "", TABRIN_VALUE_UNSIGNED, {{1, "a"}}, {}},
};

constexpr uint32_t kFirstMessageId = 1001;
constexpr uint32_t kFirstDescriptionId = 2001;

void AppendSignalRows() {
    ASSERT_TRUE(AppendMessage(5000, "Signals"));
    const uint32_t message = NumMessages() - 1;
    for (size_t index = 0; index < std::size(kSignalRows); ++index) {
        CanSignalData record = SignalRecord("S" + std::to_string(index));
        SetField(record.receivers, "Dash");
        kSignalRows[index].set(record);
        ASSERT_TRUE(Library().AppendCanSignalToCanMessage(message, &record)) << kSignalRows[index].what;
    }
}

void AppendMessageRows() {
    for (size_t index = 0; index < std::size(kMessageRows); ++index) {
        const auto id = kFirstMessageId + static_cast<uint32_t>(index);
        CanMessageData record = MessageRecord(id, "N" + std::to_string(index));
        SetField(record.transmitter, "ECU");
        kMessageRows[index].set(record);
        ASSERT_TRUE(Library().AppendCanMessage(&record)) << kMessageRows[index].what;
    }
}

void AppendDescriptionRows() {
    for (size_t index = 0; index < std::size(kDescriptionRows); ++index) {
        const DescriptionRow& row = kDescriptionRows[index];
        ASSERT_TRUE(AppendMessage(kFirstDescriptionId + static_cast<uint32_t>(index), "D" + std::to_string(index)));
        CanSignalData record = SignalRecord(row.signal);
        record.length = 32;
        record.valueType = row.valueType;
        ASSERT_TRUE(Library().AppendCanSignalToCanMessage(NumMessages() - 1, &record)) << row.what;
        for (const auto& [value, text] : row.appended) {
            ASSERT_TRUE(AppendEnum(NumMessages() - 1, 0, value, text)) << row.what;
        }
    }
}

// What comes back of the database that the three functions above build.
Messages ExpectedMessages(Messages messages) {
    MessageCopy& signals = messages.at(0);
    SetField(signals.data.transmitter, "Kestrune");
    for (size_t index = 0; index < std::size(kSignalRows); ++index) {
        kSignalRows[index].change(signals.signals.at(index).data);
    }
    for (size_t index = 0; index < std::size(kMessageRows); ++index) {
        kMessageRows[index].change(messages.at(1 + index).data);
    }
    for (size_t index = 0; index < std::size(kDescriptionRows); ++index) {
        MessageCopy& message = messages.at(1 + std::size(kMessageRows) + index);
        SetField(message.data.transmitter, "Kestrune");
        SignalCopy& signal = message.signals.at(0);
        SetField(signal.data.receivers, "Kestrune");
        signal.descriptions = kDescriptionRows[index].readBack;
        signal.data.numValueDescriptions = static_cast<uint32_t>(signal.descriptions.size());
    }
    return messages;
}

class BuiltRoundTrip : public InterfaceTest {
protected:
    static void WriteAndRead(uint32_t order) {
        const std::string path = TempPath("dbc");
        ASSERT_EQ(WriteFile(path, order), kDone);
        ForgetDatabase();
        ASSERT_EQ(ReadFile(path), kDone);
    }
};

TEST_F(BuiltRoundTrip, KeepsAllButWhatIsListed) {
    for (const uint32_t order : {TABRIN_ORDER_IDENTIFIER, TABRIN_ORDER_NAME, TABRIN_ORDER_DATABASE}) {
        SCOPED_TRACE(testing::Message() << "order " << order);
        ForgetDatabase();
        AppendSignalRows();
        AppendMessageRows();
        AppendDescriptionRows();
        ASSERT_FALSE(HasFailure());
        Messages expected = ExpectedMessages(CopyOfMessages());
        SortAsWritten(expected, order);
        WriteAndRead(order);
        EXPECT_EQ(NumErrors(), 0U);
        ExpectSame(CopyOfMessages(), expected);
    }
}

TEST_F(BuiltRoundTrip, OfTheDatabaseInformation) {
    const struct {
        DatabaseInfo set;
        DatabaseInfo readBack;
    } rows[] = {
        {{TABRIN_PROTOCOL_NONE, 0}, {TABRIN_PROTOCOL_NONE, 0}},
        {{TABRIN_PROTOCOL_J1939, 0}, {TABRIN_PROTOCOL_J1939, 0}},
        {{TABRIN_PROTOCOL_NMEA2000, 1}, {TABRIN_PROTOCOL_NMEA2000, 1}},
        {{TABRIN_PROTOCOL_NONE, 1}, {TABRIN_PROTOCOL_NONE, 1}},
        {{7, 2}, {0, 0}},  // outside the lists: not written
    };
    for (const auto& [set, readBack] : rows) {
        SCOPED_TRACE(testing::Message() << set.protocolType << ", " << set.canFd);
        ForgetDatabase();
        ASSERT_TRUE(AppendMessage(1, "M"));
        ASSERT_TRUE(Library().SetDatabaseInfo(&set, sizeof set));
        WriteAndRead(TABRIN_ORDER_DATABASE);
        EXPECT_EQ(Info().protocolType, readBack.protocolType);
        EXPECT_EQ(Info().canFd, readBack.canFd);
    }
}

void AppendOfOneIdentifier(const char* name, const char* comment, const char* description) {
    CanMessageData message = MessageRecord(5, name);
    SetField(message.comment, comment);
    ASSERT_TRUE(Library().AppendCanMessage(&message));
    CanSignalData signal = SignalRecord("S");
    SetField(signal.comment, comment);
    ASSERT_TRUE(Library().AppendCanSignalToCanMessage(NumMessages() - 1, &signal));
    ASSERT_TRUE(AppendEnum(NumMessages() - 1, 0, 0, description));
}

// Statements go by the identifier, so that each of them reaches all messages that have it, in the order written. Of the
// long names, which are attributes, the first one counts.
TEST_F(BuiltRoundTrip, OfMessagesThatShareAnIdentifier) {
    const struct {
        uint32_t order;
        std::vector<const char*> identifierNames;
        const char* name;
        const char* comment;
        const char* descriptions;
    } rows[] = {
        {TABRIN_ORDER_DATABASE, {"B_1", "A_2", "C"}, "B 1", "bac", "0=x - y - z;"},
        {TABRIN_ORDER_IDENTIFIER, {"B_1", "A_2", "C"}, "B 1", "bac", "0=x - y - z;"},
        {TABRIN_ORDER_NAME, {"A_2", "B_1", "C"}, "A 2", "abc", "0=y - x - z;"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << "order " << row.order);
        ForgetDatabase();
        AppendOfOneIdentifier("B 1", "b", "x");
        AppendOfOneIdentifier("A 2", "a", "y");
        AppendOfOneIdentifier("C", "c", "z");
        WriteAndRead(row.order);
        ASSERT_EQ(NumMessages(), 3U);
        for (uint32_t message = 0; message < 3; ++message) {
            SCOPED_TRACE(testing::Message() << "message " << message);
            EXPECT_EQ(Field(MessageAt(message).identifierName), row.identifierNames[message]);
            EXPECT_EQ(Field(MessageAt(message).name), row.name);
            EXPECT_EQ(Field(MessageAt(message).comment), row.comment);
            EXPECT_EQ(Field(SignalAt(message, 0).comment), row.comment);
            EXPECT_EQ(EnumsOf(message, 0), row.descriptions);
        }
    }
}

// More than a sort takes to reorder equal keys when it does not care.
TEST_F(BuiltRoundTrip, OfManyMessagesWithEqualNamesAndIdentifiersKeepsTheirOrder) {
    for (const uint32_t order : {TABRIN_ORDER_IDENTIFIER, TABRIN_ORDER_NAME}) {
        SCOPED_TRACE(testing::Message() << "order " << order);
        ForgetDatabase();
        for (uint32_t count = 0; count < 1000; ++count) {
            CanMessageData record = MessageRecord(count % 2, count % 2 == 0 ? "Even" : "Odd");
            record.dlc = count;
            ASSERT_TRUE(Library().AppendCanMessage(&record));
        }
        WriteAndRead(order);
        ASSERT_EQ(NumMessages(), 1000U);
        // By identifier the odd ones come first, by name the even ones.
        const uint32_t firstHalf = order == TABRIN_ORDER_IDENTIFIER ? 1 : 0;
        for (uint32_t message = 0; message < 1000; ++message) {
            const uint32_t expected = message < 500 ? 2 * message + firstHalf : 2 * (message - 500) + 1 - firstHalf;
            ASSERT_EQ(MessageAt(message).dlc, expected) << "message " << message;
        }
    }
}

// The reader wants at least one character behind the identifier's blank.
TEST_F(BuiltRoundTrip, OfAMessageWithoutNameGivesAnError) {
    ASSERT_TRUE(AppendMessage(1, ""));
    WriteAndRead(TABRIN_ORDER_DATABASE);
    EXPECT_EQ(NumMessages(), 0U);
    ASSERT_EQ(NumErrors(), 1U);
    EXPECT_EQ(ErrorAt(0).code, static_cast<uint32_t>(TABRIN_ERROR_MESSAGE_NAME));
}

}  // namespace
}  // namespace tabrin_test
