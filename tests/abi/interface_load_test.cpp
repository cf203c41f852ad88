// The library in long use: loaded and unloaded, read and cleared many times, and in several processes at once.
#include "abi/heap_use.h"
#include "abi/interface_test.h"
#include "abi/side_by_side.h"
#include "fuzz/abi/snapshot.h"
#include "fuzz/check.h"

namespace tabrin_test {
namespace {

const std::string kSample = TABRIN_TEST_DATA_DIR "/engine.dbc";

uint32_t SizeOf(const std::string& path) {
    return static_cast<uint32_t>(path.size() + 1);
}

// Memory that was given back may count as given out, since the runtime keeps a little of it at hand. One allocation
// lost in each of a thousand rounds is more than this.
constexpr size_t kKeptAtHand = 16384;

// --- Loaded and unloaded ------------------------------------------------------------------------------------------

bool IsFresh(const LibraryUnderTest& library) {
    DatabaseInfo info{7, 7};
    CanMessageData message{};
    return library.GetNumCanMessages() == 0 && library.GetNumCanErrors() == 0 &&
           library.GetDatabaseInfo(&info, sizeof info) && info.protocolType == 0 && info.canFd == 0 &&
           !library.GetCanMessageData(0, &message);
}

// Leaves the database full.
bool Work(const LibraryUnderTest& library, const std::string& target) {
    uint32_t status = kUnwritten;
    const DatabaseInfo info{TABRIN_PROTOCOL_J1939, 1};
    const CanMessageData message = MessageRecord(7, "A message with a name that needs memory of its own");
    const CanSignalData signal = SignalRecord("A signal with a name that needs memory of its own");
    const CanSignalEnumData description = EnumRecord(1, "A description that needs memory of its own");
    return library.ReadDbcFile(kSample.c_str(), SizeOf(kSample), &status) && status == TABRIN_STATUS_CLOSED &&
           library.AppendCanMessage(&message) && library.AppendCanSignalToCanMessage(0, &signal) &&
           library.AppendEnumToCanSignal(0, 0, &description) && library.SetDatabaseInfo(&info, sizeof info) &&
           library.WriteDbcFile(target.c_str(), SizeOf(target), TABRIN_ORDER_NAME, &status) &&
           status == TABRIN_STATUS_CLOSED;
}

TEST(LoadedLibrary, IsFreshEachTime) {
    const std::string copy = LibraryUnderTest::CopyOfLibrary("load_fresh.bin");
    for (int round = 0; round < 10; ++round) {
        SCOPED_TRACE(round);
        const LibraryUnderTest library(copy);
        ASSERT_TRUE(IsFresh(library));
        ASSERT_TRUE(Work(library, TempPath("dbc")));
    }
}

TEST(LoadedLibrary, LeavesNoMemoryBehind) {
    const std::string copy = LibraryUnderTest::CopyOfLibrary("load_copy.bin");
    const std::string target = TempPath("dbc");
    constexpr size_t kFirst = 10;  // what the system itself keeps is there by then
    constexpr size_t kRounds = 1000;
    size_t before = 0;
    for (size_t round = 0; round < kFirst + kRounds; ++round) {
        if (round == kFirst) {
            before = HeapBytesInUse();
        }
        const LibraryUnderTest library(copy);
        ASSERT_TRUE(Work(library, target)) << "round " << round;
    }
    EXPECT_LT(HeapBytesInUse(), before + kKeptAtHand + kRounds * HeapBytesKeptByLoading());
}

// --- Read and cleared ---------------------------------------------------------------------------------------------

class LongUse : public InterfaceTest {};

TEST_F(LongUse, HoldsMemoryFlat) {
    constexpr int kRounds = 10000;
    size_t before = 0;
    for (int round = 0; round <= kRounds; ++round) {
        ASSERT_EQ(ReadFile(kSample), kDone);
        ASSERT_GT(NumMessages(), 0U);
        ASSERT_TRUE(Library().ClearData());
        if (round == 0) {
            before = HeapBytesInUse();
        } else if (round % 1000 == 0) {
            ASSERT_LT(HeapBytesInUse(), before + kKeptAtHand) << "round " << round;
        }
    }
}

// Their entries in the error list are all that is left of them.
TEST_F(LongUse, LongFaultyStatementsTakeNoMemoryForThemselves) {
    constexpr uint32_t kStatements = 1000;
    std::string text = "BO_ 1 Message: 8 Node\n";
    for (uint32_t i = 0; i < kStatements; ++i) {
        text += "BO_ 2 " + std::string(3000, 'x') + ": faulty\n";
    }
    const std::string path = TempPath("dbc");
    WriteBytes(path, text);
    const size_t before = HeapBytesInUse();
    ASSERT_EQ(ReadFile(path), kDone);
    EXPECT_EQ(NumErrors(), kStatements);
    EXPECT_LT(HeapBytesInUse(), before + 4 * kStatements * sizeof(CanErrorData));
}

// What the tests above go by.
TEST_F(LongUse, IsMeasured) {
    const size_t before = HeapBytesInUse();
    for (uint32_t i = 0; i < 1000; ++i) {
        ASSERT_TRUE(AppendMessage(i, "M"));
    }
    EXPECT_GT(HeapBytesInUse(), before + 2 * kKeptAtHand);
    ASSERT_TRUE(Library().ClearData());
    EXPECT_LT(HeapBytesInUse(), before + kKeptAtHand);
}

// --- At once ------------------------------------------------------------------------------------------------------

constexpr uint32_t kManyMessages = 2000;  // more than is read at once
constexpr uint32_t kFewMessages = 3;

bool Build(const LibraryUnderTest& library, uint32_t messages) {
    bool built = library.ClearData();
    for (uint32_t i = 0; i < messages; ++i) {
        const CanMessageData record = MessageRecord(i, "Message" + std::to_string(i));
        built = built && library.AppendCanMessage(&record);
    }
    return built;
}

// What a file that is being replaced holds is any part of the two, but a read of it ends well, and what it gives is in
// order.
int ReadOften(const std::string& copy, const std::string& path) {
    const LibraryUnderTest library(copy);
    for (int i = 0; i < 100; ++i) {
        uint32_t status = kUnwritten;
        if (!library.ReadDbcFile(path.c_str(), SizeOf(path), &status) || status != TABRIN_STATUS_CLOSED) {
            return 1;
        }
        if (library.GetNumCanMessages() > kManyMessages) {
            return 2;
        }
        try {
            TakeSnapshot(tabrin_fuzz::FunctionsOf(library));
        } catch (const tabrin_fuzz::Failure&) {
            return 3;
        }
    }
    return 0;
}

int WriteOften(const std::string& copy, const std::string& path) {
    const LibraryUnderTest library(copy);
    for (int i = 0; i < 40; ++i) {
        uint32_t status = kUnwritten;
        if (!Build(library, i % 2 == 0 ? kFewMessages : kManyMessages)) {
            return 1;
        }
        if (!library.WriteDbcFile(path.c_str(), SizeOf(path), TABRIN_ORDER_DATABASE, &status) ||
            status != TABRIN_STATUS_CLOSED) {
            return 2;
        }
    }
    return 0;
}

TEST_F(LongUse, OfOneFileByTwoReadersAndAWriterGivesDefinedResults) {
    const std::string path = TempPath("dbc");
    WriteBytes(path, "BO_ 0 Message0: 8 Kestrune\r\n");
    std::vector<std::string> copies;
    for (const char* name : {"load_reader_1.bin", "load_reader_2.bin", "load_writer.bin"}) {
        copies.push_back(LibraryUnderTest::CopyOfLibrary(name));
    }
    const std::vector<int> results =
        RunSideBySide({[&] { return ReadOften(copies[0], path); }, [&] { return ReadOften(copies[1], path); },
                       [&] { return WriteOften(copies[2], path); }});
    EXPECT_EQ(results, (std::vector<int>{0, 0, 0})) << "two readers, one writer";
    EXPECT_EQ(ReadFile(path), kDone);
    EXPECT_EQ(NumMessages(), kManyMessages);
    EXPECT_EQ(NumErrors(), 0U);
}

}  // namespace
}  // namespace tabrin_test
