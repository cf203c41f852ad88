// A whole database is read and written with as few calls of the operating system as its file alone takes.
#include <algorithm>
#include <cstdint>
#include <string>

#include "dbc/writing.h"
#include "io/system_call_count.h"

namespace tabrin {
namespace {

// A database of several blocks. Its comments have one line, so that its file has a line feed for each line written.
void Fill(CANDatabase& database) {
    for (uint32_t i = 0; i < 500; ++i) {
        MessageFields fields;
        fields.id = i;
        fields.name = "Message_" + std::to_string(i);
        fields.comment = "message " + std::to_string(i);
        CANMessage& message = AddMessage(database, fields);
        for (const char* name : {"First", "Second", "Third"}) {
            SignalFields signal;
            signal.name = name;
            signal.comment = name;
            AddSignal(message, signal);
        }
    }
}

TEST(SystemCalls, WholeDatabaseTakesOneForEachWrittenLine) {
    CANDatabase database;
    Fill(database);
    const OutputPath path;
    size_t writes = 0;
    {
        const SystemCallCount calls;
        EXPECT_EQ(WriteTo(database, path.Text()), kAllWritten);
        writes = calls.Writes();
    }
    const std::string bytes = FileBytes(path.Text());
    EXPECT_EQ(writes, static_cast<size_t>(std::count(bytes.begin(), bytes.end(), '\n')));
    EXPECT_GT(writes, 4000U);  // a message and its signals are four lines, and their comments four more
}

TEST(SystemCalls, WholeDatabaseTakesOneForEachBlockRead) {
    CANDatabase written;
    Fill(written);
    const std::string bytes = WrittenBytes(written);
    ASSERT_GT(bytes.size(), 2U * 65536U);
    const TemporaryFile file(bytes);
    const SystemCallCount calls;
    CANDatabase database;
    FileStatus status{};
    EXPECT_TRUE(ReadDbcFile(database, file.Path().c_str(), kPathBufferSize, status));
    EXPECT_EQ(database.messages.size(), 500U);
    EXPECT_EQ(calls.Reads(), (bytes.size() + 65535) / 65536 + 1);  // the last one finds the end
}

}  // namespace
}  // namespace tabrin
