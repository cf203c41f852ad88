#include "io/statement_cutter.h"

#include <ostream>

#include "io/first_keyword.h"
#include "io/io_test_support.h"

namespace tabrin {
namespace {

struct HitRow {
    std::string_view text;
    size_t pos;
    std::string_view keyword;
    size_t start;
};

TEST(FirstKeyword, FindsTheFirstTokenThatIsOne) {
    const HitRow rows[] = {
        {"BO_ 1", 0, "BO_", 0},
        {"  BO_ 1", 0, "BO_", 2},
        {"  BO_ 1", 2, "BO_", 2},
        {"a BO_ 1", 0, "BO_", 2},
        {"a \"BO_ SG_ x\"", 0, "SG_", 7},
        {"a \"x BO_ y\"", 0, "BO_", 5},
        {"BO_ SG_ ", 0, "BO_", 0},
        {"BO_ SG_ ", 3, "SG_", 4},
        {"BA_DEF_DEF_REL_ x", 0, "BA_DEF_DEF_REL_", 0},
        {"SIGTYPE_VALTYPE_ x", 0, "SIGTYPE_VALTYPE_", 0},
        {"x SIGTYPE_VALTYPE_ x", 0, "SIGTYPE_VALTYPE_", 2},
        {"VERSION \"\"", 0, "VERSION", 0},
        {"SG_ FILTER : 0", 3, "FILTER", 4},
        {"BO_\f", 0, "BO_", 0},
        {"BO_\n", 0, "BO_", 0},
        {"BO_\r", 0, "BO_", 0},
        {"BO_\t", 0, "BO_", 0},
        {"BO_\v", 0, "BO_", 0},
        {"x\fBO_ ", 0, "BO_", 2},
        {"x\nBO_ ", 0, "BO_", 2},
        {"x\rBO_ ", 0, "BO_", 2},
        {"x\tBO_ ", 0, "BO_", 2},
        {"x\vBO_ ", 0, "BO_", 2},
        {"x_ N R _ BO_ ", 0, "BO_", 9},
        {"x_ xBO_ B O_ N VERSION ", 0, "VERSION", 15},
        {"xSIGTYPE_VALTYPE_ SIGTYPE_VALTYPE_ ", 0, "SIGTYPE_VALTYPE_", 18},
        {"abcdefghijklmBO_ BO_ ", 0, "BO_", 17},
        {"BO_ BO_ BO_ ", 7, "BO_", 8},
    };
    for (const HitRow& row : rows) {
        SCOPED_TRACE(Shown(row.text) + " at " + std::to_string(row.pos));
        KeywordHit hit;
        ASSERT_TRUE(FirstKeyword(row.text, row.pos, hit));
        EXPECT_EQ(hit.keyword->text, row.keyword);
        EXPECT_EQ(hit.start, row.start);
        EXPECT_EQ(hit.end, row.start + row.keyword.size());
    }
}

TEST(FirstKeyword, FindsNothingElse) {
    const std::pair<std::string_view, size_t> rows[] = {
        {"", 0},
        {"   ", 0},
        {"BO_", 0},
        {"x BO_", 0},
        {"BO_1 ", 0},
        {"BO_: ", 0},
        {"xBO_ ", 0},
        {"_BO_ ", 0},
        {"\"BO_ ", 0},
        {";BO_ ", 0},
        {"\xEF\xBB\xBF"
         "BO_ ",
         0},
        {"bo_ ", 0},
        {"BO_\0 "sv, 0},
        {"BO_ ", 3},
        {"BO_ ", 4},
        {"BO_ ", 99},
        {"_ N R x_ xN xR ", 0},
        {"XSIGTYPE_VALTYPE_ ", 0},
        {"XXXXXXXXXXXXXXXXXXXXXXXXSIGTYPE_VALTYPE_ ", 0},
        {"xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxBO_ ", 0},
    };
    for (const auto& [text, pos] : rows) {
        KeywordHit hit;
        EXPECT_FALSE(FirstKeyword(text, pos, hit)) << Shown(text) << " at " << pos;
    }
}

struct EndRow {
    std::string_view text;
    std::string_view keyword;  // that ends at the blank; empty when none does
    size_t start;
};

// The blank asked about is the last character of the text.
void CheckLastBlank(const std::vector<EndRow>& rows) {
    for (const EndRow& row : rows) {
        SCOPED_TRACE(Shown(row.text));
        // A text of its own in memory, so that a look in front of it or behind it is noticed.
        const std::vector<char> text(row.text.begin(), row.text.end());
        KeywordHit hit;
        ASSERT_EQ(KeywordEndsAt({text.data(), text.size()}, text.size() - 1, hit), !row.keyword.empty());
        if (!row.keyword.empty()) {
            EXPECT_EQ(hit.keyword->text, row.keyword);
            EXPECT_EQ(hit.start, row.start);
            EXPECT_EQ(hit.end, row.text.size() - 1);
        }
    }
}

TEST(KeywordEndsAt, KeywordsAtTheFront) {
    CheckLastBlank({
        {"BO_ ", "BO_", 0},
        {"BA_\n", "BA_", 0},
        {"VAL_\t", "VAL_", 0},
        {"CAT_\r", "CAT_", 0},
        {"FILTER\v", "FILTER", 0},
        {"VERSION\f", "VERSION", 0},
        {"BA_DEF_ ", "BA_DEF_", 0},
        {"NS_DESC_ ", "NS_DESC_", 0},
        {"VAL_TABLE_ ", "VAL_TABLE_", 0},
        {"SIG_VALTYPE_ ", "SIG_VALTYPE_", 0},
        {"ENVVAR_DATA_ ", "ENVVAR_DATA_", 0},
        {"BA_DEF_SGTYPE_ ", "BA_DEF_SGTYPE_", 0},
        {"BA_DEF_DEF_REL_ ", "BA_DEF_DEF_REL_", 0},
        {"SIGTYPE_VALTYPE_ ", "SIGTYPE_VALTYPE_", 0},
    });
}

TEST(KeywordEndsAt, KeywordsBehindAFewCharacters) {
    CheckLastBlank({
        {" BO_ ", "BO_", 1},
        {"\nBO_ ", "BO_", 1},
        {"x BO_ ", "BO_", 2},
        {"\t BO_ ", "BO_", 2},
        {"_ BO_ ", "BO_", 2},
        {"xy BO_ ", "BO_", 3},
        {"x  BO_ ", "BO_", 3},
        {"xyz BO_ ", "BO_", 4},
        {"BO_ BO_ ", "BO_", 4},
        {" VAL_ ", "VAL_", 1},
        {"x VAL_ ", "VAL_", 2},
        {"xy\fVAL_ ", "VAL_", 3},
        {"xyz VAL_ ", "VAL_", 4},
        {" FILTER ", "FILTER", 1},
        {"x FILTER ", "FILTER", 2},
        {"xy FILTER ", "FILTER", 3},
        {"xyz FILTER ", "FILTER", 4},
        {" BA_DEF_DEF_REL_ ", "BA_DEF_DEF_REL_", 1},
        {"x BA_DEF_DEF_REL_ ", "BA_DEF_DEF_REL_", 2},
        {" SIGTYPE_VALTYPE_ ", "SIGTYPE_VALTYPE_", 1},
        {"\vSIGTYPE_VALTYPE_ ", "SIGTYPE_VALTYPE_", 1},
        {"x SIGTYPE_VALTYPE_ ", "SIGTYPE_VALTYPE_", 2},
        {"xy SIGTYPE_VALTYPE_ ", "SIGTYPE_VALTYPE_", 3},
        {"xyz SIGTYPE_VALTYPE_ ", "SIGTYPE_VALTYPE_", 4},
        {"a_long_word_in_front SIGTYPE_VALTYPE_ ", "SIGTYPE_VALTYPE_", 21},
    });
}

// The longest keyword has 16 characters; that much in front of a blank is looked at in one go.
TEST(KeywordEndsAt, KeywordsThatEndSixteenCharactersBehindTheFront) {
    CheckLastBlank({
        {"abcdefghijkl BO_\n", "BO_", 13},
        {"abcdefghijklm BO_\n", "BO_", 14},
        {"abcdefghijk VAL_\n", "VAL_", 12},
        {"abcdefghij VAL_\n", "VAL_", 11},
        {"abcdefghijkl VAL_\n", "VAL_", 13},
        {"abcdefgh\tVERSION ", "VERSION", 9},
        {"abcdefgh VERSIO\nN ", "", 0},
        {"                BO_ ", "BO_", 16},
        {"\x01\x1F\xFFxxxxxxxxx BO_ ", "BO_", 13},
        {"xxxxxxxxxxxxxxx\xA0VAL_ ", "", 0},
        {"xxxxxxxxxxxxxxx\x08VAL_ ", "", 0},
        {"xxxxxxxxxxxxxxx\x0EVAL_ ", "", 0},
        {"xxxxxxxxxxxxxxx\x1FVAL_ ", "", 0},
        {"xxxxxxxxxxxxxxx!VAL_ ", "", 0},
    });
}

TEST(KeywordEndsAt, LongTokensThatEndInAKeywordAreNone) {
    CheckLastBlank({
        {"abcdefghijklBO_ ", "", 0},     // 15
        {"abcdefghijklmBO_ ", "", 0},    // 16
        {"abcdefghijklmnBO_ ", "", 0},   // 17
        {"abcdefghijklmnoBO_ ", "", 0},  // 18
        {"xSIGTYPE_VALTYPE_ ", "", 0},   // 17
        {"_SIGTYPE_VALTYPE_ ", "", 0},   // 17
        {"xySIGTYPE_VALTYPE_ ", "", 0},  // 18
        {" xSIGTYPE_VALTYPE_ ", "", 0},
        {"x xSIGTYPE_VALTYPE_ ", "", 0},
        {"xBA_DEF_DEF_REL_ ", "", 0},   // 16
        {"xyBA_DEF_DEF_REL_ ", "", 0},  // 17
        {" xBA_DEF_DEF_REL_ ", "", 0},
        {"SIGTYPE_VALTYPE_SIGTYPE_VALTYPE_ ", "", 0},
        {"xxxxxxxxSIGTYPE_VALTYPE_ ", "", 0},
        {"xxxxxxxxxxxxxxxxSIGTYPE_VALTYPE_ ", "", 0},
        {"xxxxxxxxxxxxxxxxxxxxxxxxxxxxxBO_ ", "", 0},
        {"SIGTYPE_VALTYPE ", "", 0},    // 15
        {"SIGTYPE_VALTYPE__ ", "", 0},  // 17
        {"IGTYPE_VALTYPE_ ", "", 0},    // 15
    });
}

TEST(KeywordEndsAt, ShortTokensThatEndLikeKeywordsAreNone) {
    CheckLastBlank({
        {" ", "", 0},         {"_ ", "", 0},         {"N ", "", 0},          {"R ", "", 0},       {"O_ ", "", 0},
        {"xO_ ", "", 0},      {"xBO_ ", "", 0},      {"x O_ ", "", 0},       {"BO _ ", "", 0},    {"B O_ ", "", 0},
        {"B  _ ", "", 0},     {"   _ ", "", 0},      {" BO_", "", 0},        {"\n\n\nN ", "", 0}, {" B _ ", "", 0},
        {" BO _ ", "", 0},    {" B\tO_ ", "", 0},    {" VAL_x_ ", "", 0},    {"V AL_ ", "", 0},   {" VA L_ ", "", 0},
        {" FIL TER ", "", 0}, {" VERSION  ", "", 0}, {" bo_ ", "", 0},       {" XX_ ", "", 0},    {" BON ", "", 0},
        {" BOR ", "", 0},     {"SG_ \"BO_ ", "", 0}, {"SG_ \"VAL_ ", "", 0}, {"SG_:BO_ ", "", 0}, {"BO_\0 "sv, "", 0},
    });
}

// Only a blank ends a token.
TEST(KeywordEndsAt, AsksForABlank) {
    const std::string blanks = " \t\n\v\f\r";
    for (int byte = 0; byte < 256; ++byte) {
        const char end = static_cast<char>(byte);
        const bool isBlank = blanks.find(end) != std::string::npos;
        for (const std::string_view front : {"", "x ", "a token of more than sixteen characters "}) {
            for (const std::string_view keyword : {"BO_", "VERSION", "SIGTYPE_VALTYPE_"}) {
                const std::string text = std::string(front).append(keyword) + end;
                KeywordHit hit;
                EXPECT_EQ(KeywordEndsAt(text, text.size() - 1, hit), isBlank) << Shown(text);
            }
        }
    }
}

// And only a blank, or the front of the text, begins one.
TEST(KeywordEndsAt, AsksForABlankInFrontOrNothing) {
    const std::string blanks = " \t\n\v\f\r";
    for (int byte = 0; byte < 256; ++byte) {
        const char before = static_cast<char>(byte);
        const bool isBlank = blanks.find(before) != std::string::npos;
        for (const std::string_view front : {"", "x", "xyz", "a token of more than sixteen characters"}) {
            for (const std::string_view keyword : {"BO_", "VAL_", "VERSION", "SIGTYPE_VALTYPE_"}) {
                const std::string text = std::string(front) + before + std::string(keyword) + ' ';
                KeywordHit hit;
                EXPECT_EQ(KeywordEndsAt(text, text.size() - 1, hit), isBlank) << Shown(text);
            }
        }
    }
}

struct Cut {
    std::string keyword;
    std::string text;
    uint32_t line;  // the number of lines read when the statement was delivered

