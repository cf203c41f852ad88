// The codes of what failed in parsing a statement.
#pragma once

#include <cstdint>
#include <vector>

namespace tabrin {

// A sequence of at most one, as parsing ends with the first failure. It stands in the object itself, so that a signal, of
// which there are many, has nothing that would have to be destroyed.
class ParseErrors {
public:
    void Add(uint32_t code) {
        code_ = code;
        empty_ = false;
    }
    void Clear() { empty_ = true; }
    [[nodiscard]] bool IsEmpty() const { return empty_; }

    [[nodiscard]] std::vector<uint32_t> Codes() const {
        return empty_ ? std::vector<uint32_t>() : std::vector<uint32_t>{code_};
    }

private:
    uint32_t code_ = 0;
    bool empty_ = true;
};

}  // namespace tabrin
