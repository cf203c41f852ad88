// A limit on the size of files, which stands for a full disk.
#pragma once

#include <sys/resource.h>

#include <csignal>
#include <cstddef>

namespace tabrin_test {

// Lets no file of this process grow beyond a size, for as long as the object lives. Report nothing meanwhile: the limit
// holds for the report of the tests as well.
class FileSizeLimit {
public:
    explicit FileSizeLimit(size_t size) {
        // Otherwise the system ends the process at the limit.
        handler_ = std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &before_);
        rlimit limit = before_;
        limit.rlim_cur = size;
        isSet_ = setrlimit(RLIMIT_FSIZE, &limit) == 0;
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, handler_);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;
    FileSizeLimit(FileSizeLimit&&) = delete;
    FileSizeLimit& operator=(FileSizeLimit&&) = delete;

    [[nodiscard]] bool IsSet() const { return isSet_; }

private:
    void (*handler_)(int) = SIG_DFL;
    rlimit before_{};
    bool isSet_ = false;
};

}  // namespace tabrin_test
