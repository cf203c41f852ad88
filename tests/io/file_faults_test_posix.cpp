// Files on a system that interrupts, moves only a part of what it was asked for, or fails at any moment.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "io/dbc_file_stream.h"
#include "io/io_test_support.h"
#include "io/line_buffer.h"
#include "io/open_stream.h"
#include "io/system_faults_posix.h"

namespace tabrin {
namespace {

constexpr size_t kBlockSize = 65536;

// Every descriptor that was opened has been closed, and by one call.
void ExpectAllClosed(const SystemFaults& faults) {
    EXPECT_EQ(faults.StillOpen(), 0U);
    EXPECT_EQ(faults.Calls(SystemCall::Close), faults.Opened());
    EXPECT_EQ(faults.StrayCloses(), 0U);
}

void ExpectPlayed(const SystemFaults& faults) {
    for (const SystemCall call : {SystemCall::Open, SystemCall::Read, SystemCall::Write, SystemCall::Close}) {
        EXPECT_TRUE(faults.IsPlayed(call)) << "call " << static_cast<int>(call);
    }
}

// --- Reading in pieces

struct Delivered {
    std::string text;
    uint32_t line = 0;  // lines read by then

    bool operator==(const Delivered&) const = default;
};

void PrintTo(const Delivered& delivered, std::ostream* out) {
    *out << Shown(delivered.text) << " after line " << delivered.line;
}

struct Reading {
    std::vector<Delivered> statements;
    FileStatus status = FileStatus::Closed;
};

Reading ReadFile(const std::string& path) {
    Reading reading;
    DbcFileStream stream;
    Open(stream, path, OpenMode::Read);
    while (stream.NextStatement()) {
        reading.statements.push_back({std::string(stream.Statement()), stream.LineNumber()});
    }
    reading.status = stream.Status();
    return reading;
}

// What is easily torn apart: line ends, characters of two to four bytes, keywords, a broken character, a lone CR.
constexpr std::string_view kText =
    "junk \xC3\xA9\r\n"
    "VERSION \"1.0\"\r\n"
    "BO_ 100 Gr\xC3\xB6\xC3\x9F\x65: 8 \xE2\x82\xAC\r\n"
    " SG_ S : 0|8@1+ (1,0) [0|1] \"\xF0\x9F\x9A\x97\" A\r\n"
    "\r\n"
    "CM_ BO_ 100 \"one\r\n"
    "two\";\r\n"
    "BA_DEF_ BO_ \"N\" STRING ;\n"
    "BA_ \"N\" BO_ 100 \"\xE4\" ;\r\n"
    "a\rb BU_: X\r";

// `linesBefore` stand in front of the text.
std::vector<Delivered> TextStatements(uint32_t linesBefore = 0) {
    return {{"VERSION \"1.0\"\n", linesBefore + 3},
            {"BO_ 100 Gr\xC3\xB6\xC3\x9F\x65: 8 \xE2\x82\xAC\n ", linesBefore + 4},
            {"SG_ S : 0|8@1+ (1,0) [0|1] \"\xF0\x9F\x9A\x97\" A\n\n", linesBefore + 6},
            {"CM_ BO_ 100 \"one\ntwo\";\n", linesBefore + 8},
            {"BA_DEF_ BO_ \"N\" STRING ;\n", linesBefore + 9},
            {"BA_ \"N\" BO_ 100 \"_\" ;\na\rb BU_: X\r\n", linesBefore + 10}};
}

void ExpectTextRead(const std::string& path, uint32_t linesBefore = 0) {
    const Reading reading = ReadFile(path);
    EXPECT_EQ(reading.statements, TextStatements(linesBefore));
    EXPECT_EQ(reading.status, FileStatus::EndOfFile);
}

TEST(ReadInPieces, OneReadTakesASmallFile) {
    const TempFile file(kText);
    SystemFaults faults;
    ExpectTextRead(file.Path());
    EXPECT_EQ(faults.Calls(SystemCall::Read), 2U);  // the second one finds the end
    ExpectAllClosed(faults);
}

TEST(ReadInPieces, ShortReadsOfAnySizeGiveTheSame) {
    const TempFile file(kText);
    for (size_t most = 1; most <= kText.size(); ++most) {
        SCOPED_TRACE(most);
        SystemFaults faults;
        faults.Script(SystemCall::Read, {}, Moves(most));
        ExpectTextRead(file.Path());
        EXPECT_EQ(faults.Calls(SystemCall::Read), (kText.size() + most - 1) / most + 1);
    }
}

TEST(ReadInPieces, InterruptionsLoseAndDoubleNothing) {
    const TempFile file(kText);
    for (size_t most = 1; most <= kText.size(); ++most) {
        SCOPED_TRACE(most);
        std::vector<SystemFault> script;
        for (size_t moved = 0; moved < kText.size(); moved += most) {
            script.insert(script.end(), {Fails(EINTR), Moves(most)});
        }
        script.insert(script.end(), {Fails(EINTR), Fails(EINTR), kWorks});  // also at the end of the file
        SystemFaults faults;
        faults.Script(SystemCall::Read, script);
        ExpectTextRead(file.Path());
        EXPECT_EQ(faults.Calls(SystemCall::Read), script.size());
        ExpectAllClosed(faults);
    }
}

// One line in front of the text makes the first block end before each of its bytes in turn.
TEST(ReadInPieces, BlocksMayEndAnywhere) {
    for (size_t cut = 0; cut <= kText.size(); ++cut) {
        SCOPED_TRACE(cut);
        const TempFile file(std::string(kBlockSize - cut - 1, 'x') + '\n' + std::string(kText));
        SystemFaults faults;
        ExpectTextRead(file.Path(), 1);
        EXPECT_EQ(faults.Calls(SystemCall::Read), cut == kText.size() ? 2U : 3U);
    }
}

// A system that says "end of file" early is believed; what is torn then is a line all the same.
TEST(ReadInPieces, NothingIsReadBehindAnEnd) {
    const TempFile file("BO_ 1 A\r\nSG_ 2 B\r\n");
    SystemFaults faults;
    faults.Script(SystemCall::Read, {Moves(13), Moves(0)});
    const Reading reading = ReadFile(file.Path());
    EXPECT_EQ(reading.statements, (std::vector<Delivered>{{"BO_ 1 A\n", 2}, {"SG_ \n", 2}}));
    EXPECT_EQ(reading.status, FileStatus::EndOfFile);
    EXPECT_EQ(faults.Calls(SystemCall::Read), 2U);
}

// --- Reading fails

struct ReadFailureRow {
    size_t first;  // bytes read before the failure: from the first number
    size_t last;   // to the last one
    std::vector<Delivered> statements;
    uint32_t lines;
};

// Nine bytes a line. What has its line end is delivered, what has not is lost.
constexpr std::string_view kThreeLines = "BO_ 1 A\r\nSG_ 2 B\r\nBO_ 3 C\r\n";

const ReadFailureRow kReadFailureRows[] = {
    {0, 8, {}, 0},
    {9, 17, {{"BO_ 1 A\n", 1}}, 1},
    {18, 26, {{"BO_ 1 A\n", 2}, {"SG_ 2 B\n", 2}}, 2},
    {27, 27, {{"BO_ 1 A\n", 2}, {"SG_ 2 B\n", 3}, {"BO_ 3 C\n", 3}}, 3},
};

TEST(ReadFault, WhatPrecedesTheFailureIsDelivered) {
    const TempFile file(kThreeLines);
    for (const ReadFailureRow& row : kReadFailureRows) {
        for (size_t moved = row.first; moved <= row.last; ++moved) {
            SCOPED_TRACE(moved);
            std::vector<SystemFault> script = {Moves(moved), Fails(EIO)};
            if (moved == 0) {
                script.erase(script.begin());  // it would be the end of the file
            }
            SystemFaults faults;
            faults.Script(SystemCall::Read, script);
            DbcFileStream stream;
            Open(stream, file.Path(), OpenMode::Read);
            std::vector<Delivered> statements;
            while (stream.NextStatement()) {
                statements.push_back({std::string(stream.Statement()), stream.LineNumber()});
            }
            EXPECT_EQ(statements, row.statements);
            EXPECT_EQ(stream.Status(), FileStatus::Failed);
            EXPECT_EQ(stream.LineNumber(), row.lines);
            // Though the system would go on.
            EXPECT_FALSE(stream.NextStatement());
            EXPECT_EQ(faults.Calls(SystemCall::Read), script.size());

            stream.Close();
            EXPECT_EQ(stream.Status(), FileStatus::Failed);
            ExpectAllClosed(faults);
            stream.Close();
            EXPECT_EQ(stream.Status(), FileStatus::Closed);
            ExpectAllClosed(faults);
        }
    }
}

TEST(ReadFault, StatementBeforeTheLastOneHasStatusReading) {
    const TempFile file(kThreeLines);
    SystemFaults faults;
    faults.Script(SystemCall::Read, {Moves(18), Fails(EIO)});
    DbcFileStream stream;
    Open(stream, file.Path(), OpenMode::Read);
    EXPECT_TRUE(stream.NextStatement());
    EXPECT_EQ(stream.Status(), FileStatus::Reading);
    EXPECT_TRUE(stream.NextStatement());
    EXPECT_EQ(stream.Status(), FileStatus::Failed);
    ExpectPlayed(faults);
}

TEST(ReadFault, OnlyAnInterruptionIsTriedAgain) {
    const TempFile file(kThreeLines);
    for (const int error : {EIO, EISDIR, EAGAIN, EBADF, ENXIO, ESTALE, ENOMEM}) {
        SCOPED_TRACE(std::strerror(error));
        SystemFaults faults;
        faults.Script(SystemCall::Read, {Fails(EINTR), Fails(error)});
        EXPECT_EQ(ReadFile(file.Path()).status, FileStatus::Failed);
        EXPECT_EQ(faults.Calls(SystemCall::Read), 2U);
        ExpectAllClosed(faults);
    }
}

TEST(ReadFault, IsForgottenWithTheNextFile) {
    const TempFile file(kThreeLines);
    SystemFaults faults;
    faults.Script(SystemCall::Read, {Moves(12), Fails(EIO)});
    DbcFileStream stream;
    Open(stream, file.Path(), OpenMode::Read);
    while (stream.NextStatement()) {
    }
    EXPECT_EQ(stream.Status(), FileStatus::Failed);
    Open(stream, file.Path(), OpenMode::Read);
    EXPECT_EQ(stream.Status(), FileStatus::Reading);
    EXPECT_TRUE(stream.NextStatement());
    EXPECT_EQ(stream.Statement(), "BO_ 1 A\n");
    EXPECT_EQ(stream.LineNumber(), 2U);
    EXPECT_EQ(faults.Opened(), 2U);
    EXPECT_EQ(faults.StillOpen(), 1U);
    stream.Close();
    EXPECT_EQ(stream.Status(), FileStatus::Closed);
    ExpectAllClosed(faults);
}

// The line that is lost is longer than the text before it, so that its places lie behind the end of that.
TEST(ReadFault, KeywordsOfTheLostLineDoNotCount) {
    for (const std::string_view lost :
         {"x SG_ BO_ SG_ BO_ SG_ BO_ SG_ BO_ SG_ ", "BO_ \x01SG_ \xE4 N R _ SG_ SG_ SG_ "}) {
        for (const std::string_view first : {"BO_ 1 A\n", "CM_ BO_ 1 \"x\n", "CM_ x;\n"}) {
            SCOPED_TRACE(Shown(first) + " in front of " + Shown(lost));
            const std::string bytes = std::string(first).append(lost);
            const TempFile path(bytes);
            SystemFaults faults;
            faults.Script(SystemCall::Read, {Moves(bytes.size()), Fails(EIO)});
            File file;
            ASSERT_TRUE(file.OpenForReading(path.Path()));
            LineBuffer buffer(file);
            ASSERT_EQ(buffer.ReadLine(), LineBuffer::Result::Line);
            for (int i = 0; i < 3; ++i) {
                EXPECT_EQ(buffer.ReadLine(), LineBuffer::Result::Failed);
                EXPECT_EQ(buffer.Text(), first);
                size_t place = 77;
                EXPECT_FALSE(buffer.NextKeywordEnd(place)) << place;
            }
            file.Close();
            ExpectPlayed(faults);

            faults.Script(SystemCall::Read, {Moves(bytes.size()), Fails(EIO)});
            const Reading reading = ReadFile(path.Path());
            EXPECT_EQ(reading.statements, (std::vector<Delivered>{{std::string(first), 1}}));
            EXPECT_EQ(reading.status, FileStatus::Failed);
        }
    }
}

// --- Opening

TEST(OpenFault, InterruptionIsTriedAgain) {
    for (const OpenMode mode : kModes) {
        SCOPED_TRACE(NameOf(mode));
        const TempFile file("BO_ 1 A\n");
        SystemFaults faults;
        faults.Script(SystemCall::Open, {Fails(EINTR), Fails(EINTR)});
        DbcFileStream stream;
        Open(stream, file.Path(), mode);
        EXPECT_EQ(stream.Status(), mode == OpenMode::Read ? FileStatus::Reading : FileStatus::Writing);
        EXPECT_EQ(faults.Calls(SystemCall::Open), 3U);
        EXPECT_EQ(faults.Opened(), 1U);
        stream.Close();
        EXPECT_EQ(stream.Status(), FileStatus::Closed);
        ExpectAllClosed(faults);
    }
}

TEST(OpenFault, OtherFailuresAreFinal) {
    for (const OpenMode mode : kModes) {
        for (const int error : {EACCES, EMFILE, ENFILE, ENOMEM, ENOSPC, EIO, ETXTBSY}) {
            SCOPED_TRACE(std::string(NameOf(mode)) + ", " + std::strerror(error));
            const TempFile file("BO_ 1 A\n");
            SystemFaults faults;
            faults.Script(SystemCall::Open, {Fails(error)});
            DbcFileStream stream;
            Open(stream, file.Path(), mode);
            EXPECT_EQ(stream.Status(), FileStatus::NotOpened);
            EXPECT_EQ(faults.Calls(SystemCall::Open), 1U);
            // There is nothing to close, and nothing is.
            stream.Close();
            EXPECT_EQ(stream.Status(), FileStatus::Closed);
            ExpectAllClosed(faults);
        }
    }
}

TEST(OpenFault, ProgramsThatAreStartedMeanwhileDoNotInheritTheFile) {
    for (const OpenMode mode : kModes) {
        SCOPED_TRACE(NameOf(mode));
        const TempFile file("");
        SystemFaults faults;
        DbcFileStream stream;
        Open(stream, file.Path(), mode);
        EXPECT_EQ(faults.Opened(), 1U);
        EXPECT_NE(faults.OpenFlags() & O_CLOEXEC, 0);
        EXPECT_NE(faults.OpenFlags() & O_NOCTTY, 0);
    }
}

// Where another program has to give up a lease on the file first, it is waited for.
TEST(OpenFault, OpeningAnOrdinaryFileMayTakeItsTime) {
    for (const OpenMode mode : {OpenMode::Read, OpenMode::Write}) {
        const TempFile file("");
        SystemFaults faults;
        DbcFileStream stream;
        Open(stream, file.Path(), mode);
        EXPECT_EQ(faults.Opened(), 1U);
        EXPECT_EQ(faults.OpenFlags() & O_NONBLOCK, 0);
    }
}

TEST(OpenFault, RightsOfANewFileAreLeftToTheUmask) {
    for (const auto& [mask, rights] : {std::pair{0U, 0666U}, std::pair{027U, 0640U}}) {
        SCOPED_TRACE(testing::Message() << "umask " << mask);
        const TempFile file("");
        ASSERT_EQ(unlink(file.Path().c_str()), 0);
        const mode_t before = umask(mask);
        File created;
        const bool opened = created.OpenForWriting(file.Path());
        umask(before);
        ASSERT_TRUE(opened);
        struct stat information {};
        ASSERT_EQ(stat(file.Path().c_str(), &information), 0);
        EXPECT_EQ(information.st_mode & 0777U, rights);
    }
}

TEST(OpenFault, DirectoryOpenedForReadingIsClosedAgain) {
    for (const SystemFault closing : {kWorks, Fails(EIO), Fails(EINTR)}) {
        SCOPED_TRACE(std::strerror(closing.error));
        SystemFaults faults;
        faults.Script(SystemCall::Close, {closing});
        DbcFileStream stream;
        Open(stream, TABRIN_TEMP_DIR, OpenMode::Read);
        EXPECT_EQ(stream.Status(), FileStatus::NotOpened);
        EXPECT_EQ(faults.Opened(), 1U);
        EXPECT_EQ(faults.Calls(SystemCall::Read), 0U);
        ExpectAllClosed(faults);
        stream.Close();
        EXPECT_EQ(stream.Status(), FileStatus::Closed);
        ExpectAllClosed(faults);
    }
}

// --- Writing

constexpr std::string_view kWrittenLines = "first\r\ntwo\r\nlines\r\n\r\n";

void WriteLines(DbcFileStream& stream) {
    stream.WriteLine("first");       // 7 bytes
    stream.WriteLine("two\nlines");  // 12 bytes
    stream.WriteLine("");            // 2 bytes
}

TEST(WriteFault, ShortWritesAreCompleted) {
    for (size_t most = 1; most <= 12; ++most) {
        SCOPED_TRACE(most);
        const TempFile file("");
        SystemFaults faults;
        faults.Script(SystemCall::Write, {}, Moves(most));
        DbcFileStream stream;
        Open(stream, file.Path(), OpenMode::Write);
        WriteLines(stream);
        EXPECT_TRUE(stream.ReadyToWrite());
        stream.Close();
        EXPECT_EQ(stream.Status(), FileStatus::Closed);
        EXPECT_EQ(ReadBytes(file.Path()), kWrittenLines);
        EXPECT_EQ(faults.Calls(SystemCall::Write),
                  (7 + most - 1) / most + (12 + most - 1) / most + (2 + most - 1) / most);
        ExpectAllClosed(faults);
    }
}

TEST(WriteFault, InterruptionsLoseAndDoubleNothing) {
    const TempFile file("");
    SystemFaults faults;
    faults.Script(SystemCall::Write, {Fails(EINTR), Moves(3), Fails(EINTR), Fails(EINTR), Moves(1), Fails(EINTR),
                                      kWorks, Fails(EINTR), kWorks, Fails(EINTR), Moves(1), Fails(EINTR)});
    DbcFileStream stream;
    Open(stream, file.Path(), OpenMode::Write);
    WriteLines(stream);
    EXPECT_TRUE(stream.ReadyToWrite());
    stream.Close();
    EXPECT_EQ(stream.Status(), FileStatus::Closed);
    EXPECT_EQ(ReadBytes(file.Path()), kWrittenLines);
    EXPECT_EQ(faults.Calls(SystemCall::Write), 13U);
}

struct WriteFailureRow {
    const char* what;
    std::vector<SystemFault> script;
    std::string_view written;
};

const WriteFailureRow kWriteFailureRows[] = {
    {"full from the start", {Fails(ENOSPC)}, ""},
    {"full in the middle of a line", {Moves(3), Fails(ENOSPC)}, "fir"},
    {"full between CR and LF", {Moves(6), Fails(ENOSPC)}, "first\r"},
    {"full in the second line", {kWorks, Moves(4), Fails(ENOSPC)}, "first\r\ntwo\r"},
    {"interrupted, then full", {Moves(3), Fails(EINTR), Fails(ENOSPC)}, "fir"},
    {"beyond the quota", {Moves(3), Fails(EDQUOT)}, "fir"},
    {"beyond the largest size", {Moves(3), Fails(EFBIG)}, "fir"},
    {"broken device", {Moves(3), Fails(EIO)}, "fir"},
    {"pipe without reader", {Moves(3), Fails(EPIPE)}, "fir"},
    {"would block", {Moves(3), Fails(EAGAIN)}, "fir"},
    {"nothing taken", {Moves(0)}, ""},
    {"nothing taken any more", {Moves(3), Moves(0)}, "fir"},
};

// The calls behind the script would work, so what is not in the file was not tried.
TEST(WriteFault, EndsTheFileThere) {
    for (const WriteFailureRow& row : kWriteFailureRows) {
        SCOPED_TRACE(row.what);
        const TempFile file("");
        SystemFaults faults;
        faults.Script(SystemCall::Write, row.script);
        DbcFileStream stream;
        Open(stream, file.Path(), OpenMode::Write);
        WriteLines(stream);
        EXPECT_EQ(stream.Status(), FileStatus::Failed);
        EXPECT_EQ(faults.Calls(SystemCall::Write), row.script.size());
        stream.Close();
        EXPECT_EQ(stream.Status(), FileStatus::Failed);
        EXPECT_EQ(ReadBytes(file.Path()), row.written);
        ExpectAllClosed(faults);
    }
}

TEST(WriteFault, LineIsTakenAsLostOnlyWhenNotAllOfItIsWritten) {
    File file;
    const TempFile target("");
    SystemFaults faults;
    faults.Script(SystemCall::Write, {Moves(2), kWorks, Moves(2), Fails(ENOSPC)});
    ASSERT_TRUE(file.OpenForWriting(target.Path()));
    EXPECT_TRUE(file.Write("abcd"));
    EXPECT_FALSE(file.Write("efgh"));
    EXPECT_TRUE(file.Write(""));
    EXPECT_EQ(faults.Calls(SystemCall::Write), 4U);
    EXPECT_TRUE(file.Close());
    EXPECT_EQ(ReadBytes(target.Path()), "abcdef");
}

// --- Closing

TEST(CloseFault, LossReportedInClosingIsAFailure) {
    for (const OpenMode mode : kModes) {
        for (const int error : {EIO, ENOSPC, EDQUOT}) {
            SCOPED_TRACE(std::string(NameOf(mode)) + ", " + std::strerror(error));
            const TempFile file("");
            SystemFaults faults;
            faults.Script(SystemCall::Close, {Fails(error)});
            DbcFileStream stream;
            Open(stream, file.Path(), mode);
            stream.Close();
            EXPECT_EQ(stream.Status(), FileStatus::Failed);
            ExpectAllClosed(faults);
            // It is told once.
            stream.Close();
            EXPECT_EQ(stream.Status(), FileStatus::Closed);
            ExpectAllClosed(faults);
        }
    }
}

TEST(CloseFault, InterruptionIsNoneAndNotTriedAgain) {
    for (const OpenMode mode : kModes) {
        SCOPED_TRACE(NameOf(mode));
        const TempFile file("");
        SystemFaults faults;
        faults.Script(SystemCall::Close, {Fails(EINTR)});
        DbcFileStream stream;
        Open(stream, file.Path(), mode);
        stream.Close();
        EXPECT_EQ(stream.Status(), FileStatus::Closed);
        ExpectPlayed(faults);
        ExpectAllClosed(faults);
    }
}

TEST(CloseFault, DoesNotReachTheNextFile) {
    const TempFile file("");
    SystemFaults faults;
    faults.Script(SystemCall::Close, {Fails(EIO)});
    DbcFileStream stream;
    Open(stream, file.Path(), OpenMode::Write);
    Open(stream, file.Path(), OpenMode::Write);
    EXPECT_EQ(stream.Status(), FileStatus::Writing);
    WriteLines(stream);
    stream.Close();
    EXPECT_EQ(stream.Status(), FileStatus::Closed);
    EXPECT_EQ(ReadBytes(file.Path()), kWrittenLines);
    EXPECT_EQ(faults.Opened(), 2U);
    ExpectAllClosed(faults);
}

TEST(CloseFault, FileThatIsLeftOpenIsClosedWithItsObject) {
    const TempFile file(kThreeLines);
    for (const SystemFault closing : {kWorks, Fails(EIO), Fails(EINTR)}) {
        for (const OpenMode mode : kModes) {
            SCOPED_TRACE(std::string(NameOf(mode)) + ", " + std::strerror(closing.error));
            SystemFaults faults;
            faults.Script(SystemCall::Close, {closing});
            {
                DbcFileStream stream;
                Open(stream, file.Path(), mode);
                EXPECT_EQ(faults.StillOpen(), 1U);
            }
            EXPECT_EQ(faults.Opened(), 1U);
            ExpectAllClosed(faults);
        }
    }
}

TEST(CloseFault, ClosedFileIsNotClosedAgainWithItsObject) {
    const TempFile file(kThreeLines);
    SystemFaults faults;
    {
        File opened;
        ASSERT_TRUE(opened.OpenForReading(file.Path()));
        EXPECT_TRUE(opened.Close());
        EXPECT_TRUE(opened.Close());
        const File never;
    }
    EXPECT_EQ(faults.Opened(), 1U);
    ExpectAllClosed(faults);
}

}  // namespace
}  // namespace tabrin
