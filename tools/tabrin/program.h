#pragma once

#include <string>
#include <vector>

namespace tabrin_tool {

// The program, from its arguments (UTF-8, without the name of the program) to its exit status: 0, 1 when something was
// found to complain of in a file, 2 for a wrong call, a file that cannot be used, or a missing library.
int RunProgram(std::vector<std::string> arguments);

}  // namespace tabrin_tool
