#include "io/line_buffer.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "io/dbc_keywords.h"
#include "io/text_scan.h"
#include "io/text_utf8.h"

namespace tabrin {

namespace {

constexpr size_t kBlockSize = TextMarks::kMostBytes;

bool IsControl(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return (byte < 0x20 && !IsBlank(c)) || byte == 0x7F;
}

}  // namespace

size_t CleanLine(char* line, size_t size) {
    RepairUtf8(line, size);
    return static_cast<size_t>(std::remove_if(line, line + size, IsControl) - line);
}

LineBuffer::Result LineBuffer::ReadLine() {
    ForgetLine();
    size_t lineEnd = 0;
    if (!FindLineEnd(lineEnd)) {
        // What stands between the last line end and a failed read is lost; at the end of the file it is a line.
        if (failed_) {
            ForgetLine();
            return Result::Failed;
        }
        if (rawBegin_ == rawEnd_) {
            return Result::EndOfFile;
        }
        lineEnd = rawEnd_;
    }
    TakeLine(lineEnd);
    return Result::Line;
}

void LineBuffer::Reset() {
    data_.reset();
    capacity_ = begin_ = end_ = rawBegin_ = rawEnd_ = markedBegin_ = lineBegin_ = 0;
    marks_.Reset();
    ForgetLine();
    atEnd_ = failed_ = false;
}

void LineBuffer::ForgetLine() {
    isSuspicious_ = hasControls_ = false;
    hasAllKeywordEnds_ = true;
    numKeywordEnds_ = numAskedFor_ = keywordEnd_ = 0;
}

bool LineBuffer::FindLineEnd(size_t& lineEnd) {
    do {
        for (size_t place = markedBegin_ + marks_.Next(); place != rawEnd_; place = markedBegin_ + marks_.Next()) {
            const char c = data_[place];
            if (c == '\n') {
                lineEnd = place;
                return true;
            }
            if (IsBlank(c)) {
                NoteKeywordEnd(place - rawBegin_);
            } else {
                hasControls_ = hasControls_ || IsControl(c);
                isSuspicious_ = true;
            }
        }
    } while (ReadBlock());
    return false;
}

// Makes room for a block and one byte more: the "\n" that a last line without line end gets. The buffer is packed only
// when more than half of it is free, so that a byte is moved a constant number of times.
bool LineBuffer::ReadBlock() {
    if (atEnd_) {
        return false;
    }
    if (capacity_ - rawEnd_ <= kBlockSize) {
        const size_t used = (end_ - begin_) + (rawEnd_ - rawBegin_);
        const bool roomy = used <= capacity_ / 2 && capacity_ - used > kBlockSize;
        Pack(roomy ? capacity_ : 2 * used + kBlockSize + kBlockSize / 2);
    }
    size_t count = 0;
    failed_ = !file_.Read(data_.get() + rawEnd_, kBlockSize, count);
    atEnd_ = count == 0;
    markedBegin_ = rawEnd_;
    marks_.Set(data_.get() + rawEnd_, count);
    rawEnd_ += count;
    return count != 0;
}

void LineBuffer::Pack(size_t capacity) {
    const size_t textSize = end_ - begin_;
    const size_t rawSize = rawEnd_ - rawBegin_;
    MemoryBlock larger;
    if (capacity != capacity_) {
        larger = AllocateBlock(capacity);
    }
    char* target = larger ? larger.get() : data_.get();
    if (data_) {
        std::memmove(target, data_.get() + begin_, textSize);
        std::memmove(target + textSize, data_.get() + rawBegin_, rawSize);
    }
    if (larger) {
        data_ = std::move(larger);
        capacity_ = capacity;
    }
    begin_ = 0;
    end_ = rawBegin_ = textSize;
    rawEnd_ = textSize + rawSize;
}

void LineBuffer::TakeLine(size_t lineEnd) {
    char* line = data_.get() + rawBegin_;
    size_t size = lineEnd - rawBegin_;
    const bool closed = lineEnd != rawEnd_;
    if (closed && size != 0 && line[size - 1] == '\r') {
        --size;
    }
    NoteKeywordEnd(size);
    size = Clean(line, size);
    if (end_ != rawBegin_) {
        std::memmove(data_.get() + end_, line, size);
    }
    lineBegin_ = end_;
    end_ += size;
    data_[end_++] = '\n';
    rawBegin_ = closed ? lineEnd + 1 : rawEnd_;
}

// Hardly any line is changed by it, also of those that are not ASCII.
size_t LineBuffer::Clean(char* line, size_t size) {
    if (!isSuspicious_ || (!hasControls_ && FirstInvalidUtf8({line, size}) == size)) {
        return size;
    }
    hasAllKeywordEnds_ = false;
    numKeywordEnds_ = 0;
    return CleanLine(line, size);
}

// A blank in front of the line end, which becomes a part of it, comes here twice.
void LineBuffer::NoteKeywordEnd(size_t place) {
    if (place == 0 || !MayEndKeyword(data_[rawBegin_ + place - 1])) {
        return;
    }
    if (numKeywordEnds_ != 0 && keywordEnds_[numKeywordEnds_ - 1] == place) {
        return;
    }
    if (numKeywordEnds_ == keywordEnds_.size()) {
        hasAllKeywordEnds_ = false;
        return;
    }
    keywordEnds_[numKeywordEnds_++] = place;
}

// Up to the line end, which is a blank, too.
bool LineBuffer::SearchKeywordEnd(size_t& blank) {
    const std::string_view line(data_.get() + lineBegin_, end_ - lineBegin_);
    while (++keywordEnd_ < line.size()) {
        if (IsBlank(line[keywordEnd_]) && MayEndKeyword(line[keywordEnd_ - 1])) {
            blank = lineBegin_ - begin_ + keywordEnd_;
            return true;
        }
    }
    hasAllKeywordEnds_ = true;
    return false;
}

}  // namespace tabrin
