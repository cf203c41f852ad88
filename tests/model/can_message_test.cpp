#include "model/can_message.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "model/arena_level.h"
#include "model/can_signal.h"
#include "model/own_arena.h"
#include "model/records.h"
#include "model/reset_state.h"
#include "shown.h"

namespace tabrin {
namespace {

TEST(CanMessage, NewMessageIsAsReset) {
    const OwnMessage message;
    ExpectReset(message);
    EXPECT_TRUE(message.parseErrors.IsEmpty());
}

TEST(CanMessage, ResetLeavesOnlyTheParseErrors) {
    OwnMessage message;
    FillEveryField(message);
    message.Reset();
    ExpectReset(message);
    EXPECT_EQ(message.parseErrors.Codes(), std::vector<uint32_t>({2}));
}

TEST(CanMessage, SignalsStandInTheOrderAdded) {
    OwnMessage message;
    const auto first = std::make_shared<OwnSignal>();
    const auto second = std::make_shared<OwnSignal>();
    message.AddSignal(first);
    message.AddSignal(second);
    message.AddSignal(first);
    EXPECT_EQ(message.signals, std::vector<std::shared_ptr<CANSignal>>({first, second, first}));
}

TEST(CanMessage, SignalsBeyondTenThousandAreDropped) {
    OwnMessage message;
    for (int i = 0; i < 9999; ++i) {
        message.AddSignal(std::make_shared<OwnSignal>());
    }
    const auto last = std::make_shared<OwnSignal>();
    message.AddSignal(last);
    EXPECT_EQ(message.signals.size(), 10000U);
    message.AddSignal(std::make_shared<OwnSignal>());
    EXPECT_EQ(message.signals.size(), 10000U);
    EXPECT_EQ(message.signals.back(), last);
}

TEST(CanMessage, DroppedSignalIsTold) {
    OwnMessage message;
    message.signals.resize(9999);
    EXPECT_TRUE(message.AddSignal(std::make_shared<OwnSignal>()));
    EXPECT_FALSE(message.AddSignal(std::make_shared<OwnSignal>()));
}

CanSignalData GivenSignal() {
    auto record = EmptyRecord<CanSignalData>();
    SetField(record.name, "Engine speed");
    SetField(record.unit, "rpm");
    SetField(record.receivers, "A, B");
    SetField(record.comment, "comment");
    return record;
}

TEST(CanMessage, AppendedSignalBeyondTenThousandIsDropped) {
    OwnMessage message;
    message.signals.resize(9999);
    const CanSignalData record = GivenSignal();
    EXPECT_TRUE(message.AppendSignal(&record));
    ASSERT_EQ(message.signals.size(), 10000U);
    EXPECT_EQ(message.signals.back()->name, "Engine speed");
    const auto last = message.signals.back();
    EXPECT_TRUE(message.AppendSignal(&record));
    EXPECT_EQ(message.signals.size(), 10000U);
    EXPECT_EQ(message.signals.back(), last);
}

TEST(CanMessage, AppendedSignalsAreIntactOneBesideTheOther) {
    OwnMessage message;
    for (int i = 0; i < 500; ++i) {
        CanSignalData record = GivenSignal();
        SetField(record.name, "Signal " + std::to_string(i));
        record.startBit = static_cast<uint32_t>(i);
        EXPECT_TRUE(message.AppendSignal(&record));
        SetField(record.comment, std::string(255, '\xFF'));
        EXPECT_FALSE(message.AppendSignal(&record));
    }
    ASSERT_EQ(message.signals.size(), 500U);
    for (size_t i = 0; i < 500; ++i) {
        const CANSignal& signal = *message.signals[i];
        EXPECT_EQ(signal.name, "Signal " + std::to_string(i));
        EXPECT_EQ(signal.identifierName, "Signal_" + std::to_string(i));
        EXPECT_EQ(signal.receivers.Joined(), "A,B");
        EXPECT_EQ(signal.comment, "comment");
        EXPECT_EQ(signal.startBit, i);
    }
}

// Neither one beyond the limit nor one that is refused takes memory as long as the message lives.
TEST(CanMessage, SignalsThatAreNotAddedGiveTheirMemoryBack) {
    TABRIN_SKIP_WITHOUT_LEVELS();
    OwnMessage message;
    CanSignalData record = GivenSignal();
    EXPECT_TRUE(message.AppendSignal(&record));
    const char* level = LevelOf(message.GetArena());
    EXPECT_FALSE(message.AppendSignal(nullptr));
    EXPECT_EQ(LevelOf(message.GetArena()), level);
    message.signals.resize(10000);
    for (int i = 0; i < 100; ++i) {
        EXPECT_TRUE(message.AppendSignal(&record));
    }
    EXPECT_EQ(LevelOf(message.GetArena()), level);
    SetField(record.comment, std::string(255, '\xFF'));
    for (int i = 0; i < 100; ++i) {
        EXPECT_FALSE(message.AppendSignal(&record));
    }
    EXPECT_EQ(LevelOf(message.GetArena()), level);
}

TEST(CanMessage, PreparingForWritingAgainTakesNoMemory) {
    TABRIN_SKIP_WITHOUT_LEVELS();
    OwnMessage message;
    for (int i = 0; i < 3; ++i) {
        const CanSignalData record = GivenSignal();
        EXPECT_TRUE(message.AppendSignal(&record));
    }
    EXPECT_TRUE(message.PrepareForWriting());
    const char* level = LevelOf(message.GetArena());
    for (int i = 0; i < 100; ++i) {
        EXPECT_TRUE(message.PrepareForWriting());
    }
    EXPECT_EQ(message.signals[2]->identifierName, "Engine_speed_0002");
    EXPECT_EQ(LevelOf(message.GetArena()), level);
}

TEST(CanMessage, ResetMakesRoomForSignals) {
    OwnMessage message;
    for (int i = 0; i < 10000; ++i) {
        message.AddSignal(std::make_shared<OwnSignal>());
    }
    message.Reset();
    message.AddSignal(std::make_shared<OwnSignal>());
    EXPECT_EQ(message.signals.size(), 1U);
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
        SCOPED_TRACE(Shown(row.given));
        OwnMessage message;
        message.sendType = "old";
        message.SetSendType(row.given);
        EXPECT_EQ(message.sendType, row.sendType);
    }
}

}  // namespace
}  // namespace tabrin
