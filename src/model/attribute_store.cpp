#include "model/attribute_store.h"

#include <algorithm>
#include <utility>

namespace tabrin {

namespace {

bool IsOfKind(const Attribute& attribute, const Attribute& probe, AttributeValueType valueType) {
    return attribute.valueType == valueType && attribute.objectType == probe.objectType && attribute.name == probe.name;
}

// The place of a value type in the order in which a value looks for its definition.
int SearchRank(AttributeValueType valueType) {
    switch (valueType) {
        case AttributeValueType::Int:
            return 0;
        case AttributeValueType::String:
            return 1;
        case AttributeValueType::Enum:
        case AttributeValueType::Unsupported:
            break;
    }
    return 2;
}

bool IsFoundBefore(const Attribute& a, const Attribute& b) {
    return a.objectType != b.objectType ? a.objectType < b.objectType
                                        : SearchRank(a.valueType) < SearchRank(b.valueType);
}

}  // namespace

size_t AttributeStore::ValueHash::operator()(const Attribute* value) const {
    // The rest of the key says little: a signal has a handful of attributes at most.
    return std::hash<std::string>()(value->signalName) ^ (value->objectId * size_t{0x9E3779B97F4A7C15}) ^
           value->name.size();
}

bool AttributeStore::SameKey::operator()(const Attribute* a, const Attribute* b) const {
    return a->objectId == b->objectId && IsOfKind(*a, *b, b->valueType) && a->signalName == b->signalName;
}

void AttributeStore::Clear(std::span<const std::string_view> nameFilter) {
    Clear();
    nameFilter_ = nameFilter;
}

// Fresh containers, not emptied ones, so that the memory of a large file goes back.
void AttributeStore::Clear() {
    definitions_ = Sequence();
    valueIndex_ = ValueIndex();
    values_ = Sequence();
}

bool AttributeStore::IsNameRejected(std::string_view name) const {
    return !nameFilter_.empty() && std::find(nameFilter_.begin(), nameFilter_.end(), name) == nameFilter_.end();
}

const Attribute* AttributeStore::FindDefinition(const Attribute& probe, AttributeValueType valueType) const {
    for (const std::shared_ptr<Attribute>& definition : definitions_) {
        if (IsOfKind(*definition, probe, valueType)) {
            return definition.get();
        }
    }
    return nullptr;
}

const Attribute* AttributeStore::FindValue(const Attribute& probe, AttributeValueType valueType) const {
    Attribute key = probe;
    key.valueType = valueType;
    const auto found = valueIndex_.find(&key);
    return found != valueIndex_.end() ? *found : nullptr;
}

const Attribute* AttributeStore::FindDefinitionForValue(std::string_view name) const {
    const Attribute* first = nullptr;
    for (const std::shared_ptr<Attribute>& definition : definitions_) {
        if (definition->name == name && (first == nullptr || IsFoundBefore(*definition, *first))) {
            first = definition.get();
        }
    }
    return first;
}

void AttributeStore::AddDefinition(const Attribute& attribute) {
    if (FindDefinition(attribute, attribute.valueType) == nullptr) {
        definitions_.push_back(std::make_shared<Attribute>(attribute));
    }
}

void AttributeStore::AddValue(const Attribute& attribute) {
    AddValue(std::make_shared<Attribute>(attribute));
}

// Kept first, so that the index never knows a value that is not kept.
void AttributeStore::AddValue(std::shared_ptr<Attribute> attribute) {
    values_.push_back(std::move(attribute));
    if (!valueIndex_.insert(values_.back().get()).second) {
        values_.pop_back();
    }
}

void AttributeStore::SetDefaults(std::string_view name, std::string_view text) {
    for (const std::shared_ptr<Attribute>& definition : definitions_) {
        if (definition->name == name) {
            SetValueFromText(*definition, text);
        }
    }
}

}  // namespace tabrin
