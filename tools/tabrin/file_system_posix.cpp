#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "file_system.h"

namespace tabrin_tool {

namespace {

constexpr mode_t kReadAndWrite = 0666;

bool Done(bool success, std::string& reason) {
    if (!success) {
        reason = std::strerror(errno);
    }
    return success;
}

// Not every file system and kernel can refuse to replace in the same step; then the name is looked at in front of it.
bool MoveWithoutReplacing(const char* from, const char* to) {
    if (renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE) == 0) {
        return true;
    }
    if (errno != EINVAL && errno != ENOSYS) {
        return false;
    }
    if (access(to, F_OK) == 0) {
        errno = EEXIST;
        return false;
    }
    return std::rename(from, to) == 0;
}

}  // namespace

bool CreateNewFile(const std::filesystem::path& path, std::string& reason) {
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kReadAndWrite);
    return Done(file >= 0 && close(file) == 0, reason);
}

bool FlushFileToDisk(const std::filesystem::path& path, std::string& reason) {
    const int file = open(path.c_str(), O_RDWR | O_CLOEXEC);
    if (file < 0) {
        return Done(false, reason);
    }
    // EINVAL: the file system has nothing to wait for.
    const bool flushed = Done(fsync(file) == 0 || errno == EINVAL, reason);
    return Done(close(file) == 0, reason) && flushed;
}

bool MoveIntoPlace(const std::filesystem::path& from, const std::filesystem::path& to, bool replace,
                   std::string& reason) {
    return Done(replace ? std::rename(from.c_str(), to.c_str()) == 0 : MoveWithoutReplacing(from.c_str(), to.c_str()),
                reason);
}

unsigned long ProcessNumber() {
    return static_cast<unsigned long>(getpid());
}

}  // namespace tabrin_tool
