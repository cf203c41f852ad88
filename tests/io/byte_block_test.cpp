#include "io/byte_block.h"

#include <algorithm>
#include <array>

#include "io/char_set.h"
#include "io/io_test_support.h"

namespace tabrin {
namespace {

constexpr size_t kSize = 16;

struct Range {
    char least;
    char most;
};

// Those that the callers ask for, the whole of all bytes, and some across the middle.
constexpr Range kRanges[] = {{'\t', '\r'},   {' ', ' '},     {'0', '9'},       {'A', 'Z'},       {'_', '_'},
                             {'a', 'z'},     {'\0', '\x1F'}, {'\0', ' '},      {'\x7F', '\x80'}, {'`', '\xA0'},
                             {'\0', '\xFF'}, {'\0', '\0'},   {'\xFF', '\xFF'}, {'\x80', '\xFF'}};

bool IsIn(Range range, int byte) {
    return static_cast<unsigned char>(range.least) <= byte && byte <= static_cast<unsigned char>(range.most);
}

template <typename Block>
class ByteBlocks : public testing::Test {};

#ifdef TABRIN_HAS_SSE2
using BlockTypes = testing::Types<PlainByteBlock, SseByteBlock>;
#else
using BlockTypes = testing::Types<PlainByteBlock>;
#endif

class BlockName {
public:
    template <typename Block>
    static std::string GetName(int) {
        return std::is_same_v<Block, PlainByteBlock> ? "Plain" : "Sse";
    }
};

TYPED_TEST_SUITE(ByteBlocks, BlockTypes, BlockName);

TYPED_TEST(ByteBlocks, HaveSixteenBytes) {
    EXPECT_EQ(TypeParam::kSize, kSize);
}

// Every byte in every place, among others that are never meant and among others that always are.
TYPED_TEST(ByteBlocks, MarkEveryByteInEveryPlace) {
    for (const Range range : kRanges) {
        for (int byte = 0; byte < 256; ++byte) {
            for (size_t place = 0; place < kSize; ++place) {
                for (int other = 0; other < 256; other += 51) {
                    std::array<char, kSize> text;
                    text.fill(static_cast<char>(other));
                    text[place] = static_cast<char>(byte);
                    const uint32_t here = 1U << place;
                    const uint32_t expected =
                        (IsIn(range, other) ? 0xFFFFU & ~here : 0U) | (IsIn(range, byte) ? here : 0U);
                    ASSERT_EQ(TypeParam(text.data()).Between(range.least, range.most), expected)
                        << byte << " in place " << place << " among " << other << ", "
                        << static_cast<int>(static_cast<unsigned char>(range.least)) << " to "
                        << static_cast<int>(static_cast<unsigned char>(range.most));
                }
            }
        }
    }
}

TYPED_TEST(ByteBlocks, MarkOneByteInEveryPlace) {
    for (int byte = 0; byte < 256; ++byte) {
        for (size_t place = 0; place < kSize; ++place) {
            const char c = static_cast<char>(byte);
            const char other = static_cast<char>(byte ^ 0x80);
            const uint32_t here = 1U << place;
            std::array<char, kSize> text;
            text.fill(other);
            text[place] = c;
            ASSERT_EQ(TypeParam(text.data()).Equal(c), here) << byte << " in place " << place;
            ASSERT_EQ(TypeParam(text.data()).Equal(other), 0xFFFFU - here) << byte << " in place " << place;
        }
    }
}

TYPED_TEST(ByteBlocks, MarkLettersInEveryPlace) {
    for (int byte = 0; byte < 256; ++byte) {
        const bool isLetter = (byte >= 0x41 && byte <= 0x5A) || (byte >= 0x61 && byte <= 0x7A);
        for (size_t place = 0; place < kSize; ++place) {
            const uint32_t here = 1U << place;
            std::array<char, kSize> text;
            text.fill('_');
            text[place] = static_cast<char>(byte);
            ASSERT_EQ(TypeParam(text.data()).Letters(), isLetter ? here : 0U) << byte << " in place " << place;
            text.fill('k');
            text[place] = static_cast<char>(byte);
            ASSERT_EQ(TypeParam(text.data()).Letters(), isLetter ? 0xFFFFU : 0xFFFFU - here)
                << byte << " in place " << place;
        }
    }
}

// Several answers together.
TYPED_TEST(ByteBlocks, AnswersAreJoined) {
    const TypeParam block("aB3_ \t\xC3\xFFzZ9:@[`{");
    EXPECT_EQ(block.Letters() | block.Equal('_'), 0x030BU);
    EXPECT_EQ(block.Letters() | block.Between('0', '9') | block.BeyondAscii(), 0x07C7U);
    EXPECT_EQ(block.Equal(' ') | block.Equal('\t') | block.Equal('{'), 0x8030U);
    EXPECT_EQ(block.Equal('x') | block.Equal('y'), 0U);
}

TYPED_TEST(ByteBlocks, MarkWhatIsBeyondAsciiInEveryPlace) {
    for (int byte = 0; byte < 256; ++byte) {
        for (size_t place = 0; place < kSize; ++place) {
            const uint32_t here = 1U << place;
            std::array<char, kSize> text;
            text.fill('a');
            text[place] = static_cast<char>(byte);
            ASSERT_EQ(TypeParam(text.data()).BeyondAscii(), byte >= 128 ? here : 0U) << byte << " in place " << place;
            text.fill('\xC3');
            text[place] = static_cast<char>(byte);
            ASSERT_EQ(TypeParam(text.data()).BeyondAscii(), byte >= 128 ? 0xFFFFU : 0xFFFFU - here)
                << byte << " in place " << place;
        }
    }
}

// The text may begin anywhere, and nothing behind its sixteen bytes matters.
TYPED_TEST(ByteBlocks, BeginAtAnyAddress) {
    for (size_t offset = 0; offset < kSize; ++offset) {
        std::string text(3 * kSize, '_');
        text.replace(offset, kSize, "__a_____________");
        EXPECT_EQ(TypeParam(text.data() + offset).Between('_', '_'), 0xFFFBU) << offset;
    }
}

// Two halves of eight characters, the first one of each lowest.
TYPED_TEST(ByteBlocks, ConsistOfTwoHalves) {
    const TypeParam block(0x4847464544434241, 0x504F4E4D4C4B4A49);  // ABCDEFGHIJKLMNOP
    EXPECT_EQ(block.Between('A', 'P'), 0xFFFFU);
    EXPECT_EQ(block.Between('A', 'A'), 0x0001U);
    EXPECT_EQ(block.Between('B', 'C'), 0x0006U);
    EXPECT_EQ(block.Between('H', 'H'), 0x0080U);
    EXPECT_EQ(block.Between('I', 'I'), 0x0100U);
    EXPECT_EQ(block.Between('P', 'P'), 0x8000U);
    EXPECT_EQ(block.BeyondAscii(), 0U);
    EXPECT_EQ(TypeParam(0, 0).Between('\0', '\0'), 0xFFFFU);
    EXPECT_EQ(TypeParam(0xFFFFFFFFFFFFFFFF, 0).BeyondAscii(), 0x00FFU);
    EXPECT_EQ(TypeParam(0, 0xFFFFFFFFFFFFFFFF).BeyondAscii(), 0xFF00U);
    EXPECT_EQ(TypeParam(0x80, 0x80).BeyondAscii(), 0x0101U);
    EXPECT_EQ(TypeParam(0x8000000000000000, 0x8000000000000000).BeyondAscii(), 0x8080U);
    for (unsigned byte = 0; byte < 256; ++byte) {
        for (size_t place = 0; place < kSize; ++place) {
            const uint64_t half = uint64_t{byte} << (8 * (place % 8));
            const TypeParam one(place < 8 ? half : 0, place < 8 ? 0 : half);
            ASSERT_EQ(one.Between('\x01', '\xFF'), byte != 0 ? 1U << place : 0U) << byte << " in place " << place;
            ASSERT_EQ(one.BeyondAscii(), byte >= 128 ? 1U << place : 0U) << byte << " in place " << place;
        }
    }
}

#ifdef TABRIN_HAS_SSE2
TEST(ByteBlock, BothKindsAgreeOnRandomBytes) {
    Random random(4);
    for (int round = 0; round < 200000; ++round) {
        std::array<char, kSize> text;
        for (char& c : text) {
            c = static_cast<char>(random.Below(256));
        }
        const auto a = static_cast<unsigned char>(random.Below(256));
        const auto b = static_cast<unsigned char>(random.Below(256));
        const Range range = {static_cast<char>(std::min(a, b)), static_cast<char>(std::max(a, b))};
        const PlainByteBlock plain(text.data());
        const SseByteBlock sse(text.data());
        ASSERT_EQ(sse.Between(range.least, range.most), plain.Between(range.least, range.most))
            << Shown({text.data(), kSize}) << " from " << int{a} << " and " << int{b};
        ASSERT_EQ(sse.BeyondAscii(), plain.BeyondAscii()) << Shown({text.data(), kSize});
    }
}
#endif

// Of every length, in memory that ends there. No byte behind the text counts, though a zero is asked for.
TEST(ByteBlock, MarksOfUpToSixtyFourCharactersArePutTogether) {
    for (size_t size = 0; size <= 64; ++size) {
        SCOPED_TRACE(size);
        const std::vector<char> zeros(size, '\0');
        const auto isZero = [](ByteBlock block) { return block.Equal('\0'); };
        const uint64_t all = size == 64 ? ~uint64_t{0} : (uint64_t{1} << size) - 1;
        EXPECT_EQ(MarksOf({zeros.data(), size}, isZero), all);
        for (size_t place = 0; place < size; ++place) {
            std::vector<char> text(size, 'a');
            text[place] = '\0';
            EXPECT_EQ(MarksOf({text.data(), size}, isZero), uint64_t{1} << place) << "in place " << place;
        }
    }
}

TEST(ByteBlock, FirstMarkIsTheLowest) {
    for (size_t place = 0; place < kSize; ++place) {
        SCOPED_TRACE(place);
        EXPECT_EQ(FirstMarked(1U << place), place);
        EXPECT_EQ(FirstMarked((0xFFFFU << place) & 0xFFFFU), place);
        EXPECT_EQ(FirstMarked((1U << place) | 0x8000U), place);
    }
}

TEST(ByteBlock, LastMarkIsTheHighest) {
    EXPECT_EQ(BehindLastMarked(0), 0U);
    EXPECT_EQ(BehindLastMarked(0xFFFFU), 16U);
    for (size_t place = 0; place < kSize; ++place) {
        SCOPED_TRACE(place);
        EXPECT_EQ(BehindLastMarked(1U << place), place + 1);
        EXPECT_EQ(BehindLastMarked((1U << place) | 1U), place + 1);
        EXPECT_EQ(BehindLastMarked((2U << place) - 1), place + 1);
    }
}

TEST(CharSet, HasItsMembersOnly) {
    constexpr CharSet set(" ;\xFF");
    for (int byte = 0; byte < 256; ++byte) {
        EXPECT_EQ(set.Has(static_cast<char>(byte)), byte == 0x20 || byte == 0x3B || byte == 0xFF) << byte;
    }
}

TEST(CharSet, MarksItsMembers) {
    constexpr CharSet set(" ;\xFF");
    EXPECT_EQ(set.MarksOf(""), 0U);
    EXPECT_EQ(set.MarksOf("a b;\xFF"), 0x1AU);
    EXPECT_EQ(set.MarksOf(std::string(63, 'a') + " "), uint64_t{1} << 63);
    EXPECT_EQ(set.MarksOf(std::string(64, ';')), ~uint64_t{0});
}

}  // namespace
}  // namespace tabrin
