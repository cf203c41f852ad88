#include "io/large_pages.h"

namespace tabrin {

// Windows has them only for users with a privilege of its own.
size_t LargePageSize() {
    return 0;
}

void PreferLargePages(char*, size_t) {}

}  // namespace tabrin
