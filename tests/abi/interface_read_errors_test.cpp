// The errors of a read, and which signals go to which message.
#include <initializer_list>

#include "abi/interface_test.h"

namespace tabrin_test {
namespace {

class ReadErrors : public InterfaceTest {};

// All errors, such as "1@2:BO_ 7 Bad;", that is code @ line : text.
std::string Errors() {
    std::string text;
    for (uint32_t index = 0; index < NumErrors(); ++index) {
        const CanErrorData error = ErrorAt(index);
        text += std::to_string(error.code) + "@" + std::to_string(error.line) + ":" + Field(error.text) + ";";
    }
    return text;
}

// All messages with their signals, such as "100(A,B) 200()".
std::string Contents() {
    std::string text;
    for (uint32_t message = 0; message < NumMessages(); ++message) {
        text += (message == 0 ? "" : " ") + std::to_string(MessageAt(message).id) + "(";
        for (uint32_t signal = 0; signal < NumSignals(message); ++signal) {
            text += (signal == 0 ? "" : ",") + Field(SignalAt(message, signal).name);
        }
        text += ")";
    }
    return text;
}

struct Row {
    std::string file;
    std::string contents;
    std::string errors;
};

void ExpectRead(const Row& row) {
    SCOPED_TRACE(Shown(row.file));
    EXPECT_EQ(ReadText(row.file), kDone);
    EXPECT_EQ(Contents(), row.contents);
    EXPECT_EQ(Errors(), row.errors);
}

TEST_F(ReadErrors, CodeOfAMessageTellsTheStepThatFailed) {
    const struct {
        const char* statement;
        const char* code;
    } rows[] = {
        {"BO_ x Msg: 8 N", "0"},
        {"BO_ 100: 8 ECU", "0"},
        {"BO_ 0x10 Msg: 8 N", "0"},
        {"BO_ -1 Msg: 8 N", "0"},
        {"BO_ 4294967296 Msg: 8 N", "0"},
        {"BO_", "0"},
        {"BO_ 1 Bad", "1"},
        {"BO_ 100 : 8 ECU", "1"},
        {"BO_ 100 Msg: ECU", "2"},
        {"BO_ 100 Msg: x8 N", "2"},
        {"BO_ 100 Msg: -8 N", "2"},
        {"BO_ 100 Msg:", "2"},
        {"BO_ 100 Msg: 4294967296 N", "2"},
    };
    for (const auto& row : rows) {
        const std::string statement = row.statement;
        ExpectRead({statement + "\nVERSION \"\"\n", "", std::string(row.code) + "@1:" + statement + ";"});
    }
}

TEST_F(ReadErrors, CodeOfASignalTellsTheStepThatFailed) {
    const struct {
        const char* statement;
        const char* code;
    } rows[] = {
        {"SG_ S 0|8@1+ (1,0) [0|1] \"\" N", "3"},   {"SG_", "3"},
        {"SG_ : 0|8@1+ (1,0) [0|1", "6"},  // a name may be empty; the missing bracket is noticed
        {"SG_ S : x|8@1+ (1,0) [0|1] \"\" N", "4"}, {"SG_ S : |8@1+ (1,0) [0|1] \"\" N", "4"},
        {"SG_ S : 0|x@1+ (1,0) [0|1] \"\" N", "4"}, {"SG_ S : 0|8@2+ (1,0) [0|1] \"\" N", "4"},
        {"SG_ S : 0|8@+ (1,0) [0|1] \"\" N", "4"},  {"SG_ S : 4294967296|8@1+ (1,0) [0|1] \"\" N", "4"},
        {"SG_ S : 0|8@1+ 1,0 [0|1] \"\" N", "5"},   {"SG_ S : 0|8@1+ (,0) [0|1] \"\" N", "5"},
        {"SG_ S : 0|8@1+ (1,) [0|1] \"\" N", "5"},  {"SG_ S : 0|8@1+ (1;0) [0|1] \"\" N", "5"},
        {"SG_ S : 0|8@1+ (a,0) [0|1] \"\" N", "5"}, {"SG_ S : 0|8@1+ (1e999,0) [0|1] \"\" N", "5"},
        {"SG_ S : 0|8@1+ (1,0) 0|1 \"\" N", "6"},   {"SG_ S : 0|8@1+ (1,0) [0;1] \"\" N", "6"},
        {"SG_ S : 0|8@1+ (1,0) [0|1 \"\" N", "6"},  {"SG_ S : 0|8@1+ (1,0) [|1] \"\" N", "6"},
        {"SG_ S : 0|8@1+ (1,0) [0|] \"\" N", "6"},
    };
    for (const auto& row : rows) {
        const std::string statement = row.statement;
        ExpectRead({"BO_ 1 M: 8 N\n" + statement + "\nVERSION \"\"\n", "1()",
                    std::string(row.code) + "@2:" + statement + ";"});
    }
}

// The number is that of the lines read when the end of the statement was found, less one.
TEST_F(ReadErrors, LineIsCountedWhereTheStatementEnds) {
    const Row rows[] = {
        {"BO_ x A: 8 N\nVERSION \"\"\n", "", "0@1:BO_ x A: 8 N;"},
        {"VERSION \"\"\nBO_ x A: 8 N\nVERSION \"\"\n", "", "0@2:BO_ x A: 8 N;"},
        {"VERSION \"\"\r\n\r\nBO_ x A: 8 N\r\nVERSION \"\"\r\n", "", "0@3:BO_ x A: 8 N;"},
        // Empty lines behind it raise it.
        {"BO_ x A: 8 N\n\n\nVERSION \"\"\n", "", "0@3:BO_ x A: 8 N\n\n;"},
        // A statement over two lines has the number of the second.
        {"BO_ x\nA: 8 N\nVERSION \"\"\n", "", "0@2:BO_ x\nA: 8 N;"},
        // The last statement of a file is reported one line lower.
        {"BO_ x A: 8 N\n", "", "0@0:BO_ x A: 8 N;"},
        {"BO_ x A: 8 N", "", "0@0:BO_ x A: 8 N;"},
        {"\n\nBO_ x A: 8 N\n", "", "0@2:BO_ x A: 8 N;"},
        {"BO_ x A: 8 N\n\n\n", "", "0@2:BO_ x A: 8 N\n\n;"},
        // Two statements on one line.
        {"BO_ x A: 8 N BO_ y B: 8 N\nVERSION \"\"\n", "", "0@0:BO_ x A: 8 N;0@1:BO_ y B: 8 N;"},
    };
    for (const Row& row : rows) {
        ExpectRead(row);
    }
}

TEST_F(ReadErrors, ComeInTheOrderOfTheFile) {
    ExpectRead({"BO_ 1 A\nBO_ x B: 8 N\nBO_ 3 C: 8 N\nSG_ S\nBO_ 4 D: N\nVERSION \"\"\n", "3()",
                "1@1:BO_ 1 A;0@2:BO_ x B: 8 N;3@4:SG_ S;2@5:BO_ 4 D: N;"});
}

TEST_F(ReadErrors, OfAnEarlierReadAreForgotten) {
    ASSERT_EQ(ReadText("BO_ x A: 8 N\n"), kDone);
    ASSERT_EQ(NumErrors(), 1U);
    ASSERT_EQ(ReadText("VERSION \"\"\n"), kDone);
    EXPECT_EQ(NumErrors(), 0U);
}

TEST_F(ReadErrors, ShowRepairedText) {
    // A byte that is no UTF-8 becomes "_", and control characters that are no blanks are left out.
    ExpectRead(
        {"BO_ x \xE4"
         "A\x01\x7F\tB: 8 N\nVERSION \"\"\n",
         "", "0@1:BO_ x _A\tB: 8 N;"});
}

TEST_F(ReadErrors, OtherStatementsHaveNone) {
    ExpectRead(
        {"BO_ 1 M: 8 N\n"
         "CM_ BO_ x \"lost\";\n"
         "CM_ SG_ 1 Nobody \"lost\";\n"
         "VAL_ 1 Nobody 0 \"lost\" ;\n"
         "SIG_VALTYPE_ 1 Nobody : 1;\n"
         "BA_DEF_ BO_ \"GenMsgCycleTime\" FLOAT 0 1;\n"
         "BA_ \"GenMsgCycleTime\" BO_ 1 5;\n"
         "EV_ nonsense\n"
         "BU_SG_REL_ nonsense\n",
         "1()", ""});
}

// --- Which signals are taken --------------------------------------------------------------------------------------

constexpr const char* kA = " SG_ A : 0|8@1+ (1,0) [0|1] \"\" N\n";
constexpr const char* kB = " SG_ B : 8|8@1+ (1,0) [0|1] \"\" N\n";
constexpr const char* kBad = " SG_ Bad\n";
constexpr const char* kM = "BO_ 1 M: 8 N\n";
constexpr const char* kN = "BO_ 2 N: 8 N\n";

std::string Joined(std::initializer_list<const char*> lines) {
    std::string text;
    for (const char* line : lines) {
        text += line;
    }
    return text;
}

TEST_F(ReadErrors, SignalsGoToTheMessageInFrontOfThem) {
    ExpectRead({Joined({kM, kA, kB, kN, kB}), "1(A,B) 2(B)", ""});
}

TEST_F(ReadErrors, SignalsWithoutAMessageAreSkippedSilently) {
    ExpectRead({Joined({kA, kBad, kM, kB}), "1(B)", ""});
}

TEST_F(ReadErrors, SignalsOfARefusedMessageAreSkippedSilently) {
    ExpectRead({Joined({"BO_ x M: 8 N\n", kA, kBad, kB}), "", "0@1:BO_ x M: 8 N\n;"});
    // Nor do they go to the message in front of the refused one.
    ExpectRead({Joined({kM, kA, "BO_ x M: 8 N\n", kB, kN, kB}), "1(A) 2(B)", "0@3:BO_ x M: 8 N\n;"});
}

TEST_F(ReadErrors, SignalsBehindAFaultyOneAreSkippedSilently) {
    ExpectRead({Joined({kM, kA, kBad, kB, kBad, kN, kB}), "1(A) 2(B)", "3@3:SG_ Bad\n;"});
}

TEST_F(ReadErrors, SignalsBehindAnyOtherStatementAreSkippedSilently) {
    const char* const others[] = {
        "CM_ BO_ 1 \"comment\";\n",
        "CM_ \"comment\";\n",
        "VAL_ 1 A 0 \"Off\" ;\n",
        "BA_ \"X\" 1;\n",
        "VERSION \"\"\n",
        "BU_ : N\n",
        "EV_ x\n",
        "SIG_VALTYPE_ 1 A : 1;\n",
        "BA_DEF_ \"X\" STRING ;\n",
        "BA_DEF_DEF_ \"X\" 0;\n",
        "SIG_GROUP_ 1 G 1 : A;\n",
        "FILTER\n",
    };
    for (const char* other : others) {
        ExpectRead({Joined({kM, kA, other, kB, kN, kB}), "1(A) 2(B)", ""});
        ExpectRead({Joined({kM, other, kB, kBad}), "1()", ""});
    }
}

TEST_F(ReadErrors, TextWithoutKeywordDoesNotComeBetween) {
    ExpectRead({Joined({kM, "// a remark\n", kA, "\n\n", "and another: SG_x BO_: sg_\n", kB}), "1(A,B)", ""});
}

TEST_F(ReadErrors, AKeywordAsASignalNameEndsTheStatement) {
    ExpectRead({Joined({kM, "SG_ FILTER : 0|8@1+ (1,0) [0|1] \"\" N\n", kB}), "1()", "3@1:SG_;"});
}

TEST_F(ReadErrors, AKeywordNeedsABlankBehindIt) {
    ExpectRead({"BO_1 M: 8 N\nBO_: 8\nbo_ 1 M: 8 N\nBO_ 2 N: 8 N\n", "2()", ""});
}

// A comment tolerates one keyword in front of its ";", and so swallows a statement when it lacks one.
TEST_F(ReadErrors, AKeywordListedUnderNewSymbolsCanSwallowAStatement) {
    ExpectRead({"NS_ :\n\tBA_\nBO_ 1 M: 8 N\nBO_ 2 N: 8 N\n", "2()", ""});
    ExpectRead({"NS_ :\n\tBA_\n\tFILTER\nBO_ 1 M: 8 N\nBO_ 2 N: 8 N\n", "1() 2()", ""});
}

TEST_F(ReadErrors, MessagesWithOneIdentifierAreBothKept) {
    ExpectRead({Joined({kM, kA, "BO_ 1 Again: 4 N\n", kB, "CM_ BO_ 1 \"both\";\n"}), "1(A) 1(B)", ""});
    EXPECT_EQ(Field(MessageAt(0).comment), "both");
    EXPECT_EQ(Field(MessageAt(1).comment), "both");
}

TEST_F(ReadErrors, TheTenThousandAndFirstSignalOfAMessageIsDroppedSilently) {
    std::string file = kM;
    for (int i = 0; i < 10001; ++i) {
        file += kA;
    }
    ASSERT_EQ(ReadText(file + kN + kB), kDone);
    EXPECT_EQ(NumErrors(), 0U);
    EXPECT_EQ(NumSignals(0), 10000U);
    EXPECT_EQ(NumSignals(1), 1U);
}

}  // namespace
}  // namespace tabrin_test
