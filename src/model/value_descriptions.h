// The texts of a signal's raw values.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <string_view>
#include <utility>

#include "model/arena.h"

namespace tabrin {

// Ordered by the signed value. Nothing in it is ever replaced: a value described again gets the texts joined by " - ".
class ValueDescriptions {
public:
    using Map = std::map<int32_t, GrowingText, std::less<>, ArenaAllocator<std::pair<const int32_t, GrowingText>>>;

    explicit ValueDescriptions(Arena& arena) : arena_(&arena) {}

    void Add(int32_t value, std::string_view text);
    void Clear() { list_ = nullptr; }

    [[nodiscard]] const Map& Entries() const;
    [[nodiscard]] size_t Size() const { return list_ != nullptr ? list_->entries.size() : 0; }

    // Entry number `index` in order; `index` must be below Size. Asking for one after the other takes constant time
    // each, because the place of the last one asked for is remembered.
    [[nodiscard]] const Map::value_type& At(size_t index) const;

    [[nodiscard]] Arena& GetArena() const { return *arena_; }

private:
    struct List {
        explicit List(Arena& arena) : entries(ArenaAllocator<Map::value_type>(arena)) {}

        Map entries;
        size_t lastIndex = 0;
        Map::const_iterator last = entries.end();
    };

    Arena* arena_;
    // Most signals have none. In the arena, where nothing needs to be destroyed.
    List* list_ = nullptr;
};

}  // namespace tabrin
