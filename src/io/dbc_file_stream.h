// A DBC file, open for reading statements or for writing lines, and the status that callers are told.
#pragma once

#include <cstdint>
#include <string_view>

#include "io/file.h"
#include "io/line_buffer.h"
#include "io/line_text.h"
#include "io/statement_cutter.h"

namespace tabrin {

enum class FileStatus : uint32_t {
    Reading = 0,
    Writing = 1,
    Closed = 2,
    PathTooLong = 3,
    PathInvalid = 4,
    PathEmpty = 5,
    NotOpened = 6,
    Failed = 8,
    EndOfFile = 9
};

enum class OpenMode { Read, Write };

class DbcFileStream {
public:
    // `path` is UTF-8 in a buffer of that size; nullptr counts as empty. The outcome is the status.
    void Open(const char* path, uint32_t pathBufferSize, OpenMode mode);

    [[nodiscard]] FileStatus Status() const { return status_; }

    // Reading: goes on to the next statement, false when there is none. A statement may be handed over together with a
    // status that is no longer Reading.
    bool NextStatement();
    [[nodiscard]] std::string_view Statement() const { return cutter_.Text(); }
    [[nodiscard]] StatementKind Kind() const { return cutter_.Keyword().kind; }
    [[nodiscard]] uint32_t LineNumber() const { return cutter_.LinesRead(); }

    // Writing: a line is composed in the text that StartLine hands out, and WriteLine hands it to the operating system.
    // Nothing is written once a line has failed; that the last one has is noticed only here, one line later, or in
    // closing.
    LineText& StartLine();
    void WriteLine();
    void WriteLine(std::string_view line);
    // What WriteLine does in front of each line: whether one may be written.
    bool ReadyToWrite();

    // The status becomes Closed, or Failed when something went wrong that nobody has noticed yet.
    void Close();

private:
    FileStatus OpenPath(const char* path, uint32_t pathBufferSize, OpenMode mode);

    File file_;
    FileStatus status_ = FileStatus::Closed;
    bool bad_ = false;
    LineBuffer lines_{file_};
    StatementCutter cutter_{lines_};
    LineText line_;
    LineText lineWithEnds_;
};

}  // namespace tabrin
