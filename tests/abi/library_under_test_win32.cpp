#include <windows.h>

#include "abi/library_under_test.h"

namespace tabrin_test {

void* OpenLibrary(const std::string& path, std::string& error) {
    const HMODULE handle = LoadLibraryA(path.c_str());
    if (handle == nullptr) {
        error = "Windows error " + std::to_string(GetLastError());
    }
    return handle;
}

void CloseLibrary(void* handle) {
    FreeLibrary(static_cast<HMODULE>(handle));
}

void* FindFunction(void* handle, const char* name) {
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(handle), name));
}

}  // namespace tabrin_test
