// Texts of at most 32 characters, as most names are, looked at in one go: how long they are makes no difference, so that
// the processor has nothing to guess.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "io/byte_block.h"
#include "io/text_head.h"

namespace tabrin {

inline constexpr size_t kLongestShortText = 2 * ByteBlock::kSize;

// The marks that every character of a text of that size has.
constexpr uint64_t EveryMark(size_t size) {
    return (uint64_t{1} << size) - 1;
}

class ShortText {
public:
    explicit ShortText(std::string_view text)
        : lastBegin_(text.size() > ByteBlock::kSize ? text.size() - ByteBlock::kSize : 0),
          first_(FirstBlock(text)),
          last_(lastBegin_ != 0 ? ByteBlock(text.data() + lastBegin_) : first_) {}

    // The marks that `test` gives to the characters, the first one lowest. Of a block it answers the marks of its
    // characters; those of NUL must be 0.
    template <typename Test>
    [[nodiscard]] uint64_t Marks(Test test) const {
        return test(first_) | uint64_t{test(last_)} << lastBegin_;
    }

private:
    static ByteBlock FirstBlock(std::string_view text) {
        constexpr size_t kHalf = ByteBlock::kSize / 2;
        return text.size() >= ByteBlock::kSize
                   ? ByteBlock(text.data())
                   : ByteBlock(HeadOf(text), HeadOf(text.substr(std::min(kHalf, text.size()))));
    }

    // Where the text is longer than one block, a last one overlaps the first and says the same there.
    size_t lastBegin_;
    ByteBlock first_;
    ByteBlock last_;
};

// The first run of characters that have a mark; there must be one.
inline std::string_view FirstMarkedRun(std::string_view text, uint64_t marks) {
    const auto begin = static_cast<size_t>(std::countr_zero(marks));
    return text.substr(begin, static_cast<size_t>(std::countr_one(marks >> begin)));
}

inline ByteBlock::Marks MarkBlanks(const ByteBlock& block) {
    return block.Equal(' ') | block.Between('\t', '\r');
}

inline ByteBlock::Marks MarkDigits(const ByteBlock& block) {
    return block.Between('0', '9');
}

inline ByteBlock::Marks MarkIdentifierChars(const ByteBlock& block) {
    return block.Letters() | block.Equal('_') | MarkDigits(block);
}

}  // namespace tabrin
