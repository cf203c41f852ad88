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
    hasControls_ = isSuspicious_ = false;
    keywordEnds_.clear();
    numAskedFor_ = 0;
    size_t lineEnd = 0;
    if (!FindLineEnd(lineEnd)) {
        // What stands between the last line end and a failed read is lost; at the end of the file it is a line.
        if (failed_) {
            keywordEnds_.clear();
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
    keywordEnds_.clear();
    numAskedFor_ = 0;
    atEnd_ = failed_ = false;
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
                keywordEnds_.push_back(place - rawBegin_);
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
    std::unique_ptr<char[]> larger;
    if (capacity != capacity_) {
        larger = std::make_unique_for_overwrite<char[]>(capacity);
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
    size = Clean(line, size);
    if (size != 0 && MayEndKeyword(line[size - 1])) {
        keywordEnds_.push_back(size);
    }
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
    size = CleanLine(line, size);
    FindKeywordEnds({line, size});
    return size;
}

void LineBuffer::FindKeywordEnds(std::string_view line) {
    keywordEnds_.clear();
    for (size_t i = 1; i < line.size(); ++i) {
        if (IsBlank(line[i]) && MayEndKeyword(line[i - 1])) {
            keywordEnds_.push_back(i);
        }
    }
}

}  // namespace tabrin
