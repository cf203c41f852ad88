#include <sys/mman.h>

#include "io/large_pages.h"

namespace tabrin {

size_t LargePageSize() {
#ifdef MADV_HUGEPAGE
    return size_t{2} << 20;
#else
    return 0;
#endif
}

void PreferLargePages(char* memory, size_t size) {
#ifdef MADV_HUGEPAGE
    madvise(memory, size, MADV_HUGEPAGE);
#endif
}

}  // namespace tabrin
