// Any sequence of calls.
#pragma once

#include <string>
#include <string_view>

#include "fuzz/abi/library_functions.h"

namespace tabrin_fuzz {

// Takes the bytes as a program of calls with their arguments, and keeps a plain model of the database beside it that
// says what each call must answer. `path` is a file that may be overwritten.
void CheckCalls(const LibraryFunctions& library, std::string_view program, const std::string& path);

}  // namespace tabrin_fuzz
