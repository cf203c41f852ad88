#include "model/signal_name_index.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <string_view>

#include "dbc/parsed.h"

namespace tabrin {
namespace {

size_t CountRead(const SignalNameIndex& index, std::string_view name) {
    size_t count = 0;
    index.ForEachRead(name, [&](const CANSignal& signal) {
        EXPECT_EQ(signal.nameAsRead, name);
        ++count;
    });
    return count;
}

std::string NameOf(size_t number) {
    return "S" + std::to_string(number);
}

// The signals of one message after the other, however many each of them has.
TEST(SignalNameIndex, FindsTheSignalsOfAllMessages) {
    const size_t kSizes[] = {0, 1, 2, 3, 5, 8};
    for (const size_t first : kSizes) {
        for (const size_t second : kSizes) {
            for (const size_t third : kSizes) {
                SCOPED_TRACE(testing::Message() << first << ", " << second << ", " << third);
                OwnMessage messages[3];
                SignalNameIndex index;
                size_t total = 0;
                const size_t sizes[] = {first, second, third};
                for (size_t i = 0; i < 3; ++i) {
                    for (size_t j = 0; j < sizes[i]; ++j) {
                        AddReadSignal(messages[i], NameOf(total++));
                    }
                    index.Add(messages[i]);
                }
                for (size_t i = 0; i < total; ++i) {
                    EXPECT_EQ(CountRead(index, NameOf(i)), 1U) << NameOf(i);
                }
                EXPECT_EQ(CountRead(index, NameOf(total)), 0U);
            }
        }
    }
}

TEST(SignalNameIndex, FindsAllSignalsOfOneName) {
    OwnMessage message;
    for (int i = 0; i < 200; ++i) {
        AddReadSignal(message, "Same");
    }
    SignalNameIndex index;
    index.Add(message);
    index.Add(message);
    EXPECT_EQ(CountRead(index, "Same"), 400U);
    EXPECT_EQ(CountRead(index, "Other"), 0U);
}

}  // namespace
}  // namespace tabrin
