// A copy of the whole database to compare field by field.
#pragma once

#include <algorithm>
#include <cstring>
#include <utility>
#include <vector>

#include "abi/interface_test.h"

namespace tabrin_test {

using Descriptions = std::vector<std::pair<int32_t, std::string>>;

struct SignalCopy {
    CanSignalData data;
    Descriptions descriptions;
};

struct MessageCopy {
    CanMessageData data;
    std::vector<SignalCopy> signals;
};

using Messages = std::vector<MessageCopy>;

inline Messages CopyOfMessages() {
    Messages messages;
    for (uint32_t m = 0; m < NumMessages(); ++m) {
        MessageCopy& message = messages.emplace_back();
        message.data = MessageAt(m);
        for (uint32_t s = 0; s < message.data.numSignals; ++s) {
            SignalCopy& signal = message.signals.emplace_back();
            signal.data = SignalAt(m, s);
            for (uint32_t e = 0; e < signal.data.numValueDescriptions; ++e) {
                const CanSignalEnumData description = EnumAt(m, s, e);
                signal.descriptions.emplace_back(description.value, Field(description.text));
            }
        }
    }
    return messages;
}

inline std::string Text(const SignalCopy& signal) {
    std::string text = Dump(signal.data);
    for (const auto& [value, description] : signal.descriptions) {
        text += "\n" + std::to_string(value) + "=" + description;
    }
    return text;
}

inline void ExpectSame(const Messages& actual, const Messages& expected) {
    ASSERT_EQ(actual.size(), expected.size());
    for (size_t m = 0; m < actual.size(); ++m) {
        SCOPED_TRACE(testing::Message() << "message " << m << ", " << expected[m].data.id);
        EXPECT_EQ(Dump(actual[m].data), Dump(expected[m].data));
        ASSERT_EQ(actual[m].signals.size(), expected[m].signals.size());
        for (size_t s = 0; s < actual[m].signals.size(); ++s) {
            EXPECT_EQ(Text(actual[m].signals[s]), Text(expected[m].signals[s])) << "signal " << s;
        }
        ASSERT_FALSE(testing::Test::HasFailure()) << "the other messages are not looked at";
    }
}

// Clearing leaves the CAN FD flag, which a file then need not mention.
inline void ForgetDatabase() {
    const DatabaseInfo none{};
    ASSERT_TRUE(Library().ClearData());
    ASSERT_TRUE(Library().SetDatabaseInfo(&none, sizeof none));
}

inline void SortAsWritten(Messages& messages, uint32_t order) {
    if (order == TABRIN_ORDER_IDENTIFIER) {
        std::stable_sort(messages.begin(), messages.end(),
                         [](const MessageCopy& a, const MessageCopy& b) { return a.data.id > b.data.id; });
    } else if (order == TABRIN_ORDER_NAME) {
        std::stable_sort(messages.begin(), messages.end(), [](const MessageCopy& a, const MessageCopy& b) {
            return std::strcmp(a.data.identifierName, b.data.identifierName) < 0;
        });
    }
}

}  // namespace tabrin_test
