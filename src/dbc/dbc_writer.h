// Writes the database as a DBC file.
#pragma once

#include <cstdint>
#include <string>

#include "io/dbc_file_stream.h"
#include "model/can_database.h"

namespace tabrin {

// `messageOrder` is one of TABRIN_ORDER_...; true when everything was written. An empty database is refused before the
// file is touched. Names of signals are made unique on the way, which changes the database.
bool WriteDbcFile(CANDatabase& database, const char* path, uint32_t pathBufferSize, uint32_t messageOrder,
                  FileStatus& status);

// The BU_ line: all transmitters and receivers, in descending order.
std::string CollectNodeNames(const CANDatabase::Messages& messages);

}  // namespace tabrin
