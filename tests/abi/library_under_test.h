#pragma once

#include <string>

#include "tabrin.h"

namespace tabrin_test {

// The finished library as a caller sees it: loaded at run time, known by the public header alone.
//
//     LibraryUnderTest& library = LibraryUnderTest::Shared();
//     library.ClearData();
//
// Shared() stays loaded, and with it its database, until the process ends. Further objects of this class see the same
// database as long as they load the same file; one that loads a copy (see CopyOfLibrary) has a database of its own.
// When loading fails, or a function is missing, the constructor says why and ends the process: no test could go on.
class LibraryUnderTest {
public:
    static LibraryUnderTest& Shared();

    // The library just built, or the one that the environment variable TABRIN_LIBRARY_UNDER_TEST names.
    static std::string DefaultPath();

    // Copies the library under test to `name` in the folder for temporary files and returns the path of the copy.
    static std::string CopyOfLibrary(const std::string& name);

    explicit LibraryUnderTest(const std::string& path = DefaultPath());
    ~LibraryUnderTest();
    LibraryUnderTest(const LibraryUnderTest&) = delete;
    LibraryUnderTest& operator=(const LibraryUnderTest&) = delete;

    // The address of an exported function, nullptr if there is none of that name.
    void* Find(const char* function) const;

private:
    // Declared in front of the functions, whose initializers use it.
    std::string path_;
    void* handle_;

    template <typename Function>
    Function Resolve(const char* function) const;

public:
    // Types come from the header, so that a changed signature is noticed where it is called.
    const decltype(&TabrinGetLibraryVersion) GetLibraryVersion;
    const decltype(&TabrinReadDbcFile) ReadDbcFile;
    const decltype(&TabrinWriteDbcFile) WriteDbcFile;
    const decltype(&TabrinClearData) ClearData;
    const decltype(&TabrinGetDatabaseInfo) GetDatabaseInfo;
    const decltype(&TabrinSetDatabaseInfo) SetDatabaseInfo;
    const decltype(&TabrinGetNumCanMessages) GetNumCanMessages;
    const decltype(&TabrinAppendCanMessage) AppendCanMessage;
    const decltype(&TabrinGetCanMessageData) GetCanMessageData;
    const decltype(&TabrinGetNumCanSignalsInCanMessage) GetNumCanSignalsInCanMessage;
    const decltype(&TabrinAppendCanSignalToCanMessage) AppendCanSignalToCanMessage;
    const decltype(&TabrinGetCanSignalData) GetCanSignalData;
    const decltype(&TabrinGetNumEnumsInCanSignal) GetNumEnumsInCanSignal;
    const decltype(&TabrinAppendEnumToCanSignal) AppendEnumToCanSignal;
    const decltype(&TabrinGetCanSignalEnumData) GetCanSignalEnumData;
    const decltype(&TabrinGetNumCanErrors) GetNumCanErrors;
    const decltype(&TabrinGetErrorData) GetErrorData;
};

// What the operating system offers; one source for each.
void* OpenLibrary(const std::string& path, std::string& error);
void CloseLibrary(void* handle);
void* FindFunction(void* handle, const char* name);

}  // namespace tabrin_test
