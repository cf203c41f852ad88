#include "frame_bits.h"

#include <algorithm>

namespace tabrin_tool {

namespace {

constexpr FrameBit kNowhere = ~FrameBit{0};

// Motorola bits run from bit 7 of a byte to its bit 0 and on into bit 7 of the next byte.
FrameBit NextLowerBit(FrameBit bit) {
    return bit % kBitsInByte == 0 ? bit + FrameBit{2} * kBitsInByte - 1 : bit - 1;
}

}  // namespace

std::vector<FrameBit> BitsOf(const FrameSignal& signal) {
    const FrameBit limit = FrameBit{kLargestFrame} * kBitsInByte;
    std::vector<FrameBit> bits;
    FrameBit bit = signal.startBit;
    for (std::uint32_t i = 0; i < signal.length && bit < limit; ++i) {
        bits.push_back(bit);
        bit = signal.bigEndian ? NextLowerBit(bit) : bit + 1;
    }
    if (signal.bigEndian) {
        std::reverse(bits.begin(), bits.end());
    }
    return bits;
}

FrameBits::FrameBits(std::uint32_t bytes, const std::vector<FrameSignal>& signals)
    : bytes_(std::min(bytes, kLargestFrame)) {
    for (Byte& byte : bytes_) {
        byte.fill(kUnused);
    }
    for (std::size_t i = 0; i < signals.size(); ++i) {
        AddSignal(i, signals[i]);
    }
}

void FrameBits::AddSignal(std::size_t index, const FrameSignal& signal) {
    const std::vector<FrameBit> bits = BitsOf(signal);
    std::uint64_t inside = 0;
    for (const FrameBit bit : bits) {
        if (bit / kBitsInByte < bytes_.size()) {
            AddBit(bit, index);
            ++inside;
        }
    }
    outside_.push_back(signal.length - inside);
    // The far end of a signal that is longer than any frame is nowhere.
    const bool whole = bits.size() == signal.length && !bits.empty();
    most_.push_back(whole || (signal.bigEndian && !bits.empty()) ? bits.back() : kNowhere);
    least_.push_back(whole || (!signal.bigEndian && !bits.empty()) ? bits.front() : kNowhere);
}

void FrameBits::AddBit(FrameBit bit, std::size_t signal) {
    int& cell = bytes_[bit / kBitsInByte][bit % kBitsInByte];
    std::vector<std::size_t> owners;
    if (cell != kUnused) {
        owners = regions_[static_cast<std::size_t>(cell)].signals;
    }
    owners.push_back(signal);
    cell = RegionOf(owners);
}

// The latest regions are the likely ones.
int FrameBits::RegionOf(const std::vector<std::size_t>& signals) {
    const auto found = std::find_if(regions_.rbegin(), regions_.rend(),
                                    [&](const Region& region) { return region.signals == signals; });
    if (found != regions_.rend()) {
        return static_cast<int>(regions_.rend() - found) - 1;
    }
    regions_.push_back({signals});
    return static_cast<int>(regions_.size()) - 1;
}

bool FrameBits::IsMost(FrameBit bit) const {
    return std::find(most_.begin(), most_.end(), bit) != most_.end();
}

bool FrameBits::IsLeast(FrameBit bit) const {
    return std::find(least_.begin(), least_.end(), bit) != least_.end();
}

}  // namespace tabrin_tool
