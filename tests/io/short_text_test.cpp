#include "io/short_text.h"

#include "io/io_test_support.h"

namespace tabrin {
namespace {

constexpr size_t kLongest = 32;

using Marker = ByteBlock::Marks (*)(const ByteBlock&);

// The marks of a text that lies in memory of just its size.
uint64_t MarksOf(std::string_view text, Marker marker) {
    const std::vector<char> bytes(text.begin(), text.end());
    return ShortText({bytes.data(), bytes.size()}).Marks(marker);
}

struct Kind {
    std::string_view name;
    Marker marker;
    bool (*isMeant)(int byte);
};

constexpr Kind kKinds[] = {
    {"blanks", MarkBlanks, [](int byte) { return byte == 0x20 || (byte >= 0x09 && byte <= 0x0D); }},
    {"digits", MarkDigits, [](int byte) { return byte >= 0x30 && byte <= 0x39; }},
    {"identifier characters", MarkIdentifierChars,
     [](int byte) {
         return (byte >= 0x61 && byte <= 0x7A) || (byte >= 0x41 && byte <= 0x5A) || (byte >= 0x30 && byte <= 0x39) ||
                byte == 0x5F;
     }},
    {"bytes beyond ASCII", [](const ByteBlock& block) { return block.BeyondAscii(); },
     [](int byte) { return byte >= 0x80; }},
};

TEST(EveryMark, HasOneForEachCharacter) {
    const std::pair<size_t, uint64_t> rows[] = {
        {0, 0},
        {1, 1},
        {2, 3},
        {3, 7},
        {7, 0x7F},
        {8, 0xFF},
        {9, 0x1FF},
        {15, 0x7FFF},
        {16, 0xFFFF},
        {17, 0x1FFFF},
        {24, 0xFFFFFF},
        {31, 0x7FFFFFFF},
        {32, 0xFFFFFFFF},
        {33, 0x1FFFFFFFF},
        {63, 0x7FFFFFFFFFFFFFFF},
    };
    for (const auto& [size, marks] : rows) {
        EXPECT_EQ(EveryMark(size), marks) << size;
    }
    EXPECT_EQ(kLongestShortText, kLongest);
}

TEST(ShortText, MarksTheCharactersThatAreMeant) {
    const struct {
        std::string_view text;
        uint64_t blanks;
        uint64_t digits;
        uint64_t identifierChars;
    } rows[] = {
        {"", 0, 0, 0},
        {" ", 1, 0, 0},
        {"5", 0, 1, 1},
        {"a", 0, 0, 1},
        {"_ Z", 0b010, 0, 0b101},
        {"m3 ", 0b100, 0b010, 0b011},
        {" \t\n\v\f\r", 0b111111, 0, 0},
        {"@AZ[`az{/09:^_", 0, 0x600, 0x2666},
        {"EngineSpeed m12 ", 0x8800, 0x6000, 0x77FF},
        {" EngineSpeed m12 ", 0x11001, 0xC000, 0xEFFE},
        {"abcdefghijklmnopqrstuvwxyz012345", 0, 0xFC000000, 0xFFFFFFFF},
        {"abcdefghijklmno                 ", 0xFFFF8000, 0, 0x7FFF},
        {"1234567890123456 1234567890123456"sv.substr(1), 0x8000, 0xFFFF7FFF, 0xFFFF7FFF},
        {"\0\x01\x7F\x80\xFF"sv, 0, 0, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(Shown(row.text));
        EXPECT_EQ(MarksOf(row.text, MarkBlanks), row.blanks);
        EXPECT_EQ(MarksOf(row.text, MarkDigits), row.digits);
        EXPECT_EQ(MarksOf(row.text, MarkIdentifierChars), row.identifierChars);
    }
}

// Among others that are never meant, and among others that are in one kind or another.
TEST(ShortText, EveryByteInEveryPlaceOfEverySize) {
    for (const Kind& kind : kKinds) {
        for (const char other : {'!', 'a', '7', ' ', '\xFF'}) {
            const bool areOthersMeant = kind.isMeant(static_cast<unsigned char>(other));
            for (size_t size = 0; size <= kLongest; ++size) {
                const uint64_t all = size == kLongest ? 0xFFFFFFFF : (1U << size) - 1;
                ASSERT_EQ(MarksOf(std::string(size, other), kind.marker), areOthersMeant ? all : 0)
                    << kind.name << ", " << size << " times " << other;
                std::vector<char> text(size, other);
                for (size_t place = 0; place < size; ++place) {
                    const uint64_t here = uint64_t{1} << place;
                    for (int byte = 0; byte < 256; ++byte) {
                        text[place] = static_cast<char>(byte);
                        const uint64_t expected = (areOthersMeant ? all & ~here : 0) | (kind.isMeant(byte) ? here : 0);
                        ASSERT_EQ(ShortText({text.data(), size}).Marks(kind.marker), expected)
                            << kind.name << ", " << byte << " in place " << place << " of " << size << " among "
                            << other;
                    }
                    text[place] = other;
                }
            }
        }
    }
}

// What lies around the text has no marks.
TEST(ShortText, LooksAtItsOwnCharactersOnly) {
    for (size_t size = 0; size <= kLongest; ++size) {
        for (size_t before = 0; before <= 16; ++before) {
            std::string text(before + size + 32, '7');
            text.replace(before, size, std::string(size, 'x'));
            const std::string_view inner = std::string_view(text).substr(before, size);
            EXPECT_EQ(ShortText(inner).Marks(MarkDigits), 0U) << size << " behind " << before;
        }
    }
}

TEST(FirstMarkedRun, IsTheFirstOfThem) {
    const struct {
        std::string_view text;
        uint64_t marks;
        std::string_view run;
        size_t begin;
    } rows[] = {
        {"a", 0b1, "a", 0},
        {"ab", 0b01, "a", 0},
        {"ab", 0b10, "b", 1},
        {"ab", 0b11, "ab", 0},
        {"abcdef", 0b011010, "b", 1},
        {"abcdef", 0b011000, "de", 3},
        {"abcdef", 0b100111, "abc", 0},
        {"abcdef", 0b111111, "abcdef", 0},
        {"abcdef", 0b100000, "f", 5},
        {"abcdefghijklmnopqrstuvwxyz012345", 0xFFFFFFFF, "abcdefghijklmnopqrstuvwxyz012345", 0},
        {"abcdefghijklmnopqrstuvwxyz012345", 0xFFFFFFFE, "bcdefghijklmnopqrstuvwxyz012345", 1},
        {"abcdefghijklmnopqrstuvwxyz012345", 0x7FFFFFFF, "abcdefghijklmnopqrstuvwxyz01234", 0},
        {"abcdefghijklmnopqrstuvwxyz012345", 0x80000000, "5", 31},
        {"abcdefghijklmnopqrstuvwxyz012345", 0x80018000, "pq", 15},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(Shown(row.text) + " by " + std::to_string(row.marks));
        const std::string_view run = FirstMarkedRun(row.text, row.marks);
        EXPECT_EQ(run, row.run);
        EXPECT_EQ(run.data() - row.text.data(), static_cast<ptrdiff_t>(row.begin));
    }
}

TEST(FirstMarkedRun, OfEveryBeginAndLength) {
    std::string text;
    for (size_t i = 0; i < kLongest; ++i) {
        text += static_cast<char>('A' + i);
    }
    for (size_t begin = 0; begin < kLongest; ++begin) {
        for (size_t end = begin + 1; end <= kLongest; ++end) {
            uint64_t marks = 0;
            for (size_t i = begin; i < end; ++i) {
                marks |= uint64_t{1} << i;
            }
            EXPECT_EQ(FirstMarkedRun(text, marks), text.substr(begin, end - begin));
            // With another run behind.
            for (size_t other = end + 1; other < kLongest; ++other) {
                EXPECT_EQ(FirstMarkedRun(text, marks | uint64_t{1} << other), text.substr(begin, end - begin));
            }
        }
    }
}

}  // namespace
}  // namespace tabrin
