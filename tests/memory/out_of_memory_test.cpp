// Every single allocation of reading, asking, appending and writing fails in its turn, once alone and once with all
// that follow. Nothing is lost but the work of that call, and the library goes on as if nothing had been.
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <functional>
#include <type_traits>

#include "abi/interface_test.h"
#include "fuzz/abi/snapshot.h"
#include "memory/allocation_faults.h"
#include "memory/file_texts.h"
#include "memory/open_files.h"

namespace tabrin_test {
namespace {

using tabrin_fuzz::FunctionsOf;
using tabrin_fuzz::MessageCopy;
using tabrin_fuzz::SameMessages;
using tabrin_fuzz::SignalCopy;
using tabrin_fuzz::Snapshot;

constexpr Outcome kOutOfMemory{false, TABRIN_STATUS_FAILED};
constexpr Shortage kShortages[] = {Shortage::Once, Shortage::FromThenOn};

Snapshot Take() {
    return tabrin_fuzz::TakeSnapshot(FunctionsOf(Library()));
}

template <typename Record>
bool SameBytes(const Record& a, const Record& b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

bool SameErrors(const Snapshot& a, const Snapshot& b) {
    return a.errors.size() == b.errors.size() &&
           std::equal(a.errors.begin(), a.errors.end(), b.errors.begin(), SameBytes<CanErrorData>);
}

bool Same(const Snapshot& a, const Snapshot& b) {
    return SameMessages(a, b) && SameErrors(a, b);
}

class OutOfMemory : public InterfaceTest {
protected:
    void SetUp() override {
        InterfaceTest::SetUp();
        path_ = TempPath("dbc");
        WriteBytes(path_, EverythingText(7));
    }

    // Reads the file anew; without a word, because it is done thousands of times.
    void ReadAnew() const {
        const DatabaseInfo none{};
        Library().SetDatabaseInfo(&none, sizeof none);
        ASSERT_EQ(ReadFile(path_), kDone);
    }

    std::string path_;
};

// Which allocation fails.
struct Trial {
    size_t number;
    Shortage shortage;
};

// Whether it did, and whether the call was told by an exception.
struct Trouble {
    bool failed = false;
    bool thrown = false;
};

template <typename Call>
auto CallInTrouble(const Trial& trial, Trouble& trouble, Call call) {
    const AllocationFault fault(trial.number, trial.shortage);
    auto result = call();
    trouble = {fault.HasFailed(), fault.HasThrown()};
    return result;
}

// Has the first, the second, ... allocation fail until there are not so many: `attempt` makes a call, looks at what has
// become of it, and says whether there were. Returns how often there were.
template <typename Attempt>
size_t ForEachAllocation(Attempt attempt) {
    size_t points = 0;
    for (const Shortage shortage : kShortages) {
        for (size_t number = 1;; ++number) {
            const Trial trial{number, shortage};
            SCOPED_TRACE(testing::Message()
                         << "allocation " << number << (shortage == Shortage::Once ? "" : " and all that follow"));
            const bool reached = attempt(trial);
            if (testing::Test::HasFailure()) {
                ADD_FAILURE() << "further allocations are not tried";
                return points;
            }
            if (!reached) {
                break;
            }
            ++points;
        }
    }
    return points;
}

void Report(size_t points, size_t atLeast) {
    testing::Test::RecordProperty("allocations", std::to_string(points));
    std::printf("             %zu allocations failed\n", points);
    // With fewer, the library would hardly have been reached.
    EXPECT_GE(points, atLeast);
}

// --- Reading ------------------------------------------------------------------------------------------------------

// What neither comments nor attributes, which come later in the file, have a say in.
bool IsBeginningOf(const SignalCopy& part, const SignalCopy& whole) {
    return std::strcmp(part.data.identifierName, whole.data.identifierName) == 0 &&
           std::strcmp(part.data.unitAsWritten, whole.data.unitAsWritten) == 0 &&
           std::strcmp(part.data.receivers, whole.data.receivers) == 0 &&
           part.data.multiplexKind == whole.data.multiplexKind &&
           part.data.multiplexValue == whole.data.multiplexValue && part.data.startBit == whole.data.startBit &&
           part.data.length == whole.data.length && part.data.factor == whole.data.factor &&
           part.data.minimum == whole.data.minimum && part.descriptions.size() <= whole.descriptions.size();
}

bool IsBeginningOf(const MessageCopy& part, const MessageCopy& whole) {
    return part.data.id == whole.data.id && part.data.dlc == whole.data.dlc &&
           std::strcmp(part.data.identifierName, whole.data.identifierName) == 0 &&
           std::strcmp(part.data.transmitter, whole.data.transmitter) == 0 &&
           part.signals.size() <= whole.signals.size() &&
           std::equal(part.signals.begin(), part.signals.end(), whole.signals.begin(),
                      [](const SignalCopy& a, const SignalCopy& b) { return IsBeginningOf(a, b); });
}

bool IsBeginningOf(const Snapshot& part, const Snapshot& whole) {
    return part.messages.size() <= whole.messages.size() && part.errors.size() <= whole.errors.size() &&
           std::equal(part.messages.begin(), part.messages.end(), whole.messages.begin(),
                      [](const MessageCopy& a, const MessageCopy& b) { return IsBeginningOf(a, b); }) &&
           std::equal(part.errors.begin(), part.errors.end(), whole.errors.begin(), SameBytes<CanErrorData>);
}

// Reading broke off among the signals of the last message.
bool EndsWithSomeSignals(const Snapshot& part, const Snapshot& whole) {
    if (part.messages.empty()) {
        return false;
    }
    const size_t last = part.messages.size() - 1;
    const size_t signals = part.messages[last].signals.size();
    return signals > 0 && signals < whole.messages[last].signals.size();
}

void ExpectSaneDatabaseAfterFailedRead(const std::string& path, const Snapshot& part, const Snapshot& whole) {
    EXPECT_FALSE(IsOpenHere(path));
    EXPECT_TRUE(IsBeginningOf(part, whole)) << DumpDatabase();
    // It is a database like any other.
    EXPECT_TRUE(AppendMessage(7, "Another"));
    EXPECT_TRUE(AppendSignal(NumMessages() - 1, "One"));
}

// `endedAmongSignals` counts how often what was read by then is only a part of a message.
size_t ReadWithEveryAllocationFailing(const std::string& path, size_t& endedAmongSignals) {
    EXPECT_EQ(ReadFile(path), kDone);
    const Snapshot whole = Take();
    return ForEachAllocation([&](const Trial& trial) {
        const DatabaseInfo none{};
        Library().ClearData();
        Library().SetDatabaseInfo(&none, sizeof none);
        const size_t live = LiveAllocations();
        Trouble trouble;
        const Outcome outcome = CallInTrouble(trial, trouble, [&] { return ReadFile(path); });
        EXPECT_EQ(outcome, trouble.thrown ? kOutOfMemory : kDone);
        if (trouble.thrown) {
            const Snapshot part = Take();
            endedAmongSignals += EndsWithSomeSignals(part, whole) ? 1 : 0;
            ExpectSaneDatabaseAfterFailedRead(path, part, whole);
        } else {
            EXPECT_TRUE(Same(Take(), whole));
        }
        Library().ClearData();
        EXPECT_EQ(LiveAllocations(), live);
        Library().SetDatabaseInfo(&none, sizeof none);
        EXPECT_EQ(ReadFile(path), kDone);
        EXPECT_TRUE(Same(Take(), whole));
        return trouble.failed;
    });
}

TEST_F(OutOfMemory, InReadingEndsLikeAReadFailure) {
    const Snapshot empty = Take();
    ReadAnew();
    EXPECT_FALSE(Same(Take(), empty));
    ASSERT_EQ(NumMessages(), 14U);
    ASSERT_EQ(NumErrors(), 14U);
    size_t endedAmongSignals = 0;
    Report(ReadWithEveryAllocationFailing(path_, endedAmongSignals), 100);
    EXPECT_GT(endedAmongSignals, 0U);
}

TEST_F(OutOfMemory, InReadingLongStatementsEndsLikeAReadFailure) {
    WriteBytes(path_, LongStatementsText());
    size_t endedAmongSignals = 0;
    Report(ReadWithEveryAllocationFailing(path_, endedAmongSignals), 10);
    EXPECT_EQ(endedAmongSignals, 0U);  // there is one signal only
}

// --- Asking -------------------------------------------------------------------------------------------------------

template <typename Record>
Record* Scratch() {
    static Record record;
    return &record;
}

struct Question {
    const char* what;
    std::function<bool()> ask;
};

const Question kQuestions[] = {
    {"information", [] { return Library().GetDatabaseInfo(Scratch<DatabaseInfo>(), sizeof(DatabaseInfo)); }},
    {"number of messages", [] { return Library().GetNumCanMessages() == 14; }},
    {"number of errors", [] { return Library().GetNumCanErrors() == 14; }},
    {"message", [] { return Library().GetCanMessageData(0, Scratch<CanMessageData>()); }},
    {"number of signals", [] { return Library().GetNumCanSignalsInCanMessage(0, Scratch<uint32_t>()); }},
    {"signal", [] { return Library().GetCanSignalData(0, 2, Scratch<CanSignalData>()); }},
    {"number of value descriptions", [] { return Library().GetNumEnumsInCanSignal(0, 1, Scratch<uint32_t>()); }},
    {"first value description", [] { return Library().GetCanSignalEnumData(0, 1, 0, Scratch<CanSignalEnumData>()); }},
    {"last value description", [] { return Library().GetCanSignalEnumData(0, 1, 2, Scratch<CanSignalEnumData>()); }},
    {"first error", [] { return Library().GetErrorData(0, Scratch<CanErrorData>()); }},
    {"second error", [] { return Library().GetErrorData(1, Scratch<CanErrorData>()); }},
    {"version", [] { return Library().GetLibraryVersion() > 1; }},
};

TEST_F(OutOfMemory, InAskingChangesNothing) {
    ReadAnew();
    const Snapshot before = Take();
    size_t points = 0;
    for (const Question& question : kQuestions) {
        SCOPED_TRACE(question.what);
        points += ForEachAllocation([&](const Trial& trial) {
            const size_t live = LiveAllocations();
            Trouble trouble;
            const bool answered = CallInTrouble(trial, trouble, question.ask);
            EXPECT_EQ(answered, !trouble.thrown);
            EXPECT_EQ(LiveAllocations(), live);
            EXPECT_TRUE(Same(Take(), before));
            return trouble.failed;
        });
    }
    Report(points, 0);  // the getters may do without memory
}

// --- Appending ----------------------------------------------------------------------------------------------------

CanMessageData LongMessage() {
    CanMessageData record = MessageRecord(77, "A name with blanks, \xC3\xA4 and much more than fits into an object");
    SetField(record.transmitter, "node with blanks, made identifier");
    SetField(record.comment, "one \"quoted\" word and then some \"more\" of them, to make it longer");
    return record;
}

CanSignalData LongSignal() {
    CanSignalData record = SignalRecord("A name with blanks, \xC3\xA4 and much more than fits into an object");
    SetField(record.unit,
             "\xC2\xB0"
             "C, as it is called hereabouts");
    SetField(record.receivers, " first receiver, the second receiver ,,a third receiver with a long name");
    SetField(record.comment, "one \"quoted\" word and then some \"more\" of them, to make it longer");
    return record;
}

template <size_t Size>
void FillWithoutEnd(char (&field)[Size], char c) {
    std::memset(field, c, Size);
}

CanMessageData EndlessMessage() {
    CanMessageData record = MessageRecord(78, "");
    FillWithoutEnd(record.name, 'n');
    FillWithoutEnd(record.transmitter, 't');
    FillWithoutEnd(record.comment, '"');
    return record;
}

CanSignalData EndlessSignal() {
    CanSignalData record = SignalRecord("");
    FillWithoutEnd(record.name, 'n');
    FillWithoutEnd(record.unit, 'u');
    FillWithoutEnd(record.receivers, 'r');
    FillWithoutEnd(record.comment, '"');
    return record;
}

template <typename Record>
std::function<bool()> Appending(const Record& record, uint32_t signal = 0) {
    return [=] {
        if constexpr (std::is_same_v<Record, CanMessageData>) {
            return Library().AppendCanMessage(&record);
        } else if constexpr (std::is_same_v<Record, CanSignalData>) {
            return Library().AppendCanSignalToCanMessage(0, &record);
        } else {
            return Library().AppendEnumToCanSignal(0, signal, &record);
        }
    };
}

struct AppendRow {
    const char* what;
    std::function<bool()> call;
};

const AppendRow kAppendRows[] = {
    {"message", Appending(MessageRecord(1, "M"))},
    {"message with long texts", Appending(LongMessage())},
    {"message with texts that do not end", Appending(EndlessMessage())},
    {"signal", Appending(SignalRecord("S"))},
    {"signal with long texts", Appending(LongSignal())},
    {"signal with texts that do not end", Appending(EndlessSignal())},
    {"value description", Appending(EnumRecord(1, "One"))},
    {"value description of a new value", Appending(EnumRecord(-9, "Minus nine, with a description that is long"))},
    {"value description of a known value", Appending(EnumRecord(2, "Two, described for a third time, and longer"))},
    {"value description of a signal without", Appending(EnumRecord(2, "Two, in a signal without descriptions"), 1)},
};

// A small database, grown step by step so that each container is full at one time or another.
void Build(size_t steps) {
    const DatabaseInfo none{};
    ASSERT_TRUE(Library().ClearData());
    ASSERT_TRUE(Library().SetDatabaseInfo(&none, sizeof none));
    ASSERT_TRUE(AppendMessage(1, "First"));
    ASSERT_TRUE(AppendSignal(0, "First"));
    ASSERT_TRUE(AppendSignal(0, "Second"));
    ASSERT_TRUE(AppendEnum(0, 0, 2, "Two"));
    for (size_t i = 0; i < steps; ++i) {
        ASSERT_TRUE(AppendMessage(1, "Further"));
        ASSERT_TRUE(AppendSignal(0, "Further"));
        ASSERT_TRUE(AppendEnum(0, 0, 100 + static_cast<int32_t>(i), "Further"));
    }
}

size_t AppendWithEveryAllocationFailing(const AppendRow& row, size_t steps) {
    Build(steps);
    const Snapshot before = Take();
    EXPECT_TRUE(row.call());
    const Snapshot after = Take();
    EXPECT_FALSE(Same(before, after));
    Library().ClearData();
    const size_t live = LiveAllocations();
    const size_t points = ForEachAllocation([&](const Trial& trial) {
        // Where it failed before, there is nothing to put right.
        if (trial.number == 1) {
            Build(steps);
        }
        Trouble trouble;
        const bool appended = CallInTrouble(trial, trouble, row.call);
        EXPECT_EQ(appended, !trouble.thrown);
        EXPECT_TRUE(Same(Take(), appended ? after : before));
        if (appended && trouble.failed) {
            Build(steps);
        }
        return trouble.failed;
    });
    Library().ClearData();
    EXPECT_EQ(LiveAllocations(), live);
    return points;
}

TEST_F(OutOfMemory, InAppendingChangesNothing) {
    size_t points = 0;
    for (const AppendRow& row : kAppendRows) {
        for (size_t steps = 0; steps <= 8; ++steps) {
            SCOPED_TRACE(testing::Message() << row.what << ", " << steps << " steps");
            points += AppendWithEveryAllocationFailing(row, steps);
        }
    }
    Report(points, 100);
}

// --- Clearing -----------------------------------------------------------------------------------------------------

TEST_F(OutOfMemory, InClearingLeavesAnEmptyDatabase) {
    const size_t points = ForEachAllocation([&](const Trial& trial) {
        ReadAnew();
        Trouble trouble;
        const bool cleared = CallInTrouble(trial, trouble, [] { return Library().ClearData(); });
        EXPECT_TRUE(cleared);
        EXPECT_EQ(NumMessages(), 0U);
        EXPECT_EQ(NumErrors(), 0U);
        return trouble.failed;
    });
    Report(points, 0);  // giving memory back needs none
}

// --- Writing ------------------------------------------------------------------------------------------------------

// The suffixes that tell signals apart stay also when the write fails, in the messages that have them by then.
Snapshot WithoutSuffixes(Snapshot snapshot) {
    for (MessageCopy& message : snapshot.messages) {
        for (SignalCopy& signal : message.signals) {
            if (std::strstr(signal.data.name, "SameName") != nullptr) {
                std::memset(signal.data.identifierName, 0, sizeof signal.data.identifierName);
            }
        }
    }
    return snapshot;
}

constexpr std::string_view kOldContent = "what was in the file before\n";

void ExpectBeginningOf(const std::string& whole, const std::string& path) {
    const std::string bytes = ReadBytes(path);
    // As long as the file has not been opened, it is as it was.
    EXPECT_TRUE(bytes == kOldContent || whole.starts_with(bytes)) << bytes;
}

size_t WriteWithEveryAllocationFailing(const std::string& source, const std::string& target, uint32_t order) {
    EXPECT_EQ(ReadFile(source), kDone);
    const Snapshot before = Take();
    EXPECT_EQ(WriteFile(target, order), kDone);
    const Snapshot after = Take();
    const std::string whole = ReadBytes(target);
    return ForEachAllocation([&](const Trial& trial) {
        Library().ClearData();
        const size_t live = LiveAllocations();
        EXPECT_EQ(ReadFile(source), kDone);
        WriteBytes(target, kOldContent);
        Trouble trouble;
        const Outcome outcome = CallInTrouble(trial, trouble, [&] { return WriteFile(target, order); });
        EXPECT_EQ(outcome, trouble.thrown ? kOutOfMemory : kDone);
        EXPECT_FALSE(IsOpenHere(target));
        if (trouble.thrown) {
            ExpectBeginningOf(whole, target);
            EXPECT_TRUE(SameMessages(WithoutSuffixes(Take()), WithoutSuffixes(before)));
            EXPECT_EQ(WriteFile(target, order), kDone);
        }
        EXPECT_TRUE(ReadBytes(target) == whole) << "written differently";
        EXPECT_TRUE(Same(Take(), after));
        Library().ClearData();
        EXPECT_EQ(LiveAllocations(), live);
        return trouble.failed;
    });
}

TEST_F(OutOfMemory, InWritingEndsLikeAWriteFailure) {
    WriteBytes(path_, EverythingText(2));
    size_t points = 0;
    for (const uint32_t order : {TABRIN_ORDER_IDENTIFIER, TABRIN_ORDER_NAME, TABRIN_ORDER_DATABASE}) {
        SCOPED_TRACE(testing::Message() << "order " << order);
        points += WriteWithEveryAllocationFailing(path_, TempPath("written.dbc"), order);
    }
    Report(points, 100);
}

}  // namespace
}  // namespace tabrin_test
