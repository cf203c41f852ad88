// Real files, where the folder that holds them is there. They are read in place and never copied.
#pragma once

#include <algorithm>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include "abi/interface_test.h"

#ifndef TABRIN_CORPUS_DIR
#define TABRIN_CORPUS_DIR "../shared/corpus"
#endif

namespace tabrin_test {

class CorpusTest : public InterfaceTest {
protected:
    void SetUp() override {
        InterfaceTest::SetUp();
        std::error_code error;
        if (!std::filesystem::is_directory(FilePath(TABRIN_CORPUS_DIR), error)) {
            GTEST_SKIP() << "no folder " TABRIN_CORPUS_DIR ": the tests over real files have none";
        }
        for (const auto& entry : std::filesystem::directory_iterator(FilePath(TABRIN_CORPUS_DIR))) {
            if (entry.path().extension() == ".dbc") {
                names_.push_back(entry.path().filename().string());
            }
        }
        std::sort(names_.begin(), names_.end());
        ASSERT_FALSE(names_.empty()) << "no files in " TABRIN_CORPUS_DIR;
    }

    static std::string PathOf(const std::string& name) { return std::string(TABRIN_CORPUS_DIR) + "/" + name; }

    [[nodiscard]] bool HasFile(const std::string& name) const {
        return std::binary_search(names_.begin(), names_.end(), name);
    }

    std::vector<std::string> names_;
};

}  // namespace tabrin_test
