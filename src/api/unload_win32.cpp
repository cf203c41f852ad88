#include <cstddef>

// The C++ runtime is part of the DLL, and keeps some memory for exceptions that tell of memory having run out. It
// leaves that to the end of the process, but a DLL can be unloaded long before, and loaded again: 73 KB were lost each
// time.
#ifdef __GLIBCXX__
namespace __gnu_cxx {
void __freeres();
}

namespace {

class MemoryForExceptions {
public:
    MemoryForExceptions() = default;
    ~MemoryForExceptions() { __gnu_cxx::__freeres(); }
    MemoryForExceptions(const MemoryForExceptions&) = delete;
    MemoryForExceptions& operator=(const MemoryForExceptions&) = delete;
    MemoryForExceptions(MemoryForExceptions&&) = delete;
    MemoryForExceptions& operator=(MemoryForExceptions&&) = delete;
};

const MemoryForExceptions memoryForExceptions;

}  // namespace
#endif
