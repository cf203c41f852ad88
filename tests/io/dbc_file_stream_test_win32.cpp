// Failures of the operating system that come from the ways in which files are opened here.
#ifndef NOMINMAX
#define NOMINMAX
#endif
#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include "io/dbc_file_stream.h"
#include "io/io_test_support.h"
#include "io/open_stream.h"

namespace tabrin {
namespace {

// The file, open for another program.
class OtherHandle {
public:
    OtherHandle(const std::string& path, DWORD access, DWORD sharing)
        : handle_(CreateFileW(AsPath(path).c_str(), access, sharing, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL,
                              nullptr)) {}
    ~OtherHandle() {
        if (IsOpen()) {
            CloseHandle(handle_);
        }
    }
    OtherHandle(const OtherHandle&) = delete;
    OtherHandle& operator=(const OtherHandle&) = delete;
    OtherHandle(OtherHandle&&) = delete;
    OtherHandle& operator=(OtherHandle&&) = delete;

    [[nodiscard]] bool IsOpen() const { return handle_ != INVALID_HANDLE_VALUE; }
    [[nodiscard]] HANDLE Handle() const { return handle_; }

private:
    HANDLE handle_;
};

TEST(OpenFile, FileThatAnotherDoesNotShareOpensForNeither) {
    const TempFile file("BO_ 1\n");
    {
        const OtherHandle other(file.Path(), GENERIC_READ, 0);
        ASSERT_TRUE(other.IsOpen());
        for (const OpenMode mode : kModes) {
            SCOPED_TRACE(NameOf(mode));
            DbcFileStream stream;
            Open(stream, file.Path(), mode);
            EXPECT_EQ(stream.Status(), FileStatus::NotOpened);
        }
    }
    EXPECT_EQ(ReadBytes(file.Path()), "BO_ 1\n");
}

TEST(OpenFile, OthersMayReadAndWriteMeanwhile) {
    const TempFile file("BO_ 1\n");
    for (const OpenMode mode : kModes) {
        SCOPED_TRACE(NameOf(mode));
        DbcFileStream stream;
        Open(stream, file.Path(), mode);
        const OtherHandle other(file.Path(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE);
        EXPECT_TRUE(other.IsOpen());
    }
}

TEST(OpenFile, ReadOnlyFileOpensForReadingOnly) {
    const TempFile file("BO_ 1\n");
    const std::filesystem::path path = AsPath(file.Path());
    ASSERT_NE(SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY), 0);
    const bool enforced = !OtherHandle(file.Path(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE).IsOpen();
    DbcFileStream stream;
    Open(stream, file.Path(), OpenMode::Read);
    EXPECT_EQ(stream.Status(), FileStatus::Reading);
    if (enforced) {
        Open(stream, file.Path(), OpenMode::Write);
        EXPECT_EQ(stream.Status(), FileStatus::NotOpened);
        EXPECT_EQ(ReadBytes(file.Path()), "BO_ 1\n");
    }
    stream.Close();
    ASSERT_NE(SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL), 0);
    if (!enforced) {
        GTEST_SKIP() << "this user may write read-only files";
    }
}

// A file that opens and takes nothing, or gives nothing: on Windows one with a range that another has locked. Wine lets
// locked ranges be used, but shows devices of the system below.
class LockedFile {
public:
    LockedFile() : file_("BO_ 1\n"), other_(file_.Path(), GENERIC_READ | GENERIC_WRITE, kShared) {
        EXPECT_NE(LockFile(other_.Handle(), 0, 0, 1000, 0), 0);
    }

    [[nodiscard]] const std::string& Path() const { return file_.Path(); }
    [[nodiscard]] bool Locks() const {
        const OtherHandle probe(file_.Path(), GENERIC_READ, kShared);
        char byte = 0;
        DWORD count = 0;
        return ReadFile(probe.Handle(), &byte, 1, &count, nullptr) == 0;
    }

private:
    static constexpr DWORD kShared = FILE_SHARE_READ | FILE_SHARE_WRITE;

    TempFile file_;
    OtherHandle other_;
};

TEST(WriteFailure, IsNoticedAtTheNextLine) {
    const LockedFile locked;
    DbcFileStream stream;
    Open(stream, locked.Locks() ? locked.Path() : "Z:/dev/full", OpenMode::Write);
    if (stream.Status() == FileStatus::NotOpened) {
        GTEST_SKIP() << "neither locked ranges nor Z:/dev/full";
    }
    ASSERT_EQ(stream.Status(), FileStatus::Writing);
    stream.WriteLine("a");
    EXPECT_EQ(stream.Status(), FileStatus::Writing);
    stream.WriteLine("b");
    EXPECT_EQ(stream.Status(), FileStatus::Failed);
    stream.Close();
    EXPECT_EQ(stream.Status(), FileStatus::Failed);
    stream.Close();
    EXPECT_EQ(stream.Status(), FileStatus::Closed);
}

TEST(WriteFailure, OfTheLastLineIsNoticedInClosing) {
    const LockedFile locked;
    DbcFileStream stream;
    Open(stream, locked.Locks() ? locked.Path() : "Z:/dev/full", OpenMode::Write);
    if (stream.Status() == FileStatus::NotOpened) {
        GTEST_SKIP() << "neither locked ranges nor Z:/dev/full";
    }
    stream.WriteLine("a");
    EXPECT_EQ(stream.Status(), FileStatus::Writing);
    stream.Close();
    EXPECT_EQ(stream.Status(), FileStatus::Failed);
}

TEST(ReadFailure, StaysTheStatusAfterClosing) {
    const LockedFile locked;
    DbcFileStream stream;
    Open(stream, locked.Locks() ? locked.Path() : "Z:/proc/self/mem", OpenMode::Read);
    if (stream.Status() == FileStatus::NotOpened) {
        GTEST_SKIP() << "neither locked ranges nor Z:/proc/self/mem";
    }
    ASSERT_EQ(stream.Status(), FileStatus::Reading);
    EXPECT_FALSE(stream.NextStatement());
    EXPECT_EQ(stream.Status(), FileStatus::Failed);
    stream.Close();
    EXPECT_EQ(stream.Status(), FileStatus::Failed);
    stream.Close();
    EXPECT_EQ(stream.Status(), FileStatus::Closed);
}

}  // namespace
}  // namespace tabrin
