// A small database to hold attributes against.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "dbc/parsed_attributes.h"
#include "dbc/well_known_attributes.h"
#include "model/can_database.h"
#include "model/own_arena.h"

namespace tabrin {

// A database in the middle of reading, with message 100 "Engine" of the signals "Speed" and "Torque" and message 200
// "Brake" of the signal "Speed".
class SmallDatabase {
public:
    SmallDatabase() {
        AddMessage(100, "Engine", {"Speed", "Torque"});
        AddMessage(200, "Brake", {"Speed"});
    }

    // The long names are the identifier forms for the time being.
    CANMessage& AddMessage(uint32_t id, const char* name, const std::vector<const char*>& signals) {
        auto message = std::make_shared<OwnMessage>();
        message->invalid = false;
        message->id = id;
        message->name = message->identifierName = message->nameAsRead = message->GetArena().Keep(name);
        data.AddParsedMessage(std::move(message));
        for (const char* signalName : signals) {
            AddSignal(signalName, signalName);
        }
        return *data.messages.back();
    }

    // Adds a signal to the last message. The long name is the one that was read.
    CANSignal& AddSignal(std::string_view nameAsRead, std::string_view identifierName) {
        auto signal = std::make_shared<OwnSignal>();
        signal->invalid = false;
        signal->name = signal->nameAsRead = signal->GetArena().Keep(nameAsRead);
        signal->identifierName = signal->GetArena().Keep(identifierName);
        data.messages.back()->AddSignal(signal);
        data.identifierIndex.AddSignal(*signal);
        return *signal;
    }

    // What reading does with these statements of a file, once all of it has been read.
    void Apply(const std::vector<const char*>& statements) {
        Parse(data.attributes, statements);
        ApplyWellKnownAttributes(data);
    }

    CANMessage& Message(size_t index) { return *data.messages.at(index); }
    CANSignal& Signal(size_t message, size_t index) { return *data.messages.at(message)->signals.at(index); }

    CANDatabase data;
};

// All that attributes can change, one line for each message and each signal:
// "name/identifier [send type] cycle time" and "  name/identifier start value inactive value".
inline std::vector<std::string> DescribeAttributed(const CANDatabase& database) {
    std::vector<std::string> texts;
    for (const auto& message : database.messages) {
        std::string& text = texts.emplace_back(message->name);
        text.append("/").append(message->identifierName).append(" [").append(message->sendType).append("] ");
        text += std::to_string(message->cycleTime);
        for (const auto& signal : message->signals) {
            std::string& line = texts.emplace_back("  ");
            line.append(signal->name).append("/").append(signal->identifierName).append(" ");
            line += std::to_string(signal->startValue) + " " + std::to_string(signal->inactiveValue);
        }
    }
    return texts;
}

// The small database before anything is applied.
inline const std::vector<std::string> kUnattributed = {"Engine/Engine [] 0", "  Speed/Speed 0 0", "  Torque/Torque 0 0",
                                                       "Brake/Brake [] 0", "  Speed/Speed 0 0"};

// Statements, and the small database behind them.
struct AttributedRow {
    std::vector<const char*> statements;
    std::vector<std::string> expected;
};

// The information of the database stays as it was.
inline void ExpectApplied(const AttributedRow& row) {
    SCOPED_TRACE(testing::PrintToString(row.statements));
    SmallDatabase database;
    database.data.info = {7, 7};
    database.Apply(row.statements);
    EXPECT_EQ(DescribeAttributed(database.data), row.expected);
    EXPECT_EQ(database.data.info.protocolType, 7U);
    EXPECT_EQ(database.data.info.canFd, 7U);
}

}  // namespace tabrin
