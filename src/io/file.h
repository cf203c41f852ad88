// A file opened by its UTF-8 path, read in blocks and written in one piece a line. Bytes pass unchanged: line ends are
// the business of the layers above, so that they are the same on every platform.
//
// One source for each platform implements it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tabrin {

class File {
public:
    File() = default;
    ~File() { Close(); }
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    File(File&&) = delete;
    File& operator=(File&&) = delete;

    // Both fail on a directory. Other programs may go on reading and writing the file.
    bool OpenForReading(const std::string& path);
    // Creates the file, or empties it when it exists.
    bool OpenForWriting(const std::string& path);

    // Reads up to `size` bytes; `count` 0 with a true result is the end of the file.
    bool Read(char* buffer, size_t size, size_t& count);
    // Hands everything to the operating system at once; false when not all of it was taken.
    bool Write(std::string_view bytes);

    // False when the operating system reports, only now, that something written was lost.
    bool Close();

private:
    static constexpr intptr_t kNone = -1;
    // A file descriptor or a handle; both have -1 for none.
    intptr_t handle_ = kNone;
};

}  // namespace tabrin
