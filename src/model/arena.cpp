#include "model/arena.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace tabrin {

namespace {

// Small databases take little; from here on the blocks are of one size, which the allocator hands out again after
// Clear.
constexpr size_t kFirstBlock = size_t{4} << 10;
constexpr size_t kLargestBlock = size_t{64} << 10;

// Under the address sanitizer each piece is a block of its own, so that it is seen when one is overrun.
#ifdef TABRIN_SANITIZE
constexpr bool kSharesBlocks = false;
#else
constexpr bool kSharesBlocks = true;
#endif

}  // namespace

std::string_view Arena::Keep(std::string_view text) {
    if (text.empty()) {
        return {};
    }
    char* copy = Allocate(text.size(), 1);
    std::memcpy(copy, text.data(), text.size());
    return {copy, text.size()};
}

// Blocks come aligned for every fundamental type. A large piece gets a block of its own, and the current one stays in
// use: never more than a quarter of a block is lost.
char* Arena::AllocateInNewBlock(size_t size) {
    const size_t blockSize = std::max(nextBlockSize_, kFirstBlock);
    const bool isLarge = !kSharesBlocks || size > blockSize / 4;
    char* piece = blocks_.emplace_back(std::make_unique_for_overwrite<char[]>(isLarge ? size : blockSize)).get();
    if (!isLarge) {
        free_ = piece + size;
        end_ = piece + blockSize;
        nextBlockSize_ = std::min(2 * blockSize, kLargestBlock);
    }
    return piece;
}

void Arena::Rewind(const Mark& mark) {
    if (mark.numBlocks == 0) {
        // A fresh one, not an emptied one, so that its memory goes back too.
        blocks_ = decltype(blocks_)();
        nextBlockSize_ = 0;
    }
    blocks_.resize(mark.numBlocks);
    free_ = mark.free;
    end_ = mark.end;
}

void GrowingText::Append(Arena& arena, std::string_view text) {
    if (text.empty()) {
        return;
    }
    if (text.size() > capacity_ - size_) {
        const size_t larger = std::max(size_ + text.size(), 2 * capacity_);
        char* moved = arena.Allocate(larger, 1);
        std::copy_n(data_, size_, moved);
        data_ = moved;
        capacity_ = larger;
    }
    std::copy_n(text.data(), text.size(), data_ + size_);
    size_ += text.size();
}

}  // namespace tabrin
