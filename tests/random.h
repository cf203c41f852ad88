// What a test chooses by chance.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>

namespace tabrin {

// The same numbers in every run and on every platform, unlike the distributions of the standard library.
class Random {
public:
    explicit Random(uint64_t seed) : state_(seed) {}

    // From 0 to `count` - 1.
    size_t Below(size_t count) {
        state_ = state_ * 6364136223846793005U + 1442695040888963407U;
        return static_cast<size_t>((state_ >> 33) % count);
    }

    bool OneIn(size_t count) { return Below(count) == 0; }

    template <typename Choice>
    std::string From(const Choice& choice) {
        return std::string(choice[Below(std::size(choice))]);
    }

private:
    uint64_t state_;
};

}  // namespace tabrin
