// The exported functions: guard, index check, copy. Nothing is computed here.
#include <algorithm>
#include <memory>
#include <utility>

#include "dbc/dbc_reader.h"
#include "dbc/dbc_writer.h"
#include "model/can_database.h"
#include "tabrin.h"

namespace {

using tabrin::CANDatabase;
using tabrin::CANMessage;
using tabrin::CANSignal;
using tabrin::FileStatus;

// The one database, from load to unload. Nothing guards it: callers make one call at a time.
CANDatabase database;

// Nothing may be thrown at a caller who need not know C++. The only exceptions that can get here come from running out
// of memory. Every function goes through here whose result can say that it failed; the others only return a number.
template <typename Function>
bool Guarded(Function function) noexcept {
    try {
        return function();
    } catch (...) {
        return false;
    }
}

// The two file functions also tell what became of the file: Failed, whatever it was before, when they were broken off.
template <typename Function>
bool GuardedFile(uint32_t* status, Function function) noexcept {
    auto outcome = FileStatus::Failed;
    const bool done = Guarded([&] {
        auto returned = FileStatus::Closed;
        const bool succeeded = function(returned);
        outcome = returned;
        return succeeded;
    });
    if (status != nullptr) {
        *status = static_cast<uint32_t>(outcome);
    }
    return done;
}

CANMessage* FindMessage(uint32_t message) {
    return message < database.messages.size() ? database.messages[message].get() : nullptr;
}

CANSignal* FindSignal(uint32_t message, uint32_t signal) {
    const CANMessage* owner = FindMessage(message);
    return owner != nullptr && signal < owner->signals.size() ? owner->signals[signal].get() : nullptr;
}

// Copies nothing, and looks at neither pointer, when the size is 0.
void CopyInfo(void* target, const void* source, size_t size) {
    std::copy_n(static_cast<const char*>(source), std::min(size, sizeof(DatabaseInfo)), static_cast<char*>(target));
}

}  // namespace

float TabrinGetLibraryVersion(void) {
    return 1.31F;
}

bool TabrinReadDbcFile(const char* path, uint32_t pathBufferSize, uint32_t* status) {
    return GuardedFile(
        status, [&](FileStatus& outcome) { return tabrin::ReadDbcFile(database, path, pathBufferSize, outcome); });
}

bool TabrinWriteDbcFile(const char* path, uint32_t pathBufferSize, uint32_t messageOrder, uint32_t* status) {
    return GuardedFile(status, [&](FileStatus& outcome) {
        return tabrin::WriteDbcFile(database, path, pathBufferSize, messageOrder, outcome);
    });
}

bool TabrinClearData(void) {
    return Guarded([] {
        database.Clear();
        return true;
    });
}

bool TabrinGetDatabaseInfo(void* dst, size_t size) {
    return Guarded([&] {
        CopyInfo(dst, &database.info, size);
        return true;
    });
}

bool TabrinSetDatabaseInfo(const void* src, size_t size) {
    return Guarded([&] {
        CopyInfo(&database.info, src, size);
        return true;
    });
}

int64_t TabrinGetNumCanMessages(void) {
    return static_cast<int64_t>(database.messages.size());
}

bool TabrinAppendCanMessage(const CanMessageData* data) {
    return Guarded([&] { return database.AppendMessage(data); });
}

bool TabrinGetCanMessageData(uint32_t message, CanMessageData* data) {
    return Guarded([&] {
        const CANMessage* found = FindMessage(message);
        if (found == nullptr) {
            return false;
        }
        // What is asked for next, as a rule.
        found->PrefetchSignal(0);
        found->PrefetchSignal(1);
        return found->GetData(data);
    });
}

bool TabrinGetNumCanSignalsInCanMessage(uint32_t message, uint32_t* count) {
    return Guarded([&] {
        const CANMessage* found = FindMessage(message);
        if (found == nullptr) {
            return false;
        }
        *count = static_cast<uint32_t>(found->signals.size());
        return true;
    });
}

bool TabrinAppendCanSignalToCanMessage(uint32_t message, const CanSignalData* data) {
    return Guarded([&] {
        CANMessage* owner = FindMessage(message);
        if (owner == nullptr) {
            return false;
        }
        return owner->AppendSignal(data);
    });
}

bool TabrinGetCanSignalData(uint32_t message, uint32_t signal, CanSignalData* data) {
    return Guarded([&] {
        const CANSignal* found = FindSignal(message, signal);
        if (found == nullptr) {
            return false;
        }
        database.messages[message]->PrefetchSignal(signal + 2);
        return found->GetData(data);
    });
}

bool TabrinGetNumEnumsInCanSignal(uint32_t message, uint32_t signal, uint32_t* count) {
    return Guarded([&] {
        const CANSignal* found = FindSignal(message, signal);
        if (found == nullptr) {
            return false;
        }
        *count = static_cast<uint32_t>(found->valueDescriptions.Size());
        return true;
    });
}

bool TabrinAppendEnumToCanSignal(uint32_t message, uint32_t signal, const CanSignalEnumData* data) {
    return Guarded([&] {
        CANSignal* found = FindSignal(message, signal);
        return found != nullptr && found->AppendValueDescription(data);
    });
}

bool TabrinGetCanSignalEnumData(uint32_t message, uint32_t signal, uint32_t enumIndex, CanSignalEnumData* data) {
    return Guarded([&] {
        const CANSignal* found = FindSignal(message, signal);
        return found != nullptr && found->GetValueDescription(enumIndex, data);
    });
}

int64_t TabrinGetNumCanErrors(void) {
    return static_cast<int64_t>(database.errors.size());
}

bool TabrinGetErrorData(uint32_t index, CanErrorData* data) {
    return Guarded([&] { return database.GetErrorData(index, data); });
}
