// Copies of short texts, without the call that copying takes otherwise.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace tabrin {

// Copies a text to memory that it does not overlap with.
inline void CopyText(char* to, std::string_view text) {
    const char* const from = text.data();
    const size_t size = text.size();
    // Two pieces of one size, which overlap in the middle.
    const auto copyEnds = [&](auto piece) {
        auto front = piece;
        std::memcpy(&front, from, sizeof front);
        std::memcpy(&piece, from + size - sizeof piece, sizeof piece);
        std::memcpy(to, &front, sizeof front);
        std::memcpy(to + size - sizeof piece, &piece, sizeof piece);
    };
    struct Sixteen {
        uint64_t halves[2];
    };
    if (size > 2 * sizeof(Sixteen)) {
        std::memcpy(to, from, size);
    } else if (size >= sizeof(Sixteen)) {
        copyEnds(Sixteen{});
    } else if (size >= sizeof(uint64_t)) {
        copyEnds(uint64_t{});
    } else if (size >= sizeof(uint32_t)) {
        copyEnds(uint32_t{});
    } else if (size != 0) {
        to[size - 1] = from[size - 1];
        to[size / 2] = from[size / 2];
        to[0] = from[0];
    }
}

}  // namespace tabrin
