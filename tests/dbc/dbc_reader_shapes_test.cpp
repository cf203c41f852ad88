// Shapes of files that once took minutes or gigabytes to read. Nothing is timed: whoever brings such a cost back waits
// for it here.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "dbc/reading.h"
#include "model/can_database.h"

namespace tabrin {
namespace {

constexpr uint32_t kMany = 50000;

std::string Repeated(uint32_t count, std::string (*line)(uint32_t)) {
    std::string text;
    for (uint32_t i = 0; i < count; ++i) {
        text += line(i);
    }
    return text;
}

TEST(DbcReaderShapes, IdentifiersThatWouldShareABucketOfAHashTable) {
    CANDatabase database;
    ASSERT_TRUE(ReadText(
        database,
        Repeated(kMany, [](uint32_t i) {
            return "BO_ " + std::to_string(i * 85229) + " M: 8 E\n SG_ S : 0|8@1+ (1,0) [0|1] \"\" E\n";
        }) + Repeated(kMany, [](uint32_t i) { return "VAL_ " + std::to_string(i * 85229) + " S 0 \"a\";\n"; })));
    ASSERT_EQ(database.messages.size(), kMany);
    EXPECT_EQ(database.messages.front()->signals[0]->valueDescriptions.Size(), 1U);
    EXPECT_EQ(database.messages.back()->signals[0]->valueDescriptions.Size(), 1U);
}

TEST(DbcReaderShapes, StatementsForAnIdentifierOfManyMessagesWithoutTheSignal) {
    CANDatabase database;
    ASSERT_TRUE(ReadText(database, "BA_DEF_ SG_ \"GenSigStartValue\" INT 0 10;\n" + Repeated(kMany, [](uint32_t) {
                                       return std::string("BO_ 1 M: 8 E\n");
                                   }) + Repeated(kMany, [](uint32_t i) {
                                       const std::string target = " 1 S" + std::to_string(i);
                                       return "VAL_" + target + " 0 \"a\";\nCM_ SG_" + target +
                                              " \"c\";\nCM_ BO_ 1 \"\";\nSIG_VALTYPE_" + target +
                                              " : 1;\nBA_ \"GenSigStartValue\" SG_" + target + " 5;\n";
                                   })));
    EXPECT_EQ(database.messages.size(), kMany);
    EXPECT_EQ(database.messages.back()->comment, "");
}

TEST(DbcReaderShapes, MessagesOfOneIdentifierWithStatementsInBetween) {
    CANDatabase database;
    ASSERT_TRUE(ReadText(database, Repeated(kMany / 2, [](uint32_t i) {
                             const std::string name = "S" + std::to_string(i);
                             return "BO_ 1 M: 8 E\n SG_ " + name + " : 0|8@1+ (1,0) [0|1] \"\" E\nVAL_ 1 " + name +
                                    " 0 \"a\";\n";
                         })));
    ASSERT_EQ(database.messages.size(), kMany / 2);
    EXPECT_EQ(database.messages.front()->signals[0]->valueDescriptions.Size(), 1U);
    EXPECT_EQ(database.messages.back()->signals[0]->valueDescriptions.Size(), 1U);
}

TEST(DbcReaderShapes, LongDefaultTextBesideManyValues) {
    CANDatabase database;
    ASSERT_TRUE(ReadText(database, "BA_DEF_ BO_ \"Kestrune_Msg_Name\" STRING ;\nBA_DEF_DEF_ \"Kestrune_Msg_Name\" \"" +
                                       std::string(1000000, 'x') + "\";\n" + Repeated(kMany, [](uint32_t i) {
                                           const std::string id = std::to_string(i);
                                           return "BO_ " + id + " M: 8 X\nBA_ \"Kestrune_Msg_Name\" BO_ " + id +
                                                  " \"n n\";\n";
                                       })));
    ASSERT_EQ(database.messages.size(), kMany);
    EXPECT_EQ(database.messages.back()->name, "n n");
}

TEST(DbcReaderShapes, LongSendTypeOfManyMessages) {
    CANDatabase database;
    ASSERT_TRUE(
        ReadText(database, "BA_DEF_ BO_ \"GenMsgSendType\" ENUM \"" + std::string(1000000, '-') + "\";\n" +
                               Repeated(kMany, [](uint32_t i) { return "BO_ " + std::to_string(i) + " M: 8 X\n"; })));
    ASSERT_EQ(database.messages.size(), kMany);
    EXPECT_EQ(database.messages.back()->sendType, std::string(32, '_'));
}

TEST(DbcReaderShapes, CommentInManyPieces) {
    CANDatabase database;
    ASSERT_TRUE(ReadText(database, "BO_ 1 M: 8 E\n" + Repeated(2 * kMany, [](uint32_t) {
                                       return std::string("CM_ BO_ 1 \"\"\"\";\n");
                                   })));
    // Each piece is two quotes, and each quote is kept with a backslash in front.
    EXPECT_EQ(database.messages[0]->comment.View().size(), 8 * kMany);
}

TEST(DbcReaderShapes, LongListOfValuesThatManyStatementsMiss) {
    std::string list;
    for (uint32_t i = 0; i < kMany; ++i) {
        list += (i == 0 ? "\"v" : ",\"v") + std::to_string(i) + "\"";
    }
    CANDatabase database;
    ASSERT_TRUE(ReadText(
        database, "BO_ 1 M: 8 X\nBA_DEF_ BO_ \"GenMsgSendType\" ENUM " + list + ";\n" + Repeated(kMany, [](uint32_t) {
                      return std::string(
                          "BA_DEF_DEF_ \"GenMsgSendType\" \"missing\";\n"
                          "BA_ \"GenMsgSendType\" BO_ 1 9999999;\n");
                  }) + "BA_DEF_DEF_ \"GenMsgSendType\" \"v49999\";\n"));
    EXPECT_EQ(database.messages.front()->sendType, "v49999");
}

TEST(DbcReaderShapes, LongNameOfManyMessagesOfOneIdentifier) {
    CANDatabase database;
    const std::string name(1000000, 'n');
    ASSERT_TRUE(ReadText(database, "BA_DEF_ BO_ \"Kestrune_Msg_Name\" STRING ;\n" +
                                       Repeated(kMany, [](uint32_t) { return std::string("BO_ 1 M: 8 X\n"); }) +
                                       "BA_ \"Kestrune_Msg_Name\" BO_ 1 \"" + name + "\";\n"));
    ASSERT_EQ(database.messages.size(), kMany);
    EXPECT_EQ(database.messages.back()->name, name);
}

}  // namespace
}  // namespace tabrin
