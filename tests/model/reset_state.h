// Objects of the model as Reset leaves them, and objects with something else in every field.
#pragma once

#include <gtest/gtest.h>

#include <memory>

#include "model/can_message.h"
#include "model/can_signal.h"
#include "model/own_arena.h"

namespace tabrin {

inline void ExpectReset(const CANMessage& message) {
    EXPECT_TRUE(message.invalid);
    EXPECT_EQ(message.id, 0U);
    EXPECT_EQ(message.name, "");
    EXPECT_EQ(message.identifierName, "");
    EXPECT_EQ(message.transmitter, "");
    EXPECT_EQ(message.sendType, "");
    EXPECT_EQ(message.cycleTime, 0U);
    EXPECT_EQ(message.comment, "");
    EXPECT_EQ(message.dlc, 0U);
    EXPECT_TRUE(message.signals.empty());
    EXPECT_EQ(message.nameAsRead, "");
    EXPECT_EQ(message.attributesSet, 0U);
}

inline void FillEveryField(CANMessage& message) {
    message.invalid = false;
    message.id = 1;
    message.name = "name";
    message.identifierName = "identifierName";
    message.transmitter = "transmitter";
    message.sendType = "sendType";
    message.cycleTime = 2;
    message.AppendComment("comment");
    message.dlc = 3;
    message.signals.push_back(std::make_shared<OwnSignal>());
    message.nameAsRead = "nameAsRead";
    message.attributesSet = 7;
    message.parseErrors.Add(2);
}

inline void ExpectReset(const CANSignal& signal) {
    EXPECT_TRUE(signal.invalid);
    EXPECT_EQ(signal.identifierName, "");
    EXPECT_EQ(signal.name, "");
    EXPECT_EQ(signal.unit, "");
    EXPECT_EQ(signal.unitAsWritten, "");
    EXPECT_EQ(signal.comment, "");
    EXPECT_EQ(signal.multiplexKind, 0U);
    EXPECT_EQ(signal.multiplexValue, 0U);
    EXPECT_EQ(signal.startBit, 0U);
    EXPECT_EQ(signal.length, 0U);
    EXPECT_EQ(signal.byteOrder, 1U);
    EXPECT_EQ(signal.valueType, 0U);
    EXPECT_EQ(signal.factor, 0.0);
    EXPECT_EQ(signal.offset, 0.0);
    EXPECT_EQ(signal.minimum, 0.0);
    EXPECT_EQ(signal.maximum, 0.0);
    EXPECT_EQ(signal.receivers.Joined(), "");
    EXPECT_TRUE(signal.valueDescriptions.IsEmpty());
    EXPECT_EQ(signal.startValue, 0U);
    EXPECT_EQ(signal.inactiveValue, 0U);
    EXPECT_EQ(signal.nameAsRead, "");
    EXPECT_EQ(signal.attributesSet, 0U);
    EXPECT_FALSE(signal.suffixApplied);
}

inline void FillEveryField(CANSignal& signal) {
    signal.invalid = false;
    signal.identifierName = "identifierName";
    signal.name = "name";
    signal.unit = "unit";
    signal.unitAsWritten = "unitAsWritten";
    signal.AppendComment("comment");
    signal.multiplexKind = 2;
    signal.multiplexValue = 3;
    signal.startBit = 4;
    signal.length = 5;
    signal.byteOrder = 0;
    signal.valueType = 1;
    signal.factor = 6.0;
    signal.offset = 7.0;
    signal.minimum = 8.0;
    signal.maximum = 9.0;
    signal.receivers.Assign(signal.GetArena(), "A,B");
    signal.valueDescriptions.Add(10, "ten");
    signal.startValue = 11;
    signal.inactiveValue = 12;
    signal.nameAsRead = "nameAsRead";
    signal.attributesSet = 7;
    signal.suffixApplied = true;
    signal.parseErrors.Add(3);
}

}  // namespace tabrin
