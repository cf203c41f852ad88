#include "model/can_message.h"

#include <algorithm>
#include <array>
#include <unordered_map>
#include <utility>

#include "io/quick_key.h"
#include "model/comment_text.h"
#include "model/object_name.h"
#include "model/record_text.h"

namespace tabrin {

namespace {

// The signals of a message by their names without suffix. Suffixing can move a signal to another group, because a name
// that is too long loses what follows its 27th character.
class NameGroups {
public:
    explicit NameGroups(const std::vector<std::shared_ptr<CANSignal>>& signals) {
        groups_.reserve(signals.size());
        for (size_t i = 0; i < signals.size(); ++i) {
            Add(*signals[i], i);
        }
    }

    void Add(const CANSignal& signal, size_t index) { groups_[std::string(signal.UnsuffixedName())].push_back(index); }

    // The signals behind number `index` that have the name of `signal` by now, in order.
    std::vector<size_t> Behind(const CANSignal& signal, size_t index) const {
        std::vector<size_t> behind;
        for (const size_t member : groups_.at(std::string(signal.UnsuffixedName()))) {
            if (member > index) {
                behind.push_back(member);
            }
        }
        std::sort(behind.begin(), behind.end());
        return behind;
    }

private:
    std::unordered_map<std::string, std::vector<size_t>> groups_;
};

// Puts the names back when memory runs out while signals are numbered: half of the suffixes would make the next
// numbering give others, and not different ones in every case.
class NamesUntilNumbered {
public:
    explicit NamesUntilNumbered(const std::vector<std::shared_ptr<CANSignal>>& signals) : signals_(signals) {
        names_.reserve(signals.size());
        for (const auto& signal : signals) {
            names_.emplace_back(signal->identifierName, signal->suffixApplied);
        }
    }
    ~NamesUntilNumbered() {
        for (size_t i = 0; !numbered_ && i < names_.size(); ++i) {
            signals_[i]->identifierName = names_[i].first;
            signals_[i]->suffixApplied = names_[i].second;
        }
    }
    NamesUntilNumbered(const NamesUntilNumbered&) = delete;
    NamesUntilNumbered& operator=(const NamesUntilNumbered&) = delete;
    NamesUntilNumbered(NamesUntilNumbered&&) = delete;
    NamesUntilNumbered& operator=(NamesUntilNumbered&&) = delete;

    void KeepNumbered() { numbered_ = true; }

private:
    const std::vector<std::shared_ptr<CANSignal>>& signals_;
    std::vector<std::pair<std::string_view, bool>> names_;
    bool numbered_ = false;
};

// Compares each with each. Few are done by then, and without anything to guess, before sorting has begun.
bool HasEqualPair(const uint64_t* keys, size_t count) {
    bool found = false;
    for (size_t i = 1; i < count; ++i) {
        for (size_t j = 0; j < i; ++j) {
            found |= keys[i] == keys[j];
        }
    }
    return found;
}

// Hardly any message has two signals of one name. False also for some that have not.
bool AreNamesSurelyUnique(const std::vector<std::shared_ptr<CANSignal>>& signals) {
    constexpr size_t kFew = 24;
    std::array<uint64_t, kFew> few;
    std::vector<uint64_t> many;
    uint64_t* keys = few.data();
    if (signals.size() > kFew) {
        many.resize(signals.size());
        keys = many.data();
    }
    std::transform(signals.begin(), signals.end(), keys,
                   [](const auto& signal) { return QuickKey(signal->UnsuffixedName()); });
    if (signals.size() <= kFew) {
        return !HasEqualPair(keys, signals.size());
    }
    std::sort(many.begin(), many.end());
    return std::adjacent_find(many.begin(), many.end()) == many.end();
}

}  // namespace

void CANMessage::Reset() {
    invalid = true;
    id = 0;
    name = identifierName = transmitter = sendType = nameAsRead = {};
    comment.Clear();
    cycleTime = 0;
    dlc = attributesSet = 0;
    signals.clear();
}

bool CANMessage::AddSignal(std::shared_ptr<CANSignal> signal) {
    if (signals.size() >= kMostSignals) {
        return false;
    }
    if (signals.empty()) {
        signals.reserve(kUsualSignals);
    }
    signals.push_back(std::move(signal));
    return true;
}

bool CANMessage::AppendSignal(const CanSignalData* record) {
    ArenaScope scope(*arena_);
    auto signal = PlaceInArena<CANSignal>(*arena_);
    if (!signal->SetFromRecord(record)) {
        return false;
    }
    if (AddSignal(std::move(signal))) {
        scope.Keep();
    }
    return true;
}

bool CANMessage::SetFromRecord(const CanMessageData* record) {
    Reset();
    std::string givenName;
    std::string givenTransmitter;
    std::string givenComment;
    if (record == nullptr || !TakeField(givenName, record->name) || !TakeField(givenTransmitter, record->transmitter) ||
        !SetCommentFromBuffer(givenComment, record->comment)) {
        return false;
    }
    SetName(*arena_, arena_->Keep(givenName), name, identifierName);
    transmitter = KeepIdentifier(*arena_, givenTransmitter);
    comment.Append(*arena_, givenComment);
    id = record->id;
    dlc = record->dlc;
    invalid = false;
    return true;
}

bool CANMessage::GetData(CanMessageData* record) const {
    if (record == nullptr) {
        return false;
    }
    if (!FillField(record->identifierName, identifierName) || !FillField(record->name, name) ||
        !FillField(record->transmitter, transmitter) || !FillField(record->comment, comment.View())) {
        return false;
    }
    record->id = id;
    record->dlc = dlc;
    record->numSignals = static_cast<uint32_t>(signals.size());
    if (!FillField(record->sendType, sendType)) {
        return false;
    }
    record->cycleTime = cycleTime;
    return !invalid;
}

// A signal that was handled for an earlier name is not taken as a starting point again, but it is compared with the
// signals in front of it, and is numbered anew where it now has their name.
bool CANMessage::PrepareForWriting() {
    if (AreNamesSurelyUnique(signals)) {
        return false;
    }
    NamesUntilNumbered names(signals);
    NameGroups groups(signals);
    std::vector<bool> handled(signals.size());
    bool any = false;
    for (size_t i = 0; i < signals.size(); ++i) {
        if (handled[i]) {
            continue;
        }
        uint32_t count = 0;
        for (const size_t j : groups.Behind(*signals[i], i)) {
            const size_t lengthBefore = signals[j]->UnsuffixedName().size();
            signals[j]->ApplyUniqueSuffix(++count);
            handled[j] = true;
            if (signals[j]->UnsuffixedName().size() != lengthBefore) {
                groups.Add(*signals[j], j);
            }
        }
        if (count > 0) {
            signals[i]->ApplyUniqueSuffix(0);
            any = true;
        }
    }
    names.KeepNumbered();
    return any;
}

void CANMessage::SetSendType(std::string_view text) {
    sendType = KeepIdentifier(*arena_, text);
}

void CANMessage::AppendComment(std::string_view text) {
    AppendEscaped(*arena_, comment, text);
}

}  // namespace tabrin
