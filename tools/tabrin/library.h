#pragma once

#include <string>

#include "tabrin.h"

namespace tabrin_tool {

// The functions of the library that this program calls. They are looked up while it runs and not by the system's
// loader: a library that is missing can then be reported in words, and `tabrin --help` works without one.
struct Library {
    std::string path;  // as it was found
    decltype(&TabrinGetLibraryVersion) getLibraryVersion = nullptr;
    decltype(&TabrinReadDbcFile) readDbcFile = nullptr;
    decltype(&TabrinWriteDbcFile) writeDbcFile = nullptr;
    decltype(&TabrinGetDatabaseInfo) getDatabaseInfo = nullptr;
    decltype(&TabrinGetNumCanMessages) getNumCanMessages = nullptr;
    decltype(&TabrinGetCanMessageData) getCanMessageData = nullptr;
    decltype(&TabrinGetNumCanSignalsInCanMessage) getNumCanSignals = nullptr;
    decltype(&TabrinGetCanSignalData) getCanSignalData = nullptr;
    decltype(&TabrinGetCanSignalEnumData) getCanSignalEnumData = nullptr;
    decltype(&TabrinGetNumCanErrors) getNumCanErrors = nullptr;
    decltype(&TabrinGetErrorData) getErrorData = nullptr;
};

// Loads the library from beside the program, from the folder for libraries next to it, or from where the system looks.
// It stays loaded. Throws Failure, which says where it was looked for.
Library LoadLibraryOfTabrin();

}  // namespace tabrin_tool
