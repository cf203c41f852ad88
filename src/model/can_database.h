// Everything that a read produces and a write consumes.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "model/arena.h"
#include "model/attribute_store.h"
#include "model/can_message.h"
#include "model/identifier_index.h"
#include "tabrin.h"

namespace tabrin {

// The attributes that survive reading; all others are dropped.
inline constexpr std::string_view kBusType = "BusType";
inline constexpr std::string_view kJ1939Pgn = "J1939PGN";
inline constexpr std::string_view kIsNmea = "IsNMEA";
inline constexpr std::string_view kMessageLongName = "Kestrune_Msg_Name";
inline constexpr std::string_view kMessageSendType = "GenMsgSendType";
inline constexpr std::string_view kMessageCycleTime = "GenMsgCycleTime";
inline constexpr std::string_view kSignalLongName = "Kestrune_Sig_Name";
inline constexpr std::string_view kSignalStartValue = "GenSigStartValue";
inline constexpr std::string_view kSignalInactiveValue = "GenSigInactiveValue";

inline constexpr std::array<std::string_view, 9> kWellKnownAttributes = {
    kBusType,          kJ1939Pgn,       kIsNmea,           kMessageLongName,    kMessageSendType,
    kMessageCycleTime, kSignalLongName, kSignalStartValue, kSignalInactiveValue};

class CANDatabase {
public:
    using Messages = std::vector<std::shared_ptr<CANMessage>>;

    CANDatabase() { Clear(); }
    virtual ~CANDatabase() = default;
    CANDatabase(const CANDatabase&) = delete;
    CANDatabase& operator=(const CANDatabase&) = delete;
    CANDatabase(CANDatabase&&) = delete;
    CANDatabase& operator=(CANDatabase&&) = delete;

    // Empties everything but the CAN FD flag, which only a file with a bus type or the caller changes.
    void Clear();

    // Adds a message from the caller's record. It is not found by its identifier: the index serves reading only.
    bool AppendMessage(const CanMessageData* record);

    // Adds a message read from a file, to be found by its identifier until reading ends.
    void AddParsedMessage(std::shared_ptr<CANMessage> message);

    // Adds an error for each code that a rejected statement left behind.
    void RecordErrors(std::string_view statement, uint32_t line, const std::vector<uint32_t>& codes);

    // Fails beyond the last error and on a null record.
    bool GetErrorData(uint32_t index, CanErrorData* record) const;

    // The messages of the file being read that carry the identifier, and the names of their signals.
    [[nodiscard]] MessagesOfIdentifier FindMessages(uint32_t id) { return identifierIndex.FindMessages(id); }
    [[nodiscard]] SignalNames FindSignalNames(uint32_t id) { return identifierIndex.FindSignalNames(id); }

    // Drops what only reading needs: the index and the attributes.
    void EndReading();

    // Holds the messages, the signals and their texts.
    Arena arena;
    DatabaseInfo info{};
    IdentifierIndex identifierIndex;  // of what is being read
    Messages messages;
    std::vector<CanErrorData> errors;
    AttributeStore attributes;

    // Room for what a VAL_ statement tells, which not every one takes and gives back.
    std::vector<ValueDescriptions::Described> descriptionsRead;
};

}  // namespace tabrin
