#include "io/text_head.h"

#include "io/io_test_support.h"

namespace tabrin {
namespace {

struct Row {
    std::string_view text;
    uint64_t head;
};

constexpr Row kRows[] = {
    {"", 0},
    {"A", 0x41},
    {"AB", 0x4241},
    {"ABC", 0x434241},
    {"ABCD", 0x44434241},
    {"ABCDE", 0x4544434241},
    {"ABCDEF", 0x464544434241},
    {"ABCDEFG", 0x47464544434241},
    {"ABCDEFGH", 0x4847464544434241},
    {"ABCDEFGHI", 0x4847464544434241},
    {"ABCDEFGHIJKLMNOPQRSTUVWXYZ", 0x4847464544434241},
    {"\xFF", 0xFF},
    {"\xFF\x80", 0x80FF},
    {"\xFF\x80\xC3", 0xC380FF},
    {"\xFF\x80\xC3\xFE", 0xFEC380FF},
    {"\xFF\x80\xC3\xFE\x81", 0x81FEC380FF},
    {"\xFF\x80\xC3\xFE\x81\xFF", 0xFF81FEC380FF},
    {"\xFF\x80\xC3\xFE\x81\xFF\xA0", 0xA0FF81FEC380FF},
    {"\xFF\x80\xC3\xFE\x81\xFF\xA0\xFF", 0xFFA0FF81FEC380FF},
    {"\xFF\x80\xC3\xFE\x81\xFF\xA0\xFF\x01", 0xFFA0FF81FEC380FF},
    {"\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF", 0xFFFFFFFFFFFFFFFF},
    {std::string_view("\0", 1), 0},
    {std::string_view("\0A", 2), 0x4100},
    {std::string_view("A\0B", 3), 0x420041},
    {std::string_view("\0\0\0\0\0\0\0A", 8), 0x4100000000000000},
};

// In compiling and in running it is done in different ways.
constexpr bool AllRowsHoldInCompiling() {
    for (const Row& row : kRows) {
        if (HeadOf(row.text) != row.head) {
            return false;
        }
    }
    return true;
}
static_assert(AllRowsHoldInCompiling());

TEST(HeadOf, HasTheFirstCharacterLowest) {
    for (const Row& row : kRows) {
        // A text of its own in memory, so that a look behind its end is noticed.
        const std::vector<char> text(row.text.begin(), row.text.end());
        EXPECT_EQ(HeadOf({text.data(), text.size()}), row.head) << Shown(row.text);
    }
}

TEST(HeadOf, BeginsAtAnyAddressAndLooksAtNothingBehind) {
    const std::string text = "zzzzzzzABCDEFGHIJKLMNOP";
    EXPECT_EQ(HeadOf(std::string_view(text).substr(7, 0)), 0U);
    EXPECT_EQ(HeadOf(std::string_view(text).substr(7, 1)), 0x41U);
    EXPECT_EQ(HeadOf(std::string_view(text).substr(7, 2)), 0x4241U);
    EXPECT_EQ(HeadOf(std::string_view(text).substr(7, 3)), 0x434241U);
    EXPECT_EQ(HeadOf(std::string_view(text).substr(7, 4)), 0x44434241U);
    EXPECT_EQ(HeadOf(std::string_view(text).substr(7, 5)), 0x4544434241U);
    EXPECT_EQ(HeadOf(std::string_view(text).substr(7, 6)), 0x464544434241U);
    EXPECT_EQ(HeadOf(std::string_view(text).substr(7, 7)), 0x47464544434241U);
    EXPECT_EQ(HeadOf(std::string_view(text).substr(7, 8)), 0x4847464544434241U);
    EXPECT_EQ(HeadOf(std::string_view(text).substr(8, 8)), 0x4948474645444342U);
    EXPECT_EQ(HeadOf(std::string_view(text).substr(9, 3)), 0x454443U);
}

TEST(HeadOf, EveryByteInEveryPlace) {
    for (size_t size = 1; size <= 20; ++size) {
        for (size_t place = 0; place < size; ++place) {
            for (unsigned byte = 0; byte < 256; ++byte) {
                std::vector<char> text(size, '\0');
                text[place] = static_cast<char>(byte);
                const uint64_t expected = place < 8 ? uint64_t{byte} << (8 * place) : 0;
                ASSERT_EQ(HeadOf({text.data(), size}), expected) << byte << " in place " << place << " of " << size;
            }
        }
    }
}

TEST(HeadAt, TakesEightCharactersAtAnyAddress) {
    const std::string text = "ABCDEFGHIJ\xFF\x80\xC3\xFE\x81\xFF\xA0\xFF";
    EXPECT_EQ(HeadAt(text.data()), 0x4847464544434241U);
    EXPECT_EQ(HeadAt(text.data() + 1), 0x4948474645444342U);
    EXPECT_EQ(HeadAt(text.data() + 2), 0x4A49484746454443U);
    EXPECT_EQ(HeadAt(text.data() + 3), 0xFF4A494847464544U);
    EXPECT_EQ(HeadAt(text.data() + 4), 0x80FF4A4948474645U);
    EXPECT_EQ(HeadAt(text.data() + 9), 0xA0FF81FEC380FF4AU);
    EXPECT_EQ(HeadAt(text.data() + 10), 0xFFA0FF81FEC380FFU);
}

}  // namespace
}  // namespace tabrin
