#include "io/identifier.h"

#include <utf8.h>

#include <algorithm>

#include "io/char_set.h"
#include "io/short_text.h"
#include "io/text_scan.h"

namespace tabrin {

namespace {

constexpr CharSet kIdentifierChars("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_");

// As much of the text as can get into an identifier: no character has more than four bytes. A long text is not looked
// at beyond that, since one text can become the identifier of many objects.
std::string_view UsefulFront(std::string_view text) {
    constexpr size_t kMostBytes = 4 * kLongestIdentifier;
    if (text.size() <= kMostBytes) {
        return text;
    }
    size_t size = kMostBytes;
    const auto isInsideCharacter = [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80; };
    while (size > 0 && isInsideCharacter(text[size])) {
        --size;
    }
    return text.substr(0, size);
}

}  // namespace

bool IsIdentifier(std::string_view text) {
    if (text.empty() || text.size() > kLongestIdentifier || IsDigit(text.front())) {
        return false;
    }
    static_assert(kLongestIdentifier <= kLongestShortText);
    return ShortText(text).Marks(MarkIdentifierChars) == EveryMark(text.size());
}

std::string AsciiFold(std::string_view text) {
    std::string folded;
    folded.reserve(text.size());
    const char* position = text.data();
    const char* end = position + text.size();
    while (position != end) {
        const char first = *position;
        folded += utf8::next(position, end) < 0x80 ? first : '_';
    }
    return folded;
}

std::string MakeIdentifier(std::string_view text) {
    std::string identifier;
    AppendIdentifier(identifier, text);
    return identifier;
}

void AppendIdentifier(std::string& out, std::string_view text) {
    if (text.empty() || IsIdentifier(text)) {
        out += text;
        return;
    }
    std::string identifier = AsciiFold(UsefulFront(text));
    identifier.resize(std::min(identifier.size(), kLongestIdentifier));
    if (IsDigit(identifier.front())) {
        identifier.front() = '_';
    }
    std::replace_if(
        identifier.begin(), identifier.end(), [](char c) { return !kIdentifierChars.Has(c); }, '_');
    out += identifier;
}

}  // namespace tabrin
