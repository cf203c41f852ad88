#include "model/can_database.h"

#include <algorithm>
#include <utility>

#include "io/text_utf8.h"
#include "model/record_text.h"

namespace tabrin {

void CANDatabase::Clear() {
    info.protocolType = TABRIN_PROTOCOL_NONE;
    identifierIndex.Clear();
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
    messages.push_back(std::move(message));
    identifierIndex.AddMessage(*messages.back());
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

void CANDatabase::EndReading() {
    identifierIndex.Clear();
    attributes.Clear();
    descriptionsRead = decltype(descriptionsRead)();
}

}  // namespace tabrin
