#pragma once

#include <stdexcept>
#include <string>

namespace tabrin_tool {

// Ends the program with exit status 2. Its text is for the person at the keyboard: what is wrong, and what to do about
// it.
class Failure : public std::runtime_error {
public:
    explicit Failure(const std::string& text) : std::runtime_error(text) {}
};

}  // namespace tabrin_tool
