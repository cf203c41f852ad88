// Objects of the model outside a database: each has an arena to itself.
#pragma once

#include "model/arena.h"
#include "model/can_message.h"
#include "model/can_signal.h"
#include "model/value_descriptions.h"

namespace tabrin {

struct ArenaOwner {
    Arena ownArena;
};

template <typename Object>
class WithOwnArena : private ArenaOwner, public Object {
public:
    WithOwnArena() : Object(ownArena) {}
};

using OwnMessage = WithOwnArena<CANMessage>;
using OwnSignal = WithOwnArena<CANSignal>;
using OwnValueDescriptions = WithOwnArena<ValueDescriptions>;

}  // namespace tabrin
