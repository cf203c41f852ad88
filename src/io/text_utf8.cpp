#include "io/text_utf8.h"

#include <utf8.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>

#include "io/byte_block.h"
#include "io/short_text.h"

namespace tabrin {

namespace {

size_t SkipAscii(std::string_view text, size_t pos) {
    while (text.size() - pos >= ByteBlock::kSize && ByteBlock(text.data() + pos).BeyondAscii() == 0) {
        pos += ByteBlock::kSize;
    }
    while (pos < text.size() && static_cast<unsigned char>(text[pos]) < 0x80) {
        ++pos;
    }
    return pos;
}

// What the first byte announces. Sequences are checked one by one, so that repairing a text looks at each byte a
// constant number of times however broken it is.
size_t SequenceLength(char first) {
    const auto lead = static_cast<unsigned char>(first);
    if (lead >= 0xF0) {
        return 4;
    }
    return lead >= 0xE0 ? 3 : 2;
}

// Where a cut in front of a split sequence may lie: the byte there must be able to lead a sequence at least as long as
// the piece that is left of it, and everything in front of it must be valid. The bytes behind it are not looked at.
bool BackOff(std::string_view text, size_t firstInvalid, size_t& length) {
    constexpr unsigned char kLeads[] = {0xC0, 0xE0, 0xF0};
    for (size_t back = 1; back <= std::size(kLeads) && back <= text.size(); ++back) {
        const size_t candidate = text.size() - back;
        if (static_cast<unsigned char>(text[candidate]) >= kLeads[back - 1] && candidate <= firstInvalid) {
            length = candidate;
            return true;
        }
    }
    return false;
}

}  // namespace

bool IsAscii(std::string_view text) {
    if (text.size() <= kLongestShortText) {
        return ShortText(text).Marks([](const ByteBlock& block) { return block.BeyondAscii(); }) == 0;
    }
    return SkipAscii(text, 0) == text.size();
}

size_t FirstInvalidUtf8(std::string_view text) {
    size_t pos = SkipAscii(text, 0);
    while (pos < text.size()) {
        const std::string_view sequence = text.substr(pos, SequenceLength(text[pos]));
        if (utf8::find_invalid(sequence.begin(), sequence.end()) != sequence.end()) {
            return pos;
        }
        pos = SkipAscii(text, pos + sequence.size());
    }
    return text.size();
}

bool Utf8SafeLength(std::string_view text, size_t size, size_t& length) {
    length = 0;
    if (size < 2) {
        return false;
    }
    if (text.size() < size - 1) {
        length = text.size();
        return true;
    }
    text = text.substr(0, size - 1);
    const size_t firstInvalid = FirstInvalidUtf8(text);
    if (firstInvalid == text.size()) {
        length = text.size();
        return true;
    }
    return BackOff(text, firstInvalid, length);
}

bool CopyToBuffer(char* buffer, std::string_view text, size_t size) {
    size_t length = 0;
    const bool fits = Utf8SafeLength(text, size, length);
    if (size != 0) {
        std::copy_n(text.data(), length, buffer);
        buffer[length] = '\0';
    }
    return fits;
}

bool StringFromBuffer(std::string& text, const char* buffer, size_t size) {
    text.clear();
    if (size == 0) {
        return true;
    }
    const auto* end = static_cast<const char*>(std::memchr(buffer, '\0', size));
    if (end == buffer) {
        return true;
    }
    const std::string_view taken(buffer, end != nullptr ? static_cast<size_t>(end - buffer) : size - 1);
    size_t length = 0;
    if (!Utf8SafeLength(taken, taken.size() + 1, length)) {
        return false;
    }
    text.assign(taken, 0, length);
    return true;
}

std::u16string Utf8ToWide(std::string_view text) {
    std::u16string wide;
    utf8::utf8to16(text.begin(), text.end(), std::back_inserter(wide));
    return wide;
}

void RepairUtf8(char* text, size_t size) {
    size_t done = 0;
    for (;;) {
        done += FirstInvalidUtf8({text + done, size - done});
        if (done == size) {
            return;
        }
        text[done++] = '_';
    }
}

}  // namespace tabrin
