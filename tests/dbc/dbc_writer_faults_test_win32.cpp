// Writing where the system fails: files in use, protected files, pipes whose other end is gone.
#ifndef NOMINMAX
#define NOMINMAX
#endif
#define WIN32_LEAN_AND_MEAN
#include <gtest/gtest.h>
#include <windows.h>

#include <cstdint>
#include <string>
#include <thread>

#include "dbc/dbc_writer.h"
#include "dbc/writing.h"

namespace tabrin {
namespace {

// The file as another program has it open.
class OpenElsewhere {
public:
    OpenElsewhere(const std::string& path, DWORD access, DWORD sharing)
        : handle_(CreateFileA(path.c_str(), access, sharing, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr)) {
        EXPECT_NE(handle_, INVALID_HANDLE_VALUE);
    }
    ~OpenElsewhere() { Close(); }
    OpenElsewhere(const OpenElsewhere&) = delete;
    OpenElsewhere& operator=(const OpenElsewhere&) = delete;
    OpenElsewhere(OpenElsewhere&&) = delete;
    OpenElsewhere& operator=(OpenElsewhere&&) = delete;

    void Close() {
        if (handle_ != INVALID_HANDLE_VALUE) {
            CloseHandle(handle_);
            handle_ = INVALID_HANDLE_VALUE;
        }
    }

private:
    HANDLE handle_;
};

class FileInUse : public testing::Test {
protected:
    FileInUse() : message_(AddMessage(database_)) {
        AddNamedSignal(message_, "S");
        AddNamedSignal(message_, "S");
    }

    CANDatabase database_;
    CANMessage& message_;
    const TemporaryFile file_{"content"};
};

TEST_F(FileInUse, WithoutSharingDoesNotOpen) {
    OpenElsewhere other(file_.Path(), GENERIC_READ, 0);
    EXPECT_EQ(WriteTo(database_, file_.Path()), kNotOpened);
    EXPECT_EQ(message_.signals[0]->identifierName, "S");
    other.Close();
    EXPECT_EQ(FileBytes(file_.Path()), "content");
    EXPECT_EQ(WriteTo(database_, file_.Path()), kAllWritten);
    EXPECT_EQ(message_.signals[0]->identifierName, "S_0000");
}

TEST_F(FileInUse, SharedForReadingOnlyDoesNotOpen) {
    OpenElsewhere other(file_.Path(), GENERIC_READ, FILE_SHARE_READ);
    EXPECT_EQ(WriteTo(database_, file_.Path()), kNotOpened);
    other.Close();
    EXPECT_EQ(FileBytes(file_.Path()), "content");
}

TEST_F(FileInUse, SharedForWritingIsWritten) {
    const OpenElsewhere other(file_.Path(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE);
    EXPECT_EQ(WriteTo(database_, file_.Path()), kAllWritten);
    EXPECT_EQ(FileBytes(file_.Path()).substr(0, kWrittenHeader.size()), kWrittenHeader);
}

// The library denies nothing to others itself: a file opened for writing can be written to by somebody else.
TEST_F(FileInUse, IsSharedWhileItIsWritten) {
    DbcFileStream stream;
    stream.Open(file_.Path().c_str(), kPathBufferSize, OpenMode::Write);
    ASSERT_EQ(stream.Status(), FileStatus::Writing);
    const OpenElsewhere other(file_.Path(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE);
}

// Whether the system itself lets this user open the file for writing.
bool IsWritable(const std::string& path) {
    const HANDLE handle =
        CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    return handle != INVALID_HANDLE_VALUE && CloseHandle(handle);
}

TEST(DbcWriterFaults, ReadOnlyFileDoesNotOpen) {
    CANDatabase database;
    AddMessage(database);
    const TemporaryFile file("content");
    ASSERT_TRUE(SetFileAttributesA(file.Path().c_str(), FILE_ATTRIBUTE_READONLY));
    const bool isProtected = !IsWritable(file.Path());
    if (isProtected) {
        EXPECT_EQ(WriteTo(database, file.Path()), kNotOpened);
        EXPECT_EQ(FileBytes(file.Path()), "content");
    }
    // Otherwise it could not be removed.
    EXPECT_TRUE(SetFileAttributesA(file.Path().c_str(), FILE_ATTRIBUTE_NORMAL));
    if (!isProtected) {
        GTEST_SKIP() << "this user may write to read-only files, as under Wine the superuser may";
    }
}

// Takes the first bytes that are written to a pipe, and goes away.
class ShortReader {
public:
    explicit ShortReader(const std::string& pipe)
        : handle_(
              CreateNamedPipeA(pipe.c_str(), PIPE_ACCESS_INBOUND, PIPE_TYPE_BYTE | PIPE_WAIT, 1, 0, 64, 0, nullptr)),
          pipe_(pipe),
          thread_([this] { Read(); }) {
        EXPECT_NE(handle_, INVALID_HANDLE_VALUE);
    }
    ~ShortReader() {
        // Should nobody have written, the reader would wait forever.
        CloseHandle(CreateFileA(pipe_.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
        thread_.join();
    }
    ShortReader(const ShortReader&) = delete;
    ShortReader& operator=(const ShortReader&) = delete;
    ShortReader(ShortReader&&) = delete;
    ShortReader& operator=(ShortReader&&) = delete;

private:
    void Read() const {
        char bytes[20];
        DWORD count = 0;
        // There may be somebody at the other end already.
        ConnectNamedPipe(handle_, nullptr);
        ReadFile(handle_, bytes, sizeof bytes, &count, nullptr);
        CloseHandle(handle_);
    }

    const HANDLE handle_;
    const std::string pipe_;
    std::thread thread_;
};

TEST(DbcWriterFaults, PipeThatBreaksFailsOnTheWay) {
    CANDatabase database;
    for (uint32_t id = 0; id < 20000; ++id) {
        AddMessage(database, {.id = id});
    }
    const std::string pipe = R"(\\.\pipe\tabrin_writer_faults_)" + std::to_string(GetCurrentProcessId());
    const ShortReader reader(pipe);
    EXPECT_EQ(WriteTo(database, pipe), kWriteFailed);
}

}  // namespace
}  // namespace tabrin
