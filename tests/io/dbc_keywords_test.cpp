#include "io/dbc_keywords.h"

#include <algorithm>

#include "io/io_test_support.h"

namespace tabrin {
namespace {

constexpr Termination kKeyword = Termination::NextKeyword;
constexpr Termination kSemicolon = Termination::Semicolon;

constexpr StatementKeyword kAll[] = {
    {"SG_", kKeyword, StatementKind::Signal},
    {"CM_", kSemicolon, StatementKind::Comment},
    {"BO_", kKeyword, StatementKind::Message},
    {"VAL_", kKeyword, StatementKind::ValueDescription},
    {"BA_", kSemicolon, StatementKind::Attribute},
    {"BA_DEF_", kSemicolon, StatementKind::Attribute},
    {"SIG_VALTYPE_", kKeyword, StatementKind::ValueType},
    {"BU_", kKeyword, StatementKind::Other},
    {"BS_", kKeyword, StatementKind::Other},
    {"VERSION", kKeyword, StatementKind::Other},
    {"NS_", kKeyword, StatementKind::Other},
    {"EV_", kKeyword, StatementKind::Other},
    {"NS_DESC_", kKeyword, StatementKind::Other},
    {"CAT_DEF_", kKeyword, StatementKind::Other},
    {"CAT_", kKeyword, StatementKind::Other},
    {"FILTER", kKeyword, StatementKind::Other},
    {"BA_DEF_DEF_", kKeyword, StatementKind::Attribute},
    {"EV_DATA_", kKeyword, StatementKind::Other},
    {"ENVVAR_DATA_", kKeyword, StatementKind::Other},
    {"SGTYPE_", kKeyword, StatementKind::Other},
    {"SGTYPE_VAL_", kKeyword, StatementKind::Other},
    {"BA_DEF_SGTYPE_", kKeyword, StatementKind::Other},
    {"BA_SGTYPE_", kKeyword, StatementKind::Other},
    {"SIG_TYPE_REF_", kKeyword, StatementKind::Other},
    {"VAL_TABLE_", kKeyword, StatementKind::Other},
    {"SIG_GROUP_", kKeyword, StatementKind::Other},
    {"SIGTYPE_VALTYPE_", kKeyword, StatementKind::Other},
    {"BO_TX_BU_", kKeyword, StatementKind::Other},
    {"BA_DEF_REL_", kKeyword, StatementKind::Other},
    {"BA_REL_", kKeyword, StatementKind::Other},
    {"BA_DEF_DEF_REL_", kKeyword, StatementKind::Other},
    {"BU_SG_REL_", kKeyword, StatementKind::Other},
    {"BU_EV_REL_", kKeyword, StatementKind::Other},
    {"BU_BO_REL_", kKeyword, StatementKind::Other},
    {"SG_MUL_VAL_", kKeyword, StatementKind::Other},
};

TEST(StatementKeywords, AreThirtyFive) {
    EXPECT_EQ(std::size(kAll), 35U);
    for (const StatementKeyword& expected : kAll) {
        const StatementKeyword* keyword = FindStatementKeyword(expected.text);
        ASSERT_NE(keyword, nullptr) << expected.text;
        EXPECT_EQ(keyword->text, expected.text);
        EXPECT_EQ(keyword->termination, expected.termination) << expected.text;
        EXPECT_EQ(keyword->kind, expected.kind) << expected.text;
    }
}

TEST(StatementKeywords, NothingElseIsOne) {
    for (const std::string_view token : {"",
                                         "_",
                                         "N",
                                         "R",
                                         "BO",
                                         "BO_1",
                                         "BO__",
                                         "bo_",
                                         "Bo_",
                                         "XX_",
                                         "SG",
                                         "VAL",
                                         "version",
                                         "VERSIO",
                                         "VERSIONN",
                                         "FILTE",
                                         "FILTER_",
                                         "BS_:",
                                         "NS_:",
                                         "BU_:",
                                         "EVENT_",
                                         "ENVVAR_",
                                         "SIG_VALTYPE",
                                         "SIGTYPE_VALTYPE",
                                         "SIGTYPE_VALTYPE__",
                                         "XSIGTYPE_VALTYPE_",
                                         "BA_DEF_DEF_DEF_",
                                         "BU_BU_REL_",
                                         "SIG_GROUPS_",
                                         "SIGTYPE_VALTYPE_SIGTYPE_VALTYPE_"}) {
        EXPECT_EQ(FindStatementKeyword(token), nullptr) << token;
    }
}

// No token that differs from a keyword in one character, or in one character more or less, is a keyword itself, but for
// those that the list has.
TEST(StatementKeywords, EveryCharacterMatters) {
    const auto listed = [](std::string_view token) {
        return std::any_of(std::begin(kAll), std::end(kAll),
                           [token](const StatementKeyword& keyword) { return keyword.text == token; });
    };
    for (const StatementKeyword& keyword : kAll) {
        const std::string text(keyword.text);
        for (size_t i = 0; i < text.size(); ++i) {
            for (const char c : {'_', 'A', 'B', 'C', 'E', 'N', 'S', 'V', 'x', ' '}) {
                std::string changed = text;
                changed[i] = c;
                EXPECT_EQ(FindStatementKeyword(changed) != nullptr, listed(changed)) << changed;
            }
            const std::string shorter = text.substr(0, i) + text.substr(i + 1);
            EXPECT_EQ(FindStatementKeyword(shorter) != nullptr, listed(shorter)) << shorter;
            const std::string longer = text.substr(0, i) + '_' + text.substr(i);
            EXPECT_EQ(FindStatementKeyword(longer) != nullptr, listed(longer)) << longer;
        }
    }
}

TEST(StatementKeywords, EndInOneOfThreeCharacters) {
    for (int byte = 0; byte < 256; ++byte) {
        EXPECT_EQ(MayEndKeyword(static_cast<char>(byte)), byte == '_' || byte == 'N' || byte == 'R') << byte;
    }
}

TEST(StatementKeywords, TerminationsHaveTheirNumbers) {
    EXPECT_EQ(static_cast<uint32_t>(Termination::NextKeyword), 0U);
    EXPECT_EQ(static_cast<uint32_t>(Termination::Semicolon), 1U);
}

TEST(NewSymbols, AreListedInTheOrderOfWrittenFiles) {
    constexpr std::string_view kExpected[] = {
        "NS_DESC_",     "CM_",
        "BA_DEF_",      "BA_",
        "VAL_",         "CAT_DEF_",
        "CAT_",         "FILTER",
        "BA_DEF_DEF_",  "EV_DATA_",
        "ENVVAR_DATA_", "SGTYPE_",
        "SGTYPE_VAL_",  "BA_DEF_SGTYPE_",
        "BA_SGTYPE_",   "SIG_TYPE_REF_",
        "VAL_TABLE_",   "SIG_GROUP_",
        "SIG_VALTYPE_", "SIGTYPE_VALTYPE_",
        "BO_TX_BU_",    "BA_DEF_REL_",
        "BA_REL_",      "BA_DEF_DEF_REL_",
        "BU_SG_REL_",   "BU_EV_REL_",
        "BU_BO_REL_",   "SG_MUL_VAL_",
    };
    ASSERT_EQ(kNewSymbols.size(), std::size(kExpected));
    for (size_t i = 0; i < kNewSymbols.size(); ++i) {
        EXPECT_EQ(kNewSymbols[i], kExpected[i]) << i;
    }
}

TEST(Keywords, AreSpelledAsInTheFiles) {
    const std::pair<std::string_view, std::string_view> rows[] = {
        {kMessageKeyword, "BO_"},
        {kSignalKeyword, "SG_"},
        {kCommentKeyword, "CM_"},
        {kValueDescriptionKeyword, "VAL_"},
        {kValueTypeKeyword, "SIG_VALTYPE_"},
        {kAttributeDefinitionKeyword, "BA_DEF_"},
        {kAttributeDefaultKeyword, "BA_DEF_DEF_"},
        {kAttributeValueKeyword, "BA_"},
        {kNodesKeyword, "BU_"},
        {kBitTimingKeyword, "BS_"},
        {kVersionKeyword, "VERSION"},
        {kNewSymbolsKeyword, "NS_"},
        {kDefaultNode, "Kestrune"},
    };
    for (const auto& [keyword, text] : rows) {
        EXPECT_EQ(keyword, text);
    }
}

}  // namespace
}  // namespace tabrin
