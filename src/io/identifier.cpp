#include "io/identifier.h"

#include <utf8.h>

#include <algorithm>

#include "io/text_scan.h"

namespace tabrin {

namespace {

bool IsIdentifierChar(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || IsDigit(c) || c == '_';
}

}  // namespace

bool IsIdentifier(std::string_view text) {
    return !text.empty() && text.size() <= kLongestIdentifier && !IsDigit(text.front()) &&
           std::all_of(text.begin(), text.end(), IsIdentifierChar);
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
    if (IsIdentifier(text)) {
        return std::string(text);
    }
    std::string identifier = AsciiFold(text);
    identifier.resize(std::min(identifier.size(), kLongestIdentifier));
    if (!identifier.empty() && IsDigit(identifier.front())) {
        identifier.front() = '_';
    }
    std::replace_if(
        identifier.begin(), identifier.end(), [](char c) { return !IsIdentifierChar(c); }, '_');
    return identifier;
}

}  // namespace tabrin
