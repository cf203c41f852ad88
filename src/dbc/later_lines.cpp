#include "dbc/later_lines.h"

#include <string_view>

#include "dbc/value_statements.h"

namespace tabrin {

namespace {

// An identifier that is the name itself is mostly the same memory, which need not be looked at.
bool IsSameText(std::string_view a, std::string_view b) {
    return a.size() == b.size() && (a.data() == b.data() || a == b);
}

}  // namespace

void LaterLines::NoteDown(const CANMessage& message) {
    for (const auto& signal : message.signals) {
        const SignalOf entry{&message, signal.get()};
        if (!signal->comment.IsEmpty()) {
            comments.push_back(entry);
        }
        if (!IsSameText(signal->name, signal->identifierName)) {
            longNames.push_back(entry);
        }
        if (HasValueDescriptionLine(*signal)) {
            valueDescriptions.push_back(entry);
        }
        if (signal->IsFloat()) {
            valueTypes.push_back(entry);
        }
    }
}

LaterLines LinesBehind(const CANDatabase::Messages& messages) {
    LaterLines lines;
    for (const auto& message : messages) {
        lines.NoteDown(*message);
    }
    return lines;
}

}  // namespace tabrin
