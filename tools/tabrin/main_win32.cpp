#include <exception>
#include <string>

#include "console.h"
#include "program.h"
#include "unicode_win32.h"

#ifdef __MINGW32__
// Windows leaves it to the program to put file names in for "*.dbc"; this asks the runtime to do it.
int _dowildcard = -1;
#endif

int wmain(int argc, wchar_t** argv) {
    std::vector<std::string> arguments;
    try {
        for (int i = 1; i < argc; ++i) {
            arguments.push_back(tabrin_tool::Utf8FromWide(argv[i]));
        }
    } catch (const std::exception& failure) {
        tabrin_tool::WriteText(tabrin_tool::Stream::Errors, std::string("tabrin: ") + failure.what() + "\n");
        return 2;
    }
    return tabrin_tool::RunProgram(std::move(arguments));
}
