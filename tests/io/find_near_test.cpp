#include "io/find_near.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <string_view>

#include "io/text_scan.h"

namespace tabrin {
namespace {

// Two of the wanted character in every place of texts below, at and above the size of a block, from every position.
TEST(FindNear, AnswersWhatASearchByCharacterDoes) {
    for (size_t size = 0; size < 70; ++size) {
        for (size_t first = 0; first <= size; ++first) {
            for (size_t second = first; second <= size; second += 3) {
                // Among its neighbours, and with one behind the text, which must not be seen.
                std::string text = std::string(size, '!') + '"';
                text[first] = text[second] = '"';
                for (size_t pos = 0; pos <= size + 1; ++pos) {
                    const size_t expected = pos <= first && first < size     ? first
                                            : pos <= second && second < size ? second
                                                                             : kNpos;
                    ASSERT_EQ(FindNear(std::string_view(text).substr(0, size), '"', pos), expected)
                        << text << ", size " << size << ", from " << pos;
                }
            }
        }
    }
}

TEST(FindNear, FindsAnyCharacter) {
    for (int c = 0; c < 256; ++c) {
        std::string text(40, static_cast<char>(c + 1));
        EXPECT_EQ(FindNear(text, static_cast<char>(c), 3), kNpos) << c;
        text[21] = static_cast<char>(c);
        EXPECT_EQ(FindNear(text, static_cast<char>(c), 3), 21U) << c;
        EXPECT_EQ(FindNear(text, static_cast<char>(c), 10), 21U) << c;
        EXPECT_EQ(FindNear(text, static_cast<char>(c), 22), kNpos) << c;
    }
}

}  // namespace
}  // namespace tabrin
