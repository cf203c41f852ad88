// What the fuzz targets share.
#pragma once

#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>

#include "fuzz/check.h"

namespace tabrin_fuzz {

// A file in memory where there is such a folder; the process number tells apart what runs side by side.
class ScratchFile {
public:
    ScratchFile() {
        const std::filesystem::path memory = "/dev/shm";
        const bool inMemory = access(memory.c_str(), W_OK) == 0;
        const std::filesystem::path folder = inMemory ? memory : std::filesystem::temp_directory_path();
        path_ = (folder / ("tabrin_fuzz_" + std::to_string(getpid()))).string();
    }
    ~ScratchFile() { unlink(path_.c_str()); }
    ScratchFile(const ScratchFile&) = delete;
    ScratchFile& operator=(const ScratchFile&) = delete;
    ScratchFile(ScratchFile&&) = delete;
    ScratchFile& operator=(ScratchFile&&) = delete;

    [[nodiscard]] const std::string& Path() const { return path_; }

private:
    std::string path_;
};

inline const std::string& ScratchPath() {
    static const ScratchFile file;
    return file.Path();
}

// A check that does not hold ends the process, as the fuzzer expects it of a finding.
template <typename Check>
int RunCheck(const uint8_t* data, size_t size, Check check) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    try {
        check(bytes);
    } catch (const Failure& failure) {
        std::fprintf(stderr, "FINDING: %s\n", failure.what());
        unlink(ScratchPath().c_str());
        std::abort();
    }
    return 0;
}

}  // namespace tabrin_fuzz
