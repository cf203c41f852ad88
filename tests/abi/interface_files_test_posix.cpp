// Files that real systems refuse, break off or change meanwhile.
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <functional>
#include <thread>

#include "abi/interface_test.h"
#include "ordinary_user_posix.h"

namespace tabrin_test {
namespace {

constexpr Outcome kNotOpened{false, TABRIN_STATUS_NOT_OPENED};
constexpr std::string_view kTwoMessages =
    "BO_ 1 First: 8 N\r\n SG_ S : 0|8@1+ (1,0) [0|0] \"\" N\r\nBO_ 2 Second: 8 N\r\n";

// A process of its own that ends with what `work` returns, and by a signal should it hang. It must not report to
// GoogleTest.
class Process {
public:
    explicit Process(const std::function<int()>& work) : id_(fork()) {
        if (id_ == 0) {
            alarm(300);
            _exit(work());
        }
    }
    // A test that fails leaves without having waited.
    ~Process() {
        if (id_ != 0) {
            ADD_FAILURE() << "nobody has waited for the process";
            End();
        }
    }
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;
    Process(Process&&) = delete;
    Process& operator=(Process&&) = delete;

    int Result() {
        int state = 0;
        EXPECT_EQ(waitpid(id_, &state, 0), id_);
        id_ = 0;
        return WIFEXITED(state) ? WEXITSTATUS(state) : -WTERMSIG(state);
    }
    // Until the system has it wait for something.
    void WaitUntilItSleeps() const {
        std::string id;
        std::string name;
        std::string state;
        do {
            std::ifstream status("/proc/" + std::to_string(id_) + "/stat");
            status >> id >> name >> state;
            ASSERT_TRUE(status.good()) << "nothing is known of process " << id_;
        } while (state != "S");
    }
    void End() {
        kill(id_, SIGKILL);
        EXPECT_EQ(Result(), -SIGKILL);
    }

private:
    pid_t id_;
};

// --- Rights -------------------------------------------------------------------------------------------------------

void MakeFile(const std::string& path, mode_t rights) {
    WriteBytes(path, kTwoMessages);
    ASSERT_EQ(chmod(path.c_str(), rights), 0);
}

class FileRights : public InterfaceTest {};
class ChangingFile : public InterfaceTest {};

struct RightsRow {
    const char* path;
    mode_t rights;
    bool isRead;
    bool isWritten;
};

constexpr RightsRow kRights[] = {
    {"secret.dbc", 0000, false, false},
    {"read_only.dbc", 0444, true, false},
    {"write_only.dbc", 0222, false, true},
    {"open.dbc", 0666, true, true},
};

TEST_F(FileRights, DecideWhatCanBeRead) {
    const CurrentFolder folder(TempPath("folder"));
    for (const RightsRow& row : kRights) {
        MakeFile(row.path, row.rights);
    }
    const OrdinaryUser user;
    if (!user.IsOrdinary()) {
        GTEST_SKIP() << kRightsKept;
    }
    for (const RightsRow& row : kRights) {
        SCOPED_TRACE(row.path);
        ASSERT_TRUE(AppendMessage(1, "Old"));
        EXPECT_EQ(ReadFile(row.path), row.isRead ? kDone : kNotOpened);
        EXPECT_EQ(NumMessages(), row.isRead ? 2U : 0U);
    }
}

TEST_F(FileRights, DecideWhatCanBeWritten) {
    const CurrentFolder folder(TempPath("folder"));
    for (const RightsRow& row : kRights) {
        MakeFile(row.path, row.rights);
    }
    ASSERT_TRUE(AppendMessage(1, "New"));
    {
        const OrdinaryUser user;
        if (!user.IsOrdinary()) {
            GTEST_SKIP() << kRightsKept;
        }
        for (const RightsRow& row : kRights) {
            SCOPED_TRACE(row.path);
            EXPECT_EQ(WriteFile(row.path, TABRIN_ORDER_DATABASE), row.isWritten ? kDone : kNotOpened);
            EXPECT_EQ(NumMessages(), 1U);
        }
    }
    for (const RightsRow& row : kRights) {
        SCOPED_TRACE(row.path);
        // Nobody but its owner may look into some of them.
        ASSERT_EQ(chmod(row.path, 0600), 0);
        EXPECT_EQ(ReadBytes(row.path) == kTwoMessages, !row.isWritten);
    }
}

TEST_F(FileRights, OfTheFolderDecideWhetherAFileCanBeMade) {
    const CurrentFolder folder(TempPath("folder"));
    ASSERT_EQ(chmod(".", 0555), 0);
    {
        const OrdinaryUser user;
        if (!user.IsOrdinary()) {
            GTEST_SKIP() << kRightsKept;
        }
        ASSERT_TRUE(AppendMessage(1, "New"));
        EXPECT_EQ(WriteFile("new.dbc", TABRIN_ORDER_DATABASE), kNotOpened);
    }
    ASSERT_EQ(chmod(".", 0755), 0);
    EXPECT_FALSE(std::filesystem::exists("new.dbc"));
}

// --- FIFOs --------------------------------------------------------------------------------------------------------

class Fifo : public InterfaceTest {
protected:
    void SetUp() override {
        InterfaceTest::SetUp();
        path_ = TempPath("fifo");
        unlink(path_.c_str());
        ASSERT_EQ(mkfifo(path_.c_str(), 0600), 0) << "no FIFO can be made in " << TABRIN_TEMP_DIR;
    }
    void TearDown() override {
        unlink(path_.c_str());
        InterfaceTest::TearDown();
    }

