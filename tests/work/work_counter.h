// Counts what the library does, so that growth can be tested without a clock.
#pragma once

#include <cstdint>

namespace tabrin {

// How many stretches of straight code the core has run through so far, in this process. The test program is linked with
// a core whose every such stretch counts itself. Bytes that the C library searches or moves count by the sixteen.
uint64_t WorkDone();

// How many bytes have been allocated so far in this process, those that are free again included: buffers that grow are
// seen by what they take.
uint64_t BytesAllocated();

}  // namespace tabrin
