// VAL_ <id> <signal> <value> "<text>" ...;  and  SIG_VALTYPE_ <id> <signal> : <1 float, 2 double>;
#pragma once

#include <string_view>

#include "dbc/later_lines.h"
#include "io/dbc_file_stream.h"
#include "model/can_database.h"

namespace tabrin {

// They decline, with false, what has another keyword or names no message that has been read before.
bool ReadValueTypeStatement(CANDatabase& database, std::string_view statement);
bool ReadValueDescriptionStatement(CANDatabase& database, std::string_view statement);

// The descriptions of floats and doubles are kept and reported, but not written.
bool HasValueDescriptionLine(const CANSignal& signal);

void WriteValueDescriptionsSection(DbcFileStream& stream, const SignalsOf& described);
void WriteValueTypesSection(DbcFileStream& stream, const SignalsOf& floats);

}  // namespace tabrin
