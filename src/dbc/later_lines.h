// What the sections behind the messages have lines for.
#pragma once

#include <vector>

#include "model/can_database.h"

namespace tabrin {

// A signal and the message it belongs to.
struct SignalOf {
    const CANMessage* message;
    const CANSignal* signal;
};
using SignalsOf = std::vector<SignalOf>;

// The signals with a line of their own in each of these sections, in the order in which they are written. They are
// noted down message by message while it is at hand: to walk through a large database once more for every section takes
// as long as composing their lines.
struct LaterLines {
    SignalsOf comments;
    SignalsOf longNames;
    SignalsOf valueDescriptions;
    SignalsOf valueTypes;

    void NoteDown(const CANMessage& message);
};

// Those of all messages.
LaterLines LinesBehind(const CANDatabase::Messages& messages);

}  // namespace tabrin
