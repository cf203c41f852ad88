#include "io/system_faults_posix.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdlib>
#include <stdexcept>
#include <utility>

namespace tabrin {

namespace {

SystemFaults* armed = nullptr;

// The call that ours hides: the C library's or, where a sanitizer has one that checks the buffers, the sanitizer's.
template <typename Function>
Function* Hidden(const char* name) {
    void* const found = dlsym(RTLD_NEXT, name);
    if (found == nullptr) {
        std::abort();
    }
    return reinterpret_cast<Function*>(found);
}

int SystemOpen(const char* path, int flags, unsigned mode) {
    static const auto call = Hidden<int(const char*, int, ...)>("open");
    return call(path, flags, mode);
}

ssize_t SystemRead(int descriptor, void* buffer, size_t size) {
    static const auto call = Hidden<ssize_t(int, void*, size_t)>("read");
    return call(descriptor, buffer, size);
}

ssize_t SystemWrite(int descriptor, const void* buffer, size_t size) {
    static const auto call = Hidden<ssize_t(int, const void*, size_t)>("write");
    return call(descriptor, buffer, size);
}

int SystemClose(int descriptor) {
    static const auto call = Hidden<int(int)>("close");
    return call(descriptor);
}

int FailWith(int error) {
    errno = error;
    return -1;
}

}  // namespace

SystemFaults::SystemFaults() {
    if (armed != nullptr) {
        throw std::logic_error("faults are armed already");
    }
    armed = this;
}

SystemFaults::~SystemFaults() {
    armed = nullptr;
    for (const int descriptor : watched_) {
        SystemClose(descriptor);
    }
}

void SystemFaults::Script(SystemCall call, std::vector<SystemFault> faults, SystemFault ever) {
    callings_[static_cast<size_t>(call)] = {std::move(faults), ever, 0};
}

SystemFault SystemFaults::NextFault(SystemCall call) {
    Calling& calling = callings_[static_cast<size_t>(call)];
    const size_t index = calling.calls++;
    return index < calling.faults.size() ? calling.faults[index] : calling.ever;
}

bool SystemFaults::IsWatched(int descriptor) const {
    return std::find(watched_.begin(), watched_.end(), descriptor) != watched_.end();
}

int SystemFaults::Open(const char* path, int flags, unsigned mode) {
    openFlags_ = flags;
    const SystemFault fault = NextFault(SystemCall::Open);
    if (fault.error != 0) {
        return FailWith(fault.error);
    }
    const int descriptor = SystemOpen(path, flags, mode);
    if (descriptor != -1) {
        ++opened_;
        watched_.push_back(descriptor);
    }
    return descriptor;
}

ptrdiff_t SystemFaults::Read(int descriptor, void* buffer, size_t size) {
    const SystemFault fault = IsWatched(descriptor) ? NextFault(SystemCall::Read) : kWorks;
    return fault.error != 0 ? FailWith(fault.error) : SystemRead(descriptor, buffer, std::min(size, fault.most));
}

ptrdiff_t SystemFaults::Write(int descriptor, const void* buffer, size_t size) {
    const SystemFault fault = IsWatched(descriptor) ? NextFault(SystemCall::Write) : kWorks;
    return fault.error != 0 ? FailWith(fault.error) : SystemWrite(descriptor, buffer, std::min(size, fault.most));
}

int SystemFaults::Close(int descriptor) {
    const auto found = std::find(watched_.begin(), watched_.end(), descriptor);
    if (found == watched_.end()) {
        ++strayCloses_;
        return SystemClose(descriptor);
    }
    watched_.erase(found);
    // Like the system's, a close that fails has nevertheless given the descriptor up.
    const SystemFault fault = NextFault(SystemCall::Close);
    const int result = SystemClose(descriptor);
    return fault.error != 0 ? FailWith(fault.error) : result;
}

}  // namespace tabrin

// The library's own calls arrive here because the program's definitions win over those of shared libraries, the runtime
// of a sanitizer included. They must be visible: the C++ runtime is served by them too.
#define TABRIN_TAKES_CALLS extern "C" __attribute__((visibility("default")))

TABRIN_TAKES_CALLS int open(const char* path, int flags, ...) {
    unsigned mode = 0;
    if ((flags & O_CREAT) != 0) {
        va_list rest;
        va_start(rest, flags);
        mode = va_arg(rest, unsigned);
        va_end(rest);
    }
    return tabrin::armed != nullptr ? tabrin::armed->Open(path, flags, mode) : tabrin::SystemOpen(path, flags, mode);
}

TABRIN_TAKES_CALLS ssize_t read(int descriptor, void* buffer, size_t size) {
    return tabrin::armed != nullptr ? tabrin::armed->Read(descriptor, buffer, size)
                                    : tabrin::SystemRead(descriptor, buffer, size);
}

TABRIN_TAKES_CALLS ssize_t write(int descriptor, const void* buffer, size_t size) {
    return tabrin::armed != nullptr ? tabrin::armed->Write(descriptor, buffer, size)
                                    : tabrin::SystemWrite(descriptor, buffer, size);
}

TABRIN_TAKES_CALLS int close(int descriptor) {
    return tabrin::armed != nullptr ? tabrin::armed->Close(descriptor) : tabrin::SystemClose(descriptor);
}
