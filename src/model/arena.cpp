#include "model/arena.h"

#include <algorithm>
#include <utility>

#include "io/large_pages.h"

namespace tabrin {

namespace {

// Small databases take little, others blocks of one size, which the allocator keeps after Clear and hands out again.
constexpr size_t kFirstBlock = size_t{4} << 10;
constexpr size_t kUsualBlock = size_t{64} << 10;

// From here on a database is large. A block is then a large page: 10 MB are read in a twelfth less time, because the
// processor has few pages to look up and the system few to hand out. These go back to the system with Clear.
constexpr size_t kLargeDatabase = size_t{8} << 20;

// Under the address sanitizer each piece is a block of its own, so that it is seen when one is overrun.
#ifdef TABRIN_SANITIZE
constexpr bool kSharesBlocks = false;
constexpr size_t kReadableBehind = 0;
#else
constexpr bool kSharesBlocks = true;
constexpr size_t kReadableBehind = kLongestShortCopy;  // behind every piece, as CopyShortText reads on there
#endif

}  // namespace

// Blocks come aligned for every fundamental type. A large piece gets a block of its own, and the current one stays in
// use: never more than a quarter of a block is lost.
char* Arena::AllocateInNewBlock(size_t size) {
    const size_t blockSize = std::max(nextBlockSize_, kFirstBlock);
    const bool isLarge = !kSharesBlocks || size > blockSize / 4;
    char* piece = AddBlock(isLarge ? size + kReadableBehind : blockSize);
    if (!isLarge) {
        current_ = blocks_.size() - 1;
        free_ = piece + size;
        end_ = piece + blockSize - kReadableBehind;
        nextBlockSize_ = std::min(2 * blockSize, kUsualBlock);
        if (blocks_.size() > kLargeDatabase / kUsualBlock) {
            nextBlockSize_ = std::max(LargePageSize(), kUsualBlock);
        }
    }
    return piece;
}

char* Arena::AddBlock(size_t size) {
    return blocks_.emplace_back(AllocateBlock(size)).get();
}

void Arena::Rewind(const Mark& mark) {
    if (mark.numBlocks == 0) {
        // A fresh one, not an emptied one, so that its memory goes back too.
        blocks_ = decltype(blocks_)();
        nextBlockSize_ = 0;
        free_ = end_ = nullptr;
    } else if (end_ == mark.end) {
        blocks_.resize(mark.numBlocks);
        free_ = mark.free;
    } else {
        // A block begun since then stays, empty: thousands of faulty statements at the end of a block would otherwise
        // get one each and give it back. The rest of the block before is lost.
        std::swap(blocks_[mark.numBlocks], blocks_[current_]);
        current_ = mark.numBlocks;
        blocks_.resize(mark.numBlocks + 1);
        free_ = blocks_.back().get();
    }
}

void GrowingText::Append(Arena& arena, std::string_view text) {
    if (text.size() > capacity_ - size_) {
        const size_t larger = std::max(size_ + text.size(), 2 * capacity_);
        char* moved = arena.Allocate(larger, 1);
        std::copy_n(data_, size_, moved);
        data_ = moved;
        capacity_ = larger;
    }
    CopyText(data_ + size_, text);
    size_ += text.size();
}

}  // namespace tabrin
