// A line being composed for a file.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

#include "io/copy_text.h"
#include "io/text_number.h"

namespace tabrin {

// Composing takes most of the time that writing leaves to this library. A string would serve, but asks for room in a
// call for each of the two dozen pieces of a line.
class LineText {
public:
    void Clear() { size_ = 0; }

    LineText& Append(std::string_view text) {
        EnsureRoom(text.size());
        CopyText(text_.get() + size_, text);
        size_ += text.size();
        return *this;
    }
    LineText& Append(char c) {
        EnsureRoom(1);
        text_[size_++] = c;
        return *this;
    }
    template <typename Number>
    LineText& AppendNumber(Number value) {
        EnsureRoom(kLongestNumber);
        size_ = static_cast<size_t>(FormatNumber(text_.get() + size_, value) - text_.get());
        return *this;
    }

    [[nodiscard]] std::string_view View() const { return {text_.get(), size_}; }

private:
    void EnsureRoom(size_t size) {
        if (size > capacity_ - size_) {
            Grow(size);
        }
    }
    void Grow(size_t size);

    std::unique_ptr<char[]> text_;
    size_t size_ = 0;
    size_t capacity_ = 0;
};

}  // namespace tabrin
