#include "model/value_descriptions.h"

#include <iterator>
#include <new>
#include <string>

namespace tabrin {

namespace {

constexpr std::string_view kJoint = " - ";

}  // namespace

void ValueDescriptions::Add(int32_t value, std::string_view text) {
    if (list_ == nullptr) {
        list_ = new (arena_->Allocate(sizeof(List), alignof(List))) List(*arena_);
    }
    Map& entries = list_->entries;
    // Most lists come in ascending order.
    const bool isGreatest = entries.empty() || value > entries.rbegin()->first;
    const auto place = isGreatest ? entries.end() : entries.lower_bound(value);
    if (place != entries.end() && place->first == value) {
        // In one step, so that running out of memory leaves the old text.
        place->second.Append(*arena_, std::string(kJoint).append(text));
        return;
    }
    GrowingText description;
    description.Append(*arena_, text);
    entries.emplace_hint(place, value, description);
    if (list_->last != entries.end() && value < list_->last->first) {
        ++list_->lastIndex;
    }
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
