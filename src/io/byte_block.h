// Sixteen characters looked at in one go. The answers have one bit for each, that of the first character lowest.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__) || defined(_M_X64)
#define TABRIN_HAS_SSE2
#include <emmintrin.h>
#endif

namespace tabrin {

// What a block answers when every byte is meant.
inline constexpr uint32_t kEveryByte = 0xFFFF;

// For processors without the other one, and what the tests hold that one against.
class PlainByteBlock {
public:
    static constexpr size_t kSize = 16;

    explicit PlainByteBlock(const char* text) { std::memcpy(bytes_, text, kSize); }

    // The bytes from `least` to `most`, which count as unsigned.
    [[nodiscard]] uint32_t Between(char least, char most) const {
        return Marks([first = static_cast<unsigned char>(least), last = static_cast<unsigned char>(most)](
                         unsigned char byte) { return first <= byte && byte <= last; });
    }
    [[nodiscard]] uint32_t BeyondAscii() const {
        return Marks([](unsigned char byte) { return byte >= 0x80; });
    }

private:
    template <typename Test>
    [[nodiscard]] uint32_t Marks(Test test) const {
        uint32_t marks = 0;
        for (size_t i = 0; i < kSize; ++i) {
            marks |= static_cast<uint32_t>(test(bytes_[i])) << i;
        }
        return marks;
    }

    unsigned char bytes_[kSize];
};

#ifdef TABRIN_HAS_SSE2
// Every 64-bit processor of the x86 family has these instructions.
class SseByteBlock {
public:
    static constexpr size_t kSize = PlainByteBlock::kSize;

    explicit SseByteBlock(const char* text) : bytes_(_mm_loadu_si128(reinterpret_cast<const __m128i*>(text))) {}

    [[nodiscard]] uint32_t Between(char least, char most) const {
        const __m128i shifted = _mm_sub_epi8(bytes_, _mm_set1_epi8(least));
        const __m128i width = _mm_set1_epi8(static_cast<char>(most - least));
        return Marks(_mm_cmpeq_epi8(_mm_min_epu8(shifted, width), shifted));
    }
    [[nodiscard]] uint32_t BeyondAscii() const { return Marks(bytes_); }

private:
    static uint32_t Marks(__m128i highBits) { return static_cast<uint32_t>(_mm_movemask_epi8(highBits)); }

    __m128i bytes_;
};

using ByteBlock = SseByteBlock;
#else
using ByteBlock = PlainByteBlock;
#endif

// The index of the first byte that has a mark; there must be one.
constexpr size_t FirstMarked(uint32_t marks) {
    return static_cast<size_t>(std::countr_zero(marks));
}

}  // namespace tabrin
