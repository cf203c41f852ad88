#include "io/dbc_file_stream.h"

#include <string>

#include "io/text_scan.h"
#include "io/text_utf8.h"

namespace tabrin {

namespace {

constexpr uint32_t kLongestPathBuffer = 260;

// Appends the text with its line feeds as CR LF, the line end of DBC files on every platform. A carriage return that is
// there already stays, so that it is still there after reading the file back.
void AppendWithLineEnds(LineText& out, std::string_view text) {
    for (size_t feed = text.find('\n'); feed != kNpos; feed = text.find('\n')) {
        out.Append(text.substr(0, feed)).Append("\r\n");
        text.remove_prefix(feed + 1);
    }
    out.Append(text);
}

}  // namespace

void DbcFileStream::Open(const char* path, uint32_t pathBufferSize, OpenMode mode) {
    Close();
    status_ = OpenPath(path, pathBufferSize, mode);
}

FileStatus DbcFileStream::OpenPath(const char* path, uint32_t pathBufferSize, OpenMode mode) {
    if (pathBufferSize > kLongestPathBuffer) {
        return FileStatus::PathTooLong;
    }
    std::string name;
    if (path != nullptr && !StringFromBuffer(name, path, pathBufferSize)) {
        return FileStatus::PathInvalid;
    }
    if (name.empty()) {
        return FileStatus::PathEmpty;
    }
    const bool opened = mode == OpenMode::Read ? file_.OpenForReading(name) : file_.OpenForWriting(name);
    if (!opened) {
        return FileStatus::NotOpened;
    }
    return mode == OpenMode::Read ? FileStatus::Reading : FileStatus::Writing;
}

bool DbcFileStream::NextStatement() {
    if (status_ != FileStatus::Reading) {
        return false;
    }
    const bool found = cutter_.Next();
    if (cutter_.LastRead() != LineBuffer::Result::Line) {
        bad_ = cutter_.LastRead() == LineBuffer::Result::Failed;
        status_ = bad_ ? FileStatus::Failed : FileStatus::EndOfFile;
    }
    return found;
}

bool DbcFileStream::ReadyToWrite() {
    if (bad_) {
        status_ = FileStatus::Failed;
    }
    return status_ == FileStatus::Writing;
}

LineText& DbcFileStream::StartLine() {
    line_.Clear();
    return line_;
}

void DbcFileStream::WriteLine() {
    if (!ReadyToWrite()) {
        return;
    }
    LineText* line = &line_;
    if (line_.View().find('\n') != kNpos) {
        line = &lineWithEnds_;
        line->Clear();
        AppendWithLineEnds(*line, line_.View());
    }
    bad_ = !file_.Write(line->Append("\r\n").View());
}

void DbcFileStream::WriteLine(std::string_view line) {
    StartLine().Append(line);
    WriteLine();
}

void DbcFileStream::Close() {
    const bool lost = !file_.Close();
    status_ = bad_ || lost ? FileStatus::Failed : FileStatus::Closed;
    bad_ = false;
    lines_.Reset();
    cutter_.Reset();
}

}  // namespace tabrin
