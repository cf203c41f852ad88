#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tabrin.h"

namespace tabrin_tool {

// The lines of a DBC file, to find the one where a faulty statement begins. The library reports the line where it had
// seen the whole statement, which is further down when empty lines follow or the statement runs over several lines, and
// one above for the last statement of a file. Editors want to jump to the beginning.
class SourceLines {
public:
    // A file that cannot be read has no lines.
    explicit SourceLines(const std::string& file);

    // The line, counted from 1, where the statement of the error begins; the reported one when it is not found.
    // `previous` is the line of the error in front of this one, or 0.
    std::uint32_t LineOf(const CanErrorData& error, std::uint32_t previous) const;

private:
    bool Contains(std::uint32_t line, const std::string& text) const;

    std::vector<std::string> lines_;
};

}  // namespace tabrin_tool
