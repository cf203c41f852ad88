// Paths and files as only Windows has them.
#ifndef NOMINMAX
#define NOMINMAX
#endif
#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <algorithm>

#include "abi/interface_test.h"

namespace tabrin_test {
namespace {

constexpr Outcome kNotOpened{false, TABRIN_STATUS_NOT_OPENED};
constexpr std::string_view kOneMessage = "BO_ 1 M: 8 N\r\n";

class WindowsFile : public InterfaceTest {
protected:
    void SetUp() override {
        InterfaceTest::SetUp();
        path_ = TempPath("dbc");
        WriteBytes(path_, kOneMessage);
    }

    std::string path_;
};

// The file, open for another program that lets others do what `sharing` says.
class OpenElsewhere {
public:
    OpenElsewhere(const std::string& path, DWORD sharing)
        : handle_(CreateFileA(path.c_str(), GENERIC_READ, sharing, nullptr, OPEN_EXISTING, 0, nullptr)) {
        EXPECT_NE(handle_, INVALID_HANDLE_VALUE);
    }
    ~OpenElsewhere() { CloseHandle(handle_); }
    OpenElsewhere(const OpenElsewhere&) = delete;
    OpenElsewhere& operator=(const OpenElsewhere&) = delete;
    OpenElsewhere(OpenElsewhere&&) = delete;
    OpenElsewhere& operator=(OpenElsewhere&&) = delete;

private:
    HANDLE handle_;
};

TEST_F(WindowsFile, ThatIsLockedIsRefusedAndKept) {
    const struct {
        DWORD sharing;
        bool isRead;
        bool isWritten;
    } rows[] = {
        {0, false, false},
        {FILE_SHARE_READ, true, false},
        {FILE_SHARE_READ | FILE_SHARE_WRITE, true, true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.sharing);
        {
            const OpenElsewhere other(path_, row.sharing);
            EXPECT_EQ(ReadFile(path_), row.isRead ? kDone : kNotOpened);
            EXPECT_EQ(NumMessages(), row.isRead ? 1U : 0U);
            Library().ClearData();
            ASSERT_TRUE(AppendMessage(2, "New"));
            EXPECT_EQ(WriteFile(path_, TABRIN_ORDER_DATABASE), row.isWritten ? kDone : kNotOpened);
        }
        EXPECT_EQ(ReadBytes(path_) == kOneMessage, !row.isWritten);
    }
}

TEST_F(WindowsFile, OnADriveThatIsMissingIsRefused) {
    const DWORD drives = GetLogicalDrives();
    ASSERT_NE(drives, 0U);
    int tried = 0;
    ASSERT_TRUE(AppendMessage(1, "M"));
    for (char letter = 'A'; letter <= 'Z'; ++letter) {
        if ((drives >> (letter - 'A') & 1U) != 0) {
            continue;
        }
        for (const char* rest : {":\\file.dbc", ":/file.dbc", ":file.dbc"}) {
            const std::string path = letter + std::string(rest);
            SCOPED_TRACE(Shown(path));
            EXPECT_EQ(WriteFile(path, TABRIN_ORDER_DATABASE), kNotOpened);
            EXPECT_EQ(NumMessages(), 1U);
            EXPECT_EQ(ReadFile(path), kNotOpened);
            ASSERT_TRUE(AppendMessage(1, "M"));
            ++tried;
        }
    }
    EXPECT_GT(tried, 0) << "no drive is missing";
}

TEST_F(WindowsFile, IsFoundWithSlashesOfBothKinds) {
    const size_t size = path_.size();
    std::string backward = path_;
    std::replace(backward.begin(), backward.end(), '/', '\\');
    std::string mixed = path_;
    for (size_t i = 0, slashes = 0; i < size; ++i) {
        if (mixed[i] == '/' && ++slashes % 2 == 0) {
            mixed[i] = '\\';
        }
    }
    ASSERT_NE(mixed, path_);
    ASSERT_NE(mixed, backward);
    for (const std::string& path : {backward, mixed}) {
        SCOPED_TRACE(Shown(path));
        EXPECT_EQ(ReadFile(path), kDone);
        EXPECT_EQ(NumMessages(), 1U);
        ASSERT_TRUE(AppendMessage(2, "New"));
        EXPECT_EQ(WriteFile(path, TABRIN_ORDER_DATABASE), kDone);
        EXPECT_NE(ReadBytes(path_).find("BO_ 2 New"), std::string::npos);
        WriteBytes(path_, kOneMessage);
    }
}

// The device that takes everything and gives nothing.
TEST_F(WindowsFile, OfTheNameNulIsEmptyAndTakesAll) {
    for (const char* path : {"NUL", "nul", "\\\\.\\NUL"}) {
        SCOPED_TRACE(Shown(path));
        EXPECT_EQ(ReadFile(path), kDone);
        EXPECT_EQ(NumMessages(), 0U);
        ASSERT_TRUE(AppendMessage(1, "M"));
        EXPECT_EQ(WriteFile(path, TABRIN_ORDER_DATABASE), kDone);
        EXPECT_FALSE(std::filesystem::is_regular_file(path));
    }
}

// What is behind such a name is the system's business. In no case does a file of that name come into being, and the
// answer is one of those that tell of a device: opened and written or read, broken off, or not opened.
TEST_F(WindowsFile, OfAReservedNameIsNoFile) {
    for (const char* name : {"COM1", "COM9", "LPT1", "AUX", "PRN", "com5"}) {
        SCOPED_TRACE(Shown(name));
        ASSERT_TRUE(AppendMessage(1, "M"));
        const Outcome outcome = WriteFile(name, TABRIN_ORDER_DATABASE);
        EXPECT_TRUE(outcome.status == TABRIN_STATUS_NOT_OPENED || outcome.status == TABRIN_STATUS_FAILED ||
                    outcome.status == TABRIN_STATUS_CLOSED)
            << outcome;
        EXPECT_FALSE(std::filesystem::is_regular_file(name));
        EXPECT_EQ(NumMessages(), 1U);
        Library().ClearData();
    }
}

}  // namespace
}  // namespace tabrin_test