    std::string path_;
};

bool WriteAll(int descriptor, std::string_view bytes) {
    return write(descriptor, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size());
}

TEST_F(Fifo, WithoutAWriterReadsAsEmpty) {
    Process reader([&] {
        const Outcome outcome = ReadFile(path_);
        return outcome == kDone && NumMessages() == 0 && NumErrors() == 0 ? 0 : 1;
    });
    EXPECT_EQ(reader.Result(), 0) << "by a signal where it hangs";
}

TEST_F(Fifo, WithoutAReaderDoesNotOpenForWriting) {
    Process writer([&] {
        const bool made = AppendMessage(1, "M");
        return made && WriteFile(path_, TABRIN_ORDER_DATABASE) == kNotOpened ? 0 : 1;
    });
    EXPECT_EQ(writer.Result(), 0) << "by a signal where it hangs";
}

// Somebody who waits in opening is a writer already.
TEST_F(Fifo, IsReadToTheEndOfWhatASlowWriterWrites) {
    Process writer([&] {
        const int descriptor = open(path_.c_str(), O_WRONLY);
        bool written = descriptor != -1;
        for (size_t pos = 0; pos < kTwoMessages.size(); pos += 20) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
            written = written && WriteAll(descriptor, kTwoMessages.substr(pos, 20));
        }
        return written ? 0 : 1;
    });
    writer.WaitUntilItSleeps();
    EXPECT_EQ(ReadFile(path_), kDone);
    EXPECT_EQ(NumMessages(), 2U);
    EXPECT_EQ(NumSignals(0), 1U);
    EXPECT_EQ(writer.Result(), 0);
}

// The other end is held open here, so that it is there for sure.
TEST_F(Fifo, TakesAllThatIsWrittenAlsoByASlowReader) {
    const int reader = open(path_.c_str(), O_RDONLY | O_NONBLOCK);
    ASSERT_NE(reader, -1);
    constexpr uint32_t kMessages = 20000;  // many times what a pipe holds
    Process writer([&] {
        for (uint32_t i = 0; i < kMessages; ++i) {
            AppendMessage(i, "AMessageOfThisName");
        }
        return WriteFile(path_, TABRIN_ORDER_DATABASE) == kDone ? 0 : 1;
    });
    std::string bytes;
    char block[4096];
    // An end that comes before anything was written comes before the writer.
    for (ssize_t count = 0;
         (count = read(reader, block, sizeof block)) > 0 || bytes.empty() || (count == -1 && errno == EAGAIN);) {
        if (count > 0) {
            bytes.append(block, static_cast<size_t>(count));
        } else {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }
    close(reader);
    EXPECT_EQ(writer.Result(), 0);
    EXPECT_NE(bytes.find("BO_ 0 AMessageOfThisName: 8 Kestrune\r\n"), std::string::npos);
    EXPECT_TRUE(bytes.ends_with("BO_ " + std::to_string(kMessages - 1) + " AMessageOfThisName: 8 Kestrune\r\n\r\n"));
}

TEST_F(Fifo, WhoseReaderGoesAwayFailsOnTheWay) {
    const int reader = open(path_.c_str(), O_RDONLY | O_NONBLOCK);
    ASSERT_NE(reader, -1);
    Process writer([&] {
        std::signal(SIGPIPE, SIG_IGN);
        close(reader);
        const int own = open(path_.c_str(), O_RDONLY | O_NONBLOCK);
        std::thread goesAway([=] {
            char byte = 0;
            while (read(own, &byte, 1) != 1) {
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            }
            close(own);
        });
        for (uint32_t i = 0; i < 20000; ++i) {
            AppendMessage(i, "AMessageOfThisName");
        }
        const Outcome outcome = WriteFile(path_, TABRIN_ORDER_DATABASE);
        goesAway.join();
        return outcome == Outcome{false, TABRIN_STATUS_FAILED} ? 0 : 1;
    });
    close(reader);
    EXPECT_EQ(writer.Result(), 0);
}

// --- Files that change while they are read ------------------------------------------------------------------------

constexpr uint32_t kManyMessages = 20000;

std::string ManyMessages() {
    std::string text;
    for (uint32_t i = 0; i < kManyMessages; ++i) {
        text += "BO_ " + std::to_string(i) + " M: 8 N\r\n";
    }
    return text;
}

// Cuts the file somewhere and puts it back again, until it is ended.
int CutAndMend(const std::string& path, const std::string& text) {
    const int descriptor = open(path.c_str(), O_WRONLY);
    for (size_t i = 1;; ++i) {
        const size_t size = i * 7919 % text.size();
        const auto rest = static_cast<ssize_t>(text.size() - size);
        if (ftruncate(descriptor, static_cast<off_t>(size)) != 0) {
            return 1;
        }
        std::this_thread::sleep_for(std::chrono::microseconds(i % 16 * 250));
        if (pwrite(descriptor, text.data() + size, static_cast<size_t>(rest), static_cast<off_t>(size)) != rest) {
            return 2;
        }
        std::this_thread::sleep_for(std::chrono::microseconds(i % 16 * 250));
    }
}

TEST_F(ChangingFile, IsReadAsFarAsItGoes) {
    const std::string path = TempPath("dbc");
    const std::string text = ManyMessages();
    WriteBytes(path, text);
    Process cutter([&] { return CutAndMend(path, text); });
    int whole = 0;
    int cut = 0;
    for (int i = 0; i < 2000 && (i < 30 || cut == 0 || whole == 0); ++i) {
        ASSERT_EQ(ReadFile(path), kDone);
        const uint32_t count = NumMessages();
        ASSERT_LE(count, kManyMessages);
        // Nothing is said of what they are: where a file grows again, the system may show zeros for a moment.
        for (uint32_t m = 0; m < count; m += 500) {
            MessageAt(m);
        }
        ++(count == kManyMessages ? whole : cut);
    }
    cutter.End();
    EXPECT_GT(whole, 0);
    EXPECT_GT(cut, 0) << "the file was never cut while it was read";
    std::filesystem::remove(path);
}

}  // namespace
}  // namespace tabrin_test
