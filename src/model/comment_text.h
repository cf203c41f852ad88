// Comments are kept escaped: every quote in them has a backslash in front. Reading, appending and writing all rely on
// it.
#pragma once

#include <string>
#include <string_view>

#include "model/arena.h"

namespace tabrin {

// Puts a backslash in front of each quote that has none. Doing it twice changes nothing.
void EscapeQuotes(std::string& text);

// Appends to a comment that is escaped already, with the outcome of appending first and escaping the whole afterwards.
void AppendEscaped(Arena& arena, GrowingText& comment, std::string_view text);

// Takes a comment from the 256-byte field of a caller's record; false, with an empty comment, when it is not UTF-8.
bool SetCommentFromBuffer(std::string& comment, const char* buffer);

}  // namespace tabrin
