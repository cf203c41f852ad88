#pragma once

#include <string>

#include "library.h"
#include "text.h"

namespace tabrin_tool {

struct ShowOptions {
    std::string file;
    std::string message;  // empty: all of them
    bool json = false;
};

// Prints what a file contains, as text or as JSON. Returns the exit status.
int Show(const Library& library, const ShowOptions& options, const Paint& paint);

}  // namespace tabrin_tool
