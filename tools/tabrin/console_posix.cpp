#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "console.h"
#include "failure.h"

namespace tabrin_tool {

namespace {

[[noreturn]] void FailOutput() {
    throw Failure(std::string("the output cannot be written: ") + std::strerror(errno));
}

}  // namespace

void WriteText(Stream stream, std::string_view text) {
    if (stream == Stream::Errors) {
        // What was printed before belongs in front of the complaint, also where both go to one file.
        std::fflush(stdout);
        std::fwrite(text.data(), 1, text.size(), stderr);
    } else if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size()) {
        FailOutput();
    }
}

void FinishOutput() {
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
        FailOutput();
    }
}

bool IsColourTerminal(Stream stream) {
    const char* terminal = std::getenv("TERM");
    return isatty(stream == Stream::Output ? STDOUT_FILENO : STDERR_FILENO) != 0 && terminal != nullptr &&
           std::strcmp(terminal, "dumb") != 0;
}

}  // namespace tabrin_tool
