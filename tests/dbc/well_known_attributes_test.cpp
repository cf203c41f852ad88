#include "dbc/well_known_attributes.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "dbc/small_database.h"
#include "model/attribute_text.h"
#include "model/can_database.h"

namespace tabrin {
namespace {

using Statements = std::vector<const char*>;
using Texts = std::vector<std::string>;

struct InfoRow {
    Statements statements;
    uint32_t before;
    uint32_t expected;
};

TEST(WellKnownBusType, ValueOrElseTheDefaultSetsTheCanFdFlag) {
    const InfoRow rows[] = {
        {{"BA_DEF_ \"BusType\" STRING;", "BA_DEF_DEF_ \"BusType\" \"CAN FD\";"}, 0, 1},
        {{"BA_DEF_ \"BusType\" STRING;", "BA_DEF_DEF_ \"BusType\" \"CAN\";"}, 1, 0},
        {{"BA_DEF_ \"BusType\" STRING;", "BA_DEF_DEF_ \"BusType\" \"CAN FD\";", "BA_ \"BusType\" \"CAN\";"}, 1, 0},
        {{"BA_DEF_ \"BusType\" STRING;", "BA_DEF_DEF_ \"BusType\" \"CAN\";", "BA_ \"BusType\" \"CAN FD\";"}, 0, 1},
        {{"BA_DEF_ \"BusType\" STRING;", "BA_ \"BusType\" \"CAN FD\";"}, 0, 1},
        {{"BA_DEF_ \"BusType\" STRING;", "BA_ \"BusType\" \"CAN FD\";", "BA_ \"BusType\" \"CAN\";"}, 0, 1},
        {{"BA_DEF_ \"BusType\" STRING;", "BA_ \"BusType\" \"CAN  FD\";"}, 0, 1},  // blanks in a file become one
        // A definition alone has an empty default.
        {{"BA_DEF_ \"BusType\" STRING;"}, 1, 0},
        // Every other text is not CAN FD.
        {{"BA_DEF_ \"BusType\" STRING;", "BA_ \"BusType\" \"CAN fd\";"}, 1, 0},
        {{"BA_DEF_ \"BusType\" STRING;", "BA_ \"BusType\" \"can FD\";"}, 1, 0},
        {{"BA_DEF_ \"BusType\" STRING;", "BA_ \"BusType\" \"CANFD\";"}, 1, 0},
        {{"BA_DEF_ \"BusType\" STRING;", "BA_ \"BusType\" \"CAN FD \";"}, 1, 0},
        {{"BA_DEF_ \"BusType\" STRING;", "BA_ \"BusType\" \"CAN FD2\";"}, 1, 0},
        {{"BA_DEF_ \"BusType\" STRING;", "BA_ \"BusType\" \"1\";"}, 1, 0},
        // Any flag but 1 is replaced too.
        {{"BA_DEF_ \"BusType\" STRING;", "BA_ \"BusType\" \"CAN\";"}, 2, 0},
        {{"BA_DEF_ \"BusType\" STRING;", "BA_ \"BusType\" \"CAN FD\";"}, 2, 1},
        // Without the attribute, or with another object or value type, the flag is left alone.
        {{}, 0, 0},
        {{}, 1, 1},
        {{}, 2, 2},
        {{"BA_DEF_ BO_ \"BusType\" STRING;", "BA_DEF_DEF_ \"BusType\" \"CAN FD\";"}, 0, 0},
        {{"BA_DEF_ BO_ \"BusType\" STRING;"}, 1, 1},
        {{"BA_DEF_ SG_ \"BusType\" STRING;"}, 1, 1},
        {{"BA_DEF_ \"BusType\" ENUM \"CAN\",\"CAN FD\";", "BA_DEF_DEF_ \"BusType\" \"CAN FD\";"}, 0, 0},
        {{"BA_DEF_ \"BusType\" ENUM \"CAN\",\"CAN FD\";", "BA_ \"BusType\" 0;"}, 1, 1},
        {{"BA_DEF_ \"BusType\" INT 0 1;", "BA_ \"BusType\" 1;"}, 0, 0},
        {{"BA_DEF_ \"BusType\" INT 0 1;"}, 1, 1},
        {{"BA_DEF_ \"Bustype\" STRING;", "BA_ \"Bustype\" \"CAN FD\";"}, 0, 0},
    };
    for (const InfoRow& row : rows) {
        SCOPED_TRACE(testing::Message() << testing::PrintToString(row.statements) << " from " << row.before);
        SmallDatabase database;
        database.data.info = {7, row.before};
        database.Apply(row.statements);
        EXPECT_EQ(database.data.info.canFd, row.expected);
        EXPECT_EQ(database.data.info.protocolType, 7U);
        EXPECT_EQ(DescribeAttributed(database.data), kUnattributed);
    }
}

TEST(WellKnownProtocol, IsSetWhereTheNumberIsOne) {
    const char* const j1939 = "BA_DEF_ \"J1939PGN\" INT 0 9;";
    const char* const nmea = "BA_DEF_ \"IsNMEA\" INT 0 9;";
    const InfoRow rows[] = {
        {{j1939, "BA_ \"J1939PGN\" 1;"}, 0, 1},
        {{j1939, "BA_DEF_DEF_ \"J1939PGN\" 1;"}, 0, 1},
        {{nmea, "BA_ \"IsNMEA\" 1;"}, 0, 2},
        {{nmea, "BA_DEF_DEF_ \"IsNMEA\" 1;"}, 0, 2},
        // Any other number leaves the protocol as it is.
        {{j1939}, 5, 5},
        {{nmea}, 5, 5},
        {{"BA_DEF_ \"J1939PGN\" INT 0 1;", "BA_DEF_DEF_ \"J1939PGN\" 0;"}, 0, 0},
        {{"BA_DEF_ \"J1939PGN\" INT 0 1;", "BA_DEF_DEF_ \"J1939PGN\" 0;"}, 5, 5},
        {{j1939, "BA_ \"J1939PGN\" 2;"}, 5, 5},
        {{nmea, "BA_ \"IsNMEA\" 2;"}, 5, 5},
        {{nmea, "BA_ \"IsNMEA\" 0;"}, 5, 5},
        {{"BA_DEF_ \"J1939PGN\" INT -1 9;", "BA_DEF_DEF_ \"J1939PGN\" -1;"}, 5, 5},
        // A value goes before the default.
        {{j1939, "BA_DEF_DEF_ \"J1939PGN\" 1;", "BA_ \"J1939PGN\" 0;"}, 5, 5},
        {{j1939, "BA_DEF_DEF_ \"J1939PGN\" 0;", "BA_ \"J1939PGN\" 1;"}, 5, 1},
        {{nmea, "BA_DEF_DEF_ \"IsNMEA\" 1;", "BA_ \"IsNMEA\" 0;"}, 5, 5},
        {{nmea, "BA_DEF_DEF_ \"IsNMEA\" 0;", "BA_ \"IsNMEA\" 1;"}, 5, 2},
        // With both, NMEA 2000 wins, wherever it stands.
        {{j1939, nmea, "BA_ \"J1939PGN\" 1;", "BA_ \"IsNMEA\" 1;"}, 0, 2},
        {{nmea, j1939, "BA_ \"IsNMEA\" 1;", "BA_ \"J1939PGN\" 1;"}, 0, 2},
        {{nmea, j1939, "BA_ \"IsNMEA\" 0;", "BA_ \"J1939PGN\" 1;"}, 0, 1},
        {{nmea, j1939, "BA_ \"IsNMEA\" 1;", "BA_ \"J1939PGN\" 0;"}, 0, 2},
        {{nmea, j1939, "BA_DEF_DEF_ \"IsNMEA\" 1;", "BA_DEF_DEF_ \"J1939PGN\" 1;", "BA_ \"J1939PGN\" 1;"}, 0, 2},
        // Without the attribute, or with another object or value type, the protocol is left alone.
        {{}, 5, 5},
        {{"BA_DEF_ BO_ \"J1939PGN\" INT 0 1;", "BA_DEF_DEF_ \"J1939PGN\" 1;"}, 5, 5},
        {{"BA_DEF_ SG_ \"IsNMEA\" INT 0 1;", "BA_DEF_DEF_ \"IsNMEA\" 1;"}, 5, 5},
        {{"BA_DEF_ \"J1939PGN\" STRING;", "BA_ \"J1939PGN\" \"1\";"}, 5, 5},
        {{"BA_DEF_ \"IsNMEA\" ENUM \"0\",\"1\";", "BA_ \"IsNMEA\" 1;"}, 5, 5},
        {{"BA_DEF_ \"isNMEA\" INT 0 1;", "BA_DEF_DEF_ \"isNMEA\" 1;"}, 5, 5},
    };
    for (const InfoRow& row : rows) {
        SCOPED_TRACE(testing::Message() << testing::PrintToString(row.statements) << " from " << row.before);
        SmallDatabase database;
        database.data.info = {row.before, 7};
        database.Apply(row.statements);
        EXPECT_EQ(database.data.info.protocolType, row.expected);
        EXPECT_EQ(database.data.info.canFd, 7U);
        EXPECT_EQ(DescribeAttributed(database.data), kUnattributed);
    }
}

TEST(WellKnownMessageName, ValueReplacesTheLongNameOnly) {
    const char* const definition = "BA_DEF_ BO_ \"Kestrune_Msg_Name\" STRING ;";
    const AttributedRow rows[] = {
        {{definition, "BA_ \"Kestrune_Msg_Name\" BO_ 100 \"Engine data\";"},
         {"Engine data/Engine [] 0", "  Speed/Speed 0 0", "  Torque/Torque 0 0", "Brake/Brake [] 0",
          "  Speed/Speed 0 0"}},
        {{definition, "BA_ \"Kestrune_Msg_Name\" BO_ 200 \"Br\xC3\xA4ke\";"},
         {"Engine/Engine [] 0", "  Speed/Speed 0 0", "  Torque/Torque 0 0", "Br\xC3\xA4ke/Brake [] 0",
          "  Speed/Speed 0 0"}},
        {{definition, "BA_ \"Kestrune_Msg_Name\" BO_ 200 \"two\";", "BA_ \"Kestrune_Msg_Name\" BO_ 100 \"one\";"},
         {"one/Engine [] 0", "  Speed/Speed 0 0", "  Torque/Torque 0 0", "two/Brake [] 0", "  Speed/Speed 0 0"}},
        // The default is not used.
        {{definition, "BA_DEF_DEF_ \"Kestrune_Msg_Name\" \"Default\";"}, kUnattributed},
        {{definition, "BA_DEF_DEF_ \"Kestrune_Msg_Name\" \"Default\";", "BA_ \"Kestrune_Msg_Name\" BO_ 200 \"two\";"},
         {"Engine/Engine [] 0", "  Speed/Speed 0 0", "  Torque/Torque 0 0", "two/Brake [] 0", "  Speed/Speed 0 0"}},
        // Nothing to apply, or of another kind.
        {{definition}, kUnattributed},
        {{definition, "BA_ \"Kestrune_Msg_Name\" BO_ 101 \"x\";"}, kUnattributed},
        {{definition, "BA_ \"Kestrune_Msg_Name\" BO_ 100 \"\";"}, kUnattributed},
        {{definition, "BA_ \"Kestrune_Msg_Name\" SG_ 100 Speed \"x\";"}, kUnattributed},
        {{"BA_ \"Kestrune_Msg_Name\" BO_ 100 \"x\";", definition}, kUnattributed},
        {{"BA_DEF_ \"Kestrune_Msg_Name\" STRING ;", "BA_ \"Kestrune_Msg_Name\" \"x\";"}, kUnattributed},
        {{"BA_DEF_ SG_ \"Kestrune_Msg_Name\" STRING ;", "BA_ \"Kestrune_Msg_Name\" SG_ 100 Speed \"x\";"},
         kUnattributed},
        {{"BA_DEF_ BO_ \"Kestrune_Msg_Name\" ENUM \"x\";", "BA_ \"Kestrune_Msg_Name\" BO_ 100 0;"}, kUnattributed},
        {{"BA_DEF_ BO_ \"Kestrune_Msg_Name\" INT 0 9;", "BA_ \"Kestrune_Msg_Name\" BO_ 100 1;"}, kUnattributed},
    };
    for (const AttributedRow& row : rows) {
        ExpectApplied(row);
    }
}

TEST(WellKnownSendType, ValueOrElseTheDefaultReachesEveryMessage) {
    const char* const definition = "BA_DEF_ BO_ \"GenMsgSendType\" ENUM \"Cyclic\",\"Event\",\"On Change/2\";";
    const AttributedRow rows[] = {
        // The index starts at 0: the definition alone is enough.
        {{definition},
         {"Engine/Engine [Cyclic] 0", "  Speed/Speed 0 0", "  Torque/Torque 0 0", "Brake/Brake [Cyclic] 0",
          "  Speed/Speed 0 0"}},
        {{definition, "BA_DEF_DEF_ \"GenMsgSendType\" \"Event\";"},
         {"Engine/Engine [Event] 0", "  Speed/Speed 0 0", "  Torque/Torque 0 0", "Brake/Brake [Event] 0",
          "  Speed/Speed 0 0"}},
        {{definition, "BA_DEF_DEF_ \"GenMsgSendType\" 1;", "BA_ \"GenMsgSendType\" BO_ 200 0;"},
         {"Engine/Engine [Event] 0", "  Speed/Speed 0 0", "  Torque/Torque 0 0", "Brake/Brake [Cyclic] 0",
          "  Speed/Speed 0 0"}},
        // It is made an identifier.
        {{definition, "BA_ \"GenMsgSendType\" BO_ 100 2;"},
         {"Engine/Engine [On_Change_2] 0", "  Speed/Speed 0 0", "  Torque/Torque 0 0", "Brake/Brake [Cyclic] 0",
          "  Speed/Speed 0 0"}},
        {{"BA_DEF_ BO_ \"GenMsgSendType\" ENUM \"1st \xC3\xA4\";"},
         {"Engine/Engine [_st__] 0", "  Speed/Speed 0 0", "  Torque/Torque 0 0", "Brake/Brake [_st__] 0",
          "  Speed/Speed 0 0"}},
        {{"BA_DEF_ BO_ \"GenMsgSendType\" ENUM \"abcdefghijklmnopqrstuvwxyzabcdefghi\";"},
         {"Engine/Engine [abcdefghijklmnopqrstuvwxyzabcdef] 0", "  Speed/Speed 0 0", "  Torque/Torque 0 0",
          "Brake/Brake [abcdefghijklmnopqrstuvwxyzabcdef] 0", "  Speed/Speed 0 0"}},
        // Of another kind.
        {{"BA_DEF_ \"GenMsgSendType\" ENUM \"Cyclic\";"}, kUnattributed},
        {{"BA_DEF_ SG_ \"GenMsgSendType\" ENUM \"Cyclic\";"}, kUnattributed},
        {{"BA_DEF_ BO_ \"GenMsgSendType\" STRING;", "BA_DEF_DEF_ \"GenMsgSendType\" \"Cyclic\";"}, kUnattributed},
        {{"BA_DEF_ BO_ \"GenMsgSendType\" INT 0 9;", "BA_ \"GenMsgSendType\" BO_ 100 1;"}, kUnattributed},
    };
    for (const AttributedRow& row : rows) {
        ExpectApplied(row);
    }
}

// Statements cannot produce such an index, but the store can hold it.
TEST(WellKnownSendType, IsEmptyWithAnIndexOutsideTheList) {
    for (const int32_t index : {-1, 2, 3, INT32_MIN, INT32_MAX}) {
        SCOPED_TRACE(index);
        SmallDatabase database;
        Attribute attribute = MakeAttribute("GenMsgSendType", AttributeObjectType::Message, AttributeValueType::Enum);
        attribute.enumValues = EnumList({"Cyclic", "Event"});
        attribute.enumIndex = index;
        database.data.attributes.AddDefinition(attribute);
        attribute.objectId = 100;
        attribute.enumIndex = 1;
        database.data.attributes.AddValue(attribute);
        database.Apply({});
        EXPECT_EQ(database.Message(0).sendType, "Event");
        EXPECT_EQ(database.Message(1).sendType, "");
    }
}

TEST(WellKnownSendType, ComesFromTheListOfTheValue) {
    SmallDatabase database;
    Attribute attribute = MakeAttribute("GenMsgSendType", AttributeObjectType::Message, AttributeValueType::Enum);
    attribute.enumValues = EnumList({"Cyclic", "Event"});
    database.data.attributes.AddDefinition(attribute);
    attribute.objectId = 100;
    attribute.enumIndex = 2;
    attribute.enumValues = EnumList({"A", "B", "C"});
    database.data.attributes.AddValue(attribute);
    database.Apply({});
    EXPECT_EQ(database.Message(0).sendType, "C");
    EXPECT_EQ(database.Message(1).sendType, "Cyclic");
}

TEST(WellKnownCycleTime, ValueOrElseTheDefaultReachesEveryMessage) {
    const AttributedRow rows[] = {
        {{"BA_DEF_ BO_ \"GenMsgCycleTime\" INT 0 10000;", "BA_DEF_DEF_ \"GenMsgCycleTime\" 100;",
          "BA_ \"GenMsgCycleTime\" BO_ 200 20;"},
         {"Engine/Engine [] 100", "  Speed/Speed 0 0", "  Torque/Torque 0 0", "Brake/Brake [] 20",
          "  Speed/Speed 0 0"}},
        {{"BA_DEF_ BO_ \"GenMsgCycleTime\" INT 0 10000;", "BA_ \"GenMsgCycleTime\" BO_ 100 20;"},
         {"Engine/Engine [] 20", "  Speed/Speed 0 0", "  Torque/Torque 0 0", "Brake/Brake [] 0", "  Speed/Speed 0 0"}},
        {{"BA_DEF_ BO_ \"GenMsgCycleTime\" INT 0 10000;", "BA_DEF_DEF_ \"GenMsgCycleTime\" 1;",
          "BA_ \"GenMsgCycleTime\" BO_ 200 0;"},
         {"Engine/Engine [] 1", "  Speed/Speed 0 0", "  Torque/Torque 0 0", "Brake/Brake [] 0", "  Speed/Speed 0 0"}},
        // The bits of a negative number stay.
        {{"BA_DEF_ BO_ \"GenMsgCycleTime\" INT -10 100;", "BA_DEF_DEF_ \"GenMsgCycleTime\" -2;"},
         {"Engine/Engine [] 4294967294", "  Speed/Speed 0 0", "  Torque/Torque 0 0", "Brake/Brake [] 4294967294",
          "  Speed/Speed 0 0"}},
        // Of another kind, or with numbers that do not exist here.
        {{"BA_DEF_ BO_ \"GenMsgCycleTime\" FLOAT 0 1000;", "BA_DEF_DEF_ \"GenMsgCycleTime\" 100;",
          "BA_ \"GenMsgCycleTime\" BO_ 100 20;"},
         kUnattributed},
        {{"BA_DEF_ \"GenMsgCycleTime\" INT 0 1000;", "BA_DEF_DEF_ \"GenMsgCycleTime\" 100;"}, kUnattributed},
        {{"BA_DEF_ SG_ \"GenMsgCycleTime\" INT 0 1000;", "BA_DEF_DEF_ \"GenMsgCycleTime\" 100;"}, kUnattributed},
        {{"BA_DEF_ BO_ \"GenMsgCycleTime\" STRING;", "BA_DEF_DEF_ \"GenMsgCycleTime\" \"100\";"}, kUnattributed},
        {{"BA_DEF_ BO_ \"GenMsgCycleTime\" ENUM \"0\",\"1\";", "BA_DEF_DEF_ \"GenMsgCycleTime\" 1;"}, kUnattributed},
    };
    for (const AttributedRow& row : rows) {
        ExpectApplied(row);
    }
}

// Not the lower bound, although 0 is outside the range.
TEST(WellKnownCycleTime, OfADefinitionWithoutADefaultIsZero) {
    SmallDatabase database;
    database.Apply({"BA_DEF_ BO_ \"GenMsgCycleTime\" INT 10 1000;"});
    EXPECT_EQ(DescribeAttributed(database.data), kUnattributed);
}

TEST(WellKnownMessageName, LosesTheControlCharactersOfItsText) {
    const struct {
        const char* text;
        const char* expected;
    } rows[] = {
        {"Engine\tdata", "Engine data"},
        {"a\tb\nc\vd\fe\rf", "a b c d e f"},
        {"\t\r\n", "   "},
        {"a \t b", "a   b"},
        {"a\bb\x1F"
         "c\x7F"
         "d",
         "a\bb\x1F"
         "c\x7F"
         "d"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.text));
        SmallDatabase database;
        Attribute attribute =
            MakeAttribute("Kestrune_Msg_Name", AttributeObjectType::Message, AttributeValueType::String);
        database.data.attributes.AddDefinition(attribute);
        attribute.objectId = 100;
        attribute.stringValue = row.text;
        database.data.attributes.AddValue(attribute);
        database.Apply({});
        EXPECT_EQ(database.Message(0).name, row.expected);
        EXPECT_EQ(database.Message(0).identifierName, "Engine");
    }
}

TEST(WellKnownMessageName, CanBecomeEmpty) {
    SmallDatabase database;
    Attribute attribute = MakeAttribute("Kestrune_Msg_Name", AttributeObjectType::Message, AttributeValueType::String);
    database.data.attributes.AddDefinition(attribute);
    attribute.objectId = 100;
    database.data.attributes.AddValue(attribute);
    database.Apply({});
    EXPECT_EQ(database.Message(0).name, "");
    EXPECT_EQ(database.Message(0).identifierName, "Engine");
}

TEST(WellKnownAttributes, NamesakesShareTheTextOfALongName) {
    SmallDatabase database;
    database.AddMessage(100, "Engine2", {"Speed"});
    database.Apply({"BA_DEF_ BO_ \"Kestrune_Msg_Name\" STRING ;", "BA_DEF_ SG_ \"Kestrune_Sig_Name\" STRING ;",
                    "BA_ \"Kestrune_Msg_Name\" BO_ 100 \"Engine\tData\";",
                    "BA_ \"Kestrune_Sig_Name\" SG_ 100 Speed \"Engine\tspeed\";"});
    EXPECT_EQ(database.Message(0).name, "Engine Data");
    EXPECT_EQ(database.Message(2).name, "Engine Data");
    EXPECT_EQ(database.Message(2).name.data(), database.Message(0).name.data());
    EXPECT_EQ(database.Signal(0, 0).name, "Engine speed");
    EXPECT_EQ(database.Signal(2, 0).name, "Engine speed");
    EXPECT_EQ(database.Signal(2, 0).name.data(), database.Signal(0, 0).name.data());
    EXPECT_EQ(database.Signal(1, 0).name, "Speed");
}

}  // namespace
}  // namespace tabrin
