#include <windows.h>

#include "file_system.h"

namespace tabrin_tool {

namespace {

bool Done(bool success, std::string& reason) {
    if (success) {
        return true;
    }
    switch (const DWORD error = GetLastError()) {
        case ERROR_ACCESS_DENIED:
            reason = "access is denied";
            break;
        case ERROR_SHARING_VIOLATION:
            reason = "another program has it open";
            break;
        case ERROR_FILE_EXISTS:
        case ERROR_ALREADY_EXISTS:
            reason = "there is a file of that name";
            break;
        case ERROR_PATH_NOT_FOUND:
            reason = "there is no such folder";
            break;
        case ERROR_DISK_FULL:
            reason = "the disk is full";
            break;
        default:
            reason = "Windows error " + std::to_string(error);
    }
    return false;
}

}  // namespace

bool CreateNewFile(const std::filesystem::path& path, std::string& reason) {
    const HANDLE file =
        CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    return Done(file != INVALID_HANDLE_VALUE && CloseHandle(file) != 0, reason);
}

bool FlushFileToDisk(const std::filesystem::path& path, std::string& reason) {
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return Done(false, reason);
    }
    const bool flushed = Done(FlushFileBuffers(file) != 0, reason);
    CloseHandle(file);
    return flushed;
}

bool MoveIntoPlace(const std::filesystem::path& from, const std::filesystem::path& to, bool replace,
                   std::string& reason) {
    const DWORD flags = MOVEFILE_WRITE_THROUGH | (replace ? MOVEFILE_REPLACE_EXISTING : 0U);
    return Done(MoveFileExW(from.c_str(), to.c_str(), flags) != 0, reason);
}

unsigned long ProcessNumber() {
    return GetCurrentProcessId();
}

}  // namespace tabrin_tool
