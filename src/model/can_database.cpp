#include "model/can_database.h"

#include <algorithm>
#include <utility>

#include "io/text_utf8.h"
#include "model/record_text.h"

namespace tabrin {

void CANDatabase::Clear() {
    info.protocolType = TABRIN_PROTOCOL_NONE;
    // Fresh ones, not emptied ones, so that the memory of a large database goes back.
    messages = Messages();
    arena.Clear();
    errors = std::vector<CanErrorData>();
    attributes.Clear(kWellKnownAttributes);
}

bool CANDatabase::AppendMessage(const CanMessageData* record) {
    ArenaScope scope(arena);
    auto message = MakeInArena<CANMessage>(arena);
    if (!message->SetFromRecord(record)) {
        return false;
    }
    messages.push_back(std::move(message));
    scope.Keep();
    return true;
}

void CANDatabase::AddParsedMessage(std::shared_ptr<CANMessage> message) {
    messages.push_back(message);
    // Identifiers often ascend, so that each goes in front of the one before.
    const uint32_t id = message->id;
    lastAdded_ = identifierIndex.try_emplace(lastAdded_, id);
    Namesakes& namesakes = lastAdded_->second;
    if (namesakes.messages.empty()) {
        namesakes.place = places_.size();
        places_.push_back({id, &namesakes});
    }
    namesakes.messages.push_back(std::move(message));
}

// The text of an error loses the last character of its statement, which is a line end as a rule.
void CANDatabase::RecordErrors(std::string_view statement, uint32_t line, const std::vector<uint32_t>& codes) {
    for (const uint32_t code : codes) {
        CanErrorData error{code, line, {}};
        CopyToBuffer(error.text, statement, std::min(statement.size(), sizeof error.text - 1));
        errors.push_back(error);
    }
}

bool CANDatabase::GetErrorData(uint32_t index, CanErrorData* record) const {
    if (record == nullptr || index >= errors.size() || !FillField(record->text, errors[index].text)) {
        return false;
    }
    record->code = errors[index].code;
    record->line = errors[index].line;
    return true;
}

const CANDatabase::Messages& CANDatabase::FindMessages(uint32_t id) {
    return FindNamesakes(id).messages;
}

const SignalNameIndex& CANDatabase::FindSignalNames(uint32_t id) {
    Namesakes& namesakes = FindNamesakes(id);
    while (namesakes.numIndexed < namesakes.messages.size()) {
        namesakes.signalNames.Add(*namesakes.messages[namesakes.numIndexed++]);
    }
    return namesakes.signalNames;
}

CANDatabase::Namesakes& CANDatabase::FindNamesakes(uint32_t id) {
    constexpr size_t kNear = 8;
    const size_t end = std::min(places_.size(), lastPlace_ + kNear);
    for (size_t i = lastPlace_; i < end; ++i) {
        if (places_[i].id == id) {
            lastPlace_ = i;
            return *places_[i].namesakes;
        }
    }
    static Namesakes none;
    const auto found = identifierIndex.find(id);
    if (found == identifierIndex.end()) {
        return none;
    }
    lastPlace_ = found->second.place;
    return found->second;
}

void CANDatabase::EndReading() {
    places_ = std::vector<Place>();
    lastPlace_ = 0;
    identifierIndex.clear();
    lastAdded_ = identifierIndex.end();
    attributes.Clear();
    descriptionsRead = decltype(descriptionsRead)();
}

}  // namespace tabrin
