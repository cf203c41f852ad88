#include "io/system_call_count.h"
#include "io/system_faults_posix.h"

namespace tabrin {

// Faults that never befall anything.
struct SystemCallCount::Calls {
    SystemFaults faults;
};

SystemCallCount::SystemCallCount() : calls_(std::make_unique<Calls>()) {}

SystemCallCount::~SystemCallCount() = default;

size_t SystemCallCount::Reads() const {
    return calls_->faults.Calls(SystemCall::Read);
}

size_t SystemCallCount::Writes() const {
    return calls_->faults.Calls(SystemCall::Write);
}

}  // namespace tabrin
