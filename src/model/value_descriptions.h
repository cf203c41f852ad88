// The texts of a signal's raw values.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <span>
#include <string_view>
#include <utility>

#include "model/arena.h"

namespace tabrin {

// Ordered by the signed value. Nothing in it is ever replaced: a value described again gets the texts joined by " - ".
class ValueDescriptions {
public:
    struct Described {
        int32_t value;
        std::string_view text;
    };

    explicit ValueDescriptions(Arena& arena) : arena_(&arena) {}

    void Add(int32_t value, std::string_view text) {
        const Described description{value, text};
        AddInTurn({&description, 1});
    }
    // As one after the other. Those that come in no order may be put in order first, with those of one value in their
    // order: in a long list values at random would each wait for memory in the search for their place.
    void AddAll(std::span<Described> descriptions);
    void Clear() {
        list_ = nullptr;
        size_ = 0;
    }

    [[nodiscard]] size_t Size() const { return size_; }
    [[nodiscard]] bool IsEmpty() const { return size_ == 0; }

    // Number `index` in order; `index` must be below Size. Asking for one after the other takes constant time each.
    [[nodiscard]] Described At(size_t index) const {
        return (list_->blocks != nullptr ? list_->blocks->At(index) : list_->block.entries[index]).View();
    }

    [[nodiscard]] Arena& GetArena() const { return *arena_; }

private:
    // A text that is long, or to which others were joined, is elsewhere.
    struct Entry {
        static constexpr uint32_t kElsewhere = 0x1'0000;  // in place of its size

        [[nodiscard]] Described View() const {
            return {value, size != kElsewhere ? std::string_view(text, size) : grown->View()};
        }
        void Join(Arena& arena, std::string_view more);

        int32_t value;
        uint32_t size;
        union {
            const char* text;
            GrowingText* grown;
        };
    };

    // Entries in order. So few that to make room between them takes little time.
    struct Block {
        static constexpr uint32_t kMost = 128;

        // The first entry whose value is not below this one.
        [[nodiscard]] uint32_t FindPlace(int32_t value) const;
        void Insert(uint32_t place, const Entry& entry);

        uint32_t size;
        uint32_t capacity;
        Entry* entries;
    };

    // Each block is found by a number that is not above its values, nor above those that are to come into it.
    struct Blocks {
        using Map = std::map<int32_t, Block, std::less<>, ArenaAllocator<std::pair<const int32_t, Block>>>;

        Blocks(Arena& arena, const Block& first);

        // As that of List.
        bool Add(Arena& arena, const Described& description);
        [[nodiscard]] const Entry& At(size_t index);

        Map map;
        // The block that was asked last, the number of entries in front of it, and the block that got the last one.
        Map::iterator lastAsked;
        size_t numBefore = 0;
        Map::iterator lastAdded;

    private:
        Map::iterator FindBlock(int32_t value);
        Map::iterator Split(Arena& arena, Map::iterator full, int32_t value);
    };

    struct List {
        // False when the value was there and got more text.
        bool Add(Arena& arena, const Described& description);
        void Grow(Arena& arena);

        Block block;     // the only one
        Blocks* blocks;  // when there are more; `block` is one of them then, and no longer up to date
    };

    static Entry MakeEntry(Arena& arena, const Described& description);
    static Entry* MakeEntries(Arena& arena, size_t count);
    void AddInTurn(std::span<const Described> descriptions);
    static List* MakeList(Arena& arena, size_t capacity, size_t textSize);
    static List* MakeUsualList(Arena& arena, std::span<const Described> descriptions);

    Arena* arena_;
    // Most signals have none. In the arena, where nothing needs to be destroyed.
    List* list_ = nullptr;
    // Here, as it is asked for of every signal: to look at the list costs waiting for memory.
    size_t size_ = 0;
};

}  // namespace tabrin
