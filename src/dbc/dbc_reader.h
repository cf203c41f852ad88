// Reads a DBC file into the database.
#pragma once

#include <cstdint>

#include "io/dbc_file_stream.h"
#include "model/can_database.h"

namespace tabrin {

// Clears the database and fills it from the file; true when the file was read to its end. A read that breaks off, by a
// failure or an exception, leaves what was read until then. `status` is set when the function returns.
bool ReadDbcFile(CANDatabase& database, const char* path, uint32_t pathBufferSize, FileStatus& status);

}  // namespace tabrin
