// What TabrinReadDbcFile says of paths and files.
#include <vector>

#include "abi/interface_test.h"

namespace tabrin_test {
namespace {

constexpr std::string_view kOneMessage = "BO_ 1 M: 8 N\n";

// Reads with a path buffer that is exactly as long as stated, so that a sanitizer notices a byte read too far.
Outcome ReadBuffer(std::string_view buffer) {
    const std::vector<char> bytes(buffer.begin(), buffer.end());
    Outcome outcome{false, kUnwritten};
    outcome.result = Library().ReadDbcFile(bytes.data(), static_cast<uint32_t>(bytes.size()), &outcome.status);
    return outcome;
}

class ReadStatus : public InterfaceTest {
protected:
    void SetUp() override {
        InterfaceTest::SetUp();
        path_ = TempPath("dbc");
        WriteBytes(path_, kOneMessage);
        ASSERT_LT(path_.size(), 250U) << "the folder for temporary files lies too deep for this test";
    }

    std::string path_;
};

TEST_F(ReadStatus, OfAFileReadToItsEndIsClosed) {
    EXPECT_EQ(ReadFile(path_), (Outcome{true, 2}));
    EXPECT_EQ(NumMessages(), 1U);
}

TEST_F(ReadStatus, OfAPathBufferSize) {
    const struct {
        uint32_t size;
        Outcome expected;
    } rows[] = {
        {0, {false, 5}},  // nothing is looked at
        {1, {false, 4}},  // one byte that is no NUL
        {260, {true, 2}}, {261, {false, 3}}, {262, {false, 3}}, {0x80000000U, {false, 3}}, {0xFFFFFFFFU, {false, 3}},
    };
    std::string buffer = path_;
    buffer.resize(300, '\0');
    for (const auto& row : rows) {
        SCOPED_TRACE(row.size);
        Outcome outcome{true, kUnwritten};
        outcome.result = Library().ReadDbcFile(buffer.data(), row.size, &outcome.status);
        EXPECT_EQ(outcome, row.expected);
        EXPECT_EQ(NumMessages(), row.expected.result ? 1U : 0U);
    }
}

TEST_F(ReadStatus, OfAnEmptyPath) {
    EXPECT_EQ(ReadBuffer(std::string_view("\0", 1)), (Outcome{false, 5}));
    EXPECT_EQ(ReadBuffer(std::string_view("\0x\0", 3)), (Outcome{false, 5}));
    EXPECT_EQ(ReadBuffer(std::string(260, '\0')), (Outcome{false, 5}));
    EXPECT_EQ(ReadBuffer(std::string(261, '\0')), (Outcome{false, 3}));
}

TEST_F(ReadStatus, OfANullPath) {
    for (const uint32_t size : {0U, 1U, 100U, 260U}) {
        SCOPED_TRACE(size);
        uint32_t status = kUnwritten;
        EXPECT_FALSE(Library().ReadDbcFile(nullptr, size, &status));
        EXPECT_EQ(status, 5U);
    }
    uint32_t status = kUnwritten;
    EXPECT_FALSE(Library().ReadDbcFile(nullptr, 261, &status));
    EXPECT_EQ(status, 3U);
}

TEST_F(ReadStatus, OfAPathThatIsNotUtf8) {
    const std::string_view paths[] = {
        "\x80", "a\x80.dbc", "\xC3(.dbc", "a\xE2\x82.dbc", "\xC0\xAF.dbc", "\xED\xA0\x80.dbc", "\xF4\x90\x80\x80.dbc",
    };
    for (const std::string_view path : paths) {
        SCOPED_TRACE(Shown(path));
        EXPECT_EQ(ReadBuffer(std::string(path) + '\0'), (Outcome{false, 4}));
    }
}

TEST_F(ReadStatus, OfAPathThatIsNothingButACutCharacter) {
    EXPECT_EQ(ReadBuffer(std::string_view("\xC3\0", 2)), (Outcome{false, 5}));
    EXPECT_EQ(ReadBuffer(std::string_view("\xE2\x82\0", 3)), (Outcome{false, 5}));
}

TEST_F(ReadStatus, OfAPathWithACutCharacterAtItsEnd) {
    EXPECT_EQ(ReadBuffer(path_ + "\xC3" + '\0'), (Outcome{true, 2}));
    EXPECT_EQ(ReadBuffer(path_ + "\xF0\x9F\x98" + '\0'), (Outcome{true, 2}));
}

TEST_F(ReadStatus, OfABufferWithoutNulIgnoresItsLastByte) {
    EXPECT_EQ(ReadBuffer(path_ + "x"), (Outcome{true, 2}));
    EXPECT_EQ(ReadBuffer(path_ + "\x80"), (Outcome{true, 2}));
    EXPECT_EQ(ReadBuffer(path_ + "xy"), (Outcome{false, 6}));
    EXPECT_EQ(ReadBuffer(path_), (Outcome{false, 6}));  // "...db"
}

TEST_F(ReadStatus, OfABufferEndsAtItsFirstNul) {
    EXPECT_EQ(ReadBuffer(path_ + std::string("\0\x80\x80x", 4)), (Outcome{true, 2}));
}

TEST_F(ReadStatus, OfAPathOf259Bytes) {
    const size_t slash = path_.rfind('/');
    std::string path = path_.substr(0, slash);
    const std::string name = path_.substr(slash);
    // "/." goes nowhere; a second slash in front of the name makes up for an odd number.
    while (path.size() + 2 + name.size() <= 259) {
        path += "/.";
    }
    path += path.size() + name.size() < 259 ? "/" + name : name;
    ASSERT_EQ(path.size(), 259U);
    EXPECT_EQ(ReadBuffer(path + '\0'), (Outcome{true, 2}));
    EXPECT_EQ(ReadBuffer(path + 'x'), (Outcome{true, 2}));
}

TEST_F(ReadStatus, OfWhatCannotBeOpened) {
    const std::string paths[] = {
        path_ + ".missing",
        std::string(TABRIN_TEMP_DIR) + "/no such folder/file.dbc",
        TABRIN_TEMP_DIR,  // a folder
        std::string(TABRIN_TEMP_DIR) + "/",
        ".",
        path_ + "/file.dbc",  // a file is no folder
        " ",
    };
    for (const std::string& path : paths) {
        SCOPED_TRACE(Shown(path));
        ASSERT_TRUE(AppendMessage(1, "Old"));
        EXPECT_EQ(ReadFile(path), (Outcome{false, 6}));
        EXPECT_EQ(NumMessages(), 0U);  // cleared before the file was looked for
    }
}

TEST_F(ReadStatus, OfAPathBeyondAscii) {
    const char* const names[] = {
        "\xC3\xA4\xC3\xB6\xC3\xBC.dbc",  // two bytes each
        "\xE6\x97\xA5\xE6\x9C\xAC.dbc",  // three
        "\xF0\x9F\x98\x80.dbc",          // four: two units in a Windows path
        "a b\xCC\x88.dbc",               // a combining mark stays what it is
    };
    for (const char* name : names) {
        SCOPED_TRACE(Shown(name));
        const std::string path = TempPath(name);
        WriteBytes(path, kOneMessage);
        EXPECT_EQ(ReadFile(path), (Outcome{true, 2}));
        EXPECT_EQ(NumMessages(), 1U);
        std::filesystem::remove(FilePath(path));
    }
}

TEST_F(ReadStatus, NeedsNoCell) {
    const std::string missing = path_ + ".missing";
    EXPECT_TRUE(Library().ReadDbcFile(path_.c_str(), static_cast<uint32_t>(path_.size() + 1), nullptr));
    EXPECT_EQ(NumMessages(), 1U);
    EXPECT_FALSE(Library().ReadDbcFile(missing.c_str(), static_cast<uint32_t>(missing.size() + 1), nullptr));
    EXPECT_EQ(NumMessages(), 0U);
    EXPECT_FALSE(Library().ReadDbcFile(nullptr, 0, nullptr));
    EXPECT_FALSE(Library().ReadDbcFile(missing.c_str(), 261, nullptr));
}

TEST_F(ReadStatus, OfEveryRefusalLeavesAnEmptyDatabase) {
    const std::string refused[] = {std::string(261, 'x'), std::string("\x80.dbc\0", 6), std::string(1, '\0'),
                                   "missing.dbc"};
    for (const std::string& buffer : refused) {
        SCOPED_TRACE(Shown(buffer));
        ASSERT_EQ(ReadText("BO_ 1 M: 8 N\nBO_ x: 8 N\nVERSION \"\"\n"), kDone);
        ASSERT_EQ(NumMessages(), 1U);
        ASSERT_EQ(NumErrors(), 1U);
        EXPECT_FALSE(ReadBuffer(buffer).result);
        EXPECT_EQ(DumpDatabase(), "info 0 0\n");
    }
}

TEST_F(ReadStatus, OfTheSameFileTwiceGivesTheSameOnce) {
    ASSERT_EQ(ReadFile(path_), kDone);
    const std::string first = DumpDatabase();
    ASSERT_EQ(ReadFile(path_), kDone);
    EXPECT_EQ(DumpDatabase(), first);
}

// The file is closed again: it can be replaced and removed, which an open one cannot on Windows.
TEST_F(ReadStatus, LeavesNoFileOpen) {
    ASSERT_EQ(ReadFile(path_), kDone);
    WriteBytes(path_, "BO_ 2 Other: 8 N\n");
    ASSERT_EQ(ReadFile(path_), kDone);
    EXPECT_EQ(Field(MessageAt(0).name), "Other");
    EXPECT_TRUE(std::filesystem::remove(FilePath(path_)));
    EXPECT_EQ(ReadFile(path_), (Outcome{false, 6}));
}

}  // namespace
}  // namespace tabrin_test
