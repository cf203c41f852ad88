#include "model/value_descriptions.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "model/description_texts.h"
#include "model/own_arena.h"

namespace tabrin {
namespace {

constexpr int32_t kLeast = std::numeric_limits<int32_t>::min();
constexpr int32_t kMost = std::numeric_limits<int32_t>::max();

using Pairs = std::vector<std::pair<int32_t, std::string>>;

struct Added {
    Pairs added;
    Pairs kept;
};

template <size_t Count>
void CheckKept(const Added (&rows)[Count]) {
    for (const Added& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.added));
        OwnValueDescriptions descriptions;
        for (const auto& [value, text] : row.added) {
            descriptions.Add(value, text);
        }
        Pairs kept;
        for (const auto& [value, text] : descriptions.Entries()) {
            kept.emplace_back(value, text.View());
        }
        EXPECT_EQ(kept, row.kept);
        EXPECT_EQ(descriptions.Size(), row.kept.size());
        for (size_t i = 0; i < row.kept.size(); ++i) {
            EXPECT_EQ(descriptions.At(i).first, row.kept[i].first);
            EXPECT_EQ(descriptions.At(i).second, row.kept[i].second);
        }
    }
}

TEST(ValueDescriptions, ValuesAreOrdered) {
    const Added kRows[] = {
        {{}, {}},
        {{{0, "Off"}, {1, "On"}}, {{0, "Off"}, {1, "On"}}},
        {{{1, "On"}, {0, "Off"}}, {{0, "Off"}, {1, "On"}}},
        {{{0, "a"}, {-1, "b"}, {kMost, "c"}, {kLeast, "d"}, {1, "e"}},
         {{kLeast, "d"}, {-1, "b"}, {0, "a"}, {1, "e"}, {kMost, "c"}}},
        {{{5, "a"}, {9, "b"}, {7, "c"}}, {{5, "a"}, {7, "c"}, {9, "b"}}},
    };
    CheckKept(kRows);
}

TEST(ValueDescriptions, TextsOfOneValueAreJoined) {
    const Added kRows[] = {
        {{{1, "On"}, {1, "On"}}, {{1, "On - On"}}},
        {{{1, "a"}, {1, "b"}, {1, "c"}}, {{1, "a - b - c"}}},
        {{{1, "a"}, {2, "b"}, {1, "c"}}, {{1, "a - c"}, {2, "b"}}},
        {{{2, "a"}, {1, "b"}, {2, "c"}, {1, "d"}}, {{1, "b - d"}, {2, "a - c"}}},
        {{{kLeast, "a"}, {kLeast, "b"}, {kMost, "c"}, {kMost, "d"}}, {{kLeast, "a - b"}, {kMost, "c - d"}}},
        {{{1, ""}, {1, ""}}, {{1, " - "}}},
        {{{1, ""}, {1, "a"}}, {{1, " - a"}}},
        {{{1, "a"}, {1, ""}}, {{1, "a - "}}},
    };
    CheckKept(kRows);
}

TEST(ValueDescriptions, ClearLeavesNothing) {
    OwnValueDescriptions descriptions;
    descriptions.Add(1, "a");
    descriptions.Add(2, "b");
    EXPECT_EQ(descriptions.At(1).second, "b");
    descriptions.Clear();
    EXPECT_EQ(descriptions.Size(), 0U);

    // The place of the entry asked for last is forgotten as well.
    descriptions.Add(7, "c");
    descriptions.Add(8, "d");
    EXPECT_EQ(descriptions.At(1).second, "d");
    EXPECT_EQ(descriptions.At(0).second, "c");
}

TEST(ValueDescriptions, EntriesAreFoundInAnyOrder) {
    OwnValueDescriptions descriptions;
    for (int32_t value = 0; value < 10; ++value) {
        descriptions.Add(value, std::to_string(value));
    }
    for (const size_t index : {9U, 0U, 5U, 5U, 4U, 3U, 2U, 1U, 0U, 8U, 3U, 9U, 4U, 5U}) {
        EXPECT_EQ(descriptions.At(index).second, std::to_string(index)) << index;
    }
}

TEST(ValueDescriptions, EntriesMoveWhenOthersAreAddedInFront) {
    OwnValueDescriptions descriptions;
    descriptions.Add(10, "ten");
    descriptions.Add(20, "twenty");
    EXPECT_EQ(descriptions.At(1).second, "twenty");
    descriptions.Add(15, "fifteen");
    EXPECT_EQ(descriptions.At(1).second, "fifteen");
    descriptions.Add(5, "five");
    EXPECT_EQ(descriptions.At(2).second, "fifteen");
    EXPECT_EQ(descriptions.At(3).second, "twenty");
    descriptions.Add(30, "thirty");
    EXPECT_EQ(descriptions.At(4).second, "thirty");
    descriptions.Add(30, "again");
    EXPECT_EQ(descriptions.At(4).second, "thirty - again");
    EXPECT_EQ(descriptions.At(0).second, "five");
}

