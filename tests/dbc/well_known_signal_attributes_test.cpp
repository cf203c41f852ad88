#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "dbc/small_database.h"
#include "model/attribute_text.h"
#include "model/can_database.h"
#include "model/own_arena.h"

namespace tabrin {
namespace {

using Texts = std::vector<std::string>;

TEST(WellKnownSignalName, ValueReplacesTheLongNameOnly) {
    const char* const definition = "BA_DEF_ SG_ \"Kestrune_Sig_Name\" STRING ;";
    const AttributedRow rows[] = {
        {{definition, "BA_ \"Kestrune_Sig_Name\" SG_ 100 Speed \"Engine speed\";"},
         {"Engine/Engine [] 0", "  Engine speed/Speed 0 0", "  Torque/Torque 0 0", "Brake/Brake [] 0",
          "  Speed/Speed 0 0"}},
        {{definition, "BA_ \"Kestrune_Sig_Name\" SG_ 200 Speed \"b\";",
          "BA_ \"Kestrune_Sig_Name\" SG_ 100 Torque \"a\";"},
         {"Engine/Engine [] 0", "  Speed/Speed 0 0", "  a/Torque 0 0", "Brake/Brake [] 0", "  b/Speed 0 0"}},
        // The default is not used.
        {{definition, "BA_DEF_DEF_ \"Kestrune_Sig_Name\" \"Default\";",
          "BA_ \"Kestrune_Sig_Name\" SG_ 100 Speed \"a\";"},
         {"Engine/Engine [] 0", "  a/Speed 0 0", "  Torque/Torque 0 0", "Brake/Brake [] 0", "  Speed/Speed 0 0"}},
        // Nothing to apply, or of another kind.
        {{definition}, kUnattributed},
        {{definition, "BA_ \"Kestrune_Sig_Name\" SG_ 200 Torque \"x\";"}, kUnattributed},
        {{definition, "BA_ \"Kestrune_Sig_Name\" SG_ 100 speed \"x\";"}, kUnattributed},
        {{definition, "BA_ \"Kestrune_Sig_Name\" SG_ 300 Speed \"x\";"}, kUnattributed},
        {{definition, "BA_ \"Kestrune_Sig_Name\" BO_ 100 \"x\";"}, kUnattributed},
        {{"BA_DEF_ BO_ \"Kestrune_Sig_Name\" STRING ;", "BA_ \"Kestrune_Sig_Name\" BO_ 100 \"x\";"}, kUnattributed},
        {{"BA_DEF_ \"Kestrune_Sig_Name\" STRING ;", "BA_ \"Kestrune_Sig_Name\" \"x\";"}, kUnattributed},
        {{"BA_DEF_ SG_ \"Kestrune_Sig_Name\" ENUM \"x\";", "BA_ \"Kestrune_Sig_Name\" SG_ 100 Speed 0;"},
         kUnattributed},
        {{"BA_DEF_ SG_ \"Kestrune_Sig_Name\" INT 0 9;", "BA_ \"Kestrune_Sig_Name\" SG_ 100 Speed 1;"}, kUnattributed},
    };
    for (const AttributedRow& row : rows) {
        ExpectApplied(row);
    }
}

TEST(WellKnownSignalNumbers, ValueOrElseTheDefaultReachesEverySignal) {
    const AttributedRow rows[] = {
        {{"BA_DEF_ SG_ \"GenSigStartValue\" INT 0 100;", "BA_DEF_DEF_ \"GenSigStartValue\" 5;",
          "BA_ \"GenSigStartValue\" SG_ 100 Torque 6;"},
         {"Engine/Engine [] 0", "  Speed/Speed 5 0", "  Torque/Torque 6 0", "Brake/Brake [] 0", "  Speed/Speed 5 0"}},
        {{"BA_DEF_ SG_ \"GenSigInactiveValue\" INT 0 100;", "BA_DEF_DEF_ \"GenSigInactiveValue\" 5;",
          "BA_ \"GenSigInactiveValue\" SG_ 200 Speed 6;"},
         {"Engine/Engine [] 0", "  Speed/Speed 0 5", "  Torque/Torque 0 5", "Brake/Brake [] 0", "  Speed/Speed 0 6"}},
        {{"BA_DEF_ SG_ \"GenSigStartValue\" INT 0 9;", "BA_DEF_ SG_ \"GenSigInactiveValue\" INT 0 9;",
          "BA_ \"GenSigStartValue\" SG_ 100 Speed 1;", "BA_ \"GenSigInactiveValue\" SG_ 100 Speed 2;"},
         {"Engine/Engine [] 0", "  Speed/Speed 1 2", "  Torque/Torque 0 0", "Brake/Brake [] 0", "  Speed/Speed 0 0"}},
        {{"BA_DEF_ SG_ \"GenSigStartValue\" INT 0 9;", "BA_DEF_DEF_ \"GenSigStartValue\" 1;",
          "BA_DEF_ SG_ \"GenSigInactiveValue\" INT 0 9;", "BA_DEF_DEF_ \"GenSigInactiveValue\" 1;",
          "BA_ \"GenSigStartValue\" SG_ 100 Speed 0;", "BA_ \"GenSigInactiveValue\" SG_ 200 Speed 0;"},
         {"Engine/Engine [] 0", "  Speed/Speed 0 1", "  Torque/Torque 1 1", "Brake/Brake [] 0", "  Speed/Speed 1 0"}},
        // The bits of a negative number stay.
        {{"BA_DEF_ SG_ \"GenSigStartValue\" INT -9 9;", "BA_DEF_DEF_ \"GenSigStartValue\" -1;",
          "BA_DEF_ SG_ \"GenSigInactiveValue\" INT -9 9;", "BA_DEF_DEF_ \"GenSigInactiveValue\" -2;"},
         {"Engine/Engine [] 0", "  Speed/Speed 4294967295 4294967294", "  Torque/Torque 4294967295 4294967294",
          "Brake/Brake [] 0", "  Speed/Speed 4294967295 4294967294"}},
        // Of another kind.
        {{"BA_DEF_ SG_ \"GenSigStartValue\" FLOAT 0 9;", "BA_DEF_DEF_ \"GenSigStartValue\" 5;"}, kUnattributed},
        {{"BA_DEF_ BO_ \"GenSigStartValue\" INT 0 9;", "BA_DEF_DEF_ \"GenSigStartValue\" 5;"}, kUnattributed},
        {{"BA_DEF_ \"GenSigStartValue\" INT 0 9;", "BA_DEF_DEF_ \"GenSigStartValue\" 5;"}, kUnattributed},
        {{"BA_DEF_ SG_ \"GenSigStartValue\" STRING;", "BA_DEF_DEF_ \"GenSigStartValue\" \"5\";"}, kUnattributed},
        {{"BA_DEF_ SG_ \"GenSigStartValue\" ENUM \"0\",\"1\";", "BA_DEF_DEF_ \"GenSigStartValue\" 1;"}, kUnattributed},
        {{"BA_DEF_ BO_ \"GenSigInactiveValue\" INT 0 9;", "BA_DEF_DEF_ \"GenSigInactiveValue\" 5;"}, kUnattributed},
        {{"BA_DEF_ \"GenSigInactiveValue\" INT 0 9;", "BA_DEF_DEF_ \"GenSigInactiveValue\" 5;"}, kUnattributed},
        {{"BA_DEF_ SG_ \"GenSigInactiveValue\" STRING;", "BA_DEF_DEF_ \"GenSigInactiveValue\" \"5\";"}, kUnattributed},
        {{"BA_DEF_ SG_ \"GenSigInactiveValue\" ENUM \"0\",\"1\";", "BA_DEF_DEF_ \"GenSigInactiveValue\" 1;"},
         kUnattributed},
    };
    for (const AttributedRow& row : rows) {
        ExpectApplied(row);
    }
}

// Not the lower bound, although 0 is outside the range.
TEST(WellKnownSignalNumbers, OfADefinitionWithoutADefaultAreZero) {
    SmallDatabase database;
    database.Apply({"BA_DEF_ SG_ \"GenSigStartValue\" INT 1 9;", "BA_DEF_ SG_ \"GenSigInactiveValue\" INT 1 9;"});
    EXPECT_EQ(DescribeAttributed(database.data), kUnattributed);
}

// They are raw values: neither scaled nor held against the range of the signal.
TEST(WellKnownSignalNumbers, AreNotScaled) {
    SmallDatabase database;
    database.Signal(0, 0).factor = 0.5;
    database.Signal(0, 0).offset = 10.0;
    database.Signal(0, 0).maximum = 1.0;
    database.Apply({"BA_DEF_ SG_ \"GenSigStartValue\" INT 0 1000;", "BA_ \"GenSigStartValue\" SG_ 100 Speed 500;",
                    "BA_DEF_ SG_ \"GenSigInactiveValue\" INT 0 1000;", "BA_DEF_DEF_ \"GenSigInactiveValue\" 700;"});
    EXPECT_EQ(database.Signal(0, 0).startValue, 500U);
    EXPECT_EQ(database.Signal(0, 0).inactiveValue, 700U);
}

TEST(WellKnownSignalName, LosesTheControlCharactersOfItsText) {
    SmallDatabase database;
    Attribute attribute = MakeAttribute("Kestrune_Sig_Name", AttributeObjectType::Signal, AttributeValueType::String);
    database.data.attributes.AddDefinition(attribute);
    attribute.objectId = 100;
    attribute.signalName = "Speed";
    attribute.stringValue = "\ta\tb\nc\vd\fe\rf\b";
    database.data.attributes.AddValue(attribute);
    database.Apply({});
    EXPECT_EQ(database.Signal(0, 0).name, " a b c d e f\b");
    EXPECT_EQ(database.Signal(0, 0).identifierName, "Speed");
}

TEST(WellKnownSignalAttributes, GoByTheIdentifierFormOfTheName) {
    SmallDatabase database;
    const CANSignal& signal = database.AddSignal("Engine speed", "Engine_speed");
    database.Apply({"BA_DEF_ SG_ \"GenSigStartValue\" INT 0 9;", "BA_DEF_ SG_ \"GenSigInactiveValue\" INT 0 9;",
                    "BA_ \"GenSigStartValue\" SG_ 200 Engine_speed 3;",
                    "BA_ \"GenSigInactiveValue\" SG_ 200 Engine_speed 4;"});
    EXPECT_EQ(signal.startValue, 3U);
    EXPECT_EQ(signal.inactiveValue, 4U);
}

// The long name that an attribute gives is no name to look up by, not even for the attributes applied after it.
TEST(WellKnownSignalAttributes, DoNotGoByTheNewLongName) {
    SmallDatabase database;
    database.Apply({"BA_DEF_ SG_ \"Kestrune_Sig_Name\" STRING;", "BA_DEF_ SG_ \"GenSigStartValue\" INT 0 9;",
                    "BA_ \"Kestrune_Sig_Name\" SG_ 100 Speed \"Rpm\";", "BA_ \"GenSigStartValue\" SG_ 100 Rpm 3;"});
    EXPECT_EQ(database.Signal(0, 0).name, "Rpm");
    EXPECT_EQ(database.Signal(0, 0).startValue, 0U);
}

TEST(WellKnownSignalAttributes, ReachAllSignalsOfOneNameInAMessage) {
    SmallDatabase database;
    database.AddMessage(300, "Twice", {"Same", "Other", "Same"});
    database.Apply({"BA_DEF_ SG_ \"Kestrune_Sig_Name\" STRING;", "BA_ \"Kestrune_Sig_Name\" SG_ 300 Same \"long\";"});
    EXPECT_EQ(database.Signal(2, 0).name, "long");
    EXPECT_EQ(database.Signal(2, 1).name, "Other");
    EXPECT_EQ(database.Signal(2, 2).name, "long");
}

TEST(WellKnownSignalAttributes, FindTheirSignalAmongMany) {
    for (const size_t count : {15U, 31U, 32U, 33U, 500U}) {
        SCOPED_TRACE(count);
        std::vector<std::string> names;
        for (size_t i = 0; i < count; ++i) {
            names.push_back("S" + std::to_string(i % (count - 1)));  // the last one has the name of the first
        }
        SmallDatabase database;
        const CANMessage& message = database.AddMessage(300, "Many", std::vector<const char*>());
        for (const std::string& name : names) {
            database.AddSignal("read " + name, name);
        }
        database.Apply({"BA_DEF_ SG_ \"Kestrune_Sig_Name\" STRING;", "BA_ \"Kestrune_Sig_Name\" SG_ 300 S0 \"zero\";",
                        "BA_ \"Kestrune_Sig_Name\" SG_ 300 S12 \"twelve\";",
                        "BA_ \"Kestrune_Sig_Name\" SG_ 300 S1000 \"none\";",
                        "BA_DEF_ SG_ \"GenSigStartValue\" INT 0 9;", "BA_DEF_DEF_ \"GenSigStartValue\" 7;",
                        "BA_ \"GenSigStartValue\" SG_ 300 S13 3;"});
        for (size_t i = 0; i < count; ++i) {
            SCOPED_TRACE(i);
            const std::string expected = i == 0 || i == count - 1 ? "zero" : i == 12 ? "twelve" : "read " + names[i];
            EXPECT_EQ(message.signals[i]->name, expected);
            EXPECT_EQ(message.signals[i]->startValue, i == 13 ? 3U : 7U);
        }
    }
}

TEST(WellKnownAttributes, ReachAllMessagesOfOneIdentifier) {
    SmallDatabase database;
    database.AddMessage(100, "Again", {"Speed", "Gear"});
    database.Apply({"BA_DEF_ BO_ \"Kestrune_Msg_Name\" STRING;", "BA_ \"Kestrune_Msg_Name\" BO_ 100 \"long\";",
                    "BA_DEF_ BO_ \"GenMsgCycleTime\" INT 0 99;", "BA_ \"GenMsgCycleTime\" BO_ 100 20;",
                    "BA_DEF_ BO_ \"GenMsgSendType\" ENUM \"A\",\"B\";", "BA_ \"GenMsgSendType\" BO_ 100 1;",
                    "BA_DEF_ SG_ \"Kestrune_Sig_Name\" STRING;", "BA_ \"Kestrune_Sig_Name\" SG_ 100 Speed \"v\";",
                    "BA_DEF_ SG_ \"GenSigStartValue\" INT 0 9;", "BA_ \"GenSigStartValue\" SG_ 100 Speed 1;",
                    "BA_DEF_ SG_ \"GenSigInactiveValue\" INT 0 9;", "BA_ \"GenSigInactiveValue\" SG_ 100 Speed 2;"});
    EXPECT_EQ(DescribeAttributed(database.data),
              (Texts{"long/Engine [B] 20", "  v/Speed 1 2", "  Torque/Torque 0 0",  //
                     "Brake/Brake [A] 0", "  Speed/Speed 0 0",                      //
                     "long/Again [B] 20", "  v/Speed 1 2", "  Gear/Gear 0 0"}));
}

// The first value of an object stays, and with several messages of one identifier it stays for all of them.
TEST(WellKnownAttributes, FirstValueStays) {
    SmallDatabase database;
    database.AddMessage(100, "Again", {"Speed", "Gear", "Speed"});
    database.Apply({"BA_DEF_ BO_ \"Kestrune_Msg_Name\" STRING;", "BA_DEF_ BO_ \"GenMsgCycleTime\" INT 0 99;",
                    "BA_DEF_DEF_ \"GenMsgCycleTime\" 7;", "BA_DEF_ BO_ \"GenMsgSendType\" ENUM \"A\",\"B\",\"C\";",
                    "BA_DEF_ SG_ \"Kestrune_Sig_Name\" STRING;", "BA_DEF_ SG_ \"GenSigStartValue\" INT 0 9;",
                    "BA_DEF_DEF_ \"GenSigStartValue\" 8;", "BA_DEF_ SG_ \"GenSigInactiveValue\" INT 0 9;",
                    "BA_ \"Kestrune_Msg_Name\" BO_ 100 \"first\";", "BA_ \"Kestrune_Msg_Name\" BO_ 100 \"second\";",
                    // One that the definition does not take is no value.
                    "BA_ \"GenMsgCycleTime\" BO_ 100 100;", "BA_ \"GenMsgCycleTime\" BO_ 100 0;",
                    "BA_ \"GenMsgCycleTime\" BO_ 100 20;", "BA_ \"GenMsgSendType\" BO_ 100 2;",
                    "BA_ \"GenMsgSendType\" BO_ 200 1;", "BA_ \"GenMsgSendType\" BO_ 100 1;",
                    "BA_ \"Kestrune_Sig_Name\" SG_ 100 Speed \"v\";", "BA_ \"GenSigStartValue\" SG_ 100 Speed 1;",
                    "BA_ \"GenSigInactiveValue\" SG_ 100 Speed 2;", "BA_ \"GenSigStartValue\" SG_ 200 Speed 4;",
                    "BA_ \"GenSigStartValue\" SG_ 100 Gear 5;", "BA_ \"GenSigStartValue\" SG_ 100 Speed 3;",
                    "BA_ \"GenSigInactiveValue\" SG_ 100 Speed 0;", "BA_ \"Kestrune_Sig_Name\" SG_ 100 Speed \"w\";",
                    "BA_ \"GenSigStartValue\" SG_ 100 Gear 6;"});
    EXPECT_EQ(DescribeAttributed(database.data),
              (Texts{"first/Engine [C] 0", "  v/Speed 1 2", "  Torque/Torque 8 0",  //
                     "Brake/Brake [B] 7", "  Speed/Speed 4 0",                      //
                     "first/Again [C] 0", "  v/Speed 1 2", "  Gear/Gear 5 0", "  v/Speed 1 2"}));
}

// Signals of different names can have one identifier name; the values mean all of them.
TEST(WellKnownAttributes, FirstValueOfAnIdentifierNameStays) {
    SmallDatabase database;
    for (int copy = 0; copy < 2; ++copy) {
        database.AddMessage(300, "Alike", std::vector<const char*>());
        for (const char* name : {"My Sig", "My_Sig", "My-Sig"}) {
            database.AddSignal(name, "My_Sig");
        }
        database.AddSignal("Other", "Other");
    }
    database.Apply({"BA_DEF_ SG_ \"Kestrune_Sig_Name\" STRING;", "BA_DEF_ SG_ \"GenSigStartValue\" INT 0 9;",
                    "BA_ \"GenSigStartValue\" SG_ 300 My_Sig 0;", "BA_ \"Kestrune_Sig_Name\" SG_ 300 My_Sig \"one\";",
                    "BA_ \"GenSigStartValue\" SG_ 300 My_Sig 4;", "BA_ \"Kestrune_Sig_Name\" SG_ 300 My_Sig \"two\";",
                    "BA_ \"GenSigStartValue\" SG_ 300 Other 5;"});
    for (size_t message = 2; message < 4; ++message) {
        for (size_t i = 0; i < 3; ++i) {
            EXPECT_EQ(database.Signal(message, i).name, "one") << message << ", " << i;
            EXPECT_EQ(database.Signal(message, i).startValue, 0U) << message << ", " << i;
        }
        EXPECT_EQ(database.Signal(message, 3).name, "Other");
        EXPECT_EQ(database.Signal(message, 3).startValue, 5U);
    }
}

TEST(WellKnownAttributes, OfOtherNamesDoNothing) {
    SmallDatabase database;
    database.data.info = {7, 7};
    database.Apply({"BA_DEF_ BO_ \"GenMsgDelay\" INT 0 99;", "BA_DEF_DEF_ \"GenMsgDelay\" 5;",
                    "BA_DEF_ SG_ \"GenSigSendType\" ENUM \"A\",\"B\";", "BA_DEF_ BO_ \"Msg_Name\" STRING;",
                    "BA_ \"Msg_Name\" BO_ 100 \"long\";"});
    EXPECT_TRUE(database.data.attributes.Definitions().empty());
    EXPECT_EQ(DescribeAttributed(database.data), kUnattributed);
    EXPECT_EQ(database.data.info.protocolType, 7U);
    EXPECT_EQ(database.data.info.canFd, 7U);
}

TEST(WellKnownAttributes, OfADatabaseWithoutMessagesSetItsInformation) {
    CANDatabase database;
    Parse(database.attributes,
          {"BA_DEF_ \"BusType\" STRING;", "BA_DEF_DEF_ \"BusType\" \"CAN FD\";",
           "BA_DEF_ BO_ \"GenMsgCycleTime\" INT 0 9;", "BA_DEF_ SG_ \"Kestrune_Sig_Name\" STRING;"});
    ApplyWellKnownAttributes(database);
    EXPECT_EQ(database.info.canFd, 1U);
    EXPECT_TRUE(database.messages.empty());
}

}  // namespace
}  // namespace tabrin
