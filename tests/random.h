// What a test chooses by chance, the same in every run.
#pragma once

#include <cstdint>
#include <iterator>
#include <string>

namespace tabrin {

// The same numbers on every platform, unlike the distributions of the standard library.
class Random {
public:
    explicit Random(uint32_t seed) : state_(seed) {}

    uint32_t Below(uint32_t limit) {
        state_ = state_ * 1664525U + 1013904223U;
        return (state_ >> 8) % limit;
    }

    bool OneIn(uint32_t count) { return Below(count) == 0; }

    template <typename Choice>
    std::string From(const Choice& choice) {
        return std::string(choice[Below(static_cast<uint32_t>(std::size(choice)))]);
    }

private:
    uint32_t state_;
};

}  // namespace tabrin
