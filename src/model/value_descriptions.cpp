#include "model/value_descriptions.h"

#include <iterator>

namespace tabrin {

namespace {

constexpr std::string_view kJoint = " - ";

}  // namespace

void ValueDescriptions::Add(int32_t value, std::string_view text) {
    // Most lists come in ascending order.
    const bool isGreatest = entries_.empty() || value > entries_.rbegin()->first;
    const auto place = isGreatest ? entries_.end() : entries_.lower_bound(value);
    if (place != entries_.end() && place->first == value) {
        // In one step, so that running out of memory leaves the old text.
        place->second.append(std::string(kJoint).append(text));
        return;
    }
    entries_.emplace_hint(place, value, text);
    if (last_ != entries_.end() && value < last_->first) {
        ++lastIndex_;
    }
}

void ValueDescriptions::Clear() {
    entries_.clear();
    last_ = entries_.end();
}

const ValueDescriptions::Map::value_type& ValueDescriptions::At(size_t index) const {
    if (last_ == entries_.end() || index < lastIndex_ / 2) {
        last_ = entries_.begin();
        lastIndex_ = 0;
    }
    // Map iterators go both ways; advance takes a negative distance.
    std::advance(last_, static_cast<Map::difference_type>(index) - static_cast<Map::difference_type>(lastIndex_));
    lastIndex_ = index;
    return *last_;
}

}  // namespace tabrin
