#include <dlfcn.h>

#include "abi/library_under_test.h"

namespace tabrin_test {

void* OpenLibrary(const std::string& path, std::string& error) {
    void* const handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) {
        error = dlerror();
    }
    return handle;
}

void CloseLibrary(void* handle) {
    dlclose(handle);
}

void* FindFunction(void* handle, const char* name) {
    return dlsym(handle, name);
}

}  // namespace tabrin_test
