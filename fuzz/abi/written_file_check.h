// Checks of written files: their form, that writing again changes nothing, and what reading them back gives.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz/abi/library_functions.h"
#include "fuzz/abi/snapshot.h"

namespace tabrin_fuzz {

void SetFileBytes(const std::string& path, std::string_view bytes);
std::string FileBytes(const std::string& path);

// Reads or writes the file by a path that ends the buffer exactly; returns the result, with the status in `status`.
bool ReadPath(const LibraryFunctions& library, const std::string& path, uint32_t& status);
bool WritePath(const LibraryFunctions& library, const std::string& path, uint32_t order, uint32_t& status);

// Writes the database to that path in each order, compares the files, reads the last of them back and compares what it
// holds with what was written. `writtenBefore` tells that signals can have got suffixes from an earlier writing. Leaves
// what was read back in the database.
void CheckWriting(const LibraryFunctions& library, const std::string& path, bool writtenBefore);

}  // namespace tabrin_fuzz
