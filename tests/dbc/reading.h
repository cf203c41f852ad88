// Reads DBC text from memory, by way of a temporary file that is gone again afterwards.
#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <ios>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>

#include "dbc/dbc_reader.h"
#include "io/dbc_file_stream.h"
#include "model/can_database.h"

#ifndef TABRIN_TEMP_DIR
#define TABRIN_TEMP_DIR "."
#endif

namespace tabrin {

// The path of a file that does not exist yet: another one for every call and, by a random part, for every process.
inline std::string UnusedPath() {
    static const uint32_t process = std::random_device()();
    static uint32_t call = 0;
    std::string path;
    do {
        path = TABRIN_TEMP_DIR "/reading_" + std::to_string(process) + "_" + std::to_string(++call) + ".dbc";
    } while (std::filesystem::exists(path));
    return path;
}

// A file with exactly these bytes, for as long as the object lives.
class TemporaryFile {
public:
    explicit TemporaryFile(std::string_view bytes) : path_(UnusedPath()) {
        std::ofstream file(path_, std::ios::binary);
        file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        file.close();
        if (!file) {
            // No expectation could tell this from a file that reads badly.
            throw std::runtime_error("cannot write " + path_);
        }
    }
    ~TemporaryFile() { std::remove(path_.c_str()); }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    TemporaryFile(TemporaryFile&&) = delete;
    TemporaryFile& operator=(TemporaryFile&&) = delete;

    [[nodiscard]] const std::string& Path() const { return path_; }

private:
    std::string path_;
};

// Path buffers of 261 bytes and more are refused, so this is as large as one gets.
inline constexpr uint32_t kPathBufferSize = 260;

// Reads the text as a file of its own into the database. The bytes pass unchanged, NULs and line ends included.
inline bool ReadText(CANDatabase& database, std::string_view text, FileStatus* status = nullptr) {
    const TemporaryFile file(text);
    FileStatus result = FileStatus::Closed;
    const bool done = ReadDbcFile(database, file.Path().c_str(), kPathBufferSize, result);
    if (status != nullptr) {
        *status = result;
    }
    return done;
}

}  // namespace tabrin
