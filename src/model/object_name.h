// Names of messages and signals: the long name is any text, the identifier form is what files carry.
#pragma once

#include <string_view>

#include "model/arena.h"

namespace tabrin {

// Takes over a name as it was read or given: its tabs and line breaks become spaces, and its identifier form is made.
// The name must stay as long as the arena does; usually all three are one. Throws utf8::exception on text that is not
// UTF-8.
void SetName(Arena& arena, std::string_view given, std::string_view& name, std::string_view& identifierName);

// The identifier form of the text. Throws like SetName.
std::string_view KeepIdentifier(Arena& arena, std::string_view text);

// The text with its tabs and line breaks as spaces.
std::string_view KeepNormalised(Arena& arena, std::string_view text);

}  // namespace tabrin
