#include "model/signal_name_index.h"

#include <algorithm>
#include <bit>
#include <iterator>
#include <numeric>
#include <utility>

namespace tabrin {

namespace {

// The names themselves are compared where the keys are equal: names can be made of which thousands have one key.
bool IsLess(const SignalName& a, const SignalName& b) {
    return a.key != b.key ? a.key < b.key : NameOf(a) < NameOf(b);
}

std::vector<SignalName> Merged(const std::vector<SignalName>& a, const std::vector<SignalName>& b) {
    std::vector<SignalName> merged(a.size() + b.size());
    std::merge(a.begin(), a.end(), b.begin(), b.end(), merged.begin(), IsLess);
    return merged;
}

}  // namespace

uint64_t NameHash(std::string_view name) {
    NameInText whole(name, 0);
    while (!whole.IsAtEnd()) {
        whole.Extend();
    }
    return whole.Hash();
}

// Nothing is changed before all that needs memory is done.
void SortedSignalNames::Add(std::span<const SignalName> names) {
    std::vector<SignalName> merged(names.begin(), names.end());
    std::sort(merged.begin(), merged.end(), IsLess);
    auto firstMerged = runs_.end();
    while (firstMerged != runs_.begin() && std::prev(firstMerged)->Names().size() <= 2 * merged.size()) {
        --firstMerged;
        merged = Merged(firstMerged->Names(), merged);
    }
    Run run(std::move(merged));
    if (firstMerged == runs_.end()) {
        runs_.push_back(std::move(run));
    } else {
        *firstMerged = std::move(run);
        runs_.erase(std::next(firstMerged), runs_.end());
    }
}

SortedSignalNames::Run::Run(std::vector<SignalName> ordered) : names_(std::move(ordered)) {
    const auto firstBits = static_cast<unsigned>(std::bit_width(names_.size() | 1));
    otherBits_ = 64 - firstBits;
    begins_.resize((size_t{1} << firstBits) + 1);
    for (const SignalName& name : names_) {
        ++begins_[static_cast<size_t>(name.key >> otherBits_) + 1];
    }
    std::partial_sum(begins_.begin(), begins_.end(), begins_.begin());
}

// Few names have their first bits in common, unless a file is made for it; then it is still a search by halves.
size_t SortedSignalNames::Run::FirstOf(uint64_t key, std::string_view name) const {
    const auto isBefore = [&](const SignalName& candidate) {
        return candidate.key < key || (candidate.key == key && NameOf(candidate) < name);
    };
    const auto firstBits = static_cast<size_t>(key >> otherBits_);
    const size_t begin = begins_[firstBits];
    const auto some = std::span(names_).first(begins_[firstBits + 1]).subspan(begin);
    return begin + static_cast<size_t>(std::partition_point(some.begin(), some.end(), isBefore) - some.begin());
}

}  // namespace tabrin
