#include "model/can_message.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "model/can_signal.h"
#include "model/reset_state.h"

namespace tabrin {
namespace {

TEST(CanMessage, NewMessageIsAsReset) {
    const CANMessage message;
    ExpectReset(message);
    EXPECT_TRUE(message.parseErrors.empty());
}

TEST(CanMessage, ResetLeavesOnlyTheParseErrors) {
    CANMessage message;
    FillEveryField(message);
    message.Reset();
    ExpectReset(message);
    EXPECT_EQ(message.parseErrors, std::vector<uint32_t>({2}));
}

TEST(CanMessage, SignalsAreSharedAndKeptInOrder) {
    CANMessage message;
    const auto first = std::make_shared<CANSignal>();
    const auto second = std::make_shared<CANSignal>();
    message.AddSignal(first);
    message.AddSignal(second);
    message.AddSignal(first);
    EXPECT_EQ(message.signals, std::vector<std::shared_ptr<CANSignal>>({first, second, first}));
}

TEST(CanMessage, SignalsBeyondTenThousandAreDropped) {
    CANMessage message;
    for (int i = 0; i < 9999; ++i) {
        message.AddSignal(std::make_shared<CANSignal>());
    }
    const auto last = std::make_shared<CANSignal>();
    message.AddSignal(last);
    EXPECT_EQ(message.signals.size(), 10000U);
    message.AddSignal(std::make_shared<CANSignal>());
    EXPECT_EQ(message.signals.size(), 10000U);
    EXPECT_EQ(message.signals.back(), last);
}

TEST(CanMessage, ResetMakesRoomForSignals) {
    CANMessage message;
    for (int i = 0; i < 10000; ++i) {
        message.AddSignal(std::make_shared<CANSignal>());
    }
    message.Reset();
    message.AddSignal(std::make_shared<CANSignal>());
    EXPECT_EQ(message.signals.size(), 1U);
}

TEST(CanMessage, CommentLineIsWrittenWhenThereIsAComment) {
    CANMessage message;
    message.invalid = false;
    message.id = 100;
    message.name = "Msg";
    message.identifierName = "Msg";
    message.comment = "text";
    EXPECT_EQ(message.WriteCommentLine(), "CM_ BO_ 100 \"text\";");
}

TEST(CanMessage, CommentLineIsEmptyWithoutAComment) {
    CANMessage message;
    message.invalid = false;
    message.id = 100;
    message.name = "Engine Data";
    message.identifierName = "Engine_Data";
    EXPECT_EQ(message.WriteCommentLine(), "");
}

TEST(CanMessage, LongNameGivenLaterLeavesTheIdentifierForm) {
    CANMessage message;
    message.name = "Old";
    message.identifierName = "Old";
    message.nameAsRead = "Old";
    message.SetLongName(" New\tName\n\v\f\r");
    EXPECT_EQ(message.name, " New Name    ");
    EXPECT_EQ(message.identifierName, "Old");
    EXPECT_EQ(message.nameAsRead, "Old");
}

TEST(CanMessage, SendTypeBecomesAnIdentifier) {
    struct Row {
        std::string given;
        std::string sendType;
    };
    const Row kRows[] = {
        {"Cyclic", "Cyclic"},        {"", ""},
        {"if active", "if_active"},  {"1st", "_st"},
        {"\xC3\xA4ndern", "_ndern"}, {"Abcdefghijklmnopqrstuvwxyz_012345", "Abcdefghijklmnopqrstuvwxyz_01234"},
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.given);
        CANMessage message;
        message.sendType = "old";
        message.SetSendType(row.given);
        EXPECT_EQ(message.sendType, row.sendType);
    }
}

}  // namespace
}  // namespace tabrin
