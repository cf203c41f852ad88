// The nine attributes that become fields of the database, its messages and its signals.
#pragma once

#include "dbc/later_lines.h"
#include "io/dbc_file_stream.h"
#include "model/can_database.h"

namespace tabrin {

// Moves what the store holds into the fields; called once, when the whole file has been read.
void ApplyWellKnownAttributes(CANDatabase& database);

// Writes the fields that have an attribute form: bus type, protocol and long names.
// `renamed` are the signals of the messages that have a long name, in the same order.
void WriteWellKnownAttributes(DbcFileStream& stream, const DatabaseInfo& info, const CANDatabase::Messages& messages,
                              const SignalsOf& renamed);

}  // namespace tabrin
