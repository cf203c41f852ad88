#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "io/file.h"

namespace tabrin {

namespace {

// A signal of the host program must not turn into a failure of ours.
template <typename Call>
auto Retried(Call call) {
    auto result = call();
    while (result == -1 && errno == EINTR) {
        result = call();
    }
    return result;
}

// Programs that the host starts do not inherit the file, and a terminal does not become the host's own.
constexpr int kAlways = O_CLOEXEC | O_NOCTTY;

bool IsDirectory(int descriptor) {
    struct stat information {};
    return fstat(descriptor, &information) == 0 && S_ISDIR(information.st_mode);
}

bool IsFifo(const char* path) {
    struct stat information {};
    return stat(path, &information) == 0 && S_ISFIFO(information.st_mode);
}

// A FIFO would not open before somebody opens its other end, which may be never. It is opened as it is at the moment:
// without a writer it is at its end at once, and without a reader it does not open. Whoever is there is waited for
// afterwards.
int OpenAtOnce(const std::string& path, int flags) {
    constexpr mode_t kReadWriteForAll = 0666;
    const bool isFifo = IsFifo(path.c_str());
    const int allFlags = flags | kAlways | (isFifo ? O_NONBLOCK : 0);
    const int descriptor = Retried([&] { return open(path.c_str(), allFlags, kReadWriteForAll); });
    if (isFifo) {
        fcntl(descriptor, F_SETFL, 0);
    }
    return descriptor;
}

}  // namespace

bool File::OpenForReading(const std::string& path) {
    handle_ = OpenAtOnce(path, O_RDONLY);
    // Unlike everywhere else, a directory opens here, and only reading it would fail.
    if (handle_ != kNone && IsDirectory(static_cast<int>(handle_))) {
        Close();
    }
    return handle_ != kNone;
}

bool File::OpenForWriting(const std::string& path) {
    handle_ = OpenAtOnce(path, O_WRONLY | O_CREAT | O_TRUNC);
    return handle_ != kNone;
}

bool File::Read(char* buffer, size_t size, size_t& count) {
    const ssize_t result = Retried([&] { return read(static_cast<int>(handle_), buffer, size); });
    count = result > 0 ? static_cast<size_t>(result) : 0;
    return result >= 0;
}

bool File::Write(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t result = Retried([&] { return write(static_cast<int>(handle_), bytes.data(), bytes.size()); });
        if (result <= 0) {
            return false;
        }
        bytes.remove_prefix(static_cast<size_t>(result));
    }
    return true;
}

bool File::Close() {
    if (handle_ == kNone) {
        return true;
    }
    const int descriptor = static_cast<int>(handle_);
    handle_ = kNone;
    // Not retried: the descriptor is gone whatever the result.
    return close(descriptor) == 0 || errno == EINTR;
}

}  // namespace tabrin
