#include "dbc/attribute_statements.h"

#include <array>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "io/dbc_keywords.h"
#include "io/text_number.h"
#include "io/token_reader.h"

namespace tabrin {

namespace {

using StatementTokens = TokenReader<StatementDelimiters>;

constexpr std::string_view kIntType = "INT";
constexpr std::string_view kEnumType = "ENUM";
constexpr std::string_view kStringType = "STRING";

bool NextOfKind(StatementTokens& tokens, TokenKind kind, std::string_view& token) {
    return tokens.Next(token) && ClassifyToken(token) == kind;
}

// "BO_ <name> <type>", "SG_ <name> <type>" or, for the network, just "<name> <type>". Returns the type; an empty one,
// which is none, for anything else.
std::string_view ParseDefinitionHead(StatementTokens& tokens, Attribute& definition) {
    std::string_view token;
    tokens.Next(token);
    if (ClassifyToken(token) == TokenKind::Word) {
        if (token != kMessageKeyword && token != kSignalKeyword) {
            return {};
        }
        definition.objectType = token == kMessageKeyword ? AttributeObjectType::Message : AttributeObjectType::Signal;
        tokens.Next(token);
    }
    if (ClassifyToken(token) != TokenKind::Quoted) {
        return {};
    }
    definition.name = Unquoted(token);
    tokens.Next(token);
    return token;
}

// One of the bounds must look like a number, and no minus sign does: "-10 100" is a range, "-10 abc" is none. A bound
// that cannot be read is 0.
bool ParseIntType(StatementTokens& tokens, Attribute& definition) {
    std::string_view minimum;
    std::string_view maximum;
    std::string_view extra;
    if (!tokens.Next(minimum) || !tokens.Next(maximum) || tokens.Next(extra)) {
        return false;
    }
    ToI32(minimum, definition.minimum);
    ToI32(maximum, definition.maximum);
    return ClassifyToken(minimum) == TokenKind::Number || ClassifyToken(maximum) == TokenKind::Number;
}

bool ParseEnumType(StatementTokens& tokens, Attribute& definition) {
    std::vector<std::string> values;
    for (std::string_view token; tokens.Next(token);) {
        if (ClassifyToken(token) != TokenKind::Quoted) {
            return false;
        }
        values.emplace_back(Unquoted(token));
    }
    definition.enumValues = std::make_shared<const EnumValues>(std::move(values));
    return !definition.enumValues->empty();
}

// A definition is one of a number until another type is met.
bool ParseType(std::string_view type, StatementTokens& tokens, Attribute& definition) {
    if (type == kIntType) {
        return ParseIntType(tokens, definition);
    }
    if (type == kEnumType) {
        definition.valueType = AttributeValueType::Enum;
        return ParseEnumType(tokens, definition);
    }
    std::string_view extra;
    definition.valueType = AttributeValueType::String;
    return type == kStringType && !tokens.Next(extra);
}

void ParseDefinition(AttributeStore& store, StatementTokens& tokens) {
    Attribute definition;
    const std::string_view type = ParseDefinitionHead(tokens, definition);
    if (!store.IsNameRejected(definition.name) && ParseType(type, tokens, definition)) {
        store.AddDefinition(definition);
    }
}

void ParseDefault(AttributeStore& store, StatementTokens& tokens) {
    std::string_view name;
    std::string_view value;
    if (!NextOfKind(tokens, TokenKind::Quoted, name) || store.IsNameRejected(Unquoted(name)) || !tokens.Next(value)) {
        return;
    }
    store.SetDefaults(Unquoted(name), value);
}

// A token that is a number. Nearly always it is digits and nothing else, and then it has been read already.
struct NumberToken {
    std::string_view text;
    bool isPlain = false;
    uint64_t plainValue = 0;
};

bool NextNumber(StatementTokens& tokens, NumberToken& number) {
    constexpr size_t kMostDigits = 18;  // that no number of 64 bits is too small for
    if (!tokens.Next(number.text)) {
        return false;
    }
    std::string_view rest = number.text;
    const size_t count = TakeDigits(rest, number.plainValue);
    number.isPlain = count != 0 && count <= kMostDigits && rest.empty();
    return number.isPlain || ClassifyToken(number.text) == TokenKind::Number;
}

// An identifier out of range is 0.
bool ParseObjectId(StatementTokens& tokens, uint32_t& id) {
    NumberToken number;
    if (!NextNumber(tokens, number)) {
        return false;
    }
    if (number.isPlain) {
        id = number.plainValue <= std::numeric_limits<uint32_t>::max() ? static_cast<uint32_t>(number.plainValue) : 0;
    } else {
        ToU32(number.text, id);
    }
    return true;
}

// Nothing for the network, "BO_ <id>" or "SG_ <id> <signal>".
bool ParseObject(StatementTokens& tokens, AttributeValue& value) {
    const AttributeObjectType objectType = value.definition->objectType;
    if (objectType == AttributeObjectType::General) {
        return true;
    }
    std::string_view keyword;
    tokens.Next(keyword);
    if (objectType == AttributeObjectType::Message) {
        return keyword == kMessageKeyword && ParseObjectId(tokens, value.objectId);
    }
    return keyword == kSignalKeyword && ParseObjectId(tokens, value.objectId) &&
           NextOfKind(tokens, TokenKind::Word, value.signalName);
}

bool ParseNumber(StatementTokens& tokens, AttributeValue& value) {
    NumberToken number;
    if (!NextNumber(tokens, number)) {
        return false;
    }
    constexpr auto kMost = static_cast<uint64_t>(std::numeric_limits<int32_t>::max());
    if (number.isPlain && number.plainValue <= kMost) {
        value.number = static_cast<int32_t>(number.plainValue);
        if (value.definition->Accepts(value.number)) {
            return true;
        }
    }
    return SetValueFromText(value, number.text);
}

bool ParseText(StatementTokens& tokens, AttributeValue& value) {
    std::string_view token;
    return NextOfKind(tokens, TokenKind::Quoted, token) && SetValueFromText(value, token);
}

void ParseValue(AttributeStore& store, StatementTokens& tokens) {
    std::string_view token;
    if (!NextOfKind(tokens, TokenKind::Quoted, token)) {
        return;
    }
    AttributeValue value{store.FindDefinitionForValue(Unquoted(token))};
    if (value.definition == nullptr || !ParseObject(tokens, value)) {
        return;
    }
    const bool isText = value.definition->valueType == AttributeValueType::String;
    if (isText ? ParseText(tokens, value) : ParseNumber(tokens, value)) {
        store.AddValue(value);
    }
}

// --- Writing

std::string Quoted(std::string_view text) {
    return std::string("\"").append(text).append("\"");
}

std::string FormatEnumType(const EnumValues& values) {
    std::string type(kEnumType);
    char separator = ' ';
    for (const std::string& value : values) {
        type += std::exchange(separator, ',') + Quoted(value);
    }
    return type;
}

std::string FormatType(const Attribute& definition) {
    if (definition.valueType == AttributeValueType::Int) {
        return "INT " + std::to_string(definition.minimum) + " " + std::to_string(definition.maximum);
    }
    return definition.valueType == AttributeValueType::Enum ? FormatEnumType(definition.EnumList()) : "STRING ";
}

std::string FormatDefinition(const Attribute& definition) {
    std::string line = "BA_DEF_ ";
    if (definition.objectType == AttributeObjectType::Message) {
        line += "BO_ ";
    } else if (definition.objectType == AttributeObjectType::Signal) {
        line += "SG_ ";
    }
    return line + Quoted(definition.name) + " " + FormatType(definition) + ";";
}

// Empty for an enumeration whose index is outside its list: there is then no line.
std::string FormatDefaultValue(const Attribute& definition) {
    if (definition.valueType == AttributeValueType::Int) {
        return std::to_string(definition.intValue);
    }
    if (definition.valueType == AttributeValueType::Enum) {
        return definition.EnumText() != nullptr ? Quoted(*definition.EnumText()) : std::string();
    }
    return Quoted(definition.stringValue);
}

std::string FormatDefault(const Attribute& definition) {
    const std::string value = FormatDefaultValue(definition);
    return value.empty() ? value : "BA_DEF_DEF_ " + Quoted(definition.name) + " " + value + ";";
}

// Like a default, but an enumeration value goes by its index.
std::string FormatValueText(const Attribute& value) {
    if (value.valueType == AttributeValueType::Enum) {
        return value.EnumText() != nullptr ? std::to_string(value.enumIndex) : std::string();
    }
    return FormatDefaultValue(value);
}

// Values of the network are never written: what the database as a whole is travels in the defaults.
std::string FormatValue(const Attribute& value) {
    const std::string text = FormatValueText(value);
    if (value.objectType == AttributeObjectType::General || text.empty()) {
        return {};
    }
    std::string line = "BA_ " + Quoted(value.name);
    if (value.objectType == AttributeObjectType::Message) {
        line += " BO_ " + std::to_string(value.objectId);
    } else {
        line += " SG_ " + std::to_string(value.objectId) + " " + std::string(value.signalName);
    }
    return line + " " + text + ";";
}

// Nothing for an empty line.
void AppendLine(std::string& lines, const std::string& line) {
    if (!lines.empty() && !line.empty()) {
        lines += '\n';
    }
    lines += line;
}

}  // namespace

void ParseAttributeStatement(AttributeStore& store, std::string_view statement) {
    StatementTokens tokens(statement);
    std::string_view keyword;
    tokens.Next(keyword);
    if (keyword == kAttributeValueKeyword) {
        ParseValue(store, tokens);
    } else if (keyword == kAttributeDefinitionKeyword) {
        ParseDefinition(store, tokens);
    } else if (keyword == kAttributeDefaultKeyword) {
        ParseDefault(store, tokens);
    }
}

std::string WriteAttributeSections(const AttributeStore& store) {
    std::string lines;
    for (const auto& definition : store.Definitions()) {
        AppendLine(lines, FormatDefinition(*definition));
    }
    for (const auto& definition : store.Definitions()) {
        AppendLine(lines, FormatDefault(*definition));
    }
    for (const Attribute& value : store.Values()) {
        AppendLine(lines, FormatValue(value));
    }
    return lines;
}

}  // namespace tabrin
