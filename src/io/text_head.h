// The front of a text as one number.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <type_traits>

namespace tabrin {

// As on all systems that the library is for: else the first character would come out highest.
static_assert(std::endian::native == std::endian::little);

// Eight characters, the first one lowest.
inline uint64_t HeadAt(const char* text) {
    uint64_t head = 0;
    std::memcpy(&head, text, sizeof head);
    return head;
}

// The first eight characters of a text in that order; a shorter one is filled up with zeros.
constexpr uint64_t HeadOf(std::string_view text) {
    if (std::is_constant_evaluated()) {  // never run: evaluated in compiling
        uint64_t head = 0;
        for (size_t i = 0; i < text.size() && i < sizeof head; ++i) {
            head |= uint64_t{static_cast<unsigned char>(text[i])} << (8 * i);
        }
        return head;
    }
    const auto load = [text](size_t place, auto number) -> uint64_t {
        std::memcpy(&number, text.data() + place, sizeof number);
        return number;
    };
    const size_t size = text.size();
    if (size >= 8) {
        return load(0, uint64_t{});
    }
    // Pieces that overlap say the same where they do.
    if (size >= 4) {
        return load(0, uint32_t{}) | load(size - 4, uint32_t{}) << (8 * (size - 4));
    }
    if (size == 0) {
        return 0;
    }
    const size_t middle = size / 2;
    return load(0, uint8_t{}) | load(middle, uint8_t{}) << (8 * middle) | load(size - 1, uint8_t{}) << (8 * (size - 1));
}

}  // namespace tabrin
