// Copies of short texts, without the call that copying takes otherwise.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

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

}  // namespace tabrin
