// Random texts cut into tokens by the library and by a second cutter that takes the rule literally: all pieces first,
// then the quoted ones joined.
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "io/io_test_support.h"
#include "io/token_reader.h"

namespace tabrin {
namespace {

using Texts = std::vector<std::string>;

Texts Pieces(const std::string& text, const std::string& delimiters) {
    Texts pieces;
    for (size_t start = text.find_first_not_of(delimiters); start != std::string::npos;) {
        const size_t end = text.find_first_of(delimiters, start);
        pieces.push_back(text.substr(start, end == std::string::npos ? end : end - start));
        start = text.find_first_not_of(delimiters, end);
    }
    return pieces;
}

Texts Joined(const Texts& pieces) {
    Texts tokens;
    bool inside = false;
    for (const std::string& piece : pieces) {
        if (!inside) {
            tokens.push_back(piece);
            inside = piece.front() == '"' && piece.rfind('"') != piece.size() - 1;
        } else {
            tokens.back() += " " + piece;
            inside = piece.back() != '"';
        }
    }
    return tokens;
}

Texts StatementTokens(std::string_view text) {
    Texts tokens;
    TokenReader<StatementDelimiters> reader(text);
    for (std::string_view token; reader.Next(token);) {
        tokens.emplace_back(token);
    }
    return tokens;
}

std::string RandomText(Random& random, std::string_view alphabet, size_t mostCharacters) {
    std::string text;
    for (size_t size = random.Below(mostCharacters); size > 0; --size) {
        text += alphabet[random.Below(alphabet.size())];
    }
    return text;
}

TEST(TokenReader, AgreesWithThePlainRuleOnRandomTexts) {
    // Many delimiters and quotes, or long pieces.
    constexpr std::string_view kAlphabets[] = {"\"\"\"ab1  ;,\t\n", "\"abcdefghijklmnopqrstuvwxyz0123456789 ;"};
    constexpr std::string_view kDelimiters = " \f\n\r\t\v;,";
    Random random(11);
    size_t joinedTexts = 0;
    for (int round = 0; round < 50000; ++round) {
        const bool isLong = round % 5 == 0;
        const std::string text = RandomText(random, kAlphabets[random.Below(2)], isLong ? 300 : 24);
        SCOPED_TRACE(Shown(text));
        for (const std::string_view delimiters : {std::string_view(" "), kDelimiters}) {
            const Texts pieces = Pieces(text, std::string(delimiters));
            const Texts expected = Joined(pieces);
            joinedTexts += expected.size() < pieces.size() ? 1 : 0;
            ASSERT_EQ(SplitTokens(text, delimiters), expected) << "at " << Shown(delimiters);
            if (delimiters == kDelimiters) {
                ASSERT_EQ(StatementTokens(text), expected);
            }
        }
    }
    EXPECT_GT(joinedTexts, 10000U);
}

}  // namespace
}  // namespace tabrin
