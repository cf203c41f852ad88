#include "io/token_reader.h"

#include <algorithm>

#include "io/text_number.h"

namespace tabrin {

// What stands behind the text counts as a delimiter.
template <typename Delimiters>
void TokenReader<Delimiters>::LookFrom(size_t position) {
    const std::string_view ahead = text_.substr(position, kWindow);
    uint64_t marks = delimiters_.MarksOf(ahead);
    if (ahead.size() < kWindow) {
        marks |= ~uint64_t{0} << ahead.size();
    }
    window_ = position;
    edges_ = marks ^ (marks << 1U | 1U);
}

// No piece is left that ends in the window. One may begin in it.
template <typename Delimiters>
bool TokenReader<Delimiters>::NextPieceBeyond(size_t& start, size_t& end) {
    const size_t offset = edges_ != 0 ? static_cast<size_t>(std::countr_zero(edges_)) : kWindow;
    size_t position = std::min(window_ + offset, text_.size());
    while (position < text_.size() && delimiters_.Has(text_[position])) {
        ++position;
    }
    start = position;
    while (position < text_.size() && !delimiters_.Has(text_[position])) {
        ++position;
    }
    end = position;
    LookFrom(position);
    return start != end;
}

// Usually all delimiters in the run are single spaces: then the token is simply a stretch of the text.
template <typename Delimiters>
std::string_view TokenReader<Delimiters>::RunToClosingQuote(size_t start, size_t end) {
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

template class TokenReader<StatementDelimiters>;
template class TokenReader<CharSet>;

std::vector<std::string> SplitTokens(std::string_view text, std::string_view delimiters) {
    std::vector<std::string> tokens;
    TokenReader reader(text, CharSet(delimiters));
    for (std::string_view token; reader.Next(token);) {
        tokens.emplace_back(token);
    }
    return tokens;
}

bool IsNumberInRange(std::string_view token) {
    int64_t number = 0;
    return ToI64(token, number);
}

std::vector<TokenKind> ClassifyTokens(const std::vector<std::string>& tokens) {
    std::vector<TokenKind> kinds;
    kinds.reserve(tokens.size());
    for (const std::string& token : tokens) {
        kinds.push_back(ClassifyToken(token));
    }
    return kinds;
}

std::string_view TextBetweenQuotes(std::string_view token) {
    const size_t first = token.find('"');
    if (first == kNpos) {
        return {};
    }
    const size_t last = token.rfind('"');
    return last != first ? token.substr(first + 1, last - first - 1) : std::string_view();
}

}  // namespace tabrin
