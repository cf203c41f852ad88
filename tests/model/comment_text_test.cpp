#include "model/comment_text.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "shown.h"

namespace tabrin {
namespace {

// --- Escaping

struct EscapeCase {
    std::string_view text;
    std::string_view escaped;
};

constexpr EscapeCase kEscapeCases[] = {
    {R"()", R"()"},
    {R"(no quotes)", R"(no quotes)"},
    {R"(")", R"(\")"},
    {R"("")", R"(\"\")"},
    {R"(""")", R"(\"\"\")"},
    {R"(a"b)", R"(a\"b)"},
    {R"("a)", R"(\"a)"},
    {R"(a")", R"(a\")"},
    {R"(a "b" c)", R"(a \"b\" c)"},
    {R"(\")", R"(\")"},
    {R"(say \"hi\")", R"(say \"hi\")"},
    {R"(one \"two" three)", R"(one \"two\" three)"},
    {R"(one "two\" three)", R"(one \"two\" three)"},
    // Any backslash in front will do, also one that is itself preceded by one.
    {R"(a\\"b)", R"(a\\"b)"},
    {R"(\"")", R"(\"\")"},
    {R"(\)", R"(\)"},
    {R"(\a")", R"(\a\")"},
    {"line\n\"two\"\tend", "line\n\\\"two\\\"\tend"},
    {"\xC3\xA4\"\xC3\xA4", "\xC3\xA4\\\"\xC3\xA4"},
};

TEST(CommentText, EveryQuoteGetsABackslashThatHasNone) {
    for (const EscapeCase& row : kEscapeCases) {
        SCOPED_TRACE(Shown(row.text));
        std::string text(row.text);
        EscapeQuotes(text);
        EXPECT_EQ(text, row.escaped);
    }
}

TEST(CommentText, EscapingTwiceChangesNothing) {
    for (const EscapeCase& row : kEscapeCases) {
        SCOPED_TRACE(Shown(row.escaped));
        std::string text(row.escaped);
        EscapeQuotes(text);
        EXPECT_EQ(text, row.escaped);
    }
}

// --- Appending

struct AppendCase {
    std::string_view comment;
    std::string_view text;
    std::string_view result;
};

constexpr AppendCase kAppendCases[] = {
    {R"()", R"()", R"()"},
    {R"()", R"(a"b)", R"(a\"b)"},
    {R"(one)", R"()", R"(one)"},
    {R"(one)", R"(two)", R"(onetwo)"},
    {R"(one)", R"("two")", R"(one\"two\")"},
    {R"(one\")", R"("two)", R"(one\"\"two)"},
    {R"(one\")", R"(\"two)", R"(one\"\"two)"},
    // The backslash at the end of the comment stands in front of the quote as well as one in the text would.
    {R"(one\)", R"("two)", R"(one\"two)"},
    {R"(one\)", R"("two" three)", R"(one\"two\" three)"},
    {R"(one\)", R"(two")", R"(one\two\")"},
    {R"(one)", R"(\)", R"(one\)"},
};

TEST(CommentText, AppendedTextIsEscapedInItsPlace) {
    for (const AppendCase& row : kAppendCases) {
        SCOPED_TRACE(Shown(row.comment) + " + " + Shown(row.text));
        Arena arena;
        GrowingText comment;
        comment.Append(arena, row.comment);
        AppendEscaped(arena, comment, row.text);
        EXPECT_EQ(comment.View(), row.result);
    }
}

// Goes by the single character, where the library goes from quote to quote.
std::string EscapedByCharacter(const std::string& text) {
    std::string escaped;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '"' && (i == 0 || text[i - 1] != '\\')) {
            escaped += '\\';
        }
        escaped += text[i];
    }
    return escaped;
}

TEST(CommentText, AppendingIsLikeEscapingTheWhole) {
    constexpr std::string_view kLetters = "a\"\\";
    std::vector<std::string> texts = {""};
    for (size_t i = 0; texts[i].size() < 6; ++i) {
        for (const char letter : kLetters) {
            texts.push_back(texts[i] + letter);
        }
    }
    ASSERT_EQ(texts.size(), 1093U);  // 1 + 3 + 9 + 27 + 81 + 243 + 729
    for (const std::string& text : texts) {
        for (size_t cut = 0; cut <= text.size(); ++cut) {
            const std::string comment = EscapedByCharacter(text.substr(0, cut));
            const std::string appended = text.substr(cut);
            Arena arena;
            GrowingText actual;
            actual.Append(arena, comment);
            AppendEscaped(arena, actual, appended);
            ASSERT_EQ(actual.View(), EscapedByCharacter(comment + appended)) << comment << " + " << appended;
        }
    }
}

// --- Taking a comment from a record

constexpr size_t kFieldSize = 256;

std::string Repeated(size_t count, std::string_view text) {
    std::string result;
    for (size_t i = 0; i < count; ++i) {
        result += text;
    }
    return result;
}

struct FieldCase {
    const char* what;
    std::string field;  // what stands at its beginning; the rest is 'z'
    bool result;
    std::string comment;
};

const FieldCase kFieldCases[] = {
    {"empty", std::string(1, '\0'), true, ""},
    {"up to the NUL", std::string("text\0more", 9), true, "text"},
    {"escaped", std::string("a \"b\" c\0", 8), true, R"(a \"b\" c)"},
    {"escaped already", std::string("say \\\"hi\\\"\0", 11), true, R"(say \"hi\")"},
    {"255 bytes and a NUL", std::string(255, 'x') + std::string(1, '\0'), true, std::string(255, 'x')},
    {"254 bytes and a NUL", std::string(254, 'x') + std::string(1, '\0'), true, std::string(254, 'x')},
    {"no NUL: the last byte is left out", std::string(255, 'x') + "y", true, std::string(255, 'x')},
    {"escaping may go beyond the size of the field", Repeated(255, "\"") + std::string(1, '\0'), true,
     Repeated(255, "\\\"")},
    {"a character cut by the end is dropped", std::string(254, 'x') + "\xC3\xA4", true, std::string(254, 'x')},
    {"a whole character at the end stays", std::string(253, 'x') + "\xC3\xA4", true,
     std::string(253, 'x') + "\xC3\xA4"},
    {"a character cut by the NUL is dropped", std::string("ab\xE6\xBC\0", 5), true, "ab"},
    {"no UTF-8", std::string("\xFF abc\0", 6), false, ""},
    {"no UTF-8 in the middle", std::string("text \x80 text\0", 12), false, ""},
};

TEST(CommentText, TakenFromTheFieldOfARecord) {
    for (const FieldCase& row : kFieldCases) {
        SCOPED_TRACE(row.what);
        char field[kFieldSize];
        std::memset(field, 'z', sizeof field);
        ASSERT_LE(row.field.size(), sizeof field);
        std::memcpy(field, row.field.data(), row.field.size());
        std::string comment = "an earlier comment";
        EXPECT_EQ(SetCommentFromBuffer(comment, field), row.result);
        EXPECT_EQ(comment, row.comment);
    }
}

}  // namespace
}  // namespace tabrin
