// Random statements, read by the library and by a second reader that takes the slow and obvious way: every token a
// string of its own, every token classified, every look-up a walk over the list.
#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <deque>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "dbc/attribute_statements.h"
#include "model/attribute_store.h"
#include "model/attribute_text.h"

namespace tabrin {
namespace {

using Object = AttributeObjectType;
using Type = AttributeValueType;
using Texts = std::vector<std::string>;

// --- The second reader -------------------------------------------------------------------------------------------

enum class Kind { Word, Quoted, Number };

const std::string kSeparators = " \f\n\r\t\v;,";

std::vector<std::string> NaivePieces(const std::string& text) {
    std::vector<std::string> pieces;
    std::string piece;
    for (const char c : text) {
        if (kSeparators.find(c) == std::string::npos) {
            piece += c;
        } else if (!piece.empty()) {
            pieces.push_back(piece);
            piece.clear();
        }
    }
    if (!piece.empty()) {
        pieces.push_back(piece);
    }
    return pieces;
}

std::vector<std::string> NaiveTokens(const std::string& text) {
    std::vector<std::string> tokens;
    bool insideQuotes = false;
    for (const std::string& piece : NaivePieces(text)) {
        if (insideQuotes) {
            tokens.back() += " " + piece;
            insideQuotes = piece.back() != '"';
        } else {
            tokens.push_back(piece);
            insideQuotes = piece.front() == '"' && piece.find_last_of('"') != piece.size() - 1;
        }
    }
    return tokens;
}

std::string NaiveUnquoted(const std::string& token) {
    const size_t first = token.find('"');
    const size_t last = token.find_last_of('"');
    return first == std::string::npos || first == last ? "" : token.substr(first + 1, last - first - 1);
}

bool NaiveNumber(const std::string& token, int64_t least, int64_t most, int64_t& number) {
    char* end = nullptr;
    errno = 0;
    number = std::strtoll(token.c_str(), &end, 10);
    if (end == token.c_str() || errno == ERANGE || number < least || number > most) {
        number = 0;
        return false;
    }
    return true;
}

bool NaiveI32(const std::string& token, int32_t& value) {
    int64_t number = 0;
    const bool read = NaiveNumber(token, INT32_MIN, INT32_MAX, number);
    value = static_cast<int32_t>(number);
    return read;
}

Kind NaiveKind(const std::string& token) {
    if (!NaiveUnquoted(token).empty()) {
        return Kind::Quoted;
    }
    int64_t number = 0;
    const bool digit = token[0] >= '0' && token[0] <= '9';
    return digit && NaiveNumber(token, INT64_MIN, INT64_MAX, number) ? Kind::Number : Kind::Word;
}

// The texts of an attribute are views: what they look at stays in `texts`.
bool NaiveSetValue(Attribute& attribute, const std::string& text, std::deque<std::string>& texts) {
    int32_t number = 0;
    const bool isNumber = attribute.valueType != Type::String && NaiveI32(text, number);
    if (attribute.valueType == Type::Int && isNumber && attribute.minimum <= number && number <= attribute.maximum) {
        attribute.intValue = number;
        return true;
    }
    const int32_t count = attribute.enumValues == nullptr ? 0 : static_cast<int32_t>(attribute.enumValues->size());
    if (attribute.valueType == Type::Enum && isNumber && 0 <= number && number < count) {
        attribute.enumIndex = number;
        return true;
    }
    const std::string quoted = NaiveUnquoted(text);
    if (attribute.valueType == Type::Enum) {
        for (int32_t i = 0; i < count; ++i) {
            if ((*attribute.enumValues)[static_cast<size_t>(i)] == quoted) {
                attribute.enumIndex = i;
                return true;
            }
        }
    }
    if (attribute.valueType == Type::String) {
        attribute.stringValue = texts.emplace_back(quoted);
        return true;
    }
    return false;
}

class NaiveStore {
public:
    explicit NaiveStore(std::vector<std::string> filter) : filter_(std::move(filter)) {}

