#include "io/dbc_keywords.h"

#include <algorithm>

namespace tabrin {

namespace {

// Only CM_, BA_DEF_ and BA_ are known to end in a semicolon; BA_DEF_DEF_ is treated like any symbol of the NS_ list.
constexpr StatementKeyword kSpecial[] = {
    {kSignalKeyword, Termination::NextKeyword, StatementKind::Signal},
    {kCommentKeyword, Termination::Semicolon, StatementKind::Comment},
    {kMessageKeyword, Termination::NextKeyword, StatementKind::Message},
    {kValueDescriptionKeyword, Termination::NextKeyword, StatementKind::ValueDescription},
    {kAttributeValueKeyword, Termination::Semicolon, StatementKind::AttributeValue},
    {kAttributeDefinitionKeyword, Termination::Semicolon, StatementKind::AttributeDefinition},
    {kAttributeDefaultKeyword, Termination::NextKeyword, StatementKind::AttributeDefault},
    {kValueTypeKeyword, Termination::NextKeyword, StatementKind::ValueType},
    {kNodesKeyword, Termination::NextKeyword, StatementKind::Other},
    {kBitTimingKeyword, Termination::NextKeyword, StatementKind::Other},
    {kVersionKeyword, Termination::NextKeyword, StatementKind::Other},
    {kNewSymbolsKeyword, Termination::NextKeyword, StatementKind::Other},
    {"EV_", Termination::NextKeyword, StatementKind::Other},
};

constexpr size_t kNumKeywords = 35;

// The first eight characters as one number.
constexpr uint64_t Head(std::string_view text) {
    uint64_t head = 0;
    for (size_t i = 0; i < text.size() && i < sizeof head; ++i) {
        head |= uint64_t{static_cast<unsigned char>(text[i])} << (8 * i);
    }
    return head;
}

// All keywords, the shorter ones first, so that a token needs to be compared with those of its own length only, and for
// most of them in one step.
struct KeywordTable {
    std::array<StatementKeyword, kNumKeywords> keywords{};
    std::array<uint64_t, kNumKeywords> heads{};
    std::array<uint8_t, kLongestKeyword + 2> firstOfLength{};

    constexpr KeywordTable() {
        size_t count = 0;
        for (const StatementKeyword& keyword : kSpecial) {
            keywords[count++] = keyword;
        }
        for (const std::string_view symbol : kNewSymbols) {
            const auto known = [symbol](const StatementKeyword& keyword) { return keyword.text == symbol; };
            if (std::none_of(std::begin(kSpecial), std::end(kSpecial), known)) {
                keywords[count++] = {symbol, Termination::NextKeyword, StatementKind::Other};
            }
        }
        std::sort(keywords.begin(), keywords.end(),
                  [](const StatementKeyword& a, const StatementKeyword& b) { return a.text.size() < b.text.size(); });
        std::transform(keywords.begin(), keywords.end(), heads.begin(),
                       [](const StatementKeyword& keyword) { return Head(keyword.text); });
        for (size_t length = 0; length < firstOfLength.size(); ++length) {
            const auto shorter = [length](const StatementKeyword& keyword) { return keyword.text.size() < length; };
            firstOfLength[length] = static_cast<uint8_t>(std::count_if(keywords.begin(), keywords.end(), shorter));
        }
    }
};

constexpr KeywordTable kTable;

static_assert(std::all_of(kTable.keywords.begin(), kTable.keywords.end(), [](const StatementKeyword& keyword) {
    return !keyword.text.empty() && keyword.text.size() <= kLongestKeyword && MayEndKeyword(keyword.text.back());
}));

}  // namespace

const StatementKeyword* FindStatementKeyword(std::string_view token) {
    if (token.size() > kLongestKeyword) {
        return nullptr;
    }
    const uint64_t head = Head(token);
    const size_t end = kTable.firstOfLength[token.size() + 1];
    for (size_t i = kTable.firstOfLength[token.size()]; i < end; ++i) {
        if (kTable.heads[i] == head && kTable.keywords[i].text == token) {
            return &kTable.keywords[i];
        }
    }
    return nullptr;
}

}  // namespace tabrin
