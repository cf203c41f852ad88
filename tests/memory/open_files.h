#pragma once

#include <string>

namespace tabrin_test {

// Whether this process has the file open. One source for each system.
bool IsOpenHere(const std::string& path);

}  // namespace tabrin_test
