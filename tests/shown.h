// Texts as the messages of failing rows have them.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace tabrin_test {

// The text in quotes, with its unprintable bytes as escapes.
inline std::string Shown(std::string_view text) {
    return testing::PrintToString(std::string(text));
}

}  // namespace tabrin_test

namespace tabrin {

using tabrin_test::Shown;

}  // namespace tabrin
