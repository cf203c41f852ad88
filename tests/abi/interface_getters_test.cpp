// Which index and which pointer is refused, and that a refused call leaves no trace.
#include <functional>

#include "abi/interface_test.h"

namespace tabrin_test {
namespace {

// Two messages; the first has two signals, of which the first has three value descriptions; two errors.
constexpr std::string_view kSmallFile =
    "BO_ 100 Engine: 8 ECU\n"
    " SG_ Gear : 0|8@1- (1,0) [-1|1] \"\" Dash\n"
    " SG_ Speed : 8|16@1+ (0.1,0) [0|6553.5] \"rpm\" Dash\n"
    "BO_ x Bad: 8 ECU\n"
    "BO_ 200 Empty: 0 ECU\n"
    "BO_ 300 Worse\n"
    "VAL_ 100 Gear -1 \"Back\" 0 \"Stand\" 1 \"Forth\" ;\n";

// A record whose every byte can be seen to be untouched.
template <typename Record>
class Prefilled {
public:
    Prefilled() { std::memset(static_cast<void*>(&record_), 0xA5, sizeof record_); }
    Record* Get() { return &record_; }
    bool IsUntouched() const {
        unsigned char fill[sizeof(Record)];
        std::memset(fill, 0xA5, sizeof fill);
        return std::memcmp(&record_, fill, sizeof fill) == 0;
    }

private:
    Record record_;
};

class IndexCheck : public InterfaceTest {
protected:
    void SetUp() override {
        InterfaceTest::SetUp();
        ASSERT_EQ(ReadText(kSmallFile), kDone);
        ASSERT_EQ(NumMessages(), 2U);
        ASSERT_EQ(NumSignals(0), 2U);
        ASSERT_EQ(NumSignals(1), 0U);
        ASSERT_EQ(NumEnums(0, 0), 3U);
        ASSERT_EQ(NumEnums(0, 1), 0U);
        ASSERT_EQ(NumErrors(), 2U);
    }
};

// A call with one index left open, and the number of things that this index counts.
struct IndexedCall {
    const char* what;
    uint32_t count;
    std::function<bool(uint32_t, bool&)> call;
};

template <typename Record>
bool Ask(bool& untouched, const std::function<bool(Record*)>& call) {
    Prefilled<Record> record;
    const bool result = call(record.Get());
    untouched = record.IsUntouched();
    return result;
}

const IndexedCall kIndexedCalls[] = {
    {"TabrinGetErrorData", 2,
     [](uint32_t i, bool& untouched) {
         return Ask<CanErrorData>(untouched, [=](auto* data) { return Library().GetErrorData(i, data); });
     }},
    {"TabrinGetCanMessageData", 2,
     [](uint32_t i, bool& untouched) {
         return Ask<CanMessageData>(untouched, [=](auto* data) { return Library().GetCanMessageData(i, data); });
     }},
    {"TabrinGetNumCanSignalsInCanMessage", 2,
     [](uint32_t i, bool& untouched) {
         return Ask<uint32_t>(untouched, [=](auto* n) { return Library().GetNumCanSignalsInCanMessage(i, n); });
     }},
    {"TabrinGetCanSignalData by signal", 2,
     [](uint32_t i, bool& untouched) {
         return Ask<CanSignalData>(untouched, [=](auto* data) { return Library().GetCanSignalData(0, i, data); });
     }},
    {"TabrinGetNumEnumsInCanSignal by signal", 2,
     [](uint32_t i, bool& untouched) {
         return Ask<uint32_t>(untouched, [=](auto* n) { return Library().GetNumEnumsInCanSignal(0, i, n); });
     }},
    {"TabrinGetCanSignalEnumData by value description", 3,
     [](uint32_t i, bool& untouched) {
         return Ask<CanSignalEnumData>(untouched,
                                       [=](auto* data) { return Library().GetCanSignalEnumData(0, 0, i, data); });
     }},
};

TEST_F(IndexCheck, EveryIndexBelowTheCountIsAnswered) {
    for (const IndexedCall& row : kIndexedCalls) {
        for (uint32_t index = 0; index < row.count; ++index) {
            SCOPED_TRACE(testing::Message() << row.what << " " << index);
            bool untouched = false;
            EXPECT_TRUE(row.call(index, untouched));
            EXPECT_FALSE(untouched);
        }
    }
}

TEST_F(IndexCheck, AnIndexFromTheCountOnIsRefusedWithoutATrace) {
    const std::string before = DumpDatabase();
    for (const IndexedCall& row : kIndexedCalls) {
        for (const uint32_t index : {row.count, row.count + 1, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
            SCOPED_TRACE(testing::Message() << row.what << " " << index);
            bool untouched = false;
            EXPECT_FALSE(row.call(index, untouched));
            EXPECT_TRUE(untouched);
            EXPECT_EQ(DumpDatabase(), before);
        }
    }
}

// The calls that take a message and a signal (and a value description), with indices that do not fit together.
TEST_F(IndexCheck, AMessageOrSignalThatDoesNotExistIsRefusedWithoutATrace) {
    const struct {
        uint32_t message;
        uint32_t signal;
    } rows[] = {
        {2, 0}, {3, 0}, {0xFFFFFFFFU, 0}, {0, 2}, {0, 3}, {0, 0xFFFFFFFFU}, {1, 0}, {1, 1}, {1, 0xFFFFFFFFU}, {2, 2},
    };
    const std::string before = DumpDatabase();
    const CanSignalEnumData one = EnumRecord(7, "Seven");
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << "message " << row.message << " signal " << row.signal);
        Prefilled<CanSignalData> signal;
        EXPECT_FALSE(Library().GetCanSignalData(row.message, row.signal, signal.Get()));
        EXPECT_TRUE(signal.IsUntouched());
        Prefilled<uint32_t> count;
        EXPECT_FALSE(Library().GetNumEnumsInCanSignal(row.message, row.signal, count.Get()));
        EXPECT_TRUE(count.IsUntouched());
        Prefilled<CanSignalEnumData> description;
        EXPECT_FALSE(Library().GetCanSignalEnumData(row.message, row.signal, 0, description.Get()));
        EXPECT_TRUE(description.IsUntouched());
        EXPECT_FALSE(Library().AppendEnumToCanSignal(row.message, row.signal, &one));
        EXPECT_EQ(DumpDatabase(), before);
    }
}

TEST_F(IndexCheck, AppendingASignalToAMessageThatDoesNotExistIsRefused) {
    const std::string before = DumpDatabase();
    for (const uint32_t message : {2U, 3U, 0xFFFFFFFFU}) {
        SCOPED_TRACE(message);
        EXPECT_FALSE(AppendSignal(message, "Lost"));
        EXPECT_EQ(DumpDatabase(), before);
    }
    EXPECT_TRUE(AppendSignal(1, "Kept"));
    EXPECT_EQ(NumSignals(1), 1U);
}

TEST_F(IndexCheck, ASignalWithoutValueDescriptionsHasNoFirstOne) {
    Prefilled<CanSignalEnumData> description;
    EXPECT_FALSE(Library().GetCanSignalEnumData(0, 1, 0, description.Get()));
    EXPECT_TRUE(description.IsUntouched());
}

TEST_F(IndexCheck, CountsGrowWithWhatIsAppended) {
    ASSERT_TRUE(AppendMessage(400, "Third"));
    EXPECT_EQ(Library().GetNumCanMessages(), 3);
    EXPECT_EQ(Field(MessageAt(2).name), "Third");
    ASSERT_TRUE(AppendSignal(2, "First"));
    EXPECT_EQ(Field(SignalAt(2, 0).name), "First");
    ASSERT_TRUE(AppendEnum(2, 0, 5, "Five"));
    EXPECT_EQ(EnumsOf(2, 0), "5=Five;");
    CanMessageData message{};
    EXPECT_FALSE(Library().GetCanMessageData(3, &message));
}

TEST_F(IndexCheck, NothingIsFoundInAClearedDatabase) {
    ASSERT_TRUE(Library().ClearData());
    EXPECT_EQ(Library().GetNumCanMessages(), 0);
    EXPECT_EQ(Library().GetNumCanErrors(), 0);
    for (const IndexedCall& row : kIndexedCalls) {
        SCOPED_TRACE(row.what);
        bool untouched = false;
        EXPECT_FALSE(row.call(0, untouched));
        EXPECT_TRUE(untouched);
    }
}

TEST_F(IndexCheck, NullRecordsAreRefusedWithoutATrace) {
    const struct {
        const char* what;
        std::function<bool()> call;
    } rows[] = {
        {"TabrinGetErrorData", [] { return Library().GetErrorData(0, nullptr); }},
        {"TabrinGetErrorData beyond the end", [] { return Library().GetErrorData(2, nullptr); }},
        {"TabrinGetCanMessageData", [] { return Library().GetCanMessageData(0, nullptr); }},
        {"TabrinGetCanMessageData beyond the end", [] { return Library().GetCanMessageData(2, nullptr); }},
        {"TabrinGetCanSignalData", [] { return Library().GetCanSignalData(0, 0, nullptr); }},
        {"TabrinGetCanSignalData beyond the end", [] { return Library().GetCanSignalData(0, 2, nullptr); }},
        {"TabrinGetCanSignalEnumData", [] { return Library().GetCanSignalEnumData(0, 0, 0, nullptr); }},
        {"TabrinGetCanSignalEnumData beyond the end", [] { return Library().GetCanSignalEnumData(0, 0, 3, nullptr); }},
        {"TabrinAppendCanMessage", [] { return Library().AppendCanMessage(nullptr); }},
        {"TabrinAppendCanSignalToCanMessage", [] { return Library().AppendCanSignalToCanMessage(0, nullptr); }},
        {"TabrinAppendCanSignalToCanMessage beyond the end",
         [] { return Library().AppendCanSignalToCanMessage(2, nullptr); }},
        {"TabrinAppendEnumToCanSignal", [] { return Library().AppendEnumToCanSignal(0, 0, nullptr); }},
        {"TabrinAppendEnumToCanSignal beyond the end", [] { return Library().AppendEnumToCanSignal(0, 2, nullptr); }},
    };
    const std::string before = DumpDatabase();
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        EXPECT_FALSE(row.call());
        EXPECT_EQ(DumpDatabase(), before);
    }
}

