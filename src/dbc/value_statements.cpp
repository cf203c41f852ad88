#include "dbc/value_statements.h"

#include "io/dbc_keywords.h"
#include "io/text_number.h"
#include "io/text_scan.h"

namespace tabrin {

namespace {

// Hands the statement to the signals of that name in every message of that identifier.
bool OfferToSignals(CANDatabase& database, std::string_view statement, std::string_view keyword,
                    bool (CANSignal::*parse)(std::string_view, uint32_t)) {
    uint32_t id = 0;
    size_t position = 0;
    if (!KeywordAt(statement, keyword, 0, position) || !UnsignedToken(statement, position, id, position)) {
        return false;
    }
    database.FindSignalNames(id).ForEachReadAt(statement, FindNonBlank(statement, position),
                                               [&](CANSignal& signal) { (signal.*parse)(statement, id); });
    return !database.FindMessages(id).empty();
}

// Takes keyword, identifier and name; `position` is then the blank behind the name.
bool ParseTarget(std::string_view line, std::string_view keyword, uint32_t messageId, std::string_view name,
                 size_t& position) {
    uint32_t id = 0;
    if (!KeywordAt(line, keyword, 0, position) || !UnsignedToken(line, position, id, position) || id != messageId) {
        return false;
    }
    position = FindNonBlank(line, position);
    if (position == kNpos || line.compare(position, name.size(), name) != 0) {
        return false;
    }
    position += name.size();
    return position < line.size() && IsBlank(line[position]);
}

}  // namespace

bool HasValueDescriptionLine(const CANSignal& signal) {
    return !signal.valueDescriptions.IsEmpty() && !signal.IsFloat();
}

bool ReadValueTypeStatement(CANDatabase& database, std::string_view statement) {
    return OfferToSignals(database, statement, kValueTypeKeyword, &CANSignal::ParseValueTypeLine);
}

bool ReadValueDescriptionStatement(CANDatabase& database, std::string_view statement) {
    return OfferToSignals(database, statement, kValueDescriptionKeyword, &CANSignal::ParseValueDescriptionLine);
}

bool CANSignal::ParseValueTypeLine(std::string_view line, uint32_t messageId) {
    size_t position = 0;
    if ((length != 32 && length != 64) || !ParseTarget(line, kValueTypeKeyword, messageId, nameAsRead, position)) {
        return false;
    }
    const size_t colon = FindNonBlank(line, position);
    if (colon == kNpos || line[colon] != ':') {
        return false;
    }
    uint32_t code = 0;
    size_t semicolon = kNpos;
    if (!ToU32(TextUntilChar(line, colon + 1, ';', semicolon), code)) {
        return false;
    }
    if (code == 1 && length == 32) {
        valueType = TABRIN_VALUE_FLOAT;
        return true;
    }
    if (code == 2 && length == 64) {
        valueType = TABRIN_VALUE_DOUBLE;
        return true;
    }
    return false;
}

// Nothing checks the closing semicolon: behind the last description there is simply no further quote.
bool CANSignal::ParseValueDescriptionLine(std::string_view line, uint32_t messageId) {
    size_t position = 0;
    if (!ParseTarget(line, kValueDescriptionKeyword, messageId, nameAsRead, position)) {
        return false;
    }
    ValueDescriptions::Adder adder(valueDescriptions);
    while (position < line.size()) {
        size_t quote = kNpos;
        int32_t value = 0;
        // What stands in front of a quote and is no number is passed over; the text behind that quote is then tried as
        // the next value.
        if (I32UntilChar(line, position, '"', value, quote)) {
            const std::string_view description = TextUntilChar(line, quote + 1, '"', quote);
            adder.Add(value, description);
        }
        position = quote == kNpos ? line.size() : quote + 1;
    }
    adder.Finish();
    return true;
}

void CANSignal::AppendValueTypeLine(LineText& line, uint32_t messageId) const {
    if (IsFloat()) {
        line.Append(kValueTypeKeyword).Append(' ').AppendNumber(messageId).Append(' ').Append(identifierName);
        line.Append(valueType == TABRIN_VALUE_FLOAT ? " : 1;" : " : 2;");
    }
}

std::string CANSignal::WriteValueTypeLine(uint32_t messageId) const {
    LineText line;
    AppendValueTypeLine(line, messageId);
    return std::string(line.View());
}

void CANSignal::AppendValueDescriptionLine(LineText& line, uint32_t messageId) const {
    if (!HasValueDescriptionLine(*this)) {
        return;
    }
    line.Append(kValueDescriptionKeyword).Append(' ').AppendNumber(messageId).Append(' ').Append(identifierName);
    for (const auto& [value, text] : valueDescriptions.Entries()) {
        line.Append(' ').AppendNumber(value).Append(" \"").Append(text.View()).Append('"');
    }
    line.Append(';');
}

std::string CANSignal::WriteValueDescriptionLine(uint32_t messageId) const {
    LineText line;
    AppendValueDescriptionLine(line, messageId);
    return std::string(line.View());
}

void WriteValueDescriptionsSection(DbcFileStream& stream, const SignalsOf& described) {
    for (const SignalOf& entry : described) {
        entry.signal->AppendValueDescriptionLine(stream.StartLine(), entry.message->id);
        stream.WriteLine();
    }
}

void WriteValueTypesSection(DbcFileStream& stream, const SignalsOf& floats) {
    for (const SignalOf& entry : floats) {
        entry.signal->AppendValueTypeLine(stream.StartLine(), entry.message->id);
        stream.WriteLine();
    }
}

}  // namespace tabrin
