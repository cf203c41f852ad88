// Finds the signals that a statement names, while a file is read.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <unordered_map>

#include "io/text_scan.h"
#include "model/can_message.h"

namespace tabrin {

// The signals of one message by the name they were read with. Names may hold blanks and may repeat.
class SignalNameIndex {
public:
    explicit SignalNameIndex(const CANMessage& message);

    // Calls `use` with every signal of exactly that name.
    template <typename Use>
    void ForEachNamed(std::string_view name, Use use) const {
        Visit(HashOf(name), name, use);
    }

    // Calls `use` with every signal whose name stands at `pos` of the text, with a blank behind it: with "My Sig 1" both
    // My and My Sig. The hash grows with the text, so that the text is looked at once however many names fit.
    template <typename Use>
    void ForEachNamedAt(std::string_view text, size_t pos, Use use) const {
        uint64_t hash = kSeed;
        for (size_t end = pos; end < text.size(); ++end) {
            if (IsBlank(text[end])) {
                Visit(hash, text.substr(pos, end - pos), use);
                if (end - pos >= longestWithBlanks_) {
                    return;
                }
            }
            hash = Extended(hash, text[end]);
        }
    }

private:
    static constexpr uint64_t kSeed = 0xCBF29CE484222325U;

    static uint64_t Extended(uint64_t hash, char c) { return (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3U; }
    static uint64_t HashOf(std::string_view name);

    template <typename Use>
    void Visit(uint64_t hash, std::string_view name, Use& use) const {
        const auto [first, last] = signals_.equal_range(hash);
        for (auto entry = first; entry != last; ++entry) {
            if (entry->second->nameAsRead == name) {
                use(*entry->second);
            }
        }
    }

    std::unordered_multimap<uint64_t, CANSignal*> signals_;
    size_t longestWithBlanks_ = 0;
};

// The indexes of the messages that have been asked about.
class SignalNameIndexes {
public:
    // The signals of a message must all have been read before it is asked about.
    const SignalNameIndex& Of(const CANMessage& message) {
        return indexes_.try_emplace(&message, message).first->second;
    }
    void Clear() { indexes_ = {}; }

private:
    std::unordered_map<const CANMessage*, SignalNameIndex> indexes_;
};

}  // namespace tabrin