    void Parse(const std::string& statement) {
        tokens_ = NaiveTokens(statement);
        kinds_.clear();
        for (const std::string& token : tokens_) {
            kinds_.push_back(NaiveKind(token));
        }
        if (tokens_.empty()) {
            return;
        }
        if (tokens_[0] == "BA_DEF_") {
            ParseDefinition();
        } else if (tokens_[0] == "BA_DEF_DEF_") {
            ParseDefault();
        } else if (tokens_[0] == "BA_") {
            ParseValue();
        }
    }

    std::vector<std::shared_ptr<Attribute>> definitions;
    std::vector<std::shared_ptr<Attribute>> values;

private:
    bool KindsBegin(const std::vector<Kind>& pattern) const {
        for (size_t i = 0; i < pattern.size(); ++i) {
            if (i >= kinds_.size() || kinds_[i] != pattern[i]) {
                return false;
            }
        }
        return true;
    }

    bool IsRejected(std::string_view name) const {
        bool listed = false;
        for (const std::string& accepted : filter_) {
            listed = listed || accepted == name;
        }
        return !filter_.empty() && !listed;
    }

    void ParseDefinition() {
        Attribute attribute;
        size_t typeToken = 0;
        if (KindsBegin({Kind::Word, Kind::Word, Kind::Quoted, Kind::Word})) {
            if (tokens_[1] == "BO_") {
                attribute.objectType = Object::Message;
            } else if (tokens_[1] == "SG_") {
                attribute.objectType = Object::Signal;
            } else {
                return;
            }
            typeToken = 3;
        } else if (KindsBegin({Kind::Word, Kind::Quoted, Kind::Word})) {
            typeToken = 2;
        } else {
            return;
        }
        attribute.name = texts_.emplace_back(NaiveUnquoted(tokens_[typeToken - 1]));
        if (IsRejected(attribute.name) || !TakeType(attribute, typeToken)) {
            return;
        }
        for (const auto& definition : definitions) {
            if (definition->name == attribute.name && definition->objectType == attribute.objectType &&
                definition->valueType == attribute.valueType) {
                return;
            }
        }
        definitions.push_back(std::make_shared<Attribute>(attribute));
    }

    bool TakeType(Attribute& attribute, size_t typeToken) const {
        const std::string& keyword = tokens_[typeToken];
        const size_t first = typeToken + 1;
        const size_t count = tokens_.size() - first;
        if (keyword == "INT") {
            if (count != 2 || (kinds_[first] != Kind::Number && kinds_[first + 1] != Kind::Number)) {
                return false;
            }
            attribute.valueType = Type::Int;
            NaiveI32(tokens_[first], attribute.minimum);
            NaiveI32(tokens_[first + 1], attribute.maximum);
            return true;
        }
        if (keyword == "ENUM") {
            std::vector<std::string> names;
            for (size_t i = first; i < tokens_.size(); ++i) {
                if (kinds_[i] != Kind::Quoted) {
                    return false;
                }
                names.push_back(NaiveUnquoted(tokens_[i]));
            }
            attribute.valueType = Type::Enum;
            attribute.enumValues = EnumList(names);
            return !names.empty();
        }
        attribute.valueType = Type::String;
        return keyword == "STRING" && count == 0;
    }

    void ParseDefault() {
        if (!KindsBegin({Kind::Word, Kind::Quoted}) || tokens_.size() < 3) {
            return;
        }
        const std::string name = NaiveUnquoted(tokens_[1]);
        if (IsRejected(name)) {
            return;
        }
        for (const auto& definition : definitions) {
            if (definition->name == name) {
                NaiveSetValue(*definition, tokens_[2], texts_);
            }
        }
    }

    const Attribute* FindDefinition(const std::string& name) const {
        for (const Object objectType : {Object::General, Object::Message, Object::Signal}) {
            for (const Type valueType : {Type::Int, Type::String, Type::Enum}) {
                for (const auto& definition : definitions) {
                    if (definition->name == name && definition->objectType == objectType &&
                        definition->valueType == valueType) {
                        return definition.get();
                    }
                }
            }
        }
        return nullptr;
    }

