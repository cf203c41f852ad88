// The text of a file on its way to the statements: read in blocks, handed over line by line.
//
// One buffer holds it all, so that a line is hardly ever moved:
//
//     [ dropped | lines handed over, not yet dropped | gap | bytes as read ]
//
// A line is cleaned where it lies and becomes part of the lines in front of it. The gap grows by what cleaning takes
// out of a line (the CR of a line end, control characters) and closes when the buffer is packed.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "io/file.h"
#include "io/memory_block.h"
#include "io/text_marks.h"

namespace tabrin {

class LineBuffer {
public:
    enum class Result { Line, EndOfFile, Failed };

    explicit LineBuffer(File& file) : file_(file) {}

    // Appends the next line to the text, with a "\n" behind it whatever its end was. Broken UTF-8 is replaced by "_"
    // byte by byte, control characters that are no blanks are left out. The last line needs no line end.
    Result ReadLine();

    // The lines read and not yet dropped. The view holds until the next ReadLine.
    [[nodiscard]] std::string_view Text() const { return {data_.get() + begin_, end_ - begin_}; }

    // Goes on to the next place in the line read last where a keyword may end: the position of a blank, in the text, with
    // the last character of a keyword in front. False when there is none.
    bool NextKeywordEnd(size_t& blank) {
        if (numAskedFor_ == numKeywordEnds_) {
            return !hasAllKeywordEnds_ && SearchKeywordEnd(blank);
        }
        keywordEnd_ = keywordEnds_[numAskedFor_++];
        blank = lineBegin_ - begin_ + keywordEnd_;
        return true;
    }

    // Drops that many bytes from the front of the text.
    void Drop(size_t size) { begin_ += size; }
    void Clear() { begin_ = end_; }

    // Forgets everything, for the next file.
    void Reset();

private:
    bool FindLineEnd(size_t& lineEnd);
    bool ReadBlock();
    void Pack(size_t capacity);
    void TakeLine(size_t lineEnd);
    size_t Clean(char* line, size_t size);
    void NoteKeywordEnd(size_t place);
    bool SearchKeywordEnd(size_t& blank);
    void ForgetLine();

    File& file_;
    MemoryBlock data_;
    size_t capacity_ = 0;
    size_t begin_ = 0;     // of the text
    size_t end_ = 0;       // of the text
    size_t rawBegin_ = 0;  // of the bytes as read
    size_t rawEnd_ = 0;
    TextMarks marks_;
    size_t markedBegin_ = 0;  // of the bytes that have marks
    bool atEnd_ = false;
    bool failed_ = false;

    // Of the line that is being read, or was read last.
    size_t lineBegin_ = 0;
    bool isSuspicious_ = false;  // has controls or something beyond ASCII
    bool hasControls_ = false;
    // The first of its keyword ends, counted from its begin. Behind these the line is searched, where it has more, or
    // where cleaning changed it.
    std::array<size_t, 16> keywordEnds_;
    size_t numKeywordEnds_ = 0;
    bool hasAllKeywordEnds_ = true;
    size_t numAskedFor_ = 0;
    size_t keywordEnd_ = 0;  // asked for last
};

// Cleans one line in place and returns its new length.
size_t CleanLine(char* line, size_t size);

}  // namespace tabrin
