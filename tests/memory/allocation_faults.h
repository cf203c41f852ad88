// Memory that runs out at will. The test program has an operator new of its own: it counts, and fails when a test asks
// for it. The library is served by it too, because a program's definitions win over those of shared libraries (and
// where they do not, on Windows, the library is linked into the test program).
#pragma once

#include <cstddef>

namespace tabrin_test {

enum class Shortage { Once, FromThenOn };

// As long as one lives, allocations are counted from 1, and the one of that number fails, alone or with all that
// follow. There can be one at a time, in one thread. Nothing but the call under test may allocate meanwhile.
class AllocationFault {
public:
    AllocationFault(size_t number, Shortage shortage);
    ~AllocationFault();
    AllocationFault(const AllocationFault&) = delete;
    AllocationFault& operator=(const AllocationFault&) = delete;
    AllocationFault(AllocationFault&&) = delete;
    AllocationFault& operator=(AllocationFault&&) = delete;

    // Whether there were so many allocations.
    [[nodiscard]] bool HasFailed() const;
    // Whether one of those that failed was said to by an exception. Who asks for memory with std::nothrow can do
    // without.
    [[nodiscard]] bool HasThrown() const;
};

// How many allocations have not been given back.
size_t LiveAllocations();

}  // namespace tabrin_test
