#include <dlfcn.h>

#include <filesystem>
#include <system_error>

#include "loader.h"

namespace tabrin_tool {

namespace {

std::filesystem::path ProgramFolder() {
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
}

}  // namespace

const char* LibraryFileName() {
    return "libtabrin64.so";
}

const char* LibraryAdvice() {
    return "Put the library beside the program, install it, or name its folder in LD_LIBRARY_PATH.";
}

std::vector<LibraryPlace> LibraryPlaces() {
    const std::filesystem::path folder = ProgramFolder();
    std::vector<LibraryPlace> places;
    if (!folder.empty()) {
        const std::string beside = (folder / LibraryFileName()).string();
        const std::string installed = (folder / TABRIN_LIBRARY_FOLDER / LibraryFileName()).lexically_normal().string();
        places.push_back({beside, beside});
        places.push_back({installed, installed});
    }
    places.push_back({LibraryFileName(), "LD_LIBRARY_PATH and the folders of the system"});
    return places;
}

void* LoadLibraryFile(const std::string& path, std::string& reason) {
    std::error_code error;
    if (path.find('/') != std::string::npos && !std::filesystem::exists(path, error)) {
        reason = "no such file";
        return nullptr;
    }
    void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        const char* text = dlerror();
        reason = text != nullptr ? text : "unknown reason";
    }
    return library;
}

void* FindFunction(void* library, const char* name) {
    return dlsym(library, name);
}

}  // namespace tabrin_tool
