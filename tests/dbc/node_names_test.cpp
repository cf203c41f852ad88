#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "dbc/dbc_writer.h"
#include "dbc/writing.h"

namespace tabrin {
namespace {

// A message for each transmitter, without signals. The names are taken as they are, also longer than identifiers get.
std::string NodesOfTransmitters(const std::vector<std::string>& transmitters) {
    CANDatabase database;
    for (const std::string& transmitter : transmitters) {
        AddMessage(database).transmitter = transmitter;
    }
    return CollectNodeNames(database.messages);
}

TEST(NodeNames, MessageWithoutTransmitterStandsForTheDefaultNode) {
    CANDatabase database;
    AddMessage(database);
    EXPECT_EQ(CollectNodeNames(database.messages), "BU_ :  Kestrune");
}

TEST(NodeNames, NoMessagesNoNames) {
    EXPECT_EQ(CollectNodeNames({}), "BU_ : ");
}

struct OrderCase {
    std::vector<std::string> transmitters;
    std::string_view line;
};

void ExpectNodes(const std::vector<OrderCase>& rows) {
    for (const OrderCase& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.transmitters));
        EXPECT_EQ(NodesOfTransmitters(row.transmitters), row.line);
    }
}

TEST(NodeNames, DescendByteByByte) {
    ExpectNodes({
        {{"ECU"}, "BU_ :  ECU"},
        {{"Alpha", "beta", "Gamma"}, "BU_ :  beta Gamma Alpha"},
        {{"A", "AB", "ABC"}, "BU_ :  ABC AB A"},
        {{"N1", "N10", "N2"}, "BU_ :  N2 N10 N1"},
        {{"_", "Z", "a"}, "BU_ :  a _ Z"},
        {{"ECU", "Ecu", "ecu"}, "BU_ :  ecu Ecu ECU"},
        {{"Zed", "", "Abe"}, "BU_ :  Zed Kestrune Abe"},
    });
}

TEST(NodeNames, StandOnce) {
    ExpectNodes({
        {{"A", "A"}, "BU_ :  A"},
        {{"B", "A", "B", "A"}, "BU_ :  B A"},
        {{"", "Kestrune", ""}, "BU_ :  Kestrune"},
    });
}

TEST(NodeNames, ReceiversAreNodesToo) {
    CANDatabase database;
    CANMessage& first = AddMessage(database, {.transmitter = "Engine"});
    AddSignal(first, {.receivers = "Dash,Engine,Brake"});
    AddSignal(first, {.receivers = "Dash"});
    AddSignal(AddMessage(database, {.transmitter = "Dash"}), {.receivers = "Wiper"});
    EXPECT_EQ(CollectNodeNames(database.messages), "BU_ :  Wiper Engine Dash Brake");
}

TEST(NodeNames, SignalWithoutReceiversStandsForTheDefaultNode) {
    CANDatabase database;
    CANMessage& message = AddMessage(database, {.transmitter = "Engine"});
    AddSignal(message, {.receivers = "Zed"});
    AddSignal(message, {.receivers = ""});
    EXPECT_EQ(CollectNodeNames(database.messages), "BU_ :  Zed Kestrune Engine");
}

TEST(NodeNames, MessageWithoutTransmitterKeepsTheReceiversOfItsSignals) {
    CANDatabase database;
    AddSignal(AddMessage(database), {.receivers = "Dash"});
    EXPECT_EQ(CollectNodeNames(database.messages), "BU_ :  Kestrune Dash");
}

TEST(NodeNames, NodesNamedByTheCallerAreIdentifiers) {
    CANDatabase database;
    AddSignal(AddMessage(database, {.transmitter = " A"}), {.receivers = " 1 B , C "});
    EXPECT_EQ(CollectNodeNames(database.messages), "BU_ :  __B _A C");
}

// --- Wrapping

// A name of that length that begins with the letter: 32 at most for real nodes.
std::string NodeName(char letter, size_t length) {
    std::string name(length, 'x');
    name.front() = letter;
    return name;
}

