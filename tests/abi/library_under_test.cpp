#include "abi/library_under_test.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>

namespace tabrin_test {

namespace {

void* OpenOrEnd(const std::string& path) {
    std::string error;
    void* const handle = OpenLibrary(path, error);
    if (handle == nullptr) {
        std::fprintf(stderr, "The library under test cannot be loaded.\n  file:   %s\n  reason: %s\n", path.c_str(),
                     error.c_str());
        std::exit(EXIT_FAILURE);
    }
    return handle;
}

}  // namespace

LibraryUnderTest& LibraryUnderTest::Shared() {
    static LibraryUnderTest library;
    return library;
}

std::string LibraryUnderTest::DefaultPath() {
    const char* const fromEnvironment = std::getenv("TABRIN_LIBRARY_UNDER_TEST");
    return fromEnvironment != nullptr ? fromEnvironment : TABRIN_LIBRARY_FILE;
}

std::string LibraryUnderTest::CopyOfLibrary(const std::string& name) {
    const std::string copy = std::string(TABRIN_TEMP_DIR) + "/" + name;
    // Removed by hand: the option to overwrite fails in the runtime of MinGW.
    std::filesystem::remove(copy);
    std::filesystem::copy_file(DefaultPath(), copy);
    return copy;
}

template <typename Function>
Function LibraryUnderTest::Resolve(const char* function) const {
    void* const address = Find(function);
    if (address == nullptr) {
        std::fprintf(stderr, "The library under test has no function %s.\n  file: %s\n", function, path_.c_str());
        std::exit(EXIT_FAILURE);
    }
    return reinterpret_cast<Function>(address);
}

#define TABRIN_RESOLVE(function) function(Resolve<decltype(&Tabrin##function)>("Tabrin" #function))

LibraryUnderTest::LibraryUnderTest(const std::string& path)
    : path_(path),
      handle_(OpenOrEnd(path)),
      TABRIN_RESOLVE(GetLibraryVersion),
      TABRIN_RESOLVE(ReadDbcFile),
      TABRIN_RESOLVE(WriteDbcFile),
      TABRIN_RESOLVE(ClearData),
      TABRIN_RESOLVE(GetDatabaseInfo),
      TABRIN_RESOLVE(SetDatabaseInfo),
      TABRIN_RESOLVE(GetNumCanMessages),
      TABRIN_RESOLVE(AppendCanMessage),
      TABRIN_RESOLVE(GetCanMessageData),
      TABRIN_RESOLVE(GetNumCanSignalsInCanMessage),
      TABRIN_RESOLVE(AppendCanSignalToCanMessage),
      TABRIN_RESOLVE(GetCanSignalData),
      TABRIN_RESOLVE(GetNumEnumsInCanSignal),
      TABRIN_RESOLVE(AppendEnumToCanSignal),
      TABRIN_RESOLVE(GetCanSignalEnumData),
      TABRIN_RESOLVE(GetNumCanErrors),
      TABRIN_RESOLVE(GetErrorData) {}

#undef TABRIN_RESOLVE

LibraryUnderTest::~LibraryUnderTest() {
    CloseLibrary(handle_);
}

void* LibraryUnderTest::Find(const char* function) const {
    return FindFunction(handle_, function);
}

}  // namespace tabrin_test
