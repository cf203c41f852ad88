// Attributes as text, so that an expectation is a literal and a difference can be read.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "model/attribute.h"

namespace tabrin {

// The objects, value type and name, then the range of an Int, then every field that is not as in a fresh attribute:
// "Signal String Name id=100 signal=Speed text=[Engine speed]".
inline std::string AttributeText(const Attribute& attribute) {
    static const char* const kObjects[] = {"General", "Message", "Signal"};
    static const char* const kTypes[] = {"Unsupported", "Int", "Enum", "String"};
    const Attribute fresh;
    std::string text = kObjects[static_cast<uint32_t>(attribute.objectType)];
    text.append(" ").append(kTypes[static_cast<uint32_t>(attribute.valueType)]).append(" ").append(attribute.name);
    if (attribute.valueType == AttributeValueType::Int || attribute.minimum != fresh.minimum ||
        attribute.maximum != fresh.maximum) {
        text += " " + std::to_string(attribute.minimum) + ".." + std::to_string(attribute.maximum);
    }
    if (attribute.enumValues != nullptr && !attribute.enumValues->empty()) {
        std::string separator = " {";
        for (const std::string& value : *attribute.enumValues) {
            text.append(separator).append(value);
            separator = "|";
        }
        text += "}";
    }
    if (attribute.objectId != 0) {
        text += " id=" + std::to_string(attribute.objectId);
    }
    if (!attribute.signalName.empty()) {
        text.append(" signal=").append(attribute.signalName);
    }
    if (attribute.intValue != 0) {
        text += " int=" + std::to_string(attribute.intValue);
    }
    if (attribute.enumIndex != 0) {
        text += " index=" + std::to_string(attribute.enumIndex);
    }
    if (!attribute.stringValue.empty()) {
        text.append(" text=[").append(attribute.stringValue).append("]");
    }
    return text;
}

inline std::vector<std::string> AttributeTexts(const std::vector<std::shared_ptr<Attribute>>& attributes) {
    std::vector<std::string> texts;
    texts.reserve(attributes.size());
    for (const std::shared_ptr<Attribute>& attribute : attributes) {
        texts.push_back(AttributeText(*attribute));
    }
    return texts;
}

inline std::vector<std::string> AttributeTexts(const std::vector<Attribute>& attributes) {
    std::vector<std::string> texts;
    texts.reserve(attributes.size());
    for (const Attribute& attribute : attributes) {
        texts.push_back(AttributeText(attribute));
    }
    return texts;
}

// The list of an Enum attribute.
inline std::shared_ptr<const Attribute::EnumValues> EnumList(std::vector<std::string> values) {
    return std::make_shared<const Attribute::EnumValues>(std::move(values));
}

// A fresh attribute of that kind.
inline Attribute MakeAttribute(const char* name, AttributeObjectType objectType, AttributeValueType valueType) {
    Attribute attribute;
    attribute.name = name;
    attribute.objectType = objectType;
    attribute.valueType = valueType;
    return attribute;
}

}  // namespace tabrin
