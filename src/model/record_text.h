// Text fields of the interface's records.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "io/copy_text.h"
#include "io/text_utf8.h"

namespace tabrin {

template <size_t Size>
bool FillField(char (&field)[Size], std::string_view text) {
    // Nearly every text has room to spare.
    if (text.size() < Size - 1) {
        CopyText(field, text);
        field[text.size()] = '\0';
        return true;
    }
    return CopyToBuffer(field, text, Size);
}

// The same for texts of lengths that are hard to guess and seldom above 31. The text must be in an arena: it is read
// beyond its end.
template <size_t Size>
bool FillShortField(char (&field)[Size], std::string_view text) {
    static_assert(Size > kLongestShortCopy);
    if (text.size() <= kLongestShortCopy) {
        CopyShortText(field, text);
        return true;
    }
    return FillField(field, text);
}

template <size_t Size>
bool TakeField(std::string& text, const char (&field)[Size]) {
    return StringFromBuffer(text, field, Size);
}

}  // namespace tabrin