struct WrapCase {
    const char* what;
    std::vector<size_t> lengths;  // of the names, in the order in which they are written
    std::string_view separators;  // in front of each: ' ' or '\n'
};

// "BU_ : " has 6 characters; each name adds itself and its separator.
const WrapCase kWrapCases[] = {
    // 6 + 7 * 33 = 237, and 237 + 18 = 255.
    {"one less than 256", {32, 32, 32, 32, 32, 32, 32, 18}, "        "},
    {"exactly 256", {32, 32, 32, 32, 32, 32, 32, 19}, "       \n"},
    // The name that has wrapped and the line end count on: 237 + 33 + 6 * 33 = 468, 468 + 12 = 480, and
    // 480 - 256 + 31 = 255.
    {"one less than 256 on the second line",
     {32, 32, 32, 32, 32, 32, 32, 32, 32, 32, 32, 32, 32, 32, 11, 31},
     "       \n        "},
    {"exactly 256 on the second line",
     {32, 32, 32, 32, 32, 32, 32, 32, 32, 32, 32, 32, 32, 32, 11, 32},
     "       \n       \n"},
    {"first name stays", {249}, " "},
    {"first name wraps", {250}, "\n"},
    // Each wrap counts as 256, however long the line in front of it was: 6 + 601 = 607, 607 - 256 + 1 = 352, then
    // 607 + 2 - 512 + 1 = 98.
    {"one long name wraps twice", {600, 1, 1}, "\n\n "},
    // 6 + 1001 = 1007; 1007 - 256, 1009 - 512 and 1011 - 768 each with the next name: 752, 498, 244.
    {"one very long name wraps three times", {1000, 1, 1, 1}, "\n\n\n "},
};

TEST(NodeNames, LineWrapsAt256Characters) {
    for (const WrapCase& row : kWrapCases) {
        SCOPED_TRACE(row.what);
        ASSERT_EQ(row.separators.size(), row.lengths.size());
        std::vector<std::string> names;
        std::string expected = "BU_ : ";
        for (size_t i = 0; i < row.lengths.size(); ++i) {
            names.push_back(NodeName(static_cast<char>('z' - i), row.lengths[i]));
            expected += row.separators[i];
            expected += names.back();
        }
        EXPECT_EQ(NodesOfTransmitters(names), expected);
    }
}

// A wrap counts as 256 characters while a line of seven names has 237 and one of eight 264, so the lines are of uneven
// length.
TEST(NodeNames, SixtyTwoLongNamesFillNineUnevenLines) {
    std::vector<std::string> names;
    for (char tens = '0'; tens <= '6'; ++tens) {
        for (char ones = '0'; ones <= '9'; ++ones) {
            names.push_back(std::string("Node_") + tens + ones + std::string(25, 'x'));
        }
    }
    names.resize(62);
    const std::string text = NodesOfTransmitters(names);
    std::vector<size_t> namesInLine = {0};
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\n') {
            namesInLine.push_back(0);
        } else if (text[i] == 'N') {
            ++namesInLine.back();
        }
    }
    EXPECT_EQ(namesInLine, (std::vector<size_t>{7, 8, 8, 7, 8, 8, 8, 7, 1}));
}

TEST(NodeNames, WrappedLineGoesOnWithoutIndentation) {
    CANDatabase database;
    for (char letter = 'A'; letter <= 'I'; ++letter) {
        AddMessage(database, {.transmitter = NodeName(letter, 32)});
    }
    const std::string body = WrittenBody(database);
    const std::string x(31, 'x');
    EXPECT_EQ(body.substr(0, body.find("BO_ ")), std::string("BU_ :  I") + x + " H" + x + " G" + x + " F" + x + " E" +
                                                     x + " D" + x + " C" + x +
                                                     "\r\n"
                                                     "B" +
                                                     x + " A" + x +
                                                     "\r\n"
                                                     "\r\n");
}

}  // namespace
}  // namespace tabrin
