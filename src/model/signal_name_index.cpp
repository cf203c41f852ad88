#include "model/signal_name_index.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace tabrin {

void SignalNameIndex::Add(const CANMessage& message) {
    const auto byHash = [](const Entry& a, const Entry& b) { return a.hash < b.hash; };
    Run run;
    run.reserve(message.signals.size());
    for (const auto& signal : message.signals) {
        const std::string_view name = signal->nameAsRead;
        if (name == signal->identifierName) {
            run.push_back({HashOf(name), signal.get(), NameKind::Both});
            continue;
        }
        run.push_back({HashOf(name), signal.get(), NameKind::AsRead});
        run.push_back({HashOf(signal->identifierName), signal.get(), NameKind::Identifier});
        if (std::any_of(name.begin(), name.end(), IsBlank)) {
            longestWithBlanks_ = std::max(longestWithBlanks_, name.size());
        }
    }
    std::sort(run.begin(), run.end(), byHash);
    while (!runs_.empty() && runs_.back().size() <= 2 * run.size()) {
        Run merged;
        merged.reserve(runs_.back().size() + run.size());
        std::merge(runs_.back().begin(), runs_.back().end(), run.begin(), run.end(), std::back_inserter(merged),
                   byHash);
        runs_.pop_back();
        run = std::move(merged);
    }
    if (!run.empty()) {
        runs_.push_back(std::move(run));
    }
}

uint64_t SignalNameIndex::HashOf(std::string_view name) {
    uint64_t hash = kSeed;
    for (const char c : name) {
        hash = Extended(hash, c);
    }
    return hash;
}

size_t SignalNameIndex::FirstOf(const Run& run, uint64_t hash) {
    const auto first =
        std::partition_point(run.begin(), run.end(), [hash](const Entry& entry) { return entry.hash < hash; });
    return static_cast<size_t>(first - run.begin());
}

}  // namespace tabrin
