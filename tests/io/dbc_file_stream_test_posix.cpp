// Failures of the operating system, which are easy to have here.
#include <sys/stat.h>
#include <unistd.h>

#include "file_size_limit_posix.h"
#include "io/dbc_file_stream.h"
#include "io/io_test_support.h"
#include "io/open_stream.h"
#include "ordinary_user_posix.h"

namespace tabrin {
namespace {

class WriteFailure : public testing::Test {
protected:
    void SetUp() override {
        if (access(kFull, W_OK) != 0) {
            GTEST_SKIP() << "there is no " << kFull;
        }
    }

    static constexpr char kFull[] = "/dev/full";
};

TEST_F(WriteFailure, IsNoticedAtTheNextLine) {
    DbcFileStream stream;
    Open(stream, kFull, OpenMode::Write);
    ASSERT_EQ(stream.Status(), FileStatus::Writing);
    stream.WriteLine("a");
    EXPECT_EQ(stream.Status(), FileStatus::Writing);
    stream.WriteLine("b");
    EXPECT_EQ(stream.Status(), FileStatus::Failed);
    stream.WriteLine("c");
    EXPECT_EQ(stream.Status(), FileStatus::Failed);
    stream.Close();
    EXPECT_EQ(stream.Status(), FileStatus::Failed);
}

TEST_F(WriteFailure, IsNoticedByTheCheckInFrontOfALine) {
    DbcFileStream stream;
    Open(stream, kFull, OpenMode::Write);
    EXPECT_TRUE(stream.ReadyToWrite());
    stream.WriteLine("a");
    EXPECT_EQ(stream.Status(), FileStatus::Writing);
    EXPECT_FALSE(stream.ReadyToWrite());
    EXPECT_EQ(stream.Status(), FileStatus::Failed);
}

TEST_F(WriteFailure, OfTheLastLineIsNoticedInClosing) {
    DbcFileStream stream;
    Open(stream, kFull, OpenMode::Write);
    stream.WriteLine("a");
    EXPECT_EQ(stream.Status(), FileStatus::Writing);
    stream.Close();
    EXPECT_EQ(stream.Status(), FileStatus::Failed);
    EXPECT_FALSE(stream.ReadyToWrite());
    stream.Close();
    EXPECT_EQ(stream.Status(), FileStatus::Closed);
}

TEST_F(WriteFailure, IsForgottenWithTheNextFile) {
    const TempFile file("");
    DbcFileStream stream;
    Open(stream, kFull, OpenMode::Write);
    stream.WriteLine("a");
    Open(stream, file.Path(), OpenMode::Write);
    EXPECT_EQ(stream.Status(), FileStatus::Writing);
    stream.WriteLine("b");
    stream.WriteLine("c");
    EXPECT_EQ(stream.Status(), FileStatus::Writing);
    stream.Close();
    EXPECT_EQ(stream.Status(), FileStatus::Closed);
    EXPECT_EQ(ReadBytes(file.Path()), "b\r\nc\r\n");
}

TEST(FullDisk, InTheMiddleOfALineEndsTheFileThere) {
    const TempFile file("");
    DbcFileStream stream;
    {
        const tabrin_test::FileSizeLimit limit(10);
        Open(stream, file.Path(), OpenMode::Write);
        stream.WriteLine("1234");
        EXPECT_TRUE(stream.ReadyToWrite());
        stream.WriteLine("5678");
        EXPECT_EQ(stream.Status(), FileStatus::Writing);
        stream.WriteLine("90");
        EXPECT_EQ(stream.Status(), FileStatus::Failed);
    }
    // Nothing more is tried once a line has failed, even when there is room again.
    stream.WriteLine("ab");
    stream.Close();
    EXPECT_EQ(stream.Status(), FileStatus::Failed);
    EXPECT_EQ(ReadBytes(file.Path()), "1234\r\n5678");
}

// The memory of this process is a file that opens, and whose first bytes cannot be read.
class ReadFailure : public testing::Test {
protected:
    void SetUp() override {
        if (access(kUnreadable, R_OK) != 0) {
            GTEST_SKIP() << "there is no " << kUnreadable;
        }
    }

    static constexpr char kUnreadable[] = "/proc/self/mem";
};

TEST_F(ReadFailure, StaysTheStatusAfterClosing) {
    DbcFileStream stream;
    Open(stream, kUnreadable, OpenMode::Read);
    ASSERT_EQ(stream.Status(), FileStatus::Reading);
    EXPECT_FALSE(stream.NextStatement());
    EXPECT_EQ(stream.Status(), FileStatus::Failed);
    EXPECT_EQ(stream.LineNumber(), 0U);
    EXPECT_FALSE(stream.NextStatement());
    stream.Close();
    EXPECT_EQ(stream.Status(), FileStatus::Failed);
    stream.Close();
    EXPECT_EQ(stream.Status(), FileStatus::Closed);
}

TEST_F(ReadFailure, IsForgottenWithTheNextFile) {
    const TempFile file("BO_ 1\n");
    DbcFileStream stream;
    Open(stream, kUnreadable, OpenMode::Read);
    EXPECT_FALSE(stream.NextStatement());
    Open(stream, file.Path(), OpenMode::Read);
    EXPECT_EQ(stream.Status(), FileStatus::Reading);
    EXPECT_TRUE(stream.NextStatement());
    EXPECT_EQ(stream.Statement(), "BO_ 1\n");
    EXPECT_EQ(stream.Status(), FileStatus::EndOfFile);
    stream.Close();
    EXPECT_EQ(stream.Status(), FileStatus::Closed);
}

TEST(OpenFile, FileWithoutPermissionOpensForNeither) {
    const tabrin_test::CurrentFolder folder(TempPath("folder"));
    WriteBytes("secret.dbc", "BO_ 1\n");
    ASSERT_EQ(chmod("secret.dbc", 0), 0);
    const tabrin_test::OrdinaryUser user;
    if (!user.IsOrdinary()) {
        GTEST_SKIP() << tabrin_test::kRightsKept;
    }
    for (const OpenMode mode : kModes) {
        SCOPED_TRACE(NameOf(mode));
        DbcFileStream stream;
        Open(stream, "secret.dbc", mode);
        EXPECT_EQ(stream.Status(), FileStatus::NotOpened);
    }
}

TEST(OpenFile, ProgramThatIsRunningCannotBeWritten) {
    DbcFileStream stream;
    Open(stream, "/proc/self/exe", OpenMode::Write);
    EXPECT_EQ(stream.Status(), FileStatus::NotOpened);
}

TEST(ReadStatements, PipesAreFilesToo) {
    int ends[2] = {};
    ASSERT_EQ(pipe(ends), 0);
    DbcFileStream stream;
    Open(stream, "/dev/fd/" + std::to_string(ends[0]), OpenMode::Read);
    ASSERT_EQ(stream.Status(), FileStatus::Reading);
    for (const std::string_view part : {"BO_", " 1\r", "\nSG_ 2\n"}) {
        ASSERT_EQ(write(ends[1], part.data(), part.size()), static_cast<ssize_t>(part.size()));
    }
    close(ends[0]);
    close(ends[1]);
    ASSERT_TRUE(stream.NextStatement());
    EXPECT_EQ(stream.Statement(), "BO_ 1\n");
    ASSERT_TRUE(stream.NextStatement());
    EXPECT_EQ(stream.Statement(), "SG_ 2\n");
    EXPECT_EQ(stream.Status(), FileStatus::EndOfFile);
}

}  // namespace
}  // namespace tabrin
