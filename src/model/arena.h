// Memory for the objects and texts of a database. Single pieces are not given back; all of it goes in one step.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <string_view>
#include <vector>

#include "io/copy_text.h"
#include "io/memory_block.h"

namespace tabrin {

// A database consists of many small pieces that live and die together. Each is taken off the front of a block, in a few
// instructions and without gaps. (Not the monotonic resource of the standard library: it cannot take back what a faulty
// statement used, and its blocks grow with what it holds.)
class Arena {
public:
    // Memory that stays until Clear. `alignment` is that of a fundamental type.
    char* Allocate(size_t size, size_t alignment) {
        const size_t padding = (0 - reinterpret_cast<uintptr_t>(free_)) & (alignment - 1);
        if (padding + size > static_cast<size_t>(end_ - free_)) {
            return AllocateInNewBlock(size);
        }
        char* piece = free_ + padding;
        free_ = piece + size;
        return piece;
    }

    // A copy of the text that stays until Clear.
    std::string_view Keep(std::string_view text) {
        if (text.empty()) {
            return {};
        }
        char* copy = Allocate(text.size(), 1);
        CopyText(copy, text);
        return {copy, text.size()};
    }

    void Clear() { Rewind({}); }

private:
    friend class ArenaScope;

    struct Mark {
        size_t numBlocks = 0;
        char* free = nullptr;
        char* end = nullptr;
    };

    char* AllocateInNewBlock(size_t size);
    char* AddBlock(size_t size);
    void Rewind(const Mark& mark);

    std::vector<MemoryBlock> blocks_;
    size_t current_ = 0;  // the block that small pieces come from, once there is one
    char* free_ = nullptr;
    char* end_ = nullptr;
    size_t nextBlockSize_ = 0;
};

// Gives back what is allocated in its lifetime, unless it is told to keep it. What lives in that memory must be gone by
// then.
class ArenaScope {
public:
    explicit ArenaScope(Arena& arena) : arena_(arena), mark_{arena.blocks_.size(), arena.free_, arena.end_} {}
    ~ArenaScope() {
        if (!kept_) {
            arena_.Rewind(mark_);
        }
    }
    ArenaScope(const ArenaScope&) = delete;
    ArenaScope& operator=(const ArenaScope&) = delete;
    ArenaScope(ArenaScope&&) = delete;
    ArenaScope& operator=(ArenaScope&&) = delete;

    void Keep() { kept_ = true; }

private:
    Arena& arena_;
    Arena::Mark mark_;
    bool kept_ = false;
};

// Lets containers and shared objects of the standard library live in an arena. Names and conversions are those that the
// library asks of an allocator.
// NOLINTBEGIN(readability-identifier-naming, google-explicit-constructor)
template <typename T>
class ArenaAllocator {
public:
    using value_type = T;

    explicit ArenaAllocator(Arena& arena) : arena_(&arena) {}
    template <typename Other>
    ArenaAllocator(const ArenaAllocator<Other>& other) : arena_(&other.GetArena()) {}

    T* allocate(size_t count) { return reinterpret_cast<T*>(arena_->Allocate(count * sizeof(T), alignof(T))); }
    void deallocate(T*, size_t) {}

    [[nodiscard]] Arena& GetArena() const { return *arena_; }

    template <typename Other>
    bool operator==(const ArenaAllocator<Other>& other) const {
        return arena_ == &other.GetArena();
    }

private:
    Arena* arena_;
};
// NOLINTEND(readability-identifier-naming, google-explicit-constructor)

// An object in an arena, made for that arena.
template <typename T>
std::shared_ptr<T> MakeInArena(Arena& arena) {
    return std::allocate_shared<T>(ArenaAllocator<T>(arena), arena);
}

// The same for an object that need not be destroyed. The pointers to it do not count themselves: to go through a hundred
// thousand objects, long since cold, for the sake of their counts takes most of the time of clearing a database.
template <typename T>
std::shared_ptr<T> PlaceInArena(Arena& arena) {
    auto* object = new (arena.Allocate(sizeof(T), alignof(T))) T(arena);
    return std::shared_ptr<T>(std::shared_ptr<void>(), object);
}

// A text in an arena that may grow. The room doubles, so that appending takes time in proportion to what is appended.
class GrowingText {
public:
    void Append(Arena& arena, std::string_view text);
    void Clear() { *this = GrowingText(); }

    [[nodiscard]] std::string_view View() const { return {data_, size_}; }
    [[nodiscard]] bool IsEmpty() const { return size_ == 0; }

    friend bool operator==(const GrowingText& a, std::string_view b) { return a.View() == b; }

private:
    char* data_ = nullptr;
    size_t size_ = 0;
    size_t capacity_ = 0;
};

}  // namespace tabrin
