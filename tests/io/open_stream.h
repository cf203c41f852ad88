// Opens streams of DBC files, whose paths are buffers, by a path that is a text.
#pragma once

#include <cstdint>
#include <string>

#include "io/dbc_file_stream.h"

namespace tabrin {

inline constexpr OpenMode kModes[] = {OpenMode::Read, OpenMode::Write};

inline const char* NameOf(OpenMode mode) {
    return mode == OpenMode::Read ? "reading" : "writing";
}

inline void Open(DbcFileStream& stream, const std::string& path, OpenMode mode) {
    stream.Open(path.c_str(), static_cast<uint32_t>(path.size() + 1), mode);
}

}  // namespace tabrin
