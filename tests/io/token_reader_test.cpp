#include "io/token_reader.h"

#include "io/io_test_support.h"

namespace tabrin {
namespace {

using Tokens = std::vector<std::string>;

template <typename Delimiters>
Tokens AllTokens(std::string_view text, const Delimiters& delimiters) {
    Tokens tokens;
    TokenReader<Delimiters> reader(text, delimiters);
    for (std::string_view token; reader.Next(token);) {
        tokens.emplace_back(token);
    }
    return tokens;
}

struct SplitRow {
    std::string_view text;
    std::string_view delimiters;
    Tokens tokens;
};

void CheckSplit(const std::vector<SplitRow>& rows) {
    for (const SplitRow& row : rows) {
        EXPECT_EQ(SplitTokens(row.text, row.delimiters), row.tokens) << Shown(row.text);
    }
}

TEST(SplitTokens, CutsAtRunsOfDelimiters) {
    CheckSplit({
        {"", " ", {}},
        {"   ", " ", {}},
        {"A", " ", {"A"}},
        {"A B", " ", {"A", "B"}},
        {"  A   B  ", " ", {"A", "B"}},
        {"A,B; C", " ,;", {"A", "B", "C"}},
        {"A\tB", " ", {"A\tB"}},
        {"A B", "", {"A B"}},
        {"A\xFF"
         "B",
         "\xFF",
         {"A", "B"}},
        {"A\0B"sv, "\0"sv, {"A", "B"}},
    });
}

TEST(SplitTokens, QuotedTextStaysWhole) {
    CheckSplit({
        {R"(A "x y" B)", " ", {"A", R"("x y")", "B"}},
        {R"("x y z" B)", " ", {R"("x y z")", "B"}},
        {R"("x" "y")", " ", {R"("x")", R"("y")"}},
        {R"("x y" "u v")", " ", {R"("x y")", R"("u v")"}},
        {R"(A "x y")", " ", {"A", R"("x y")"}},
        {R"("" B)", " ", {R"("")", "B"}},
    });
}

TEST(SplitTokens, DelimitersInsideQuotesBecomeOneSpace) {
    CheckSplit({
        {R"(A "x  y" B)", " ", {"A", R"("x y")", "B"}},
        {"A \"x\ty\" B", " \t", {"A", R"("x y")", "B"}},
        {R"("a;b,,c" d)", " ;,", {R"("a b c")", "d"}},
        {R"("a!b" c)", " !", {R"("a b")", "c"}},
        {R"("a b  c d" e)", " ", {R"("a b c d")", "e"}},
        {R"("a  b c" d)", " ", {R"("a b c")", "d"}},
        {R"("a; b;" d)", " ;", {R"("a b ")", "d"}},
    });
}

TEST(SplitTokens, LoneQuoteOpensNothing) {
    CheckSplit({
        {R"(" x y" B)", " ", {"\"", "x", "y\"", "B"}},
        {R"(A " B)", " ", {"A", "\"", "B"}},
        {R"(" ")", " ", {"\"", "\""}},
        {R"(" "x y")", " ", {"\"", R"("x y")"}},
    });
}

TEST(SplitTokens, OnlyAQuoteInFrontOpens) {
    CheckSplit({
        {R"(a"x y" B)", " ", {R"(a"x)", "y\"", "B"}},
        {R"(x" y)", " ", {"x\"", "y"}},
    });
}

TEST(SplitTokens, OnlyAQuoteAtTheEndCloses) {
    CheckSplit({
        {R"("x y"z B" C)", " ", {R"("x y"z B")", "C"}},
        {R"("a"b c" d)", " ", {R"("a"b c")", "d"}},
        {R"("a "b c" d)", " ", {R"("a "b c")", "d"}},
        {R"("a " b)", " ", {R"("a ")", "b"}},
        {R"("x"y z)", " ", {R"("x"y z)"}},
    });
}

TEST(SplitTokens, BackslashIsNoEscape) {
    CheckSplit({{R"("a \" b" c)", " ", {R"("a \")", "b\"", "c"}}, {R"("a b\" c)", " ", {R"("a b\")", "c"}}});
}

TEST(SplitTokens, UnclosedQuoteSwallowsTheRest) {
    CheckSplit({
        {R"(A "x  y z)", " ", {"A", R"("x y z)"}},
        {R"("x y )", " ", {R"("x y)"}},
        {R"("x )", " ", {R"("x)"}},
        {R"("x)", " ", {R"("x)"}},
    });
}