    void ParseValue() {
        if (!KindsBegin({Kind::Word, Kind::Quoted}) || IsRejected(NaiveUnquoted(tokens_[1]))) {
            return;
        }
        const Attribute* definition = FindDefinition(NaiveUnquoted(tokens_[1]));
        if (definition == nullptr) {
            return;
        }
        std::vector<Kind> pattern = {Kind::Word, Kind::Quoted};
        if (definition->objectType != Object::General) {
            pattern.push_back(Kind::Word);
            pattern.push_back(Kind::Number);
        }
        if (definition->objectType == Object::Signal) {
            pattern.push_back(Kind::Word);
        }
        pattern.push_back(definition->valueType == Type::String ? Kind::Quoted : Kind::Number);
        if (!KindsBegin(pattern)) {
            return;
        }
        Attribute value = *definition;
        if (definition->objectType != Object::General) {
            if (tokens_[2] != (definition->objectType == Object::Message ? "BO_" : "SG_")) {
                return;
            }
            int64_t id = 0;
            NaiveNumber(tokens_[3], 0, UINT32_MAX, id);
            value.objectId = static_cast<uint32_t>(id);
        }
        if (definition->objectType == Object::Signal) {
            value.signalName = texts_.emplace_back(tokens_[4]);
        }
        if (NaiveSetValue(value, tokens_[pattern.size() - 1], texts_)) {
            AddValue(value);
        }
    }

    void AddValue(const Attribute& value) {
        for (const auto& present : values) {
            if (present->name == value.name && present->objectType == value.objectType &&
                present->objectId == value.objectId && present->signalName == value.signalName &&
                present->valueType == value.valueType) {
                return;
            }
        }
        values.push_back(std::make_shared<Attribute>(value));
    }

    std::vector<std::string> filter_;
    std::vector<std::string> tokens_;
    std::vector<Kind> kinds_;
    std::deque<std::string> texts_;  // where nothing moves
};

// --- The random statements ---------------------------------------------------------------------------------------

// Mostly statements that make sense together: in each file every name is usually used with one object and one value
// type. The generator gives the same numbers on every platform; the distributions of the standard library would not.
class StatementMaker {
public:
    explicit StatementMaker(uint32_t seed) : random_(seed) {
        for (Usage& usage : usages_) {
            usage = {Pick(kObjects), Pick(kTypes)};
        }
    }

    std::string Make() {
        text_ = Often() ? "" : Pick({" ", "\n", ";", ",\t"});
        const size_t name = Below(kNames.size());
        const Usage usage = Often() ? usages_[name] : Usage{Pick(kObjects), Pick(kTypes)};
        const std::string quotedName =
            Often() ? kNames[name] : Pick({"x\"X\"", "\"X  Y\"", "\"\"", "X", "\"Y", "\"x\""});
        const size_t kind = Below(20);
        if (kind < 6) {
            MakeDefinition(quotedName, usage);
        } else if (kind < 10) {
            Add("BA_DEF_DEF_");
            Add(quotedName);
            Add(Below(2) == 0 ? Number() : Text());
        } else {
            MakeValue(quotedName, usage);
        }
        if (Below(12) == 0) {
            Add(Junk());
        }
        return text_ + Pick({";", ";", ";\n", "", " ;", ",;"});
    }

private:
    using Choices = std::vector<std::string>;
    struct Usage {
        std::string object;
        std::string type;
    };

    inline static const Choices kNames = {"\"X\"", "\"Y\"", "\"X Y\"", "\"Z\""};
    inline static const Choices kObjects = {"", "BO_", "SG_"};
    inline static const Choices kTypes = {"INT", "ENUM", "STRING"};

    size_t Below(size_t limit) { return static_cast<uint32_t>(random_()) % limit; }
    bool Often() { return Below(8) != 0; }
    std::string Pick(const Choices& choices) { return choices[Below(choices.size())]; }

    // Now and then a token is left out, or something else stands in its place, or nothing behind it.
    void Add(const std::string& token) {
        const size_t luck = Below(90);
        if (luck == 0) {
            return;
        }
        text_ += luck == 1 ? Junk() : token;
        if (luck != 2) {
            text_ += Often() ? " " : Pick({"  ", "\t", ",", ";", "\r\n", " \v\f "});
        }
    }

