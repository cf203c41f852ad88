#include "io/dbc_file_stream.h"

#include "io/text_scan.h"
#include "io/text_utf8.h"

namespace tabrin {

namespace {

constexpr uint32_t kLongestPathBuffer = 260;

// Appends the text with its line feeds as CR LF, the line end of DBC files on every platform. A carriage return that is
// there already stays, so that it is still there after reading the file back.
void AppendWithLineEnds(std::string& out, std::string_view text) {
    size_t start = 0;
    for (size_t feed = text.find('\n'); feed != kNpos; feed = text.find('\n', start)) {
        out.append(text, start, feed - start).append("\r\n");
        start = feed + 1;
    }
    out.append(text, start);
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

void DbcFileStream::WriteLine(std::string_view line) {
    if (!ReadyToWrite()) {
        return;
    }
    lineOut_.clear();
    AppendWithLineEnds(lineOut_, line);
    lineOut_ += "\r\n";
    bad_ = !file_.Write(lineOut_);
}

void DbcFileStream::Close() {
    const bool lost = !file_.Close();
    status_ = bad_ || lost ? FileStatus::Failed : FileStatus::Closed;
    bad_ = false;
    lines_.Reset();
    cutter_.Reset();
}

}  // namespace tabrin
