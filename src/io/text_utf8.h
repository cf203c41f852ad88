// UTF-8: what fits into the fixed fields of callers, what may be taken out of them, and repair of file text.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tabrin {

bool IsAscii(std::string_view text);

// The index of the first byte that does not begin a valid UTF-8 sequence, the size of the text when all do.
size_t FirstInvalidUtf8(std::string_view text);

// How many bytes of the text fit into a buffer of `size` bytes, one of them the terminating NUL, without splitting a
// character. A text that fits with room to spare is not validated. False, with length 0, when there is no room for a
// character at all or the text is not UTF-8 in front of the cut.
bool Utf8SafeLength(std::string_view text, size_t size, size_t& length);

// Copies as much of the text as fits, with a NUL behind it; nothing behind the NUL is touched. On failure the buffer,
// if it has any room, holds the empty text.
bool CopyToBuffer(char* buffer, std::string_view text, size_t size);

// Takes a text out of a caller's buffer: up to the first NUL, else all but the last byte. A character cut off by the
// end is dropped, where the byte that begins it decides; other text that is not UTF-8 fails and leaves `text` empty.
bool StringFromBuffer(std::string& text, const char* buffer, size_t size);

// Throws utf8::exception on text that is not UTF-8.
std::u16string Utf8ToWide(std::string_view text);

// Replaces every byte of a broken sequence by "_", so that the length stays.
void RepairUtf8(char* text, size_t size);

}  // namespace tabrin
