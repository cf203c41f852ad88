// How many calls of the operating system reading and writing take: one for each block of 64 KB, whatever the lines are
// like, and one for each written line. Both platforms are held to the same numbers.
#include <functional>

#include "io/dbc_file_stream.h"
#include "io/io_test_support.h"
#include "io/open_stream.h"
#include "io/system_call_count.h"

namespace tabrin {
namespace {

// --- Reading

std::string Repeated(std::string_view piece, size_t size) {
    std::string text;
    text.reserve(size + piece.size());
    while (text.size() < size) {
        text += piece;
    }
    text.resize(size);
    return text;
}

struct Shape {
    const char* name;
    std::function<std::string(size_t)> text;
};

const Shape kShapes[] = {
    {"messages", [](size_t size) { return Repeated("BO_ 1 M: 8 N\r\n SG_ S : 0|8@1+ (1,0) [0|1] \"\" N\r\n", size); }},
    {"one line without keyword", [](size_t size) { return std::string(size, 'x'); }},
    {"one line of statements", [](size_t size) { return Repeated("BO_ 1 M: 8 N ", size); }},
    {"empty lines", [](size_t size) { return std::string(size, '\n'); }},
    {"one comment of many lines", [](size_t size) { return ("CM_ \"" + Repeated("text\n", size)).substr(0, size); }},
    {"control characters", [](size_t size) { return Repeated("\x01\x02\n", size); }},
};

struct ReadsRow {
    size_t size;
    size_t reads;  // one for each 65536 bytes or the rest of them, and one that finds the end
};

constexpr ReadsRow kReadsRows[] = {
    {0, 1},        {1, 2},        {65535, 2},    {65536, 2},    {65537, 3},    {131072, 3},
    {1000000, 17}, {1048575, 17}, {1048576, 17}, {1048577, 18}, {3145728, 49},
};

TEST(SystemCalls, ReadingTakesOneForEachBlock) {
    for (const Shape& shape : kShapes) {
        for (const ReadsRow& row : kReadsRows) {
            SCOPED_TRACE(shape.name);
            SCOPED_TRACE(row.size);
            const TempFile file(shape.text(row.size));
            const SystemCallCount calls;
            DbcFileStream stream;
            Open(stream, file.Path(), OpenMode::Read);
            EXPECT_EQ(calls.Reads(), 0U);  // opening reads nothing
            while (stream.NextStatement()) {
            }
            EXPECT_EQ(stream.Status(), FileStatus::EndOfFile);
            stream.Close();
            EXPECT_EQ(calls.Reads(), row.reads);
            EXPECT_EQ(calls.Writes(), 0U);
        }
    }
}

// A second file starts with what the first has left of the buffer, and with whole blocks all the same.
TEST(SystemCalls, AreAsManyForTheNextFile) {
    const TempFile first(Repeated("BO_ 1 M: 8 N\n", 100000), "first");
    const TempFile second(Repeated("BO_ 1 M: 8 N\n", 1048576), "second");
    const SystemCallCount calls;
    DbcFileStream stream;
    Open(stream, first.Path(), OpenMode::Read);
    ASSERT_TRUE(stream.NextStatement());
    EXPECT_EQ(calls.Reads(), 1U);
    Open(stream, second.Path(), OpenMode::Read);
    while (stream.NextStatement()) {
    }
    EXPECT_EQ(calls.Reads(), 1U + 17U);
}

// --- Writing

TEST(SystemCalls, WritingTakesOneForEachLine) {
    const std::string lines[] = {"", "BU_: A", std::string(65536, 'x'), "CM_ \"three\nlines\nin one\";",
                                 Repeated("text\n", 1000000)};
    const TempFile file("");
    const SystemCallCount calls;
    DbcFileStream stream;
    Open(stream, file.Path(), OpenMode::Write);
    EXPECT_EQ(calls.Writes(), 0U);  // opening writes nothing
    size_t written = 0;
    for (const std::string& line : lines) {
        SCOPED_TRACE(Shown(line.substr(0, 40)));
        stream.WriteLine(line);
        EXPECT_EQ(calls.Writes(), ++written);  // at once, and not in closing
    }
    stream.Close();
    EXPECT_EQ(stream.Status(), FileStatus::Closed);
    EXPECT_EQ(calls.Writes(), written);
    EXPECT_EQ(calls.Reads(), 0U);
}

}  // namespace
}  // namespace tabrin
