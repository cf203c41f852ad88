#include "io/text_hash.h"

#include <set>

#include "io/io_test_support.h"

namespace tabrin {
namespace {

// Counts the different hashes of these texts.
template <typename MakeText>
size_t CountHashes(size_t numTexts, MakeText makeText) {
    std::set<uint64_t> hashes;
    for (size_t i = 0; i < numTexts; ++i) {
        hashes.insert(TextHash(makeText(i)));
    }
    return hashes.size();
}

// The last bits may be needed for something else.
template <typename MakeText>
size_t CountShortenedHashes(size_t numTexts, MakeText makeText) {
    std::set<uint64_t> hashes;
    for (size_t i = 0; i < numTexts; ++i) {
        hashes.insert(TextHash(makeText(i)) >> 2U);
    }
    return hashes.size();
}

TEST(TextHash, IsTheSameForEqualTexts) {
    for (size_t size = 0; size <= 100; ++size) {
        const std::string text(size, 'a');
        // With other texts around it.
        const std::string inside = "xyz" + text + "zyx";
        EXPECT_EQ(TextHash(text), TextHash(std::string_view(inside).substr(3, size))) << size;
    }
}

TEST(TextHash, EveryCharacterCounts) {
    for (size_t size = 1; size <= 100; ++size) {
        SCOPED_TRACE(size);
        const auto changedAt = [&](size_t place) {
            std::string text(size, 'a');
            text[place] = 'b';
            return text;
        };
        EXPECT_EQ(CountHashes(size, changedAt), size);
    }
}

TEST(TextHash, EveryBitCounts) {
    for (const size_t size : {1U, 2U, 3U, 4U, 7U, 8U, 9U, 16U, 17U, 31U, 32U, 33U, 40U}) {
        SCOPED_TRACE(size);
        const auto changedAt = [&](size_t bit) {
            std::string text(size, '\0');
            text[bit / 8] = static_cast<char>(1U << bit % 8);
            return text;
        };
        EXPECT_EQ(CountShortenedHashes(8 * size, changedAt), 8 * size);
    }
}

TEST(TextHash, TheSizeCounts) {
    for (const char c : {'\0', 'a'}) {
        EXPECT_EQ(CountHashes(1000, [&](size_t size) { return std::string(size, c); }), 1000U);
    }
}

TEST(TextHash, NumbersAnywhereInANameMakeDifferentHashes) {
    const std::pair<std::string, std::string> kAround[] = {
        {"", ""},
        {"S", ""},
        {"", "_S"},
        {"Sig", "_x"},
        {"Cell_", "_Voltage"},
        {"Battery_Cell_", "_Voltage"},
        {"Battery_Pack_Module_Cell_", "_Voltage"},
        {"Battery_Cell_", "_Voltage_Of_The_Rear_Module"},
        {"A_name_with_many_more_characters_than_an_identifier_has_", "_and_some_more_of_them_behind_the_number"},
    };
    for (const auto& around : kAround) {
        SCOPED_TRACE(around.first + "#" + around.second);
        const auto numbered = [&](size_t number) { return around.first + std::to_string(number) + around.second; };
        EXPECT_EQ(CountShortenedHashes(10'000, numbered), 10'000U);
    }
}

TEST(TextHash, TwoNumbersInANameMakeDifferentHashes) {
    const auto numbered = [](size_t number) {
        return "M" + std::to_string(number / 100) + "_Signal_" + std::to_string(number % 100);
    };
    EXPECT_EQ(CountShortenedHashes(10'000, numbered), 10'000U);
}

TEST(TextHash, ShortTextsHaveDifferentHashes) {
    const auto spelled = [](size_t number) {
        std::string text;
        for (; number > 0; number /= 26) {
            text += static_cast<char>('a' + number % 26);
        }
        return text;
    };
    EXPECT_EQ(CountShortenedHashes(50'000, spelled), 50'000U);
}

}  // namespace
}  // namespace tabrin
