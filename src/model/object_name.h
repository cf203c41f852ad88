// Names of messages and signals: the long name is any text, the identifier form is what files carry.
#pragma once

#include <string>
#include <string_view>

namespace tabrin {

// Takes over a name as it was read or given: its tabs and line breaks become spaces, and its identifier form is made.
// Throws utf8::exception on text that is not UTF-8.
void SetName(std::string_view text, std::string& name, std::string& identifierName);

}  // namespace tabrin
