#include "io/text_marks.h"

#include <algorithm>

#include "io/io_test_support.h"

namespace tabrin {
namespace {

constexpr size_t kBlockSize = 65536;

using Places = std::vector<size_t>;

// Gives the marks a block, which lies in memory of just its size, and takes them all.
Places Taken(TextMarks& marks, std::string_view block) {
    const std::vector<char> bytes(block.begin(), block.end());
    marks.Set(bytes.data(), bytes.size());
    Places places;
    for (size_t place = marks.Next(); place != block.size(); place = marks.Next()) {
        places.push_back(place);
        if (places.size() > block.size()) {
            ADD_FAILURE() << "more marks than bytes";
            break;
        }
    }
    return places;
}

Places MarksOf(std::string_view block) {
    const auto marks = std::make_unique<TextMarks>();
    return Taken(*marks, block);
}

// The rule byte by byte; `before` is the byte in front of the block.
bool IsMarked(unsigned char before, unsigned char byte) {
    if (byte == ' ') {
        return before == '_' || before == 'N' || before == 'R';
    }
    return byte < ' ' || byte > '~';
}

Places ExpectedMarks(std::string_view block, char before = 'a') {
    Places places;
    for (size_t i = 0; i < block.size(); ++i) {
        if (IsMarked(static_cast<unsigned char>(before), static_cast<unsigned char>(block[i]))) {
            places.push_back(i);
        }
        before = block[i];
    }
    return places;
}

TEST(TextMarks, LineEndsControlsAndBlanksBehindKeywords) {
    const struct {
        std::string_view block;
        Places places;
    } rows[] = {
        {"", {}},
        {"a", {}},
        {" ", {}},
        {"\n", {0}},
        {"hello world", {}},
        {"BO_ 100 Engine: 8 ECU\n", {3, 21}},
        {" SG_ Speed : 0|8@1+ (1,0) [0|255] \"km/h\" ECU\r\n", {4, 44, 45}},
        {"BO_ SG_ \n", {3, 7, 8}},
        {"VERSION \"\"\nFILTER x", {7, 10, 17}},
        {"a\tb\vc\fd\re", {1, 3, 5, 7}},
        {"a\0b\x1A\x7F"sv, {1, 3, 4}},
        {"\xC3\xA4 \xE2\x82\xAC ~", {0, 1, 3, 4, 5}},
        {"M N O P Q R S ", {3, 11}},
        {"T U V W X Y Z ", {}},
        {"@ A L M ` a n r ", {}},
        {"[ \\ ] ^ _ ", {9}},
        {"!\"#$%&'()*+,-./0123456789:;<=>?{|}~", {}},
        {"_  _", {1}},
        {"__ __", {2}},
        {"_\n ", {1}},
        {"_\t ", {1}},
        {"\xCE ", {0}},
        {"\xDF ", {0}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(MarksOf(row.block), row.places) << Shown(row.block);
    }
}

constexpr size_t kShortSizes[] = {1, 2, 3, 7, 8, 9, 15, 16, 17, 31, 32, 33, 47, 48, 49, 63, 64, 65, 127, 128, 129};

// Among plain letters, in front of a space.
TEST(TextMarks, EveryByteInEveryPlaceOfShortBlocks) {
    const auto marks = std::make_unique<TextMarks>();
    for (const size_t size : kShortSizes) {
        for (size_t place = 0; place < size; ++place) {
            for (int byte = 0; byte < 256; ++byte) {
                std::string block(size, 'a');
                block[place] = static_cast<char>(byte);
                if (place + 1 < size) {
                    block[place + 1] = ' ';
                }
                marks->Reset();
                ASSERT_EQ(Taken(*marks, block), ExpectedMarks(block))
                    << byte << " in place " << place << " of " << size;
            }
        }
    }
}

// A space behind every byte, and every byte behind one that ends keywords.
TEST(TextMarks, EveryPairInEveryPlaceOfAWord) {
    const auto marks = std::make_unique<TextMarks>();
    std::string pairs;
    for (int byte = 0; byte < 256; ++byte) {
        pairs += static_cast<char>(byte);
        pairs += ' ';
        pairs += '_';
        pairs += static_cast<char>(byte);
    }
    for (size_t before = 0; before < 64; ++before) {
        marks->Reset();
        const std::string block = std::string(before, '_') + pairs;
        ASSERT_EQ(Taken(*marks, block), ExpectedMarks(block)) << before;
    }
}

// With 256 turns of it, every byte stands in every place.
TEST(TextMarks, EveryByteInEveryPlaceOfLargeBlocks) {
    const auto marks = std::make_unique<TextMarks>();
    for (const size_t size : {kBlockSize - 1, kBlockSize}) {
        for (size_t turn = 0; turn < 256; ++turn) {
            std::string block(size, 'a');
            for (size_t i = 0; i < size; ++i) {
                block[i] = static_cast<char>((i * 7 + turn) % 256);
            }
            marks->Reset();
            ASSERT_TRUE(Taken(*marks, block) == ExpectedMarks(block)) << "turn " << turn << " of " << size;
        }
    }
}

// As files are: hardly any marks.
TEST(TextMarks, SingleMarksInLargeBlocks) {
    const auto marks = std::make_unique<TextMarks>();
    for (const size_t size : {kBlockSize - 1, kBlockSize}) {
        Places places = {0, 1, 14, 15, 16, 62, 63, 64, 65, 127, 128, 32767, 32768};
        for (size_t i = 1; i <= 130; ++i) {
            places.push_back(size - i);
        }
        for (const size_t place : places) {
            std::string block(size, 'a');
            block[place] = '\n';
            marks->Reset();
            ASSERT_EQ(Taken(*marks, block), Places{place}) << size;
            if (place != 0) {
                block[place] = ' ';
                block[place - 1] = '_';
                marks->Reset();
                ASSERT_EQ(Taken(*marks, block), Places{place}) << size;
            }
        }
        EXPECT_EQ(MarksOf(std::string(size, 'a')), Places());
        EXPECT_EQ(MarksOf(std::string(size, ' ')), Places());
        EXPECT_EQ(MarksOf(std::string(size, '\n')).size(), size);
    }
}

TEST(TextMarks, RandomBlocksFollowTheRule) {
    static constexpr std::string_view kCharacters = "aaaa    NR_MO`^@S~\n\r\t\x01\x7F\x80\xDF";
    Random random(11);
    const auto marks = std::make_unique<TextMarks>();
    size_t count = 0;
    for (int round = 0; round < 5000; ++round) {
        std::string block(random.Below(300), 'a');
        for (char& c : block) {
            c = kCharacters[random.Below(kCharacters.size())];
        }
        marks->Reset();
        const Places expected = ExpectedMarks(block);
        ASSERT_EQ(Taken(*marks, block), expected) << Shown(block);
        count += expected.size();
    }
    EXPECT_GT(count, 100000U);
}

// --- Blocks that continue each other

TEST(TextMarks, TheLastByteOfABlockDecidesAboutASpaceAtTheFrontOfTheNext) {
    const auto marks = std::make_unique<TextMarks>();
    for (const size_t size : {1, 2, 15, 16, 17, 63, 64, 65, 127, 128, 129, 65535, 65536}) {
        for (int byte = 0; byte < 256; ++byte) {
            std::string block(size, 'a');
            block.back() = static_cast<char>(byte);
            const Places expected = IsMarked(static_cast<unsigned char>(byte), ' ') ? Places{0} : Places();
            marks->Reset();
            Taken(*marks, block);
            ASSERT_EQ(Taken(*marks, " a"), expected) << byte << " at the end of " << size;
            Taken(*marks, block);
            ASSERT_EQ(Taken(*marks, " "), expected) << byte << " at the end of " << size;
            Taken(*marks, block);
            const Places other = IsMarked(static_cast<unsigned char>(byte), ' ') ? Places{0, 64} : Places{64};
            ASSERT_EQ(Taken(*marks, ' ' + std::string(63, 'a') + '\n'), other) << byte << " at the end of " << size;
        }
    }
}

TEST(TextMarks, OnlyTheLastByteOfTheBlockInFrontCounts) {
    const auto marks = std::make_unique<TextMarks>();
    Taken(*marks, "BO_x");
    EXPECT_EQ(Taken(*marks, " x"), Places());
    Taken(*marks, "BO_");
    EXPECT_EQ(Taken(*marks, "x x"), Places());
    EXPECT_EQ(Taken(*marks, " x"), Places());
    Taken(*marks, "_");
    EXPECT_EQ(Taken(*marks, "_"), Places());
    EXPECT_EQ(Taken(*marks, " "), Places{0});
    EXPECT_EQ(Taken(*marks, " "), Places());
    Taken(*marks, std::string(64, '_') + 'x');
    EXPECT_EQ(Taken(*marks, " "), Places());
    Taken(*marks, std::string(64, 'x') + '_');
    EXPECT_EQ(Taken(*marks, " "), Places{0});
    Taken(*marks, std::string(63, 'x') + '_');
    EXPECT_EQ(Taken(*marks, " "), Places{0});
}

TEST(TextMarks, AnEmptyBlockChangesNothing) {
    const auto marks = std::make_unique<TextMarks>();
    Taken(*marks, "BO_");
    EXPECT_EQ(Taken(*marks, ""), Places());
    EXPECT_EQ(Taken(*marks, ""), Places());
    EXPECT_EQ(Taken(*marks, " x"), Places{0});
    Taken(*marks, "BOx");
    EXPECT_EQ(Taken(*marks, ""), Places());
    EXPECT_EQ(Taken(*marks, " x"), Places());
}

// However the text is divided.
TEST(TextMarks, TextInPiecesHasTheMarksOfTheWhole) {
    static constexpr std::string_view kCharacters = "aaab    NR_M`\n\r\t\x03\xC3";
    Random random(12);
    const auto marks = std::make_unique<TextMarks>();
    for (int round = 0; round < 1000; ++round) {
        std::string text(1 + random.Below(1000), 'a');
        for (char& c : text) {
            c = kCharacters[random.Below(kCharacters.size())];
        }
        const size_t longest = size_t{1} << random.Below(9);
        marks->Reset();
        Places places;
        for (size_t begin = 0; begin < text.size();) {
            const std::string_view piece = std::string_view(text).substr(begin, random.Below(longest + 1));
            for (const size_t place : Taken(*marks, piece)) {
                places.push_back(begin + place);
            }
            begin += piece.size();
        }
        ASSERT_EQ(places, ExpectedMarks(text)) << Shown(text) << " in pieces of " << longest;
    }
}

// --- What Next answers when there is nothing more

TEST(TextMarks, TheEndIsAnsweredAgainAndAgain) {
    const auto marks = std::make_unique<TextMarks>();
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(marks->Next(), 0U);
    }
    for (const size_t size : {0, 1, 2, 15, 16, 63, 64, 65, 127, 128, 129, 65535, 65536}) {
        SCOPED_TRACE(size);
        std::string block(size, 'a');
        EXPECT_EQ(Taken(*marks, block), Places());
        for (int i = 0; i < 200; ++i) {
            ASSERT_EQ(marks->Next(), size);
        }
        if (size != 0) {
            block.back() = '\n';
            EXPECT_EQ(Taken(*marks, block), Places{size - 1});
            for (int i = 0; i < 200; ++i) {
                ASSERT_EQ(marks->Next(), size);
            }
        }
    }
}

// Nothing of a longer block shows up behind the end of a shorter one.
TEST(TextMarks, ABlockReplacesTheOneBefore) {
    const auto marks = std::make_unique<TextMarks>();
    Taken(*marks, std::string(kBlockSize, '\n'));
    EXPECT_EQ(Taken(*marks, "a\na"), Places{1});
    EXPECT_EQ(marks->Next(), 3U);
    EXPECT_EQ(Taken(*marks, std::string(128, 'a')), Places());
    EXPECT_EQ(marks->Next(), 128U);
    // Also when the marks of that were not all taken.
    const std::string lineEnds(200, '\n');
    marks->Set(lineEnds.data(), lineEnds.size());
    EXPECT_EQ(marks->Next(), 0U);
    EXPECT_EQ(marks->Next(), 1U);
    EXPECT_EQ(Taken(*marks, "aa\n"), Places{2});
}

TEST(TextMarks, ResetForgetsEverything) {
    const auto marks = std::make_unique<TextMarks>();
    const std::string block(200, '\n');
    for (size_t taken = 0; taken <= block.size(); taken += 40) {
        SCOPED_TRACE(taken);
        marks->Set(block.data(), block.size());
        for (size_t i = 0; i < taken; ++i) {
            EXPECT_EQ(marks->Next(), i);
        }
        marks->Reset();
        for (int i = 0; i < 3; ++i) {
            EXPECT_EQ(marks->Next(), 0U);
        }
    }
    // The byte in front too.
    Taken(*marks, "BO_");
    marks->Reset();
    EXPECT_EQ(Taken(*marks, " x"), Places());
}

}  // namespace
}  // namespace tabrin
