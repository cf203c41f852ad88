// Runs the checks of the fuzz targets with the inputs that are kept: the seeds, among them whatever was a finding once,
// and the corpora that fuzzing has gathered.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/check.h"

#ifndef TABRIN_FUZZ_DIR
#define TABRIN_FUZZ_DIR "../fuzz"
#endif

#ifndef TABRIN_TEMP_DIR
#define TABRIN_TEMP_DIR "."
#endif

namespace tabrin_fuzz {

// The files of a folder, in the same order everywhere.
inline std::vector<std::filesystem::path> SavedInputs(const std::string& folder, const std::string& target) {
    std::vector<std::filesystem::path> files;
    std::error_code error;
    const std::filesystem::path path = std::filesystem::path(TABRIN_FUZZ_DIR) / folder / target;
    for (const auto& entry : std::filesystem::directory_iterator(path, error)) {
        files.push_back(entry.path());
    }
    EXPECT_FALSE(error) << "no folder " << path.string();
    EXPECT_GE(files.size(), 5U) << "hardly any inputs in " << path.string();
    std::sort(files.begin(), files.end());
    return files;
}

inline std::string InputOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file.is_open()) << "cannot read " << path.string();
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

template <typename Check>
void ReplaySavedInputs(const std::string& target, Check check) {
    for (const char* folder : {"seeds", "corpus"}) {
        for (const std::filesystem::path& path : SavedInputs(folder, target)) {
            SCOPED_TRACE(path.string());
            try {
                check(InputOf(path));
            } catch (const Failure& failure) {
                ADD_FAILURE() << failure.what();
            }
        }
    }
}

// A file for the checks to write to.
inline std::string ReplayPath(const std::string& target) {
    return std::string(TABRIN_TEMP_DIR) + "/" + target + ".replay";
}

}  // namespace tabrin_fuzz
