#include "model/identifier_index.h"

#include <algorithm>
#include <bit>
#include <utility>

#include "io/text_hash.h"
#include "io/text_scan.h"

namespace tabrin {

void IdentifierIndex::AddMessage(CANMessage& message) {
    messages_.push_back({&message, message.id, 0, names_.size()});
}

// Nearly always the names are one text.
void IdentifierIndex::AddSignal(CANSignal& signal) {
    const std::string_view name = signal.nameAsRead;
    if (name.data() == signal.identifierName.data() && name.size() == signal.identifierName.size()) {
        names_.push_back({NameKey(TextHash(name), NameKind::Both), &signal});
        return;
    }
    names_.push_back({NameKey(NameHash(name), NameKind::AsRead), &signal});
    names_.push_back({NameKey(TextHash(signal.identifierName), NameKind::Identifier), &signal});
    if (FindBlankOrEnd(name, 0) != name.size()) {
        uint32_t& longest = messages_.back().longestWithBlanks;
        longest = std::max(longest, static_cast<uint32_t>(name.size()));
    }
}

void IdentifierIndex::Clear() {
    // Fresh ones, not emptied ones, so that the memory goes back.
    *this = IdentifierIndex();
}

MessagesOfIdentifier IdentifierIndex::FindMessages(uint32_t id) {
    const size_t found = FindNamesakes(id);
    return {*this, found == kNone ? kNone : namesakes_[found].first};
}

SignalNames IdentifierIndex::FindSignalNames(uint32_t id) {
    const size_t found = FindNamesakes(id);
    if (found == kNone) {
        return {};
    }
    Namesakes& namesakes = namesakes_[found];
    if (namesakes.first == namesakes.last) {
        const std::span<const SignalName> names = NamesOf(namesakes.first);
        if (names.size() <= SignalNames::kFew) {
            return {names, namesakes.longestWithBlanks};
        }
    }
    return {SortNames(namesakes), namesakes.longestWithBlanks};
}

// Statements about one identifier come one after the other, and those of a section usually take the messages in their
// order.
size_t IdentifierIndex::FindNamesakes(uint32_t id) {
    constexpr size_t kNear = 8;
    SortInNewMessages();
    const size_t end = std::min(namesakes_.size(), lastFound_ + kNear);
    for (size_t i = lastFound_; i < end; ++i) {
        if (namesakes_[i].id == id) {
            GoOnTo(i);
            return i;
        }
    }
    const size_t found = LookUp(id);
    if (found != kNone) {
        lastFound_ = found;
    }
    return found;
}

size_t IdentifierIndex::LookUp(uint32_t id) {
    if (slots_.empty()) {
        return kNone;
    }
    if (const Slot* const slot = FindSlot(id); slot != nullptr) {
        return slot->namesakes;
    }
    const auto found = crowded_.find(id);
    return found != crowded_.end() ? found->second.namesakes : kNone;
}

// The signals of the next message come from memory meanwhile, some with each statement about this one. All at once
// would be more than the processor can wait for while it goes on.
void IdentifierIndex::GoOnTo(size_t namesakes) {
    constexpr size_t kSome = 6;
    if (namesakes != lastFound_ && namesakes + 1 < namesakes_.size()) {
        const size_t next = namesakes_[namesakes + 1].first;
        firstToPrefetch_ = messages_[next].firstName;
        endToPrefetch_ = firstToPrefetch_ + NamesOf(next).size();
    }
    lastFound_ = namesakes;
    const size_t some = std::min(endToPrefetch_ - firstToPrefetch_, kSome);
    for (const SignalName& name : std::span(names_).subspan(firstToPrefetch_, some)) {
        name.signal->PrefetchForStatements();
    }
    firstToPrefetch_ += some;
}

// The slot of the identifier, or the free one that it would take; nullptr when there is none near.
IdentifierIndex::Slot* IdentifierIndex::FindSlot(uint32_t id) {
    constexpr size_t kNear = 64;
    const size_t mask = slots_.size() - 1;
    const size_t home = static_cast<size_t>(text_hash::Mixed(id)) & mask;
    for (size_t i = home; i < home + kNear; ++i) {
        Slot& slot = slots_[i & mask];
        if (slot.namesakes == kNone || slot.id == id) {
            return &slot;
        }
    }
    return nullptr;
}

IdentifierIndex::Slot& IdentifierIndex::GetSlot(uint32_t id) {
    Slot* const found = FindSlot(id);
    return found != nullptr ? *found : crowded_[id];
}

void IdentifierIndex::SortInNewMessages() {
    const size_t most = namesakes_.size() + messages_.size() - firstUnsorted_;
    if (2 * most > slots_.size()) {
        GrowSlots(most);
    }
    for (; firstUnsorted_ < messages_.size(); ++firstUnsorted_) {
        SortIn(firstUnsorted_);
    }
}

void IdentifierIndex::SortIn(size_t message) {
    const uint32_t id = messages_[message].id;
    Slot& slot = GetSlot(id);
    if (slot.namesakes == kNone) {
        namesakes_.push_back({id, message, message});
        slot = {id, namesakes_.size() - 1};
    } else {
        Namesakes& namesakes = namesakes_[slot.namesakes];
        messages_[std::exchange(namesakes.last, message)].next = message;
        if (namesakes.unsorted == kNone) {
            namesakes.unsorted = message;
        }
    }
    uint32_t& longest = namesakes_[slot.namesakes].longestWithBlanks;
    longest = std::max(longest, messages_[message].longestWithBlanks);
}

// For so many identifiers, with at least half of the slots free.
void IdentifierIndex::GrowSlots(size_t identifiers) {
    constexpr size_t kFewest = 16;
    slots_.assign(std::bit_ceil(std::max(kFewest, 2 * identifiers)), Slot{});
    crowded_.clear();
    for (size_t i = 0; i < namesakes_.size(); ++i) {
        GetSlot(namesakes_[i].id) = {namesakes_[i].id, i};
    }
}

std::span<const SignalName> IdentifierIndex::NamesOf(size_t message) const {
    const size_t begin = messages_[message].firstName;
    const size_t end = message + 1 < messages_.size() ? messages_[message + 1].firstName : names_.size();
    return std::span(names_).subspan(begin, end - begin);
}

const SortedSignalNames& IdentifierIndex::SortNames(Namesakes& namesakes) const {
    if (namesakes.sortedNames == nullptr) {
        namesakes.sortedNames = std::make_unique<SortedSignalNames>();
        namesakes.unsorted = namesakes.first;
    }
    for (; namesakes.unsorted != kNone; namesakes.unsorted = messages_[namesakes.unsorted].next) {
        namesakes.sortedNames->Add(NamesOf(namesakes.unsorted));
    }
    return *namesakes.sortedNames;
}

}  // namespace tabrin
