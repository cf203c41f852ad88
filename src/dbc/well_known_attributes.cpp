#include "dbc/well_known_attributes.h"

#include <string>
#include <string_view>
#include <utility>

#include "dbc/attribute_statements.h"

namespace tabrin {

namespace {

using ObjectType = AttributeObjectType;
using ValueType = AttributeValueType;

constexpr std::string_view kCanFd = "CAN FD";

Attribute MakeAttribute(std::string_view name, ObjectType objectType, ValueType valueType) {
    Attribute attribute;
    attribute.name = name;
    attribute.objectType = objectType;
    attribute.valueType = valueType;
    return attribute;
}

// One well-known attribute in the store: its definition, and the values of the objects it is asked about.
class Lookup {
public:
    Lookup(const AttributeStore& store, std::string_view name, ObjectType objectType, ValueType valueType)
        : store_(store),
          valueType_(valueType),
          probe_(MakeAttribute(name, objectType, valueType)),
          definition_(store.FindDefinition(probe_, valueType)) {}

    [[nodiscard]] bool IsDefined() const { return definition_ != nullptr; }

    // nullptr when the object has no value of its own.
    const Attribute* ValueOf(const CANMessage& message) {
        probe_.objectId = message.id;
        return store_.FindValue(probe_, valueType_);
    }
    const Attribute* ValueOf(const CANMessage& message, const CANSignal& signal) {
        probe_.signalName = signal.identifierName;
        return ValueOf(message);
    }

    // The value of the database, or of the object, with the default of the definition for one that has none.
    const Attribute* ValueOrDefault() { return OrDefault(store_.FindValue(probe_, valueType_)); }
    template <typename... Object>
    const Attribute& ValueOrDefault(const Object&... object) {
        return *OrDefault(ValueOf(object...));
    }

private:
    const Attribute* OrDefault(const Attribute* value) const { return value != nullptr ? value : definition_; }

