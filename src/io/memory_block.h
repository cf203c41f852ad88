// Memory in one piece, in large pages where it is large and the system has them.
#pragma once

#include <cstddef>
#include <memory>
#include <new>

namespace tabrin {

struct MemoryBlockDeleter {
    std::align_val_t alignment{__STDCPP_DEFAULT_NEW_ALIGNMENT__};

    void operator()(char* block) const { ::operator delete[](block, alignment); }
};

using MemoryBlock = std::unique_ptr<char[], MemoryBlockDeleter>;

// Aligned for every fundamental type. From the size of a large page on it asks for such pages, so that the processor has
// few to look up and the system few to hand out.
MemoryBlock AllocateBlock(size_t size);

}  // namespace tabrin
