#include "work/work_counter.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

uint64_t workDone = 0;
uint64_t bytesAllocated = 0;

}  // namespace

namespace tabrin {

uint64_t WorkDone() {
    return workDone;
}

uint64_t BytesAllocated() {
    return bytesAllocated;
}

}  // namespace tabrin

// The compiler puts a call of this in front of every basic block.
extern "C" void __sanitizer_cov_trace_pc();   // NOLINT(bugprone-reserved-identifier): the compiler's name
extern "C" void __sanitizer_cov_trace_pc() {  // NOLINT(bugprone-reserved-identifier)
    ++workDone;
}

// The array and nothrow forms of the standard library come here too.
void* operator new(size_t size, std::align_val_t alignment) {
    bytesAllocated += size;
    const auto multiple = static_cast<size_t>(alignment);
    void* memory = std::aligned_alloc(multiple, (size + multiple - 1) / multiple * multiple);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void operator delete(void* memory, std::align_val_t) noexcept {
    std::free(memory);
}

void* operator new(size_t size) {
    bytesAllocated += size;
    void* memory = std::malloc(size != 0 ? size : 1);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, size_t) noexcept {
    std::free(memory);
}
