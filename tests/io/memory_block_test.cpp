#include "io/memory_block.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>

#include "io/large_pages.h"

namespace tabrin {
namespace {

void ExpectAligned(const MemoryBlock& block, size_t alignment) {
    EXPECT_EQ(reinterpret_cast<uintptr_t>(block.get()) % alignment, 0U) << "to " << alignment;
}

TEST(MemoryBlock, IsThereFromItsFirstToItsLastByte) {
    for (const size_t size : {1U, 4096U, 65536U, 2097151U, 2097152U, 2097153U, 5000000U}) {
        SCOPED_TRACE(size);
        const MemoryBlock block = AllocateBlock(size);
        ExpectAligned(block, alignof(std::max_align_t));
        std::fill_n(block.get(), size, 'a');
        EXPECT_EQ(std::count(block.get(), block.get() + size, 'a'), static_cast<std::ptrdiff_t>(size));
    }
}

TEST(MemoryBlock, BeginsWithALargePageWhereItIsLarge) {
    const size_t page = LargePageSize();
    if (page == 0) {
        GTEST_SKIP() << "this system has no large pages for the asking";
    }
    ExpectAligned(AllocateBlock(page), page);
    ExpectAligned(AllocateBlock(page + 1), page);
    ExpectAligned(AllocateBlock(3 * page), page);
}

}  // namespace
}  // namespace tabrin
