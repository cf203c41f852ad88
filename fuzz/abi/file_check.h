// Any bytes as a file.
#pragma once

#include <string>
#include <string_view>

#include "fuzz/abi/library_functions.h"

namespace tabrin_fuzz {

// Reads the bytes as a file, walks everything, writes it in three orders and reads it back. `path` is a file that may
// be overwritten.
void CheckFile(const LibraryFunctions& library, std::string_view bytes, const std::string& path);

}  // namespace tabrin_fuzz
