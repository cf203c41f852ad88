#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "library.h"
#include "text.h"

namespace tabrin_tool {

// An error of the last read, with the line where its statement begins.
struct LocatedError {
    CanErrorData data;
    std::uint32_t line;
};

std::vector<LocatedError> LocateErrors(const Library& library, const std::string& file);

// "file:line: error 5: what is wrong" and below it the statement, for each error of the last read.
std::string ErrorListText(const Library& library, const std::string& file, const Paint& paint);

// "engine.dbc: 6 messages, 21 signals, 1 error"
std::string SummaryText(const Library& library, const std::string& file);

// Reads each file and prints its errors and a summary. Returns the exit status: 1 when there were errors, 2 when a file
// could not be read.
int Check(const Library& library, const std::vector<std::string>& files, const Paint& paint);

}  // namespace tabrin_tool
