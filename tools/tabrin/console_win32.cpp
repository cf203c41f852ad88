#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <string>

#include "console.h"
#include "failure.h"
#include "unicode_win32.h"

namespace tabrin_tool {

namespace {

HANDLE HandleOf(Stream stream) {
    return GetStdHandle(stream == Stream::Output ? STD_OUTPUT_HANDLE : STD_ERROR_HANDLE);
}

bool IsConsole(Stream stream) {
    DWORD mode = 0;
    return GetConsoleMode(HandleOf(stream), &mode) != 0;
}

// In pieces, because older systems refuse more than 64 KB at once.
bool WriteToConsole(Stream stream, std::wstring_view text) {
    constexpr std::size_t kPiece = 8192;
    while (!text.empty()) {
        DWORD written = 0;
        const auto size = static_cast<DWORD>(std::min(text.size(), kPiece));
        if (WriteConsoleW(HandleOf(stream), text.data(), size, &written, nullptr) == 0 || written == 0) {
            return false;
        }
        text.remove_prefix(written);
    }
    return true;
}

bool WriteToFile(Stream stream, std::string_view text) {
    FILE* file = stream == Stream::Output ? stdout : stderr;
    return std::fwrite(text.data(), 1, text.size(), file) == text.size();
}

}  // namespace

void WriteText(Stream stream, std::string_view text) {
    if (stream == Stream::Errors) {
        // What was printed before belongs in front of the complaint, also where both go to one file.
        std::fflush(stdout);
    }
    const bool written = IsConsole(stream) ? WriteToConsole(stream, WideFromUtf8(text)) : WriteToFile(stream, text);
    if (!written && stream == Stream::Output) {
        throw Failure("the output cannot be written: is the disk full?");
    }
}

void FinishOutput() {
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
        throw Failure("the output cannot be written: is the disk full?");
    }
}

bool IsColourTerminal(Stream stream) {
    DWORD mode = 0;
    return GetConsoleMode(HandleOf(stream), &mode) != 0 &&
           SetConsoleMode(HandleOf(stream), mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

}  // namespace tabrin_tool
