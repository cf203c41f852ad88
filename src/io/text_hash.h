// A number that stands for a text in a table.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace tabrin {

namespace text_hash {

// Each step is a bijection of the number, so that what differs once stays different.
inline uint64_t Mixed(uint64_t number) {
    const uint64_t product = number * 0x9E3779B97F4A7C15;
    return product ^ (product >> 32U);
}

template <typename Number>
uint64_t NumberAt(const char* text) {
    Number number = 0;
    std::memcpy(&number, text, sizeof number);
    return number;
}

// Every character of a text that is shorter than eight, some of them twice.
inline uint64_t ShortText(std::string_view text) {
    if (text.size() >= 4) {
        const char* const last = text.data() + text.size() - 4;
        return NumberAt<uint32_t>(text.data()) << 32U | NumberAt<uint32_t>(last);
    }
    if (text.empty()) {
        return 0;
    }
    const auto at = [&](size_t index) { return static_cast<uint64_t>(static_cast<unsigned char>(text[index])); };
    return at(0) << 16U | at(text.size() / 2) << 8U | at(text.size() - 1);
}

}  // namespace text_hash

// The same for equal texts, and different ones for others as a rule, wherever they differ. Names have eight to thirty-two
// characters nearly always: those take the same few steps, whatever their length.
inline uint64_t TextHash(std::string_view text) {
    using text_hash::Mixed;
    using text_hash::NumberAt;
    constexpr size_t kWord = sizeof(uint64_t);
    uint64_t hash = Mixed(text.size());
    if (text.size() < kWord) {
        return Mixed(hash ^ text_hash::ShortText(text));
    }
    for (; text.size() > 4 * kWord; text.remove_prefix(kWord)) {
        hash = Mixed(hash ^ NumberAt<uint64_t>(text.data()));
    }
    // Four words that are all of the rest. The shorter it is, the more they overlap.
    const size_t last = text.size() - kWord;
    for (const size_t place : {size_t{0}, std::min(kWord, last), last - std::min(kWord, last), last}) {
        hash = Mixed(hash ^ NumberAt<uint64_t>(text.data() + place));
    }
    return hash;
}

}  // namespace tabrin
