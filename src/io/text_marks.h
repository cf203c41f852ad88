// Where a block of a file holds something that reading has to look at.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace tabrin {

// One bit for each byte of the block. Marked are line ends and all other bytes that are not printable ASCII, and the
// spaces that may have a keyword in front: in a line of a hundred bytes hardly more than the blank behind its keyword
// and its end. All that is done to lines starts from these marks, so that nothing looks at the plain bytes again.
class TextMarks {
public:
    static constexpr size_t kMostBytes = size_t{64} << 10;

    // Marks the bytes of the next block, which continues the one before.
    void Set(const char* block, size_t size);

    // The next mark not handed out yet, the size of the block behind the last one.
    size_t Next() {
        while (bits_ == 0) {
            bits_ = words_[++word_];
        }
        const size_t place = word_ * kBitsOfWord + static_cast<size_t>(std::countr_zero(bits_));
        if (place != size_) {
            bits_ &= bits_ - 1;
        }
        return place;
    }

    // Forgets everything, for the next file.
    void Reset();

private:
    static constexpr size_t kBitsOfWord = 64;

    uint64_t WordOf(const char* text);
    void SetLastWord(const char* rest, size_t size);

    // The bit behind that of the last byte is always set.
    std::array<uint64_t, kMostBytes / kBitsOfWord + 1> words_;
    size_t size_ = 0;
    size_t word_ = 0;  // that Next takes the marks of
    uint64_t bits_ = 1;
    uint64_t carry_ = 0;  // 1: the byte in front may end a keyword
};

}  // namespace tabrin
