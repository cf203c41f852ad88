// The working store of attributes: filled while a file is read or prepared for writing, empty otherwise.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "model/arena.h"
#include "model/attribute.h"

namespace tabrin {

class AttributeStore {
public:
    using Sequence = std::vector<std::shared_ptr<Attribute>>;

    // Empties the store and accepts only attributes of these names from now on; without names, all. The names must
    // outlive the store.
    void Clear(std::span<const std::string_view> nameFilter);
    // Empties the store. The filter stays.
    void Clear();

    [[nodiscard]] bool IsNameRejected(std::string_view name) const;

    // Look up by the name and the object of the probe, whose own value type is ignored.
    [[nodiscard]] const Attribute* FindDefinition(const Attribute& probe, AttributeValueType valueType) const;
    [[nodiscard]] std::optional<Attribute> FindValue(const Attribute& probe, AttributeValueType valueType) const;

    // The definition that a value of this name binds to. The network comes first: where a name is defined for the
    // network and for messages too, its values bind to the network definition, which their statements then do not fit.
    // Within an object type the order is Int, String, Enum. nullptr for a rejected name too.
    [[nodiscard]] const Attribute* FindDefinitionForValue(std::string_view name);

    // The first definition or value of a key counts; a later one is dropped, or found by nobody. The key is the name,
    // the value type and the object: for a definition its type, for a value also the message and the signal.
    void AddDefinition(const Attribute& attribute);
    void AddValue(const Attribute& attribute);
    // The same for a value whose definition is one of the store.
    void AddValue(const AttributeValue& value);

    // Sets the default of every definition of that name, whatever its object and value type. One that the text does not
    // fit keeps its default.
    void SetDefaults(std::string_view name, std::string_view text);

    // In the order in which they were added, without later ones of a key.
    [[nodiscard]] const Sequence& Definitions() const { return definitions_; }
    [[nodiscard]] std::vector<Attribute> Values() const;

    // Calls `use` with the values in that order, the later ones of a key included: to leave them out takes longer than
    // to pass over them.
    template <typename Use>
    void ForEachValue(Use use) const {
        for (const ValueNode* node = firstValue_; node != nullptr; node = node->next) {
            use(node->value);
        }
    }

private:
    // Values stand in the arena in the order in which they were added, each with its texts behind it.
    struct ValueNode {
        AttributeValue value;
        ValueNode* next = nullptr;
    };

    static Attribute Whole(const AttributeValue& value);
    std::shared_ptr<Attribute> Kept(const Attribute& attribute);
    [[nodiscard]] const Attribute* LookUpDefinitionForValue(std::string_view name) const;

    Arena arena_;  // of the attributes and their texts
    // Few, since in reading only known names are accepted (nine, of three object and three value types each) and in
    // writing there are four: looked through from the front.
    Sequence definitions_;
    Sequence unbound_;  // serve as definitions of values that were not made from one
    ValueNode* firstValue_ = nullptr;
    ValueNode* lastValue_ = nullptr;
    size_t numValues_ = 0;
    bool hasGeneralValues_ = false;
    std::span<const std::string_view> nameFilter_;
    // What values were last found to bind to. Files give the values object by object or attribute by attribute, so that
    // the same few names come again and again; their lengths tell them apart.
    std::array<const Attribute*, 32> boundByLength_{};
};

}  // namespace tabrin
