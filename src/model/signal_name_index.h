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
        Visit(HashOf(name), name, NameKind::AsRead, NameKind::Both, Always(use));
    }

    // Calls `use` with every signal of exactly this identifier name, until it answers false.
    template <typename Use>
    void ForEachIdentified(std::string_view name, Use use) const {
        Visit(HashOf(name), name, NameKind::Both, NameKind::Identifier, use);
    }

    // Calls `use` with every signal whose name, as it was read, stands at `pos` of the text with a blank behind it:
    // with "My Sig 1" both My and My Sig. When it answers false, the others of the same name are left out. The hash
    // grows with the text, so that the text is looked at once however many names fit.
    template <typename Use>
    void ForEachReadAt(std::string_view text, size_t pos, Use use) const {
        uint64_t hash = kSeed;
        for (size_t end = pos; end < text.size(); ++end) {
            if (IsBlank(text[end])) {
                const std::string_view name = text.substr(pos, end - pos);
                Visit(hash, name, NameKind::AsRead, NameKind::Both, use);
                if (name.size() >= longestWithBlanks_) {
                    return;
                }
            }
            hash = Extended(hash, text[end]);
        }
    }

private:
    // What a name is to a signal. Both is in the middle: names that were read reach up to it, identifiers begin there.
    enum class NameKind : uint8_t { AsRead, Both, Identifier };

    struct Entry {
        uint64_t key;
        CANSignal* signal;
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
    // The kind takes the place of the last bits of the hash, so that those of one name and kind stand together.
    static uint64_t KeyOf(uint64_t hash, NameKind kind) { return (hash & ~uint64_t{3}) | static_cast<uint64_t>(kind); }

    void AddSignal(CANSignal& signal);
    void AddEntry(std::string_view name, NameKind kind, CANSignal& signal);
    void MergeLikeRuns();
    static bool IsLess(const Entry& a, const Entry& b);
    std::vector<Entry>::iterator Place(size_t index);
    [[nodiscard]] size_t FirstOf(size_t begin, size_t end, uint64_t key) const;

    template <typename Use>
    void Visit(uint64_t hash, std::string_view name, NameKind first, NameKind last, Use use) const {
        const auto field = first == NameKind::AsRead ? &CANSignal::nameAsRead : &CANSignal::identifierName;
        size_t end = 0;
        for (size_t run = 0; run <= innerEnds_.size(); ++run) {
            const size_t begin = end;
            end = run < innerEnds_.size() ? innerEnds_[run] : entries_.size();
            for (size_t i = FirstOf(begin, end, KeyOf(hash, first)); i < end && entries_[i].key <= KeyOf(hash, last);
                 ++i) {
                CANSignal& signal = *entries_[i].signal;
                if (signal.*field == name && !use(signal)) {
                    return;
                }
            }
        }
    }

    // Runs, each ordered by the key. The signals themselves are touched only where it fits. A signal is there by the
    // name it was read with; where its identifier name is another, a second time by that. Every message adds a run;
    // runs of like size are merged, so that there are never many.
    std::vector<Entry> entries_;
    std::vector<size_t> innerEnds_;  // of all runs but the last
    size_t longestWithBlanks_ = 0;
};

}  // namespace tabrin
