#include "unicode_win32.h"

#include <windows.h>

#include "failure.h"

namespace tabrin_tool {

std::wstring WideFromUtf8(std::string_view text) {
    if (text.empty()) {
        return {};
    }
    const int size = static_cast<int>(text.size());
    const int needed = MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.data(), size, nullptr, 0);
    if (needed == 0) {
        throw Failure("a text is not valid UTF-8");
    }
    std::wstring wide(static_cast<std::size_t>(needed), L'\0');
    MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.data(), size, wide.data(), needed);
    return wide;
}

std::string Utf8FromWide(std::wstring_view text) {
    if (text.empty()) {
        return {};
    }
    const int size = static_cast<int>(text.size());
    const int needed =
        WideCharToMultiByte(CP_UTF8, WC_ERR_INVALID_CHARS, text.data(), size, nullptr, 0, nullptr, nullptr);
    if (needed == 0) {
        throw Failure("an argument is not valid Unicode: rename the file");
    }
    std::string narrow(static_cast<std::size_t>(needed), '\0');
    WideCharToMultiByte(CP_UTF8, WC_ERR_INVALID_CHARS, text.data(), size, narrow.data(), needed, nullptr, nullptr);
    return narrow;
}

}  // namespace tabrin_tool
