// Failures that only this kind of system can be made to show.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "abi/address_sanitizer.h"
#include "abi/interface_test.h"

namespace tabrin_test {
namespace {

class ReadFailure : public InterfaceTest {};

// The memory of this process can be opened for reading; reading it at address 0 fails.
TEST_F(ReadFailure, ThatComesAfterOpeningIsStatus8) {
    const std::string path = "/proc/self/mem";
    if (access(path.c_str(), R_OK) != 0) {
        GTEST_SKIP() << path << " cannot be opened here, so there is no file whose reading fails";
    }
    ASSERT_TRUE(AppendMessage(1, "Old"));
    EXPECT_EQ(ReadFile(path), (Outcome{false, 8}));
    EXPECT_EQ(DumpDatabase(), "info 0 0\n");
}

// A file of 1 GiB without a line end needs 1 GiB of memory. The limit would hold for the tests that follow as well, so
// a process of its own goes through this. It ends with the status, or 100 where the result was not false.
TEST_F(ReadFailure, OfMemoryRunningOutIsStatus8) {
#ifdef TABRIN_ADDRESS_SANITIZER
    GTEST_SKIP() << "the address sanitizer needs more address space than the limit of this test leaves";
#else
    const std::string path = TempPath("dbc");
    WriteBytes(path, "BO_ 1 M: 8 N\n");
    std::filesystem::resize_file(path, uint64_t{1} << 30);  // takes no space on the disk
    const pid_t child = fork();
    ASSERT_NE(child, -1);
    if (child == 0) {
        const rlimit limit{rlim_t{512} << 20, rlim_t{512} << 20};
        if (setrlimit(RLIMIT_AS, &limit) != 0) {
            _exit(101);
        }
        const Outcome outcome = ReadFile(path);
        // The library still works.
        const bool usable = Library().ClearData() && AppendMessage(1, "M") && NumMessages() == 1;
        _exit(outcome.result ? 100 : usable ? static_cast<int>(outcome.status) : 102);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    std::filesystem::remove(path);
    ASSERT_TRUE(WIFEXITED(status)) << "the process was ended by signal " << WTERMSIG(status);
    EXPECT_EQ(WEXITSTATUS(status), 8);
#endif
}

}  // namespace
}  // namespace tabrin_test
