#ifndef NOMINMAX
#define NOMINMAX
#endif
#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <algorithm>

#include "io/file.h"
#include "io/text_utf8.h"

namespace tabrin {

namespace {

// The most that one call takes; longer pieces are handed over in several.
constexpr size_t kMostBytes = size_t{1} << 30;

intptr_t OpenFile(const std::string& path, DWORD access, DWORD disposition) {
    const std::u16string wide = Utf8ToWide(path);
    const std::wstring name(wide.begin(), wide.end());
    return reinterpret_cast<intptr_t>(CreateFileW(name.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                                  disposition, FILE_ATTRIBUTE_NORMAL, nullptr));
}

HANDLE AsHandle(intptr_t handle) {
    return reinterpret_cast<HANDLE>(handle);
}

}  // namespace

bool File::OpenForReading(const std::string& path) {
    handle_ = OpenFile(path, GENERIC_READ, OPEN_EXISTING);
    return handle_ != kNone;
}

bool File::OpenForWriting(const std::string& path) {
    handle_ = OpenFile(path, GENERIC_WRITE, CREATE_ALWAYS);
    return handle_ != kNone;
}

bool File::Read(char* buffer, size_t size, size_t& count) {
    DWORD taken = 0;
    const auto most = static_cast<DWORD>(std::min(size, kMostBytes));
    const bool done = ReadFile(AsHandle(handle_), buffer, most, &taken, nullptr) != 0;
    count = taken;
    // A pipe whose writer has gone away is at its end.
    return done || GetLastError() == ERROR_BROKEN_PIPE;
}

bool File::Write(std::string_view bytes) {
    while (!bytes.empty()) {
        DWORD taken = 0;
        const auto most = static_cast<DWORD>(std::min(bytes.size(), kMostBytes));
        if (WriteFile(AsHandle(handle_), bytes.data(), most, &taken, nullptr) == 0 || taken == 0) {
            return false;
        }
        bytes.remove_prefix(taken);
    }
    return true;
}

bool File::Close() {
    if (handle_ == kNone) {
        return true;
    }
    const HANDLE handle = AsHandle(handle_);
    handle_ = kNone;
    return CloseHandle(handle) != 0;
}

}  // namespace tabrin
