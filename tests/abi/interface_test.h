// What the tests of the exported functions share: records, files and a readable copy of the whole database.
#pragma once

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>
#include <string>
#include <string_view>

#include "abi/library_under_test.h"
#include "shown.h"
#include "tabrin.h"

#ifndef TABRIN_TEMP_DIR
#define TABRIN_TEMP_DIR "."
#endif

namespace tabrin_test {

inline LibraryUnderTest& Library() {
    return LibraryUnderTest::Shared();
}

// Each test begins with an empty database whose two flags are 0.
class InterfaceTest : public testing::Test {
protected:
    void SetUp() override { Empty(); }
    void TearDown() override { Empty(); }

private:
    static void Empty() {
        const DatabaseInfo none{};
        Library().ClearData();
        Library().SetDatabaseInfo(&none, sizeof none);
    }
};

// What a file function returned and wrote.
struct Outcome {
    bool result;
    uint32_t status;
    friend bool operator==(const Outcome&, const Outcome&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Outcome& outcome) {
        return out << (outcome.result ? "true" : "false") << " with status " << outcome.status;
    }
};

// A status that no function writes, to see whether the cell was written at all.
inline constexpr uint32_t kUnwritten = 0xA5A5A5A5U;

// --- Texts in records ---------------------------------------------------------------------------------------------

// Fills a field with the text and zeros. A text as long as the field leaves it without a NUL.
template <size_t Size>
void SetField(char (&field)[Size], std::string_view text) {
    ASSERT_LE(text.size(), Size);
    std::memset(field, 0, Size);
    std::memcpy(field, text.data(), text.size());
}

template <size_t Size>
std::string Field(const char (&field)[Size]) {
    const void* end = std::memchr(field, 0, Size);
    EXPECT_NE(end, nullptr) << "a text field without NUL";
    return end == nullptr ? std::string(field, Size) : std::string(field);
}

// --- Building -----------------------------------------------------------------------------------------------------

inline CanMessageData MessageRecord(uint32_t id, std::string_view name) {
    CanMessageData record{};
    record.id = id;
    record.dlc = 8;
    SetField(record.name, name);
    return record;
}

inline CanSignalData SignalRecord(std::string_view name) {
    CanSignalData record{};
    SetField(record.name, name);
    record.length = 8;
    record.byteOrder = TABRIN_BYTE_ORDER_LITTLE_ENDIAN;
    record.factor = 1.0;
    record.maximum = 255.0;
    return record;
}

inline CanSignalEnumData EnumRecord(int32_t value, std::string_view text) {
    CanSignalEnumData record{};
    record.value = value;
    SetField(record.text, text);
    return record;
}

inline bool AppendMessage(uint32_t id, std::string_view name) {
    const CanMessageData record = MessageRecord(id, name);
    return Library().AppendCanMessage(&record);
}

inline bool AppendSignal(uint32_t message, std::string_view name) {
    const CanSignalData record = SignalRecord(name);
    return Library().AppendCanSignalToCanMessage(message, &record);
}

inline bool AppendEnum(uint32_t message, uint32_t signal, int32_t value, std::string_view text) {
    const CanSignalEnumData record = EnumRecord(value, text);
    return Library().AppendEnumToCanSignal(message, signal, &record);
}

// --- Asking -------------------------------------------------------------------------------------------------------

inline CanMessageData MessageAt(uint32_t message) {
    CanMessageData record{};
    EXPECT_TRUE(Library().GetCanMessageData(message, &record)) << "message " << message;
    return record;
}

inline CanSignalData SignalAt(uint32_t message, uint32_t signal) {
    CanSignalData record{};
    EXPECT_TRUE(Library().GetCanSignalData(message, signal, &record)) << "signal " << message << "." << signal;
    return record;
}

inline CanSignalEnumData EnumAt(uint32_t message, uint32_t signal, uint32_t index) {
    CanSignalEnumData record{};
    EXPECT_TRUE(Library().GetCanSignalEnumData(message, signal, index, &record))
        << "value description " << message << "." << signal << "." << index;
    return record;
}

inline CanErrorData ErrorAt(uint32_t index) {
    CanErrorData record{};
    EXPECT_TRUE(Library().GetErrorData(index, &record)) << "error " << index;
    return record;
}

inline DatabaseInfo Info() {
    DatabaseInfo info{};
    EXPECT_TRUE(Library().GetDatabaseInfo(&info, sizeof info));
    return info;
}

inline uint32_t NumMessages() {
    return static_cast<uint32_t>(Library().GetNumCanMessages());
}

inline uint32_t NumErrors() {
    return static_cast<uint32_t>(Library().GetNumCanErrors());
}

inline uint32_t NumSignals(uint32_t message) {
    uint32_t count = kUnwritten;
    EXPECT_TRUE(Library().GetNumCanSignalsInCanMessage(message, &count)) << "message " << message;
    return count;
}

inline uint32_t NumEnums(uint32_t message, uint32_t signal) {
    uint32_t count = kUnwritten;
    EXPECT_TRUE(Library().GetNumEnumsInCanSignal(message, signal, &count)) << "signal " << message << "." << signal;
    return count;
}

// The value descriptions of a signal, such as "-1=Reverse;0=Neutral;".
inline std::string EnumsOf(uint32_t message, uint32_t signal) {
    std::string text;
    for (uint32_t index = 0; index < NumEnums(message, signal); ++index) {
        const CanSignalEnumData data = EnumAt(message, signal, index);
        text += std::to_string(data.value) + "=" + Field(data.text) + ";";
    }
    return text;
}

// --- A readable copy of the whole database ------------------------------------------------------------------------

// Numbers are shown by their bits, so that no locale and no rounding gets between the database and the comparison.
inline std::string Bits(double value) {
    char text[24];
    std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(std::bit_cast<uint64_t>(value)));
    return text;
}

