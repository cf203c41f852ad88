#include "model/signal_name_index.h"

#include <algorithm>

namespace tabrin {

SignalNameIndex::SignalNameIndex(const CANMessage& message) {
    signals_.reserve(message.signals.size());
    for (const auto& signal : message.signals) {
        const std::string_view name = signal->nameAsRead;
        signals_.emplace(HashOf(name), signal.get());
        if (std::any_of(name.begin(), name.end(), IsBlank)) {
            longestWithBlanks_ = std::max(longestWithBlanks_, name.size());
        }
    }
}

uint64_t SignalNameIndex::HashOf(std::string_view name) {
    uint64_t hash = kSeed;
    for (const char c : name) {
        hash = Extended(hash, c);
    }
    return hash;
}

}  // namespace tabrin
