#include "io/copy_text.h"

#include "io/io_test_support.h"

namespace tabrin {
namespace {

constexpr size_t kLongest = 100;

// Every size, with memory that has just room for it in the middle of other text.
TEST(CopyText, CopiesAllOfTheTextAndNothingElse) {
    for (size_t size = 0; size <= kLongest; ++size) {
        std::string text;
        for (size_t i = 0; i < size; ++i) {
            text += static_cast<char>('A' + (i * 7 + size) % 60);
        }
        const std::vector<char> source(text.begin(), text.end());
        std::string target(kLongest + 40, '.');
        CopyText(target.data() + 20, {source.data(), source.size()});
        EXPECT_EQ(target, std::string(20, '.') + text + std::string(kLongest + 20 - size, '.')) << size;
    }
}

TEST(CopyText, AnEmptyTextNeedsNoMemory) {
    CopyText(nullptr, {});
    std::string target = "ab";
    CopyText(target.data() + 1, {});
    EXPECT_EQ(target, "ab");
}

// Every size, in the middle of other bytes on both sides: some with few bits, and some with all of them.
TEST(CopyShortText, CopiesTheTextAndANulAndNothingElse) {
    const std::string source = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
    for (const char other : {'\0', '.', '\xFF'}) {
        for (size_t size = 0; size <= kLongestShortCopy; ++size) {
            std::string target(40, other);
            const std::string text = source.substr(size % 5, size);
            CopyShortText(target.data() + 4, std::string_view(source).substr(size % 5, size));
            EXPECT_EQ(target, std::string(4, other) + text + '\0' + std::string(35 - size, other)) << size;
        }
    }
}

TEST(CopyShortText, AnEmptyTextNeedsNoMemory) {
    std::string target(40, '.');
    CopyShortText(target.data(), {});
    EXPECT_EQ(target, '\0' + std::string(39, '.'));
}

}  // namespace
}  // namespace tabrin
