#include "model/value_descriptions.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <limits>
#include <new>
#include <numeric>
#include <vector>

#include "io/copy_text.h"

namespace tabrin {

namespace {

constexpr std::string_view kJoint = " - ";

GrowingText* MakeGrown(Arena& arena, std::string_view text) {
    auto* const grown = new (arena.Allocate(sizeof(GrowingText), alignof(GrowingText))) GrowingText;
    grown->Append(arena, text);
    return grown;
}

using Described = ValueDescriptions::Described;

bool IsAscending(std::span<const Described> descriptions) {
    return std::is_sorted(descriptions.begin(), descriptions.end(),
                          [](const Described& a, const Described& b) { return a.value < b.value; });
}

// Not where two are equal, as these stay in their order.
bool IsDescending(std::span<const Described> descriptions) {
    return std::adjacent_find(descriptions.begin(), descriptions.end(), [](const Described& a, const Described& b) {
               return a.value <= b.value;
           }) == descriptions.end();
}

// By counting the values of each of their bytes, from the last to the first. Those that are equal stay in their order.
// Sorting by comparison takes twice as long and more, as no processor can guess how comparisons at random come out.
void SortByValue(std::span<Described> descriptions) {
    constexpr uint32_t kSignBit = 0x8000'0000;
    constexpr unsigned kBitsOfByte = 8;
    std::vector<Described> sorted(descriptions.size());
    std::span<Described> from = descriptions;
    std::span<Described> into = sorted;
    for (unsigned shift = 0; shift < 32; shift += kBitsOfByte) {
        const auto byteOf = [shift](const Described& description) -> size_t {
            return ((static_cast<uint32_t>(description.value) ^ kSignBit) >> shift) & 0xFFU;
        };
        std::array<size_t, 257> places{};
        for (const Described& description : from) {
            ++places[byteOf(description) + 1];
        }
        std::partial_sum(places.begin(), places.end(), places.begin());
        for (const Described& description : from) {
            into[places[byteOf(description)]++] = description;
        }
        std::swap(from, into);
    }
}

}  // namespace

// The entry and what it has elsewhere stay as they are when memory runs out.
void ValueDescriptions::Entry::Join(Arena& arena, std::string_view more) {
    const bool isElsewhere = size == kElsewhere;
    GrowingText* const joined = isElsewhere ? grown : MakeGrown(arena, View().text);
    GrowingText longer = *joined;
    longer.Append(arena, kJoint);
    longer.Append(arena, more);
    *joined = longer;
    grown = joined;
    size = kElsewhere;
}

ValueDescriptions::Entry ValueDescriptions::MakeEntry(Arena& arena, const Described& description) {
    Entry entry{description.value, Entry::kElsewhere, {}};
    if (description.text.size() < Entry::kElsewhere) {
        entry.size = static_cast<uint32_t>(description.text.size());
        entry.text = arena.Keep(description.text).data();
    } else {
        entry.grown = MakeGrown(arena, description.text);
    }
    return entry;
}

ValueDescriptions::Entry* ValueDescriptions::MakeEntries(Arena& arena, size_t count) {
    return reinterpret_cast<Entry*>(arena.Allocate(count * sizeof(Entry), alignof(Entry)));
}

uint32_t ValueDescriptions::Block::FindPlace(int32_t value) const {
    // Most lists come in ascending order.
    if (size == 0 || entries[size - 1].value < value) {
        return size;
    }
    const auto* const place = std::lower_bound(entries, entries + size, value,
                                               [](const Entry& entry, int32_t wanted) { return entry.value < wanted; });
    return static_cast<uint32_t>(place - entries);
}

void ValueDescriptions::Block::Insert(uint32_t place, const Entry& entry) {
    std::copy_backward(entries + place, entries + size, entries + size + 1);
    entries[place] = entry;
    ++size;
}

// --- Short lists

ValueDescriptions::List* ValueDescriptions::MakeList(Arena& arena, size_t capacity, size_t textSize) {
    char* const memory = arena.Allocate(sizeof(List) + capacity * sizeof(Entry) + textSize, alignof(List));
    auto* const entries = reinterpret_cast<Entry*>(memory + sizeof(List));
    return new (memory) List{{0, static_cast<uint32_t>(capacity), entries}, nullptr};
}

// The usual list: few descriptions, which come in ascending order. In one piece of memory, with the texts at its end.
ValueDescriptions::List* ValueDescriptions::MakeUsualList(Arena& arena, std::span<const Described> descriptions) {
    size_t textSize = 0;
    bool isAscending = descriptions.size() <= Block::kMost;
    auto previous = int64_t{std::numeric_limits<int32_t>::min()} - 1;
    for (const auto& [value, text] : descriptions) {
        isAscending &= value > previous;
        previous = value;
        textSize += text.size();
    }
    if (!isAscending || textSize >= Entry::kElsewhere) {
        return nullptr;
    }
    List* const list = MakeList(arena, descriptions.size(), textSize);
    Entry* entry = list->block.entries;
    auto* end = reinterpret_cast<char*>(entry + descriptions.size());
    for (const auto& [value, text] : descriptions) {
        *entry++ = {value, static_cast<uint32_t>(text.size()), {end}};
        CopyText(end, text);
        end += text.size();
    }
    list->block.size = list->block.capacity;
    return list;
}

void ValueDescriptions::AddAll(std::span<Described> descriptions) {
    if (IsDescending(descriptions)) {
        std::reverse(descriptions.begin(), descriptions.end());
    }
    if (IsEmpty()) {
        List* const usual = MakeUsualList(*arena_, descriptions);
        if (usual != nullptr) {
            list_ = usual;
            size_ = descriptions.size();
            return;
        }
    }
    if (descriptions.size() > Block::kMost && !IsAscending(descriptions)) {
        SortByValue(descriptions);
    }
    AddInTurn(descriptions);
}

void ValueDescriptions::AddInTurn(std::span<const Described> descriptions) {
    if (list_ == nullptr) {
        list_ = MakeList(*arena_, std::min<size_t>(descriptions.size(), Block::kMost), 0);
    }
    for (const Described& description : descriptions) {
        if (list_->Add(*arena_, description)) {
            ++size_;
        }
    }
}

bool ValueDescriptions::List::Add(Arena& arena, const Described& description) {
    if (blocks == nullptr && block.size == Block::kMost) {
        blocks = new (arena.Allocate(sizeof(Blocks), alignof(Blocks))) Blocks(arena, block);
    }
    if (blocks != nullptr) {
        return blocks->Add(arena, description);
    }
    const uint32_t place = block.FindPlace(description.value);
    if (place != block.size && block.entries[place].value == description.value) {
        block.entries[place].Join(arena, description.text);
        return false;
    }
    const Entry entry = MakeEntry(arena, description);
    if (block.size == block.capacity) {
        Grow(arena);
    }
    block.Insert(place, entry);
    return true;
}

void ValueDescriptions::List::Grow(Arena& arena) {
    constexpr uint32_t kLeast = 4;
    const uint32_t larger = std::clamp(2 * block.capacity, kLeast, Block::kMost);
    auto* const entries = MakeEntries(arena, larger);
    std::copy_n(block.entries, block.size, entries);
    block.entries = entries;
    block.capacity = larger;
}

// --- Long lists

ValueDescriptions::Blocks::Blocks(Arena& arena, const Block& first) : map(ArenaAllocator<Map::value_type>(arena)) {
    lastAsked = lastAdded = map.emplace(std::numeric_limits<int32_t>::min(), first).first;
}

ValueDescriptions::Blocks::Map::iterator ValueDescriptions::Blocks::FindBlock(int32_t value) {
    // Mostly the one before came into the same block.
    if (lastAdded->first <= value) {
        const auto next = std::next(lastAdded);
        if (next == map.end() || value < next->first) {
            return lastAdded;
        }
    }
    return std::prev(map.upper_bound(value));
}

bool ValueDescriptions::Blocks::Add(Arena& arena, const Described& description) {
    const auto [value, text] = description;
    auto found = FindBlock(value);
    uint32_t place = found->second.FindPlace(value);
    if (place != found->second.size && found->second.entries[place].value == value) {
        found->second.entries[place].Join(arena, text);
        return false;
    }
    const Entry entry = MakeEntry(arena, description);
    if (found->second.size == Block::kMost) {
        found = Split(arena, found, value);
        place = found->second.FindPlace(value);
    }
    found->second.Insert(place, entry);
    lastAdded = found;
    if (value < lastAsked->first) {
        ++numBefore;
    }
    return true;
}

// The result is the half that the value belongs to. Where it is beyond all others, it begins a block, so that in
// ascending and in descending order blocks are filled.
ValueDescriptions::Blocks::Map::iterator ValueDescriptions::Blocks::Split(Arena& arena, Map::iterator full,
                                                                          int32_t value) {
    Block& lower = full->second;
    const auto next = std::next(full);
    uint32_t half = lower.size / 2;
    if (next == map.end() && value > lower.entries[lower.size - 1].value) {
        half = lower.size;
    } else if (full == map.begin() && value < lower.entries[0].value) {
        half = 0;
    }
    const int32_t border = half < lower.size ? lower.entries[half].value : value;
    const Block upper{lower.size - half, Block::kMost, MakeEntries(arena, Block::kMost)};
    std::copy_n(lower.entries + half, upper.size, upper.entries);
    const auto behind = map.emplace_hint(next, border, upper);
    lower.size = half;
    return value < border ? full : behind;
}

const ValueDescriptions::Entry& ValueDescriptions::Blocks::At(size_t index) {
    if (index < numBefore / 2) {
        lastAsked = map.begin();
        numBefore = 0;
    }
    for (; index < numBefore; numBefore -= lastAsked->second.size) {
        --lastAsked;
    }
    for (; index - numBefore >= lastAsked->second.size; ++lastAsked) {
        numBefore += lastAsked->second.size;
    }
    return lastAsked->second.entries[index - numBefore];
}

}  // namespace tabrin
