#include "dbc/dbc_reader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "dbc/reading.h"
#include "model/description_texts.h"
#include "shown.h"

namespace tabrin {
namespace {

const std::string kMessage = "BO_ 100 Msg: 8 ECU\n";
const std::string kSignal = " SG_ S : 0|8@1+ (1,0) [0|255] \"\" A\n";

using Names = std::vector<std::string>;

// "Msg[S,T]" for a message with its signals.
Names ContentOf(const CANDatabase& database) {
    Names content;
    for (const auto& message : database.messages) {
        std::string& text = content.emplace_back(message->name);
        text += "[";
        for (const auto& signal : message->signals) {
            text.append(text.back() == '[' ? "" : ",").append(signal->name);
        }
        text += "]";
    }
    return content;
}

std::vector<uint32_t> CodesOf(const CANDatabase& database) {
    std::vector<uint32_t> codes;
    for (const CanErrorData& error : database.errors) {
        codes.push_back(error.code);
    }
    return codes;
}

struct File {
    std::string text;
    Names content;
    std::vector<uint32_t> codes;
};

void ExpectRead(const File& row) {
    SCOPED_TRACE(Shown(row.text.substr(0, 1000)));
    CANDatabase database;
    FileStatus status = FileStatus::Failed;
    EXPECT_TRUE(ReadText(database, row.text, &status));
    EXPECT_EQ(status, FileStatus::Closed);
    EXPECT_EQ(ContentOf(database), row.content);
    EXPECT_EQ(CodesOf(database), row.codes);
}

TEST(DbcReader, SignalsAttachToTheMessageInFrontOfThem) {
    const std::string kSecond = "BO_ 101 Second: 8 ECU\n";
    const std::string kOther = " SG_ T : 0|8@1+ (1,0) [0|255] \"\" A\n";
    const std::string kBadMessage = "BO_ x Bad: 8 ECU\n";
    const std::string kBadSignal = " SG_ Bad : x|8@1+ (1,0) [0|255] \"\" A\n";
    const File kRows[] = {
        {"VERSION \"\"\n", {}, {}},
        {kMessage, {"Msg[]"}, {}},
        {kMessage + kSignal, {"Msg[S]"}, {}},
        {kMessage + kSignal + kOther + kSignal, {"Msg[S,T,S]"}, {}},
        {kMessage + kSignal + kSecond + kOther, {"Msg[S]", "Second[T]"}, {}},
        {kMessage + kSecond + kSignal, {"Msg[]", "Second[S]"}, {}},
        {"BO_ 100 Msg: 8 ECU SG_ S : 0|8@1+ (1,0) [0|255] \"\" A SG_ T : 0|8@1+ (1,0) [0|255] \"\" A",
         {"Msg[S,T]"},
         {}},
        {"BO_\n100\nMsg:\n8\nECU\nSG_\nS\n:\n0|8@1+\n(1,0)\n[0|255]\n\"\"\nA\n", {"Msg[S]"}, {}},

        // No message to attach to.
        {kSignal + kMessage + kOther, {"Msg[T]"}, {}},
        {kBadSignal + kMessage, {"Msg[]"}, {}},

        // Behind a faulty message or signal, signals are passed over until the next message.
        {kBadMessage + kSignal + kOther, {}, {0}},
        {kBadMessage + kBadSignal, {}, {0}},
        {kMessage + kSignal + kBadMessage + kSignal, {"Msg[S]"}, {0}},
        {kBadMessage + kSignal + kMessage + kOther, {"Msg[T]"}, {0}},
        {kMessage + kBadSignal + kSignal + kBadSignal, {"Msg[]"}, {4}},
        {kMessage + kSignal + kBadSignal + kOther, {"Msg[S]"}, {4}},
        {kMessage + kBadSignal + kSecond + kOther, {"Msg[]", "Second[T]"}, {4}},
        {kMessage + kBadSignal + kBadMessage + kBadSignal, {"Msg[]"}, {4, 0}},

        // Two of one identifier are two messages.
        {kMessage + kSignal + "BO_ 100 Again: 8 ECU\n" + kOther, {"Msg[S]", "Again[T]"}, {}},

        // A signal named like a keyword ends in front of its name.
        {kMessage + " SG_ FILTER : 0|8@1+ (1,0) [0|255] \"\" A\n" + kSignal, {"Msg[]"}, {3}},
    };
    for (const File& row : kRows) {
        ExpectRead(row);
    }
}

TEST(DbcReader, AnyOtherStatementEndsTheSignalsOfAMessage) {
    for (const std::string keyword : {"CM_",
                                      "VAL_",
                                      "BA_",
                                      "BA_DEF_",
                                      "SIG_VALTYPE_",
                                      "BU_",
                                      "BS_",
                                      "VERSION",
                                      "NS_",
                                      "EV_",
                                      "NS_DESC_",
                                      "CAT_DEF_",
                                      "CAT_",
                                      "FILTER",
                                      "BA_DEF_DEF_",
                                      "EV_DATA_",
                                      "ENVVAR_DATA_",
                                      "SGTYPE_",
                                      "SGTYPE_VAL_",
                                      "BA_DEF_SGTYPE_",
                                      "BA_SGTYPE_",
                                      "SIG_TYPE_REF_",
                                      "VAL_TABLE_",
                                      "SIG_GROUP_",
                                      "SIGTYPE_VALTYPE_",
                                      "BO_TX_BU_",
                                      "BA_DEF_REL_",
                                      "BA_REL_",
                                      "BA_DEF_DEF_REL_",
                                      "BU_SG_REL_",
                                      "BU_EV_REL_",
                                      "BU_BO_REL_",
                                      "SG_MUL_VAL_"}) {
        // A faulty signal is passed over like the others, until the next message.
        ExpectRead({kMessage + kSignal + keyword + " x;\n" + kSignal + " SG_ x\n" + kSignal, {"Msg[S]"}, {}});
        ExpectRead({kMessage + keyword + " x;\n" + kSignal + kMessage + kSignal, {"Msg[]", "Msg[S]"}, {}});
    }
}

TEST(DbcReader, StatementsThatBelongToAMessageEndItsSignalsAsWell) {
    for (const std::string statement :
         {"CM_ BO_ 100 \"text\";\n", "CM_ SG_ 100 S \"text\";\n", "VAL_ 100 S 0 \"Off\" ;\n",
          "SIG_VALTYPE_ 100 S : 1;\n", "BA_DEF_ BO_ \"GenMsgCycleTime\" INT 0 1000;\n",
          "BA_DEF_DEF_ \"GenMsgCycleTime\" 10;\n", "BA_ \"GenMsgCycleTime\" BO_ 100 20;\n"}) {
        ExpectRead({kMessage + kSignal + statement + kSignal, {"Msg[S]"}, {}});
    }
}

TEST(DbcReader, LinesThatAreNoStatementsDoNotEndTheSignals) {
    ExpectRead({kMessage + "\n \n" + kSignal + "\n\n" + kSignal, {"Msg[S,S]"}, {}});
    ExpectRead({kMessage + "UNKNOWN_ 1;\n" + kSignal + "BO_100 x\n" + kSignal, {"Msg[S,S]"}, {}});
    // So many that the statement is cut.
    ExpectRead({kMessage + std::string(5000, '\n') + kSignal, {"Msg[S]"}, {}});
}

TEST(DbcReader, EachStatementReachesItsHandler) {
    CANDatabase database;
    ASSERT_TRUE(ReadText(database,
                         "BA_DEF_ \"BusType\" STRING ;\n"
                         "BA_DEF_ BO_ \"GenMsgCycleTime\" INT 0 1000;\n"
                         "BA_DEF_DEF_ \"GenMsgCycleTime\" 10;\n"
                         "BA_ \"BusType\" \"CAN FD\";\n"
                         "BO_ 100 Msg: 8 ECU\n"
                         " SG_ S : 0|32@1+ (1,0) [0|255] \"\" A\n"
                         "BO_ 101 Other: 8 ECU\n"
                         "CM_ \"network\";\n"
                         "CM_ BO_ 100 \"message\";\n"
                         "CM_ SG_ 100 S \"signal\";\n"
                         "VAL_ 100 S 1 \"On\" ;\n"
                         "SIG_VALTYPE_ 100 S : 1;\n"
                         "BA_ \"GenMsgCycleTime\" BO_ 100 20;\n"));
    ASSERT_EQ(ContentOf(database), Names({"Msg[S]", "Other[]"}));
    const CANMessage& message = *database.messages[0];
    EXPECT_EQ(message.comment, "message");
    EXPECT_EQ(message.cycleTime, 20U);
    EXPECT_EQ(message.signals[0]->comment, "signal");
    EXPECT_EQ(TextsOf(message.signals[0]->valueDescriptions), DescriptionTexts({{1, "On"}}));
    EXPECT_EQ(message.signals[0]->valueType, 2U);
    EXPECT_EQ(database.messages[1]->cycleTime, 10U);
    EXPECT_EQ(database.messages[1]->comment, "");
    EXPECT_EQ(database.info.canFd, 1U);
}

TEST(DbcReader, EveryMessageOfAnIdentifierIsReached) {
    CANDatabase database;
    ASSERT_TRUE(ReadText(database,
                         "BO_ 100 First: 8 ECU\n"
                         " SG_ S : 0|32@1+ (1,0) [0|255] \"\" A\n"
                         "BO_ 101 Other: 8 ECU\n"
                         " SG_ S : 0|32@1+ (1,0) [0|255] \"\" A\n"
                         "BO_ 100 Second: 8 ECU\n"
                         " SG_ S : 0|32@1+ (1,0) [0|255] \"\" A\n"
                         "CM_ BO_ 100 \"message\";\n"
                         "CM_ SG_ 100 S \"signal\";\n"
                         "VAL_ 100 S 1 \"On\" ;\n"
                         "SIG_VALTYPE_ 100 S : 1;\n"
                         "BA_DEF_ BO_ \"GenMsgCycleTime\" INT 0 1000;\n"
                         "BA_DEF_ SG_ \"GenSigStartValue\" INT 0 1000;\n"
                         "BA_ \"GenMsgCycleTime\" BO_ 100 20;\n"
                         "BA_ \"GenSigStartValue\" SG_ 100 S 5;\n"));
    ASSERT_EQ(ContentOf(database), Names({"First[S]", "Other[S]", "Second[S]"}));
    for (const size_t index : {0U, 1U, 2U}) {
        SCOPED_TRACE(index);
        const bool isReached = index != 1;
        const CANMessage& message = *database.messages[index];
        const CANSignal& signal = *message.signals[0];
        EXPECT_EQ(message.comment, isReached ? "message" : "");
        EXPECT_EQ(message.cycleTime, isReached ? 20U : 0U);
        EXPECT_EQ(signal.comment, isReached ? "signal" : "");
        EXPECT_EQ(signal.valueDescriptions.Size(), isReached ? 1U : 0U);
        EXPECT_EQ(signal.valueType, isReached ? 2U : 0U);
        EXPECT_EQ(signal.startValue, isReached ? 5U : 0U);
    }
}

TEST(DbcReader, StatementsInFrontOfTheirMessageAreLost) {
    CANDatabase database;
    ASSERT_TRUE(ReadText(database,
                         "CM_ BO_ 100 \"message\";\n"
                         "CM_ SG_ 100 S \"signal\";\n"
                         "VAL_ 100 S 1 \"On\" ;\n"
                         "SIG_VALTYPE_ 100 S : 1;\n"
                         "BO_ 100 Msg: 8 ECU\n"
                         " SG_ S : 0|32@1+ (1,0) [0|255] \"\" A\n"));
    ASSERT_EQ(ContentOf(database), Names({"Msg[S]"}));
    EXPECT_EQ(database.messages[0]->comment, "");
    EXPECT_EQ(database.messages[0]->signals[0]->comment, "");
    EXPECT_EQ(database.messages[0]->signals[0]->valueDescriptions.Size(), 0U);
    EXPECT_EQ(database.messages[0]->signals[0]->valueType, 0U);
}

TEST(DbcReader, FaultsOfOtherStatementsAreNotRecorded) {
    ExpectRead({kMessage +
                    "CM_ BO_ x \"text\";\nCM_ SG_ 100 Unknown \"text\";\nVAL_ 999 S 0 \"Off\" ;\nVAL_ 100 S x ;\n"
                    "SIG_VALTYPE_ 100 S 1\nBA_DEF_ BO_ \"GenMsgCycleTime\" FLOAT 0 1;\nBA_ \"Unknown\" x;\nBU_ :\n",
                {"Msg[]"},
                {}});
}

TEST(DbcReader, ScaffoldingIsGoneAfterwards) {
    CANDatabase database;
    ASSERT_TRUE(ReadText(database, kMessage + kSignal +
                                       "BA_DEF_ BO_ \"GenMsgCycleTime\" INT 0 1000;\n"
                                       "BA_ \"GenMsgCycleTime\" BO_ 100 20;\n"));
    EXPECT_EQ(database.messages.size(), 1U);
    EXPECT_TRUE(database.identifierIndex.IsEmpty());
    EXPECT_TRUE(database.attributes.Definitions().empty());
    EXPECT_TRUE(database.attributes.Values().empty());
    EXPECT_FALSE(database.attributes.IsNameRejected("GenMsgCycleTime"));
    EXPECT_TRUE(database.attributes.IsNameRejected("Other"));
}

TEST(DbcReader, ReadingClearsFirst) {
    CANDatabase database;
    database.info = {2, 1};
    ASSERT_TRUE(ReadText(database, "BO_ x Bad: 8 ECU\n" + kMessage + kSignal));
    EXPECT_EQ(database.info.protocolType, 0U);
    EXPECT_EQ(database.info.canFd, 1U);
    ASSERT_TRUE(ReadText(database, "BO_ 101 Other: 8 ECU\n"));
    EXPECT_EQ(ContentOf(database), Names({"Other[]"}));
    EXPECT_TRUE(database.errors.empty());
}

TEST(DbcReader, SignalsBeyondTenThousandAreDropped) {
    std::string text = kMessage;
    for (int i = 0; i < 10001; ++i) {
        text += " SG_ S" + std::to_string(i) + " : 0|8@1+ (1,0) [0|255] \"\" A\n";
    }
    // Dropping is no fault: a faulty signal behind it is looked at.
    text += " SG_ x\nBO_ 101 Next: 8 ECU\n" + kSignal;
    CANDatabase database;
    EXPECT_TRUE(ReadText(database, text));
    ASSERT_EQ(database.messages.size(), 2U);
    EXPECT_EQ(database.messages[0]->signals.size(), 10000U);
    EXPECT_EQ(database.messages[0]->signals.back()->name, "S9999");
    EXPECT_EQ(database.messages[1]->signals.size(), 1U);
    EXPECT_EQ(CodesOf(database), std::vector<uint32_t>({3}));
}

struct Unopened {
    std::string description;
    const char* path;
    uint32_t size;
    FileStatus status;
};

TEST(DbcReader, FileThatIsNotOpenedLeavesAnEmptyDatabase) {
    const TemporaryFile file(kMessage);
    const std::string missing = UnusedPath();
    const Unopened kRows[] = {
        {"too large a buffer", file.Path().c_str(), 261, FileStatus::PathTooLong},
        {"the largest buffer", file.Path().c_str(), 4294967295U, FileStatus::PathTooLong},
        {"no path in too large a buffer", nullptr, 261, FileStatus::PathTooLong},
        {"broken UTF-8",
         "\xFF"
         "abcd",
         260, FileStatus::PathInvalid},
        {"a buffer of one byte", file.Path().c_str(), 1, FileStatus::PathInvalid},
        {"an empty path", "", 260, FileStatus::PathEmpty},
        {"no path", nullptr, 260, FileStatus::PathEmpty},
        {"no buffer", file.Path().c_str(), 0, FileStatus::PathEmpty},
        {"a missing file", missing.c_str(), 260, FileStatus::NotOpened},
        {"a directory", TABRIN_TEMP_DIR, 260, FileStatus::NotOpened},
    };
    for (const Unopened& row : kRows) {
        SCOPED_TRACE(row.description);
        CANDatabase database;
        ASSERT_TRUE(ReadText(database, kMessage + " SG_ x\n"));
        database.info = {2, 1};
        FileStatus status = FileStatus::Closed;
        EXPECT_FALSE(ReadDbcFile(database, row.path, row.size, status));
        EXPECT_EQ(status, row.status);
        EXPECT_TRUE(database.messages.empty());
        EXPECT_TRUE(database.errors.empty());
        EXPECT_EQ(database.info.protocolType, 0U);
        EXPECT_EQ(database.info.canFd, 1U);
    }
}

TEST(DbcReader, LineEndsMakeNoDifference) {
    ExpectRead({"BO_ 100 Msg: 8 ECU\r\n SG_ S : 0|8@1+ (1,0) [0|255] \"\" A\r\n", {"Msg[S]"}, {}});
    ExpectRead({"BO_ 100 Msg: 8 ECU\r\n SG_ S : 0|8@1+ (1,0) [0|255] \"\" A", {"Msg[S]"}, {}});
    ExpectRead({"BO_ 100 Msg: 8 ECU\n SG_ S : 0|8@1+ (1,0) [0|255] \"\" A", {"Msg[S]"}, {}});
    // A lone CR is a blank.
    ExpectRead({"BO_ 100 Msg: 8 ECU\r SG_ S : 0|8@1+ (1,0) [0|255] \"\" A\r", {"Msg[S]"}, {}});
}

TEST(DbcReader, OddFilesAreReadToTheirEnd) {
    using namespace std::string_literals;
    const File kRows[] = {
        {"", {}, {}},
        {"\n", {}, {}},
        {"\r\n\r\n", {}, {}},
        {" ", {}, {}},
        {"no keyword at all\nnone\n", {}, {}},
        {"\0\0\0"s, {}, {}},
        {std::string(100000, '\0'), {}, {}},
        {std::string(100000, '\xFF'), {}, {}},
        {std::string(100000, '\n') + kMessage, {"Msg[]"}, {}},
        {std::string(100000, 'x') + " " + kMessage, {"Msg[]"}, {}},

        // Keywords alone.
        {"BO_", {}, {0}},
        {"BO_\n", {}, {0}},
        {"SG_", {}, {}},
        {"CM_", {}, {}},
        {"BA_", {}, {}},
        {"VAL_ BA_DEF_ BA_DEF_DEF_ SIG_VALTYPE_", {}, {}},
        {"BO_ SG_ BO_ SG_", {}, {0, 0}},
        {"BO_SG_BO_SG_", {}, {}},
        {kMessage + "SG_", {"Msg[]"}, {3}},
        {kMessage + "SG_ SG_ SG_", {"Msg[]"}, {3}},
        // The comment takes the keyword behind it, and the line with it.
        {"CM_ BO_ SG_\n" + kMessage, {"Msg[]"}, {}},

        // Characters in front of the first keyword hide it; a byte order mark is nothing special.
        {"\xEF\xBB\xBF" + kMessage + "BO_ 101 Other: 8 ECU\n", {"Other[]"}, {}},
        {"\xEF\xBB\xBFVERSION \"\"\n" + kMessage, {"Msg[]"}, {}},
        {"\xEF\xBB\xBF " + kMessage, {"Msg[]"}, {}},

        // Control characters are left out, none of them ends the file.
        {"BO_ 100 M\0s\x01g: 8 ECU\n\x1A\nBO_ 101 Other: 8 ECU\n"s, {"Msg[]", "Other[]"}, {}},
        {"B\0O_ 100 Msg: 8 ECU\n"s, {"Msg[]"}, {}},

        // Each byte of a broken character is replaced.
        {"BO_ 100 M\xFFs\xE2\x82g: 8 ECU\n", {"M_s__g[]"}, {}},
        {"BO_ 100 Msg\xC3\n: 8 ECU\n", {"Msg_[]"}, {}},

        // Quotes hide no keywords.
        {kMessage + "CM_ BO_ 100 \"open\n" + kMessage + kSignal, {"Msg[]", "Msg[S]"}, {}},
        {kMessage + " SG_ S : 0|8@1+ (1,0) [0|255] \"a BO_ b", {"Msg[S]"}, {0}},
    };
    for (const File& row : kRows) {
        ExpectRead(row);
    }
}

}  // namespace
}  // namespace tabrin
