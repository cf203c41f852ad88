// Text fields of the interface's records.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "io/text_utf8.h"

namespace tabrin {

template <size_t Size>
bool FillField(char (&field)[Size], std::string_view text) {
    return CopyToBuffer(field, text, Size);
}

template <size_t Size>
bool TakeField(std::string& text, const char (&field)[Size]) {
    return StringFromBuffer(text, field, Size);
}

}  // namespace tabrin
