#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "frame_picture.h"

namespace tabrin_tool {

// A bit of a frame: byte * 8 + number of the bit in its byte, 0 being the least significant.
using FrameBit = std::uint64_t;

inline constexpr int kBitsInByte = 8;

// Frames beyond this are not drawn: no transport on CAN carries more.
inline constexpr std::uint32_t kLargestFrame = 4096;

// The bits of a signal from its least significant one upwards, as far as they can lie in a frame that is drawn. A
// signal that goes on in front of the frame ends there.
std::vector<FrameBit> BitsOf(const FrameSignal& signal);

// Which signals the bits of a frame belong to.
class FrameBits {
public:
    // A set of signals that share bits; most sets are of one signal.
    struct Region {
        std::vector<std::size_t> signals;
    };

    static constexpr int kUnused = -1;

    using Byte = std::array<int, kBitsInByte>;  // by bit: index of a region or kUnused

    FrameBits(std::uint32_t bytes, const std::vector<FrameSignal>& signals);

    const std::vector<Byte>& Bytes() const { return bytes_; }
    const std::vector<Region>& Regions() const { return regions_; }

    // Whether the bit is a signal's most or least significant one, and nobody else's.
    bool IsMost(FrameBit bit) const;
    bool IsLeast(FrameBit bit) const;

    // Bits of each signal that lie outside of the frame.
    const std::vector<std::uint64_t>& OutsideBits() const { return outside_; }

private:
    void AddSignal(std::size_t index, const FrameSignal& signal);
    void AddBit(FrameBit bit, std::size_t signal);
    int RegionOf(const std::vector<std::size_t>& signals);

    std::vector<Byte> bytes_;
    std::vector<Region> regions_;
    std::vector<FrameBit> most_;   // by signal
    std::vector<FrameBit> least_;  // by signal
    std::vector<std::uint64_t> outside_;
};

}  // namespace tabrin_tool
