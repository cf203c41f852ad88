// The nodes that receive a signal.
#pragma once

#include <string_view>

#include "model/arena.h"

namespace tabrin {

// A sequence of identifiers, kept joined by ",": no identifier holds one, and it is the form that callers and files
// see.
class ReceiverList {
public:
    // Takes the pieces of a text between its commas. Blanks around a piece go, empty pieces are left out, and the rest
    // becomes an identifier, so that "ECU1 ECU2" is the one receiver ECU1_ECU2. Throws utf8::exception on text that is
    // not UTF-8.
    void Assign(Arena& arena, std::string_view text);
    void Clear() { joined_ = {}; }

    [[nodiscard]] bool IsEmpty() const { return joined_.empty(); }
    [[nodiscard]] std::string_view Joined() const { return joined_; }

    // Calls `use` with each receiver in order.
    template <typename Use>
    void ForEach(Use use) const {
        std::string_view rest = joined_;
        while (!rest.empty()) {
            const size_t comma = rest.find(',');
            use(rest.substr(0, comma));
            rest = comma == std::string_view::npos ? std::string_view() : rest.substr(comma + 1);
        }
    }

private:
    std::string_view joined_;
};

}  // namespace tabrin
