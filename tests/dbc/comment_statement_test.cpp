#include "dbc/comment_statement.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "dbc/parsed.h"
#include "dbc/reading.h"
#include "dbc/writing.h"
#include "shown.h"

namespace tabrin {
namespace {

// --- Reading the comment of a message

struct MessageCommentCase {
    std::string_view statement;
    bool result;
    std::string_view comment;
};

constexpr MessageCommentCase kMessageCommentCases[] = {
    {R"(CM_ BO_ 100 "Engine status";)", true, "Engine status"},
    {R"(CM_ BO_ 100 "";)", true, ""},
    {R"(CM_ BO_ 100 "x";)", true, "x"},
    // The text: all that is between the first quote and the last.
    {R"(CM_ BO_ 100 "a "b" c";)", true, R"(a \"b\" c)"},
    {R"(CM_ BO_ 100 "say \"hi\"";)", true, R"(say \"hi\")"},
    {R"(CM_ BO_ 100 ""quoted"";)", true, R"(\"quoted\")"},
    {R"(CM_ BO_ 100 "one"; CM_ BO_ 100 "two";)", true, R"(one\"; CM_ BO_ 100 \"two)"},
    {R"(CM_ BO_ 100 """;)", true, R"(\")"},
    {R"(CM_ BO_ 100 "  blanks stay  ";)", true, "  blanks stay  "},
    {"CM_ BO_ 100 \"first\n\tsecond\n\nlast\";\n", true, "first\n\tsecond\n\nlast"},
    {"CM_ BO_ 100 \"\xC3\x96l \xE6\xBC\xA2\";", true, "\xC3\x96l \xE6\xBC\xA2"},
    // What follows the last quote does not matter.
    {R"(CM_ BO_ 100 "no semicolon")", true, "no semicolon"},
    {R"(CM_ BO_ 100 "text" and more)", true, "text"},
    // Without a second quote there is no text.
    {R"(CM_ BO_ 100 "open;)", true, ""},
    {R"(CM_ BO_ 100 ")", true, ""},
    {R"(CM_ BO_ 100 no quote;)", true, ""},
    {R"(CM_ BO_ 100 )", true, ""},
    // A name between the identifier and the text makes it the comment of something else.
    {R"(CM_ BO_ 100 Foo "x";)", true, ""},
    {R"(CM_ BO_ 100 F "x";)", true, ""},
    {R"(CM_ BO_ 100 F"x";)", true, ""},
    {R"(CM_ BO_ 100 Msg "x";)", true, ""},
    {R"(CM_ BO_ 100 ; "x";)", true, ""},
    // Blanks of every kind, any number of them.
    {" \t\n\r\v\fCM_ BO_ 100 \"x\";", true, "x"},
    {"CM_\tBO_\n100\v\"x\";", true, "x"},
    {"CM_\f \rBO_ \t100\f\"x\";", true, "x"},
    {"CM_ BO_ 100 \n\r\t\v\f \"x\";", true, "x"},
    // The identifier is a plain number with a blank behind it.
    {R"(CM_ BO_ 0100 "x";)", true, "x"},
    {R"(CM_ BO_ 100"x";)", false, ""},
    {R"(CM_ BO_ 100; "x";)", false, ""},
    {R"(CM_ BO_ 100)", false, ""},
    {R"(CM_ BO_ +100 "x";)", false, ""},
    {R"(CM_ BO_ -100 "x";)", false, ""},
    {R"(CM_ BO_ 100a "x";)", false, ""},
    {R"(CM_ BO_ 100.0 "x";)", false, ""},
    {R"(CM_ BO_ 0x64 "x";)", false, ""},
    {R"(CM_ BO_ 4294967396 "x";)", false, ""},
    {R"(CM_ BO_ "x";)", false, ""},
    {R"(CM_ BO_ )", false, ""},
    // No message of that identifier.
    {R"(CM_ BO_ 101 "x";)", false, ""},
    {R"(CM_ BO_ 10 "x";)", false, ""},
    {R"(CM_ BO_ 1000 "x";)", false, ""},
    // The comment of a signal, which the message does not have.
    {R"(CM_ SG_ 100 "x";)", true, ""},
    // Other statements.
    {R"(CM_ "network text";)", false, ""},
    {R"(CM_ BU_ Node "text";)", false, ""},
    {R"(CM_ EV_ Variable "text";)", false, ""},
    {R"(CM_ 100 "x";)", false, ""},
    {R"(CM_BO_ 100 "x";)", false, ""},
    {R"(CM_ BO_100 "x";)", false, ""},
    {R"(cm_ BO_ 100 "x";)", false, ""},
    {R"(CM_ bo_ 100 "x";)", false, ""},
    {R"(BO_ 100 "x";)", false, ""},
    {R"(BA_ BO_ 100 "x";)", false, ""},
    {R"(CM_)", false, ""},
    {R"()", false, ""},
};

TEST(CommentStatement, MessageCommentsAreRead) {
    for (const MessageCommentCase& row : kMessageCommentCases) {
        SCOPED_TRACE(Shown(row.statement));
        CANDatabase database;
        const CANMessage& message = AddRead(database, "BO_ 100 Msg: 8 X");
        EXPECT_EQ(ReadComment(database, row.statement), row.result);
        EXPECT_EQ(message.comment, row.comment);
    }
}

TEST(CommentStatement, MessageCommentReachesEveryMessageOfTheIdentifierOnly) {
    CANDatabase database;
    const CANMessage& first = AddRead(database, "BO_ 100 First: 8 X");
    const CANMessage& other = AddRead(database, "BO_ 200 Other: 8 X");
    const CANMessage& second = AddRead(database, "BO_ 100 Second: 8 X");
    EXPECT_TRUE(ReadComment(database, R"(CM_ BO_ 100 "both";)"));
    EXPECT_EQ(first.comment, "both");
    EXPECT_EQ(second.comment, "both");
    EXPECT_EQ(other.comment, "");
}

TEST(CommentStatement, MessageCommentLeavesTheSignalsAlone) {
    CANDatabase database;
    CANMessage& message = AddRead(database, "BO_ 100 Msg: 8 X");
    const CANSignal& nameless = AddReadSignal(message, "M");
    EXPECT_TRUE(ReadComment(database, R"(CM_ BO_ 100 "x";)"));
    EXPECT_EQ(nameless.comment, "");
}

TEST(CommentStatement, LargestIdentifierIsFound) {
    CANDatabase database;
    const CANMessage& message = AddRead(database, "BO_ 4294967295 Msg: 8 X");
    EXPECT_TRUE(ReadComment(database, R"(CM_ BO_ 4294967295 "x";)"));
    EXPECT_EQ(message.comment, "x");
}

TEST(CommentStatement, RepeatedMessageCommentsAreJoinedWithoutSeparator) {
    CANDatabase database;
    const CANMessage& message = AddRead(database, "BO_ 100 Msg: 8 X");
    EXPECT_TRUE(ReadComment(database, R"(CM_ BO_ 100 "one";)"));
    EXPECT_TRUE(ReadComment(database, R"(CM_ BO_ 100 "open;)"));
    EXPECT_TRUE(ReadComment(database, R"(CM_ BO_ 100 "two";)"));
    EXPECT_EQ(message.comment, "onetwo");
}

TEST(CommentStatement, BackslashAtTheEndEscapesTheQuoteThatIsAppended) {
    CANDatabase database;
    const CANMessage& message = AddRead(database, "BO_ 100 Msg: 8 X");
    EXPECT_TRUE(ReadComment(database, R"(CM_ BO_ 100 "one\";)"));
    EXPECT_EQ(message.comment, R"(one\)");
    EXPECT_TRUE(ReadComment(database, R"(CM_ BO_ 100 ""two";)"));
    EXPECT_EQ(message.comment, R"(one\"two)");
}

TEST(CommentStatement, AppendedMessageIsNotFoundByItsIdentifier) {
    CANDatabase database;
    const CANMessage& message = AddMessage(database, {.id = 100});
    EXPECT_FALSE(ReadComment(database, R"(CM_ BO_ 100 "x";)"));
    EXPECT_EQ(message.comment, "");
}

// --- Reading the comment of a signal

struct SignalCommentCase {
    std::string_view statement;
    bool result;
    std::string_view takers;  // the names as read of the signals that the comment "x" goes to, each in brackets
};

constexpr SignalCommentCase kSignalCommentCases[] = {
    {R"(CM_ SG_ 100 EngineSpeed "x";)", true, "[EngineSpeed]"},
    {R"(CM_ SG_ 100  EngineSpeed  "x";)", true, "[EngineSpeed]"},
    {R"(CM_ SG_ 100 EngineSpeed"x";)", true, "[EngineSpeed]"},
    {"CM_\tSG_\v100\n\rEngineSpeed\f\t\"x\"", true, "[EngineSpeed]"},
    {R"(CM_ SG_ 100 S "x";)", true, "[S]"},
    {R"(CM_ SG_ 100 S"x";)", true, "[S]"},
    // The name as it was read, blanks inside included, not its identifier form.
    {R"(CM_ SG_ 100 My Sig "x";)", true, "[My Sig]"},
    {"CM_ SG_ 100  My Sig\t\"x\";", true, "[My Sig]"},
    {R"(CM_ SG_ 100 My_Sig "x";)", true, ""},
    {R"(CM_ SG_ 100 My  Sig "x";)", true, ""},
    {"CM_ SG_ 100 My\tSig \"x\";", true, ""},
    {"CM_ SG_ 100 Tab\tbed \"x\";", true, "[Tab\tbed]"},
    {R"(CM_ SG_ 100 Tab bed "x";)", true, ""},
    // The whole name, in its own case.
    {R"(CM_ SG_ 100 My "x";)", true, "[My]"},
    {R"(CM_ SG_ 100 M "x";)", true, ""},
    {R"(CM_ SG_ 100 Sig "x";)", true, ""},
    {R"(CM_ SG_ 100 enginespeed "x";)", true, ""},
    {R"(CM_ SG_ 100 EngineSpeed2 "x";)", true, ""},
    {R"(CM_ SG_ 100 EngineSpeed; "x";)", true, ""},
    {R"(CM_ SG_ 100 My Sig S "x";)", true, ""},
    // No name at all names the signal without a name.
    {R"(CM_ SG_ 100 "x";)", true, "[]"},
    {"CM_ SG_ 100 \n \"x\";", true, "[]"},
    // Two of one name.
    {R"(CM_ SG_ 100 Twin "x";)", true, "[Twin][Twin]"},
    // No text.
    {R"(CM_ SG_ 100 EngineSpeed "x;)", true, ""},
    {R"(CM_ SG_ 100 EngineSpeed ")", true, ""},
    {R"(CM_ SG_ 100 EngineSpeed x;)", true, ""},
    {R"(CM_ SG_ 100 EngineSpeed)", true, ""},
    // The comment of something else.
    {R"(CM_ BO_ 100 EngineSpeed "x";)", true, ""},
    // Declined.
    {R"(CM_ SG_ 100)", false, ""},
    {R"(CM_ SG_ 300 EngineSpeed "x";)", false, ""},
    {R"(CM_ SG_ EngineSpeed "x";)", false, ""},
    {R"(CM_ SG_ 100, EngineSpeed "x";)", false, ""},
    {R"(CM_ SG_ +100 EngineSpeed "x";)", false, ""},
    {R"(CM_ SG_100 EngineSpeed "x";)", false, ""},
    {R"(CM_ sg_ 100 EngineSpeed "x";)", false, ""},
    {R"(SG_ 100 EngineSpeed "x";)", false, ""},
    {R"(CM_ "x";)", false, ""},
    {R"()", false, ""},
};

TEST(CommentStatement, SignalCommentsAreRead) {
    for (const SignalCommentCase& row : kSignalCommentCases) {
        SCOPED_TRACE(Shown(row.statement));
        CANDatabase database;
        CANMessage& message = AddRead(database, "BO_ 100 Msg: 8 X");
        for (const char* name : {"EngineSpeed", "S", "My", "My Sig", "M", "Tab\tbed", "Twin", "Twin"}) {
            AddReadSignal(message, name);
        }
        CANMessage& other = AddRead(database, "BO_ 200 Other: 8 X");
        const CANSignal& otherSignal = AddReadSignal(other, "EngineSpeed");
        EXPECT_EQ(ReadComment(database, row.statement), row.result);
        std::string takers;
        for (const auto& signal : message.signals) {
            if (signal->comment == "x") {
                takers.append("[").append(signal->nameAsRead).append("]");
            } else {
                EXPECT_EQ(signal->comment, "");
            }
        }
        EXPECT_EQ(takers, row.takers);
        EXPECT_EQ(message.comment, "");
        EXPECT_EQ(otherSignal.comment, "");
    }
}

TEST(CommentStatement, SignalCommentReachesEveryMessageOfTheIdentifier) {
    CANDatabase database;
    CANMessage& first = AddRead(database, "BO_ 100 First: 8 X");
    const CANSignal& inFirst = AddReadSignal(first, "S");
    CANMessage& second = AddRead(database, "BO_ 100 Second: 8 X");
    const CANSignal& inSecond = AddReadSignal(second, "S");
    EXPECT_TRUE(ReadComment(database, R"(CM_ SG_ 100 S "both";)"));
    EXPECT_EQ(inFirst.comment, "both");
    EXPECT_EQ(inSecond.comment, "both");
}

TEST(CommentStatement, RepeatedSignalCommentsAreJoined) {
    CANDatabase database;
    CANMessage& message = AddRead(database, "BO_ 100 Msg: 8 X");
    const CANSignal& signal = AddReadSignal(message, "S");
    EXPECT_TRUE(ReadComment(database, R"(CM_ SG_ 100 S "an "o";)"));
    EXPECT_TRUE(ReadComment(database, R"(CM_ SG_ 100 S "n"e";)"));
    EXPECT_EQ(signal.comment, R"(an \"on\"e)");
}

TEST(CommentStatement, LaterLongNameDoesNotMatter) {
    CANDatabase database;
    CANMessage& message = AddRead(database, "BO_ 100 Msg: 8 X");
    CANSignal& signal = AddReadSignal(message, "Short");
    signal.name = "Long";
    EXPECT_TRUE(ReadComment(database, R"(CM_ SG_ 100 Long "wrong";)"));
    EXPECT_TRUE(ReadComment(database, R"(CM_ SG_ 100 Short "right";)"));
    EXPECT_EQ(signal.comment, "right");
}

// --- In a file

TEST(CommentStatement, CommentInFrontOfItsMessageIsLost) {
    CANDatabase database;
    ASSERT_TRUE(ReadText(database,
                         "CM_ BO_ 100 \"early\";\n"
                         "BO_ 100 Msg: 8 X\n"
                         "CM_ BO_ 100 \"late\";\n"));
    EXPECT_EQ(database.messages.at(0)->comment, "late");
    EXPECT_TRUE(database.errors.empty());
}

TEST(CommentStatement, CommentReachesMessagesReadSinceTheOneBefore) {
    CANDatabase database;
    ASSERT_TRUE(ReadText(database,
                         "BO_ 100 First: 8 X\n"
                         " SG_ S : 0|8@1+ (1,0) [0|255] \"\" X\n"
                         "CM_ SG_ 100 S \"one\";\n"
                         "BO_ 100 Second: 8 X\n"
                         " SG_ S : 0|8@1+ (1,0) [0|255] \"\" X\n"
                         "CM_ SG_ 100 S \"two\";\n"));
    ASSERT_EQ(database.messages.size(), 2U);
    EXPECT_EQ(database.messages[0]->signals.at(0)->comment, "onetwo");
    EXPECT_EQ(database.messages[1]->signals.at(0)->comment, "two");
}

TEST(CommentStatement, CommentsThatFindNoTargetAreNoErrors) {
    CANDatabase database;
    ASSERT_TRUE(ReadText(database,
                         "BO_ 100 Msg: 8 X\n"
                         " SG_ S : 0|8@1+ (1,0) [0|255] \"\" X\n"
                         "CM_ \"network text\";\n"
                         "CM_ BU_ X \"node text\";\n"
                         "CM_ BO_ 101 \"other\";\n"
                         "CM_ BO_ 100\"no blank\";\n"
                         "CM_ SG_ 100 T \"other\";\n"));
    EXPECT_EQ(database.messages.at(0)->comment, "");
    EXPECT_EQ(database.messages.at(0)->signals.at(0)->comment, "");
    EXPECT_TRUE(database.errors.empty());
}

TEST(CommentStatement, CommentOverSeveralLinesKeepsItsLineEnds) {
    CANDatabase database;
    ASSERT_TRUE(ReadText(database,
                         "BO_ 100 Msg: 8 X\r\n"
                         "CM_ BO_ 100 \"first\r\n"
                         "\r\n"
                         "  last\";\r\n"
                         "BU_ : X\r\n"));
    EXPECT_EQ(database.messages.at(0)->comment, "first\n\n  last");
}

// --- Writing

TEST(CommentStatement, MessageLineHasTheIdentifierInFrontOfTheText) {
    const struct {
        MessageFields message;
        std::string_view line;
    } rows[] = {
        {{.id = 100, .comment = "Engine status"}, R"(CM_ BO_ 100 "Engine status";)"},
        {{.id = 100, .comment = "text"}, R"(CM_ BO_ 100 "text";)"},
        {{.id = 4294967295, .comment = "text"}, R"(CM_ BO_ 4294967295 "text";)"},
        {{.id = 0, .comment = "a \"b\" c"}, R"(CM_ BO_ 0 "a \"b\" c";)"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.line);
        CANDatabase database;
        EXPECT_EQ(AddMessage(database, row.message).WriteCommentLine(), row.line);
    }
}

TEST(CommentStatement, MessageWithoutCommentHasNoLine) {
    CANDatabase database;
    EXPECT_EQ(AddMessage(database, {.name = "Msg"}).WriteCommentLine(), "");
    EXPECT_EQ(AddMessage(database, {.name = "Two words"}).WriteCommentLine(), "");
}

std::string CommentsSection(const CANDatabase& database) {
    return StreamBytes([&](DbcFileStream& stream) {
        WriteCommentsSection(stream, database.messages, LinesBehind(database.messages).comments);
    });
}

TEST(CommentStatement, SectionHasEachMessageFollowedByItsSignals) {
    CANDatabase database;
    CANMessage& first = AddMessage(database, {.id = 100, .comment = "first"});
    AddSignal(first, {.name = "B", .comment = "b"});
    AddSignal(first, {.name = "Plain"});
    AddSignal(first, {.name = "A", .comment = "a"});
    CANMessage& second = AddMessage(database, {.id = 7});
    AddSignal(second, {.name = "EngineSpeed", .comment = "Revolutions per minute"});
    AddMessage(database, {.id = 5});
    AddMessage(database, {.id = 2147483748, .comment = "last"});
    EXPECT_EQ(CommentsSection(database),
              "CM_ BO_ 100 \"first\";\r\n"
              "CM_ SG_ 100 B \"b\";\r\n"
              "CM_ SG_ 100 A \"a\";\r\n"
              "CM_ SG_ 7 EngineSpeed \"Revolutions per minute\";\r\n"
              "CM_ BO_ 2147483748 \"last\";\r\n");
}

TEST(CommentStatement, SectionWithoutCommentsIsEmpty) {
    CANDatabase database;
    AddSignal(AddMessage(database), {.name = "Two words"});
    EXPECT_EQ(CommentsSection(database), "");
}

TEST(CommentStatement, MessageOfAnotherLongNameLeavesAnEmptyLine) {
    CANDatabase database;
    CANMessage& message = AddMessage(database, {.id = 100, .name = "Two words"});
    AddSignal(message, {.name = "S", .comment = "text"});
    EXPECT_EQ(CommentsSection(database), "\r\nCM_ SG_ 100 S \"text\";\r\n");
}

TEST(CommentStatement, MessageOfAnotherLongNameWithACommentLeavesNone) {
    CANDatabase database;
    AddMessage(database, {.id = 100, .name = "Two words", .comment = "text"});
    EXPECT_EQ(CommentsSection(database), "CM_ BO_ 100 \"text\";\r\n");
}

TEST(CommentStatement, SignalIsWrittenByItsIdentifierName) {
    CANDatabase database;
    AddSignal(AddMessage(database), {.name = "My Sig", .comment = "text"});
    EXPECT_EQ(CommentsSection(database), "CM_ SG_ 1 My_Sig \"text\";\r\n");
}

TEST(CommentStatement, SignalWithoutNameLeavesTwoBlanks) {
    CANDatabase database;
    AddSignal(AddMessage(database), {.name = "", .comment = "text"});
    EXPECT_EQ(CommentsSection(database), "CM_ SG_ 1  \"text\";\r\n");
}

TEST(CommentStatement, CommentIsWrittenAsItIsKept) {
    CANDatabase database;
    CANMessage& message = AddRead(database, "BO_ 100 Msg: 8 X");
    const CANSignal& signal = AddReadSignal(message, "S");
    ASSERT_TRUE(ReadComment(database, R"(CM_ BO_ 100 "a "b" c";)"));
    ASSERT_TRUE(ReadComment(database, R"(CM_ SG_ 100 S "say \"hi\"; \n";)"));
    EXPECT_EQ(signal.comment, R"(say \"hi\"; \n)");
    EXPECT_EQ(CommentsSection(database),
              "CM_ BO_ 100 \"a \\\"b\\\" c\";\r\n"
              "CM_ SG_ 100 S \"say \\\"hi\\\"; \\n\";\r\n");
}

TEST(CommentStatement, LineBreaksInAWrittenCommentAreLineEndsOfTheFile) {
    CANDatabase database;
    CANMessage& message = AddMessage(database, {.id = 100, .comment = "first\n\nlast"});
    AddSignal(message, {.name = "S", .comment = "\nx\n"});
    EXPECT_EQ(CommentsSection(database), "CM_ BO_ 100 \"first\r\n\r\nlast\";\r\nCM_ SG_ 100 S \"\r\nx\r\n\";\r\n");
}

TEST(CommentStatement, NothingIsWrittenToAClosedStream) {
    CANDatabase database;
    AddMessage(database, {.comment = "text"});
    DbcFileStream stream;
    WriteCommentsSection(stream, database.messages, LinesBehind(database.messages).comments);
    EXPECT_EQ(stream.Status(), FileStatus::Closed);
    // A line that was tried all the same would be told of here.
    stream.Close();
    EXPECT_EQ(stream.Status(), FileStatus::Closed);
}

}  // namespace
}  // namespace tabrin