TEST(ValueDescriptions, AgreesWithAPlainMap) {
    for (uint32_t seed = 1; seed <= 50; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        OwnValueDescriptions descriptions;
        std::map<int32_t, std::string> expected;
        for (int step = 0; step < 300; ++step) {
            const auto value = static_cast<int32_t>(random() % 60) - 30;
            const std::string text = std::to_string(random() % 10);
            descriptions.Add(value, text);
            const auto [place, isNew] = expected.emplace(value, text);
            if (!isNew) {
                place->second += " - " + text;
            }
            for (auto lookup = random() % 3; lookup > 0; --lookup) {
                const size_t index = random() % expected.size();
                const auto& entry = *std::next(expected.begin(), static_cast<std::ptrdiff_t>(index));
                ASSERT_EQ(descriptions.At(index).first, entry.first)
                    << index << " of " << testing::PrintToString(expected);
                ASSERT_EQ(descriptions.At(index).second, entry.second)
                    << index << " of " << testing::PrintToString(expected);
            }
        }
        EXPECT_EQ(TextsOf(descriptions), expected);
    }
}

// --- Many at once

std::map<int32_t, std::string> KeptTogether(ValueDescriptions& descriptions, const Pairs& added) {
    std::vector<ValueDescriptions::Described> all;
    for (const auto& [value, text] : added) {
        all.push_back({value, text});
    }
    descriptions.AddAll(all);
    return TextsOf(descriptions);
}

// The least and the greatest value, so that no other is beyond, and what makes the list a long one.
Pairs LongList() {
    Pairs list = {{kLeast, "least"}, {kMost, "most"}};
    for (int32_t value = 1'000'000; value < 1'000'300; ++value) {
        list.emplace_back(value, "usual");
    }
    return list;
}

TEST(ManyValueDescriptions, EveryByteOfAValueCounts) {
    const int32_t kAscending[] = {-0x0200'0000,
                                  -0x0100'0000,
                                  -0x0002'0000,
                                  -0x0001'0000,
                                  -0x0201,
                                  -0x0102,
                                  -0x0101,
                                  -2,
                                  -1,
                                  0,
                                  1,
                                  2,
                                  0x0101,
                                  0x0102,
                                  0x0201,
                                  0x0001'0000,
                                  0x0002'0000,
                                  0x0100'0000,
                                  0x0200'0000,
                                  0x7FFF'FFFE};
    Pairs added = LongList();
    for (auto value = std::rbegin(kAscending); value != std::rend(kAscending); ++value) {
        added.emplace_back(*value, "added");
    }
    OwnValueDescriptions descriptions;
    KeptTogether(descriptions, added);
    std::vector<int32_t> kept;
    for (const auto& [value, text] : descriptions.Entries()) {
        if (text == "added") {
            kept.push_back(value);
        }
    }
    EXPECT_EQ(kept, std::vector<int32_t>(std::begin(kAscending), std::end(kAscending)));
}

TEST(ManyValueDescriptions, TextsOfOneValueAreJoinedInTheirOrder) {
    Pairs added = LongList();
    added.insert(added.end(), {{7, "a"}, {5, "b"}, {7, "c"}, {1'000'000, "d"}, {6, "e"}, {5, "f"}, {7, "g"}});
    OwnValueDescriptions descriptions;
    std::map<int32_t, std::string> kept = KeptTogether(descriptions, added);
    EXPECT_EQ(kept[5], "b - f");
    EXPECT_EQ(kept[6], "e");
    EXPECT_EQ(kept[7], "a - c - g");
    EXPECT_EQ(kept[1'000'000], "usual - d");
    EXPECT_EQ(kept.size(), 305U);
}

TEST(ManyValueDescriptions, AgreesWithAPlainMap) {
    for (uint32_t seed = 1; seed <= 30; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        // Few values that come often, or many that come once.
        const uint32_t range = seed % 2 == 0 ? 400 : 0xFFFF'FFFF;
        OwnValueDescriptions descriptions;
        std::map<int32_t, std::string> expected;
        for (const size_t count : {200U, 500U, 1U, 900U}) {
            Pairs added;
            for (size_t i = 0; i < count; ++i) {
                added.emplace_back(static_cast<int32_t>(random() % range - range / 2), std::to_string(i));
                const auto [place, isNew] = expected.emplace(added.back());
                if (!isNew) {
                    place->second += " - " + added.back().second;
                }
            }
            ASSERT_EQ(KeptTogether(descriptions, added), expected) << "added last: " << testing::PrintToString(added);
        }
    }
}

}  // namespace
}  // namespace tabrin
