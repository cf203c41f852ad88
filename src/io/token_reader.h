// Cuts a statement into tokens, keeping quoted strings whole.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <list>
#include <string>
#include <string_view>
#include <vector>

#include "io/byte_block.h"
#include "io/char_set.h"
#include "io/text_scan.h"

namespace tabrin {

enum class TokenKind : uint32_t {
    Word = 0,    // anything that is not one of the others; also "-5" and ""
    Quoted = 1,  // holds a quoted text that is not empty
    Number = 2   // begins with a digit and reads as a number; text may follow, as in 12abc
};

// Blanks, ";" and ",": the end of a statement and what stands between the values of a list are never seen in a token.
struct StatementDelimiters {
    static bool Has(char c) { return IsBlank(c) || c == ';' || c == ','; }

    // The delimiters among up to 64 characters.
    static uint64_t MarksOf(std::string_view text) {
        return tabrin::MarksOf(text, [](ByteBlock block) {
            return block.Between('\t', '\r') | block.Equal(' ') | block.Equal(';') | block.Equal(',');
        });
    }
};

// Hands out the tokens of a text one after the other. A piece that begins with a quote and does not end in one runs on,
// over delimiters, to the next piece that does; whatever delimiters stood between, one space takes their place. A quote
// standing alone opens nothing, so that a quoted text with a blank in front falls into pieces; a quote that is never
// closed swallows the rest of the text.
//
// Where tokens begin and end is known for 64 characters at once, so that nothing goes from one character to the next
// until it happens to end: how long the next token is nobody can guess, the processor neither.
template <typename Delimiters>
class TokenReader {
public:
    // The text must outlive the reader; the tokens live as long as the reader does.
    explicit TokenReader(std::string_view text, const Delimiters& delimiters = Delimiters())
        : text_(text), delimiters_(delimiters) {
        LookFrom(0);
    }

    // False when there is no further token; `token` is then empty.
    bool Next(std::string_view& token) {
        size_t start = 0;
        size_t end = 0;
        if (!NextPiece(start, end)) {
            token = {};
            return false;
        }
        token = {text_.data() + start, end - start};
        if (token.front() == '"' && token.back() != '"') {
            token = RunToClosingQuote(start, end);
        }
        return true;
    }

private:
    static constexpr size_t kWindow = 64;

    void LookFrom(size_t position);

    bool NextPiece(size_t& start, size_t& end) {
        const uint64_t edgesBehindStart = edges_ & (edges_ - 1);
        if (edgesBehindStart == 0) {
            return NextPieceBeyond(start, end);
        }
        start = window_ + static_cast<size_t>(std::countr_zero(edges_));
        end = window_ + static_cast<size_t>(std::countr_zero(edgesBehindStart));
        edges_ = edgesBehindStart & (edgesBehindStart - 1);
        return true;
    }

    bool NextPieceBeyond(size_t& start, size_t& end);
    std::string_view RunToClosingQuote(size_t start, size_t end);

    std::string_view text_;
    Delimiters delimiters_;
    size_t window_ = 0;   // where the 64 characters begin
    uint64_t edges_ = 0;  // in turn the first characters of the pieces still to come and the delimiters behind them
    std::list<std::string> rejoined_;
};

extern template class TokenReader<StatementDelimiters>;
extern template class TokenReader<CharSet>;

std::vector<std::string> SplitTokens(std::string_view text, std::string_view delimiters);

// The text between the first and the last quote, wherever they are; empty when there are not two.
std::string_view TextBetweenQuotes(std::string_view token);

// The same. Nearly every token that is asked for its text has a quote at each end.
inline std::string_view Unquoted(std::string_view token) {
    if (token.size() > 1 && token.front() == '"' && token.back() == '"') {
        return token.substr(1, token.size() - 2);
    }
    return TextBetweenQuotes(token);
}

// Whether a token that begins with a digit reads as a number.
bool IsNumberInRange(std::string_view token);

inline TokenKind ClassifyToken(std::string_view token) {
    if (!Unquoted(token).empty()) {
        return TokenKind::Quoted;
    }
    const bool beginsWithDigit = !token.empty() && IsDigit(token.front());
    return beginsWithDigit && IsNumberInRange(token) ? TokenKind::Number : TokenKind::Word;
}
std::vector<TokenKind> ClassifyTokens(const std::vector<std::string>& tokens);

}  // namespace tabrin
