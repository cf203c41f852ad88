// Attributes: named, typed properties of the database, of messages and of signals.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tabrin {

// Statements for nodes, environment variables and relations have no object type here; they are dropped in reading.
enum class AttributeObjectType : uint32_t { General = 0, Message = 1, Signal = 2 };

// Floating-point and hexadecimal attributes do not exist. Unsupported is never stored.
enum class AttributeValueType : uint32_t { Unsupported = 0, Int = 1, Enum = 2, String = 3 };

// The values of an enumeration, in the order of their indexes.
class EnumValues {
public:
    EnumValues() = default;
    explicit EnumValues(std::vector<std::string> names);

    [[nodiscard]] bool empty() const { return names_.empty(); }
    [[nodiscard]] size_t size() const { return names_.size(); }
    [[nodiscard]] const std::string& operator[](size_t index) const { return names_[index]; }
    [[nodiscard]] auto begin() const { return names_.begin(); }
    [[nodiscard]] auto end() const { return names_.end(); }

    // The first index of the name; the size when it is none of them.
    [[nodiscard]] size_t IndexOf(std::string_view name) const;

private:
    std::vector<std::string> names_;
    std::vector<uint32_t> byName_;  // indexes in the order of their names, so that thousands of them are no trouble
};

// A definition with its default, or a value. A value is a copy of its definition with the object and the value filled
// in. The texts are views: those of an attribute in a store live as long as it does.
struct Attribute {
    using EnumValues = tabrin::EnumValues;

    std::string_view name;
    AttributeObjectType objectType = AttributeObjectType::General;
    uint32_t objectId = 0;        // message identifier, for Message and Signal
    std::string_view signalName;  // for Signal
    AttributeValueType valueType = AttributeValueType::Int;
    int32_t intValue = 0;
    int32_t minimum = std::numeric_limits<int32_t>::min();
    int32_t maximum = std::numeric_limits<int32_t>::max();
    int32_t enumIndex = 0;
    // Never changed once made, so that the values of an attribute share the list of their definition. nullptr: empty.
    std::shared_ptr<const EnumValues> enumValues;
    std::string_view stringValue;

    [[nodiscard]] const EnumValues& EnumList() const;
    // The name of the enumeration value at an index, or at enumIndex; nullptr when that is outside the list.
    [[nodiscard]] const std::string* EnumTextAt(int32_t index) const;
    [[nodiscard]] const std::string* EnumText() const { return EnumTextAt(enumIndex); }
    // Whether a number is within the range of an Int or the index of a name of an Enum.
    [[nodiscard]] bool Accepts(int32_t number) const;
};

// What a value has for itself; the rest is in its definition. A file holds many more values than of anything else here.
struct AttributeValue {
    const Attribute* definition = nullptr;
    uint32_t objectId = 0;
    int32_t number = 0;  // the value of an Int, the index of an Enum
    std::string_view signalName{};
    std::string_view text{};  // the value of a String
};

// Takes the value from one token of a statement: a number within the range, an index or a quoted name from the list, a
// quoted text. False, with nothing changed, when the token does not fit the definition. Text behind a number is
// ignored; a token without quotes gives an empty string. A text stays a view into the token.
bool SetValueFromText(AttributeValue& value, std::string_view token);
// The same for the value that the attribute holds itself.
bool SetValueFromText(Attribute& attribute, std::string_view token);

}  // namespace tabrin
