#ifndef NOMINMAX
#define NOMINMAX
#endif
#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <stdexcept>
#include <vector>

#include "io/system_call_count.h"

namespace tabrin {

namespace {

using ReadFunction = decltype(&ReadFile);
using WriteFunction = decltype(&WriteFile);

// The system's functions, which ours hide and pass everything on to.
ReadFunction systemRead = nullptr;
WriteFunction systemWrite = nullptr;

size_t reads = 0;
size_t writes = 0;

BOOL WINAPI CountedRead(HANDLE file, void* buffer, DWORD size, DWORD* count, OVERLAPPED* overlapped) {
    ++reads;
    return systemRead(file, buffer, size, count, overlapped);
}

BOOL WINAPI CountedWrite(HANDLE file, const void* buffer, DWORD size, DWORD* count, OVERLAPPED* overlapped) {
    ++writes;
    return systemWrite(file, buffer, size, count, overlapped);
}

template <typename Target>
Target* At(size_t offset) {
    return reinterpret_cast<Target*>(reinterpret_cast<char*>(GetModuleHandleW(nullptr)) + offset);
}

ULONG_PTR AddressOf(const char* function) {
    return reinterpret_cast<ULONG_PTR>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), function));
}

void Store(ULONG_PTR* place, ULONG_PTR value) {
    DWORD protection = 0;
    if (VirtualProtect(place, sizeof *place, PAGE_READWRITE, &protection) == 0) {
        throw std::runtime_error("the table of imported functions cannot be written");
    }
    *place = value;
    VirtualProtect(place, sizeof *place, protection, &protection);
}

// Where this program, which the library's objects are part of, keeps the addresses of the functions that it imports. The C
// runtime is a program of its own in that respect, so what a stream of the standard library does passes by.
std::vector<ULONG_PTR*> ImportsOf(ULONG_PTR function) {
    const auto* const headers = At<IMAGE_NT_HEADERS>(static_cast<size_t>(At<IMAGE_DOS_HEADER>(0)->e_lfanew));
    const IMAGE_DATA_DIRECTORY& table = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    std::vector<ULONG_PTR*> places;
    for (const auto* library = At<IMAGE_IMPORT_DESCRIPTOR>(table.VirtualAddress); library->FirstThunk != 0; ++library) {
        for (auto* place = At<ULONG_PTR>(library->FirstThunk); *place != 0; ++place) {
            if (*place == function) {
                places.push_back(place);
            }
        }
    }
    return places;
}

// Puts one function in the place of another.
class Replacement {
public:
    template <typename Function>
    Replacement(const char* name, Function*& system, Function* ours)
        : original_(AddressOf(name)), places_(ImportsOf(original_)) {
        if (places_.empty()) {
            throw std::runtime_error(std::string("this program does not import ") + name);
        }
        system = reinterpret_cast<Function*>(original_);
        for (ULONG_PTR* const place : places_) {
            Store(place, reinterpret_cast<ULONG_PTR>(ours));
        }
    }
    ~Replacement() {
        for (ULONG_PTR* const place : places_) {
            Store(place, original_);
        }
    }
    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;
    Replacement(Replacement&&) = delete;
    Replacement& operator=(Replacement&&) = delete;

private:
    ULONG_PTR original_;
    std::vector<ULONG_PTR*> places_;
};

}  // namespace

struct SystemCallCount::Calls {
    Replacement read{"ReadFile", systemRead, &CountedRead};
    Replacement write{"WriteFile", systemWrite, &CountedWrite};
};

SystemCallCount::SystemCallCount() : calls_(std::make_unique<Calls>()) {
    reads = writes = 0;
}

SystemCallCount::~SystemCallCount() = default;

size_t SystemCallCount::Reads() const {
    return reads;
}

size_t SystemCallCount::Writes() const {
    return writes;
}

}  // namespace tabrin
