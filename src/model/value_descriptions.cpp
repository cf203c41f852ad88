#include "model/value_descriptions.h"

#include <array>
#include <iterator>
#include <new>
#include <numeric>
#include <string>

namespace tabrin {

namespace {

constexpr std::string_view kJoint = " - ";

// Lists up to this size are in the processor's caches.
constexpr size_t kShortList = 256;

// So few are not worth putting in order.
constexpr size_t kFew = 64;

using Descriptions = std::vector<ValueDescriptions::Described>;

// By counting the values of each of their bytes, from the last to the first. Those that are equal stay in their order.
// Sorting by comparison takes twice as long and more, as no processor can guess how comparisons at random come out.
void SortByValue(Descriptions& descriptions) {
    constexpr uint32_t kSignBit = 0x8000'0000;
    constexpr unsigned kBitsOfByte = 8;
    Descriptions sorted(descriptions.size());
    for (unsigned shift = 0; shift < 32; shift += kBitsOfByte) {
        const auto byteOf = [shift](const auto& description) -> size_t {
            return ((static_cast<uint32_t>(description.value) ^ kSignBit) >> shift) & 0xFFU;
        };
        std::array<size_t, 257> places{};
        for (const auto& description : descriptions) {
            ++places[byteOf(description) + 1];
        }
        std::partial_sum(places.begin(), places.end(), places.begin());
        for (const auto& description : descriptions) {
            sorted[places[byteOf(description)]++] = description;
        }
        descriptions.swap(sorted);
    }
}

}  // namespace

void ValueDescriptions::Add(int32_t value, std::string_view text) {
    List* const list = list_ != nullptr ? list_ : new (arena_->Allocate(sizeof(List), alignof(List))) List(*arena_);
    list->Add(*arena_, value, text);
    // Not before, as memory may run out.
    list_ = list;
}

void ValueDescriptions::AddAll(const Descriptions& descriptions) {
    auto next = descriptions.begin();
    while (next != descriptions.end() && (Size() < kShortList || list_->IsOutside(next->value))) {
        Add(next->value, next->text);
        ++next;
    }
    Descriptions rest(next, descriptions.end());
    if (rest.size() > kFew) {
        SortByValue(rest);
    }
    for (const auto& [value, text] : rest) {
        Add(value, text);
    }
}

void ValueDescriptions::List::Add(Arena& arena, int32_t value, std::string_view text) {
    const auto place = FindPlace(value);
    if (place != entries.end() && place->first == value) {
        // In one step, so that running out of memory leaves the old text.
        place->second.Append(arena, std::string(kJoint).append(text));
        lastAdded = place;
        return;
    }
    GrowingText description;
    description.Append(arena, text);
    lastAdded = entries.emplace_hint(place, value, description);
    if (last != entries.end() && value < last->first) {
        ++lastIndex;
    }
}

bool ValueDescriptions::List::IsOutside(int32_t value) const {
    return entries.empty() || value > entries.rbegin()->first || value < entries.begin()->first;
}

ValueDescriptions::Map::iterator ValueDescriptions::List::FindPlace(int32_t value) {
    // Most lists come in ascending order, and most others in descending order.
    if (IsOutside(value)) {
        return entries.empty() || value > entries.begin()->first ? entries.end() : entries.begin();
    }
    // What comes in no order is put in order before, and stands between those that are there already.
    if (lastAdded->first < value) {
        const auto next = std::next(lastAdded);
        if (value <= next->first) {
            return next;
        }
    }
    return entries.lower_bound(value);
}

const ValueDescriptions::Map& ValueDescriptions::Entries() const {
    static Arena nowhere;
    static const List kNone(nowhere);
    return list_ != nullptr ? list_->entries : kNone.entries;
}

const ValueDescriptions::Map::value_type& ValueDescriptions::At(size_t index) const {
    List& list = *list_;
    if (list.last == list.entries.end() || index < list.lastIndex / 2) {
        list.last = list.entries.begin();
        list.lastIndex = 0;
    }
    // Map iterators go both ways; advance takes a negative distance.
    std::advance(list.last,
                 static_cast<Map::difference_type>(index) - static_cast<Map::difference_type>(list.lastIndex));
    list.lastIndex = index;
    return *list.last;
}

}  // namespace tabrin
