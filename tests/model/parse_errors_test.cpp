#include "model/parse_errors.h"

#include <gtest/gtest.h>

namespace tabrin {
namespace {

using Codes = std::vector<uint32_t>;

TEST(ParseErrors, AreNoneAtFirst) {
    const ParseErrors errors;
    EXPECT_TRUE(errors.IsEmpty());
    EXPECT_EQ(errors.Codes(), Codes());
}

// 0 is a code as any other.
TEST(ParseErrors, HoldTheCodeUntilTheyAreCleared) {
    for (const uint32_t code : {0U, 1U, 6U, 4294967295U}) {
        ParseErrors errors;
        errors.Add(code);
        EXPECT_FALSE(errors.IsEmpty()) << code;
        EXPECT_EQ(errors.Codes(), Codes{code});
        errors.Clear();
        EXPECT_TRUE(errors.IsEmpty()) << code;
        EXPECT_EQ(errors.Codes(), Codes()) << code;
    }
}

}  // namespace
}  // namespace tabrin
