#include "dbc/dbc_writer.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "dbc/parsed.h"
#include "dbc/reading.h"
#include "dbc/writing.h"
#include "model/own_arena.h"

namespace tabrin {
namespace {

// The identifiers of the BO_ lines of a written file, in their order: "100 5".
std::string WrittenIdentifiers(CANDatabase& database, uint32_t messageOrder) {
    const std::string body = WrittenBody(database, messageOrder);
    std::string identifiers;
    for (size_t line = body.find("\r\nBO_ "); line != std::string::npos; line = body.find("\r\nBO_ ", line + 1)) {
        const size_t start = line + 6;
        identifiers += identifiers.empty() ? "" : " ";
        identifiers += body.substr(start, body.find(' ', start) - start);
    }
    return identifiers;
}

// --- The order of messages

struct OrderCase {
    const char* what;
    std::vector<MessageFields> messages;
    uint32_t order;
    std::string_view identifiers;
};

const std::vector<MessageFields> kThreeMessages = {
    {.id = 100, .name = "B"}, {.id = 2147483748, .name = "C"}, {.id = 5, .name = "A"}};

const OrderCase kOrderCases[] = {
    {"identifiers descend as unsigned numbers", kThreeMessages, 0, "2147483748 100 5"},
    {"names ascend", kThreeMessages, 1, "5 100 2147483748"},
    {"as they stand", kThreeMessages, 2, "100 2147483748 5"},
    {"any other code: as they stand", kThreeMessages, 3, "100 2147483748 5"},
    {"the greatest code: as they stand", kThreeMessages, 4294967295, "100 2147483748 5"},
    {"the least and the greatest identifier",
     {{.id = 0, .name = "A"}, {.id = 4294967295, .name = "B"}, {.id = 1, .name = "C"}},
     0,
     "4294967295 1 0"},
    {"a name in front of a longer one", {{.id = 1, .name = "AB"}, {.id = 2, .name = "A"}}, 1, "2 1"},
    {"names by bytes: digits, upper case, underscore, lower case",
     {{.id = 1, .name = "Aa"}, {.id = 2, .name = "A_"}, {.id = 3, .name = "AZ"}, {.id = 4, .name = "A9"}},
     1,
     "4 3 2 1"},
    {"equal names keep their order",
     {{.id = 2, .name = "Same"}, {.id = 3, .name = "Same"}, {.id = 1, .name = "Same"}, {.id = 9, .name = "Less"}},
     1,
     "9 2 3 1"},
    // " A" would be in front of "B", and " Z" too, but their identifier forms are _A and _Z.
    {"the identifier form counts, not the long name",
     {{.id = 1, .name = " Z"}, {.id = 2, .name = "B"}, {.id = 3, .name = " A"}},
     1,
     "2 3 1"},
};

TEST(DbcWriter, MessagesStandInTheOrderAskedFor) {
    for (const OrderCase& row : kOrderCases) {
        SCOPED_TRACE(row.what);
        CANDatabase database;
        for (const MessageFields& message : row.messages) {
            AddMessage(database, message);
        }
        EXPECT_EQ(WrittenIdentifiers(database, row.order), row.identifiers);
    }
}

TEST(DbcWriter, EqualIdentifiersKeepTheirOrder) {
    CANDatabase database;
    for (const char* name : {"C", "A", "D", "B"}) {
        AddMessage(database, {.id = 7, .name = name});
    }
    AddMessage(database, {.id = 8, .name = "E"});
    EXPECT_EQ(WrittenBody(database, TABRIN_ORDER_IDENTIFIER),
              "BU_ :  Kestrune\r\n\r\n"
              "BO_ 8 E: 8 Kestrune\r\n\r\n"
              "BO_ 7 C: 8 Kestrune\r\n\r\n"
              "BO_ 7 A: 8 Kestrune\r\n\r\n"
              "BO_ 7 D: 8 Kestrune\r\n\r\n"
              "BO_ 7 B: 8 Kestrune\r\n\r\n");
}

TEST(DbcWriter, OrderOfTheDatabaseStays) {
    CANDatabase database;
    for (const MessageFields& message : kThreeMessages) {
        AddMessage(database, message);
    }
    for (const uint32_t order : {0U, 1U, 2U}) {
        WrittenBytes(database, order);
        ASSERT_EQ(database.messages.size(), 3U);
        EXPECT_EQ(database.messages[0]->id, 100U) << order;
        EXPECT_EQ(database.messages[1]->id, 2147483748U) << order;
        EXPECT_EQ(database.messages[2]->id, 5U) << order;
    }
}

// --- The message section

TEST(DbcWriter, MessageBlocksEndInAnEmptyLine) {
    CANDatabase database;
    CANMessage& message = AddMessage(database, {.id = 100, .name = "First", .transmitter = "ECU"});
    AddNamedSignal(message, "B");
    AddNamedSignal(message, "A");
    AddMessage(database, {.id = 200, .name = "Second", .dlc = 1000, .transmitter = "ECU"});
    EXPECT_EQ(WrittenBody(database),
              "BU_ :  Kestrune ECU\r\n"
              "\r\n"
              "BO_ 100 First: 8 ECU\r\n"
              " SG_ B : 0|8@1+ (1,0) [0|255] \"\" Kestrune\r\n"
              " SG_ A : 0|8@1+ (1,0) [0|255] \"\" Kestrune\r\n"
              "\r\n"
              "BO_ 200 Second: 1000 ECU\r\n"
              "\r\n");
}

TEST(DbcWriter, NamesGivenByTheCallerAreNotTrimmed) {
    CANDatabase database;
    AddSignal(AddMessage(database, {.name = " A", .transmitter = " N "}), {.name = " S "});
    const std::string body = WrittenBody(database);
    EXPECT_EQ(body.substr(0, body.find("BA_DEF_")),
              "BU_ :  _N_ Kestrune\r\n"
              "\r\n"
              "BO_ 1 _A: 8 _N_\r\n"
              " SG_ _S_ : 0|8@1+ (1,0) [0|255] \"\" Kestrune\r\n"
              "\r\n"
              "\r\n");
}

TEST(DbcWriter, RangeGivenByTheCallerIsNotSwapped) {
    CANDatabase database;
    AddSignal(AddMessage(database), {.minimum = 10.0, .maximum = -5.0});
    EXPECT_EQ(WrittenBody(database),
              "BU_ :  Kestrune\r\n\r\n"
              "BO_ 1 Msg: 8 Kestrune\r\n"
              " SG_ S : 0|8@1+ (1,0) [10|-5] \"\" Kestrune\r\n\r\n");
}

TEST(DbcWriter, CodesOutsideTheListsAreWrittenByTheSameRules) {
    CANDatabase database;
    CANSignal& signal = AddSignal(
        AddMessage(database), {.multiplexKind = 7, .multiplexValue = 3, .length = 32, .byteOrder = 5, .valueType = 7});
    signal.valueDescriptions.Add(1, "On");
    EXPECT_EQ(WrittenBody(database),
              "BU_ :  Kestrune\r\n\r\n"
              "BO_ 1 Msg: 8 Kestrune\r\n"
              " SG_ S : 0|32@1- (1,0) [0|255] \"\" Kestrune\r\n"
              "\r\n"
              "VAL_ 1 S 1 \"On\";\r\n");
    EXPECT_EQ(signal.multiplexKind, 7U);
    EXPECT_EQ(signal.byteOrder, 5U);
    EXPECT_EQ(signal.valueType, 7U);
}

TEST(DbcWriter, InvalidMessageLeavesAnEmptyLine) {
    CANDatabase database;
    database.messages.push_back(std::make_shared<OwnMessage>());
    EXPECT_EQ(WrittenBody(database), "BU_ :  Kestrune\r\n\r\n\r\n\r\n");
}

// The limit is beyond what the interface can notice: a signal too many is dropped without a word.
TEST(DbcWriter, MessageOfTooManySignalsHasTenThousand) {
    CANDatabase database;
    CANMessage& message = AddMessage(database);
    for (int i = 0; i < 10001; ++i) {
        AddNamedSignal(message, "S");
    }
    ASSERT_EQ(message.signals.size(), 10000U);
    const std::string body = WrittenBody(database);
    size_t lines = 0;
    for (size_t line = body.find("\r\n SG_ "); line != std::string::npos; line = body.find("\r\n SG_ ", line + 1)) {
        ++lines;
    }
    EXPECT_EQ(lines, 10000U);
    EXPECT_NE(body.find("\r\n SG_ S_0000 : "), std::string::npos);
    EXPECT_NE(body.find("\r\n SG_ S_9999 : "), std::string::npos);
}

// --- Sections

TEST(DbcWriter, EverySectionFollowsTheOrderOfMessages) {
    CANDatabase database;
    for (const uint32_t id : {1U, 2U}) {
        CANMessage& message = AddMessage(database, {.id = id, .name = "a b", .comment = "c"});
        AddSignal(message, {.name = "S T", .comment = "d"}).valueDescriptions.Add(0, "e");
        AddSignal(message, {.name = "F", .length = 32, .valueType = TABRIN_VALUE_FLOAT});
    }
    EXPECT_EQ(WrittenBody(database, TABRIN_ORDER_IDENTIFIER),
              "BU_ :  Kestrune\r\n"
              "\r\n"
              "BO_ 2 a_b: 8 Kestrune\r\n"
              " SG_ S_T : 0|8@1+ (1,0) [0|255] \"\" Kestrune\r\n"
              " SG_ F : 0|32@1- (1,0) [0|255] \"\" Kestrune\r\n"
              "\r\n"
              "BO_ 1 a_b: 8 Kestrune\r\n"
              " SG_ S_T : 0|8@1+ (1,0) [0|255] \"\" Kestrune\r\n"
              " SG_ F : 0|32@1- (1,0) [0|255] \"\" Kestrune\r\n"
              "\r\n"
              "CM_ BO_ 2 \"c\";\r\n"
              "CM_ SG_ 2 S_T \"d\";\r\n"
              "CM_ BO_ 1 \"c\";\r\n"
              "CM_ SG_ 1 S_T \"d\";\r\n"
              "BA_DEF_ BO_ \"Kestrune_Msg_Name\" STRING ;\r\n"
              "BA_DEF_ SG_ \"Kestrune_Sig_Name\" STRING ;\r\n"
              "BA_DEF_DEF_ \"Kestrune_Msg_Name\" \"\";\r\n"
              "BA_DEF_DEF_ \"Kestrune_Sig_Name\" \"\";\r\n"
              "BA_ \"Kestrune_Msg_Name\" BO_ 2 \"a b\";\r\n"
              "BA_ \"Kestrune_Msg_Name\" BO_ 1 \"a b\";\r\n"
              "BA_ \"Kestrune_Sig_Name\" SG_ 2 S_T \"S T\";\r\n"
              "BA_ \"Kestrune_Sig_Name\" SG_ 1 S_T \"S T\";\r\n"
              "VAL_ 2 S_T 0 \"e\";\r\n"
              "VAL_ 1 S_T 0 \"e\";\r\n"
              "SIG_VALTYPE_ 2 F : 1;\r\n"
              "SIG_VALTYPE_ 1 F : 1;\r\n");
}

// --- Refusals

TEST(DbcWriter, EmptyDatabaseCreatesNoFile) {
    CANDatabase database;
    const OutputPath path;
    EXPECT_EQ(WriteTo(database, path.Text()), (WriteOutcome{false, FileStatus::Closed}));
    EXPECT_FALSE(std::filesystem::exists(path.Text()));
}

TEST(DbcWriter, EmptyDatabaseLeavesAnExistingFileAlone) {
    CANDatabase database;
    database.info = {TABRIN_PROTOCOL_J1939, 1};
    const TemporaryFile file("content");
    EXPECT_EQ(WriteTo(database, file.Path()), (WriteOutcome{false, FileStatus::Closed}));
    EXPECT_EQ(FileBytes(file.Path()), "content");
}

TEST(DbcWriter, EmptyDatabaseIsRefusedWhateverThePath) {
    CANDatabase database;
    for (const uint32_t size : {0U, 261U}) {
        FileStatus status = FileStatus::Writing;
        EXPECT_FALSE(WriteDbcFile(database, nullptr, size, TABRIN_ORDER_DATABASE, status)) << size;
        EXPECT_EQ(status, FileStatus::Closed) << size;
    }
}

struct RefusedPathCase {
    const char* what;
    const char* path;
    uint32_t bufferSize;
    FileStatus status;
};

constexpr RefusedPathCase kRefusedPathCases[] = {
    {"buffer too large", TABRIN_TEMP_DIR "/never_written.dbc", 261, FileStatus::PathTooLong},
    {"buffer too large for nothing", "", 4294967295, FileStatus::PathTooLong},
    {"empty", "", kPathBufferSize, FileStatus::PathEmpty},
    {"no buffer", TABRIN_TEMP_DIR "/never_written.dbc", 0, FileStatus::PathEmpty},
    {"null", nullptr, kPathBufferSize, FileStatus::PathEmpty},
    {"no UTF-8", "\xFF some path", kPathBufferSize, FileStatus::PathInvalid},
    {"missing directory", TABRIN_TEMP_DIR "/no_such_directory/never_written.dbc", kPathBufferSize,
     FileStatus::NotOpened},
    {"directory", TABRIN_TEMP_DIR, kPathBufferSize, FileStatus::NotOpened},
};

TEST(DbcWriter, RefusedPathHasTheStatusOfOpening) {
    CANDatabase database;
    AddMessage(database);
    for (const RefusedPathCase& row : kRefusedPathCases) {
        SCOPED_TRACE(row.what);
        FileStatus status = FileStatus::Writing;
        EXPECT_FALSE(WriteDbcFile(database, row.path, row.bufferSize, TABRIN_ORDER_DATABASE, status));
        EXPECT_EQ(status, row.status);
        EXPECT_FALSE(std::filesystem::exists(TABRIN_TEMP_DIR "/never_written.dbc"));
        EXPECT_FALSE(std::filesystem::exists(TABRIN_TEMP_DIR "/no_such_directory"));
    }
}

TEST(DbcWriter, RefusedOpenLeavesTheNamesAsTheyWere) {
    CANDatabase database;
    CANMessage& message = AddMessage(database);
    const CANSignal& first = AddNamedSignal(message, "Speed");
    const CANSignal& second = AddNamedSignal(message, "Speed");
    EXPECT_EQ(WriteTo(database, TABRIN_TEMP_DIR "/no_such_directory/x.dbc"), kNotOpened);
    EXPECT_EQ(first.identifierName, "Speed");
    EXPECT_EQ(second.identifierName, "Speed");
    EXPECT_EQ(WriteTo(database, OutputPath().Text()), kAllWritten);
    EXPECT_EQ(first.identifierName, "Speed_0000");
    EXPECT_EQ(second.identifierName, "Speed_0001");
}

// --- The file

TEST(DbcWriter, ExistingFileIsReplaced) {
    CANDatabase database;
    AddMessage(database);
    const TemporaryFile file(std::string(100000, 'x'));
    EXPECT_EQ(WriteTo(database, file.Path()), kAllWritten);
    EXPECT_EQ(FileBytes(file.Path()),
              std::string(kWrittenHeader) + "BU_ :  Kestrune\r\n\r\nBO_ 1 Msg: 8 Kestrune\r\n\r\n");
}

TEST(DbcWriter, PathIsUtf8) {
    CANDatabase database;
    AddMessage(database);
    const OutputPath unused;
    const std::string name = unused.Text() + "_\xC3\x96l_\xE6\xBC\xA2_\xF0\x9F\x9A\x97.dbc";
    EXPECT_EQ(WriteTo(database, name), kAllWritten);
    const std::filesystem::path path(std::u8string(name.begin(), name.end()));
    EXPECT_EQ(FileBytes(path).substr(0, kWrittenHeader.size()), kWrittenHeader);
    EXPECT_TRUE(std::filesystem::remove(path));
}

TEST(DbcWriter, EachLineReachesTheFileBeforeTheNext) {
    const OutputPath path;
    DbcFileStream stream;
    stream.Open(path.Text().c_str(), kPathBufferSize, OpenMode::Write);
    ASSERT_EQ(stream.Status(), FileStatus::Writing);
    stream.WriteLine("");
    EXPECT_EQ(FileBytes(path.Text()), "\r\n");
    stream.WriteLine("a\nb");
    EXPECT_EQ(FileBytes(path.Text()), "\r\na\r\nb\r\n");
    stream.Close();
    EXPECT_EQ(stream.Status(), FileStatus::Closed);
}

TEST(DbcWriter, WhatWasReadIsWrittenAndReadAgain) {
    CANDatabase database;
    ASSERT_TRUE(ReadText(database,
                         "BU_ : A B C D\n"
                         "BO_ 100 Engine Data: 8 ECU extra\n"
                         " SG_ Temp : 7|8@0- (0.5,-40) [87.5|-40] \"\xC2\xB0"
                         "C\" A, B\n"
                         "\n"
                         "CM_ BO_ 100 \"a \"b\" c\";\n"
                         "VAL_ 100 Temp 1 \"x\" ;\n"));
    const std::string_view body =
        "BU_ :  ECU_extra B A\r\n"
        "\r\n"
        "BO_ 100 Engine_Data: 8 ECU_extra\r\n"
        " SG_ Temp : 7|8@0- (0.5,-40) [-40|87.5] \"_C\" A,B\r\n"
        "\r\n"
        "CM_ BO_ 100 \"a \\\"b\\\" c\";\r\n"
        "BA_DEF_ BO_ \"Kestrune_Msg_Name\" STRING ;\r\n"
        "BA_DEF_DEF_ \"Kestrune_Msg_Name\" \"\";\r\n"
        "BA_ \"Kestrune_Msg_Name\" BO_ 100 \"Engine Data\";\r\n"
        "VAL_ 100 Temp 1 \"x\";\r\n";
    EXPECT_EQ(WrittenBody(database), body);
    ASSERT_TRUE(ReadText(database, std::string(kWrittenHeader) + std::string(body)));
    EXPECT_EQ(WrittenBody(database), body);
}

}  // namespace
}  // namespace tabrin
