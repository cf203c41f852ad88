#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "library.h"

namespace tabrin_tool {

struct Signal {
    CanSignalData data;
    std::vector<CanSignalEnumData> values;
};

struct Message {
    CanMessageData data;
    std::vector<Signal> signals;
};

// Has the library read a file. Throws Failure, in words, when it cannot be read to its end.
void ReadFile(const Library& library, const std::string& path);

// Takes one message out of the library with all that belongs to it, so that a file of any size needs the memory of its
// largest message. Throws Failure when the library does not give it.
Message LoadMessage(const Library& library, std::uint32_t index);

std::vector<CanErrorData> LoadErrors(const Library& library);

std::int64_t CountSignals(const Library& library);

// Comments hold their quotes as a file does, with a backslash; people want them without.
std::string CommentText(const char* comment);

}  // namespace tabrin_tool
