// The working store of attributes: filled while a file is read or prepared for writing, empty otherwise.
#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "model/attribute.h"

namespace tabrin {

// The key of a definition: name, object type and value type, so that one name may have several definitions. The codes in
// keys are never seen outside.
std::string DefinitionKey(const Attribute& attribute, AttributeValueType valueType);
// The key of a value: also which message or signal it belongs to. "Name$$Sig$$100$$Speed$$Int".
std::string ValueKey(const Attribute& attribute, AttributeValueType valueType);

class AttributeStore {
public:
    using Sequence = std::vector<std::shared_ptr<Attribute>>;

    // Empties the store and accepts only attributes of these names from now on; without names, all. The names must
    // outlive the store.
    void Clear(std::span<const std::string_view> nameFilter);
    // Empties the store. The filter stays.
    void Clear();

    [[nodiscard]] bool IsNameRejected(std::string_view name) const;

    // Look up by the name and the object of the probe, whose own value type is ignored. nullptr when there is none.
    [[nodiscard]] const Attribute* FindDefinition(const Attribute& probe, AttributeValueType valueType) const;
    [[nodiscard]] const Attribute* FindValue(const Attribute& probe, AttributeValueType valueType) const;

    // The first definition or value of a key stays; a later one is dropped.
    void AddDefinition(const Attribute& attribute);
    void AddValue(const Attribute& attribute);

    // Sets the default of every definition of that name, whatever its object and value type. One that the text does not
    // fit keeps its default.
    void SetDefaults(std::string_view name, std::string_view text);

    // In the order in which they were added.
    [[nodiscard]] const Sequence& Definitions() const { return definitions_; }
    [[nodiscard]] const Sequence& Values() const { return values_; }

private:
    using Index = std::unordered_map<std::string, std::shared_ptr<Attribute>>;

    Sequence definitions_;
    Index definitionIndex_;
    Sequence values_;
    Index valueIndex_;
    std::span<const std::string_view> nameFilter_;
};

}  // namespace tabrin
