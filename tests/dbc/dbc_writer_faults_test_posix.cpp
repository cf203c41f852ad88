// Writing where the system fails: full devices, limits, permissions.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "dbc/comment_statement.h"
#include "dbc/dbc_writer.h"
#include "dbc/value_statements.h"
#include "dbc/well_known_attributes.h"
#include "dbc/writing.h"
#include "file_size_limit_posix.h"
#include "ordinary_user_posix.h"

namespace tabrin {
namespace {

// Writes to `path` while no file may grow beyond `limit`.
WriteOutcome WriteLimited(CANDatabase& database, const std::string& path, size_t limit) {
    WriteOutcome outcome;
    bool limited = false;
    {
        const tabrin_test::FileSizeLimit scope(limit);
        limited = scope.IsSet();
        outcome = WriteTo(database, path);
    }
    EXPECT_TRUE(limited);
    return outcome;
}

// --- Full devices

TEST(DbcWriterFaults, FullDeviceFailsWithTheSecondLine) {
    CANDatabase database;
    CANMessage& message = AddMessage(database);
    AddNamedSignal(message, "S");
    AddNamedSignal(message, "S");
    ASSERT_TRUE(std::filesystem::is_character_file("/dev/full"));
    EXPECT_EQ(WriteTo(database, "/dev/full"), kWriteFailed);
    // The file was open when the names were told apart.
    EXPECT_EQ(message.signals[0]->identifierName, "S_0000");
}

// A stream whose first line has failed, which nobody has noticed yet.
class UnnoticedFailure : public testing::Test {
protected:
    void SetUp() override {
        stream_.Open("/dev/full", kPathBufferSize, OpenMode::Write);
        ASSERT_EQ(stream_.Status(), FileStatus::Writing);
        stream_.WriteLine("lost");
        ASSERT_EQ(stream_.Status(), FileStatus::Writing);
    }

