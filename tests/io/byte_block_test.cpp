#include "io/byte_block.h"

#include "io/char_set.h"
#include "io/io_test_support.h"

namespace tabrin {
namespace {

// The bytes that have a mark, as a number with one bit for each.
unsigned MarkedBytes(uint64_t marks) {
    EXPECT_EQ(marks & 0x7F7F7F7F7F7F7F7F, 0U);
    unsigned bytes = 0;
    for (unsigned i = 0; i < 8; ++i) {
        bytes |= static_cast<unsigned>((marks >> (8 * i + 7)) & 1U) << i;
    }
    return bytes;
}

// Every byte in every place, among others that have no mark.
TEST(ByteBlock, MarksEveryByteInEveryPlace) {
    for (int value = 0; value < 256; ++value) {
        for (unsigned place = 0; place < 8; ++place) {
            SCOPED_TRACE(std::to_string(value) + " in place " + std::to_string(place));
            char text[8] = {'a', 'a', 'a', 'a', 'a', 'a', 'a', 'a'};
            text[place] = static_cast<char>(value);
            const uint64_t block = LoadBytes(text);
            const unsigned here = 1U << place;
            EXPECT_EQ(MarkedBytes(BytesBeyondAscii(block)), value >= 0x80 ? here : 0U);
            EXPECT_EQ(MarkedBytes(BytesUpTo(block, ' ')), value <= 0x20 ? here : 0U);
            EXPECT_EQ(MarkedBytes(BytesUpTo(block, '\x1F')), value <= 0x1F ? here : 0U);
            EXPECT_EQ(MarkedBytes(BytesEqual(block, '_')), value == 0x5F ? here : 0U);
            EXPECT_EQ(MarkedBytes(BytesEqual(block, '\x7F')), value == 0x7F ? here : 0U);
        }
    }
}

TEST(ByteBlock, MissesNothingAndMarksInVainOnlyBehindAMark) {
    Random random(4);
    for (int round = 0; round < 100000; ++round) {
        static constexpr char kBytes[] = {' ', '!', '\0', '\x01', '_', '`', '^', 'a', '\x7F', '\x80', '\xFF', '\x1F'};
        char text[8];
        unsigned blanks = 0;
        unsigned underscores = 0;
        for (unsigned i = 0; i < 8; ++i) {
            text[i] = kBytes[random.Below(std::size(kBytes))];
            blanks |= (static_cast<unsigned char>(text[i]) <= 0x20 ? 1U : 0U) << i;
            underscores |= (text[i] == '_' ? 1U : 0U) << i;
        }
        const unsigned blankMarks = MarkedBytes(BytesUpTo(LoadBytes(text), ' '));
        const unsigned underscoreMarks = MarkedBytes(BytesEqual(LoadBytes(text), '_'));
        ASSERT_EQ(blankMarks & blanks, blanks) << Shown({text, 8});
        ASSERT_EQ(blankMarks & ~blanks & ~(blankMarks << 1), 0U) << Shown({text, 8});
        ASSERT_EQ(underscoreMarks & underscores, underscores) << Shown({text, 8});
        ASSERT_EQ(underscoreMarks & ~underscores & ~(underscoreMarks << 1), 0U) << Shown({text, 8});
    }
}

TEST(ByteBlock, FirstMarkIsTheOneOfTheFirstByte) {
    EXPECT_EQ(FirstMarked(BytesEqual(LoadBytes("_aaaaaaa"), '_')), 0U);
    EXPECT_EQ(FirstMarked(BytesEqual(LoadBytes("a_aaaaaa"), '_')), 1U);
    EXPECT_EQ(FirstMarked(BytesEqual(LoadBytes("aaa_a_aa"), '_')), 3U);
    EXPECT_EQ(FirstMarked(BytesEqual(LoadBytes("aaaaaaa_"), '_')), 7U);
}

TEST(CharSet, HasItsMembersOnly) {
    constexpr CharSet set(" ;\xFF");
    for (int byte = 0; byte < 256; ++byte) {
        EXPECT_EQ(set.Has(static_cast<char>(byte)), byte == 0x20 || byte == 0x3B || byte == 0xFF) << byte;
    }
}

}  // namespace
}  // namespace tabrin
