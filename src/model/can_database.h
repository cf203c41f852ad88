// Everything that a read produces and a write consumes.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string_view>
#include <vector>

#include "model/arena.h"
#include "model/attribute_store.h"
#include "model/can_message.h"
#include "model/signal_name_index.h"
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

    // Empties everything but the CAN FD flag, which only a file with a bus type or the caller changes, and the indexes,
    // which hold nothing outside a read.
    void Clear();

    // Adds a message from the caller's record. It is not found by its identifier: the index serves reading only.
    bool AppendMessage(const CanMessageData* record);

    // Adds a message read from a file, to be found by its identifier until reading ends.
    void AddParsedMessage(std::shared_ptr<CANMessage> message);

    // Adds an error for each code that a rejected statement left behind.
    void RecordErrors(std::string_view statement, uint32_t line, const std::vector<uint32_t>& codes);

    // Fails beyond the last error and on a null record.
    bool GetErrorData(uint32_t index, CanErrorData* record) const;

    // All messages of the file being read that carry the identifier, in file order.
    [[nodiscard]] const Messages& FindMessages(uint32_t id);

    // The names of their signals. To be asked for only when the signals of all messages read so far are complete, as
    // they are at any statement that is neither BO_ nor SG_.
    [[nodiscard]] const SignalNameIndex& FindSignalNames(uint32_t id);

    // Drops what only reading needs: the indexes and the attributes.
    void EndReading();

    // The messages of one identifier. The names of their signals are indexed when they are first asked for.
    struct Namesakes {
        Messages messages;
        SignalNameIndex signalNames;
        size_t numIndexed = 0;
        size_t place = 0;  // among the identifiers in file order
    };
    using IdentifierIndex = std::map<uint32_t, Namesakes, std::greater<>>;

    // Holds the messages, the signals and their texts.
    Arena arena;
    DatabaseInfo info{};
    IdentifierIndex identifierIndex;
    Messages messages;
    std::vector<CanErrorData> errors;
    AttributeStore attributes;

    // Room for what a VAL_ statement tells, which not every one takes and gives back.
    std::vector<ValueDescriptions::Described> descriptionsRead;

private:
    Namesakes& FindNamesakes(uint32_t id);

    // An identifier and its messages.
    struct Place {
        uint32_t id;
        Namesakes* namesakes;
    };

    // The identifiers in file order. Statements about one identifier come one after the other, and those of a section
    // usually take the messages in their order.
    std::vector<Place> places_;
    size_t lastPlace_ = 0;
    IdentifierIndex::iterator lastAdded_ = identifierIndex.end();
};

}  // namespace tabrin
