// Memory in pages that are larger than usual, where the system has them.
#pragma once

#include <cstddef>

namespace tabrin {

// 0 where there are none to be had for the asking.
size_t LargePageSize();

// Asks for large pages behind this memory, which begins at a multiple of their size. It stays as good as it was when
// there are none.
void PreferLargePages(char* memory, size_t size);

}  // namespace tabrin
