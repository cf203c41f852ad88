#include "model/can_database.h"

#include <algorithm>
#include <utility>

#include "io/text_utf8.h"
#include "model/record_text.h"

namespace tabrin {

void CANDatabase::Clear() {
    info.protocolType = TABRIN_PROTOCOL_NONE;
    messages = {};
    errors = {};
    attributes.Clear(kWellKnownAttributes);
}

bool CANDatabase::AppendMessage(const CanMessageData* record) {
    auto message = std::make_shared<CANMessage>();
    if (!message->SetFromRecord(record)) {
        return false;
    }
    messages.push_back(std::move(message));
    return true;
}

void CANDatabase::AddParsedMessage(std::shared_ptr<CANMessage> message) {
    messages.push_back(message);
    identifierIndex[message->id].push_back(std::move(message));
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

const CANDatabase::Messages& CANDatabase::FindMessages(uint32_t id) const {
    static const Messages kNoMessages;
    const auto found = identifierIndex.find(id);
    return found != identifierIndex.end() ? found->second : kNoMessages;
}

void CANDatabase::EndReading() {
    signalNames.Clear();
    identifierIndex = {};
    attributes.Clear();
}

}  // namespace tabrin