TEST_F(IndexCheck, ARefusedTextLeavesTheDatabaseAsItWas) {
    // A continuation byte with nothing in front of it.
    constexpr std::string_view kBroken = "A\x80";
    CanMessageData name = MessageRecord(1, kBroken);
    CanMessageData transmitter = MessageRecord(1, "M");
    SetField(transmitter.transmitter, kBroken);
    CanMessageData comment = MessageRecord(1, "M");
    SetField(comment.comment, kBroken);
    CanSignalData signalName = SignalRecord(kBroken);
    CanSignalData unit = SignalRecord("S");
    SetField(unit.unit, kBroken);
    CanSignalData receivers = SignalRecord("S");
    SetField(receivers.receivers, kBroken);
    CanSignalData signalComment = SignalRecord("S");
    SetField(signalComment.comment, kBroken);
    const CanSignalEnumData newValue = EnumRecord(7, kBroken);
    const CanSignalEnumData knownValue = EnumRecord(0, kBroken);
    const struct {
        const char* what;
        std::function<bool()> call;
    } rows[] = {
        {"message name", [&] { return Library().AppendCanMessage(&name); }},
        {"message transmitter", [&] { return Library().AppendCanMessage(&transmitter); }},
        {"message comment", [&] { return Library().AppendCanMessage(&comment); }},
        {"signal name", [&] { return Library().AppendCanSignalToCanMessage(0, &signalName); }},
        {"signal unit", [&] { return Library().AppendCanSignalToCanMessage(0, &unit); }},
        {"signal receivers", [&] { return Library().AppendCanSignalToCanMessage(0, &receivers); }},
        {"signal comment", [&] { return Library().AppendCanSignalToCanMessage(0, &signalComment); }},
        {"text of a new value", [&] { return Library().AppendEnumToCanSignal(0, 0, &newValue); }},
        {"text of a known value", [&] { return Library().AppendEnumToCanSignal(0, 0, &knownValue); }},
    };
    const std::string before = DumpDatabase();
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        EXPECT_FALSE(row.call());
        EXPECT_EQ(DumpDatabase(), before);
    }
}

TEST_F(IndexCheck, AskingChangesNothing) {
    const std::string first = DumpDatabase();
    EXPECT_EQ(DumpDatabase(), first);
}

}  // namespace
}  // namespace tabrin_test
