#include "dbc/well_known_attributes.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>

#include "dbc/attribute_statements.h"
#include "model/object_name.h"

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

// The value of the database as a whole, else the default; none when the attribute is not defined.
std::optional<Attribute> FindGeneral(const AttributeStore& store, std::string_view name, ValueType valueType) {
    const Attribute probe = MakeAttribute(name, ObjectType::General, valueType);
    std::optional<Attribute> value = store.FindValue(probe, valueType);
    const Attribute* definition = store.FindDefinition(probe, valueType);
    if (!value && definition != nullptr) {
        value = *definition;
    }
    return value;
}

// A file without a bus type leaves the flag as it was before, also as the caller set it.
void ApplyBusType(CANDatabase& database) {
    const std::optional<Attribute> value = FindGeneral(database.attributes, kBusType, ValueType::String);
    if (value) {
        database.info.canFd = value->stringValue == kCanFd ? 1 : 0;
    }
}

void ApplyProtocol(CANDatabase& database, std::string_view name, uint32_t protocolType) {
    const std::optional<Attribute> value = FindGeneral(database.attributes, name, ValueType::Int);
    if (value && value->intValue == 1) {
        database.info.protocolType = protocolType;
    }
}

// What an attribute of messages or signals sets.
template <typename Object>
struct ObjectAttribute {
    std::string_view name;
    ValueType valueType;
    // Otherwise an object without a value of its own stays as it is.
    bool takesDefault;
    uint32_t mark;  // in attributesSet of the object
    void (*set)(Object& object, const Attribute& attribute);
};

void SetSendType(CANMessage& message, const Attribute& attribute) {
    const std::string* text = attribute.EnumText();
    message.SetSendType(text != nullptr ? std::string_view(*text) : std::string_view());
}

// Numbers keep their bits; no factor or offset is applied to the raw values of signals.
template <typename Object, uint32_t Object::*Field>
void SetNumber(Object& object, const Attribute& attribute) {
    object.*Field = static_cast<uint32_t>(attribute.intValue);
}

// A name given later changes the long name only: files refer to the identifier form.
template <typename Object>
void SetLongName(Object& object, const Attribute& attribute) {
    object.name = attribute.stringValue;
}

constexpr ObjectAttribute<CANMessage> kMessageAttributes[] = {
    {kMessageLongName, ValueType::String, false, 1, SetLongName<CANMessage>},
    {kMessageSendType, ValueType::Enum, true, 2, SetSendType},
    {kMessageCycleTime, ValueType::Int, true, 4, SetNumber<CANMessage, &CANMessage::cycleTime>},
};
constexpr ObjectAttribute<CANSignal> kSignalAttributes[] = {
    {kSignalLongName, ValueType::String, false, 1, SetLongName<CANSignal>},
    {kSignalStartValue, ValueType::Int, true, 2, SetNumber<CANSignal, &CANSignal::startValue>},
    {kSignalInactiveValue, ValueType::Int, true, 4, SetNumber<CANSignal, &CANSignal::inactiveValue>},
};

template <typename Table>
auto FindIn(const Table& table, const Attribute& value) {
    return std::find_if(std::begin(table), std::end(table), [&](const auto& attribute) {
        return attribute.valueType == value.valueType && attribute.name == value.name;
    });
}

// Calls `use` with each attribute of the table that has a default to be taken. A number that is 0 is left out: that is
// what the fields hold already.
template <typename Table, typename Use>
void ForEachDefault(const AttributeStore& store, ObjectType objectType, const Table& table, Use use) {
    for (const auto& attribute : table) {
        const Attribute probe = MakeAttribute(attribute.name, objectType, attribute.valueType);
        const Attribute* definition = store.FindDefinition(probe, attribute.valueType);
        if (definition == nullptr || !attribute.takesDefault) {
            continue;
        }
        if (attribute.valueType != ValueType::Int || definition->intValue != 0) {
            use(attribute, *definition);
        }
    }
}

void ApplyDefaults(CANDatabase& database) {
    const AttributeStore& store = database.attributes;
    ForEachDefault(store, ObjectType::Message, kMessageAttributes, [&](const auto& attribute, const Attribute& value) {
        for (const auto& message : database.messages) {
            attribute.set(*message, value);
        }
    });
    ForEachDefault(store, ObjectType::Signal, kSignalAttributes, [&](const auto& attribute, const Attribute& value) {
        for (const auto& message : database.messages) {
            for (const auto& signal : message->signals) {
                attribute.set(*signal, value);
            }
        }
    });
}

// The first value stays: false for a later one of the same key. Such a one means the same objects, so that the first of
// them tells for all.
template <typename Object>
bool SetOnce(Object& object, const ObjectAttribute<Object>& attribute, const Attribute& value) {
    if ((object.attributesSet & attribute.mark) != 0) {
        return false;
    }
    object.attributesSet |= attribute.mark;
    attribute.set(object, value);
    return true;
}

void ApplyMessageValue(CANDatabase& database, const Attribute& value) {
    const auto* attribute = FindIn(kMessageAttributes, value);
    if (attribute == std::end(kMessageAttributes)) {
        return;
    }
    for (const auto& message : database.FindMessages(value.objectId)) {
        if (!SetOnce(*message, *attribute, value)) {
            return;
        }
    }
}

// Signals go by their identifier form here, not by the name they were read with.
void ApplySignalValue(CANDatabase& database, const Attribute& value) {
    const auto* attribute = FindIn(kSignalAttributes, value);
    if (attribute == std::end(kSignalAttributes)) {
        return;
    }
    database.FindSignalNames(value.objectId).ForEachIdentified(value.signalName, [&](CANSignal& signal) {
        return SetOnce(signal, *attribute, value);
    });
}

void ApplyValues(CANDatabase& database) {
    database.attributes.ForEachValue([&](Attribute value) {
        // The texts of objects are long names. However many share one, it is kept once.
        if (!value.stringValue.empty()) {
            value.stringValue = KeepNormalised(database.arena, value.stringValue);
        }
        if (value.objectType == ObjectType::Message) {
            ApplyMessageValue(database, value);
        } else if (value.objectType == ObjectType::Signal) {
            ApplySignalValue(database, value);
        }
    });
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
void AddLongName(AttributeStore& store, Attribute value, std::string_view name) {
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

void AddSignalLongNames(AttributeStore& store, const SignalsOf& renamed) {
    Attribute longName = MakeAttribute(kSignalLongName, ObjectType::Signal, ValueType::String);
    for (const SignalOf& entry : renamed) {
        longName.objectId = entry.message->id;
        longName.signalName = entry.signal->identifierName;
        AddLongName(store, longName, entry.signal->name);
    }
}

}  // namespace

void ApplyWellKnownAttributes(CANDatabase& database) {
    ApplyBusType(database);
    ApplyProtocol(database, kJ1939Pgn, TABRIN_PROTOCOL_J1939);
    ApplyProtocol(database, kIsNmea, TABRIN_PROTOCOL_NMEA2000);
    ApplyDefaults(database);
    ApplyValues(database);
}

// All lines go out as one piece. Even an empty one notices that the stream has failed.
void WriteWellKnownAttributes(DbcFileStream& stream, const DatabaseInfo& info, const CANDatabase::Messages& messages,
                              const SignalsOf& renamed) {
    AttributeStore store;
    AddDatabaseInfo(store, info);
    AddMessageLongNames(store, messages);
    AddSignalLongNames(store, renamed);
    const std::string text = WriteAttributeSections(store);
    if (stream.ReadyToWrite() && !text.empty()) {
        stream.WriteLine(text);
    }
}

}  // namespace tabrin
