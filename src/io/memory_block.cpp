#include "io/memory_block.h"

#include "io/large_pages.h"

namespace tabrin {

MemoryBlock AllocateBlock(size_t size) {
    const size_t page = LargePageSize();
    const bool isLarge = page != 0 && size >= page;
    const auto alignment = std::align_val_t{isLarge ? page : __STDCPP_DEFAULT_NEW_ALIGNMENT__};
    MemoryBlock block(static_cast<char*>(::operator new[](size, alignment)), MemoryBlockDeleter{alignment});
    if (isLarge) {
        PreferLargePages(block.get(), size);
    }
    return block;
}

}  // namespace tabrin
