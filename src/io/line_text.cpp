#include "io/line_text.h"

#include <algorithm>

namespace tabrin {

void LineText::Grow(size_t size) {
    constexpr size_t kUsualLine = 256;
    const size_t larger = std::max({size_ + size, 2 * capacity_, kUsualLine});
    auto text = std::make_unique_for_overwrite<char[]>(larger);
    std::copy_n(text_.get(), size_, text.get());
    text_ = std::move(text);
    capacity_ = larger;
}

}  // namespace tabrin
