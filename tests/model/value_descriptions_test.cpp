#include "model/value_descriptions.h"

#include <gtest/gtest.h>

#include <algorithm>
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

Pairs KeptOf(const ValueDescriptions& descriptions) {
    EXPECT_EQ(descriptions.IsEmpty(), descriptions.Size() == 0);
    Pairs kept;
    for (size_t i = 0; i < descriptions.Size(); ++i) {
        const auto [value, text] = descriptions.At(i);
        kept.emplace_back(value, text);
    }
    return kept;
}

void AddTogether(ValueDescriptions& descriptions, const Pairs& added) {
    std::vector<ValueDescriptions::Described> all;
    for (const auto& [value, text] : added) {
        all.push_back({value, text});
    }
    descriptions.AddAll(all);
}

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
        EXPECT_EQ(KeptOf(descriptions), row.kept);
        OwnValueDescriptions together;
        AddTogether(together, row.added);
        EXPECT_EQ(KeptOf(together), row.kept);
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
    EXPECT_EQ(descriptions.At(1).text, "b");
    descriptions.Clear();
    EXPECT_EQ(descriptions.Size(), 0U);

    // The place of the entry asked for last is forgotten as well.
    descriptions.Add(7, "c");
    descriptions.Add(8, "d");
    EXPECT_EQ(descriptions.At(1).text, "d");
    EXPECT_EQ(descriptions.At(0).text, "c");
}

TEST(ValueDescriptions, EntriesAreFoundInAnyOrder) {
    OwnValueDescriptions descriptions;
    for (int32_t value = 0; value < 10; ++value) {
        descriptions.Add(value, std::to_string(value));
    }
    for (const size_t index : {9U, 0U, 5U, 5U, 4U, 3U, 2U, 1U, 0U, 8U, 3U, 9U, 4U, 5U}) {
        EXPECT_EQ(descriptions.At(index).text, std::to_string(index)) << index;
    }
}

TEST(ValueDescriptions, EntriesMoveWhenOthersAreAddedInFront) {
    OwnValueDescriptions descriptions;
    descriptions.Add(10, "ten");
    descriptions.Add(20, "twenty");
    EXPECT_EQ(descriptions.At(1).text, "twenty");
    descriptions.Add(15, "fifteen");
    EXPECT_EQ(descriptions.At(1).text, "fifteen");
    descriptions.Add(5, "five");
    EXPECT_EQ(descriptions.At(2).text, "fifteen");
    EXPECT_EQ(descriptions.At(3).text, "twenty");
    descriptions.Add(30, "thirty");
    EXPECT_EQ(descriptions.At(4).text, "thirty");
    descriptions.Add(30, "again");
    EXPECT_EQ(descriptions.At(4).text, "thirty - again");
    EXPECT_EQ(descriptions.At(0).text, "five");
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
                ASSERT_EQ(descriptions.At(index).value, entry.first)
                    << index << " of " << testing::PrintToString(expected);
                ASSERT_EQ(descriptions.At(index).text, entry.second)
                    << index << " of " << testing::PrintToString(expected);
            }
        }
        EXPECT_EQ(TextsOf(descriptions), expected);
    }
}

// A text that is long is kept in another way.
TEST(ValueDescriptions, TextsMayHaveAnyLength) {
    for (const size_t length : {0U, 1U, 32'767U, 32'768U, 65'534U, 65'535U, 65'536U, 200'000U}) {
        SCOPED_TRACE(length);
        const std::string text = std::string(length, 't') + "e";
        OwnValueDescriptions descriptions;
        descriptions.Add(2, text);
        descriptions.Add(1, text);
        EXPECT_EQ(KeptOf(descriptions), Pairs({{1, text}, {2, text}}));
        descriptions.Add(2, "more");
        descriptions.Add(2, text);
        EXPECT_EQ(KeptOf(descriptions), Pairs({{1, text}, {2, text + " - more - " + text}}));
        OwnValueDescriptions together;
        AddTogether(together, {{3, text}});
        EXPECT_EQ(KeptOf(together), Pairs({{3, text}}));
        OwnValueDescriptions both;
        AddTogether(both, {{3, text}, {4, text}});
        both.Add(4, "more");
        EXPECT_EQ(KeptOf(both), Pairs({{3, text}, {4, text + " - more"}}));
    }
}

// --- Many, in more blocks than one

enum class Order { Ascending, Descending, Inwards, Outwards, Scattered };

// Every number below `count` once.
std::vector<int32_t> Numbers(int32_t count, Order order) {
    std::vector<int32_t> numbers;
    for (int32_t i = 0; i < count; ++i) {
        const int32_t outer = i % 2 == 0 ? i / 2 : count - 1 - i / 2;
        // A prime, so that each number comes once.
        const int32_t scattered = static_cast<int32_t>(int64_t{i} * 7919 % count);
        numbers.push_back(order == Order::Descending  ? count - 1 - i
                          : order == Order::Inwards   ? outer
                          : order == Order::Outwards  ? outer
                          : order == Order::Scattered ? scattered
                                                      : i);
    }
    if (order == Order::Outwards) {
        std::reverse(numbers.begin(), numbers.end());
    }
    return numbers;
}

