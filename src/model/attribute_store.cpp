#include "model/attribute_store.h"

#include <algorithm>
#include <iterator>
#include <new>
#include <set>
#include <tuple>
#include <utility>

#include "io/copy_text.h"

namespace tabrin {

namespace {

auto KeyOf(const Attribute& value) {
    return std::tie(value.objectId, value.signalName, value.name, value.objectType, value.valueType);
}

bool IsOfKind(const Attribute& attribute, const Attribute& probe, AttributeValueType valueType) {
    return attribute.valueType == valueType && attribute.objectType == probe.objectType && attribute.name == probe.name;
}

// The place of a value type in the order in which a value looks for its definition.
auto SearchRank(AttributeValueType valueType) {
    static constexpr AttributeValueType kOrder[] = {AttributeValueType::Int, AttributeValueType::String,
                                                    AttributeValueType::Enum};
    return std::find(std::begin(kOrder), std::end(kOrder), valueType);
}

bool IsFoundBefore(const Attribute& a, const Attribute& b) {
    return std::pair(a.objectType, SearchRank(a.valueType)) < std::pair(b.objectType, SearchRank(b.valueType));
}

}  // namespace

void AttributeStore::Clear(std::span<const std::string_view> nameFilter) {
    Clear();
    nameFilter_ = nameFilter;
}

// Fresh containers, not emptied ones, so that the memory of a large file goes back.
void AttributeStore::Clear() {
    definitions_ = Sequence();
    firstValue_ = lastValue_ = nullptr;
    numValues_ = 0;
    hasGeneralValues_ = false;
    unbound_ = Sequence();
    boundByLength_ = {};
    arena_.Clear();
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

// Seldom asked for: what applies values to objects walks them all. Those of the network, if any, are the first in a file
// as a rule.
std::optional<Attribute> AttributeStore::FindValue(const Attribute& probe, AttributeValueType valueType) const {
    if (probe.objectType == AttributeObjectType::General && !hasGeneralValues_) {
        return std::nullopt;
    }
    for (const ValueNode* node = firstValue_; node != nullptr; node = node->next) {
        const AttributeValue& value = node->value;
        if (value.objectId == probe.objectId && value.signalName == probe.signalName &&
            IsOfKind(*value.definition, probe, valueType)) {
            return Whole(value);
        }
    }
    return std::nullopt;
}

const Attribute* AttributeStore::FindDefinitionForValue(std::string_view name) {
    const Attribute*& last = boundByLength_[name.size() % boundByLength_.size()];
    if (last != nullptr && last->name == name) {
        return last;
    }
    if (const Attribute* definition = LookUpDefinitionForValue(name); definition != nullptr) {
        last = definition;
        return definition;
    }
    return nullptr;
}

const Attribute* AttributeStore::LookUpDefinitionForValue(std::string_view name) const {
    if (IsNameRejected(name)) {
        return nullptr;
    }
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
        definitions_.push_back(Kept(attribute));
        boundByLength_ = {};
    }
}

void AttributeStore::AddValue(const Attribute& attribute) {
    const std::shared_ptr<Attribute>& definition = unbound_.emplace_back(Kept(attribute));
    const int32_t number = attribute.valueType == AttributeValueType::Enum ? attribute.enumIndex : attribute.intValue;
    AddValue({definition.get(), attribute.objectId, number, attribute.signalName, attribute.stringValue});
}

// One that is to be dropped stays behind the first of its key, which everybody finds before.
void AttributeStore::AddValue(const AttributeValue& value) {
    const size_t size = sizeof(ValueNode) + value.signalName.size() + value.text.size();
    char* const memory = arena_.Allocate(size, alignof(ValueNode));
    char* const name = memory + sizeof(ValueNode);
    char* const text = name + value.signalName.size();
    CopyText(name, value.signalName);
    CopyText(text, value.text);
    auto* const node = new (memory) ValueNode{value};
    node->value.signalName = {name, value.signalName.size()};
    node->value.text = {text, value.text.size()};
    (lastValue_ != nullptr ? lastValue_->next : firstValue_) = node;
    lastValue_ = node;
    ++numValues_;
    hasGeneralValues_ = hasGeneralValues_ || value.definition->objectType == AttributeObjectType::General;
}

std::vector<Attribute> AttributeStore::Values() const {
    std::vector<Attribute> values;
    std::set<decltype(KeyOf(values.front()))> keys;
    // Stays in place: the keys are views.
    values.reserve(numValues_);
    ForEachValue([&](const AttributeValue& value) {
        values.push_back(Whole(value));
        if (!keys.insert(KeyOf(values.back())).second) {
            values.pop_back();
        }
    });
    return values;
}

Attribute AttributeStore::Whole(const AttributeValue& value) {
    Attribute attribute = *value.definition;
    attribute.objectId = value.objectId;
    attribute.signalName = value.signalName;
    attribute.stringValue = value.text;
    const bool isEnum = attribute.valueType == AttributeValueType::Enum;
    attribute.enumIndex = isEnum ? value.number : 0;
    attribute.intValue = isEnum ? 0 : value.number;
    return attribute;
}

// A copy with texts of its own.
std::shared_ptr<Attribute> AttributeStore::Kept(const Attribute& attribute) {
    auto kept = std::allocate_shared<Attribute>(ArenaAllocator<Attribute>(arena_), attribute);
    kept->name = arena_.Keep(attribute.name);
    kept->signalName = arena_.Keep(attribute.signalName);
    kept->stringValue = arena_.Keep(attribute.stringValue);
    return kept;
}

void AttributeStore::SetDefaults(std::string_view name, std::string_view text) {
    for (const std::shared_ptr<Attribute>& definition : definitions_) {
        if (definition->name == name) {
            const bool isText = definition->valueType == AttributeValueType::String;
            SetValueFromText(*definition, isText ? arena_.Keep(text) : text);
        }
    }
}

}  // namespace tabrin
