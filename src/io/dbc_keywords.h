// The statement keywords of DBC files, and the texts that stand in every written file.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tabrin {

// What a keyword means to the reader.
enum class StatementKind : uint8_t {
    Other,  // passed over
    Message,
    Signal,
    Comment,
    ValueDescription,
    ValueType,
    Attribute
};

// How the text of a statement ends.
enum class Termination : uint32_t {
    NextKeyword = 0,  // in front of the next keyword
    Semicolon = 1     // likewise, but one word that looks like a keyword is tolerated in front of the ";"
};

struct StatementKeyword {
    std::string_view text;
    Termination termination;
    StatementKind kind;
};

// The keyword that a token is, nullptr when it is none.
const StatementKeyword* FindStatementKeyword(std::string_view token);

// Whether a token that ends in this character can be a keyword at all: most tokens are told apart by it.
constexpr bool MayEndKeyword(char c) {
    return c == '_' || c == 'N' || c == 'R';
}

inline constexpr size_t kLongestKeyword = 16;

inline constexpr std::string_view kMessageKeyword = "BO_";
inline constexpr std::string_view kSignalKeyword = "SG_";
inline constexpr std::string_view kCommentKeyword = "CM_";
inline constexpr std::string_view kValueDescriptionKeyword = "VAL_";
inline constexpr std::string_view kValueTypeKeyword = "SIG_VALTYPE_";
inline constexpr std::string_view kAttributeDefinitionKeyword = "BA_DEF_";
inline constexpr std::string_view kAttributeDefaultKeyword = "BA_DEF_DEF_";
inline constexpr std::string_view kAttributeValueKeyword = "BA_";
inline constexpr std::string_view kNodesKeyword = "BU_";
inline constexpr std::string_view kBitTimingKeyword = "BS_";
inline constexpr std::string_view kVersionKeyword = "VERSION";
inline constexpr std::string_view kNewSymbolsKeyword = "NS_";

// Stands in written files for the transmitter of a message or the receivers of a signal that has none.
inline constexpr std::string_view kDefaultNode = "Kestrune";

// The symbols listed under NS_ in every written file, in this order.
// clang-format off
inline constexpr std::array<std::string_view, 28> kNewSymbols = {
    "NS_DESC_", "CM_", "BA_DEF_", "BA_",
    "VAL_", "CAT_DEF_", "CAT_", "FILTER",
    "BA_DEF_DEF_", "EV_DATA_", "ENVVAR_DATA_", "SGTYPE_",
    "SGTYPE_VAL_", "BA_DEF_SGTYPE_", "BA_SGTYPE_", "SIG_TYPE_REF_",
    "VAL_TABLE_", "SIG_GROUP_", "SIG_VALTYPE_", "SIGTYPE_VALTYPE_",
    "BO_TX_BU_", "BA_DEF_REL_", "BA_REL_", "BA_DEF_DEF_REL_",
    "BU_SG_REL_", "BU_EV_REL_", "BU_BO_REL_", "SG_MUL_VAL_"};
// clang-format on

}  // namespace tabrin
