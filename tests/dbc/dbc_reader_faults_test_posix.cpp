// Whole files read and written on a system that fails at any moment.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "dbc/reading.h"
#include "dbc/small_database.h"
#include "dbc/writing.h"
#include "io/system_faults_posix.h"

namespace tabrin {
namespace {

using Texts = std::vector<std::string>;

constexpr size_t kBlockSize = 65536;

struct ReadOutcome {
    bool result = false;
    FileStatus status = FileStatus::Reading;
};

ReadOutcome ReadFrom(CANDatabase& database, const std::string& path) {
    ReadOutcome outcome;
    outcome.result = ReadDbcFile(database, path.c_str(), kPathBufferSize, outcome.status);
    return outcome;
}

void ExpectAllClosed(const SystemFaults& faults, size_t opened = 1) {
    EXPECT_EQ(faults.Opened(), opened);
    EXPECT_EQ(faults.StillOpen(), 0U);
    EXPECT_EQ(faults.Calls(SystemCall::Close), opened);
    EXPECT_EQ(faults.StrayCloses(), 0U);
}

// What only reading needs is gone.
void ExpectReadingEnded(const CANDatabase& database) {
    EXPECT_TRUE(database.identifierIndex.IsEmpty());
    EXPECT_TRUE(database.attributes.Definitions().empty());
    EXPECT_TRUE(database.attributes.Values().empty());
}

// The text of a file, piece by piece: the failure comes behind a piece, and `messages` is what has been read by then.
struct Piece {
    std::string_view text;
    Texts messages;
    uint32_t canFd;  // where it was 1 before; where it was 0, it is 1 only if `setsCanFd`
    bool setsCanFd;
};

const Piece kPieces[] = {
    {"BO_ 100 Engine: 8", {}, 1, false},
    {" ECU\r", {}, 1, false},
    {"\n", {"Engine/Engine [] 0"}, 1, false},
    {" SG_ Speed : 0|16@1+ (1,0) [0|100] \"\" ECU", {"Engine/Engine [] 0"}, 1, false},
    {"\r\n", {"Engine/Engine [] 0", "  Speed/Speed 0 0"}, 1, false},
    {"BO_ 200 Brake: 8 ECU\r\n", {"Engine/Engine [] 0", "  Speed/Speed 0 0", "Brake/Brake [] 0"}, 1, false},
    {"BA_DEF_ BO_ \"GenMsgCycleTime\" INT 0 1000;\r\n",
     {"Engine/Engine [] 0", "  Speed/Speed 0 0", "Brake/Brake [] 0"},
     1,
     false},
    {"BA_ \"GenMsgCycleTime\" BO_ 100 25;\r",
     {"Engine/Engine [] 0", "  Speed/Speed 0 0", "Brake/Brake [] 0"},
     1,
     false},
    {"\n", {"Engine/Engine [] 25", "  Speed/Speed 0 0", "Brake/Brake [] 0"}, 1, false},
    // A bus type that is only defined is the empty one.
    {"BA_DEF_ \"BusType\" STRING ;\r\n", {"Engine/Engine [] 25", "  Speed/Speed 0 0", "Brake/Brake [] 0"}, 0, false},
    {"BA_ \"BusType\" \"CAN FD\";", {"Engine/Engine [] 25", "  Speed/Speed 0 0", "Brake/Brake [] 0"}, 0, false},
    {"\r\n", {"Engine/Engine [] 25", "  Speed/Speed 0 0", "Brake/Brake [] 0"}, 1, true},
    {"BA_ \"GenMsgCycleTime\" BO_ 200 50;\r\nBO_ 30",
     {"Engine/Engine [] 25", "  Speed/Speed 0 0", "Brake/Brake [] 50"},
     1,
     true},
    {"0 Late: 8 ECU\r\n", {"Engine/Engine [] 25", "  Speed/Speed 0 0", "Brake/Brake [] 50", "Late/Late [] 0"}, 1, true},
};

std::string AllPieces() {
    std::string text;
    for (const Piece& piece : kPieces) {
        text += piece.text;
    }
    return text;
}

void ExpectAllRead(const CANDatabase& database) {
    EXPECT_EQ(DescribeAttributed(database),
              (Texts{"Engine/Engine [] 25", "  Speed/Speed 0 0", "Brake/Brake [] 50", "Late/Late [] 0"}));
    EXPECT_EQ(database.info.canFd, 1U);
    ExpectReadingEnded(database);
}

void ExpectReadUpTo(const Piece& piece, const CANDatabase& database, uint32_t canFdBefore) {
    EXPECT_EQ(DescribeAttributed(database), piece.messages);
    EXPECT_EQ(database.info.canFd, canFdBefore == 1 ? piece.canFd : uint32_t{piece.setsCanFd});
    EXPECT_TRUE(database.errors.empty());
    ExpectReadingEnded(database);
}

TEST(DbcReaderFaults, WhatWasReadBeforeAFailureStays) {
    const TemporaryFile file(AllPieces());
    for (const uint32_t canFd : {0U, 1U}) {
        SCOPED_TRACE(canFd);
        size_t size = 0;
        for (const Piece& piece : kPieces) {
            size += piece.text.size();
            SCOPED_TRACE("behind " + testing::PrintToString(std::string(piece.text)));
            CANDatabase database;
            database.info.canFd = canFd;
            SystemFaults faults;
            faults.Script(SystemCall::Read, {Moves(size), Fails(EIO)});
            const ReadOutcome outcome = ReadFrom(database, file.Path());
            EXPECT_FALSE(outcome.result);
            EXPECT_EQ(outcome.status, FileStatus::Failed);
            EXPECT_EQ(faults.Calls(SystemCall::Read), 2U);
            ExpectAllClosed(faults);
            ExpectReadUpTo(piece, database, canFd);
            // The same database, once the system is well again.
            const ReadOutcome again = ReadFrom(database, file.Path());
            EXPECT_TRUE(again.result);
            EXPECT_EQ(again.status, FileStatus::Closed);
            ExpectAllRead(database);
        }
    }
}

// The second block of a file is the one that fails. One line in front, which is passed over, makes the first block end
// where the piece does: some of these are ends of lines, others are not.
TEST(DbcReaderFaults, WhatTheFirstBlockHoldsIsRead) {
    size_t size = 0;
    for (const Piece& piece : kPieces) {
        size += piece.text.size();
        SCOPED_TRACE("behind " + testing::PrintToString(std::string(piece.text)));
        // With more behind it, so that there is a second block to each.
        const TemporaryFile file(std::string(kBlockSize - size - 2, 'x') + "\r\n" + AllPieces() +
                                 "BO_ 400 End: 8 ECU\n");
        CANDatabase database;
        SystemFaults faults;
        faults.Script(SystemCall::Read, {kWorks, Fails(EIO)});
        const ReadOutcome outcome = ReadFrom(database, file.Path());
        EXPECT_FALSE(outcome.result);
        EXPECT_EQ(outcome.status, FileStatus::Failed);
        EXPECT_EQ(faults.Calls(SystemCall::Read), 2U);
        ExpectAllClosed(faults);
        ExpectReadUpTo(piece, database, 0);
    }
}

TEST(DbcReaderFaults, FailureAtTheFirstByteLeavesTheDatabaseCleared) {
    const TemporaryFile file(AllPieces());
    CANDatabase database;
    AddMessage(database, {.name = "Old"});
    database.info = {TABRIN_PROTOCOL_J1939, 1};
    SystemFaults faults;
    faults.Script(SystemCall::Read, {Fails(EIO)});
    const ReadOutcome outcome = ReadFrom(database, file.Path());
    EXPECT_FALSE(outcome.result);
    EXPECT_EQ(outcome.status, FileStatus::Failed);
    EXPECT_TRUE(database.messages.empty());
    EXPECT_EQ(database.info.protocolType, uint32_t{TABRIN_PROTOCOL_NONE});
    EXPECT_EQ(database.info.canFd, 1U);
    ExpectAllClosed(faults);
}

TEST(DbcReaderFaults, ErrorsInFrontOfAFailureAreKept) {
    const std::string_view front = "BO_ x Engine: 8 ECU\r\nBO_ 200 Brake: 8 ECU\r\n";
    const TemporaryFile file(std::string(front) + "BO_ y Late: 8 ECU\r\n");
    CANDatabase database;
    SystemFaults faults;
    faults.Script(SystemCall::Read, {Moves(front.size()), Fails(EIO)});
    EXPECT_FALSE(ReadFrom(database, file.Path()).result);
    ASSERT_EQ(database.errors.size(), 1U);
    EXPECT_EQ(database.errors[0].line, 1U);
    EXPECT_EQ(DescribeAttributed(database), (Texts{"Brake/Brake [] 0"}));
}

TEST(DbcReaderFaults, InterruptionsAndShortReadsAreNoFailures) {
    const std::string text = AllPieces();
    const TemporaryFile file(text);
    for (size_t most = 1; most <= text.size(); ++most) {
        SCOPED_TRACE(most);
        std::vector<SystemFault> script;
        for (size_t moved = 0; moved < text.size(); moved += most) {
            script.insert(script.end(), {Fails(EINTR), Moves(most)});
        }
        CANDatabase database;
        SystemFaults faults;
        faults.Script(SystemCall::Open, {Fails(EINTR)});
        faults.Script(SystemCall::Read, script);
        faults.Script(SystemCall::Close, {Fails(EINTR)});
        const ReadOutcome outcome = ReadFrom(database, file.Path());
        EXPECT_TRUE(outcome.result);
        EXPECT_EQ(outcome.status, FileStatus::Closed);
        EXPECT_EQ(faults.Calls(SystemCall::Read), script.size() + 1);
        ExpectAllClosed(faults);
        ExpectAllRead(database);
    }
}

// The file has been read, and the status alone tells that closing it went wrong.
TEST(DbcReaderFaults, FailureInClosingIsToldByTheStatusOnly) {
    const TemporaryFile file(AllPieces());
    CANDatabase database;
    SystemFaults faults;
    faults.Script(SystemCall::Close, {Fails(EIO)});
    const ReadOutcome outcome = ReadFrom(database, file.Path());
    EXPECT_TRUE(outcome.result);
    EXPECT_EQ(outcome.status, FileStatus::Failed);
    ExpectAllClosed(faults);
    ExpectAllRead(database);
}

TEST(DbcReaderFaults, DirectoryIsClosedAgain) {
    CANDatabase database;
    SystemFaults faults;
    const ReadOutcome outcome = ReadFrom(database, TABRIN_TEMP_DIR);
    EXPECT_FALSE(outcome.result);
    EXPECT_EQ(outcome.status, FileStatus::NotOpened);
    ExpectAllClosed(faults);
}

// --- Writing

// As the writer gives it with one message, whose lines are behind the header.
constexpr std::string_view kBody = "BU_ :  Kestrune\r\n\r\nBO_ 1 Msg: 8 Kestrune\r\n\r\n";

TEST(DbcWriterSystemFaults, InterruptionsAndShortWritesAreNoFailures) {
    for (const size_t most : {1U, 2U, 3U, 7U, 1000U}) {
        SCOPED_TRACE(most);
        CANDatabase database;
        AddMessage(database);
        const OutputPath path;
        SystemFaults faults;
        faults.Script(SystemCall::Open, {Fails(EINTR)});
        faults.Script(SystemCall::Write, {Fails(EINTR), Moves(1), Fails(EINTR)}, Moves(most));
        faults.Script(SystemCall::Close, {Fails(EINTR)});
        EXPECT_EQ(WriteTo(database, path.Text()), kAllWritten);
        EXPECT_EQ(FileBytes(path.Text()), std::string(kWrittenHeader) + std::string(kBody));
        ExpectAllClosed(faults);
    }
}

TEST(DbcWriterSystemFaults, FailureInClosingIsToldByTheStatusOnly) {
    for (const int error : {EIO, ENOSPC, EDQUOT}) {
        SCOPED_TRACE(std::strerror(error));
        CANDatabase database;
        AddMessage(database);
        const OutputPath path;
        SystemFaults faults;
        faults.Script(SystemCall::Close, {Fails(error)});
        EXPECT_EQ(WriteTo(database, path.Text()), kLastWriteLost);
        EXPECT_EQ(FileBytes(path.Text()), std::string(kWrittenHeader) + std::string(kBody));
        ExpectAllClosed(faults);
    }
}

TEST(DbcWriterSystemFaults, FullDeviceInTheMiddleOfALineClosesTheFile) {
    CANDatabase database;
    AddMessage(database);
    const OutputPath path;
    SystemFaults faults;
    faults.Script(SystemCall::Write, {kWorks, kWorks, Moves(2), Fails(ENOSPC)});
    EXPECT_EQ(WriteTo(database, path.Text()), kWriteFailed);
    EXPECT_EQ(FileBytes(path.Text()), "VERSION \"\"\r\n\r\nNS");
    EXPECT_EQ(faults.Calls(SystemCall::Write), 4U);
    ExpectAllClosed(faults);
}

TEST(DbcWriterSystemFaults, WriteAfterAFailedOneWorks) {
    CANDatabase database;
    AddMessage(database);
    const OutputPath path;
    SystemFaults faults;
    faults.Script(SystemCall::Write, {kWorks, Fails(EIO)});
    faults.Script(SystemCall::Close, {Fails(EIO)});
    EXPECT_EQ(WriteTo(database, path.Text()), kWriteFailed);
    EXPECT_EQ(WriteTo(database, path.Text()), kAllWritten);
    EXPECT_EQ(FileBytes(path.Text()), std::string(kWrittenHeader) + std::string(kBody));
    ExpectAllClosed(faults, 2);
}

}  // namespace
}  // namespace tabrin
