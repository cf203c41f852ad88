// Eight characters looked at in one go.
//
// The tests answer with the high bit of each byte. Where they subtract, a byte that is met hands a carry to the next one:
// a mark can be raised wrongly behind one that is right, never in front of it, and none is missed.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace tabrin {

constexpr uint64_t EveryByte(unsigned char byte) {
    return byte * uint64_t{0x0101010101010101};
}

inline constexpr uint64_t kHighBits = EveryByte(0x80);

inline uint64_t LoadBytes(const char* text) {
    uint64_t block = 0;
    std::memcpy(&block, text, sizeof block);
    return block;
}

// The bytes beyond ASCII.
constexpr uint64_t BytesBeyondAscii(uint64_t block) {
    return block & kHighBits;
}

// The bytes from 0 to `most`, which must be ASCII.
constexpr uint64_t BytesUpTo(uint64_t block, char most) {
    return (block - EveryByte(static_cast<unsigned char>(most + 1))) & ~block & kHighBits;
}

constexpr uint64_t BytesEqual(uint64_t block, char c) {
    return BytesUpTo(block ^ EveryByte(static_cast<unsigned char>(c)), 0);
}

// The index of the first byte that has a mark; there must be one.
static_assert(std::endian::native == std::endian::little);
constexpr size_t FirstMarked(uint64_t marks) {
    return static_cast<size_t>(std::countr_zero(marks)) / 8;
}

}  // namespace tabrin
