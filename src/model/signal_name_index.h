// Finds the signals that a statement names, while a file is read.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "io/text_scan.h"
#include "model/can_message.h"

namespace tabrin {

// The signals of all messages of one identifier, by the name they were read with and by their identifier name. Names
// may hold blanks and may repeat. However many messages share the identifier, finding takes time only for what is
// found.
class SignalNameIndex {
public:
    // The signals of the message must all have been read.
    void Add(const CANMessage& message);

    // Calls `use` with every signal that was read with exactly this name.
    template <typename Use>
    void ForEachRead(std::string_view name, Use use) const {
        Visit(HashOf(name), name, NameKind::AsRead, Always(use));
    }

    // Calls `use` with every signal of exactly this identifier name, until it answers false.
    template <typename Use>
    void ForEachIdentified(std::string_view name, Use use) const {
        Visit(HashOf(name), name, NameKind::Identifier, use);
    }

    // Calls `use` with every signal whose name, as it was read, stands at `pos` of the text with a blank behind it:
    // with "My Sig 1" both My and My Sig. The hash grows with the text, so that the text is looked at once however many
    // names fit.
    template <typename Use>
    void ForEachReadAt(std::string_view text, size_t pos, Use use) const {
        uint64_t hash = kSeed;
        for (size_t end = pos; end < text.size(); ++end) {
            if (IsBlank(text[end])) {
                const std::string_view name = text.substr(pos, end - pos);
                Visit(hash, name, NameKind::AsRead, Always(use));
                if (name.size() >= longestWithBlanks_) {
                    return;
                }
            }
            hash = Extended(hash, text[end]);
        }
    }

private:
    enum class NameKind : uint8_t { AsRead, Identifier, Both };

    struct Entry {
        uint64_t hash;
        CANSignal* signal;
        NameKind kind;
    };
    static constexpr uint64_t kSeed = 0xCBF29CE484222325U;

    template <typename Use>
    static auto Always(Use& use) {
        return [&use](CANSignal& signal) {
            use(signal);
            return true;
        };
    }

    static uint64_t Extended(uint64_t hash, char c) { return (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3U; }
    static uint64_t HashOf(std::string_view name);

    void AddSignal(CANSignal& signal);
    void MergeLikeRuns();
    static bool IsLess(const Entry& a, const Entry& b);
    std::vector<Entry>::iterator Place(size_t index);
    [[nodiscard]] size_t FirstOf(size_t begin, size_t end, uint64_t hash) const;

    template <typename Use>
    void Visit(uint64_t hash, std::string_view name, NameKind kind, Use use) const {
        const auto field = kind == NameKind::AsRead ? &CANSignal::nameAsRead : &CANSignal::identifierName;
        size_t end = 0;
        for (size_t run = 0; run <= innerEnds_.size(); ++run) {
            const size_t begin = end;
            end = run < innerEnds_.size() ? innerEnds_[run] : entries_.size();
            for (size_t i = FirstOf(begin, end, hash); i < end && entries_[i].hash == hash; ++i) {
                const Entry& entry = entries_[i];
                const bool isOfKind = entry.kind == kind || entry.kind == NameKind::Both;
                if (isOfKind && (*entry.signal).*field == name && !use(*entry.signal)) {
                    return;
                }
            }
        }
    }

    // Runs, each ordered by the hash. The signals themselves are touched only where it fits. A signal is there by the name
    // it was read with; where its identifier name is another, a second time by that. Every message adds a run; runs of
    // like size are merged, so that there are never many.
    std::vector<Entry> entries_;
    std::vector<size_t> innerEnds_;  // of all runs but the last
    size_t longestWithBlanks_ = 0;
};

}  // namespace tabrin
