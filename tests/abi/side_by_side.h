#pragma once

#include <functional>
#include <vector>

namespace tabrin_test {

// Runs all of it at the same time and returns the results. One source for each system: in processes of their own where
// that is easy, otherwise in threads. What runs must not report to GoogleTest and needs a copy of the library of its
// own.
std::vector<int> RunSideBySide(const std::vector<std::function<int()>>& works);

}  // namespace tabrin_test
