// Sixteen characters looked at in one go. The answers have one bit for each, that of the first character lowest.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#if defined(__SSE2__) || defined(_M_X64)
#define TABRIN_HAS_SSE2
#include <emmintrin.h>
#endif

namespace tabrin {

// For processors without the other one, and what the tests hold that one against.
class PlainByteBlock {
public:
    static constexpr size_t kSize = 16;
    using Marks = uint32_t;

    explicit PlainByteBlock(const char* text) { std::memcpy(bytes_, text, kSize); }
    // Of two halves as HeadOf gives them.
    PlainByteBlock(uint64_t first, uint64_t second) {
        for (size_t i = 0; i < sizeof first; ++i) {
            bytes_[i] = static_cast<unsigned char>(first >> (8 * i));
            bytes_[sizeof first + i] = static_cast<unsigned char>(second >> (8 * i));
        }
    }

    // The bytes from `least` to `most`, which count as unsigned.
    [[nodiscard]] Marks Between(char least, char most) const {
        return MarksOf([first = static_cast<unsigned char>(least), last = static_cast<unsigned char>(most)](
                           unsigned char byte) { return first <= byte && byte <= last; });
    }
    [[nodiscard]] Marks Equal(char c) const {
        return MarksOf([wanted = static_cast<unsigned char>(c)](unsigned char byte) { return byte == wanted; });
    }
    [[nodiscard]] Marks BeyondAscii() const {
        return MarksOf([](unsigned char byte) { return byte >= 0x80; });
    }
    // The letters of ASCII.
    [[nodiscard]] Marks Letters() const {
        return MarksOf([](unsigned char byte) { return (byte | 0x20U) >= 'a' && (byte | 0x20U) <= 'z'; });
    }

private:
    template <typename Test>
    [[nodiscard]] Marks MarksOf(Test test) const {
        Marks marks = 0;
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

    // One byte for each character until the answer is complete: several together become bits in one step.
    class Marks {
    public:
        explicit Marks(__m128i highBits) : highBits_(highBits) {}

        friend Marks operator|(Marks a, Marks b) { return Marks(_mm_or_si128(a.highBits_, b.highBits_)); }
        operator uint32_t() const {  // NOLINT(google-explicit-constructor): the plain ones are numbers, too
            return static_cast<uint32_t>(_mm_movemask_epi8(highBits_));
        }

    private:
        __m128i highBits_;
    };

    explicit SseByteBlock(const char* text) : bytes_(_mm_loadu_si128(reinterpret_cast<const __m128i*>(text))) {}
    SseByteBlock(uint64_t first, uint64_t second)
        : bytes_(_mm_set_epi64x(static_cast<int64_t>(second), static_cast<int64_t>(first))) {}

    [[nodiscard]] Marks Between(char least, char most) const { return Between(bytes_, least, most); }
    [[nodiscard]] Marks Equal(char c) const { return Marks(_mm_cmpeq_epi8(bytes_, _mm_set1_epi8(c))); }
    [[nodiscard]] Marks BeyondAscii() const { return Marks(bytes_); }
    // Capital letters differ from small ones in one bit, and it makes no letters of others.
    [[nodiscard]] Marks Letters() const { return Between(_mm_or_si128(bytes_, _mm_set1_epi8(0x20)), 'a', 'z'); }

private:
    static Marks Between(__m128i bytes, char least, char most) {
        const __m128i shifted = _mm_sub_epi8(bytes, _mm_set1_epi8(least));
        const __m128i width = _mm_set1_epi8(static_cast<char>(most - least));
        return Marks(_mm_cmpeq_epi8(_mm_min_epu8(shifted, width), shifted));
    }

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

// The index behind the last byte that has a mark; 0 where there is none.
constexpr size_t BehindLastMarked(uint32_t marks) {
    return static_cast<size_t>(std::bit_width(marks));
}

// What `test` answers for the blocks of up to 64 characters, put together.
template <typename Test>
uint64_t MarksOf(std::string_view text, Test test) {
    constexpr size_t kSize = ByteBlock::kSize;
    if (text.size() < kSize) {
        char padded[kSize] = {};
        std::copy(text.begin(), text.end(), padded);
        return test(ByteBlock(padded)) & ((uint32_t{1} << text.size()) - 1);
    }
    // The last block ends with the text, whatever of it the one before has seen too.
    const size_t last = text.size() - kSize;
    uint64_t marks = uint64_t{test(ByteBlock(text.data() + last))} << last;
    for (size_t i = 0; i < last; i += kSize) {
        marks |= uint64_t{test(ByteBlock(text.data() + i))} << i;
    }
    return marks;
}

}  // namespace tabrin
