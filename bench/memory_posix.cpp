// Resident memory of a process that reads a file, walks it and clears the database: one child process for each size, so
// that nothing else has grown the heap before.
#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "dbc_generator.h"
#include "files.h"
#include "library_calls.h"

namespace tabrin::bench {

namespace {

constexpr double kMegabyte = 1e6;

// A line of /proc/self/status, in bytes. Read without streams: their buffers would be memory too.
double StatusBytes(const char* name) {
    std::FILE* file = std::fopen("/proc/self/status", "r");
    if (file == nullptr) {
        GiveUp("no /proc/self/status");
    }
    std::array<char, 256> line{};
    double kilobytes = -1;
    while (kilobytes < 0 && std::fgets(line.data(), static_cast<int>(line.size()), file) != nullptr) {
        if (std::strncmp(line.data(), name, std::strlen(name)) == 0) {
            kilobytes = std::strtod(line.data() + std::strlen(name) + 1, nullptr);
        }
    }
    std::fclose(file);
    if (kilobytes < 0) {
        GiveUp(std::string("no ") + name + " in /proc/self/status");
    }
    return 1024 * kilobytes;
}

double Allocated() {
    const struct mallinfo2 information = mallinfo2();
    return static_cast<double>(information.uordblks + information.hblkhd);
}

void MeasureInChild(const std::string& path) {
    const auto fileSize = static_cast<double>(std::filesystem::file_size(path));
    const double allocatedBefore = Allocated();
    const double before = StatusBytes("VmRSS");
    Read(path);
    const double peak = StatusBytes("VmHWM");
    const double held = StatusBytes("VmRSS");
    const Counts counts = Walk();
    Clear();
    const double cleared = StatusBytes("VmRSS");
    const double allocatedAfter = Allocated();
    Read(path);
    Clear();
    const double peakOfTwo = StatusBytes("VmHWM");
    if (counts.messages == 0) {
        GiveUp("nothing was read");
    }
    std::printf("%9.2f %10.2f %10.2f %12.2f %14.3f %12.2f %15.2f\n", fileSize / kMegabyte, (peak - before) / fileSize,
                (held - before) / fileSize, (cleared - before) / kMegabyte, (allocatedAfter - allocatedBefore) / 1e3,
                before / kMegabyte, (peakOfTwo - before) / fileSize);
}

void RunChild(const char* program, const std::string& path) {
    std::fflush(stdout);
    const pid_t child = fork();
    if (child == 0) {
        execl("/proc/self/exe", program, path.c_str(), static_cast<char*>(nullptr));
        _exit(127);
    }
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child || status != 0) {
        GiveUp("the child process failed");
    }
}

void Main(const char* program) {
    const FilesFolder folder("memory_files");
    std::printf(
        "Growth of resident memory in bytes per byte of file, for the usual mix; goal: a peak of at most 6.\n\n"
        "%9s %10s %10s %12s %14s %12s %15s\n%9s %10s %10s %12s %14s %12s %15s\n",
        "file", "peak", "after", "resident", "allocated", "resident", "peak of reading", "MB", "reading", "reading",
        "cleared, MB", "cleared, KB", "before, MB", "a second time");
    for (const size_t size : {100'000U, 1'000'000U, 10'000'000U, 100'000'000U}) {
        Save("mix.dbc", UsualMix(size));
        RunChild(program, "mix.dbc");
    }
    std::printf(
        "\n\"Cleared\" is what is left above the state before the first reading: as resident memory, which the "
        "allocator\n"
        "keeps for the next database, and as memory that the library has not given back to the allocator.\n"
        "A small file has a high figure because every reading costs some memory once, for code, buffers and the "
        "heap.\n");
}

}  // namespace

}  // namespace tabrin::bench

int main(int argc, char** argv) {
    if (argc > 1) {
        tabrin::bench::MeasureInChild(argv[1]);
    } else {
        tabrin::bench::Main(argv[0]);
    }
}