TEST(TokenReader, HandsOutNothingAtTheEnd) {
    const CharSet blank(" ");
    TokenReader reader(" A ", blank);
    std::string_view token;
    EXPECT_TRUE(reader.Next(token));
    EXPECT_EQ(token, "A");
    EXPECT_FALSE(reader.Next(token));
    EXPECT_EQ(token, "");
    EXPECT_FALSE(reader.Next(token));
}

TEST(TokenReader, TokensLiveAsLongAsTheReader) {
    std::string text;
    for (int i = 0; i < 100; ++i) {
        text += "\"x   " + std::to_string(i) + "\" ";
    }
    TokenReader reader(text, CharSet(" "));
    std::vector<std::string_view> tokens;
    for (std::string_view token; reader.Next(token);) {
        tokens.push_back(token);
    }
    ASSERT_EQ(tokens.size(), 100U);
    for (size_t i = 0; i < tokens.size(); ++i) {
        EXPECT_EQ(tokens[i], "\"x " + std::to_string(i) + "\"");
    }
}

struct ClassifyRow {
    std::string_view token;
    TokenKind kind;
};

TEST(ClassifyToken, QuotedTextIsNotEmpty) {
    const ClassifyRow rows[] = {
        {R"("a")", TokenKind::Quoted},   {R"("5")", TokenKind::Quoted},    {R"(" ")", TokenKind::Quoted},
        {R"("a b")", TokenKind::Quoted}, {R"(x"a"y)", TokenKind::Quoted},  {R"(5"a")", TokenKind::Quoted},
        {R"(""")", TokenKind::Quoted},   {R"("a""b")", TokenKind::Quoted}, {R"("a"b)", TokenKind::Quoted},
        {R"("")", TokenKind::Word},      {R"(")", TokenKind::Word},        {R"("a)", TokenKind::Word},
        {R"(a")", TokenKind::Word},      {R"(x""y)", TokenKind::Word},
    };
    for (const ClassifyRow& row : rows) {
        EXPECT_EQ(ClassifyToken(row.token), row.kind) << Shown(row.token);
    }
}

TEST(ClassifyToken, NumberBeginsWithADigit) {
    const ClassifyRow rows[] = {
        {"0", TokenKind::Number},
        {"5", TokenKind::Number},
        {"9", TokenKind::Number},
        {"007", TokenKind::Number},
        {"12abc", TokenKind::Number},
        {"1.5", TokenKind::Number},
        {"0x10", TokenKind::Number},
        {"5\"", TokenKind::Number},
        {"5\"\"", TokenKind::Number},
        {"9223372036854775807", TokenKind::Number},
        {"9223372036854775808", TokenKind::Word},
        {"-5", TokenKind::Word},
        {"+5", TokenKind::Word},
        {" 5", TokenKind::Word},
        {".5", TokenKind::Word},
        {"a5", TokenKind::Word},
        {":", TokenKind::Word},
        {"/", TokenKind::Word},
        {"", TokenKind::Word},
        {"abc", TokenKind::Word},
    };
    for (const ClassifyRow& row : rows) {
        EXPECT_EQ(ClassifyToken(row.token), row.kind) << Shown(row.token);
    }
}

TEST(ClassifyTokens, GivesOneKindForEachToken) {
    EXPECT_EQ(ClassifyTokens({}), std::vector<TokenKind>{});
    EXPECT_EQ(ClassifyTokens({"\"\"", "\"a\"", "12abc", "x"}),
              (std::vector<TokenKind>{TokenKind::Word, TokenKind::Quoted, TokenKind::Number, TokenKind::Word}));
}

TEST(TokenKind, HasTheNumbersOfTheKinds) {
    EXPECT_EQ(static_cast<uint32_t>(TokenKind::Word), 0U);
    EXPECT_EQ(static_cast<uint32_t>(TokenKind::Quoted), 1U);
    EXPECT_EQ(static_cast<uint32_t>(TokenKind::Number), 2U);
}

TEST(Unquoted, IsTheTextBetweenTheOuterQuotes) {
    const std::pair<std::string_view, std::string_view> rows[] = {
        {"", ""},
        {"abc", ""},
        {"\"", ""},
        {R"("abc)", ""},
        {R"("")", ""},
        {R"("abc")", "abc"},
        {R"("a b")", "a b"},
        {R"(x"a"y)", "a"},
        {R"(""")", "\""},
        {R"("a"b"c")", "a\"b\"c"},
    };
    for (const auto& [token, text] : rows) {
        EXPECT_EQ(Unquoted(token), text) << Shown(token);
    }
}

}  // namespace
}  // namespace tabrin
