// How often the operating system is asked to read and to write. Time would tell less: how dear a call is depends on the
// system, how many there are does not.
//
// One source for each platform implements it.
#pragma once

#include <cstddef>
#include <memory>

namespace tabrin {

// Counts from its making on what the library's objects in this program do. Files must be opened meanwhile to count, and
// nothing else may use files meanwhile. There can be one at a time, in one thread.
class SystemCallCount {
public:
    SystemCallCount();
    ~SystemCallCount();
    SystemCallCount(const SystemCallCount&) = delete;
    SystemCallCount& operator=(const SystemCallCount&) = delete;
    SystemCallCount(SystemCallCount&&) = delete;
    SystemCallCount& operator=(SystemCallCount&&) = delete;

    [[nodiscard]] size_t Reads() const;
    [[nodiscard]] size_t Writes() const;

private:
    struct Calls;
    std::unique_ptr<Calls> calls_;
};

}  // namespace tabrin
