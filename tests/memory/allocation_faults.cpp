#include "memory/allocation_faults.h"

#include <cstdint>
#include <cstdlib>
#include <new>

namespace tabrin_test {

namespace {

struct Counting {
    bool armed = false;
    size_t number = 0;
    Shortage shortage = Shortage::Once;
    size_t count = 0;
    bool failed = false;
    bool thrown = false;
    size_t live = 0;
};

// Constant-initialized: memory is asked for before any constructor of this program has run.
constinit Counting counting;

bool FailsNow() {
    if (!counting.armed) {
        return false;
    }
    ++counting.count;
    const bool fails =
        counting.shortage == Shortage::Once ? counting.count == counting.number : counting.count >= counting.number;
    counting.failed = counting.failed || fails;
    return fails;
}

void* Allocate(size_t size) {
    void* const memory = FailsNow() ? nullptr : std::malloc(size != 0 ? size : 1);
    counting.live += memory != nullptr ? 1 : 0;
    return memory;
}

void Release(void* memory) {
    counting.live -= memory != nullptr ? 1 : 0;
    std::free(memory);
}

// In front of the memory stands where the block that it is part of begins.
void* AllocateAligned(size_t size, std::align_val_t alignment) {
    const auto boundary = static_cast<size_t>(alignment);
    auto* const block = static_cast<char*>(Allocate(size + boundary + sizeof(void*)));
    if (block == nullptr) {
        return nullptr;
    }
    const auto first = reinterpret_cast<uintptr_t>(block + sizeof(void*));
    const uintptr_t aligned = (first + boundary - 1) / boundary * boundary;
    auto** const memory = reinterpret_cast<void**>(aligned);
    memory[-1] = block;
    return memory;
}

void ReleaseAligned(void* memory) {
    Release(memory != nullptr ? static_cast<void**>(memory)[-1] : nullptr);
}

void* OrThrow(void* memory) {
    if (memory == nullptr) {
        counting.thrown = true;
        throw std::bad_alloc();
    }
    return memory;
}

}  // namespace

AllocationFault::AllocationFault(size_t number, Shortage shortage) {
    counting = {true, number, shortage, 0, false, false, counting.live};
}

AllocationFault::~AllocationFault() {
    counting.armed = false;
}

bool AllocationFault::HasFailed() const {
    return counting.failed;
}

bool AllocationFault::HasThrown() const {
    return counting.thrown;
}

size_t LiveAllocations() {
    return counting.live;
}

}  // namespace tabrin_test

using tabrin_test::Allocate;
using tabrin_test::AllocateAligned;
using tabrin_test::OrThrow;
using tabrin_test::Release;
using tabrin_test::ReleaseAligned;

void* operator new(size_t size) {
    return OrThrow(Allocate(size));
}
void* operator new[](size_t size) {
    return OrThrow(Allocate(size));
}
void* operator new(size_t size, const std::nothrow_t&) noexcept {
    return Allocate(size);
}
void* operator new[](size_t size, const std::nothrow_t&) noexcept {
    return Allocate(size);
}
void* operator new(size_t size, std::align_val_t alignment) {
    return OrThrow(AllocateAligned(size, alignment));
}
void* operator new[](size_t size, std::align_val_t alignment) {
    return OrThrow(AllocateAligned(size, alignment));
}
void* operator new(size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
    return AllocateAligned(size, alignment);
}
void* operator new[](size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
    return AllocateAligned(size, alignment);
}

void operator delete(void* memory) noexcept {
    Release(memory);
}
void operator delete[](void* memory) noexcept {
    Release(memory);
}
void operator delete(void* memory, size_t) noexcept {
    Release(memory);
}
void operator delete[](void* memory, size_t) noexcept {
    Release(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
    Release(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept {
    Release(memory);
}
void operator delete(void* memory, std::align_val_t) noexcept {
    ReleaseAligned(memory);
}
void operator delete[](void* memory, std::align_val_t) noexcept {
    ReleaseAligned(memory);
}
void operator delete(void* memory, size_t, std::align_val_t) noexcept {
    ReleaseAligned(memory);
}
void operator delete[](void* memory, size_t, std::align_val_t) noexcept {
    ReleaseAligned(memory);
}
void operator delete(void* memory, std::align_val_t, const std::nothrow_t&) noexcept {
    ReleaseAligned(memory);
}
void operator delete[](void* memory, std::align_val_t, const std::nothrow_t&) noexcept {
    ReleaseAligned(memory);
}
