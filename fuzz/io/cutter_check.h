// Any lines, cut into statements.
#pragma once

#include <string>
#include <string_view>

namespace tabrin_fuzz {

// Makes a file of the bytes, which may be long, and compares the statements that the stream finds in it with those of
// the naive reader. The first two bytes tell how the file is made: they shift the text against the blocks in which
// files are read. `path` is a file that may be overwritten.
void CheckCutter(std::string_view bytes, const std::string& path);

}  // namespace tabrin_fuzz
