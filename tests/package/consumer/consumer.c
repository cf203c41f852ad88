/* Prints how many messages a DBC file has. */
#include <stdio.h>
#include <string.h>
#include <tabrin.h>

int main(int argc, char** argv) {
    uint32_t status = 0;
    if (argc != 2 || !TabrinReadDbcFile(argv[1], (uint32_t)strlen(argv[1]) + 1, &status)) {
        return 1;
    }
    printf("C: %d messages, library %.2f\n", (int)TabrinGetNumCanMessages(), (double)TabrinGetLibraryVersion());
    return 0;
}
