/* list_signals.c: prints the messages of a DBC file with their signals. Clean C99.
 *
 *   list_signals <file.dbc>
 */
#include <stdio.h>
#include <string.h>

#include "tabrin.h"

static int ListSignals(const char* path) {
    CanMessageData message;
    CanSignalData signal;
    uint32_t status;
    if (!TabrinReadDbcFile(path, (uint32_t)strlen(path) + 1, &status)) {
        fprintf(stderr, "%s: not read (status %u)\n", path, (unsigned)status);
        return 1;
    }
    for (uint32_t m = 0; TabrinGetCanMessageData(m, &message); ++m) {
        printf("%s, %u bytes\n", message.name, (unsigned)message.dlc);
        for (uint32_t s = 0; TabrinGetCanSignalData(m, s, &signal); ++s) {
            printf("    %s: %u bits, raw * %g + %g %s\n", signal.name, (unsigned)signal.length, signal.factor,
                   signal.offset, signal.unitAsWritten);
        }
    }
    return 0;
}

int main(int argc, char** argv) {
    if (argc != 2) {
        fprintf(stderr, "usage: list_signals <file.dbc>\n");
        return 2;
    }
    return ListSignals(argv[1]);
}
