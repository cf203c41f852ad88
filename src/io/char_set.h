// A set of characters that answers in one step.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tabrin {

class CharSet {
public:
    constexpr explicit CharSet(std::string_view members) {
        for (const char member : members) {
            has_[static_cast<unsigned char>(member)] = true;
        }
    }

    [[nodiscard]] constexpr bool Has(char c) const { return has_[static_cast<unsigned char>(c)]; }

    // The members among up to 64 characters: one bit for each, that of the first character lowest.
    [[nodiscard]] constexpr uint64_t MarksOf(std::string_view text) const {
        uint64_t marks = 0;
        for (size_t i = 0; i < text.size(); ++i) {
            marks |= static_cast<uint64_t>(Has(text[i])) << i;
        }
        return marks;
    }

private:
    std::array<bool, 256> has_{};
};

}  // namespace tabrin
