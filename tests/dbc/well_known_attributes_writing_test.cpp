#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "dbc/well_known_attributes.h"
#include "dbc/writing.h"
#include "io/dbc_file_stream.h"
#include "model/can_database.h"

namespace tabrin {
namespace {

// What is written for the messages of the database in their own order.
std::string AttributeText(const CANDatabase& database) {
    return StreamBytes([&](DbcFileStream& stream) {
        WriteWellKnownAttributes(stream, database.info, database.messages, LinesBehind(database.messages).longNames);
    });
}

TEST(WellKnownAttributesText, OfCanFdAndJ1939WithOneLongName) {
    CANDatabase database;
    database.info = {TABRIN_PROTOCOL_J1939, 1};
    AddMessage(database, {.id = 256, .name = "Engine data"});
    EXPECT_EQ(AttributeText(database),
              "BA_DEF_ \"BusType\" STRING ;\r\n"
              "BA_DEF_ \"J1939PGN\" INT 0 1;\r\n"
              "BA_DEF_ BO_ \"Kestrune_Msg_Name\" STRING ;\r\n"
              "BA_DEF_DEF_ \"BusType\" \"CAN FD\";\r\n"
              "BA_DEF_DEF_ \"J1939PGN\" 1;\r\n"
              "BA_DEF_DEF_ \"Kestrune_Msg_Name\" \"\";\r\n"
              "BA_ \"Kestrune_Msg_Name\" BO_ 256 \"Engine data\";\r\n");
}

TEST(WellKnownAttributesText, OfTheDatabaseInformation) {
    const std::string busType = "BA_DEF_ \"BusType\" STRING ;\r\n";
    const std::string busTypeDefault = "BA_DEF_DEF_ \"BusType\" \"CAN FD\";\r\n";
    const std::string j1939 = "BA_DEF_ \"J1939PGN\" INT 0 1;\r\n";
    const std::string j1939Default = "BA_DEF_DEF_ \"J1939PGN\" 1;\r\n";
    const std::string nmea = "BA_DEF_ \"IsNMEA\" INT 0 1;\r\n";
    const std::string nmeaDefault = "BA_DEF_DEF_ \"IsNMEA\" 1;\r\n";
    const struct {
        uint32_t protocolType;
        uint32_t canFd;
        std::string expected;
    } rows[] = {
        {0, 0, ""},
        {0, 1, busType + busTypeDefault},
        {1, 0, j1939 + j1939Default},
        {2, 0, nmea + nmeaDefault},
        {1, 1, busType + j1939 + busTypeDefault + j1939Default},
        {2, 1, busType + nmea + busTypeDefault + nmeaDefault},
        // Values outside the lists have no attribute form.
        {0, 2, ""},
        {0, 4294967295U, ""},
        {3, 0, ""},
        {7, 0, ""},
        {4294967295U, 0, ""},
        {7, 2, ""},
        {7, 1, busType + busTypeDefault},
        {2, 2, nmea + nmeaDefault},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << "protocol " << row.protocolType << ", CAN FD " << row.canFd);
        CANDatabase database;
        AddSignal(AddMessage(database));
        database.info = {row.protocolType, row.canFd};
        EXPECT_EQ(AttributeText(database), row.expected);
        EXPECT_EQ(database.info.protocolType, row.protocolType);
        EXPECT_EQ(database.info.canFd, row.canFd);
    }
}

TEST(WellKnownAttributesText, IsThereWithoutMessages) {
    CANDatabase database;
    database.info.canFd = 1;
    EXPECT_EQ(AttributeText(database), "BA_DEF_ \"BusType\" STRING ;\r\nBA_DEF_DEF_ \"BusType\" \"CAN FD\";\r\n");
}

TEST(WellKnownAttributesText, OfMessagesHasThoseWhoseNamesDiffer) {
    CANDatabase database;
    AddMessage(database, {.id = 5, .name = "Same"});
    AddMessage(database, {.id = 2364540158U, .name = "Motor \xC3\xA4"});
    AddMessage(database, {.id = 4, .name = "_Same2"});
    AddMessage(database, {.id = 3, .name = "1st"});
    EXPECT_EQ(AttributeText(database),
              "BA_DEF_ BO_ \"Kestrune_Msg_Name\" STRING ;\r\n"
              "BA_DEF_DEF_ \"Kestrune_Msg_Name\" \"\";\r\n"
              "BA_ \"Kestrune_Msg_Name\" BO_ 2364540158 \"Motor \xC3\xA4\";\r\n"
              "BA_ \"Kestrune_Msg_Name\" BO_ 3 \"1st\";\r\n");
}

TEST(WellKnownAttributesText, ComparesNamesByteByByte) {
    CANDatabase database;
    AddMessage(database, {.id = 1, .name = "Name"}).name = "name";
    AddSignal(AddMessage(database, {.id = 2, .name = "Other"}), {.name = "Signal"}).name = "";
    EXPECT_EQ(AttributeText(database),
              "BA_DEF_ BO_ \"Kestrune_Msg_Name\" STRING ;\r\n"
              "BA_DEF_ SG_ \"Kestrune_Sig_Name\" STRING ;\r\n"
              "BA_DEF_DEF_ \"Kestrune_Msg_Name\" \"\";\r\n"
              "BA_DEF_DEF_ \"Kestrune_Sig_Name\" \"\";\r\n"
              "BA_ \"Kestrune_Msg_Name\" BO_ 1 \"name\";\r\n"
              "BA_ \"Kestrune_Sig_Name\" SG_ 2 Signal \"\";\r\n");
}

TEST(WellKnownAttributesText, HasNoNamesThatAreEqualInOtherMemory) {
    const std::string messageName = "Msg";
    const std::string signalName = "S";
    CANDatabase database;
    CANMessage& message = AddMessage(database);
    AddSignal(message).name = signalName;
    message.name = messageName;
    EXPECT_EQ(AttributeText(database), "");
}

TEST(WellKnownAttributesText, OfSignalsHasThoseWhoseNamesDiffer) {
    CANDatabase database;
    CANMessage& first = AddMessage(database, {.id = 9, .name = "First"});
    AddSignal(first, {.name = "Same"});
    AddSignal(first, {.name = "Z z"});
    AddSignal(first, {.name = "A a"});
    AddSignal(AddMessage(database, {.id = 8, .name = "Second"}), {.name = "Z z"});
    AddSignal(AddMessage(database, {.id = 7, .name = "Third"}), {.name = "Same"});
    EXPECT_EQ(AttributeText(database),
              "BA_DEF_ SG_ \"Kestrune_Sig_Name\" STRING ;\r\n"
              "BA_DEF_DEF_ \"Kestrune_Sig_Name\" \"\";\r\n"
              "BA_ \"Kestrune_Sig_Name\" SG_ 9 Z_z \"Z z\";\r\n"
              "BA_ \"Kestrune_Sig_Name\" SG_ 9 A_a \"A a\";\r\n"
              "BA_ \"Kestrune_Sig_Name\" SG_ 8 Z_z \"Z z\";\r\n");
}

TEST(WellKnownAttributesText, OfSignalsWhoseNamesAreIdentifiersIsEmpty) {
    CANDatabase database;
    CANMessage& message = AddMessage(database, {.id = 9, .name = "First"});
    AddSignal(message, {.name = "Speed"});
    AddSignal(message, {.name = "_2"});
    EXPECT_EQ(AttributeText(database), "");
}

TEST(WellKnownAttributesText, OfEverything) {
    CANDatabase database;
    database.info = {TABRIN_PROTOCOL_NMEA2000, 1};
    CANMessage& engine = AddMessage(database, {.id = 300, .name = "Engine data"});
    AddSignal(engine, {.name = "Engine speed"});
    AddSignal(engine, {.name = "Torque"});
    CANMessage& brake = AddMessage(database, {.id = 100, .name = "Brake"});
    AddSignal(brake, {.name = "Pedal %"});
    CANMessage& gear = AddMessage(database, {.id = 2147483748U, .name = "Gear \"box\""});
    AddSignal(gear, {.name = "Gear"});
    // What has an attribute form only in reading.
    engine.sendType = "Cyclic";
    engine.cycleTime = 100;
    engine.signals[0]->startValue = 5;
    engine.signals[0]->inactiveValue = 6;
    EXPECT_EQ(AttributeText(database),
              "BA_DEF_ \"BusType\" STRING ;\r\n"
              "BA_DEF_ \"IsNMEA\" INT 0 1;\r\n"
              "BA_DEF_ BO_ \"Kestrune_Msg_Name\" STRING ;\r\n"
              "BA_DEF_ SG_ \"Kestrune_Sig_Name\" STRING ;\r\n"
              "BA_DEF_DEF_ \"BusType\" \"CAN FD\";\r\n"
              "BA_DEF_DEF_ \"IsNMEA\" 1;\r\n"
              "BA_DEF_DEF_ \"Kestrune_Msg_Name\" \"\";\r\n"
              "BA_DEF_DEF_ \"Kestrune_Sig_Name\" \"\";\r\n"
              "BA_ \"Kestrune_Msg_Name\" BO_ 300 \"Engine data\";\r\n"
              "BA_ \"Kestrune_Msg_Name\" BO_ 2147483748 \"Gear \"box\"\";\r\n"
              "BA_ \"Kestrune_Sig_Name\" SG_ 300 Engine_speed \"Engine speed\";\r\n"
              "BA_ \"Kestrune_Sig_Name\" SG_ 100 Pedal__ \"Pedal %\";\r\n");
}

// The list that is passed decides, not the database.
TEST(WellKnownAttributesText, FollowsTheOrderOfTheList) {
    CANDatabase database;
    AddSignal(AddMessage(database, {.id = 1, .name = "One 1"}), {.name = "A a"});
    AddSignal(AddMessage(database, {.id = 2, .name = "Two 2"}), {.name = "B b"});
    const CANDatabase::Messages reversed(database.messages.rbegin(), database.messages.rend());
    EXPECT_EQ(StreamBytes([&](DbcFileStream& stream) {
                  WriteWellKnownAttributes(stream, DatabaseInfo{0, 0}, reversed, LinesBehind(reversed).longNames);
              }),
              "BA_DEF_ BO_ \"Kestrune_Msg_Name\" STRING ;\r\n"
              "BA_DEF_ SG_ \"Kestrune_Sig_Name\" STRING ;\r\n"
              "BA_DEF_DEF_ \"Kestrune_Msg_Name\" \"\";\r\n"
              "BA_DEF_DEF_ \"Kestrune_Sig_Name\" \"\";\r\n"
              "BA_ \"Kestrune_Msg_Name\" BO_ 2 \"Two 2\";\r\n"
              "BA_ \"Kestrune_Msg_Name\" BO_ 1 \"One 1\";\r\n"
              "BA_ \"Kestrune_Sig_Name\" SG_ 2 B_b \"B b\";\r\n"
              "BA_ \"Kestrune_Sig_Name\" SG_ 1 A_a \"A a\";\r\n");
}

TEST(WellKnownAttributesText, HasOneNameForSeveralMessagesOfOneIdentifier) {
    CANDatabase database;
    AddMessage(database, {.id = 100, .name = "Plain"});
    AddMessage(database, {.id = 100, .name = "First name"});
    AddMessage(database, {.id = 100, .name = "Second name"});
    EXPECT_EQ(AttributeText(database),
              "BA_DEF_ BO_ \"Kestrune_Msg_Name\" STRING ;\r\n"
              "BA_DEF_DEF_ \"Kestrune_Msg_Name\" \"\";\r\n"
              "BA_ \"Kestrune_Msg_Name\" BO_ 100 \"First name\";\r\n");
}

TEST(WellKnownAttributesText, HasOneNameForSeveralSignalsOfOneIdentifier) {
    CANDatabase database;
    AddSignal(AddMessage(database, {.id = 100, .name = "A"}), {.name = "Engine_speed"});
    CANMessage& message = AddMessage(database, {.id = 100, .name = "B"});
    AddSignal(message, {.name = "Engine speed"});
    AddSignal(message, {.name = "Engine-speed"});
    AddSignal(AddMessage(database, {.id = 100, .name = "C"}), {.name = "Engine/speed"});
    AddSignal(AddMessage(database, {.id = 101, .name = "D"}), {.name = "Engine+speed"});
    EXPECT_EQ(AttributeText(database),
              "BA_DEF_ SG_ \"Kestrune_Sig_Name\" STRING ;\r\n"
              "BA_DEF_DEF_ \"Kestrune_Sig_Name\" \"\";\r\n"
              "BA_ \"Kestrune_Sig_Name\" SG_ 100 Engine_speed \"Engine speed\";\r\n"
              "BA_ \"Kestrune_Sig_Name\" SG_ 101 Engine_speed \"Engine+speed\";\r\n");
}

TEST(WellKnownAttributesText, DoesNotDependOnTheStoreOfTheDatabase) {
    CANDatabase database;
    AddMessage(database);
    Attribute leftover;
    leftover.name = "BusType";
    database.attributes.AddDefinition(leftover);
    EXPECT_EQ(AttributeText(database), "");
}

TEST(WellKnownAttributesText, IsNotWrittenToAStreamThatIsNotOpen) {
    CANDatabase database;
    database.info.canFd = 1;
    DbcFileStream stream;
    WriteWellKnownAttributes(stream, database.info, database.messages, LinesBehind(database.messages).longNames);
    EXPECT_EQ(stream.Status(), FileStatus::Closed);
    // A line that was tried all the same would be told of here.
    stream.Close();
    EXPECT_EQ(stream.Status(), FileStatus::Closed);
}

TEST(WellKnownAttributesText, IsNotWrittenToAStreamOpenForReading) {
    CANDatabase database;
    database.info.canFd = 1;
    const TemporaryFile file("VERSION \"\"\n");
    DbcFileStream stream;
    stream.Open(file.Path().c_str(), kPathBufferSize, OpenMode::Read);
    WriteWellKnownAttributes(stream, database.info, database.messages, LinesBehind(database.messages).longNames);
    EXPECT_EQ(stream.Status(), FileStatus::Reading);
    stream.Close();
    EXPECT_EQ(FileBytes(file.Path()), "VERSION \"\"\n");
}

}  // namespace
}  // namespace tabrin
