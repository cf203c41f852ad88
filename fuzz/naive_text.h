// The rules for texts once more, one character at a time and without any regard to speed, for comparison with the
// library. Nothing of the library is used here.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tabrin_fuzz {

inline bool NaiveIsBlank(char c) {
    return std::string_view(" \f\n\r\t\v").find(c) != std::string_view::npos;
}

inline bool NaiveIsDigit(char c) {
    return std::string_view("0123456789").find(c) != std::string_view::npos;
}

inline bool NaiveIsIdentifierChar(char c) {
    return NaiveIsDigit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

// The size of the well-formed UTF-8 sequence at `pos`, 0 when there is none. Decodes first and asks afterwards whether
// the shortest form was used.
inline size_t NaiveSequence(std::string_view text, size_t pos, uint32_t& codePoint) {
    const auto byteAt = [&](size_t i) { return static_cast<uint32_t>(static_cast<unsigned char>(text[i])); };
    const uint32_t lead = byteAt(pos);
    size_t size = 1;
    codePoint = lead;
    if (lead >= 0x80) {
        if ((lead & 0xE0U) == 0xC0) {
            size = 2;
            codePoint = lead & 0x1FU;
        } else if ((lead & 0xF0U) == 0xE0) {
            size = 3;
            codePoint = lead & 0x0FU;
        } else if ((lead & 0xF8U) == 0xF0) {
            size = 4;
            codePoint = lead & 0x07U;
        } else {
            return 0;
        }
    }
    for (size_t i = 1; i < size; ++i) {
        if (pos + i >= text.size() || (byteAt(pos + i) & 0xC0U) != 0x80) {
            return 0;
        }
        codePoint = codePoint * 64 + (byteAt(pos + i) & 0x3FU);
    }
    const size_t shortest = codePoint < 0x80 ? 1 : codePoint < 0x800 ? 2 : codePoint < 0x10000 ? 3 : 4;
    const bool surrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
    return size == shortest && !surrogate && codePoint <= 0x10FFFF ? size : 0;
}

inline size_t NaiveFirstInvalid(std::string_view text) {
    size_t pos = 0;
    while (pos < text.size()) {
        uint32_t codePoint = 0;
        const size_t size = NaiveSequence(text, pos, codePoint);
        if (size == 0) {
            break;
        }
        pos += size;
    }
    return pos;
}

inline bool NaiveIsUtf8(std::string_view text) {
    return NaiveFirstInvalid(text) == text.size();
}

inline std::string NaiveRepaired(std::string text) {
    for (size_t bad = NaiveFirstInvalid(text); bad != text.size(); bad = NaiveFirstInvalid(text)) {
        text[bad] = '_';
    }
    return text;
}

// Without the control characters that are no blanks.
inline std::string NaiveWithoutControls(std::string_view text) {
    std::string clean;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte == 0x7F || (byte < 0x20 && !NaiveIsBlank(c))) {
            continue;
        }
        clean += c;
    }
    return clean;
}

// The lines of a file as they reach the statements.
inline std::vector<std::string> NaiveLines(std::string_view bytes) {
    std::vector<std::string> lines;
    while (!bytes.empty()) {
        const size_t feed = bytes.find('\n');
        std::string line(bytes.substr(0, feed));
        if (feed != std::string_view::npos && !line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        lines.push_back(NaiveWithoutControls(NaiveRepaired(line)));
        bytes.remove_prefix(feed == std::string_view::npos ? bytes.size() : feed + 1);
    }
    return lines;
}

inline bool NaiveIsIdentifier(std::string_view text) {
    return !text.empty() && text.size() <= 32 && !NaiveIsDigit(text[0]) &&
           std::all_of(text.begin(), text.end(), NaiveIsIdentifierChar);
}

// One "_" for each character beyond ASCII; the text must be UTF-8.
inline std::string NaiveFolded(std::string_view text) {
    std::string folded;
    for (size_t pos = 0; pos < text.size();) {
        uint32_t codePoint = 0;
        const size_t size = NaiveSequence(text, pos, codePoint);
        folded += size == 1 ? text[pos] : '_';
        pos += std::max<size_t>(size, 1);
    }
    return folded;
}

inline std::string NaiveMadeIdentifier(std::string_view text) {
    std::string identifier = NaiveFolded(text).substr(0, 32);
    for (size_t i = 0; i < identifier.size(); ++i) {
        if (!NaiveIsIdentifierChar(identifier[i]) || (i == 0 && NaiveIsDigit(identifier[i]))) {
            identifier[i] = '_';
        }
    }
    return identifier;
}

inline std::string NaiveNormalised(std::string text) {
    for (char& c : text) {
        c = NaiveIsBlank(c) ? ' ' : c;
    }
    return text;
}

inline std::string NaiveTrimmed(std::string_view text) {
    while (!text.empty() && NaiveIsBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && NaiveIsBlank(text.back())) {
        text.remove_suffix(1);
    }
    return std::string(text);
}

// How much of the text a buffer of that size can hold.
inline bool NaiveSafeLength(std::string_view text, size_t size, size_t& length) {
    length = 0;
    if (size < 2) {
        return false;
    }
    const size_t room = size - 1;
    if (text.size() < room || NaiveIsUtf8(text.substr(0, room))) {
        length = std::min(text.size(), room);
        return true;
    }
    const unsigned char leads[] = {0xC0, 0xE0, 0xF0};
    for (size_t back = 1; back <= 3 && back <= room; ++back) {
        const bool leadsIn = static_cast<unsigned char>(text[room - back]) >= leads[back - 1];
        if (leadsIn && NaiveIsUtf8(text.substr(0, room - back))) {
            length = room - back;
            return true;
        }
    }
    return false;
}

// The text that a field of a record passed in stands for; false when it is refused.
inline bool NaiveTakenField(const char* field, size_t size, std::string& text) {
    text.clear();
    if (size == 0) {
        return true;
    }
    size_t end = 0;
    while (end < size && field[end] != '\0') {
        ++end;
    }
    end = end == size ? size - 1 : end;
    if (end == 0) {
        // A text that is empty because of its NUL is fine, one without room for any character is not.
        return field[0] == '\0';
    }
    size_t length = 0;
    if (!NaiveSafeLength({field, end}, end + 1, length)) {
        return false;
    }
    text.assign(field, length);
    return true;
}

// A backslash in front of each quote that has none.
inline std::string NaiveEscaped(std::string_view text) {
    std::string escaped;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '"' && (i == 0 || text[i - 1] != '\\')) {
            escaped += '\\';
        }
        escaped += text[i];
    }
    return escaped;
}

// Identifiers made of what stands between the commas, joined by commas again.
inline std::string NaiveReceivers(std::string_view text) {
    std::string joined;
    while (!text.empty()) {
        const size_t comma = std::min(text.find(','), text.size());
        const std::string name = NaiveMadeIdentifier(NaiveTrimmed(text.substr(0, comma)));
        if (!name.empty()) {
            joined += (joined.empty() ? "" : ",") + name;
        }
        text.remove_prefix(std::min(comma + 1, text.size()));
    }
    return joined;
}

}  // namespace tabrin_fuzz
