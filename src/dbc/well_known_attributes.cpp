#include "dbc/well_known_attributes.h"

#include <algorithm>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

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
    const Attribute* definition = store.FindDefinition(probe, valueType);
    if (definition == nullptr) {
        return std::nullopt;
    }
    std::optional<Attribute> value = store.FindValue(probe, valueType);
    return value ? value : *definition;
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
    uint32_t mark;                   // in attributesSet of the object
    uint32_t Object::*number;        // the field of an Int
    std::string_view Object::*text;  // the field of any other
};

// Numbers keep their bits; no factor or offset is applied to the raw values of signals. A name given later changes the
// long name only: files refer to the identifier form.
constexpr ObjectAttribute<CANMessage> kMessageAttributes[] = {
    {kMessageLongName, ValueType::String, false, 1, nullptr, &CANMessage::name},
    {kMessageSendType, ValueType::Enum, true, 2, nullptr, &CANMessage::sendType},
    {kMessageCycleTime, ValueType::Int, true, 4, &CANMessage::cycleTime, nullptr},
};
constexpr ObjectAttribute<CANSignal> kSignalAttributes[] = {
    {kSignalLongName, ValueType::String, false, 1, nullptr, &CANSignal::name},
    {kSignalStartValue, ValueType::Int, true, 2, &CANSignal::startValue, nullptr},
    {kSignalInactiveValue, ValueType::Int, true, 4, &CANSignal::inactiveValue, nullptr},
};

// What the value of an attribute is to objects. However many objects share a text, it is kept once.
class ValueTexts {
public:
    explicit ValueTexts(Arena& arena) : arena_(arena) {}

    // Of a String the long name, of an Enum the send type; numbers have none.
    std::string_view Of(const AttributeValue& value) {
        if (value.definition->valueType == ValueType::Enum) {
            return SendType(value);
        }
        return value.text.empty() ? std::string_view() : KeepNormalised(arena_, value.text);
    }

private:
    std::string_view SendType(const AttributeValue& value) {
        const std::string* text = value.definition->EnumTextAt(value.number);
        if (text == nullptr) {
            return {};
        }
        if (definition_ != value.definition) {
            definition_ = value.definition;
            sendTypes_.assign(definition_->EnumList().size(), {});
        }
        std::string_view& kept = sendTypes_[static_cast<size_t>(value.number)];
        if (kept.empty()) {
            kept = KeepIdentifier(arena_, *text);
        }
        return kept;
    }

    Arena& arena_;
    const Attribute* definition_ = nullptr;
    std::vector<std::string_view> sendTypes_;  // of that definition; empty until they are asked for
};

AttributeValue DefaultOf(const Attribute& definition) {
    const bool isEnum = definition.valueType == ValueType::Enum;
    return {&definition, 0, isEnum ? definition.enumIndex : definition.intValue, {}, definition.stringValue};
}

template <typename Object>
void Set(Object& object, const ObjectAttribute<Object>& attribute, int32_t number, std::string_view text) {
    if (attribute.number != nullptr) {
        object.*attribute.number = static_cast<uint32_t>(number);
    } else {
        object.*attribute.text = text;
    }
}

// The first value stays: false for a later one of the same key. Such a one means the same objects, so that the first of
// them tells for all.
template <typename Object>
bool SetOnce(Object& object, const ObjectAttribute<Object>& attribute, int32_t number, std::string_view text) {
    if ((object.attributesSet & attribute.mark) != 0) {
        return false;
    }
    object.attributesSet |= attribute.mark;
    Set(object, attribute, number, text);
    return true;
}

// Finds what a definition means to objects.
template <typename Object>
class DefinedAttributes {
public:
    explicit DefinedAttributes(std::span<const ObjectAttribute<Object>> table) : table_(table) {}

    // nullptr when it means nothing to them.
    const ObjectAttribute<Object>* Find(const Attribute& definition) {
        if (last_ != &definition) {
            last_ = &definition;
            const auto found = std::find_if(table_.begin(), table_.end(), [&](const auto& attribute) {
                return attribute.valueType == definition.valueType && attribute.name == definition.name;
            });
            found_ = found != table_.end() ? &*found : nullptr;
        }
        return found_;
    }

private:
    std::span<const ObjectAttribute<Object>> table_;
    const Attribute* last_ = nullptr;
    const ObjectAttribute<Object>* found_ = nullptr;
};

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
            use(attribute, DefaultOf(*definition));
        }
    }
}

// Goes through a whole database once: the objects of a large one are in memory and not in the cache any more.
class AttributeApplier {
public:
    explicit AttributeApplier(CANDatabase& database) : database_(database), texts_(database.arena) {}

    void ApplyDefaults() {
        const AttributeStore& store = database_.attributes;
        ForEachDefault(store, ObjectType::Message, kMessageAttributes,
                       [this](const auto& attribute, const auto& value) {
                           const std::string_view text = texts_.Of(value);
                           for (const auto& message : database_.messages) {
                               Set(*message, attribute, value.number, text);
                           }
                       });
        ForEachDefault(store, ObjectType::Signal, kSignalAttributes, [this](const auto& attribute, const auto& value) {
            for (const auto& message : database_.messages) {
                for (const auto& signal : message->signals) {
                    Set(*signal, attribute, value.number, {});
                }
            }
        });
    }

    void ApplyValues() {
        database_.attributes.ForEachValue([this](const AttributeValue& value) {
            if (value.definition->objectType == ObjectType::Message) {
                ApplyMessageValue(value);
            } else if (value.definition->objectType == ObjectType::Signal) {
                ApplySignalValue(value);
            }
        });
    }

private:
    void ApplyMessageValue(const AttributeValue& value) {
        const auto* attribute = messageAttributes_.Find(*value.definition);
        if (attribute == nullptr) {
            return;
        }
        const std::string_view text = texts_.Of(value);
        for (const auto& message : database_.FindMessages(value.objectId)) {
            if (!SetOnce(*message, *attribute, value.number, text)) {
                return;
            }
        }
    }

    // Signals go by their identifier form here, not by the name they were read with.
    void ApplySignalValue(const AttributeValue& value) {
        const auto* attribute = signalAttributes_.Find(*value.definition);
        if (attribute == nullptr) {
            return;
        }
        const std::string_view text = texts_.Of(value);
        database_.FindSignalNames(value.objectId).ForEachIdentified(value.signalName, [&](CANSignal& signal) {
            return SetOnce(signal, *attribute, value.number, text);
        });
    }

    CANDatabase& database_;
    ValueTexts texts_;
    DefinedAttributes<CANMessage> messageAttributes_{kMessageAttributes};
    DefinedAttributes<CANSignal> signalAttributes_{kSignalAttributes};
};

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
    AttributeApplier applier(database);
    applier.ApplyDefaults();
    applier.ApplyValues();
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