    bool operator==(const Cut&) const = default;
};

void PrintTo(const Cut& cut, std::ostream* out) {
    const std::string_view text = cut.text;
    *out << '{' << cut.keyword << ", " << Shown(text.substr(0, 200)) << " (" << text.size() << " bytes), " << cut.line
         << '}';
}

using Cuts = std::vector<Cut>;

Cuts CutAll(std::string_view bytes) {
    const TempFile path(bytes);
    File file;
    EXPECT_TRUE(file.OpenForReading(path.Path()));
    LineBuffer lines(file);
    StatementCutter cutter(lines);
    Cuts cuts;
    while (cutter.Next()) {
        cuts.push_back({std::string(cutter.Keyword().text), std::string(cutter.Text()), cutter.LinesRead()});
    }
    EXPECT_EQ(cutter.LastRead(), LineBuffer::Result::EndOfFile);
    EXPECT_FALSE(cutter.Next());
    EXPECT_EQ(cutter.Text(), "");
    return cuts;
}

struct CutRow {
    std::string bytes;
    Cuts cuts;
};

void CheckCuts(const std::vector<CutRow>& rows) {
    for (const CutRow& row : rows) {
        EXPECT_EQ(CutAll(row.bytes), row.cuts) << Shown(row.bytes).substr(0, 300);
    }
}

TEST(Statement, RunsToTheNextKeyword) {
    CheckCuts({
        {"BO_ 1 A\nBO_ 2 B\n", {{"BO_", "BO_ 1 A\n", 2}, {"BO_", "BO_ 2 B\n", 2}}},
        {"BO_ 1 A\n\n\nSG_ x\n", {{"BO_", "BO_ 1 A\n\n\n", 4}, {"SG_", "SG_ x\n", 4}}},
        {"BO_ 1\nA\n: 8 SG_ x\ny\n", {{"BO_", "BO_ 1\nA\n: 8 ", 3}, {"SG_", "SG_ x\ny\n", 4}}},
        {"BO_ SG_ BO_\n", {{"BO_", "BO_ ", 1}, {"SG_", "SG_ ", 1}, {"BO_", "BO_\n", 1}}},
        {"BO_\r\n1 A\r\nSG_\r\nx\r\n", {{"BO_", "BO_\n1 A\n", 3}, {"SG_", "SG_\nx\n", 4}}},
        {"VAL_ 1 S 0 \"a\" ;\nEV_ x\n", {{"VAL_", "VAL_ 1 S 0 \"a\" ;\n", 2}, {"EV_", "EV_ x\n", 2}}},
    });
}

TEST(Statement, KeepsTheIndentationOfTheNextKeyword) {
    CheckCuts({
        {"BO_ 100 M: 8 N\n SG_ S : 0|8@1+ (1,0) [0|0] \"\" N\n",
         {{"BO_", "BO_ 100 M: 8 N\n ", 2}, {"SG_", "SG_ S : 0|8@1+ (1,0) [0|0] \"\" N\n", 2}}},
        {"BO_ 1\r\n\t SG_ x\r\n", {{"BO_", "BO_ 1\n\t ", 2}, {"SG_", "SG_ x\n", 2}}},
    });
}

TEST(Statement, LastOneIsDeliveredAtTheEndOfTheFile) {
    CheckCuts({
        {"BO_ 1 A\n", {{"BO_", "BO_ 1 A\n", 1}}},
        {"BO_ 1 A", {{"BO_", "BO_ 1 A\n", 1}}},
        {"BO_", {{"BO_", "BO_\n", 1}}},
        {"BO_ 1\nx\n\ny", {{"BO_", "BO_ 1\nx\n\ny\n", 4}}},
        {"BO_ 1\nSG_", {{"BO_", "BO_ 1\n", 2}, {"SG_", "SG_\n", 2}}},
        {"CM_ BO_ 1 \"x\";", {{"CM_", "CM_ BO_ 1 \"x\";\n", 1}}},
        {"CM_ x;", {{"CM_", "CM_ x;\n", 1}}},
    });
}

TEST(Statement, TextInFrontOfTheFirstKeywordIsPassedOver) {
    CheckCuts({
        {"x\ny z\nBO_ 1\n", {{"BO_", "BO_ 1\n", 3}}},
        {"x BO_ 1\n", {{"BO_", "BO_ 1\n", 1}}},
        {"\n\n  \n BO_ 1\n", {{"BO_", "BO_ 1\n", 4}}},
        {"CM_; BU_: A\nBO_ 1\n", {{"BO_", "BO_ 1\n", 2}}},
    });
}

TEST(Statement, FileWithoutAKeywordHasNone) {
    CheckCuts({{"", {}}, {"\n", {}}, {"   ", {}}, {"hello world\nBO_1 BS_: BU_: A\n", {}}, {"xBO_ \"SG_ ;CM_\n", {}}});
}

TEST(Statement, ByteOrderMarkHidesTheKeywordBehindIt) {
    CheckCuts({
        {"\xEF\xBB\xBFVERSION \"\"\nBO_ 1\n", {{"BO_", "BO_ 1\n", 2}}},
        {"\xEF\xBB\xBFVERSION \"\" BO_ 1\n", {{"BO_", "BO_ 1\n", 1}}},
        {"\xEF\xBB\xBF VERSION \"\"\n", {{"VERSION", "VERSION \"\"\n", 1}}},
    });
}

TEST(Statement, KeywordsCountWhereverATokenBegins) {
    CheckCuts({
        {"SG_ FILTER : 0|8@1+ (1,0) [0|0] \"\" N\n",
         {{"SG_", "SG_ ", 1}, {"FILTER", "FILTER : 0|8@1+ (1,0) [0|0] \"\" N\n", 1}}},
        {"VAL_ 1 S 0 \"an SG_ here\" ;\n", {{"VAL_", "VAL_ 1 S 0 \"an ", 1}, {"SG_", "SG_ here\" ;\n", 1}}},
        {"NS_ :\n\tCM_\n\tBA_\n", {{"NS_", "NS_ :\n\t", 2}, {"CM_", "CM_\n\tBA_\n", 3}}},
    });
}

TEST(Statement, TokensThatOnlyLookLikeKeywordsDoNotCount) {
    CheckCuts({
        {"BO_ 1 x_ N R FILTERR VERSIONN a_BO_ BO__ BO_1 BO_:\n",
         {{"BO_", "BO_ 1 x_ N R FILTERR VERSIONN a_BO_ BO__ BO_1 BO_:\n", 1}}},
        {"VAL_ 1 S 0 \"SG_ x\" ;\n", {{"VAL_", "VAL_ 1 S 0 \"SG_ x\" ;\n", 1}}},
        {"SG_ a\nBU_: X Y\nBS_:\n", {{"SG_", "SG_ a\nBU_: X Y\nBS_:\n", 3}}},
    });
}

TEST(Statement, ControlCharactersDoNotHideAKeyword) {
    CheckCuts({
        {"\x1A"
         "BO_ 1\nS\x01G_ 2\nSG_\x7F 3\n",
         {{"BO_", "BO_ 1\n", 2}, {"SG_", "SG_ 2\n", 3}, {"SG_", "SG_ 3\n", 3}}},
        {std::string("BO_ 1\nB\0O_ 2\n"sv), {{"BO_", "BO_ 1\n", 2}, {"BO_", "BO_ 2\n", 2}}},
    });
}

TEST(SemicolonStatement, EndsAtAKeywordBehindASemicolon) {
    CheckCuts({
        {"CM_ \"x\";\nBO_ 1\n", {{"CM_", "CM_ \"x\";\n", 2}, {"BO_", "BO_ 1\n", 2}}},
        {"CM_ \"x\" ; BO_ 1\n", {{"CM_", "CM_ \"x\" ; ", 1}, {"BO_", "BO_ 1\n", 1}}},
        {"CM_ ; BO_ 1\n", {{"CM_", "CM_ ; ", 1}, {"BO_", "BO_ 1\n", 1}}},
        {"CM_ \"x\" ; \f\r\t\v\n\n  BO_ 1\n", {{"CM_", "CM_ \"x\" ; \f\r\t\v\n\n  ", 3}, {"BO_", "BO_ 1\n", 3}}},
        {"BA_ \"x\" 5;\nBA_ \"y\" 6;\n", {{"BA_", "BA_ \"x\" 5;\n", 2}, {"BA_", "BA_ \"y\" 6;\n", 2}}},
        {"BA_DEF_ \"x\" INT 0 1;\nBO_ 1\n", {{"BA_DEF_", "BA_DEF_ \"x\" INT 0 1;\n", 2}, {"BO_", "BO_ 1\n", 2}}},
    });
}

TEST(SemicolonStatement, ToleratesOneKeywordInFrontOfItsSemicolon) {
    CheckCuts({
        {"CM_ BO_ 100 \"text\";\nBO_ 1\n", {{"CM_", "CM_ BO_ 100 \"text\";\n", 2}, {"BO_", "BO_ 1\n", 2}}},
        {"CM_ SG_ 100 S \"text\";\nSG_ x\n", {{"CM_", "CM_ SG_ 100 S \"text\";\n", 2}, {"SG_", "SG_ x\n", 2}}},
        {"BA_DEF_ BO_ \"x\" INT 0 1;\nBO_ 1\n",
         {{"BA_DEF_", "BA_DEF_ BO_ \"x\" INT 0 1;\n", 2}, {"BO_", "BO_ 1\n", 2}}},
        {"BA_ \"x\" SG_ 1 S 5;\nBO_ 1\n", {{"BA_", "BA_ \"x\" SG_ 1 S 5;\n", 2}, {"BO_", "BO_ 1\n", 2}}},
        {"CM_ CM_ x\nBO_ 1\n", {{"CM_", "CM_ CM_ x\n", 2}, {"BO_", "BO_ 1\n", 2}}},
        {"CM_ \"a\nb\nBO_ c\"\nd\n;\nBO_ 1\n", {{"CM_", "CM_ \"a\nb\nBO_ c\"\nd\n;\n", 6}, {"BO_", "BO_ 1\n", 6}}},
    });
}

TEST(SemicolonStatement, TheSemicolonMustStandRightInFrontOfTheKeyword) {
    CheckCuts({
        {"CM_ ; x BO_ 1\nSG_ 2\n", {{"CM_", "CM_ ; x BO_ 1\n", 2}, {"SG_", "SG_ 2\n", 2}}},
        {"CM_ x;\" BO_ 1\nSG_ 2\n", {{"CM_", "CM_ x;\" BO_ 1\n", 2}, {"SG_", "SG_ 2\n", 2}}},
    });
}

TEST(SemicolonStatement, BehindATolerableKeywordTheRestOfTheLineIsPassedOver) {
    CheckCuts({
        {"CM_ BO_ 1 \"x\"; SG_ 2\nBO_ 3\n", {{"CM_", "CM_ BO_ 1 \"x\"; SG_ 2\n", 2}, {"BO_", "BO_ 3\n", 2}}},
        {"CM_ BO_ 1 \"x\"; BA_ \"y\" 5;\nz\n", {{"CM_", "CM_ BO_ 1 \"x\"; BA_ \"y\" 5;\nz\n", 2}}},
        {"CM_ \"x\nBO_ 1\"; SG_ 2\nBO_ 3\n", {{"CM_", "CM_ \"x\nBO_ 1\"; SG_ 2\n", 3}, {"BO_", "BO_ 3\n", 3}}},
    });
}

TEST(SemicolonStatement, TheSecondKeywordNeedsNoSemicolon) {
    CheckCuts({
        {"CM_ BO_ 1 \"x\nSG_ 2\n", {{"CM_", "CM_ BO_ 1 \"x\n", 2}, {"SG_", "SG_ 2\n", 2}}},
        {"CM_ BO_ 1 \"x\ny SG_ 2;\nBO_ 3\n",
         {{"CM_", "CM_ BO_ 1 \"x\ny ", 2}, {"SG_", "SG_ 2;\n", 3}, {"BO_", "BO_ 3\n", 3}}},
    });
}

TEST(SemicolonStatement, GlobalCommentMayHoldAKeywordInALaterLine) {
    CheckCuts({
        {"CM_ \"first\nBO_ second\";\nBO_ 1\n", {{"CM_", "CM_ \"first\nBO_ second\";\n", 3}, {"BO_", "BO_ 1\n", 3}}},
        {"CM_ SG_ 1 S \"first\nBO_ second\";\nBO_ 1\n",
         {{"CM_", "CM_ SG_ 1 S \"first\n", 2}, {"BO_", "BO_ second\";\n", 3}, {"BO_", "BO_ 1\n", 3}}},
    });
}

TEST(SemicolonStatement, NoOtherKeywordToleratesOne) {
    CheckCuts({
        {"BA_DEF_DEF_ BO_ \"x\" 0;\n", {{"BA_DEF_DEF_", "BA_DEF_DEF_ ", 1}, {"BO_", "BO_ \"x\" 0;\n", 1}}},
        {"VAL_ BO_ 1;\n", {{"VAL_", "VAL_ ", 1}, {"BO_", "BO_ 1;\n", 1}}},
        {"SIG_VALTYPE_ BO_ 1;\n", {{"SIG_VALTYPE_", "SIG_VALTYPE_ ", 1}, {"BO_", "BO_ 1;\n", 1}}},
        {"BA_REL_ BO_ 1;\n", {{"BA_REL_", "BA_REL_ ", 1}, {"BO_", "BO_ 1;\n", 1}}},
        {"SG_ BO_ 1;\n", {{"SG_", "SG_ ", 1}, {"BO_", "BO_ 1;\n", 1}}},
    });
}

// Each statement has its own tolerated keyword.
TEST(SemicolonStatement, ToleranceBeginsAnewWithEachStatement) {
    CheckCuts(
        {{"CM_ BO_ 1 \"x\";\nCM_ BO_ 2 \"y\";\nCM_ BO_ 3 \"z\";\n",
          {{"CM_", "CM_ BO_ 1 \"x\";\n", 2}, {"CM_", "CM_ BO_ 2 \"y\";\n", 3}, {"CM_", "CM_ BO_ 3 \"z\";\n", 3}}}});
}

// A statement of that many bytes without its line end; it begins with the keyword.
std::string LongLine(std::string_view keyword, size_t size) {
    return std::string(keyword) + ' ' + std::string(size - keyword.size() - 1, 'x');
}

TEST(LongStatement, IsCutAtTheLineThatCrossedTheLimit) {
    const std::string most = LongLine("SG_", 4095) + '\n';
    const std::string more = LongLine("SG_", 4096) + '\n';
    ASSERT_EQ(most.size(), 4096U);
    CheckCuts({
        {most + "y\nBO_ 1\n", {{"SG_", most + "y\n", 2}, {"BO_", "BO_ 1\n", 3}}},
        {most + "\nBO_ 1\n", {{"SG_", most + "\n", 2}, {"BO_", "BO_ 1\n", 3}}},
        {most + "BO_ 1\n", {{"SG_", most, 2}, {"BO_", "BO_ 1\n", 2}}},
        {more + "BO_ 1\n", {{"SG_", more, 1}, {"BO_", "BO_ 1\n", 2}}},
        {more + "y\nz BO_ 1\n", {{"SG_", more, 1}, {"BO_", "BO_ 1\n", 3}}},
        {more, {{"SG_", more, 1}}},
        {more + "y\n", {{"SG_", more, 1}}},
        {most, {{"SG_", most, 1}}},
    });
}

TEST(LongStatement, MayCrossTheLimitWhereAKeywordFollows) {
    const std::string most = LongLine("SG_", 4095) + '\n';
    const std::string line = LongLine("SG_", 10000);
    const std::string tail(5000, 'y');
    CheckCuts({
        {line + " BO_ 1\n", {{"SG_", line + ' ', 1}, {"BO_", "BO_ 1\n", 1}}},
        {most + tail + " BO_ 1\n", {{"SG_", most + tail + ' ', 2}, {"BO_", "BO_ 1\n", 2}}},
    });
}

TEST(LongStatement, IsMeasuredFromItsKeyword) {
    const std::string most = LongLine("SG_", 4095) + '\n';
    const std::string front(5000, ' ');
    CheckCuts({
        {front + most + "BO_ 1\n", {{"SG_", most, 2}, {"BO_", "BO_ 1\n", 2}}},
        {"EV_ " + front + most + "BO_ 1\n", {{"EV_", "EV_ " + front, 1}, {"SG_", most, 2}, {"BO_", "BO_ 1\n", 2}}},
    });
}

TEST(LongStatement, OfShortLinesIsCutAtTheLineThatCrossedTheLimit) {
    std::string lines = "SG_ x\n";
    for (int i = 0; i < 409; ++i) {
        lines += "123456789\n";
    }
    ASSERT_EQ(lines.size(), 4096U);
    CheckCuts({
        {lines + "BO_ 1\n", {{"SG_", lines, 411}, {"BO_", "BO_ 1\n", 411}}},
        {lines + "1\n2\nBO_ 1\n", {{"SG_", lines + "1\n", 411}, {"BO_", "BO_ 1\n", 413}}},
    });
}

TEST(LongStatement, OfTheSemicolonKindIsCutWithItsToleratedKeyword) {
    const std::string most = "CM_ BO_ 1 \"" + std::string(4084, 'x') + '\n';
    const std::string more = "CM_ BO_ 1 \"" + std::string(4085, 'x') + '\n';
    ASSERT_EQ(most.size(), 4096U);
    CheckCuts({
        {most + "y\";\nBO_ 2\n", {{"CM_", most + "y\";\n", 2}, {"BO_", "BO_ 2\n", 3}}},
        {most + "BO_ 2\n", {{"CM_", most, 2}, {"BO_", "BO_ 2\n", 2}}},
        {more + "y\";\nBO_ 2\n", {{"CM_", more, 1}, {"BO_", "BO_ 2\n", 3}}},
        {more + "BO_ 2\n", {{"CM_", more, 1}, {"BO_", "BO_ 2\n", 2}}},
    });
}

// Would take minutes if the rest of the line was moved, or searched, once for each statement.
TEST(LongStatement, ManyStatementsInOneLineOfSeveralMegabytes) {
    constexpr size_t kCount = 500000;
    std::string bytes;
    for (size_t i = 0; i < kCount; ++i) {
        bytes += "SG_ x ";
    }
    const Cuts cuts = CutAll(bytes);
    ASSERT_EQ(cuts.size(), kCount);
    for (size_t i = 0; i + 1 < kCount; ++i) {
        ASSERT_EQ(cuts[i], (Cut{"SG_", "SG_ x ", 1})) << i;
    }
    EXPECT_EQ(cuts.back(), (Cut{"SG_", "SG_ x \n", 1}));
}

TEST(LongStatement, LineOfSeveralMegabytesWithoutKeyword) {
    const std::string blanks(3000000, ' ');
    const std::string underscores(3000000, '_');
    CheckCuts({
        {underscores + "\nBO_ 1\n", {{"BO_", "BO_ 1\n", 2}}},
        {"SG_ " + underscores + "\nBO_ 1\n", {{"SG_", "SG_ " + underscores + '\n', 1}, {"BO_", "BO_ 1\n", 2}}},
        {blanks + "BO_ 1", {{"BO_", "BO_ 1\n", 1}}},
        {"CM_ " + blanks + "BO_ 1\n", {{"CM_", "CM_ " + blanks + "BO_ 1\n", 1}}},
    });
}

TEST(StatementCutter, StartsAnewWithTheNextFile) {
    const TempFile first("BO_ 1\nCM_ BO_ 2\nSG_ x\n", "first");
    const TempFile second("x\nEV_ y\n", "second");
    File file;
    LineBuffer lines(file);
    StatementCutter cutter(lines);
    for (int calls = 0; calls <= 4; ++calls) {
        SCOPED_TRACE(calls);
        ASSERT_TRUE(file.OpenForReading(first.Path()));
        for (int i = 0; i < calls; ++i) {
            EXPECT_EQ(cutter.Next(), i < 3);
        }
        for (const bool last : {false, true}) {
            file.Close();
            lines.Reset();
            cutter.Reset();
            EXPECT_EQ(cutter.LinesRead(), 0U);
            EXPECT_EQ(cutter.Text(), "");
            EXPECT_EQ(cutter.LastRead(), LineBuffer::Result::Line);
            if (!last) {
                ASSERT_TRUE(file.OpenForReading(second.Path()));
                ASSERT_TRUE(cutter.Next());
                EXPECT_EQ(cutter.Text(), "EV_ y\n");
                EXPECT_EQ(cutter.LinesRead(), 2U);
                EXPECT_FALSE(cutter.Next());
            }
        }
    }
}

}  // namespace
}  // namespace tabrin
