// Records full of any bytes, and any sequence of calls with any arguments: thousands of them, the same in every run.
#include <array>
#include <cstring>
#include <random>

#include "abi/interface_test.h"
#include "fuzz/abi/calls_check.h"
#include "fuzz/check.h"
#include "fuzz/naive_text.h"

namespace tabrin_test {
namespace {

using tabrin_fuzz::NaiveTakenField;

class AnyBytes : public InterfaceTest {
protected:
    // Numbers below `limit`. The distributions of the standard library differ from one to the other.
    uint32_t Number(uint32_t limit) { return static_cast<uint32_t>(random_() % limit); }

    // Many kinds of bytes, for a text is seldom valid where all are equally likely.
    unsigned char Byte(uint32_t kind) {
        switch (kind) {
            case 0:
                return static_cast<unsigned char>(Number(256));
            case 1:
                return static_cast<unsigned char>(Number(128));
            case 2:
                return static_cast<unsigned char>(' ' + Number(95));
            case 3:
                return static_cast<unsigned char>("\xC3\xA4"[Number(2)]);
            case 4:
                return Number(40) == 0 ? static_cast<unsigned char>(0x80 + Number(128))
                                       : static_cast<unsigned char>('a' + Number(26));
            default:
                return static_cast<unsigned char>("\",_ \\\n01\xF0\x9F\x98\x80"[Number(12)]);
        }
    }

    static constexpr uint32_t kKinds = 6;

    // No byte is 0 in half of the records, so that no text in them ends.
    template <typename Record>
    Record AnyRecord() {
        std::array<unsigned char, sizeof(Record)> bytes;
        const uint32_t kind = Number(kKinds);
        const bool endless = Number(2) == 0;
        for (unsigned char& byte : bytes) {
            byte = Byte(kind);
            byte = endless && byte == 0 ? 0x7F : byte;
        }
        if (!endless) {
            for (uint32_t i = Number(40); i > 0; --i) {
                bytes[Number(sizeof(Record))] = 0;
            }
        }
        Record record;
        std::memcpy(&record, bytes.data(), sizeof record);
        return record;
    }

    // For the messages of failing rows.
    template <typename Record>
    static std::string BytesOf(const Record& record) {
        return Shown({reinterpret_cast<const char*>(&record), sizeof record});
    }

    template <size_t Size>
    static bool IsTaken(const char (&field)[Size]) {
        std::string text;
        return NaiveTakenField(field, Size, text);
    }

    std::mt19937 random_{20240229};
};

TEST_F(AnyBytes, InAMessageRecordAreTakenOrRefused) {
    uint32_t taken = 0;
    constexpr uint32_t kRecords = 3000;
    for (uint32_t i = 0; i < kRecords; ++i) {
        SCOPED_TRACE(i);
        const auto record = AnyRecord<CanMessageData>();
        const bool valid = IsTaken(record.name) && IsTaken(record.transmitter) && IsTaken(record.comment);
        ASSERT_EQ(Library().AppendCanMessage(&record), valid) << BytesOf(record);
        taken += valid ? 1 : 0;
        ASSERT_EQ(NumMessages(), taken);
        if (valid) {
            const CanMessageData data = MessageAt(taken - 1);
            ASSERT_EQ(data.id, record.id);
            ASSERT_EQ(data.dlc, record.dlc);
            ASSERT_EQ(data.numSignals, 0U);
        }
    }
    EXPECT_GT(taken, kRecords / 10);
    EXPECT_LT(taken, kRecords * 9 / 10);
}

TEST_F(AnyBytes, InASignalRecordAreTakenOrRefused) {
    ASSERT_TRUE(AppendMessage(1, "M"));
    uint32_t taken = 0;
    constexpr uint32_t kRecords = 3000;
    for (uint32_t i = 0; i < kRecords; ++i) {
        SCOPED_TRACE(i);
        const auto record = AnyRecord<CanSignalData>();
        const bool valid =
            IsTaken(record.name) && IsTaken(record.unit) && IsTaken(record.receivers) && IsTaken(record.comment);
        ASSERT_EQ(Library().AppendCanSignalToCanMessage(0, &record), valid) << BytesOf(record);
        taken += valid ? 1 : 0;
        ASSERT_EQ(NumSignals(0), taken);
        if (valid) {
            const CanSignalData data = SignalAt(0, taken - 1);
            ASSERT_EQ(data.startBit, record.startBit);
            ASSERT_EQ(data.multiplexKind, record.multiplexKind);
            // Their bits, as they may be no numbers.
            ASSERT_EQ(std::memcmp(&data.factor, &record.factor, 4 * sizeof(double)), 0);
            ASSERT_EQ(data.numValueDescriptions, 0U);
        }
    }
    EXPECT_GT(taken, kRecords / 10);
    EXPECT_LT(taken, kRecords * 9 / 10);
}

TEST_F(AnyBytes, InAValueDescriptionAreTakenOrRefused) {
    ASSERT_TRUE(AppendMessage(1, "M"));
    ASSERT_TRUE(AppendSignal(0, "S"));
    uint32_t taken = 0;
    constexpr uint32_t kRecords = 500;
    for (uint32_t i = 0; i < kRecords; ++i) {
        SCOPED_TRACE(i);
        auto record = AnyRecord<CanSignalEnumData>();
        // Each value once: records of the same few bytes would all be about the same values.
        record.value = static_cast<int32_t>(i * 0x9E3779B1U);
        const bool valid = IsTaken(record.text);
        ASSERT_EQ(Library().AppendEnumToCanSignal(0, 0, &record), valid) << BytesOf(record);
        taken += valid ? 1 : 0;
        ASSERT_EQ(NumEnums(0, 0), taken);
    }
    for (uint32_t i = 0; i < taken; ++i) {
        EnumAt(0, 0, i);
    }
    EXPECT_GT(taken, kRecords / 10);
    EXPECT_LT(taken, kRecords * 9 / 10);
}

TEST_F(AnyBytes, AsDatabaseInformationAreHandedBack) {
    for (uint32_t i = 0; i < 3000; ++i) {
        SCOPED_TRACE(i);
        const auto info = AnyRecord<DatabaseInfo>();
        ASSERT_TRUE(Library().SetDatabaseInfo(&info, i % 2 == 0 ? sizeof info : SIZE_MAX));
        const DatabaseInfo back = Info();
        ASSERT_EQ(back.protocolType, info.protocolType);
        ASSERT_EQ(back.canFd, info.canFd);
    }
}

// A model beside the library says what each call must answer.
TEST_F(AnyBytes, AsAProgramOfCallsDoWhatTheModelSays) {
    const std::string path = TempPath("dbc");
    for (int i = 0; i < 2000; ++i) {
        std::string program;
        for (uint32_t pieces = 1 + Number(8); pieces > 0; --pieces) {
            const uint32_t kind = Number(kKinds);
            for (uint32_t size = Number(100); size > 0; --size) {
                program += static_cast<char>(Byte(kind));
            }
        }
        try {
            CheckCalls(tabrin_fuzz::FunctionsOf(Library()), program, path);
        } catch (const tabrin_fuzz::Failure& failure) {
            FAIL() << "program " << i << ", " << testing::PrintToString(program) << ": " << failure.what();
        }
    }
}

}  // namespace
}  // namespace tabrin_test
