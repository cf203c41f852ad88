// What reading leaves in the memory of a database.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "dbc/reading.h"
#include "model/arena_level.h"
#include "model/can_database.h"

namespace tabrin {
namespace {

std::string Repeated(int count, const std::string& text) {
    std::string all;
    for (int i = 0; i < count; ++i) {
        all += text;
    }
    return all;
}

// How far the last message lies behind the first one in memory.
ptrdiff_t DistanceOfMessages(const std::string& text, size_t messages) {
    CANDatabase database;
    EXPECT_TRUE(ReadText(database, text));
    EXPECT_EQ(database.messages.size(), messages);
    const auto address = [](const auto& object) { return reinterpret_cast<intptr_t>(object.get()); };
    return address(database.messages.back()) - address(database.messages.front());
}

const std::string kFirst = "BO_ 1 First: 8 E\n SG_ S : 0|8@1+ (1,0) [0|1] \"unit\" E\n";
const std::string kLast = "BO_ 2 Last: 8 E\n";

TEST(DbcReaderMemory, FaultyStatementsTakeNone) {
    TABRIN_SKIP_WITHOUT_LEVELS();
    const ptrdiff_t expected = DistanceOfMessages(kFirst + kLast, 2);
    EXPECT_LT(expected, 4096);
    const std::string kFaulty[] = {
        "BO_ x Message: 8 E\n",
        "BO_ 3 : 8 E\n",
        "BO_ 3 Message of three words: x E\n",
        " SG_ Signal of three words : x|8@1+ (1,0) [0|1] \"\" E\n",
        " SG_ Signal of three words : 0|8@1+ (x,0) [0|1] \"\" E\n",
        " SG_ Signal of three words : 0|8@1+ (1,0) [0|x] \"\" E\n",
    };
    for (const std::string& faulty : kFaulty) {
        SCOPED_TRACE(faulty);
        EXPECT_EQ(DistanceOfMessages(kFirst + Repeated(1000, faulty) + kLast, 2), expected);
        // Signals are looked at only behind a message; here each is the first one behind one.
        EXPECT_EQ(DistanceOfMessages(kFirst + faulty + kLast, 2), expected);
    }
}

TEST(DbcReaderMemory, EveryFaultySignalBehindAMessageTakesNone) {
    TABRIN_SKIP_WITHOUT_LEVELS();
    const std::string message = "BO_ 1 First: 8 E\n";
    const std::string faulty = " SG_ Signal of three words : 0|8@1+ (1,0) [0|x] \"\" E\n";
    EXPECT_EQ(DistanceOfMessages(Repeated(10, message + faulty) + kLast, 11),
              DistanceOfMessages(Repeated(10, message) + kLast, 11));
}

TEST(DbcReaderMemory, SignalsBeyondTenThousandTakeNone) {
    TABRIN_SKIP_WITHOUT_LEVELS();
    const std::string signal = " SG_ A_name : 0|8@1+ (1,0) [0|1] \"some unit\" A,B\n";
    const auto distance = [&](int signals) {
        CANDatabase database;
        EXPECT_TRUE(ReadText(database, "BO_ 1 First: 8 E\n" + Repeated(signals, signal) + kLast));
        EXPECT_EQ(database.messages.size(), 2U);
        EXPECT_EQ(database.messages[0]->signals.size(), 10000U);
        return reinterpret_cast<intptr_t>(database.messages[1].get()) -
               reinterpret_cast<intptr_t>(database.messages[0]->signals.back().get());
    };
    const auto expected = distance(10000);
    EXPECT_GT(expected, 0);
    EXPECT_LT(expected, 4096);
    EXPECT_EQ(distance(10001), expected);
    EXPECT_EQ(distance(12000), expected);
}

// What such statements leave behind must not disturb what follows them.
TEST(DbcReaderMemory, WhatFollowsAFaultyStatementIsIntact) {
    std::string text;
    for (int i = 0; i < 300; ++i) {
        const std::string number = std::to_string(i);
        text += "BO_ " + number + " Message " + number + ": 8 Node " + number + "\n";
        text += " SG_ Signal " + number + " : 0|8@1+ (1,0) [0|1] \"unit " + number + "\" A " + number + ",B\n";
        text += " SG_ Faulty signal " + number + " : 0|8@1+ (1,0) [0|x] \"\" A\n";
        text += "BO_ " + number + " Faulty message " + number + ": x E\n";
    }
    CANDatabase database;
    ASSERT_TRUE(ReadText(database, text));
    ASSERT_EQ(database.messages.size(), 300U);
    EXPECT_EQ(database.errors.size(), 600U);
    for (size_t i = 0; i < 300; ++i) {
        const std::string number = std::to_string(i);
        const CANMessage& message = *database.messages[i];
        EXPECT_EQ(message.name, "Message " + number);
        EXPECT_EQ(message.identifierName, "Message_" + number);
        EXPECT_EQ(message.transmitter, "Node_" + number);
        ASSERT_EQ(message.signals.size(), 1U);
        EXPECT_EQ(message.signals[0]->name, "Signal " + number);
        EXPECT_EQ(message.signals[0]->identifierName, "Signal_" + number);
        EXPECT_EQ(message.signals[0]->unit, "unit " + number);
        EXPECT_EQ(message.signals[0]->receivers.Joined(), "A_" + number + ",B");
    }
}

// The texts of one file do not stay when the next one is read.
TEST(DbcReaderMemory, ReadingAgainStartsAfresh) {
    CANDatabase database;
    for (int round = 0; round < 3; ++round) {
        SCOPED_TRACE(round);
        ASSERT_TRUE(ReadText(database, kFirst + "CM_ BO_ 1 \"text\";\nVAL_ 1 S 0 \"Off\";\n" + kLast));
        ASSERT_EQ(database.messages.size(), 2U);
        EXPECT_EQ(database.messages[0]->name, "First");
        EXPECT_EQ(database.messages[0]->comment, "text");
        EXPECT_EQ(database.messages[0]->signals[0]->unit, "unit");
        EXPECT_EQ(database.messages[0]->signals[0]->valueDescriptions.Size(), 1U);
        EXPECT_EQ(database.messages[1]->name, "Last");
    }
}

TEST(DbcReaderMemory, ListsOfSignalsHaveNoRoomLeft) {
    std::string text;
    for (const int count : {0, 1, 3, 5, 17, 100}) {
        text += "BO_ 1 Message: 8 E\n" + Repeated(count, " SG_ S : 0|8@1+ (1,0) [0|1] \"\" E\n");
    }
    CANDatabase database;
    EXPECT_TRUE(ReadText(database, text));
    ASSERT_EQ(database.messages.size(), 6U);
    const size_t kSizes[] = {0, 1, 3, 5, 17, 100};
    for (size_t i = 0; i < 6; ++i) {
        EXPECT_EQ(database.messages[i]->signals.size(), kSizes[i]);
        EXPECT_EQ(database.messages[i]->signals.capacity(), kSizes[i]);
    }
}

}  // namespace
}  // namespace tabrin
