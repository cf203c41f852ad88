#include "dbc/value_statements.h"

#include <vector>

#include "io/dbc_keywords.h"
#include "io/find_near.h"
#include "io/text_number.h"
#include "io/text_scan.h"

namespace tabrin {

namespace {

using Descriptions = std::vector<ValueDescriptions::Described>;

// So many descriptions are taken at a time: they need memory twice until they are kept.
constexpr size_t kMostAtATime = 65536;

constexpr uint32_t kFloatCode = 1;
constexpr uint32_t kDoubleCode = 2;

// Hands the signals of that name in every message of that identifier on, with the place behind the name. Where this is
// the same place, the rest of the statement is; and when `use` answers false, it does nothing to others of the name.
template <typename Use>
bool ForEachTarget(CANDatabase& database, std::string_view statement, std::string_view keyword, Use use) {
    uint32_t id = 0;
    size_t position = 0;
    if (!KeywordAt(statement, keyword, 0, position) || !UnsignedToken(statement, position, id, position)) {
        return false;
    }
    const size_t name = FindNonBlank(statement, position);
    const SignalNames signals = database.FindSignalNames(id);
    signals.ForEachReadAt(statement, name,
                          [&](CANSignal& signal) { return use(signal, name + signal.nameAsRead.size()); });
    return signals.HasMessage();
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

// The code behind ":", or 0 where there is none.
uint32_t ParseValueTypeCode(std::string_view line, size_t position) {
    const size_t colon = FindNonBlank(line, position);
    if (colon == kNpos || line[colon] != ':') {
        return 0;
    }
    uint32_t code = 0;
    size_t semicolon = kNpos;
    ToU32(TextUntilChar(line, colon + 1, ';', semicolon), code);
    return code;
}

bool ApplyValueTypeCode(CANSignal& signal, uint32_t code) {
    if (code == kFloatCode && signal.length == 32) {
        signal.valueType = TABRIN_VALUE_FLOAT;
        return true;
    }
    if (code == kDoubleCode && signal.length == 64) {
        signal.valueType = TABRIN_VALUE_DOUBLE;
        return true;
    }
    return false;
}

std::string_view Between(std::string_view line, size_t begin, size_t end) {
    return {line.data() + begin, end - begin};
}

// Takes the next descriptions of a line. Nothing checks the closing semicolon: behind the last one there is simply no
// further quote.
void ParseDescriptions(std::string_view line, size_t& position, Descriptions& descriptions) {
    descriptions.clear();
    while (position < line.size() && descriptions.size() < kMostAtATime) {
        size_t quote = kNpos;
        int32_t value = 0;
        // What stands in front of a quote and is no number is passed over; the text behind that quote is then tried as
        // the next value.
        if (I32UntilChar(line, position, '"', value, quote)) {
            const size_t begin = quote + 1;
            quote = FindNear(line, '"', begin);
            descriptions.push_back({value, quote != kNpos ? Between(line, begin, quote) : std::string_view()});
        }
        position = quote != kNpos ? quote + 1 : line.size();
    }
}

// Adds all descriptions from `position` on. Those taken last are left in the list; the result is whether they are all.
bool AddDescriptions(CANSignal& signal, std::string_view line, size_t position, Descriptions& descriptions) {
    bool all = true;
    ParseDescriptions(line, position, descriptions);
    signal.valueDescriptions.AddAll(descriptions);
    while (position < line.size()) {
        all = false;
        ParseDescriptions(line, position, descriptions);
        signal.valueDescriptions.AddAll(descriptions);
    }
    return all;
}

}  // namespace

bool HasValueDescriptionLine(const CANSignal& signal) {
    return !signal.valueDescriptions.IsEmpty() && !signal.IsFloat();
}

bool ReadValueTypeStatement(CANDatabase& database, std::string_view statement) {
    return ForEachTarget(database, statement, kValueTypeKeyword, [&](CANSignal& signal, size_t behindName) {
        const uint32_t code = ParseValueTypeCode(statement, behindName);
        ApplyValueTypeCode(signal, code);
        return code == kFloatCode || code == kDoubleCode;
    });
}

bool ReadValueDescriptionStatement(CANDatabase& database, std::string_view statement) {
    Descriptions& descriptions = database.descriptionsRead;
    size_t takenFrom = kNpos;  // where the descriptions stand, when they are all
    return ForEachTarget(database, statement, kValueDescriptionKeyword, [&](CANSignal& signal, size_t behindName) {
        if (behindName == takenFrom) {
            signal.valueDescriptions.AddAll(descriptions);
        } else {
            takenFrom = AddDescriptions(signal, statement, behindName, descriptions) ? behindName : kNpos;
        }
        return takenFrom == kNpos || !descriptions.empty();
    });
}

bool CANSignal::ParseValueTypeLine(std::string_view line, uint32_t messageId) {
    size_t position = 0;
    return ParseTarget(line, kValueTypeKeyword, messageId, nameAsRead, position) &&
           ApplyValueTypeCode(*this, ParseValueTypeCode(line, position));
}

bool CANSignal::ParseValueDescriptionLine(std::string_view line, uint32_t messageId) {
    size_t position = 0;
    if (!ParseTarget(line, kValueDescriptionKeyword, messageId, nameAsRead, position)) {
        return false;
    }
    Descriptions descriptions;
    AddDescriptions(*this, line, position, descriptions);
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
    for (size_t i = 0; i < valueDescriptions.Size(); ++i) {
        const auto [value, text] = valueDescriptions.At(i);
        line.Append(' ').AppendNumber(value).Append(" \"").Append(text).Append('"');
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
