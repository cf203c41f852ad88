/* Linked with the import library for Visual C++ and without any runtime: the exit status is the version times 100. */
#include <tabrin.h>

int _fltused = 0; /* what the compiler asks for where numbers have a point */

int Start(void) {
    return TabrinGetNumCanMessages() == 0 ? (int)(TabrinGetLibraryVersion() * 100.0F + 0.5F) : 1;
}
