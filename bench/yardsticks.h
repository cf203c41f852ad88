// The least that has to be done for the same result, as a bare loop. Times mean something only beside these: they drift
// with the machine, the ratio hardly does.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tabrin::bench {

// std::getline and utf8::find_invalid over the lines of a file. Returns how many lines are not UTF-8.
size_t CheckLines(const std::string& path);

std::vector<std::string_view> LinesOf(std::string_view text);  // line ends included

// One write of the system for each line: what a writer costs that hands every line over.
void WriteLines(const std::string& path, const std::vector<std::string_view>& lines);

}  // namespace tabrin::bench
