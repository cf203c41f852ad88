// What is measured, by way of the exported functions. A call that fails ends the program: a time would mean nothing.
#pragma once

#include <cstdint>
#include <string>

namespace tabrin::bench {

struct Counts {
    uint64_t messages = 0;
    uint64_t signals = 0;
    uint64_t valueDescriptions = 0;
};

void Read(const std::string& path);
Counts Walk();  // asks for every record there is
void Clear();
void Write(const std::string& path);  // in the order of the database

[[noreturn]] void GiveUp(const std::string& reason);

}  // namespace tabrin::bench
