#include "io/statement_cutter.h"

#include "io/byte_block.h"
#include "io/text_scan.h"

namespace tabrin {

namespace {

// A statement that has grown beyond this without meeting a keyword is delivered as it stands.
constexpr size_t kLongestStatement = 4096;

// `blank` is the position of a blank behind a token; tokens do not reach back beyond `from`.
size_t TokenStart(std::string_view text, size_t from, size_t blank) {
    size_t start = blank;
    while (start > from && blank - start <= kLongestKeyword && !IsBlank(text[start - 1])) {
        --start;
    }
    return start;
}

// Whether a keyword ends at this position: a blank must be there.
bool KeywordEndsAt(std::string_view text, size_t from, size_t blank, KeywordHit& hit) {
    if (!IsBlank(text[blank]) || !MayEndKeyword(text[blank - 1])) {
        return false;
    }
    const size_t start = TokenStart(text, from, blank);
    hit = {FindStatementKeyword(text.substr(start, blank - start)), start, blank};
    return hit.keyword != nullptr;
}

// Marks the blanks that may have a keyword in front, among the characters of the block at `text`. Other tokens than
// keywords seldom end in a character from "N" to "_", which lie in one range.
uint32_t KeywordEnds(const char* text) {
    static_assert(!MayEndKeyword('N' - 1) && MayEndKeyword('N') && MayEndKeyword('_') && !MayEndKeyword('_' + 1));
    return ByteBlock(text).Between('\0', ' ') & ByteBlock(text - 1).Between('N', '_');
}

// There is always something in front of `end`: the keyword of the statement itself.
bool EndsInSemicolon(std::string_view text, size_t end) {
    return text[FindLastNonBlank(text, end - 1)] == ';';
}

}  // namespace

// Looks for the ends of tokens, a block at a time: hardly any other token ends like a keyword does.
bool FindKeyword(std::string_view text, size_t pos, KeywordHit& hit) {
    const auto isAnyOf = [&](size_t block, uint32_t marks) {
        for (; marks != 0; marks &= marks - 1) {
            if (KeywordEndsAt(text, pos, block + FirstMarked(marks), hit)) {
                return true;
            }
        }
        return false;
    };
    size_t blank = pos + 1;
    for (; blank + ByteBlock::kSize <= text.size(); blank += ByteBlock::kSize) {
        if (isAnyOf(blank, KeywordEnds(text.data() + blank))) {
            return true;
        }
    }
    if (blank < text.size() && text.size() > ByteBlock::kSize) {
        // The last block overlaps what has been looked at.
        const size_t last = text.size() - ByteBlock::kSize;
        return isAnyOf(blank, KeywordEnds(text.data() + last) >> (blank - last));
    }
    for (; blank < text.size(); ++blank) {
        if (KeywordEndsAt(text, pos, blank, hit)) {
            return true;
        }
    }
    return false;
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
    scanPosition_ -= current_.start;
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

// Lines are looked at one by one: what stands in front of the first keyword is passed over.
bool StatementCutter::SeekKeyword() {
    do {
        lines_.Clear();
        if (!ReadLine()) {
            return false;
        }
    } while (!FindKeyword(lines_.Text(), 0, current_));
    scanPosition_ = current_.end;
    return true;
}

// A comment such as CM_ BO_ 100 "..."; has a keyword of its own in front of its text. The statements that end in a
// semicolon therefore tolerate one; the statement then ends at the first keyword in the lines read after that.
bool StatementCutter::RunToNextKeyword() {
    bool tolerated = current_.keyword->termination == Termination::NextKeyword;
    for (;;) {
        if (FindKeyword(lines_.Text(), scanPosition_, next_)) {
            if (tolerated || EndsInSemicolon(lines_.Text(), next_.start)) {
                scanPosition_ = next_.end;
                return true;
            }
            tolerated = true;
        }
        scanPosition_ = lines_.Text().size();
        if (scanPosition_ > kLongestStatement || lastRead_ != LineBuffer::Result::Line) {
            return false;
        }
        ReadLine();
    }
}

}  // namespace tabrin
