// Exactly which bytes of a caller's record are written. Offsets are written out as numbers: callers declare these
// records again in other languages.
#include <vector>

#include "abi/interface_test.h"

namespace tabrin_test {
namespace {

constexpr char kFill = '\xA5';

// The bytes that a record filled with 0xA5 holds after a call.
class Image {
public:
    explicit Image(size_t size) : bytes_(size, kFill) {}

    // The text and one NUL.
    Image& Text(size_t offset, std::string_view text) {
        bytes_.replace(offset, text.size() + 1, std::string(text) + '\0');
        return *this;
    }
    Image& U32(size_t offset, uint32_t value) { return Bytes(offset, &value, sizeof value); }
    Image& F64(size_t offset, double value) { return Bytes(offset, &value, sizeof value); }

    const std::string& Bytes() const { return bytes_; }

private:
    Image& Bytes(size_t offset, const void* value, size_t size) {
        bytes_.replace(offset, size, static_cast<const char*>(value), size);
        return *this;
    }

    std::string bytes_;
};

template <typename Record, typename Call>
std::string FilledBy(Call call) {
    Record record;
    std::memset(static_cast<void*>(&record), kFill, sizeof record);
    EXPECT_TRUE(call(&record));
    std::string bytes(sizeof record, '\0');
    std::memcpy(bytes.data(), &record, sizeof record);
    return bytes;
}

std::string MessageBytes(uint32_t message) {
    return FilledBy<CanMessageData>([=](auto* data) { return Library().GetCanMessageData(message, data); });
}

std::string SignalBytes(uint32_t message, uint32_t signal) {
    return FilledBy<CanSignalData>([=](auto* data) { return Library().GetCanSignalData(message, signal, data); });
}

std::string EnumBytes(uint32_t message, uint32_t signal, uint32_t index) {
    return FilledBy<CanSignalEnumData>(
        [=](auto* data) { return Library().GetCanSignalEnumData(message, signal, index, data); });
}

std::string ErrorBytes(uint32_t index) {
    return FilledBy<CanErrorData>([=](auto* data) { return Library().GetErrorData(index, data); });
}

void ExpectSameBytes(const std::string& actual, const std::string& expected) {
    ASSERT_EQ(actual.size(), expected.size());
    for (size_t offset = 0; offset < actual.size(); ++offset) {
        ASSERT_EQ(static_cast<int>(static_cast<unsigned char>(actual[offset])),
                  static_cast<int>(static_cast<unsigned char>(expected[offset])))
            << "at offset " << offset;
    }
}

class RecordBytes : public InterfaceTest {};

TEST_F(RecordBytes, AMessageFillsItsFieldsOnly) {
    ASSERT_EQ(ReadText("BO_ 2364540158 Engine Data: 8 ECU\n"
                       " SG_ A : 0|8@1+ (1,0) [0|1] \"\" N\n"
                       " SG_ B : 8|8@1+ (1,0) [0|1] \"\" N\n"
                       "CM_ BO_ 2364540158 \"Status\";\n"
                       "BA_DEF_ BO_ \"GenMsgSendType\" ENUM \"Cyclic\",\"On Event\";\n"
                       "BA_DEF_ BO_ \"GenMsgCycleTime\" INT 0 70000;\n"
                       "BA_ \"GenMsgSendType\" BO_ 2364540158 1;\n"
                       "BA_ \"GenMsgCycleTime\" BO_ 2364540158 66051;\n"),
              kDone);
    ExpectSameBytes(MessageBytes(0), Image(640)
                                         .U32(0, 2364540158U)
                                         .Text(4, "Engine_Data")
                                         .U32(40, 8)
                                         .Text(44, "Engine Data")
                                         .Text(300, "ECU")
                                         .U32(336, 2)
                                         .Text(344, "Status")
                                         .Text(600, "On_Event")
                                         .U32(636, 66051)
                                         .Bytes());
}

TEST_F(RecordBytes, AMessageWithoutTextsGetsOneNulInEachField) {
    ASSERT_TRUE(AppendMessage(0, ""));
    ExpectSameBytes(MessageBytes(0), Image(640)
                                         .U32(0, 0)
                                         .Text(4, "")
                                         .U32(40, 8)
                                         .Text(44, "")
                                         .Text(300, "")
                                         .U32(336, 0)
                                         .Text(344, "")
                                         .Text(600, "")
                                         .U32(636, 0)
                                         .Bytes());
}

TEST_F(RecordBytes, ASignalFillsItsFieldsOnly) {
    ASSERT_TRUE(AppendMessage(1, "M"));
    CanSignalData record{};
    SetField(record.name, "Oil Temp");
    SetField(record.unit,
             "\xC2\xB0"
             "C");
    SetField(record.receivers, "Dash, Log");
    SetField(record.comment, "At the pump");
    record.multiplexKind = 2;
    record.multiplexValue = 0x01020304U;
    record.startBit = 0x05060708U;
    record.length = 0x11121314U;
    record.byteOrder = 0x15161718U;
    record.valueType = 0x21222324U;
    record.factor = 0.5;
    record.offset = -40.0;
    record.minimum = -1.25;
    record.maximum = 1e300;
    record.startValue = 0x31323334U;
    record.inactiveValue = 0xFFFFFFFEU;
    ASSERT_TRUE(Library().AppendCanSignalToCanMessage(0, &record));
    ASSERT_TRUE(AppendEnum(0, 0, 1, "One"));
    ASSERT_TRUE(AppendEnum(0, 0, 2, "Two"));
    ASSERT_TRUE(AppendEnum(0, 0, 3, "Three"));
    ExpectSameBytes(SignalBytes(0, 0), Image(944)
                                           .Text(0, "Oil_Temp")
                                           .Text(33, "Oil Temp")
                                           .Text(289, "_C")
                                           .Text(322, "Dash,Log")
                                           .Text(578, "At the pump")
                                           .U32(836, 2)
                                           .U32(840, 0x01020304U)
                                           .U32(844, 0x05060708U)
                                           .U32(848, 0x11121314U)
                                           .U32(852, 0x15161718U)
                                           .U32(856, 0x21222324U)
                                           .F64(864, 0.5)
                                           .F64(872, -40.0)
                                           .F64(880, -1.25)
                                           .F64(888, 1e300)
                                           .U32(896, 3)
                                           .U32(900, 0x31323334U)
                                           .U32(904, 0xFFFFFFFEU)
                                           .Text(908,
                                                 "\xC2\xB0"
                                                 "C")
                                           .Bytes());
}

TEST_F(RecordBytes, ASignalWithoutTextsGetsOneNulInEachField) {
    ASSERT_TRUE(AppendMessage(1, "M"));
    const CanSignalData empty{};
    ASSERT_TRUE(Library().AppendCanSignalToCanMessage(0, &empty));
    Image image(944);
    for (const size_t offset : {0, 33, 289, 322, 578, 908}) {
        image.Text(offset, "");
    }
    for (const size_t offset : {836, 840, 844, 848, 852, 856, 896, 900, 904}) {
        image.U32(offset, 0);
    }
    for (const size_t offset : {864, 872, 880, 888}) {
        image.F64(offset, 0.0);
    }
    ExpectSameBytes(SignalBytes(0, 0), image.Bytes());
}

TEST_F(RecordBytes, AValueDescriptionFillsItsFieldsOnly) {
    ASSERT_TRUE(AppendMessage(1, "M"));
    ASSERT_TRUE(AppendSignal(0, "S"));
    ASSERT_TRUE(AppendEnum(0, 0, -2, "Off"));
    ASSERT_TRUE(AppendEnum(0, 0, 0x01020304, ""));
    ExpectSameBytes(EnumBytes(0, 0, 0), Image(260).U32(0, 0xFFFFFFFEU).Text(4, "Off").Bytes());
    ExpectSameBytes(EnumBytes(0, 0, 1), Image(260).U32(0, 0x01020304U).Text(4, "").Bytes());
}

TEST_F(RecordBytes, AnErrorFillsItsFieldsOnly) {
    ASSERT_EQ(ReadText("VERSION \"\"\nBO_ 7 Bad\nBO_ 8 Good: 8 N\nSG_ Bad\nVERSION \"\"\n"), kDone);
    ASSERT_EQ(NumErrors(), 2U);
    ExpectSameBytes(ErrorBytes(0), Image(264).U32(0, 1).U32(4, 2).Text(8, "BO_ 7 Bad").Bytes());
    ExpectSameBytes(ErrorBytes(1), Image(264).U32(0, 3).U32(4, 4).Text(8, "SG_ Bad").Bytes());
}

TEST_F(RecordBytes, CountsAreFourBytes) {
    ASSERT_TRUE(AppendMessage(1, "M"));
    ASSERT_TRUE(AppendSignal(0, "S"));
    ASSERT_TRUE(AppendEnum(0, 0, 1, "One"));
    uint32_t counts[3] = {kUnwritten, kUnwritten, kUnwritten};
    EXPECT_TRUE(Library().GetNumCanSignalsInCanMessage(0, &counts[1]));
    EXPECT_EQ(counts[0], kUnwritten);
    EXPECT_EQ(counts[1], 1U);
    EXPECT_EQ(counts[2], kUnwritten);
    counts[1] = kUnwritten;
    EXPECT_TRUE(Library().GetNumEnumsInCanSignal(0, 0, &counts[1]));
    EXPECT_EQ(counts[0], kUnwritten);
    EXPECT_EQ(counts[1], 1U);
    EXPECT_EQ(counts[2], kUnwritten);
}

TEST_F(RecordBytes, AFullFieldEndsInItsLastByte) {
    CanMessageData record = MessageRecord(1, std::string(255, 'n'));
    SetField(record.transmitter, std::string(32, 't'));
    SetField(record.comment, std::string(255, 'c'));
    ASSERT_TRUE(Library().AppendCanMessage(&record));
    ExpectSameBytes(MessageBytes(0), Image(640)
                                         .U32(0, 1)
                                         .Text(4, std::string(32, 'n'))
                                         .U32(40, 8)
                                         .Text(44, std::string(255, 'n'))
                                         .Text(300, std::string(32, 't'))
                                         .U32(336, 0)
                                         .Text(344, std::string(255, 'c'))
                                         .Text(600, "")
                                         .U32(636, 0)
                                         .Bytes());
}

TEST_F(RecordBytes, AShorterTextLeavesALongerOneBehindItsNul) {
    ASSERT_TRUE(AppendMessage(1, "LongerName"));
    ASSERT_TRUE(AppendMessage(2, "Abc"));
    CanMessageData record{};
    ASSERT_TRUE(Library().GetCanMessageData(0, &record));
    ASSERT_TRUE(Library().GetCanMessageData(1, &record));
    EXPECT_EQ(std::string_view(record.name, 11), std::string_view("Abc\0erName\0", 11));
    EXPECT_EQ(std::string_view(record.identifierName, 11), std::string_view("Abc\0erName\0", 11));
}

// What is appended is read and never written.
TEST_F(RecordBytes, AppendingLeavesTheCallersRecordAsItWas) {
    CanMessageData message;
    std::memset(static_cast<void*>(&message), 'x', sizeof message);
    SetField(message.name, " A b");
    const CanMessageData messageBefore = message;
    ASSERT_TRUE(Library().AppendCanMessage(&message));
    EXPECT_EQ(std::memcmp(&message, &messageBefore, sizeof message), 0);

    CanSignalData signal;
    std::memset(static_cast<void*>(&signal), 'x', sizeof signal);
    SetField(signal.receivers, "A, \"B\"");
    const CanSignalData signalBefore = signal;
    ASSERT_TRUE(Library().AppendCanSignalToCanMessage(0, &signal));
    EXPECT_EQ(std::memcmp(&signal, &signalBefore, sizeof signal), 0);

    CanSignalEnumData description = EnumRecord(1, "One");
    const CanSignalEnumData descriptionBefore = description;
    ASSERT_TRUE(Library().AppendEnumToCanSignal(0, 0, &description));
    ASSERT_TRUE(Library().AppendEnumToCanSignal(0, 0, &description));
    EXPECT_EQ(std::memcmp(&description, &descriptionBefore, sizeof description), 0);
}

// Texts are copied during the call: what the caller does with the record later has no effect.
TEST_F(RecordBytes, NothingKeepsAPointerToTheRecord) {
    CanMessageData message = MessageRecord(1, "Message");
    CanSignalData signal = SignalRecord("Signal");
    CanSignalEnumData description = EnumRecord(1, "One");
    ASSERT_TRUE(Library().AppendCanMessage(&message));
    ASSERT_TRUE(Library().AppendCanSignalToCanMessage(0, &signal));
    ASSERT_TRUE(Library().AppendEnumToCanSignal(0, 0, &description));
    const std::string before = DumpDatabase();
    std::memset(static_cast<void*>(&message), 'z', sizeof message);
    std::memset(static_cast<void*>(&signal), 'z', sizeof signal);
    std::memset(static_cast<void*>(&description), 'z', sizeof description);
    EXPECT_EQ(DumpDatabase(), before);
}

}  // namespace
}  // namespace tabrin_test
