// Cuts a statement into tokens, keeping quoted strings whole.
#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <string>
#include <string_view>
#include <vector>

#include "io/char_set.h"

namespace tabrin {

enum class TokenKind : uint32_t {
    Word = 0,    // anything that is not one of the others; also "-5" and ""
    Quoted = 1,  // holds a quoted text that is not empty
    Number = 2   // begins with a digit and reads as a number; text may follow, as in 12abc
};

// Hands out the tokens of a text one after the other. A piece that begins with a quote and does not end in one runs on,
// over delimiters, to the next piece that does; whatever delimiters stood between, one space takes their place. A quote
// standing alone opens nothing, so that a quoted text with a blank in front falls into pieces; a quote that is never
// closed swallows the rest of the text.
class TokenReader {
public:
    // The text and the set must outlive the reader; the tokens live as long as the reader does.
    TokenReader(std::string_view text, const CharSet& delimiters) : text_(text), delimiters_(delimiters) {}

    // False when there is no further token; `token` is then empty.
    bool Next(std::string_view& token);

private:
    bool NextPiece(size_t& start, size_t& end);
    std::string_view RunToClosingQuote(size_t start, size_t end);

    std::string_view text_;
    const CharSet& delimiters_;
    size_t position_ = 0;
    std::list<std::string> rejoined_;
};

std::vector<std::string> SplitTokens(std::string_view text, std::string_view delimiters);

TokenKind ClassifyToken(std::string_view token);
std::vector<TokenKind> ClassifyTokens(const std::vector<std::string>& tokens);

// The text between the first and the last quote; empty when there are not two.
std::string_view Unquoted(std::string_view token);

}  // namespace tabrin
