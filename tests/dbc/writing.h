// Databases built as a caller builds them, and the files that are written from them.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "dbc/dbc_writer.h"
#include "dbc/reading.h"
#include "io/dbc_file_stream.h"
#include "model/can_database.h"
#include "model/own_arena.h"
#include "model/records.h"
#include "written_header.h"

namespace tabrin {

using tabrin_test::kWrittenHeader;

// --- Building

struct MessageFields {
    uint32_t id = 1;
    std::string name = "Msg";
    uint32_t dlc = 8;
    std::string transmitter = "";
    std::string comment = "";
};

// As plain a signal as there is: its line is ` SG_ S : 0|8@1+ (1,0) [0|255] "" Kestrune`.
struct SignalFields {
    std::string name = "S";
    std::string unit = "";
    std::string receivers = "";
    std::string comment = "";
    uint32_t multiplexKind = TABRIN_MULTIPLEX_NONE;
    uint32_t multiplexValue = 0;
    uint32_t startBit = 0;
    uint32_t length = 8;
    uint32_t byteOrder = TABRIN_BYTE_ORDER_LITTLE_ENDIAN;
    uint32_t valueType = TABRIN_VALUE_UNSIGNED;
    double factor = 1.0;
    double offset = 0.0;
    double minimum = 0.0;
    double maximum = 255.0;
};

inline CANMessage& AddMessage(CANDatabase& database, const MessageFields& fields = {}) {
    auto record = EmptyRecord<CanMessageData>();
    record.id = fields.id;
    record.dlc = fields.dlc;
    SetField(record.name, fields.name);
    SetField(record.transmitter, fields.transmitter);
    SetField(record.comment, fields.comment);
    if (!database.AppendMessage(&record)) {
        throw std::runtime_error("refused: message " + fields.name);
    }
    return *database.messages.back();
}

inline CANSignal& AddSignal(CANMessage& message, const SignalFields& fields = {}) {
    auto record = EmptyRecord<CanSignalData>();
    SetField(record.name, fields.name);
    SetField(record.unit, fields.unit);
    SetField(record.receivers, fields.receivers);
    SetField(record.comment, fields.comment);
    record.multiplexKind = fields.multiplexKind;
    record.multiplexValue = fields.multiplexValue;
    record.startBit = fields.startBit;
    record.length = fields.length;
    record.byteOrder = fields.byteOrder;
    record.valueType = fields.valueType;
    record.factor = fields.factor;
    record.offset = fields.offset;
    record.minimum = fields.minimum;
    record.maximum = fields.maximum;
    auto signal = std::make_shared<OwnSignal>();
    if (!signal->SetFromRecord(&record)) {
        throw std::runtime_error("refused: signal " + fields.name);
    }
    message.AddSignal(signal);
    return *signal;
}

inline CANSignal& AddNamedSignal(CANMessage& message, const std::string& name) {
    SignalFields fields;
    fields.name = name;
    return AddSignal(message, fields);
}

// --- Writing

// A path where nothing is yet, and nothing is left afterwards.
class OutputPath {
public:
    OutputPath() : path_(UnusedPath()) {}
    ~OutputPath() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    OutputPath(const OutputPath&) = delete;
    OutputPath& operator=(const OutputPath&) = delete;
    OutputPath(OutputPath&&) = delete;
    OutputPath& operator=(OutputPath&&) = delete;

    [[nodiscard]] const std::string& Text() const { return path_; }

private:
    std::string path_;
};

inline std::string FileBytes(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw std::runtime_error("cannot read " + path.string());
    }
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// What came of a call of WriteDbcFile.
struct WriteOutcome {
    bool result = false;
    FileStatus status = FileStatus::Reading;

    bool operator==(const WriteOutcome&) const = default;
};

inline void PrintTo(const WriteOutcome& outcome, std::ostream* out) {
    *out << (outcome.result ? "true" : "false") << " with status " << static_cast<uint32_t>(outcome.status);
}

inline constexpr WriteOutcome kAllWritten{true, FileStatus::Closed};
inline constexpr WriteOutcome kLastWriteLost{true, FileStatus::Failed};
inline constexpr WriteOutcome kWriteFailed{false, FileStatus::Failed};
inline constexpr WriteOutcome kNotOpened{false, FileStatus::NotOpened};

inline WriteOutcome WriteTo(CANDatabase& database, const std::string& path,
                            uint32_t messageOrder = TABRIN_ORDER_DATABASE) {
    WriteOutcome outcome;
    outcome.result = WriteDbcFile(database, path.c_str(), kPathBufferSize, messageOrder, outcome.status);
    return outcome;
}

// The file that is written from the database.
inline std::string WrittenBytes(CANDatabase& database, uint32_t messageOrder = TABRIN_ORDER_DATABASE) {
    const OutputPath path;
    EXPECT_EQ(WriteTo(database, path.Text(), messageOrder), kAllWritten);
    return FileBytes(path.Text());
}

// The same without the header, which is checked and taken off.
inline std::string WrittenBody(CANDatabase& database, uint32_t messageOrder = TABRIN_ORDER_DATABASE) {
    const std::string bytes = WrittenBytes(database, messageOrder);
    EXPECT_EQ(bytes.substr(0, kWrittenHeader.size()), kWrittenHeader);
    return bytes.size() < kWrittenHeader.size() ? bytes : bytes.substr(kWrittenHeader.size());
}

// What `write` hands to a stream that is open for writing.
template <typename Write>
std::string StreamBytes(Write write) {
    const OutputPath path;
    DbcFileStream stream;
    stream.Open(path.Text().c_str(), kPathBufferSize, OpenMode::Write);
    EXPECT_EQ(stream.Status(), FileStatus::Writing);
    write(stream);
    EXPECT_EQ(stream.Status(), FileStatus::Writing);
    stream.Close();
    EXPECT_EQ(stream.Status(), FileStatus::Closed);
    return FileBytes(path.Text());
}

}  // namespace tabrin
