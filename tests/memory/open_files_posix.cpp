#include <sys/stat.h>

#include "memory/open_files.h"

namespace tabrin_test {

bool IsOpenHere(const std::string& path) {
    // Descriptors are given out from the lowest free one on.
    constexpr int kMost = 64;
    struct stat file {};
    if (stat(path.c_str(), &file) != 0) {
        return false;
    }
    for (int descriptor = 0; descriptor < kMost; ++descriptor) {
        struct stat open {};
        if (fstat(descriptor, &open) == 0 && open.st_dev == file.st_dev && open.st_ino == file.st_ino) {
            return true;
        }
    }
    return false;
}

}  // namespace tabrin_test
