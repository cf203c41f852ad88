#include "io/text_marks.h"

#include <algorithm>

#include "io/byte_block.h"
#include "io/dbc_keywords.h"

namespace tabrin {

void TextMarks::Set(const char* block, size_t size) {
    size_ = size;
    const uint64_t carried = carry_;
    const size_t numWhole = size / kBitsOfWord;
    for (size_t i = 0; i < numWhole; ++i) {
        words_[i] = WordOf(block + i * kBitsOfWord);
    }
    const size_t done = numWhole * kBitsOfWord;
    SetLastWord(block + done, size - done);
    if (size == 0) {
        carry_ = carried;
    } else {
        carry_ = MayEndKeyword(block[size - 1]) ? 1 : 0;
    }
    word_ = 0;
    bits_ = words_[0];
}

void TextMarks::Reset() {
    size_ = word_ = 0;
    bits_ = 1;
    carry_ = 0;
}

// The keywords end in the characters of MayEndKeyword.
uint64_t TextMarks::WordOf(const char* text) {
    uint64_t plain = 0;
    uint64_t spaces = 0;
    uint64_t keywordEnds = 0;
    for (size_t i = 0; i < kBitsOfWord; i += ByteBlock::kSize) {
        const ByteBlock bytes(text + i);
        plain |= uint64_t{bytes.Between(' ', '~')} << i;
        spaces |= uint64_t{bytes.Equal(' ')} << i;
        keywordEnds |= uint64_t{bytes.Equal('_') | bytes.Equal('N') | bytes.Equal('R')} << i;
    }
    const uint64_t behindKeywords = (keywordEnds << 1) | carry_;
    carry_ = keywordEnds >> (kBitsOfWord - 1);
    return ~plain | (spaces & behindKeywords);
}

// Filled up with what has no marks, and the bit behind.
void TextMarks::SetLastWord(const char* rest, size_t size) {
    std::array<char, kBitsOfWord> padded;
    padded.fill('a');
    std::copy_n(rest, size, padded.begin());
    words_[size_ / kBitsOfWord] = WordOf(padded.data()) | (uint64_t{1} << size);
}

}  // namespace tabrin
