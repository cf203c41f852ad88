#include "model/signal_name_index.h"

#include <algorithm>
#include <numeric>

namespace tabrin {

namespace {

// The names themselves are compared where the keys are equal: names can be made of which thousands have one key.
bool IsLess(const SignalName& a, const SignalName& b) {
    return a.key != b.key ? a.key < b.key : NameOf(a) < NameOf(b);
}

}  // namespace

uint64_t NameHash(std::string_view name) {
    NameInText whole(name, 0);
    while (!whole.IsAtEnd()) {
        whole.Extend();
    }
    return whole.Hash();
}

void SortedSignalNames::Add(std::span<const SignalName> names) {
    runs_.emplace_back(names).Sort();
    while (runs_.size() > 1 && runs_[runs_.size() - 2].names.size() <= 2 * runs_.back().names.size()) {
        runs_[runs_.size() - 2].Merge(runs_.back());
        runs_.pop_back();
    }
}

void SortedSignalNames::Run::Sort() {
    std::sort(names.begin(), names.end(), IsLess);
    NoteBegins();
}

void SortedSignalNames::Run::Merge(const Run& other) {
    const auto middle = static_cast<std::ptrdiff_t>(names.size());
    names.insert(names.end(), other.names.begin(), other.names.end());
    std::inplace_merge(names.begin(), names.begin() + middle, names.end(), IsLess);
    NoteBegins();
}

void SortedSignalNames::Run::NoteBegins() {
    const auto firstBits = static_cast<unsigned>(std::bit_width(names.size() | 1));
    otherBits_ = 64 - firstBits;
    begins_.assign((size_t{1} << firstBits) + 1, 0);
    for (const SignalName& name : names) {
        ++begins_[static_cast<size_t>(name.key >> otherBits_) + 1];
    }
    std::partial_sum(begins_.begin(), begins_.end(), begins_.begin());
}

// Few names have the same first bits, but for those that were made to.
size_t SortedSignalNames::Run::FirstOf(uint64_t key, std::string_view name) const {
    const auto firstBits = static_cast<size_t>(key >> otherBits_);
    const auto place = std::partition_point(
        names.begin() + begins_[firstBits], names.begin() + begins_[firstBits + 1], [&](const SignalName& candidate) {
            return candidate.key < key || (candidate.key == key && NameOf(candidate) < name);
        });
    return static_cast<size_t>(place - names.begin());
}

}  // namespace tabrin
