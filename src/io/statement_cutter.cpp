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

// Marks the blanks behind a character that keywords end in, among the eight characters at `text`. With these bits set, the
// three characters become one, and a dozen others with them, which do not often stand in front of a blank.
uint64_t KeywordEnds(const char* text) {
    constexpr unsigned char kUnifyingBits = 0x1D;
    static_assert(('_' | kUnifyingBits) == '_' && ('N' | kUnifyingBits) == '_' && ('R' | kUnifyingBits) == '_');
    const uint64_t ends = BytesEqual(LoadBytes(text - 1) | EveryByte(kUnifyingBits), '_');
    return BytesUpTo(LoadBytes(text), ' ') & ends;
}

bool EndsInSemicolon(std::string_view text, size_t end) {
    const size_t last = FindLastNonBlank(text, end - 1);
    return last != kNpos && text[last] == ';';
}

}  // namespace

// Looks for the ends of tokens, eight characters at a time: hardly any other token ends like a keyword does.
bool FindKeyword(std::string_view text, size_t pos, KeywordHit& hit) {
    size_t blank = pos + 1;
    for (; blank + sizeof(uint64_t) <= text.size(); blank += sizeof(uint64_t)) {
        for (uint64_t marks = KeywordEnds(text.data() + blank); marks != 0; marks &= marks - 1) {
            if (KeywordEndsAt(text, pos, blank + FirstMarked(marks), hit)) {
                return true;
            }
        }
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
    current_ = next_ = {};
    scanPosition_ = 0;
    text_ = {};
}

bool StatementCutter::Next() {
    text_ = {};
    if (lastRead_ != LineBuffer::Result::Line) {
        lines_.Clear();
        return false;
    }
    if (pending_) {
        current_ = next_;
    } else if (!SeekKeyword()) {
        lines_.Clear();
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
