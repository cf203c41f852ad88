// Attributes through whole files: from text into the fields, and from the fields by way of a file into another
// database.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "dbc/reading.h"
#include "dbc/small_database.h"
#include "dbc/writing.h"
#include "model/can_database.h"
#include "shown.h"

namespace tabrin {
namespace {

using Texts = std::vector<std::string>;

const std::string kMessages =
    "BO_ 100 Engine: 8 ECU\n"
    " SG_ Speed : 0|16@1+ (0.5,10) [0|1] \"rpm\" ECU\n"
    " SG_ Torque : 16|16@1+ (1,0) [0|1] \"Nm\" ECU\n"
    "\n"
    "BO_ 200 Brake: 8 ECU\n"
    " SG_ Speed : 0|16@1+ (1,0) [0|1] \"\" ECU\n"
    "\n";

const std::string kAttributes =
    "BA_DEF_ \"BusType\" STRING ;\n"
    "BA_DEF_ \"J1939PGN\" INT 0 1;\n"
    "BA_DEF_ BU_ \"NodeAddress\" INT 0 255;\n"
    "BA_DEF_ BO_ \"Kestrune_Msg_Name\" STRING ;\n"
    "BA_DEF_ BO_ \"GenMsgSendType\" ENUM \"Cyclic\",\"On Change\";\n"
    "BA_DEF_ BO_ \"GenMsgCycleTime\" INT 0 10000;\n"
    "BA_DEF_ SG_ \"Kestrune_Sig_Name\" STRING ;\n"
    "BA_DEF_ SG_ \"GenSigStartValue\" INT 0 1000;\n"
    "BA_DEF_ SG_ \"GenSigInactiveValue\" INT -1 1000;\n"
    "BA_DEF_ SG_ \"Unknown\" STRING ;\n"
    "BA_DEF_DEF_ \"BusType\" \"CAN FD\";\n"
    "BA_DEF_DEF_ \"J1939PGN\" 1;\n"
    "BA_DEF_DEF_ \"NodeAddress\" 254;\n"
    "BA_DEF_DEF_ \"Kestrune_Msg_Name\" \"not used\";\n"
    "BA_DEF_DEF_ \"GenMsgSendType\" \"On Change\";\n"
    "BA_DEF_DEF_ \"GenMsgCycleTime\" 100;\n"
    "BA_DEF_DEF_ \"Kestrune_Sig_Name\" \"not used\";\n"
    "BA_DEF_DEF_ \"GenSigStartValue\" 7;\n"
    "BA_DEF_DEF_ \"GenSigInactiveValue\" -1;\n"
    "BA_ \"NodeAddress\" BU_ ECU 5;\n"
    "BA_ \"Kestrune_Msg_Name\" BO_ 100 \"Engine data\";\n"
    "BA_ \"GenMsgSendType\" BO_ 200 0;\n"
    "BA_ \"GenMsgCycleTime\" BO_ 200 20;\n"
    "BA_ \"Kestrune_Sig_Name\" SG_ 100 Speed \"Engine speed\";\n"
    "BA_ \"GenSigStartValue\" SG_ 100 Torque 500;\n"
    "BA_ \"GenSigInactiveValue\" SG_ 200 Speed 3;\n"
    "BA_ \"Unknown\" SG_ 200 Speed \"x\";\n";

const Texts kAttributed = {"Engine data/Engine [On_Change] 100", "  Engine speed/Speed 7 4294967295",
                           "  Torque/Torque 500 4294967295",  //
                           "Brake/Brake [Cyclic] 20", "  Speed/Speed 7 3"};

TEST(AttributesOfAFile, BecomeFields) {
    CANDatabase database;
    ASSERT_TRUE(ReadText(database, kMessages + kAttributes));
    EXPECT_EQ(DescribeAttributed(database), kAttributed);
    EXPECT_EQ(database.info.protocolType, 1U);
    EXPECT_EQ(database.info.canFd, 1U);
}

// They wait for the end of the file.
TEST(AttributesOfAFile, MayStandInFrontOfTheMessages) {
    CANDatabase database;
    ASSERT_TRUE(ReadText(database, kAttributes + kMessages));
    EXPECT_EQ(DescribeAttributed(database), kAttributed);
}

TEST(AttributesOfAFile, MayHaveWindowsLineEnds) {
    std::string text;
    for (const char c : kMessages + kAttributes) {
        text += c == '\n' ? "\r\n" : std::string(1, c);
    }
    CANDatabase database;
    ASSERT_TRUE(ReadText(database, text));
    EXPECT_EQ(DescribeAttributed(database), kAttributed);
}

TEST(AttributesOfAFile, AreGoneOnceItHasBeenRead) {
    CANDatabase database;
    ASSERT_TRUE(ReadText(database, kMessages + kAttributes));
    EXPECT_TRUE(database.attributes.Definitions().empty());
    EXPECT_TRUE(database.attributes.Values().empty());
}

TEST(AttributesOfAFile, DoNotReachTheNextFile) {
    CANDatabase database;
    ASSERT_TRUE(ReadText(database, kMessages + kAttributes));
    ASSERT_TRUE(ReadText(database, kMessages));
    EXPECT_EQ(DescribeAttributed(database), kUnattributed);
    EXPECT_EQ(database.info.protocolType, 0U);
}

TEST(AttributesOfAFile, AreNoErrorsWhenTheyAreDropped) {
    CANDatabase database;
    ASSERT_TRUE(ReadText(database,
                         kMessages + "BA_DEF_ BO_ \"GenMsgCycleTime\" FLOAT 0 1;\nBA_ \"GenMsgCycleTime\" BO_ 100 5;\n"
                                     "BA_DEF_ \"BusType\" STRING x;\nBA_ \"BusType\";\nBA_DEF_DEF_ 5;\n"));
    EXPECT_TRUE(database.errors.empty());
    EXPECT_EQ(DescribeAttributed(database), kUnattributed);
}

TEST(AttributesOfAFile, OfRelationsAndTypesAreOtherStatements) {
    CANDatabase database;
    ASSERT_TRUE(ReadText(database, kMessages + "BA_DEF_REL_ BO_ \"GenMsgCycleTime\" INT 0 9;\n"
                                               "BA_DEF_SGTYPE_ BO_ \"GenMsgCycleTime\" INT 0 9;\n"
                                               "BA_DEF_DEF_REL_ \"GenMsgCycleTime\" 5;\n"
                                               "BA_REL_ \"GenMsgCycleTime\" BO_ 100 5;\n"
                                               "BA_SGTYPE_ \"GenMsgCycleTime\" BO_ 100 5;\n"));
    EXPECT_EQ(DescribeAttributed(database), kUnattributed);
}

TEST(AttributesOfAFile, TakeTextsOverSeveralLinesAsOne) {
    CANDatabase database;
    ASSERT_TRUE(ReadText(database, kMessages + "BA_DEF_ BO_ \"Kestrune_Msg_Name\"\n STRING\n;\n"
                                               "BA_ \"Kestrune_Msg_Name\" BO_ 100 \"Engine\t\n  data\";\n"));
    EXPECT_EQ(database.messages.at(0)->name, "Engine data");
}

TEST(AttributesOfAFile, FindASignalByTheIdentifierFormOfItsName) {
    const struct {
        const char* object;
        const char* name;
        uint32_t startValue;
    } rows[] = {
        {"Eng_Speed", "Engine speed", 5},
        // The name as it was read falls into two tokens, and the statement does not fit any more.
        {"Eng Speed", "Eng Speed", 0},
        {"\"Eng Speed\"", "Eng Speed", 0},
        {"Eng", "Eng Speed", 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.object);
        const std::string object = row.object;
        CANDatabase database;
        ASSERT_TRUE(ReadText(database,
                             "BO_ 100 Msg: 8 N\n"
                             " SG_ Eng Speed : 0|8@1+ (1,0) [0|1] \"\" N\n"
                             "BA_DEF_ SG_ \"Kestrune_Sig_Name\" STRING ;\n"
                             "BA_DEF_ SG_ \"GenSigStartValue\" INT 0 9;\n"
                             "BA_ \"Kestrune_Sig_Name\" SG_ 100 " +
                                 object + " \"Engine speed\";\n" + "BA_ \"GenSigStartValue\" SG_ 100 " + object +
                                 " 5;\n"));
        ASSERT_EQ(database.messages.size(), 1U);
        ASSERT_EQ(database.messages[0]->signals.size(), 1U);
        const CANSignal& signal = *database.messages[0]->signals[0];
        EXPECT_EQ(signal.name, row.name);
        EXPECT_EQ(signal.startValue, row.startValue);
        EXPECT_EQ(signal.identifierName, "Eng_Speed");
        EXPECT_EQ(signal.nameAsRead, "Eng Speed");
    }
}

TEST(AttributesOfAFile, ReachAllMessagesOfOneIdentifier) {
    CANDatabase database;
    ASSERT_TRUE(ReadText(database, kMessages + "BO_ 100 Again: 8 N\n SG_ Speed : 0|8@1+ (1,0) [0|1] \"\" N\n" +
                                       "BA_DEF_ BO_ \"Kestrune_Msg_Name\" STRING ;\n"
                                       "BA_DEF_ SG_ \"Kestrune_Sig_Name\" STRING ;\n"
                                       "BA_ \"Kestrune_Msg_Name\" BO_ 100 \"both\";\n"
                                       "BA_ \"Kestrune_Sig_Name\" SG_ 100 Speed \"both too\";\n"));
    EXPECT_EQ(DescribeAttributed(database),
              (Texts{"both/Engine [] 0", "  both too/Speed 0 0", "  Torque/Torque 0 0", "Brake/Brake [] 0",
                     "  Speed/Speed 0 0", "both/Again [] 0", "  both too/Speed 0 0"}));
}

TEST(CanFdFlag, IsLeftAloneByAFileWithoutABusType) {
    for (const uint32_t flag : {0U, 1U, 2U}) {
        SCOPED_TRACE(flag);
        CANDatabase database;
        database.info = {5, flag};
        ASSERT_TRUE(ReadText(database, kMessages));
        EXPECT_EQ(database.info.canFd, flag);
        EXPECT_EQ(database.info.protocolType, 0U);
    }
}

TEST(CanFdFlag, IsTakenBackByAFileWithAnotherBusType) {
    CANDatabase database;
    database.info.canFd = 1;
    ASSERT_TRUE(ReadText(database, "BA_DEF_ \"BusType\" STRING ;\nBA_DEF_DEF_ \"BusType\" \"CAN\";\n"));
    EXPECT_EQ(database.info.canFd, 0U);
}

// --- From fields to fields

TEST(AttributeRoundTrip, RestoresTheDatabaseInformation) {
    const struct {
        uint32_t protocolType;
        uint32_t canFd;
        uint32_t protocolAfter;
        uint32_t canFdAfter;
    } rows[] = {
        {0, 0, 0, 0},
        {1, 0, 1, 0},
        {2, 0, 2, 0},
        {0, 1, 0, 1},
        {1, 1, 1, 1},
        {2, 1, 2, 1},
        // Values outside the lists are not written.
        {7, 2, 0, 0},
        {3, 1, 0, 1},
        {2, 2, 2, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << "protocol " << row.protocolType << ", CAN FD " << row.canFd);
        CANDatabase database;
        AddMessage(database);
        database.info = {row.protocolType, row.canFd};
        const std::string bytes = WrittenBytes(database);
        EXPECT_EQ(database.info.protocolType, row.protocolType);
        EXPECT_EQ(database.info.canFd, row.canFd);
        CANDatabase again;
        ASSERT_TRUE(ReadText(again, bytes));
        EXPECT_EQ(again.info.protocolType, row.protocolAfter);
        EXPECT_EQ(again.info.canFd, row.canFdAfter);
    }
}

TEST(AttributeRoundTrip, RestoresLongNamesAsFarAsQuotedTextsCanCarryThem) {
    const struct {
        const char* name;
        const char* identifierName;
        const char* nameAfter;
    } rows[] = {
        {"Engine", "Engine", "Engine"},
        {"Engine data", "Engine_data", "Engine data"},
        {"1st", "_st", "1st"},
        {"Motor \xC3\xA4", "Motor__", "Motor \xC3\xA4"},
        {"%", "_", "%"},
        {"Engine_speed_of_the_second_engine_in_rpm", "Engine_speed_of_the_second_engin",
         "Engine_speed_of_the_second_engine_in_rpm"},
        {"Engine ", "Engine_", "Engine "},
        {"a\\b", "a_b", "a\\b"},
        {"\"", "_", "\""},
        {"a \"", "a__", "a \""},
        {"a\"b\"c", "a_b_c", "a\"b\"c"},
        // Delimiters become one space.
        {"Engine  data", "Engine__data", "Engine data"},
        {"a,b;c", "a_b_c", "a b c"},
        {"a , ; b", "a_____b", "a b"},
        // A quote at the end of a word ends the text.
        {"the \"fast\" one", "the__fast__one", "the \"fast"},
        // A blank in front takes the quoted text apart, and the identifier form remains.
        {" Engine", "_Engine", "_Engine"},
        {",Engine", "_Engine", "_Engine"},
        {";", "_", "_"},
        {"\" a", "__a", "__a"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(Shown(row.name));
        CANDatabase database;
        CANMessage& message = AddMessage(database, {.id = 2147483748U, .name = row.name});
        AddSignal(message, {.name = row.name});
        EXPECT_EQ(message.identifierName, row.identifierName);
        CANDatabase again;
        ASSERT_TRUE(ReadText(again, WrittenBytes(database)));
        EXPECT_TRUE(again.errors.empty());
        const std::string name = std::string(row.nameAfter) + "/" + row.identifierName;
        EXPECT_EQ(DescribeAttributed(again), (Texts{name + " [] 0", "  " + name + " 0 0"}));
    }
}

TEST(AttributeRoundTrip, KeepsTheCommonNameOfSignalsThatWereToldApart) {
    CANDatabase database;
    CANMessage& message = AddMessage(database, {.id = 1, .name = "Msg"});
    AddSignal(message, {.name = "Speed"});
    AddSignal(message, {.name = "Other"});
    AddSignal(message, {.name = "Speed"});
    CANDatabase again;
    ASSERT_TRUE(ReadText(again, WrittenBytes(database)));
    EXPECT_EQ(DescribeAttributed(again),
              (Texts{"Msg/Msg [] 0", "  Speed/Speed_0000 0 0", "  Other/Other 0 0", "  Speed/Speed_0001 0 0"}));
}

TEST(AttributeRoundTrip, WritesSignalsThatWereToldApartTheSameAgain) {
    CANDatabase database;
    CANMessage& message = AddMessage(database, {.id = 1, .name = "Msg"});
    AddSignal(message, {.name = "Speed"});
    AddSignal(message, {.name = "Speed"});
    const std::string bytes = WrittenBytes(database);
    CANDatabase again;
    ASSERT_TRUE(ReadText(again, bytes));
    EXPECT_EQ(WrittenBytes(again), bytes);
}

TEST(AttributeRoundTrip, DropsWhatHasNoAttributeFormInWriting) {
    CANDatabase database;
    ASSERT_TRUE(ReadText(database, kMessages + kAttributes));
    CANDatabase again;
    ASSERT_TRUE(ReadText(again, WrittenBytes(database)));
    EXPECT_EQ(DescribeAttributed(again), (Texts{"Engine data/Engine [] 0", "  Engine speed/Speed 0 0",
                                                "  Torque/Torque 0 0", "Brake/Brake [] 0", "  Speed/Speed 0 0"}));
    EXPECT_EQ(again.info.protocolType, 1U);
    EXPECT_EQ(again.info.canFd, 1U);
}

TEST(AttributeRoundTrip, WritesTheSameFileAgain) {
    CANDatabase database;
    ASSERT_TRUE(ReadText(database, kMessages + kAttributes));
    const std::string bytes = WrittenBytes(database);
    CANDatabase again;
    ASSERT_TRUE(ReadText(again, bytes));
    EXPECT_EQ(WrittenBytes(again), bytes);
}

TEST(AttributeRoundTrip, GivesAllMessagesOfOneIdentifierTheNameOfTheFirstWritten) {
    const struct {
        uint32_t order;
        const char* expected;
    } rows[] = {
        {TABRIN_ORDER_DATABASE, "B x"},
        {TABRIN_ORDER_IDENTIFIER, "B x"},  // all the same, so they stay as they are
        {TABRIN_ORDER_NAME, "A y"},        // behind "A", whose name is its identifier
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.order);
        CANDatabase database;
        AddMessage(database, {.id = 100, .name = "B x"});
        AddMessage(database, {.id = 100, .name = "A y"});
        AddMessage(database, {.id = 100, .name = "A"});
        CANDatabase again;
        ASSERT_TRUE(ReadText(again, WrittenBytes(database, row.order)));
        ASSERT_EQ(again.messages.size(), 3U);
        for (const auto& message : again.messages) {
            EXPECT_EQ(message->name, row.expected) << message->identifierName;
        }
    }
}

TEST(AttributeRoundTrip, GivesAllSignalsOfOneIdentifierTheNameOfTheFirstWritten) {
    const struct {
        uint32_t order;
        const char* expected;
    } rows[] = {{TABRIN_ORDER_DATABASE, "S-s"}, {TABRIN_ORDER_NAME, "S s"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.order);
        CANDatabase database;
        AddSignal(AddMessage(database, {.id = 100, .name = "C"}), {.name = "S-s"});
        AddSignal(AddMessage(database, {.id = 100, .name = "B"}), {.name = "S s"});
        AddSignal(AddMessage(database, {.id = 100, .name = "A"}), {.name = "S_s"});
        CANDatabase again;
        ASSERT_TRUE(ReadText(again, WrittenBytes(database, row.order)));
        ASSERT_EQ(again.messages.size(), 3U);
        for (const auto& message : again.messages) {
            ASSERT_EQ(message->signals.size(), 1U);
            EXPECT_EQ(message->signals[0]->name, row.expected) << message->identifierName;
        }
    }
}

TEST(AttributeRoundTrip, PutsTheAttributesBetweenCommentsAndValueDescriptions) {
    CANDatabase database;
    database.info = {TABRIN_PROTOCOL_J1939, 1};
    CANMessage& message = AddMessage(database, {.id = 256, .name = "Engine data", .comment = "c"});
    AddSignal(message).valueDescriptions.Add(1, "on");
    EXPECT_EQ(WrittenBody(database),
              "BU_ :  Kestrune\r\n"
              "\r\n"
              "BO_ 256 Engine_data: 8 Kestrune\r\n"
              " SG_ S : 0|8@1+ (1,0) [0|255] \"\" Kestrune\r\n"
              "\r\n"
              "CM_ BO_ 256 \"c\";\r\n"
              "BA_DEF_ \"BusType\" STRING ;\r\n"
              "BA_DEF_ \"J1939PGN\" INT 0 1;\r\n"
              "BA_DEF_ BO_ \"Kestrune_Msg_Name\" STRING ;\r\n"
              "BA_DEF_DEF_ \"BusType\" \"CAN FD\";\r\n"
              "BA_DEF_DEF_ \"J1939PGN\" 1;\r\n"
              "BA_DEF_DEF_ \"Kestrune_Msg_Name\" \"\";\r\n"
              "BA_ \"Kestrune_Msg_Name\" BO_ 256 \"Engine data\";\r\n"
              "VAL_ 256 S 1 \"on\";\r\n");
}

}  // namespace
}  // namespace tabrin
