// BO_ <id> <name>: <data length> <transmitter>
#include "io/dbc_keywords.h"
#include "io/identifier.h"
#include "io/text_number.h"
#include "io/text_scan.h"
#include "model/can_message.h"
#include "model/object_name.h"

namespace tabrin {

namespace {

bool ParseName(CANMessage& message, std::string_view line, size_t& position) {
    size_t colon = kNpos;
    const std::string_view name = Trimmed(TextUntilChar(line, position, ':', colon));
    if (name.empty()) {
        return false;
    }
    message.nameAsRead = message.GetArena().Keep(name);
    SetName(message.GetArena(), message.nameAsRead, message.name, message.identifierName);
    position = colon + 1;
    return true;
}

bool ParseDataLength(CANMessage& message, std::string_view line, size_t& position) {
    const size_t first = FindNonBlank(line, position);
    if (first == kNpos || !IsDigit(line[first])) {
        return false;
    }
    position = first;
    while (position < line.size() && IsDigit(line[position])) {
        ++position;
    }
    return ToU32(line.substr(first), message.dlc);
}

}  // namespace

bool CANMessage::ParseLine(std::string_view line) {
    Reset();
    parseErrors.Clear();
    size_t position = 0;
    if (!KeywordAt(line, kMessageKeyword, 0, position)) {
        return false;
    }
    const auto fail = [this](uint32_t code) {
        parseErrors.Add(code);
        Reset();
        return false;
    };
    if (!UnsignedToken(line, position, id, position)) {
        return fail(TABRIN_ERROR_MESSAGE_ID);
    }
    if (!ParseName(*this, line, position)) {
        return fail(TABRIN_ERROR_MESSAGE_NAME);
    }
    if (!ParseDataLength(*this, line, position)) {
        return fail(TABRIN_ERROR_MESSAGE_LENGTH);
    }
    // Whatever follows the data length belongs to the transmitter: "8 ECU extra" gives ECU_extra.
    transmitter = KeepIdentifier(*arena_, TrimmedBetween(line, position, line.size() - 1));
    invalid = false;
    return true;
}

// The long name is not written here; where it differs it travels as an attribute.
void CANMessage::AppendDefinitionLine(LineText& line) const {
    if (invalid) {
        return;
    }
    line.Append(kMessageKeyword)
        .Append(' ')
        .AppendNumber(id)
        .Append(' ')
        .Append(identifierName)
        .Append(": ")
        .AppendNumber(dlc)
        .Append(' ');
    line.Append(transmitter.empty() ? kDefaultNode : transmitter);
}

std::string CANMessage::WriteDefinitionLine() const {
    LineText line;
    AppendDefinitionLine(line);
    return std::string(line.View());
}

}  // namespace tabrin
