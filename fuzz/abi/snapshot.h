// A copy of the whole database, taken through the getters, which are checked on the way.
#pragma once

#include <cstdint>
#include <vector>

#include "fuzz/abi/library_functions.h"
#include "tabrin.h"

namespace tabrin_fuzz {

struct SignalCopy {
    CanSignalData data;
    std::vector<CanSignalEnumData> descriptions;
};

struct MessageCopy {
    CanMessageData data;
    std::vector<SignalCopy> signals;
};

struct Snapshot {
    DatabaseInfo info;
    std::vector<MessageCopy> messages;
    std::vector<CanErrorData> errors;
};

// Walks everything. Requires that
// - every text is NUL-terminated UTF-8, and what is an identifier by the rules is one;
// - bytes behind the NUL, padding and reserved bytes stay as they were;
// - the counts agree with each other and with the indexes that are accepted;
// - a getter that refuses leaves the record alone.
Snapshot TakeSnapshot(const LibraryFunctions& library);

// Names, numbers, texts, everything; records compare up to the NUL of their texts.
bool SameMessages(const Snapshot& a, const Snapshot& b);

// The records, fetched with the bytes that the getter does not fill set to zero.
CanMessageData FetchMessage(const LibraryFunctions& library, uint32_t message);
CanSignalData FetchSignal(const LibraryFunctions& library, uint32_t message, uint32_t signal);
CanSignalEnumData FetchDescription(const LibraryFunctions& library, uint32_t message, uint32_t signal, uint32_t index);

}  // namespace tabrin_fuzz
