#include "io/token_reader.h"

#include "io/text_number.h"
#include "io/text_scan.h"

namespace tabrin {

bool TokenReader::Next(std::string_view& token) {
    size_t start = 0;
    size_t end = 0;
    if (!NextPiece(start, end)) {
        token = {};
        return false;
    }
    token = text_.substr(start, end - start);
    if (token.front() == '"' && token.back() != '"') {
        token = RunToClosingQuote(start, end);
    }
    return true;
}

bool TokenReader::NextPiece(size_t& start, size_t& end) {
    const std::string_view text = text_;
    const CharSet& delimiters = delimiters_;
    size_t position = position_;
    while (position < text.size() && delimiters.Has(text[position])) {
        ++position;
    }
    start = position;
    while (position < text.size() && !delimiters.Has(text[position])) {
        ++position;
    }
    end = position_ = position;
    return start != end;
}

// Usually all delimiters in the run are single spaces: then the token is simply a stretch of the text.
std::string_view TokenReader::RunToClosingQuote(size_t start, size_t end) {
    std::string* joined = nullptr;
    const size_t runStart = start;
    size_t runEnd = end;
    while (NextPiece(start, end)) {
        const bool singleSpace = start == runEnd + 1 && text_[runEnd] == ' ';
        if (joined == nullptr && !singleSpace) {
            joined = &rejoined_.emplace_back(text_.substr(runStart, runEnd - runStart));
        }
        if (joined != nullptr) {
            joined->append(1, ' ').append(text_, start, end - start);
        }
        runEnd = end;
        if (text_[end - 1] == '"') {
            break;
        }
    }
    return joined != nullptr ? std::string_view(*joined) : text_.substr(runStart, runEnd - runStart);
}

std::vector<std::string> SplitTokens(std::string_view text, std::string_view delimiters) {
    std::vector<std::string> tokens;
    const CharSet set(delimiters);
    TokenReader reader(text, set);
    for (std::string_view token; reader.Next(token);) {
        tokens.emplace_back(token);
    }
    return tokens;
}

TokenKind ClassifyToken(std::string_view token) {
    constexpr size_t kSurelyInRange = 18;
    uint64_t digits = 0;
    std::string_view rest = token;
    if (TakeDigits(rest, digits) != 0 && rest.empty() && token.size() <= kSurelyInRange) {
        return TokenKind::Number;
    }
    if (!Unquoted(token).empty()) {
        return TokenKind::Quoted;
    }
    int64_t number = 0;
    if (!token.empty() && IsDigit(token.front()) && ToI64(token, number)) {
        return TokenKind::Number;
    }
    return TokenKind::Word;
}

std::vector<TokenKind> ClassifyTokens(const std::vector<std::string>& tokens) {
    std::vector<TokenKind> kinds;
    kinds.reserve(tokens.size());
    for (const std::string& token : tokens) {
        kinds.push_back(ClassifyToken(token));
    }
    return kinds;
}

std::string_view Unquoted(std::string_view token) {
    if (token.size() > 1 && token.front() == '"' && token.back() == '"') {
        return token.substr(1, token.size() - 2);
    }
    const size_t first = token.find('"');
    const size_t last = token.rfind('"');
    if (first == kNpos || last == first) {
        return {};
    }
    return token.substr(first + 1, last - first - 1);
}

}  // namespace tabrin