constexpr Order kOrders[] = {Order::Ascending, Order::Descending, Order::Inwards, Order::Outwards, Order::Scattered};
constexpr int32_t kCounts[] = {1, 4, 5, 127, 128, 129, 130, 191, 192, 193, 255, 256, 257, 384, 385, 1000, 5000};

Pairs WithTexts(const std::vector<int32_t>& values) {
    Pairs pairs;
    for (const int32_t value : values) {
        pairs.emplace_back(value, std::to_string(value));
    }
    return pairs;
}

template <typename Add>
void CheckEveryOrder(Add add) {
    for (const Order order : kOrders) {
        for (const int32_t count : kCounts) {
            SCOPED_TRACE(testing::Message() << count << " in order " << static_cast<int>(order));
            OwnValueDescriptions descriptions;
            add(descriptions, WithTexts(Numbers(count, order)));
            ASSERT_EQ(KeptOf(descriptions), WithTexts(Numbers(count, Order::Ascending)));
        }
    }
}

TEST(ManyValueDescriptions, AreOrderedHoweverTheyCome) {
    CheckEveryOrder([](ValueDescriptions& descriptions, const Pairs& added) {
        for (const auto& [value, text] : added) {
            descriptions.Add(value, text);
        }
    });
}

TEST(ManyValueDescriptions, AreOrderedHoweverTheyComeTogether) {
    CheckEveryOrder(AddTogether);
}

// One block that is full, and three of them.
TEST(ManyValueDescriptions, EveryGapOfAFullBlockIsAPlace) {
    for (const int32_t count : {128, 384}) {
        std::vector<int32_t> evenNumbers;
        for (int32_t i = 0; i < count; ++i) {
            evenNumbers.push_back(2 * i);
        }
        for (int32_t added = -1; added < 2 * count; added += 2) {
            SCOPED_TRACE(testing::Message() << added << " among " << count);
            OwnValueDescriptions descriptions;
            AddTogether(descriptions, WithTexts(evenNumbers));
            descriptions.Add(added, std::to_string(added));
            std::vector<int32_t> expected = evenNumbers;
            expected.insert(expected.begin() + (added + 1) / 2, added);
            ASSERT_EQ(KeptOf(descriptions), WithTexts(expected));
        }
    }
}

TEST(ManyValueDescriptions, ExtremesHaveTheirPlace) {
    Pairs expected = WithTexts(Numbers(1000, Order::Ascending));
    OwnValueDescriptions descriptions;
    AddTogether(descriptions, expected);
    for (const int32_t value : {kMost, kLeast, kMost - 1, kLeast + 1, -1, 1000}) {
        descriptions.Add(value, "added");
    }
    expected.insert(expected.begin(), {{kLeast, "added"}, {kLeast + 1, "added"}, {-1, "added"}});
    expected.insert(expected.end(), {{1000, "added"}, {kMost - 1, "added"}, {kMost, "added"}});
    EXPECT_EQ(KeptOf(descriptions), expected);
}

TEST(ManyValueDescriptions, TextsOfOneValueAreJoinedInTheirOrder) {
    Pairs expected = WithTexts(Numbers(1000, Order::Ascending));
    OwnValueDescriptions descriptions;
    AddTogether(descriptions, expected);
    AddTogether(descriptions, {{7, "a"}, {999, "b"}, {7, "c"}, {-5, "d"}, {500, "e"}, {-5, "f"}, {7, "g"}});
    expected[7].second = "7 - a - c - g";
    expected[500].second = "500 - e";
    expected[999].second = "999 - b";
    expected.insert(expected.begin(), {-5, "d - f"});
    EXPECT_EQ(KeptOf(descriptions), expected);
}

// The last one asked for is remembered, and moves when others come in front of it.
TEST(ManyValueDescriptions, AreFoundInAnyOrderWhileOthersAreAdded) {
    for (const Order order : kOrders) {
        SCOPED_TRACE(static_cast<int>(order));
        std::mt19937 random(static_cast<uint32_t>(order));
        OwnValueDescriptions descriptions;
        std::vector<int32_t> expected;
        for (const int32_t value : Numbers(1500, order)) {
            descriptions.Add(value, std::to_string(value));
            expected.insert(std::lower_bound(expected.begin(), expected.end(), value), value);
            for (auto lookup = random() % 3; lookup > 0; --lookup) {
                const size_t index = random() % expected.size();
                ASSERT_EQ(descriptions.At(index).value, expected[index]) << index << " of " << expected.size();
                ASSERT_EQ(descriptions.At(index).text, std::to_string(expected[index]));
            }
        }
    }
}

TEST(ManyValueDescriptions, AgreeWithAPlainMap) {
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
            AddTogether(descriptions, added);
            ASSERT_EQ(TextsOf(descriptions), expected) << "added last: " << testing::PrintToString(added);
        }
    }
}

}  // namespace
}  // namespace tabrin
