// Finds the signals that a statement names, while a file is read.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "io/text_hash.h"
#include "io/text_scan.h"
#include "model/can_signal.h"

namespace tabrin {

// What a name is to a signal. Both is in the middle: names that were read reach up to it, identifiers begin there.
enum class NameKind : uint8_t { AsRead, Both, Identifier };

// A signal by one of its names. The kind of the name takes the place of the last bits of the hash, so that those of one
// name and kind stand together.
struct SignalName {
    uint64_t key;
    CANSignal* signal;
};

inline uint64_t NameKey(uint64_t hash, NameKind kind) {
    return (hash & ~uint64_t{3}) | static_cast<uint64_t>(kind);
}

// The name itself. That of both kinds is taken from where the other statements of a signal look anyway.
inline std::string_view NameOf(const SignalName& name) {
    const bool isIdentifier = (name.key & 3U) == static_cast<uint64_t>(NameKind::Identifier);
    return isIdentifier ? name.signal->identifierName : name.signal->nameAsRead;
}

// A name in front of a blank: the part of a text from some place up to a blank behind it, with its hash. The hash grows
// with the text, so that the text is looked at once however many names it is taken for.
class NameInText {
public:
    NameInText(std::string_view text, size_t pos)
        : text_(text),
          begin_(std::min(pos, text.size())),
          end_(FindBlankOrEnd(text, begin_)),
          hash_(TextHash(View())) {}

    [[nodiscard]] std::string_view View() const { return text_.substr(begin_, end_ - begin_); }
    [[nodiscard]] uint64_t Hash() const { return hash_; }
    [[nodiscard]] bool IsAtEnd() const { return end_ >= text_.size(); }

    // Goes on to the next blank or the end of the text.
    void Extend() {
        const size_t blank = end_;
        end_ = FindBlankOrEnd(text_, blank + 1);
        hash_ = text_hash::Mixed(hash_) ^ TextHash(text_.substr(blank, end_ - blank));
    }

private:
    std::string_view text_;
    size_t begin_;
    size_t end_;
    uint64_t hash_;
};

// What NameInText makes of a text that is all name. Without blanks it is the TextHash.
uint64_t NameHash(std::string_view name);

// Many names. However many messages they come from, finding takes time only for what is found.
class SortedSignalNames {
public:
    // The names of a message.
    void Add(std::span<const SignalName> names);

    // Calls `use` with every signal of this name that has this key or the next, until it answers false.
    template <typename Use>
    void ForEach(uint64_t key, std::string_view name, Use use) const {
        for (const Run& run : runs_) {
            if (!ForEachOfKey(run, key, name, use) || !ForEachOfKey(run, key + 1, name, use)) {
                return;
            }
        }
    }

private:
    // Ordered by the key and then the name. As keys are hashes, their first bits tell where one is to be found.
    class Run {
    public:
        explicit Run(std::vector<SignalName> ordered);

        [[nodiscard]] const std::vector<SignalName>& Names() const { return names_; }
        [[nodiscard]] size_t FirstOf(uint64_t key, std::string_view name) const;

    private:
        std::vector<SignalName> names_;
        // Of the names whose keys have the same first bits. The last one is the end.
        std::vector<uint32_t> begins_;
        unsigned otherBits_;
    };

    template <typename Use>
    static bool ForEachOfKey(const Run& run, uint64_t key, std::string_view name, Use& use) {
        const std::vector<SignalName>& names = run.Names();
        for (size_t i = run.FirstOf(key, name); i < names.size(); ++i) {
            if (names[i].key != key || NameOf(names[i]) != name) {
                return true;
            }
            if (!use(*names[i].signal)) {
                return false;
            }
        }
        return true;
    }

    // Every message adds one; those of like size are merged, so that there are never many.
    std::vector<Run> runs_;
};

// The signals of all messages of one identifier, by the name they were read with and by their identifier name. Names
// may hold blanks and may repeat. The signals themselves are touched only where the name fits. Made for one statement.
class SignalNames {
public:
    static constexpr size_t kFew = 64;

    // Of no message.
    SignalNames() = default;
    // A few names in any order. None that was read with a blank in it is longer than `longestWithBlanks`.
    SignalNames(std::span<const SignalName> few, size_t longestWithBlanks)
        : few_(few), longestWithBlanks_(longestWithBlanks), hasMessage_(true) {}
    SignalNames(const SortedSignalNames& many, size_t longestWithBlanks)
        : many_(&many), longestWithBlanks_(longestWithBlanks), hasMessage_(true) {}

    [[nodiscard]] bool HasMessage() const { return hasMessage_; }

    // Calls `use` with every signal that was read with exactly this name.
    template <typename Use>
    void ForEachRead(std::string_view name, Use use) const {
        const uint64_t hash = longestWithBlanks_ == 0 ? TextHash(name) : NameHash(name);
        Visit(NameKey(hash, NameKind::AsRead), name, [&](CANSignal& signal) {
            use(signal);
            return true;
        });
    }

    // Calls `use` with every signal of exactly this identifier name, until it answers false.
    template <typename Use>
    void ForEachIdentified(std::string_view name, Use use) const {
        Visit(NameKey(TextHash(name), NameKind::Both), name, use);
    }

    // Calls `use` with every signal whose name, as it was read, stands at `pos` of the text with a blank behind it:
    // with "My Sig 1" both My and My Sig. When it answers false, the others of the same name are left out.
    template <typename Use>
    void ForEachReadAt(std::string_view text, size_t pos, Use use) const {
        for (NameInText name(text, pos); !name.IsAtEnd(); name.Extend()) {
            Visit(NameKey(name.Hash(), NameKind::AsRead), name.View(), use);
            if (name.View().size() >= longestWithBlanks_) {
                return;
            }
        }
    }

private:
    template <typename Use>
    void Visit(uint64_t key, std::string_view name, Use use) const {
        if (many_ != nullptr) {
            many_->ForEach(key, name, use);
            return;
        }
        // First all keys and then what was found: where it stands cannot be foreseen, and a jump there would be a wrong
        // guess of the processor each time.
        uint64_t found = 0;
        for (size_t i = 0; i < few_.size(); ++i) {
            found |= static_cast<uint64_t>(few_[i].key - key <= 1) << i;
        }
        for (; found != 0; found &= found - 1) {
            const SignalName& candidate = few_[static_cast<size_t>(std::countr_zero(found))];
            if (NameOf(candidate) == name && !use(*candidate.signal)) {
                return;
            }
        }
    }

    std::span<const SignalName> few_;
    const SortedSignalNames* many_ = nullptr;
    size_t longestWithBlanks_ = 0;
    bool hasMessage_ = false;
};

}  // namespace tabrin
