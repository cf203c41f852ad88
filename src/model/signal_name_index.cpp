#include "model/signal_name_index.h"

#include <algorithm>

namespace tabrin {

void SignalNameIndex::Add(const CANMessage& message) {
    const size_t begin = entries_.size();
    if (begin == 0) {
        entries_.reserve(message.signals.size());
    }
    for (const auto& signal : message.signals) {
        AddSignal(*signal);
    }
    std::sort(Place(begin), entries_.end(), IsLess);
    innerEnds_.push_back(begin);
    MergeLikeRuns();
}

void SignalNameIndex::AddSignal(CANSignal& signal) {
    const std::string_view name = signal.nameAsRead;
    if (name == signal.identifierName) {
        AddEntry(name, NameKind::Both, signal);
        return;
    }
    AddEntry(name, NameKind::AsRead, signal);
    AddEntry(signal.identifierName, NameKind::Identifier, signal);
    if (std::any_of(name.begin(), name.end(), IsBlank)) {
        longestWithBlanks_ = std::max(longestWithBlanks_, name.size());
    }
}

void SignalNameIndex::AddEntry(std::string_view name, NameKind kind, CANSignal& signal) {
    entries_.push_back({KeyOf(HashOf(name), kind), &signal});
}

void SignalNameIndex::MergeLikeRuns() {
    while (!innerEnds_.empty()) {
        const size_t middle = innerEnds_.back();
        const size_t begin = innerEnds_.size() > 1 ? innerEnds_[innerEnds_.size() - 2] : 0;
        if (middle - begin > 2 * (entries_.size() - middle)) {
            return;
        }
        std::inplace_merge(Place(begin), Place(middle), entries_.end(), IsLess);
        innerEnds_.pop_back();
    }
}

bool SignalNameIndex::IsLess(const Entry& a, const Entry& b) {
    return a.key < b.key;
}

std::vector<SignalNameIndex::Entry>::iterator SignalNameIndex::Place(size_t index) {
    return entries_.begin() + static_cast<std::ptrdiff_t>(index);
}

uint64_t SignalNameIndex::HashOf(std::string_view name) {
    uint64_t hash = kSeed;
    for (const char c : name) {
        hash = Extended(hash, c);
    }
    return hash;
}

size_t SignalNameIndex::FirstOf(size_t begin, size_t end, uint64_t key) const {
    while (begin < end) {
        const size_t middle = begin + (end - begin) / 2;
        if (entries_[middle].key < key) {
            begin = middle + 1;
        } else {
            end = middle;
        }
    }
    return begin;
}

}  // namespace tabrin
