#include "fuzz/abi/file_check.h"

#include "fuzz/abi/snapshot.h"
#include "fuzz/abi/written_file_check.h"
#include "fuzz/check.h"
#include "fuzz/naive_text.h"

namespace tabrin_fuzz {

namespace {

Snapshot ReadAndWalk(const LibraryFunctions& library, const std::string& path, size_t lines) {
    uint32_t status = 99;
    Require(ReadPath(library, path, status), "a file that is there was not read");
    Require(status == TABRIN_STATUS_CLOSED, "the status behind reading");
    Snapshot snapshot = TakeSnapshot(library);
    for (const MessageCopy& message : snapshot.messages) {
        for (const SignalCopy& signal : message.signals) {
            Require(signal.data.byteOrder <= 1 && signal.data.multiplexKind <= 2, "a code that no file can give");
            Require(!(signal.data.minimum > signal.data.maximum), "a range the wrong way round");
        }
    }
    for (const CanErrorData& error : snapshot.errors) {
        Require(error.line < lines, "an error behind the end of the file");
    }
    Require(snapshot.info.protocolType <= 2 && snapshot.info.canFd <= 1, "database information that no file can give");
    return snapshot;
}

}  // namespace

void CheckFile(const LibraryFunctions& library, std::string_view bytes, const std::string& path) {
    const DatabaseInfo none{};
    Require(library.ClearData() && library.SetDatabaseInfo(&none, sizeof none), "no empty database");
    SetFileBytes(path, bytes);
    const size_t lines = NaiveLines(bytes).size();
    const Snapshot first = ReadAndWalk(library, path, lines);
    const Snapshot second = ReadAndWalk(library, path, lines);
    Require(SameMessages(first, second) && first.errors.size() == second.errors.size(),
            "reading twice gives different databases");
    CheckWriting(library, path, false);
    Require(library.ClearData() && library.GetNumCanMessages() == 0 && library.GetNumCanErrors() == 0,
            "a cleared database is not empty");
}

}  // namespace tabrin_fuzz
