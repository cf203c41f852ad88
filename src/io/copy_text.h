// Copies of short texts, without the call that copying takes otherwise.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "io/byte_block.h"

namespace tabrin {

// Copies a text to memory that it does not overlap with.
inline void CopyText(char* to, std::string_view text) {
    const char* const from = text.data();
    const size_t size = text.size();
    const auto copy = [from, to](size_t place, auto piece) {
        std::memcpy(&piece, from + place, sizeof piece);
        // A text that is not empty has room to go to, which the analyzer does not see everywhere.
        std::memcpy(to + place, &piece, sizeof piece);  // NOLINT(clang-analyzer-core.NonNullParamChecker)
    };
    if (size > 4 * sizeof(uint64_t)) {
        std::memcpy(to, from, size);
    } else if (size >= sizeof(uint64_t)) {
        // Pieces that overlap where the text is shorter than four of them: names of all lengths take the same way.
        const size_t last = size - sizeof(uint64_t);
        copy(0, uint64_t{});
        copy(std::min(sizeof(uint64_t), last), uint64_t{});
        copy(std::min(2 * sizeof(uint64_t), last), uint64_t{});
        copy(last, uint64_t{});
    } else if (size >= sizeof(uint32_t)) {
        copy(0, uint32_t{});
        copy(size - sizeof(uint32_t), uint32_t{});
    } else if (size != 0) {
        copy(0, char{});
        copy(size / 2, char{});
        copy(size - 1, char{});
    }
}

// The longest text that CopyShortText takes.
inline constexpr size_t kLongestShortCopy = 2 * ByteBlock::kSize - 1;

// Copies a text and a NUL in the same way for every length up to the longest, so that the processor has nothing to guess.
// For that it reads 32 bytes from the begin of the text on, of which those behind the text come to nothing, and writes
// all 32 bytes of the target, those behind the NUL as they were. Both must be there.
inline void CopyShortText(char* to, std::string_view text) {
// The address sanitizer is to see what is wrong with the text itself.
#if defined(TABRIN_HAS_SSE2) && !defined(TABRIN_SANITIZE)
    // As many ones as the text has bytes, and then zeros, are found that many bytes in front of the middle.
    static constexpr unsigned char kOnesAndZeros[4 * ByteBlock::kSize] = {
        0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF,
        0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};
    const unsigned char* const forText = kOnesAndZeros + 2 * ByteBlock::kSize - text.size();
    const unsigned char* const forTextAndNul = forText - 1;
    // An empty text may be nowhere.
    const char* const from = text.empty() ? to : text.data();
    for (size_t i = 0; i < 2 * ByteBlock::kSize; i += ByteBlock::kSize) {
        auto* const target = reinterpret_cast<__m128i*>(to + i);
        const __m128i read = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from + i));
        const __m128i isText = _mm_loadu_si128(reinterpret_cast<const __m128i*>(forText + i));
        const __m128i isTextOrNul = _mm_loadu_si128(reinterpret_cast<const __m128i*>(forTextAndNul + i));
        const __m128i behind = _mm_andnot_si128(isTextOrNul, _mm_loadu_si128(target));
        _mm_storeu_si128(target, _mm_or_si128(_mm_and_si128(isText, read), behind));
    }
#else
    CopyText(to, text);
    to[text.size()] = '\0';
#endif
}

}  // namespace tabrin
