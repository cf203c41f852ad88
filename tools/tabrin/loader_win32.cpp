#include <windows.h>

#include "loader.h"
#include "unicode_win32.h"

namespace tabrin_tool {

namespace {

constexpr wchar_t kLibraryFile[] = L"tabrin64.dll";
constexpr DWORD kLongestPath = 32768;

std::wstring ProgramFolder() {
    std::wstring path(kLongestPath, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), kLongestPath));
    const std::size_t end = path.find_last_of(L"\\/");
    return end == std::wstring::npos ? std::wstring() : path.substr(0, end + 1);
}

std::wstring ReadVariable(const wchar_t* name) {
    std::wstring value(GetEnvironmentVariableW(name, nullptr, 0), L'\0');
    if (!value.empty()) {
        value.resize(GetEnvironmentVariableW(name, value.data(), static_cast<DWORD>(value.size())));
    }
    return value;
}

// LoadLibrary by the bare name would look into the current folder too, which may hold anything.
std::wstring FindOnPath() {
    const std::wstring folders = ReadVariable(L"PATH");
    std::wstring found(kLongestPath, L'\0');
    found.resize(SearchPathW(folders.c_str(), kLibraryFile, nullptr, kLongestPath, found.data(), nullptr));
    return found;
}

}  // namespace

const char* LibraryFileName() {
    return "tabrin64.dll";
}

const char* LibraryAdvice() {
    return "Put the library beside the program, or into a folder that PATH names.";
}

std::vector<LibraryPlace> LibraryPlaces() {
    const std::string beside = Utf8FromWide(ProgramFolder() + kLibraryFile);
    return {{beside, beside}, {Utf8FromWide(FindOnPath()), "the folders of PATH"}};
}

void* LoadLibraryFile(const std::string& path, std::string& reason) {
    const HMODULE library = LoadLibraryW(WideFromUtf8(path).c_str());
    if (library == nullptr) {
        const DWORD error = GetLastError();
        reason = error == ERROR_MOD_NOT_FOUND    ? "no such file"
                 : error == ERROR_BAD_EXE_FORMAT ? "no library for 64-bit programs"
                                                 : "Windows error " + std::to_string(error);
    }
    return library;
}

void* FindFunction(void* library, const char* name) {
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name));
}

}  // namespace tabrin_tool
