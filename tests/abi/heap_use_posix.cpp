#include <malloc.h>

#include "abi/address_sanitizer.h"
#include "abi/heap_use.h"

#ifdef TABRIN_ADDRESS_SANITIZER
// Its header does not come with every compiler.
extern "C" size_t __sanitizer_get_current_allocated_bytes();
#endif

namespace tabrin_test {

size_t HeapBytesInUse() {
#ifdef TABRIN_ADDRESS_SANITIZER
    return __sanitizer_get_current_allocated_bytes();
#else
    const struct mallinfo2 information = mallinfo2();
    return information.uordblks + information.hblkhd;
#endif
}

size_t HeapBytesKeptByLoading() {
#ifdef TABRIN_ADDRESS_SANITIZER
    // Its own count grows with each library that it watches, by some hundred bytes for all the variables in it, of which
    // none is in anybody's hands. Without it, nothing is kept.
    return 512;
#else
    return 0;
#endif
}

}  // namespace tabrin_test
