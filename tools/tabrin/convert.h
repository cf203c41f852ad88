#pragma once

#include <cstdint>
#include <string>

#include "library.h"
#include "text.h"

namespace tabrin_tool {

struct ConvertOptions {
    std::string input;
    std::string output;
    std::string order = "file";  // id, name or file
    bool force = false;
};

// Reads a file and writes it in the order asked for. Returns the exit status: 1 when statements were left out because
// they cannot be read. The output appears whole or not at all. Throws Failure.
int Convert(const Library& library, const ConvertOptions& options, const Paint& paint);

}  // namespace tabrin_tool
