// Finds the messages and signals that the statements of a file name, while it is read.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <span>
#include <vector>

#include "model/can_message.h"
#include "model/signal_name_index.h"

namespace tabrin {

class IdentifierIndex;

// The messages of one identifier, in file order.
class MessagesOfIdentifier {
public:
    class Iterator {
    public:
        Iterator(const IdentifierIndex& index, size_t number) : index_(&index), number_(number) {}

        CANMessage* operator*() const;
        Iterator& operator++();
        bool operator==(const Iterator& other) const = default;

    private:
        const IdentifierIndex* index_;
        size_t number_;
    };

    MessagesOfIdentifier(const IdentifierIndex& index, size_t first) : index_(index), first_(first) {}

    // NOLINTBEGIN(readability-identifier-naming): for range loops
    [[nodiscard]] Iterator begin() const { return {index_, first_}; }
    [[nodiscard]] Iterator end() const;
    [[nodiscard]] bool empty() const { return begin() == end(); }
    // NOLINTEND(readability-identifier-naming)

private:
    const IdentifierIndex& index_;
    size_t first_;
};

// What it returns serves until something is added. The messages and signals are not owned.
class IdentifierIndex {
public:
    // By the identifier that it has by now.
    void AddMessage(CANMessage& message);
    // A signal of the message added last, by the names that it has by now. Nothing may have been asked for since then.
    void AddSignal(CANSignal& signal);
    void Clear();

    [[nodiscard]] bool IsEmpty() const { return messages_.empty(); }

    [[nodiscard]] MessagesOfIdentifier FindMessages(uint32_t id);
    // Those of the signals of these messages. To be asked for only when the signals of all messages read so far are
    // complete, as they are at any statement that is neither BO_ nor SG_.
    [[nodiscard]] SignalNames FindSignalNames(uint32_t id);

private:
    friend class MessagesOfIdentifier;

    static constexpr size_t kNone = static_cast<size_t>(-1);

    struct Message {
        CANMessage* message;
        uint32_t id;
        uint32_t longestWithBlanks = 0;
        size_t firstName;     // its names reach up to those of the next message
        size_t next = kNone;  // of the same identifier
    };

    // The messages of one identifier.
    struct Namesakes {
        uint32_t id;
        size_t first;
        size_t last;
        uint32_t longestWithBlanks = 0;
        // Only where there are many names. `unsorted` is the first message whose names are not among them yet.
        std::unique_ptr<SortedSignalNames> sortedNames = nullptr;
        size_t unsorted = kNone;
    };

    struct Slot {
        uint32_t id;
        size_t namesakes = kNone;
    };

    void SortInNewMessages();
    void SortIn(size_t message);
    Slot* FindSlot(uint32_t id);
    Slot& GetSlot(uint32_t id);
    void GrowSlots(size_t identifiers);
    [[nodiscard]] size_t LookUp(uint32_t id);
    [[nodiscard]] size_t FindNamesakes(uint32_t id);
    void GoOnTo(size_t namesakes);
    [[nodiscard]] std::span<const SignalName> NamesOf(size_t message) const;
    [[nodiscard]] const SortedSignalNames& SortNames(Namesakes& namesakes) const;

    // All in file order.
    std::vector<Message> messages_;
    std::vector<SignalName> names_;
    std::vector<Namesakes> namesakes_;
    // The messages in front of this one are among the namesakes. The others come to them when somebody asks: put in at
    // one go they wait for memory at the same time, and put in as they are read each would wait for itself.
    size_t firstUnsorted_ = 0;
    size_t lastFound_ = 0;        // among the namesakes
    size_t firstToPrefetch_ = 0;  // among the names
    size_t endToPrefetch_ = 0;

    // Where the namesakes of an identifier are: at the place that its number gives or a little behind it, without a gap.
    // Those that find no place there are elsewhere: a file can be made of identifiers that all want the same place.
    std::vector<Slot> slots_;
    std::map<uint32_t, Slot> crowded_;
};

inline CANMessage* MessagesOfIdentifier::Iterator::operator*() const {
    return index_->messages_[number_].message;
}

inline MessagesOfIdentifier::Iterator& MessagesOfIdentifier::Iterator::operator++() {
    number_ = index_->messages_[number_].next;
    return *this;
}

inline MessagesOfIdentifier::Iterator MessagesOfIdentifier::end() const {
    return {index_, IdentifierIndex::kNone};
}

}  // namespace tabrin
