#include "model/attribute.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "io/text_number.h"
#include "io/token_reader.h"

namespace tabrin {

namespace {

bool SetEnumFromName(AttributeValue& value, std::string_view name) {
    const EnumValues& names = value.definition->EnumList();
    const size_t index = names.IndexOf(name);
    if (index == names.size()) {
        return false;
    }
    value.number = static_cast<int32_t>(index);
    return true;
}

}  // namespace

EnumValues::EnumValues(std::vector<std::string> names) : names_(std::move(names)), byName_(names_.size()) {
    std::iota(byName_.begin(), byName_.end(), 0U);
    std::stable_sort(byName_.begin(), byName_.end(), [this](uint32_t a, uint32_t b) { return names_[a] < names_[b]; });
}

size_t EnumValues::IndexOf(std::string_view name) const {
    const auto isLess = [this](uint32_t index, std::string_view text) { return names_[index] < text; };
    const auto found = std::lower_bound(byName_.begin(), byName_.end(), name, isLess);
    return found != byName_.end() && names_[*found] == name ? *found : names_.size();
}

const Attribute::EnumValues& Attribute::EnumList() const {
    static const EnumValues kNone;
    return enumValues ? *enumValues : kNone;
}

const std::string* Attribute::EnumTextAt(int32_t index) const {
    if (index < 0 || static_cast<size_t>(index) >= EnumList().size()) {
        return nullptr;
    }
    return &EnumList()[static_cast<size_t>(index)];
}

bool Attribute::Accepts(int32_t number) const {
    if (valueType == AttributeValueType::Int) {
        return minimum <= number && number <= maximum;
    }
    return valueType == AttributeValueType::Enum && EnumTextAt(number) != nullptr;
}

bool SetValueFromText(AttributeValue& value, std::string_view token) {
    const AttributeValueType valueType = value.definition->valueType;
    if (valueType == AttributeValueType::String) {
        value.text = Unquoted(token);
        return true;
    }
    int32_t number = 0;
    if (ToI32(token, number) && value.definition->Accepts(number)) {
        value.number = number;
        return true;
    }
    // A number outside the list leaves the name, if there is one behind it.
    return valueType == AttributeValueType::Enum && SetEnumFromName(value, Unquoted(token));
}

bool SetValueFromText(Attribute& attribute, std::string_view token) {
    AttributeValue value{&attribute};
    if (!SetValueFromText(value, token)) {
        return false;
    }
    if (attribute.valueType == AttributeValueType::Int) {
        attribute.intValue = value.number;
    } else if (attribute.valueType == AttributeValueType::Enum) {
        attribute.enumIndex = value.number;
    } else {
        attribute.stringValue = value.text;
    }
    return true;
}

}  // namespace tabrin
