#include "model/attribute.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "io/text_number.h"
#include "io/token_reader.h"

namespace tabrin {

namespace {

bool SetIntFromNumber(Attribute& attribute, int32_t number) {
    if (number < attribute.minimum || number > attribute.maximum) {
        return false;
    }
    attribute.intValue = number;
    return true;
}

bool SetEnumFromNumber(Attribute& attribute, int32_t number) {
    if (number < 0 || static_cast<size_t>(number) >= attribute.EnumList().size()) {
        return false;
    }
    attribute.enumIndex = number;
    return true;
}

bool SetEnumFromName(Attribute& attribute, std::string_view name) {
    const size_t index = attribute.EnumList().IndexOf(name);
    if (index == attribute.EnumList().size()) {
        return false;
    }
    attribute.enumIndex = static_cast<int32_t>(index);
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

const std::string* Attribute::EnumText() const {
    if (enumIndex < 0 || static_cast<size_t>(enumIndex) >= EnumList().size()) {
        return nullptr;
    }
    return &EnumList()[static_cast<size_t>(enumIndex)];
}

bool SetValueFromText(Attribute& attribute, std::string_view text) {
    int32_t number = 0;
    if (attribute.valueType == AttributeValueType::Int) {
        return ToI32(text, number) && SetIntFromNumber(attribute, number);
    }
    if (attribute.valueType == AttributeValueType::Enum) {
        // A number outside the list leaves the name, if there is one behind it.
        return (ToI32(text, number) && SetEnumFromNumber(attribute, number)) ||
               SetEnumFromName(attribute, Unquoted(text));
    }
    if (attribute.valueType == AttributeValueType::String) {
        attribute.stringValue = Unquoted(text);
        return true;
    }
    return false;
}

}  // namespace tabrin
