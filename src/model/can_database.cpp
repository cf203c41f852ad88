#include "model/can_database.h"

#include <algorithm>
#include <iterator>
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
    lastFound_ = identifierIndex.try_emplace(lastFound_, message->id);
    lastFound_->second.messages.push_back(std::move(message));
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
    if (!IsAt(lastFound_, id)) {
        lastFound_ = FindNear(lastFound_, id);
    }
    static Namesakes none;
    return lastFound_ != identifierIndex.end() ? lastFound_->second : none;
}

// The statements of a section usually take the messages in their order, up or down.
CANDatabase::IdentifierIndex::iterator CANDatabase::FindNear(IdentifierIndex::iterator place, uint32_t id) {
    if (place != identifierIndex.end()) {
        if (const auto below = std::next(place); IsAt(below, id)) {
            return below;
        }
        if (place != identifierIndex.begin() && IsAt(std::prev(place), id)) {
            return std::prev(place);
        }
    }
    return identifierIndex.find(id);
}

bool CANDatabase::IsAt(IdentifierIndex::iterator place, uint32_t id) const {
    return place != identifierIndex.end() && place->first == id;
}

void CANDatabase::EndReading() {
    identifierIndex.clear();
    lastFound_ = identifierIndex.end();
    attributes.Clear();
}

}  // namespace tabrin
