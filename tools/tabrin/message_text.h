#pragma once

#include <string>

#include "database.h"
#include "text.h"

namespace tabrin_tool {

// A message for people: what is known of it, a table of its signals, pictures of its frame, and what does not fit a
// table.
std::string MessageText(const Message& message, const Paint& paint);

}  // namespace tabrin_tool
