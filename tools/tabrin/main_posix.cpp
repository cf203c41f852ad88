#include <csignal>

#include "program.h"

int main(int argc, char** argv) {
    // A file that grows too large is then a failed write, which is reported, instead of the end of the program.
    std::signal(SIGXFSZ, SIG_IGN);
    return tabrin_tool::RunProgram({argv + 1, argv + argc});
}
