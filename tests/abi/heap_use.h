#pragma once

#include <cstddef>

namespace tabrin_test {

// How many bytes of the C runtime's memory are given out in this process, also to the library under test. One source
// for each system.
size_t HeapBytesInUse();

// How many more there are after a library of no code at all has been loaded and unloaded.
size_t HeapBytesKeptByLoading();

}  // namespace tabrin_test
