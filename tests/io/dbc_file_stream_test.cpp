#include "io/dbc_file_stream.h"

#include "io/io_test_support.h"
#include "io/open_stream.h"

namespace tabrin {
namespace {

// A path for a file that is written, and removed at the end.
class TempTarget {
public:
    explicit TempTarget(std::string_view name = "dbc") : path_(TempPath(name)) { Remove(); }
    ~TempTarget() { Remove(); }
    TempTarget(const TempTarget&) = delete;
    TempTarget& operator=(const TempTarget&) = delete;
    TempTarget(TempTarget&&) = delete;
    TempTarget& operator=(TempTarget&&) = delete;

    [[nodiscard]] const std::string& Path() const { return path_; }
    [[nodiscard]] bool Exists() const { return std::filesystem::exists(AsPath(path_)); }

private:
    void Remove() {
        std::error_code ignored;
        std::filesystem::remove(AsPath(path_), ignored);
    }

    std::string path_;
};

TEST(FileStatus, HasTheNumbersThatCallersKnow) {
    EXPECT_EQ(static_cast<uint32_t>(FileStatus::Reading), 0U);
    EXPECT_EQ(static_cast<uint32_t>(FileStatus::Writing), 1U);
    EXPECT_EQ(static_cast<uint32_t>(FileStatus::Closed), 2U);
    EXPECT_EQ(static_cast<uint32_t>(FileStatus::PathTooLong), 3U);
    EXPECT_EQ(static_cast<uint32_t>(FileStatus::PathInvalid), 4U);
    EXPECT_EQ(static_cast<uint32_t>(FileStatus::PathEmpty), 5U);
    EXPECT_EQ(static_cast<uint32_t>(FileStatus::NotOpened), 6U);
    EXPECT_EQ(static_cast<uint32_t>(FileStatus::Failed), 8U);
    EXPECT_EQ(static_cast<uint32_t>(FileStatus::EndOfFile), 9U);
}

TEST(DbcFileStream, BeginsClosed) {
    DbcFileStream stream;
    EXPECT_EQ(stream.Status(), FileStatus::Closed);
    EXPECT_EQ(stream.LineNumber(), 0U);
    EXPECT_EQ(stream.Statement(), "");
    EXPECT_FALSE(stream.NextStatement());
    EXPECT_FALSE(stream.ReadyToWrite());
    stream.WriteLine("x");
    EXPECT_EQ(stream.Status(), FileStatus::Closed);
    stream.Close();
    EXPECT_EQ(stream.Status(), FileStatus::Closed);
}

struct PathRow {
    std::string_view path;
    uint32_t size;
    FileStatus status;
};

void CheckRefused(const std::vector<PathRow>& rows) {
    for (const PathRow& row : rows) {
        for (const OpenMode mode : kModes) {
            SCOPED_TRACE(Shown(row.path) + ' ' + std::to_string(row.size) + ' ' + NameOf(mode));
            std::string buffer(row.path);
            buffer.resize(300);
            DbcFileStream stream;
            stream.Open(buffer.data(), row.size, mode);
            EXPECT_EQ(stream.Status(), row.status);
            EXPECT_FALSE(stream.NextStatement());
            EXPECT_FALSE(stream.ReadyToWrite());
            stream.WriteLine("x");
            EXPECT_EQ(stream.Status(), row.status);
            stream.Close();
            EXPECT_EQ(stream.Status(), FileStatus::Closed);
        }
    }
}

TEST(OpenPath, EmptyPathIsRefused) {
    CheckRefused({
        {"", 0, FileStatus::PathEmpty},
        {"a.dbc", 0, FileStatus::PathEmpty},
        {"", 1, FileStatus::PathEmpty},
        {"", 2, FileStatus::PathEmpty},
        {"", 260, FileStatus::PathEmpty},
        {"\xC3", 10, FileStatus::PathEmpty},
        {"\xC3\xA4", 2, FileStatus::PathEmpty},
    });
}

TEST(OpenPath, SingleByteWithoutNulIsRefusedAsInvalid) {
    CheckRefused({{"a", 1, FileStatus::PathInvalid}, {"/", 1, FileStatus::PathInvalid}});
}

TEST(OpenPath, PathThatIsNotUtf8IsRefused) {
    CheckRefused({
        {"\x80", 2, FileStatus::PathInvalid},
        {"a\xE4"
         "b.dbc",
         20, FileStatus::PathInvalid},
        {"a\xC0\x80.dbc", 20, FileStatus::PathInvalid},
        {"a\xED\xA0\x80.dbc", 20, FileStatus::PathInvalid},
        {"a\x80", 260, FileStatus::PathInvalid},
    });
}

// The size alone decides, before the path is looked at.
TEST(OpenPath, LargeBufferIsRefused) {
    CheckRefused({
        {"a.dbc", 261, FileStatus::PathTooLong},
        {"", 261, FileStatus::PathTooLong},
        {"\x80", 261, FileStatus::PathTooLong},
        {"a.dbc", 300, FileStatus::PathTooLong},
        {"a.dbc", 0xFFFFFFFFU, FileStatus::PathTooLong},
    });
}

TEST(OpenPath, NullPathIsAnEmptyOne) {
    for (const OpenMode mode : kModes) {
        SCOPED_TRACE(NameOf(mode));
        DbcFileStream stream;
        for (const uint32_t size : {0U, 1U, 2U, 100U, 260U}) {
            stream.Open(nullptr, size, mode);
            EXPECT_EQ(stream.Status(), FileStatus::PathEmpty) << size;
        }
        stream.Open(nullptr, 261, mode);
        EXPECT_EQ(stream.Status(), FileStatus::PathTooLong);
    }
}

TEST(OpenPath, LargeBufferIsRefusedBeforeAFileIsMade) {
    const TempTarget target;
    std::string buffer = target.Path();
    buffer.resize(300);
    DbcFileStream stream;
    stream.Open(buffer.data(), 261, OpenMode::Write);
    EXPECT_EQ(stream.Status(), FileStatus::PathTooLong);
    EXPECT_FALSE(target.Exists());
}

TEST(OpenPath, BufferOfTwoHundredAndSixtyBytesIsTaken) {
    const TempFile file("BO_ 1\n");
    std::string buffer = file.Path();
    ASSERT_LT(buffer.size(), 260U);
    buffer.resize(260);
    DbcFileStream stream;
    stream.Open(buffer.data(), 260, OpenMode::Read);
    EXPECT_EQ(stream.Status(), FileStatus::Reading);
}

TEST(OpenPath, EndsAtItsNul) {
    const TempFile file("BO_ 1\n");
    const std::string buffer = file.Path() + '\0' + "\x80 something else";
    DbcFileStream stream;
    stream.Open(buffer.data(), static_cast<uint32_t>(buffer.size()), OpenMode::Read);
    EXPECT_EQ(stream.Status(), FileStatus::Reading);
}

TEST(OpenPath, WithoutNulLosesItsLastByte) {
    const TempFile file("BO_ 1\n");
    const std::string buffer = file.Path() + 'x';
    DbcFileStream stream;
    stream.Open(buffer.data(), static_cast<uint32_t>(buffer.size()), OpenMode::Read);
    EXPECT_EQ(stream.Status(), FileStatus::Reading);
    stream.Open(buffer.data(), static_cast<uint32_t>(file.Path().size()), OpenMode::Read);
    EXPECT_EQ(stream.Status(), FileStatus::NotOpened);
}

TEST(OpenPath, CharacterThatIsCutOffIsDropped) {
    const TempFile file("BO_ 1\n");
    const std::string buffer = file.Path() + "\xE2\x82";
    DbcFileStream stream;
    Open(stream, buffer, OpenMode::Read);
    EXPECT_EQ(stream.Status(), FileStatus::Reading);
}

TEST(OpenPath, IsUtf8) {
    for (const std::string_view name : {"\xC3\xA4\xC3\xB6\xC3\xBC.dbc", "\xE2\x82\xAC.dbc", "\xF0\x9F\x98\x80.dbc"}) {
        SCOPED_TRACE(Shown(name));
        const TempTarget target(name);
        DbcFileStream stream;
        Open(stream, target.Path(), OpenMode::Write);
        ASSERT_EQ(stream.Status(), FileStatus::Writing);
        stream.WriteLine("BO_ 1");
        stream.Close();
        EXPECT_TRUE(target.Exists());
        EXPECT_EQ(ReadBytes(target.Path()), "BO_ 1\r\n");
        Open(stream, target.Path(), OpenMode::Read);
        EXPECT_EQ(stream.Status(), FileStatus::Reading);
        EXPECT_TRUE(stream.NextStatement());
        EXPECT_EQ(stream.Statement(), "BO_ 1\n");
    }
}

TEST(OpenFile, MissingFileCannotBeRead) {
    const TempTarget target;
    DbcFileStream stream;
    Open(stream, target.Path(), OpenMode::Read);
    EXPECT_EQ(stream.Status(), FileStatus::NotOpened);
    EXPECT_FALSE(target.Exists());
}

TEST(OpenFile, NothingOpensInAMissingFolder) {
    for (const OpenMode mode : kModes) {
        SCOPED_TRACE(NameOf(mode));
        DbcFileStream stream;
        Open(stream, TempPath("missing") + "/a.dbc", mode);
        EXPECT_EQ(stream.Status(), FileStatus::NotOpened);
    }
}

TEST(OpenFile, FolderOpensForNeither) {
    for (const OpenMode mode : kModes) {
        for (const std::string path : {TABRIN_TEMP_DIR, TABRIN_TEMP_DIR "/", "."}) {
            SCOPED_TRACE(path + ' ' + NameOf(mode));
            DbcFileStream stream;
            Open(stream, path, mode);
            EXPECT_EQ(stream.Status(), FileStatus::NotOpened);
        }
    }
}

TEST(OpenFile, WritingMakesAMissingFile) {
    const TempTarget target;
    DbcFileStream stream;
    Open(stream, target.Path(), OpenMode::Write);
    EXPECT_EQ(stream.Status(), FileStatus::Writing);
    EXPECT_TRUE(target.Exists());
    EXPECT_EQ(stream.LineNumber(), 0U);
    stream.Close();
    EXPECT_EQ(stream.Status(), FileStatus::Closed);
    EXPECT_EQ(ReadBytes(target.Path()), "");
}

TEST(OpenFile, WritingEmptiesAnExistingFile) {
    const TempFile target("something longer than what is written");
    DbcFileStream stream;
    Open(stream, target.Path(), OpenMode::Write);
    EXPECT_EQ(stream.Status(), FileStatus::Writing);
    EXPECT_EQ(ReadBytes(target.Path()), "");
    stream.WriteLine("x");
    stream.Close();
    EXPECT_EQ(ReadBytes(target.Path()), "x\r\n");
}

TEST(OpenFile, ReadingLeavesTheFileAlone) {
    const TempFile file("BO_ 1\n");
    DbcFileStream stream;
    Open(stream, file.Path(), OpenMode::Read);
    EXPECT_FALSE(stream.ReadyToWrite());
    stream.WriteLine("x");
    EXPECT_EQ(stream.Status(), FileStatus::Reading);
    stream.Close();
    EXPECT_EQ(ReadBytes(file.Path()), "BO_ 1\n");
}

TEST(OpenFile, ClosesTheFileBefore) {
    const TempTarget target("target");
    const TempFile file("SG_ 1\nSG_ 2\n");
    DbcFileStream stream;
    Open(stream, target.Path(), OpenMode::Write);
    stream.WriteLine("BO_ 1");
    Open(stream, file.Path(), OpenMode::Read);
    EXPECT_EQ(stream.Status(), FileStatus::Reading);
    EXPECT_TRUE(stream.NextStatement());
    EXPECT_EQ(stream.Statement(), "SG_ 1\n");
    EXPECT_EQ(stream.LineNumber(), 2U);
    Open(stream, target.Path(), OpenMode::Read);
    EXPECT_EQ(stream.LineNumber(), 0U);
    EXPECT_EQ(stream.Statement(), "");
    EXPECT_TRUE(stream.NextStatement());
    EXPECT_EQ(stream.Statement(), "BO_ 1\n");
    EXPECT_EQ(stream.LineNumber(), 1U);
    Open(stream, "", OpenMode::Read);
    EXPECT_EQ(stream.Status(), FileStatus::PathEmpty);
    EXPECT_EQ(stream.LineNumber(), 0U);
    EXPECT_EQ(stream.Statement(), "");
}

TEST(OpenFile, RefusedOpenClosesTheFileBefore) {
    const TempTarget target;
    DbcFileStream stream;
    Open(stream, target.Path(), OpenMode::Write);
    stream.WriteLine("x");
    Open(stream, "\x80", OpenMode::Write);
    EXPECT_EQ(stream.Status(), FileStatus::PathInvalid);
    stream.WriteLine("y");
    EXPECT_EQ(stream.Status(), FileStatus::PathInvalid);
    EXPECT_EQ(ReadBytes(target.Path()), "x\r\n");
}

TEST(ReadStatements, GoToTheEndOfTheFile) {
    const TempFile file(
        "VERSION \"\"\r\n\r\nBO_ 100 M: 8 N\r\n SG_ S : 0|8@1+ (1,0) [0|0] \"\" N\r\nCM_ BO_ 100 \"c\";\r\n");
    DbcFileStream stream;
    Open(stream, file.Path(), OpenMode::Read);
    ASSERT_EQ(stream.Status(), FileStatus::Reading);
    EXPECT_EQ(stream.LineNumber(), 0U);
    ASSERT_TRUE(stream.NextStatement());
    EXPECT_EQ(stream.Statement(), "VERSION \"\"\n\n");
    EXPECT_EQ(stream.Kind(), StatementKind::Other);
    EXPECT_EQ(stream.LineNumber(), 3U);
    EXPECT_EQ(stream.Status(), FileStatus::Reading);
    ASSERT_TRUE(stream.NextStatement());
    EXPECT_EQ(stream.Statement(), "BO_ 100 M: 8 N\n ");
    EXPECT_EQ(stream.Kind(), StatementKind::Message);
    EXPECT_EQ(stream.LineNumber(), 4U);
    EXPECT_EQ(stream.Status(), FileStatus::Reading);
    ASSERT_TRUE(stream.NextStatement());
    EXPECT_EQ(stream.Statement(), "SG_ S : 0|8@1+ (1,0) [0|0] \"\" N\n");
    EXPECT_EQ(stream.Kind(), StatementKind::Signal);
    EXPECT_EQ(stream.LineNumber(), 5U);
    EXPECT_EQ(stream.Status(), FileStatus::Reading);
    ASSERT_TRUE(stream.NextStatement());
    EXPECT_EQ(stream.Statement(), "CM_ BO_ 100 \"c\";\n");
    EXPECT_EQ(stream.Kind(), StatementKind::Comment);
    EXPECT_EQ(stream.LineNumber(), 5U);
    EXPECT_EQ(stream.Status(), FileStatus::EndOfFile);
    EXPECT_FALSE(stream.NextStatement());
    EXPECT_EQ(stream.Status(), FileStatus::EndOfFile);
    EXPECT_FALSE(stream.NextStatement());
    stream.Close();
    EXPECT_EQ(stream.Status(), FileStatus::Closed);
    EXPECT_EQ(stream.LineNumber(), 0U);
    EXPECT_EQ(stream.Statement(), "");
    EXPECT_FALSE(stream.NextStatement());
}

TEST(ReadStatements, MessageKeepsTheIndentationOfItsFirstSignal) {
    const TempFile file("BO_ 100 X: 8 Y\n SG_ A : 0|8@1+ (1,0) [0|0] \"\" Y\n");
    DbcFileStream stream;
    Open(stream, file.Path(), OpenMode::Read);
    ASSERT_TRUE(stream.NextStatement());
    EXPECT_EQ(stream.Statement(), "BO_ 100 X: 8 Y\n ");
    EXPECT_EQ(stream.LineNumber(), 2U);
}

TEST(ReadStatements, FileWithoutAKeywordEndsAtOnce) {
    for (const std::string_view bytes : {""sv, "\n"sv, "no DBC file\nat all\n"sv, "\0\1\2\x80\xFF\n\x1A"sv}) {
        SCOPED_TRACE(Shown(bytes));
        const TempFile file(bytes);
        DbcFileStream stream;
        Open(stream, file.Path(), OpenMode::Read);
        EXPECT_EQ(stream.Status(), FileStatus::Reading);
        EXPECT_FALSE(stream.NextStatement());
        EXPECT_EQ(stream.Status(), FileStatus::EndOfFile);
        stream.Close();
        EXPECT_EQ(stream.Status(), FileStatus::Closed);
    }
}

// The last statement is long enough to be delivered without looking any further.
TEST(ReadStatements, EndOfTheFileIsNoticedOnlyWhenItIsMet) {
    const std::string line = "SG_ " + std::string(5000, 'x') + '\n';
    const TempFile file(line);
    DbcFileStream stream;
    Open(stream, file.Path(), OpenMode::Read);
    EXPECT_TRUE(stream.NextStatement());
    EXPECT_EQ(stream.Statement(), line);
    EXPECT_EQ(stream.Status(), FileStatus::Reading);
    EXPECT_FALSE(stream.NextStatement());
    EXPECT_EQ(stream.Status(), FileStatus::EndOfFile);
}

TEST(ReadStatements, RepairTheText) {
    const TempFile file(
        "BO_ 1 \xE4"
        "A\x01\x1A: 8 \xC3\xA4\xE4\xB6\r\nSG_ x\r\n");
    DbcFileStream stream;
    Open(stream, file.Path(), OpenMode::Read);
    ASSERT_TRUE(stream.NextStatement());
    EXPECT_EQ(stream.Statement(), "BO_ 1 _A: 8 \xC3\xA4__\n");
}

TEST(Close, InTheMiddleOfReadingForgetsWhatWasRead) {
    const TempFile file("BO_ 1\nBO_ 2\nBO_ 3\n");
    DbcFileStream stream;
    for (int i = 0; i < 2; ++i) {
        Open(stream, file.Path(), OpenMode::Read);
        ASSERT_TRUE(stream.NextStatement());
        EXPECT_EQ(stream.Statement(), "BO_ 1\n");
        EXPECT_EQ(stream.LineNumber(), 2U);
        stream.Close();
        EXPECT_EQ(stream.Status(), FileStatus::Closed);
        EXPECT_EQ(stream.LineNumber(), 0U);
        EXPECT_EQ(stream.Statement(), "");
    }
}

struct WrittenRow {
    std::vector<std::string_view> lines;
    std::string_view bytes;
};

TEST(WriteLine, EveryLineFeedIsWrittenWithACarriageReturn) {
    const WrittenRow rows[] = {
        {{}, ""},
        {{""}, "\r\n"},
        {{"a"}, "a\r\n"},
        {{"a", "", "b"}, "a\r\n\r\nb\r\n"},
        {{"a\nb"}, "a\r\nb\r\n"},
        {{"\n"}, "\r\n\r\n"},
        {{"a\n\nb\n"}, "a\r\n\r\nb\r\n\r\n"},
        {{"a\r\nb"}, "a\r\r\nb\r\n"},
        {{"a\rb\r"}, "a\rb\r\r\n"},
        {{"\xC3\xA4\x1A\t"}, "\xC3\xA4\x1A\t\r\n"},
        {{"a\0b"sv}, "a\0b\r\n"sv},
    };
    for (const WrittenRow& row : rows) {
        SCOPED_TRACE(Shown(row.bytes));
        const TempTarget target;
        DbcFileStream stream;
        Open(stream, target.Path(), OpenMode::Write);
        for (const std::string_view line : row.lines) {
            EXPECT_TRUE(stream.ReadyToWrite());
            stream.WriteLine(line);
            EXPECT_EQ(stream.Status(), FileStatus::Writing);
        }
        stream.Close();
        EXPECT_EQ(stream.Status(), FileStatus::Closed);
        EXPECT_EQ(ReadBytes(target.Path()), row.bytes);
    }
}

TEST(WriteLine, ReachesTheFileAtOnce) {
    const TempTarget target;
    DbcFileStream stream;
    Open(stream, target.Path(), OpenMode::Write);
    stream.WriteLine("a");
    EXPECT_EQ(ReadBytes(target.Path()), "a\r\n");
    stream.WriteLine("b");
    EXPECT_EQ(ReadBytes(target.Path()), "a\r\nb\r\n");
}

TEST(WriteLine, LongLineIsWrittenWhole) {
    const TempTarget target;
    const std::string line(3000000, 'x');
    DbcFileStream stream;
    Open(stream, target.Path(), OpenMode::Write);
    stream.WriteLine(line);
    stream.Close();
    EXPECT_TRUE(ReadBytes(target.Path()) == line + "\r\n");
}

TEST(WriteLine, DoesNothingOnceClosed) {
    const TempTarget target;
    DbcFileStream stream;
    Open(stream, target.Path(), OpenMode::Write);
    stream.WriteLine("a");
    stream.Close();
    EXPECT_FALSE(stream.ReadyToWrite());
    stream.WriteLine("b");
    EXPECT_EQ(stream.Status(), FileStatus::Closed);
    EXPECT_EQ(ReadBytes(target.Path()), "a\r\n");
}

TEST(WriteLine, NothingIsReadFromAFileOpenForWriting) {
    const TempTarget target;
    DbcFileStream stream;
    Open(stream, target.Path(), OpenMode::Write);
    stream.WriteLine("BO_ 1");
    EXPECT_FALSE(stream.NextStatement());
    EXPECT_EQ(stream.Status(), FileStatus::Writing);
    EXPECT_EQ(stream.LineNumber(), 0U);
}

TEST(DbcFileStream, OthersMayReadTheFileMeanwhile) {
    const TempFile file("BO_ 1\n");
    DbcFileStream first;
    DbcFileStream second;
    Open(first, file.Path(), OpenMode::Read);
    Open(second, file.Path(), OpenMode::Read);
    EXPECT_TRUE(first.NextStatement());
    EXPECT_TRUE(second.NextStatement());
    EXPECT_EQ(second.Statement(), "BO_ 1\n");
}

TEST(DbcFileStream, FileIsFreeAfterClosing) {
    const TempFile file("BO_ 1\n");
    {
        DbcFileStream stream;
        Open(stream, file.Path(), OpenMode::Read);
        EXPECT_TRUE(stream.NextStatement());
    }
    std::error_code error;
    std::filesystem::remove(AsPath(file.Path()), error);
    EXPECT_FALSE(error) << error.message();
}

}  // namespace
}  // namespace tabrin
