#include "io/large_pages.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <new>

namespace tabrin {
namespace {

TEST(LargePages, MemoryStaysAsGoodAsItWas) {
    const size_t size = LargePageSize();
    if (size == 0) {
        GTEST_SKIP() << "this system has no large pages for the asking";
    }
    EXPECT_EQ(size, size_t{2} << 20);
    const auto alignment = std::align_val_t{size};
    char* const memory = static_cast<char*>(::operator new[](size, alignment));
    std::fill_n(memory, size, 'a');
    PreferLargePages(memory, size);
    EXPECT_EQ(std::count(memory, memory + size, 'a'), static_cast<std::ptrdiff_t>(size));
    std::fill_n(memory, size, 'b');
    EXPECT_EQ(std::count(memory, memory + size, 'b'), static_cast<std::ptrdiff_t>(size));
    ::operator delete[](memory, alignment);
}

}  // namespace
}  // namespace tabrin
