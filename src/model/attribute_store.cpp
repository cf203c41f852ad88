#include "model/attribute_store.h"

#include <algorithm>
#include <utility>

namespace tabrin {

namespace {

std::string_view ValueTypeCode(AttributeValueType valueType) {
    switch (valueType) {
        case AttributeValueType::Int:
            return "$$Int";
        case AttributeValueType::Enum:
            return "$$Enum";
        case AttributeValueType::String:
            return "$$Str";
        case AttributeValueType::Unsupported:
            break;
    }
    return "$$Unsup";
}

std::string_view ObjectTypeCode(AttributeObjectType objectType) {
    switch (objectType) {
        case AttributeObjectType::Message:
            return "$$Msg";
        case AttributeObjectType::Signal:
            return "$$Sig";
        case AttributeObjectType::General:
            break;
    }
    return "$$Gen";
}

template <typename Index>
const Attribute* Find(const Index& index, const std::string& key) {
    const auto found = index.find(key);
    return found != index.end() ? found->second.get() : nullptr;
}

template <typename Sequence, typename Index>
void AddFirst(Sequence& sequence, Index& index, std::string key, const Attribute& attribute) {
    const auto [place, isNew] = index.try_emplace(std::move(key));
    if (isNew) {
        place->second = std::make_shared<Attribute>(attribute);
        sequence.push_back(place->second);
    }
}

}  // namespace

std::string DefinitionKey(const Attribute& attribute, AttributeValueType valueType) {
    std::string key = attribute.name;
    return key.append(ObjectTypeCode(attribute.objectType)).append(ValueTypeCode(valueType));
}

std::string ValueKey(const Attribute& attribute, AttributeValueType valueType) {
    std::string key = attribute.name;
    key += ObjectTypeCode(attribute.objectType);
    if (attribute.objectType != AttributeObjectType::General) {
        key.append("$$").append(std::to_string(attribute.objectId));
    }
    if (attribute.objectType == AttributeObjectType::Signal) {
        key.append("$$").append(attribute.signalName);
    }
    key += ValueTypeCode(valueType);
    return key;
}

void AttributeStore::Clear(std::span<const std::string_view> nameFilter) {
    Clear();
    nameFilter_ = nameFilter;
}

// Fresh containers, not emptied ones, so that the memory of a large file goes back.
void AttributeStore::Clear() {
    definitions_ = {};
    definitionIndex_ = {};
    values_ = {};
    valueIndex_ = {};
}

bool AttributeStore::IsNameRejected(std::string_view name) const {
    return !nameFilter_.empty() && std::find(nameFilter_.begin(), nameFilter_.end(), name) == nameFilter_.end();
}

const Attribute* AttributeStore::FindDefinition(const Attribute& probe, AttributeValueType valueType) const {
    return Find(definitionIndex_, DefinitionKey(probe, valueType));
}

const Attribute* AttributeStore::FindValue(const Attribute& probe, AttributeValueType valueType) const {
    return Find(valueIndex_, ValueKey(probe, valueType));
}

void AttributeStore::AddDefinition(const Attribute& attribute) {
    AddFirst(definitions_, definitionIndex_, DefinitionKey(attribute, attribute.valueType), attribute);
}

void AttributeStore::AddValue(const Attribute& attribute) {
    AddFirst(values_, valueIndex_, ValueKey(attribute, attribute.valueType), attribute);
}

void AttributeStore::SetDefaults(std::string_view name, std::string_view text) {
    for (const std::shared_ptr<Attribute>& definition : definitions_) {
        if (definition->name == name) {
            SetValueFromText(*definition, text);
        }
    }
}

}  // namespace tabrin