inline std::string Dump(const CanSignalData& data) {
    std::string text = Field(data.identifierName) + "|" + Field(data.name) + "|" + Field(data.unit) + "|" +
                       Field(data.unitAsWritten) + "|" + Field(data.receivers) + "|" + Field(data.comment) + "|";
    for (const uint32_t number : {data.multiplexKind, data.multiplexValue, data.startBit, data.length, data.byteOrder,
                                  data.valueType, data.numValueDescriptions, data.startValue, data.inactiveValue}) {
        text += std::to_string(number) + " ";
    }
    for (const double number : {data.factor, data.offset, data.minimum, data.maximum}) {
        text += Bits(number) + " ";
    }
    return text;
}

inline std::string Dump(const CanMessageData& data) {
    return std::to_string(data.id) + "|" + Field(data.identifierName) + "|" + Field(data.name) + "|" +
           std::to_string(data.dlc) + "|" + Field(data.transmitter) + "|" + Field(data.comment) + "|" +
           Field(data.sendType) + "|" + std::to_string(data.cycleTime) + "|" + std::to_string(data.numSignals);
}

inline std::string DumpDatabase() {
    const DatabaseInfo info = Info();
    std::string text = "info " + std::to_string(info.protocolType) + " " + std::to_string(info.canFd) + "\n";
    for (uint32_t message = 0; message < NumMessages(); ++message) {
        text += "message " + Dump(MessageAt(message)) + "\n";
        for (uint32_t signal = 0; signal < NumSignals(message); ++signal) {
            text += "  signal " + Dump(SignalAt(message, signal)) + "\n    " + EnumsOf(message, signal) + "\n";
        }
    }
    for (uint32_t index = 0; index < NumErrors(); ++index) {
        const CanErrorData error = ErrorAt(index);
        text +=
            "error " + std::to_string(error.code) + " " + std::to_string(error.line) + " " + Field(error.text) + "\n";
    }
    return text;
}

// --- Files --------------------------------------------------------------------------------------------------------

inline std::filesystem::path FilePath(const std::string& utf8) {
    return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
}

// A path for a temporary file, different for each test.
inline std::string TempPath(const std::string& name) {
    const testing::TestInfo* test = testing::UnitTest::GetInstance()->current_test_info();
    std::string prefix = std::string(test->test_suite_name()) + "." + test->name();
    for (char& c : prefix) {
        c = c == '/' ? '.' : c;
    }
    return std::string(TABRIN_TEMP_DIR) + "/" + prefix + "." + name;
}

inline void WriteBytes(const std::string& path, std::string_view bytes) {
    std::ofstream file(FilePath(path), std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    ASSERT_TRUE(file.good()) << "cannot write " << path;
}

inline std::string ReadBytes(const std::string& path) {
    std::ifstream file(FilePath(path), std::ios::binary);
    EXPECT_TRUE(file.good()) << "cannot read " << path;
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

inline Outcome ReadFile(const std::string& path) {
    Outcome outcome{false, kUnwritten};
    outcome.result = Library().ReadDbcFile(path.c_str(), static_cast<uint32_t>(path.size() + 1), &outcome.status);
    return outcome;
}

inline Outcome WriteFile(const std::string& path, uint32_t order) {
    Outcome outcome{false, kUnwritten};
    outcome.result =
        Library().WriteDbcFile(path.c_str(), static_cast<uint32_t>(path.size() + 1), order, &outcome.status);
    return outcome;
}

inline constexpr Outcome kDone{true, TABRIN_STATUS_CLOSED};

// Puts the text into a file and reads that.
inline Outcome ReadText(std::string_view text) {
    const std::string path = TempPath("dbc");
    WriteBytes(path, text);
    return ReadFile(path);
}

}  // namespace tabrin_test
