// Databases in the middle of being read: their messages are found by identifier.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>

#include "model/can_database.h"
#include "model/own_arena.h"

namespace tabrin {

// A message that knows the database it was added to.
class ReadMessage : public OwnMessage {
public:
    explicit ReadMessage(CANDatabase& database) : database_(database) {}

    [[nodiscard]] CANDatabase& Database() const { return database_; }

private:
    CANDatabase& database_;
};

// Adds a message from its BO_ line, as reading does.
inline CANMessage& AddRead(CANDatabase& database, std::string_view line) {
    auto message = std::make_shared<ReadMessage>(database);
    EXPECT_TRUE(message->ParseLine(line)) << line;
    database.AddParsedMessage(message);
    return *message;
}

// Adds a signal from its SG_ line, as reading does. The message must be the last one that AddRead has added.
inline CANSignal& AddReadLine(CANMessage& message, std::string_view line) {
    CANDatabase& database = dynamic_cast<ReadMessage&>(message).Database();
    EXPECT_EQ(database.messages.back().get(), &message);
    auto signal = std::make_shared<OwnSignal>();
    EXPECT_TRUE(signal->ParseLine(line)) << line;
    message.AddSignal(signal);
    database.identifierIndex.AddSignal(*signal);
    return *signal;
}

// Adds a signal of that name and size. "M" stands for a signal without a name.
inline CANSignal& AddReadSignal(CANMessage& message, std::string_view name, uint32_t length = 8) {
    return AddReadLine(message,
                       "SG_ " + std::string(name) + " : 0|" + std::to_string(length) + "@1+ (1,0) [0|255] \"\" X");
}

}  // namespace tabrin
