// The texts of a signal's raw values.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <string_view>
#include <utility>
#include <vector>

#include "model/arena.h"

namespace tabrin {

// Ordered by the signed value. Nothing in it is ever replaced: a value described again gets the texts joined by " - ".
class ValueDescriptions {
public:
    using Map = std::map<int32_t, GrowingText, std::less<>, ArenaAllocator<std::pair<const int32_t, GrowingText>>>;

    // What an entry is made of.
    struct Described {
        int32_t value;
        std::string_view text;
    };

    explicit ValueDescriptions(Arena& arena) : arena_(&arena) {}

    void Add(int32_t value, std::string_view text);
    // As one after the other. But what comes in no order is put in order first: in a long list values at random would
    // each wait for memory in the search for their place, and once more whenever the list is walked through.
    void AddAll(const std::vector<Described>& descriptions);
    void Clear() { list_ = nullptr; }

    [[nodiscard]] const Map& Entries() const;
    [[nodiscard]] size_t Size() const { return list_ != nullptr ? list_->entries.size() : 0; }

    // Without looking at the list, which costs waiting for memory.
    [[nodiscard]] bool IsEmpty() const { return list_ == nullptr; }

    // Entry number `index` in order; `index` must be below Size. Asking for one after the other takes constant time
    // each, because the place of the last one asked for is remembered.
    [[nodiscard]] const Map::value_type& At(size_t index) const;

    [[nodiscard]] Arena& GetArena() const { return *arena_; }

private:
    struct List {
        explicit List(Arena& arena) : entries(ArenaAllocator<Map::value_type>(arena)) {}

        void Add(Arena& arena, int32_t value, std::string_view text);
        // Below or above all that are there.
        [[nodiscard]] bool IsOutside(int32_t value) const;
        // The first entry whose value is not below this one.
        [[nodiscard]] Map::iterator FindPlace(int32_t value);

        Map entries;
        Map::iterator lastAdded = entries.end();
        size_t lastIndex = 0;
        Map::const_iterator last = entries.end();
    };

    Arena* arena_;
    // Most signals have none; one that is there is never empty. In the arena, where nothing needs to be destroyed.
    List* list_ = nullptr;
};

}  // namespace tabrin
