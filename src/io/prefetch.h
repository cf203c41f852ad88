// Tells the processor what will be needed soon.
#pragma once

#include <cstddef>

#include "io/byte_block.h"

namespace tabrin {

// Objects of a large database come from memory, one wait each. Their memory, and the texts behind it, can be on the way
// while something else is done.
inline void Prefetch([[maybe_unused]] const void* object, [[maybe_unused]] size_t size) {
#ifdef TABRIN_HAS_SSE2
    constexpr size_t kCacheLine = 64;
    for (size_t offset = 0; offset < size; offset += kCacheLine) {
        _mm_prefetch(static_cast<const char*>(object) + offset, _MM_HINT_T0);
    }
#ifdef __GNUC__
    // A function that only calls this one would count as one that does nothing, and its calls be left out.
    asm volatile("");
#endif
#endif
}

}  // namespace tabrin