    void MakeDefinition(const std::string& name, const Usage& usage) {
        Add("BA_DEF_");
        AddObject(usage.object);
        Add(name);
        Add(Often() ? usage.type : Pick({"FLOAT", "Int", "INT", "ENUM", "STRING", "enum"}));
        if (usage.type == "ENUM") {
            for (size_t count = Below(9) == 0 ? 0 : 1 + Below(3); count > 0; --count) {
                Add(Text());
            }
        } else if (usage.type == "INT") {
            Add(Number());
            Add(Number());
        } else if (!Often()) {
            Add(Text());
        }
    }

    void MakeValue(const std::string& name, const Usage& usage) {
        Add("BA_");
        Add(name);
        AddObject(usage.object);
        if (!usage.object.empty()) {
            Add(Often() ? Pick({"100", "200"}) : Identifier());
        }
        if (usage.object == "SG_") {
            Add(Often() ? Pick({"S", "T"}) : Pick({"\"\"", "-", "9S", "S\"", "\"S\"", "7"}));
        }
        Add((usage.type == "STRING") == Often() ? Text() : Number());
    }

    void AddObject(const std::string& keyword) {
        if (!Often()) {
            Add(Pick({"BU_", "BO_", "SG_", "bo_", "EV_"}));
        } else if (!keyword.empty()) {
            Add(keyword);
        }
    }

    std::string Text() {
        return Often() ? Pick({"\"A\"", "\"B\"", "\"C d\""})
                       : Pick({"\"C;d\"", "\"C , d\"", "\"1\"", "\"\"", "\" A\"", "\"A\"B\"", "0\"A\"", "9\"B\"", "A",
                               "\"A \"B\" c\"", "\"open"});
    }

    std::string Number() {
        return Often() ? Pick({"0", "0", "1", "1", "2", "5", "100"})
                       : Pick({"-1", "-5", "+1", "1x", "2.5", "2147483647", "-2147483648", "2147483648", "-2147483649",
                               "9223372036854775807", "9223372036854775808", "99999999999999999999", "x", "-", "01"});
    }

    std::string Identifier() {
        return Pick({"0", "4294967295", "4294967296", "9999999999", "9223372036854775807", "0x1", "-1", "0100",
                     "18446744073709551616", "\"100\"", "x"});
    }

    std::string Junk() {
        return Pick(
            {"\"", "junk", "7", "\"q\"", "BO_", "\\\"", "BA_", "\"\"\"", "BA_DEF_", "\"open end", "\xC3\xA4", "-3"});
    }

    std::mt19937 random_;
    std::array<Usage, 4> usages_;
    std::string text_;
};

TEST(AttributeStatementsAtRandom, GiveWhatTheObviousReaderMakesOfThem) {
    static constexpr std::string_view kFilter[] = {"X", "Y", "X Y"};
    constexpr uint32_t kFiles = 2000;
    constexpr uint32_t kStatements = 60;
    size_t definitions = 0;
    size_t values = 0;
    size_t defaults = 0;
    for (uint32_t seed = 1; seed <= kFiles; ++seed) {
        StatementMaker maker(seed);
        const bool filtered = seed % 4 == 0;
        AttributeStore store;
        NaiveStore naive(filtered ? std::vector<std::string>{"X", "Y", "X Y"} : std::vector<std::string>());
        if (filtered) {
            store.Clear(kFilter);
        }
        std::string all;
        for (uint32_t i = 0; i < kStatements; ++i) {
            const std::string statement = maker.Make();
            all += "[" + statement + "]\n";
            ParseAttributeStatement(store, statement);
            const Texts before = AttributeTexts(naive.definitions);
            naive.Parse(statement);
            const Texts after = AttributeTexts(naive.definitions);
            defaults += before.size() == after.size() && before != after ? 1 : 0;
            ASSERT_EQ(AttributeTexts(store.Definitions()), after) << "seed " << seed << ", after\n" << all;
            ASSERT_EQ(AttributeTexts(store.Values()), AttributeTexts(naive.values)) << "seed " << seed << ", after\n"
                                                                                    << all;
        }
        definitions += store.Definitions().size();
        values += store.Values().size();
    }
    // Were nearly everything refused, the comparison would say little.
    EXPECT_GT(definitions, 4U * kFiles);
    EXPECT_GT(defaults, kFiles);
    EXPECT_GT(values, kFiles);
}

}  // namespace
}  // namespace tabrin