    DbcFileStream stream_;
    CANDatabase database_;
};

TEST_F(UnnoticedFailure, IsNoticedByTheNextLine) {
    stream_.WriteLine("");
    EXPECT_EQ(stream_.Status(), FileStatus::Failed);
}

TEST_F(UnnoticedFailure, IsNoticedInClosing) {
    stream_.Close();
    EXPECT_EQ(stream_.Status(), FileStatus::Failed);
}

TEST_F(UnnoticedFailure, IsNoticedByAComment) {
    AddMessage(database_, {.comment = "text"});
    WriteCommentsSection(stream_, database_.messages, LinesBehind(database_.messages).comments);
    EXPECT_EQ(stream_.Status(), FileStatus::Failed);
}

TEST_F(UnnoticedFailure, IsNoticedByTheEmptyLineOfAMessageWithoutComment) {
    AddMessage(database_, {.name = "Two words"});
    WriteCommentsSection(stream_, database_.messages, LinesBehind(database_.messages).comments);
    EXPECT_EQ(stream_.Status(), FileStatus::Failed);
}

TEST_F(UnnoticedFailure, IsNotNoticedByCommentsThatAreNotThere) {
    AddSignal(AddMessage(database_), {.name = "Two words"});
    WriteCommentsSection(stream_, database_.messages, LinesBehind(database_.messages).comments);
    EXPECT_EQ(stream_.Status(), FileStatus::Writing);
}

TEST_F(UnnoticedFailure, IsNoticedByAttributesEvenWhenThereAreNone) {
    AddMessage(database_);
    WriteWellKnownAttributes(stream_, database_.info, database_.messages, LinesBehind(database_.messages).longNames);
    EXPECT_EQ(stream_.Status(), FileStatus::Failed);
}

TEST_F(UnnoticedFailure, IsNoticedByAttributes) {
    AddMessage(database_, {.name = "Two words"});
    WriteWellKnownAttributes(stream_, database_.info, database_.messages, LinesBehind(database_.messages).longNames);
    EXPECT_EQ(stream_.Status(), FileStatus::Failed);
}

TEST_F(UnnoticedFailure, IsNoticedByAValueDescription) {
    AddSignal(AddMessage(database_)).valueDescriptions.Add(0, "Off");
    WriteValueDescriptionsSection(stream_, LinesBehind(database_.messages).valueDescriptions);
    EXPECT_EQ(stream_.Status(), FileStatus::Failed);
}

TEST_F(UnnoticedFailure, IsNotNoticedByValueDescriptionsThatAreNotThere) {
    CANMessage& message = AddMessage(database_);
    AddNamedSignal(message, "Bare");
    AddSignal(message, {.length = 32, .valueType = TABRIN_VALUE_FLOAT}).valueDescriptions.Add(0, "Off");
    WriteValueDescriptionsSection(stream_, LinesBehind(database_.messages).valueDescriptions);
    EXPECT_EQ(stream_.Status(), FileStatus::Writing);
}

TEST_F(UnnoticedFailure, IsNoticedByAValueType) {
    AddSignal(AddMessage(database_), {.length = 32, .valueType = TABRIN_VALUE_FLOAT});
    WriteValueTypesSection(stream_, LinesBehind(database_.messages).valueTypes);
    EXPECT_EQ(stream_.Status(), FileStatus::Failed);
}

TEST_F(UnnoticedFailure, IsNotNoticedByValueTypesThatAreNotThere) {
    AddSignal(AddMessage(database_), {.length = 32});
    WriteValueTypesSection(stream_, LinesBehind(database_.messages).valueTypes);
    EXPECT_EQ(stream_.Status(), FileStatus::Writing);
}

// --- File-size limits

struct LastWriteCase {
    const char* what;
    void (*build)(CANDatabase&);
    std::string_view body;  // up to the last write
    std::string_view last;  // the last write of the file
    bool lastIsNoticed;     // because the attributes come behind it
};

const LastWriteCase kLastWriteCases[] = {
    {"empty line behind a message", [](CANDatabase& database) { AddMessage(database); },
     "BU_ :  Kestrune\r\n\r\nBO_ 1 Msg: 8 Kestrune\r\n", "\r\n", true},
    {"comment", [](CANDatabase& database) { AddMessage(database, {.comment = "first\nlast"}); },
     "BU_ :  Kestrune\r\n\r\nBO_ 1 Msg: 8 Kestrune\r\n\r\n", "CM_ BO_ 1 \"first\r\nlast\";\r\n", true},
    // All lines of the attributes are one write.
    {"attributes", [](CANDatabase& database) { AddMessage(database, {.name = "A b"}); },
     "BU_ :  Kestrune\r\n\r\nBO_ 1 A_b: 8 Kestrune\r\n\r\n\r\n",
     "BA_DEF_ BO_ \"Kestrune_Msg_Name\" STRING ;\r\n"
     "BA_DEF_DEF_ \"Kestrune_Msg_Name\" \"\";\r\n"
     "BA_ \"Kestrune_Msg_Name\" BO_ 1 \"A b\";\r\n",
     false},
    {"value description",
     [](CANDatabase& database) { AddSignal(AddMessage(database)).valueDescriptions.Add(0, "Off"); },
     "BU_ :  Kestrune\r\n\r\n"
     "BO_ 1 Msg: 8 Kestrune\r\n SG_ S : 0|8@1+ (1,0) [0|255] \"\" Kestrune\r\n\r\n",
     "VAL_ 1 S 0 \"Off\";\r\n", false},
    {"second value type",
     [](CANDatabase& database) {
         CANMessage& message = AddMessage(database);
         AddSignal(message, {.name = "A", .length = 32, .valueType = TABRIN_VALUE_FLOAT});
         AddSignal(message, {.name = "B", .length = 32, .valueType = TABRIN_VALUE_FLOAT});
     },
     "BU_ :  Kestrune\r\n\r\n"
     "BO_ 1 Msg: 8 Kestrune\r\n"
     " SG_ A : 0|32@1- (1,0) [0|255] \"\" Kestrune\r\n"
     " SG_ B : 0|32@1- (1,0) [0|255] \"\" Kestrune\r\n\r\n"
     "SIG_VALTYPE_ 1 A : 1;\r\n",
     "SIG_VALTYPE_ 1 B : 1;\r\n", false},
};

// Every limit from nothing to all: whatever line fails, what came before it is there, with as much of it as there was
// room for, and nothing behind it. A lost line is noticed by the next, so that the last one is noticed only in closing.
TEST(DbcWriterFaults, FileSizeLimitCutsTheFileAnywhere) {
    for (const LastWriteCase& row : kLastWriteCases) {
        SCOPED_TRACE(row.what);
        CANDatabase database;
        row.build(database);
        const std::string front = std::string(kWrittenHeader) + std::string(row.body);
        const std::string whole = front + std::string(row.last);
        for (size_t limit = 0; limit <= whole.size(); ++limit) {
            const WriteOutcome lost = limit < front.size() || row.lastIsNoticed ? kWriteFailed : kLastWriteLost;
            const OutputPath path;
            ASSERT_EQ(WriteLimited(database, path.Text(), limit), limit == whole.size() ? kAllWritten : lost)
                << "limit " << limit << " of " << whole.size();
            ASSERT_EQ(FileBytes(path.Text()), whole.substr(0, limit)) << "limit " << limit;
        }
    }
}

TEST(DbcWriterFaults, FileSizeLimitInTheMiddleOfALargeFile) {
    CANDatabase database;
    for (uint32_t id = 0; id < 2000; ++id) {
        CANMessage& message = AddMessage(database, {.id = id, .comment = "text"});
        for (int i = 0; i < 20; ++i) {
            AddNamedSignal(message, "Signal" + std::to_string(i)).valueDescriptions.Add(0, "Off");
        }
    }
    constexpr size_t kLimit = 1000000;
    const OutputPath path;
    EXPECT_EQ(WriteLimited(database, path.Text(), kLimit), kWriteFailed);
    const std::string cut = FileBytes(path.Text());
    EXPECT_EQ(cut.size(), kLimit);
    // Without the limit there is more, and it begins the same.
    EXPECT_EQ(WriteTo(database, path.Text()), kAllWritten);
    const std::string whole = FileBytes(path.Text());
    EXPECT_GT(whole.size(), 2 * kLimit);
    EXPECT_TRUE(whole.compare(0, kLimit, cut) == 0);
}

// --- One write for each line

// How many times this process has asked the system to write; -1 where the system does not count.
int64_t SystemWrites() {
    std::ifstream counts("/proc/self/io");
    std::string name;
    int64_t value = -1;
    while (counts >> name >> value) {
        if (name == "syscw:") {
            return value;
        }
    }
    return -1;
}

TEST(DbcWriterFaults, EachLineIsOneWrite) {
    CANDatabase database;
    AddMessage(database, {.name = "A b", .comment = "first\nlast"});
    for (char letter = 'a'; letter <= 'z'; ++letter) {
        AddMessage(database, {.transmitter = std::string(32, letter)});
    }
    const OutputPath path;
    const int64_t before = SystemWrites();
    if (before < 0) {
        GTEST_SKIP() << "this system does not count the writes of a process in /proc/self/io";
    }
    const WriteOutcome outcome = WriteTo(database, path.Text());
    const int64_t after = SystemWrites();
    EXPECT_EQ(outcome, kAllWritten);
    // 32 lines from VERSION to the empty line behind the symbols, 2 of BS_, 2 of BU_ however often it wraps, 2 of each
    // of the 27 messages, one comment and the attributes.
    EXPECT_EQ(after - before, 32 + 2 + 2 + 2 * 27 + 1 + 1);
}

// --- Files that do not open

TEST(DbcWriterFaults, FileInPlaceOfADirectoryDoesNotOpen) {
    CANDatabase database;
    AddMessage(database);
    const TemporaryFile file("content");
    EXPECT_EQ(WriteTo(database, file.Path() + "/x.dbc"), kNotOpened);
    EXPECT_EQ(FileBytes(file.Path()), "content");
}

void MakeFile(const char* path, mode_t rights) {
    std::ofstream(path) << "content";
    ASSERT_EQ(chmod(path, rights), 0);
}

TEST(DbcWriterFaults, ReadOnlyFileDoesNotOpen) {
    const OutputPath path;
    const tabrin_test::CurrentFolder folder(path.Text());
    MakeFile("read_only.dbc", 0444);
    MakeFile("writable.dbc", 0666);
    CANDatabase database;
    CANMessage& message = AddMessage(database);
    AddNamedSignal(message, "S");
    AddNamedSignal(message, "S");
    const tabrin_test::OrdinaryUser user;
    if (!user.IsOrdinary()) {
        GTEST_SKIP() << tabrin_test::kRightsKept;
    }
    EXPECT_EQ(WriteTo(database, "read_only.dbc"), kNotOpened);
    EXPECT_EQ(FileBytes("read_only.dbc"), "content");
    EXPECT_EQ(message.signals[0]->identifierName, "S");
    EXPECT_EQ(message.signals[1]->identifierName, "S");
    // It was the file's own permission that was missing.
    EXPECT_EQ(WriteTo(database, "writable.dbc"), kAllWritten);
    EXPECT_NE(FileBytes("writable.dbc"), "content");
}

}  // namespace
}  // namespace tabrin
