#include "model/signal_name_index.h"

#include <algorithm>

namespace tabrin {

uint64_t NameHash(std::string_view name) {
    NameInText whole(name, 0);
    while (!whole.IsAtEnd()) {
        whole.Extend();
    }
    return whole.Hash();
}

void SortedSignalNames::Add(std::span<const SignalName> names) {
    const size_t begin = names_.size();
    names_.insert(names_.end(), names.begin(), names.end());
    std::sort(Place(begin), names_.end(), IsLess);
    innerEnds_.push_back(begin);
    MergeLikeRuns();
}

void SortedSignalNames::MergeLikeRuns() {
    while (!innerEnds_.empty()) {
        const size_t middle = innerEnds_.back();
        const size_t begin = innerEnds_.size() > 1 ? innerEnds_[innerEnds_.size() - 2] : 0;
        if (middle - begin > 2 * (names_.size() - middle)) {
            return;
        }
        std::inplace_merge(Place(begin), Place(middle), names_.end(), IsLess);
        innerEnds_.pop_back();
    }
}

// The names themselves are compared where the keys are equal: names can be made of which thousands have one key.
bool SortedSignalNames::IsLess(const SignalName& a, const SignalName& b) {
    return a.key != b.key ? a.key < b.key : NameOf(a) < NameOf(b);
}

std::vector<SignalName>::iterator SortedSignalNames::Place(size_t index) {
    return names_.begin() + static_cast<std::ptrdiff_t>(index);
}

size_t SortedSignalNames::FirstOf(size_t begin, size_t end, uint64_t key, std::string_view name) const {
    const auto isBefore = [&](const SignalName& candidate) {
        return candidate.key < key || (candidate.key == key && NameOf(candidate) < name);
    };
    // Behind the other key of a name it is the first one, as a rule.
    if (begin < end && !isBefore(names_[begin])) {
        return begin;
    }
    while (begin < end) {
        const size_t middle = begin + (end - begin) / 2;
        if (isBefore(names_[middle])) {
            begin = middle + 1;
        } else {
            end = middle;
        }
    }
    return begin;
}

}  // namespace tabrin
