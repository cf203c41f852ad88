// A number that stands for a text in a table.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "io/text_head.h"

namespace tabrin {

namespace text_hash {

// Each step is a bijection of the number, so that what differs once stays different.
inline uint64_t Mixed(uint64_t number) {
    const uint64_t product = number * 0x9E3779B97F4A7C15;
    return product ^ (product >> 32U);
}

}  // namespace text_hash

// The same for equal texts, and different ones for others as a rule, wherever they differ. Names have eight to thirty-two
// characters nearly always: those take the same few steps, whatever their length.
inline uint64_t TextHash(std::string_view text) {
    using text_hash::Mixed;
    constexpr size_t kWord = sizeof(uint64_t);
    uint64_t hash = Mixed(text.size());
    if (text.size() < kWord) {
        return Mixed(hash ^ HeadOf(text));
    }
    for (; text.size() > 4 * kWord; text.remove_prefix(kWord)) {
        hash = Mixed(hash ^ HeadAt(text.data()));
    }
    // Four words that are all of the rest. The shorter it is, the more they overlap.
    const size_t last = text.size() - kWord;
    for (const size_t place : {size_t{0}, std::min(kWord, last), last - std::min(kWord, last), last}) {
        hash = Mixed(hash ^ HeadAt(text.data() + place));
    }
    return hash;
}

}  // namespace tabrin
