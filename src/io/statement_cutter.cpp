#include "io/statement_cutter.h"

#include "io/byte_block.h"
#include "io/short_text.h"
#include "io/text_scan.h"

namespace tabrin {

namespace {

// A statement that has grown beyond this without meeting a keyword is delivered as it stands.
constexpr size_t kLongestStatement = 4096;

// `blank` is the position of a blank behind a token. Of one that is longer than any keyword the answer is some place
// inside.
size_t TokenStart(std::string_view text, size_t blank) {
    // Most keywords have three.
    if (blank > 3 && IsBlank(text[blank - 4])) {
        return blank - 3;
    }
    static_assert(kLongestKeyword <= ByteBlock::kSize);
    if (blank >= ByteBlock::kSize) {
        const size_t first = blank - ByteBlock::kSize;
        const ByteBlock block(text.data() + first);
        return first + BehindLastMarked(MarkBlanks(block));
    }
    size_t start = blank;
    while (start > 0 && !IsBlank(text[start - 1])) {
        --start;
    }
    return start;
}

// There is always something in front of `end`: the keyword of the statement itself.
bool EndsInSemicolon(std::string_view text, size_t end) {
    return text[FindLastNonBlank(text, end - 1)] == ';';
}

}  // namespace

bool KeywordEndsAt(std::string_view text, size_t blank, KeywordHit& hit) {
    if (blank == 0 || !IsBlank(text[blank]) || !MayEndKeyword(text[blank - 1])) {
        return false;
    }
    const size_t start = TokenStart(text, blank);
    hit = {FindStatementKeyword(text.substr(start, blank - start)), start, blank};
    return hit.keyword != nullptr && (start == 0 || IsBlank(text[start - 1]));
}

void StatementCutter::Reset() {
    lastRead_ = LineBuffer::Result::Line;
    linesRead_ = 0;
    pending_ = false;
    text_ = {};
}

bool StatementCutter::Next() {
    text_ = {};
    if (lastRead_ != LineBuffer::Result::Line) {
        return false;
    }
    if (pending_) {
        current_ = next_;
    } else if (!SeekKeyword()) {
        return false;
    }
    lines_.Drop(current_.start);
    pending_ = RunToNextKeyword();
    text_ = pending_ ? lines_.Text().substr(0, next_.start) : lines_.Text();
    return true;
}

bool StatementCutter::ReadLine() {
    lastRead_ = lines_.ReadLine();
    if (lastRead_ != LineBuffer::Result::Line) {
        return false;
    }
    ++linesRead_;
    return true;
}

// The next one in the line read last.
bool StatementCutter::FindKeyword(KeywordHit& hit) {
    for (size_t blank = 0; lines_.NextKeywordEnd(blank);) {
        if (KeywordEndsAt(lines_.Text(), blank, hit)) {
            return true;
        }
    }
    return false;
}

// Lines are looked at one by one: what stands in front of the first keyword is passed over.
bool StatementCutter::SeekKeyword() {
    do {
        lines_.Clear();
        if (!ReadLine()) {
            return false;
        }
    } while (!FindKeyword(current_));
    return true;
}

// A comment such as CM_ BO_ 100 "..."; has a keyword of its own in front of its text. The statements that end in a
// semicolon therefore tolerate one; the statement then ends at the first keyword in the lines read after that.
bool StatementCutter::RunToNextKeyword() {
    bool tolerated = current_.keyword->termination == Termination::NextKeyword;
    for (;;) {
        if (FindKeyword(next_)) {
            if (tolerated || EndsInSemicolon(lines_.Text(), next_.start)) {
                return true;
            }
            tolerated = true;
        }
        if (lines_.Text().size() > kLongestStatement || lastRead_ != LineBuffer::Result::Line) {
            return false;
        }
        ReadLine();
    }
}

}  // namespace tabrin
