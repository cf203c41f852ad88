#include "io/dbc_keywords.h"

#include <algorithm>

#include "io/text_head.h"

namespace tabrin {

namespace {

// Only CM_, BA_DEF_ and BA_ are known to end in a semicolon; BA_DEF_DEF_ is treated like any symbol of the NS_ list.
constexpr StatementKeyword kSpecial[] = {
    {kSignalKeyword, Termination::NextKeyword, StatementKind::Signal},
    {kCommentKeyword, Termination::Semicolon, StatementKind::Comment},
    {kMessageKeyword, Termination::NextKeyword, StatementKind::Message},
    {kValueDescriptionKeyword, Termination::NextKeyword, StatementKind::ValueDescription},
    {kAttributeValueKeyword, Termination::Semicolon, StatementKind::Attribute},
    {kAttributeDefinitionKeyword, Termination::Semicolon, StatementKind::Attribute},
    {kAttributeDefaultKeyword, Termination::NextKeyword, StatementKind::Attribute},
    {kValueTypeKeyword, Termination::NextKeyword, StatementKind::ValueType},
    {kNodesKeyword, Termination::NextKeyword, StatementKind::Other},
    {kBitTimingKeyword, Termination::NextKeyword, StatementKind::Other},
    {kVersionKeyword, Termination::NextKeyword, StatementKind::Other},
    {kNewSymbolsKeyword, Termination::NextKeyword, StatementKind::Other},
    {"EV_", Termination::NextKeyword, StatementKind::Other},
};

constexpr size_t kNumKeywords = 35;

// All keywords, each in the slot that its hash says. The multiplier is one with which no two want the same slot.
struct KeywordTable {
    static constexpr uint8_t kEmpty = 0xFF;

    std::array<StatementKeyword, kNumKeywords> keywords{};
    std::array<uint64_t, kNumKeywords> heads{};
    std::array<uint8_t, 256> slots{};
    uint64_t multiplier = 0x9E3779B97F4A7C15;

    constexpr KeywordTable() {  // never run: evaluated in compiling
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
        std::transform(keywords.begin(), keywords.end(), heads.begin(),
                       [](const StatementKeyword& keyword) { return HeadOf(keyword.text); });
        while (!FillSlots()) {
            multiplier += 2;
        }
    }

    [[nodiscard]] constexpr size_t SlotOf(uint64_t head, size_t length) const {
        return static_cast<size_t>(((head + length) * multiplier) >> 56U);
    }

private:
    constexpr bool FillSlots() {  // never run: evaluated in compiling
        slots.fill(kEmpty);
        for (size_t i = 0; i < kNumKeywords; ++i) {
            uint8_t& slot = slots[SlotOf(heads[i], keywords[i].text.size())];
            if (slot != kEmpty) {
                return false;
            }
            slot = static_cast<uint8_t>(i);
        }
        return true;
    }
};

constexpr KeywordTable kTable;

static_assert(std::all_of(kTable.keywords.begin(), kTable.keywords.end(), [](const StatementKeyword& keyword) {
    return !keyword.text.empty() && keyword.text.size() <= kLongestKeyword && MayEndKeyword(keyword.text.back());
}));

}  // namespace

const StatementKeyword* FindStatementKeyword(std::string_view token) {
    const uint64_t head = HeadOf(token);
    const uint8_t index = kTable.slots[kTable.SlotOf(head, token.size())];
    if (index == KeywordTable::kEmpty || kTable.heads[index] != head) {
        return nullptr;
    }
    const StatementKeyword& keyword = kTable.keywords[index];
    const bool isWhole = token.size() == keyword.text.size() && (token.size() <= sizeof head || keyword.text == token);
    return isWhole ? &keyword : nullptr;
}

}  // namespace tabrin
