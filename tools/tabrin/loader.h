#pragma once

#include <string>
#include <vector>

namespace tabrin_tool {

// A place where the library may be.
struct LibraryPlace {
    std::string path;         // for LoadLibraryFile; empty: nothing was found there to load
    std::string description;  // for people
};

// What the system calls the library.
const char* LibraryFileName();

// What to do when it is in none of the places.
const char* LibraryAdvice();

// In the order in which they are to be tried.
std::vector<LibraryPlace> LibraryPlaces();

// Returns null, and the reason, when there is none or it cannot be loaded.
void* LoadLibraryFile(const std::string& path, std::string& reason);

// Returns null when the library has no function of that name. `function` receives the address where a function pointer
// is expected.
void* FindFunction(void* library, const char* name);

}  // namespace tabrin_tool
