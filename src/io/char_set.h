// A set of characters that answers in one step.
#pragma once

#include <array>
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

private:
    std::array<bool, 256> has_{};
};

}  // namespace tabrin
