// The binary interface, pinned as a C++ compiler sees it, with the oldest standard that the header is meant for.
// Compiling this file is the test.
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "tabrin.h"

#define PIN_SIZE(record, bytes) static_assert(sizeof(record) == (bytes), #record)
#define PIN_FIELD(record, field, at, bytes) \
    static_assert(offsetof(record, field) == (at) && sizeof(record::field) == (bytes), #record "::" #field)
#define PIN_CODE(code, number) static_assert((code) == (number), #code)
#define PIN_FUNCTION(function, ...) static_assert(std::is_same<decltype(function), __VA_ARGS__>::value, #function)

#include "header_pins.h"

PIN_FUNCTION(TabrinGetLibraryVersion, float());
PIN_FUNCTION(TabrinReadDbcFile, bool(const char*, std::uint32_t, std::uint32_t*));
PIN_FUNCTION(TabrinWriteDbcFile, bool(const char*, std::uint32_t, std::uint32_t, std::uint32_t*));
PIN_FUNCTION(TabrinClearData, bool());
PIN_FUNCTION(TabrinGetDatabaseInfo, bool(void*, std::size_t));
PIN_FUNCTION(TabrinSetDatabaseInfo, bool(const void*, std::size_t));
PIN_FUNCTION(TabrinGetNumCanMessages, std::int64_t());
PIN_FUNCTION(TabrinAppendCanMessage, bool(const CanMessageData*));
PIN_FUNCTION(TabrinGetCanMessageData, bool(std::uint32_t, CanMessageData*));
PIN_FUNCTION(TabrinGetNumCanSignalsInCanMessage, bool(std::uint32_t, std::uint32_t*));
PIN_FUNCTION(TabrinAppendCanSignalToCanMessage, bool(std::uint32_t, const CanSignalData*));
PIN_FUNCTION(TabrinGetCanSignalData, bool(std::uint32_t, std::uint32_t, CanSignalData*));
PIN_FUNCTION(TabrinGetNumEnumsInCanSignal, bool(std::uint32_t, std::uint32_t, std::uint32_t*));
PIN_FUNCTION(TabrinAppendEnumToCanSignal, bool(std::uint32_t, std::uint32_t, const CanSignalEnumData*));
PIN_FUNCTION(TabrinGetCanSignalEnumData, bool(std::uint32_t, std::uint32_t, std::uint32_t, CanSignalEnumData*));
PIN_FUNCTION(TabrinGetNumCanErrors, std::int64_t());
PIN_FUNCTION(TabrinGetErrorData, bool(std::uint32_t, CanErrorData*));
