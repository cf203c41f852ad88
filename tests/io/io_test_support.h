// What the tests of the input and output layer share: files of their own and texts that can be read when a row fails.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "io/text_number.h"
#include "random.h"
#include "shown.h"

#ifndef TABRIN_TEMP_DIR
#define TABRIN_TEMP_DIR "."
#endif

namespace tabrin {

using namespace std::string_view_literals;

inline std::filesystem::path AsPath(std::string_view utf8) {
    return std::u8string(utf8.begin(), utf8.end());
}

// A path in the folder for temporary files, as UTF-8, that no other test uses.
inline std::string TempPath(std::string_view name) {
    const testing::TestInfo* test = testing::UnitTest::GetInstance()->current_test_info();
    return std::string(TABRIN_TEMP_DIR) + "/io." + test->test_suite_name() + '.' + test->name() + '.' +
           std::string(name);
}

inline void WriteBytes(const std::string& path, std::string_view bytes) {
    std::ofstream file(AsPath(path), std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    ASSERT_TRUE(file.good()) << "cannot write " << path;
}

inline std::string ReadBytes(const std::string& path) {
    std::ifstream file(AsPath(path), std::ios::binary);
    EXPECT_TRUE(file.is_open()) << "cannot read " << path;
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// A file with that content, as long as the object lives.
class TempFile {
public:
    explicit TempFile(std::string_view bytes, std::string_view name = "dbc") : path_(TempPath(name)) {
        WriteBytes(path_, bytes);
    }
    ~TempFile() {
        std::error_code ignored;
        std::filesystem::remove(AsPath(path_), ignored);
    }
    TempFile(const TempFile&) = delete;
    TempFile& operator=(const TempFile&) = delete;
    TempFile(TempFile&&) = delete;
    TempFile& operator=(TempFile&&) = delete;

    [[nodiscard]] const std::string& Path() const { return path_; }

private:
    std::string path_;
};

// The number as files have it.
template <typename Number>
void AppendNumber(std::string& text, Number value) {
    char buffer[kLongestNumber];
    text.append(buffer, FormatNumber(buffer, value));
}

}  // namespace tabrin
