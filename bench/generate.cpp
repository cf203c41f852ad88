// generate SIZE PATH: writes a database of about SIZE bytes of what real files are made of, for measurements elsewhere.
#include <cstdio>
#include <cstdlib>

#include "dbc_generator.h"
#include "files.h"

int main(int argc, char** argv) {
    const unsigned long size = argc == 3 ? std::strtoul(argv[1], nullptr, 10) : 0;
    if (size == 0) {
        std::fprintf(stderr, "usage: %s SIZE PATH\n", argv[0]);
        return 2;
    }
    tabrin::bench::Save(argv[2], tabrin::bench::UsualMix(size));
    return 0;
}
