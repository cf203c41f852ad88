// Faults of the operating system at will. The test program has open, read, write and close of its own, which come
// before those of the C library: they do what a test asks for, and pass everything else on to the system.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace tabrin {

enum class SystemCall { Open, Read, Write, Close };

// What one call does instead of its usual work.
struct SystemFault {
    int error = 0;           // fails with that errno; 0 for success
    size_t most = SIZE_MAX;  // of the bytes asked for, reads or writes no more than these
};

constexpr SystemFault Fails(int error) {
    return {error, 0};
}

// A call that moves at most so many bytes: with 0, an early end of the file or a write that takes nothing.
constexpr SystemFault Moves(size_t most) {
    return {0, most};
}

inline constexpr SystemFault kWorks{};

// As long as one lives, descriptors that are opened are watched: the faults befall these only, and reads and writes are
// counted for these only. Whoever opens files by other means than open(), such as a stream of the standard library, has
// nothing to do with it. There can be one at a time, in one thread.
class SystemFaults {
public:
    SystemFaults();
    ~SystemFaults();
    SystemFaults(const SystemFaults&) = delete;
    SystemFaults& operator=(const SystemFaults&) = delete;
    SystemFaults(SystemFaults&&) = delete;
    SystemFaults& operator=(SystemFaults&&) = delete;

    // What the next calls do, one after the other. Those that come later work, or do as `ever` says.
    void Script(SystemCall call, std::vector<SystemFault> faults, SystemFault ever = kWorks);

    [[nodiscard]] size_t Calls(SystemCall call) const { return Of(call).calls; }
    // Whether all of the script has been played. Where it has not, the test has not tested what it meant to.
    [[nodiscard]] bool IsPlayed(SystemCall call) const { return Of(call).calls >= Of(call).faults.size(); }

    // How many descriptors have been opened, and how many of them are still open.
    [[nodiscard]] size_t Opened() const { return opened_; }
    [[nodiscard]] size_t StillOpen() const { return watched_.size(); }
    // How often something was closed that was not open: another file of the program, if it had been opened meanwhile.
    [[nodiscard]] size_t StrayCloses() const { return strayCloses_; }
    // The flags of the last open.
    [[nodiscard]] int OpenFlags() const { return openFlags_; }

    // For the calls themselves. On failure errno is set.
    int Open(const char* path, int flags, unsigned mode);
    ptrdiff_t Read(int descriptor, void* buffer, size_t size);
    ptrdiff_t Write(int descriptor, const void* buffer, size_t size);
    int Close(int descriptor);

private:
    struct Calling {
        std::vector<SystemFault> faults;
        SystemFault ever;
        size_t calls = 0;
    };

    [[nodiscard]] const Calling& Of(SystemCall call) const { return callings_[static_cast<size_t>(call)]; }
    SystemFault NextFault(SystemCall call);
    [[nodiscard]] bool IsWatched(int descriptor) const;

    Calling callings_[4];
    std::vector<int> watched_;
    size_t opened_ = 0;
    size_t strayCloses_ = 0;
    int openFlags_ = 0;
};

}  // namespace tabrin