    const AttributeStore& store_;
    ValueType valueType_;
    Attribute probe_;
    const Attribute* definition_;
};

// A file without a bus type leaves the flag as it was before, also as the caller set it.
void ApplyBusType(CANDatabase& database) {
    Lookup busType(database.attributes, kBusType, ObjectType::General, ValueType::String);
    const Attribute* value = busType.ValueOrDefault();
    if (value != nullptr) {
        database.info.canFd = value->stringValue == kCanFd ? 1 : 0;
    }
}

void ApplyProtocol(CANDatabase& database, std::string_view name, uint32_t protocolType) {
    Lookup protocol(database.attributes, name, ObjectType::General, ValueType::Int);
    const Attribute* value = protocol.ValueOrDefault();
    if (value != nullptr && value->intValue == 1) {
        database.info.protocolType = protocolType;
    }
}

// Long names have no default: a message without a value keeps the name it was read with.
void ApplyMessageLongNames(CANDatabase& database) {
    Lookup longName(database.attributes, kMessageLongName, ObjectType::Message, ValueType::String);
    if (!longName.IsDefined()) {
        return;
    }
    for (const auto& message : database.messages) {
        const Attribute* value = longName.ValueOf(*message);
        if (value != nullptr) {
            message->SetLongName(value->stringValue);
        }
    }
}

void ApplySendTypes(CANDatabase& database) {
    Lookup sendType(database.attributes, kMessageSendType, ObjectType::Message, ValueType::Enum);
    if (!sendType.IsDefined()) {
        return;
    }
    for (const auto& message : database.messages) {
        const std::string* text = sendType.ValueOrDefault(*message).EnumText();
        message->SetSendType(text != nullptr ? std::string_view(*text) : std::string_view());
    }
}

void ApplyCycleTimes(CANDatabase& database) {
    Lookup cycleTime(database.attributes, kMessageCycleTime, ObjectType::Message, ValueType::Int);
    if (!cycleTime.IsDefined()) {
        return;
    }
    for (const auto& message : database.messages) {
        message->cycleTime = static_cast<uint32_t>(cycleTime.ValueOrDefault(*message).intValue);
    }
}

void ApplySignalLongNames(CANDatabase& database) {
    Lookup longName(database.attributes, kSignalLongName, ObjectType::Signal, ValueType::String);
    if (!longName.IsDefined()) {
        return;
    }
    for (const auto& message : database.messages) {
        for (const auto& signal : message->signals) {
            const Attribute* value = longName.ValueOf(*message, *signal);
            if (value != nullptr) {
                signal->SetLongName(value->stringValue);
            }
        }
    }
}

// Raw values: no factor or offset is applied.
void ApplyRawValues(CANDatabase& database, std::string_view name, uint32_t CANSignal::*field) {
    Lookup rawValue(database.attributes, name, ObjectType::Signal, ValueType::Int);
    if (!rawValue.IsDefined()) {
        return;
    }
    for (const auto& message : database.messages) {
        for (const auto& signal : message->signals) {
            (*signal).*field = static_cast<uint32_t>(rawValue.ValueOrDefault(*message, *signal).intValue);
        }
    }
}

// --- Writing

// The settings of the database travel as defaults.
void AddDatabaseInfo(AttributeStore& store, const DatabaseInfo& info) {
    if (info.canFd == 1) {
        Attribute definition = MakeAttribute(kBusType, ObjectType::General, ValueType::String);
        definition.stringValue = kCanFd;
        store.AddDefinition(definition);
    }
    if (info.protocolType == TABRIN_PROTOCOL_J1939 || info.protocolType == TABRIN_PROTOCOL_NMEA2000) {
        const std::string_view name = info.protocolType == TABRIN_PROTOCOL_J1939 ? kJ1939Pgn : kIsNmea;
        Attribute definition = MakeAttribute(name, ObjectType::General, ValueType::Int);
        definition.minimum = 0;
        definition.maximum = 1;
        definition.intValue = 1;
        store.AddDefinition(definition);
    }
}

// The definition is added with the first value: without one there is no definition either.
void AddLongName(AttributeStore& store, Attribute value, const std::string& name) {
    store.AddDefinition(value);
    value.stringValue = name;
    store.AddValue(value);
}

void AddMessageLongNames(AttributeStore& store, const CANDatabase::Messages& messages) {
    Attribute longName = MakeAttribute(kMessageLongName, ObjectType::Message, ValueType::String);
    for (const auto& message : messages) {
        if (message->name != message->identifierName) {
            longName.objectId = message->id;
            AddLongName(store, longName, message->name);
        }
    }
}

void AddSignalLongNames(AttributeStore& store, const CANDatabase::Messages& messages) {
    Attribute longName = MakeAttribute(kSignalLongName, ObjectType::Signal, ValueType::String);
    for (const auto& message : messages) {
        longName.objectId = message->id;
        for (const auto& signal : message->signals) {
            if (signal->name != signal->identifierName) {
                longName.signalName = signal->identifierName;
                AddLongName(store, longName, signal->name);
            }
        }
    }
}

}  // namespace

void ApplyWellKnownAttributes(CANDatabase& database) {
    ApplyBusType(database);
    ApplyProtocol(database, kJ1939Pgn, TABRIN_PROTOCOL_J1939);
    ApplyProtocol(database, kIsNmea, TABRIN_PROTOCOL_NMEA2000);
    ApplyMessageLongNames(database);
    ApplySendTypes(database);
    ApplyCycleTimes(database);
    ApplySignalLongNames(database);
    ApplyRawValues(database, kSignalStartValue, &CANSignal::startValue);
    ApplyRawValues(database, kSignalInactiveValue, &CANSignal::inactiveValue);
}

// All lines go out as one piece. Even an empty one notices that the stream has failed.
void WriteWellKnownAttributes(DbcFileStream& stream, const DatabaseInfo& info, const CANDatabase::Messages& messages) {
    AttributeStore store;
    AddDatabaseInfo(store, info);
    AddMessageLongNames(store, messages);
    AddSignalLongNames(store, messages);
    const std::string text = WriteAttributeSections(store);
    if (stream.ReadyToWrite() && !text.empty()) {
        stream.WriteLine(text);
    }
}

}  // namespace tabrin
