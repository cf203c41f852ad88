#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "library.h"

namespace tabrin_tool {

// The file as one JSON object, with the messages of these indices.
std::string JsonText(const Library& library, const std::string& file, const std::vector<std::uint32_t>& messages);

}  // namespace tabrin_tool
