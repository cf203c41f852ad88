#include "work/work_counter.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

uint64_t workDone = 0;
uint64_t bytesAllocated = 0;

constexpr size_t kBytesAtOnce = 16;

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

// The linker puts these in the place of the functions of the C library, which work block by block without being counted.
extern "C" {
void* __real_memchr(const void* text, int c, size_t size);            // NOLINT(bugprone-reserved-identifier)
void* __real_memmove(void* target, const void* source, size_t size);  // NOLINT(bugprone-reserved-identifier)
void* __real_memcpy(void* target, const void* source, size_t size);   // NOLINT(bugprone-reserved-identifier)

void* __wrap_memchr(const void* text, int c, size_t size) {  // NOLINT(bugprone-reserved-identifier)
    void* found = __real_memchr(text, c, size);
    const size_t looked = found != nullptr ? static_cast<char*>(found) - static_cast<const char*>(text) : size;
    workDone += looked / kBytesAtOnce;
    return found;
}

void* __wrap_memmove(void* target, const void* source, size_t size) {  // NOLINT(bugprone-reserved-identifier)
    workDone += size / kBytesAtOnce;
    return __real_memmove(target, source, size);
}

void* __wrap_memcpy(void* target, const void* source, size_t size) {  // NOLINT(bugprone-reserved-identifier)
    workDone += size / kBytesAtOnce;
    return __real_memcpy(target, source, size);
}
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
