// CM_ BO_ <id> "<text>";  and  CM_ SG_ <id> <name> "<text>";
#pragma once

#include <string_view>

#include "dbc/later_lines.h"
#include "io/dbc_file_stream.h"
#include "model/can_database.h"

namespace tabrin {

// Attaches a comment to every message of that identifier, or to its signal of that name. Declines, with false, what is
// neither or names a message that has not been read before.
bool ReadComment(CANDatabase& database, std::string_view statement);

// `commented` are their signals that have a comment, in the same order.
void WriteCommentsSection(DbcFileStream& stream, const CANDatabase::Messages& messages, const SignalsOf& commented);

}  // namespace tabrin
