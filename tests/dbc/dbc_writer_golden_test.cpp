// Whole files, compared to the byte with files in tests/golden that were set out by hand.
#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <string_view>

#include "dbc/dbc_writer.h"
#include "dbc/reading.h"
#include "dbc/writing.h"

#ifndef TABRIN_GOLDEN_DIR
#define TABRIN_GOLDEN_DIR TABRIN_TEST_DATA_DIR "/../golden"
#endif

namespace tabrin {
namespace {

std::string GoldenBytes(std::string_view name) {
    return FileBytes(TABRIN_GOLDEN_DIR "/" + std::string(name) + ".dbc");
}

void BuildHeader(CANDatabase& database) {
    AddMessage(database, {.id = 100});
}

std::string LongNode(char letter) {
    return std::string("Node_").append(1, letter).append("_of_thirty_two_characters_");
}

void BuildNodes(CANDatabase& database) {
    CANMessage& first = AddMessage(database, {.id = 1, .name = "First", .transmitter = LongNode('C')});
    AddSignal(first, {.name = "Level", .receivers = LongNode('A') + "," + LongNode('I') + "," + LongNode('E')});
    CANMessage& second = AddMessage(database, {.id = 2, .name = "Second", .transmitter = LongNode('H')});
    AddSignal(second, {.name = "Level", .receivers = LongNode('B') + "," + LongNode('D')});
    AddSignal(second,
              {.name = "Ratio", .receivers = LongNode('F') + "," + LongNode('G') + "," + LongNode('A'), .startBit = 8});
}

void BuildMessages(CANDatabase& database) {
    CANMessage& engine = AddMessage(database, {.id = 100, .name = "EngineData", .transmitter = "ECU"});
    AddSignal(
        engine,
        {.name = "Mode", .receivers = "X", .multiplexKind = TABRIN_MULTIPLEX_MULTIPLEXOR, .length = 2, .maximum = 3.0});
    AddSignal(engine, {.name = "EngSpeed",
                       .unit = "rpm",
                       .multiplexKind = TABRIN_MULTIPLEX_MULTIPLEXED,
                       .multiplexValue = 3,
                       .startBit = 24,
                       .length = 16,
                       .factor = 0.125,
                       .maximum = 8031.875});
    AddSignal(engine, {.name = "Temp",
                       .unit = "\xC2\xB0"
                               "C",
                       .receivers = "A,B",
                       .startBit = 7,
                       .byteOrder = TABRIN_BYTE_ORDER_BIG_ENDIAN,
                       .valueType = TABRIN_VALUE_SIGNED,
                       .factor = 0.5,
                       .offset = -40.0,
                       .minimum = -40.0,
                       .maximum = 87.5});
    AddSignal(engine, {.name = "Speed", .receivers = "X", .startBit = 32});
    AddSignal(engine, {.name = "Plain", .receivers = "X", .startBit = 40});
    AddSignal(engine, {.name = "Speed", .receivers = "X", .startBit = 48});
    AddSignal(engine, {.name = "Speed", .receivers = "X", .startBit = 56});

    CANMessage& wide = AddMessage(database, {.id = 2147483748, .name = "Wide", .dlc = 64});
    AddSignal(wide, {.name = "A_name_of_thirty_one_characters",
                     .receivers = "X",
                     .length = 32,
                     .factor = 1.0 / 3.0,
                     .offset = 1e10,
                     .minimum = 1e-5,
                     .maximum = 4294967295.0});
    AddSignal(wide, {.name = "A_name_of_thirty_one_characters",
                     .unit = "km/h",
                     .receivers = "X",
                     .startBit = 32,
                     .length = 32,
                     .factor = 0.1,
                     .offset = -1.5e12,
                     .minimum = -1e300,
                     .maximum = 1e-300});

    AddMessage(database, {.id = 0, .name = "Empty", .dlc = 0, .transmitter = "Node"});
}

void BuildComments(CANDatabase& database) {
    CANMessage& engine = AddMessage(database, {.id = 100, .name = "EngineStatus", .comment = "Engine status"});
    AddSignal(engine, {.name = "EngineSpeed", .comment = "Revolutions per minute"});
    AddSignal(engine, {.name = "Plain", .startBit = 8});
    AddSignal(engine, {.name = "Quoted", .comment = "say \"hi\"", .startBit = 16});
    AddMessage(database, {.id = 200, .name = "No Comment"});
    CANMessage& lines = AddMessage(database, {.id = 300, .name = "Lines", .comment = "first line\n  second line"});
    AddSignal(lines, {.name = "", .comment = "without a name"});
}

void BuildAttributes(CANDatabase& database) {
    database.info.protocolType = TABRIN_PROTOCOL_J1939;
    database.info.canFd = 1;
    AddMessage(database, {.id = 256, .name = "Engine data"});
}

void BuildValueDescriptions(CANDatabase& database) {
    CANMessage& gearbox = AddMessage(database, {.id = 100, .name = "Gearbox"});
    CANSignal& gear =
        AddSignal(gearbox, {.name = "Gear", .valueType = TABRIN_VALUE_SIGNED, .minimum = -1.0, .maximum = 6.0});
    gear.valueDescriptions.Add(0, "Neutral");
    gear.valueDescriptions.Add(1, "First");
    gear.valueDescriptions.Add(-1, "Reverse");
    CANSignal& torque = AddSignal(gearbox, {.name = "Torque",
                                            .unit = "Nm",
                                            .startBit = 8,
                                            .length = 32,
                                            .valueType = TABRIN_VALUE_FLOAT,
                                            .maximum = 500.0});
    torque.valueDescriptions.Add(0, "none");
    CANSignal& lever = AddSignal(gearbox, {.name = "Lever", .startBit = 40});
    lever.valueDescriptions.Add(7, "one");
    lever.valueDescriptions.Add(2147483647, "");
    lever.valueDescriptions.Add(-2147483647 - 1, "lowest");
    lever.valueDescriptions.Add(7, "two");
    AddSignal(gearbox, {.name = "Bare", .startBit = 48});
    CANSignal& left = AddSignal(AddMessage(database, {.id = 7, .name = "Doors", .dlc = 1}),
                                {.name = "Left", .length = 1, .maximum = 1.0});
    left.valueDescriptions.Add(0, "closed");
    left.valueDescriptions.Add(1, "open");
}

void BuildValueTypes(CANDatabase& database) {
    CANMessage& climate = AddMessage(database, {.id = 100, .name = "Climate", .dlc = 16});
    AddSignal(climate, {.name = "Temperature",
                        .unit = "\xC2\xB0"
                                "C",
                        .length = 32,
                        .valueType = TABRIN_VALUE_FLOAT,
                        .minimum = -40.0,
                        .maximum = 125.0});
    AddSignal(climate,
              {.name = "Step", .startBit = 32, .length = 32, .valueType = TABRIN_VALUE_SIGNED, .maximum = 0.0});
    AddSignal(climate,
              {.name = "Precise", .startBit = 64, .length = 64, .valueType = TABRIN_VALUE_DOUBLE, .maximum = 0.0});
    AddSignal(AddMessage(database, {.id = 4294967295, .name = "Last", .dlc = 4}),
              {.name = "Ratio",
               .length = 32,
               .byteOrder = TABRIN_BYTE_ORDER_BIG_ENDIAN,
               .valueType = TABRIN_VALUE_FLOAT,
               .maximum = 1.0});
}

void BuildMotorData(CANDatabase& database) {
    CANMessage& motor =
        AddMessage(database, {.id = 100, .name = "Motor Data", .transmitter = "ECU", .comment = "Motor \"main\" data"});
    CANSignal& mode = AddSignal(motor, {.name = "Mode",
                                        .receivers = "Dash",
                                        .comment = "Selects\nthe page",
                                        .multiplexKind = TABRIN_MULTIPLEX_MULTIPLEXOR,
                                        .length = 4,
                                        .maximum = 15.0});
    mode.valueDescriptions.Add(1, "On");
    mode.valueDescriptions.Add(0, "Off");
    mode.valueDescriptions.Add(-1, "Error");
    AddSignal(motor, {.name = "\xC3\x96l Temp",
                      .unit = "\xC2\xB0"
                              "C",
                      .receivers = "Dash, ECU",
                      .multiplexKind = TABRIN_MULTIPLEX_MULTIPLEXED,
                      .multiplexValue = 1,
                      .startBit = 8,
                      .valueType = TABRIN_VALUE_SIGNED,
                      .factor = 0.5,
                      .offset = -40.0,
                      .minimum = -40.0,
                      .maximum = 87.5});
    AddSignal(motor, {.name = "Level",
                      .unit = "%",
                      .multiplexKind = TABRIN_MULTIPLEX_MULTIPLEXED,
                      .multiplexValue = 2,
                      .startBit = 8,
                      .factor = 0.4,
                      .maximum = 102.0});
    AddSignal(motor, {.name = "Level",
                      .receivers = "ECU",
                      .multiplexKind = TABRIN_MULTIPLEX_MULTIPLEXED,
                      .multiplexValue = 3,
                      .startBit = 16,
                      .byteOrder = TABRIN_BYTE_ORDER_BIG_ENDIAN});
}

void BuildEverything(CANDatabase& database) {
    database.info.protocolType = TABRIN_PROTOCOL_NMEA2000;
    database.info.canFd = 1;
    BuildMotorData(database);
    CANMessage& accurate = AddMessage(database, {.id = 2147483748, .name = "Accurate", .dlc = 64});
    CANSignal& ratio = AddSignal(accurate, {.name = "Ratio",
                                            .receivers = "Gateway",
                                            .comment = "IEEE single",
                                            .length = 32,
                                            .valueType = TABRIN_VALUE_FLOAT,
                                            .minimum = -1.0,
                                            .maximum = 1.0});
    ratio.valueDescriptions.Add(0, "Zero");
    AddSignal(accurate, {.name = "Angle",
                         .unit = "deg",
                         .receivers = "Gateway",
                         .startBit = 32,
                         .length = 64,
                         .valueType = TABRIN_VALUE_DOUBLE,
                         .factor = 0.001,
                         .maximum = 360.0});
    AddMessage(database, {.id = 5, .name = "Heartbeat", .dlc = 0, .transmitter = "Gateway"});
    CANMessage& idle = AddMessage(database, {.id = 6, .name = "Idle Tick", .dlc = 1, .transmitter = "Dash"});
    AddSignal(idle, {.name = "Count", .receivers = "ECU"}).valueDescriptions.Add(255, "Invalid");
}

struct GoldenCase {
    const char* file;
    void (*build)(CANDatabase&);
    uint32_t order;
};

constexpr GoldenCase kGoldenCases[] = {
    {"header", BuildHeader, TABRIN_ORDER_DATABASE},
    {"nodes", BuildNodes, TABRIN_ORDER_DATABASE},
    {"messages", BuildMessages, TABRIN_ORDER_DATABASE},
    {"comments", BuildComments, TABRIN_ORDER_DATABASE},
    {"attributes", BuildAttributes, TABRIN_ORDER_DATABASE},
    {"value_descriptions", BuildValueDescriptions, TABRIN_ORDER_DATABASE},
    {"value_types", BuildValueTypes, TABRIN_ORDER_DATABASE},
    {"everything", BuildEverything, TABRIN_ORDER_DATABASE},
    {"everything_by_identifier", BuildEverything, TABRIN_ORDER_IDENTIFIER},
    {"everything_by_name", BuildEverything, TABRIN_ORDER_NAME},
};

class GoldenFile : public testing::TestWithParam<GoldenCase> {};

TEST_P(GoldenFile, IsWritten) {
    CANDatabase database;
    GetParam().build(database);
    const std::string expected = GoldenBytes(GetParam().file);
    EXPECT_EQ(WrittenBytes(database, GetParam().order), expected);
    EXPECT_EQ(WrittenBytes(database, GetParam().order), expected) << "when written again";
}

// None of these databases holds anything that does not survive the way through a file.
TEST_P(GoldenFile, IsReadAndWrittenUnchanged) {
    const std::string expected = GoldenBytes(GetParam().file);
    CANDatabase database;
    ASSERT_TRUE(ReadText(database, expected));
    EXPECT_TRUE(database.errors.empty());
    EXPECT_EQ(WrittenBytes(database), expected);
}

TEST_P(GoldenFile, HasTheLineEndsOfDbcFiles) {
    const std::string bytes = GoldenBytes(GetParam().file);
    ASSERT_FALSE(bytes.empty());
    for (size_t i = 0; i < bytes.size(); ++i) {
        if (bytes[i] == '\n') {
            ASSERT_TRUE(i > 0 && bytes[i - 1] == '\r') << "at byte " << i;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(All, GoldenFile, testing::ValuesIn(kGoldenCases),
                         [](const auto& golden) { return std::string(golden.param.file); });

// Whichever of its orders a database is read in, it can be written in all of them.
TEST(GoldenFiles, OrdersAreExchangeable) {
    for (const char* read : {"everything", "everything_by_identifier", "everything_by_name"}) {
        SCOPED_TRACE(read);
        CANDatabase database;
        ASSERT_TRUE(ReadText(database, GoldenBytes(read)));
        EXPECT_EQ(WrittenBytes(database, TABRIN_ORDER_IDENTIFIER), GoldenBytes("everything_by_identifier"));
        EXPECT_EQ(WrittenBytes(database, TABRIN_ORDER_NAME), GoldenBytes("everything_by_name"));
    }
}

}  // namespace
}  // namespace tabrin
