#include "io/line_buffer.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "io/byte_block.h"
#include "io/text_scan.h"
#include "io/text_utf8.h"

namespace tabrin {

namespace {

constexpr size_t kBlockSize = size_t{64} << 10;

bool IsControl(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return (byte < 0x20 && !IsBlank(c)) || byte == 0x7F;
}

// Whether a block holds something else than printable ASCII.
bool IsSuspicious(const ByteBlock& block) {
    return block.Between(' ', '~') != kEveryByte;
}

bool NeedsCleaning(const char* line, size_t size) {
    size_t done = 0;
    for (; size - done >= ByteBlock::kSize; done += ByteBlock::kSize) {
        if (IsSuspicious(ByteBlock(line + done))) {
            return true;
        }
    }
    if (size >= ByteBlock::kSize) {
        // The last block overlaps the one before.
        return IsSuspicious(ByteBlock(line + size - ByteBlock::kSize));
    }
    char rest[ByteBlock::kSize];
    std::memset(rest, ' ', sizeof rest);
    std::copy_n(line, size, rest);
    return IsSuspicious(ByteBlock(rest));
}

}  // namespace

size_t CleanLine(char* line, size_t size) {
    if (!NeedsCleaning(line, size)) {
        return size;
    }
    RepairUtf8(line, size);
    return static_cast<size_t>(std::remove_if(line, line + size, IsControl) - line);
}

LineBuffer::Result LineBuffer::ReadLine() {
    size_t lineEnd = 0;
    if (!FindLineEnd(lineEnd)) {
        // What stands between the last line end and a failed read is lost; at the end of the file it is a line.
        if (failed_) {
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
    capacity_ = begin_ = end_ = rawBegin_ = rawEnd_ = searched_ = 0;
    atEnd_ = failed_ = false;
}

bool LineBuffer::FindLineEnd(size_t& lineEnd) {
    // A view, because before the first block there is no memory that one could search.
    for (;;) {
        const size_t found = std::string_view(data_.get() + searched_, rawEnd_ - searched_).find('\n');
        if (found != std::string_view::npos) {
            lineEnd = searched_ + found;
            return true;
        }
        searched_ = rawEnd_;
        if (!ReadBlock()) {
            return false;
        }
    }
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
    rawEnd_ = searched_ = textSize + rawSize;
}

void LineBuffer::TakeLine(size_t lineEnd) {
    char* line = data_.get() + rawBegin_;
    size_t size = lineEnd - rawBegin_;
    const bool closed = lineEnd != rawEnd_;
    if (closed && size != 0 && line[size - 1] == '\r') {
        --size;
    }
    size = CleanLine(line, size);
    if (end_ != rawBegin_) {
        std::memmove(data_.get() + end_, line, size);
    }
    end_ += size;
    data_[end_++] = '\n';
    rawBegin_ = searched_ = closed ? lineEnd + 1 : rawEnd_;
}

}  // namespace tabrin
