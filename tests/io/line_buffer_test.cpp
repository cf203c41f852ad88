#include "io/line_buffer.h"

#include <algorithm>
#include <cstdint>

#include "io/io_test_support.h"

namespace tabrin {
namespace {

using Lines = std::vector<std::string>;

struct CleanRow {
    std::string_view line;
    std::string_view cleaned;
};

void CheckCleaned(const std::vector<CleanRow>& rows) {
    for (const CleanRow& row : rows) {
        std::string line(row.line);
        line.resize(CleanLine(line.data(), line.size()));
        EXPECT_EQ(line, row.cleaned) << Shown(row.line);
    }
}

TEST(CleanLine, KeepsTextAndBlanks) {
    CheckCleaned({
        {"", ""},
        {"BO_ 100 X: 8 Y", "BO_ 100 X: 8 Y"},
        {" \f\r\t\v", " \f\r\t\v"},
        {"a\tb\rc\vd\fe", "a\tb\rc\vd\fe"},
        {"\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80", "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80"},
        {"\xC2\x85\xC2\x80", "\xC2\x85\xC2\x80"},
    });
}

TEST(CleanLine, BytesOfBrokenSequencesBecomeUnderscores) {
    CheckCleaned({
        {"\xE4"
         "A",
         "_A"},
        {"abc \xE4\xB6", "abc __"},
        {"\xE2\x82", "__"},
        {"\xC0\x80", "__"},
        {"\xED\xA0\x80", "___"},
        {"\xF4\x90\x80\x80", "____"},
        {"\xFF", "_"},
        {"\xEF\xBB", "__"},
        {"\xE4\xC3\xA4", "_\xC3\xA4"},
    });
}

TEST(CleanLine, ControlCharactersAreLeftOut) {
    CheckCleaned({
        {"a\0b"sv, "ab"},
        {"\x01\x08\x0E\x1F\x7F", ""},
        {"a\x1A"
         "b",
         "ab"},
        {"\x7F\x7F"
         "a\x7F\x7F"
         "b\x7F",
         "ab"},
        {"\x1B[0m", "[0m"},
    });
}

// Otherwise the two halves would become one character.
TEST(CleanLine, SequencesAreRepairedBeforeControlCharactersAreLeftOut) {
    CheckCleaned({{"\xC3\x01\xA4", "__"}, {"\xE2\x82\0\xAC"sv, "___"}, {"\xE4\x01", "_"}});
}

// Lines are looked at several bytes at a time.
TEST(CleanLine, EveryByteIsTreatedAlikeAtEveryPosition) {
    for (int value = 0; value < 256; ++value) {
        if (value == '\n') {
            continue;
        }
        const bool control = value <= 0x08 || (value >= 0x0E && value <= 0x1F) || value == 0x7F;
        for (size_t before = 0; before <= 17; ++before) {
            for (size_t behind = 0; behind <= 8; ++behind) {
                std::string line = std::string(before, 'a') + static_cast<char>(value) + std::string(behind, 'b');
                std::string expected = line;
                if (control) {
                    expected.erase(before, 1);
                } else if (value >= 0x80) {
                    expected[before] = '_';
                }
                line.resize(CleanLine(line.data(), line.size()));
                ASSERT_EQ(line, expected) << value << ", " << before << " before, " << behind << " behind";
            }
        }
    }
}

// Only the line itself tells, not the plain text around it.
TEST(CleanLine, EveryByteOfALongLineIsLookedAt) {
    constexpr size_t kSize = 64;
    for (size_t at = 0; at < kSize; ++at) {
        std::string text(3 * kSize, 'a');
        text[kSize + at] = '\x01';
        EXPECT_EQ(CleanLine(text.data() + kSize, kSize), kSize - 1) << at;
        EXPECT_EQ(text.substr(kSize, kSize - 1), std::string(kSize - 1, 'a')) << at;
    }
}

// The lines of a file, each dropped before the next one is read.
Lines ReadLines(std::string_view bytes) {
    const TempFile path(bytes);
    File file;
    EXPECT_TRUE(file.OpenForReading(path.Path()));
    LineBuffer buffer(file);
    Lines lines;
    while (buffer.ReadLine() == LineBuffer::Result::Line) {
        lines.emplace_back(buffer.Text());
        buffer.Clear();
    }
    EXPECT_EQ(buffer.ReadLine(), LineBuffer::Result::EndOfFile);
    EXPECT_EQ(buffer.Text(), "");
    return lines;
}

struct LinesRow {
    std::string_view bytes;
    Lines lines;
};

void CheckLines(const std::vector<LinesRow>& rows) {
    for (const LinesRow& row : rows) {
        EXPECT_EQ(ReadLines(row.bytes), row.lines) << Shown(row.bytes);
    }
}

TEST(ReadLine, EndsAtALineFeed) {
    CheckLines({
        {"", {}},
        {"a\n", {"a\n"}},
        {"a\nb\n", {"a\n", "b\n"}},
        {"\n", {"\n"}},
        {"a\n\nb\n", {"a\n", "\n", "b\n"}},
        {"\n\n\n", {"\n", "\n", "\n"}},
    });
}

TEST(ReadLine, TheLastLineNeedsNoLineEnd) {
    CheckLines({
        {"a", {"a\n"}},
        {"a\nb", {"a\n", "b\n"}},
        {"a\r\nb", {"a\n", "b\n"}},
        {"\n ", {"\n", " \n"}},
        {"\x01", {"\n"}},
        {"a\x01", {"a\n"}},
        {"a\n\x01"
         "b",
         {"a\n", "b\n"}},
    });
}

TEST(ReadLine, CarriageReturnAndLineFeedAreOneLineEnd) {
    CheckLines({
        {"a\r\n", {"a\n"}},
        {"a\r\nb\r\n", {"a\n", "b\n"}},
        {"\r\n", {"\n"}},
        {"\r\n\r\n", {"\n", "\n"}},
        {"a\nb\r\nc", {"a\n", "b\n", "c\n"}},
    });
}

TEST(ReadLine, LoneCarriageReturnStays) {
    CheckLines({
        {"a\rb\n", {"a\rb\n"}},
        {"a\r\r\n", {"a\r\n"}},
        {"\r\r\r\n", {"\r\r\n"}},
        {"a\r", {"a\r\n"}},
        {"\r", {"\r\n"}},
        {"a\n\rb\n", {"a\n", "\rb\n"}},
        {"a\n\r", {"a\n", "\r\n"}},
        {"a\r\x01\n", {"a\r\n"}},
    });
}

TEST(ReadLine, ControlZIsNoEndOfFile) {
    CheckLines({
        {"a\x1A"
         "b\nc\n",
         {"ab\n", "c\n"}},
        {"a\n\x1A", {"a\n", "\n"}},
        {"\x1A\n\x1A\nb\x1A", {"\n", "\n", "b\n"}},
    });
}

TEST(ReadLine, NulIsNoEnd) {
    CheckLines({{"a\0b\nc\0"sv, {"ab\n", "c\n"}}, {"\0\0\0"sv, {"\n"}}});
}

TEST(ReadLine, SequencesDoNotReachOverLineEnds) {
    CheckLines({
        {"\xC3\n\xA4\n", {"_\n", "_\n"}},
        {"\xE4\xB6\r\n", {"__\n"}},
        {"\xE2\x82\r\n\xAC", {"__\n", "_\n"}},
        {"\xC3", {"_\n"}},
    });
}

TEST(ReadLine, IsAppendedToTheTextNotYetDropped) {
    const TempFile path(
        "ab\ncd\r\ne\x01"
        "f\ngh");
    File file;
    ASSERT_TRUE(file.OpenForReading(path.Path()));
    LineBuffer buffer(file);
    EXPECT_EQ(buffer.Text(), "");
    ASSERT_EQ(buffer.ReadLine(), LineBuffer::Result::Line);
    EXPECT_EQ(buffer.Text(), "ab\n");
    ASSERT_EQ(buffer.ReadLine(), LineBuffer::Result::Line);
    EXPECT_EQ(buffer.Text(), "ab\ncd\n");
    buffer.Drop(1);
    EXPECT_EQ(buffer.Text(), "b\ncd\n");
    ASSERT_EQ(buffer.ReadLine(), LineBuffer::Result::Line);
    EXPECT_EQ(buffer.Text(), "b\ncd\nef\n");
    buffer.Clear();
    EXPECT_EQ(buffer.Text(), "");
    ASSERT_EQ(buffer.ReadLine(), LineBuffer::Result::Line);
    EXPECT_EQ(buffer.Text(), "gh\n");
    EXPECT_EQ(buffer.ReadLine(), LineBuffer::Result::EndOfFile);
    EXPECT_EQ(buffer.Text(), "gh\n");
}

TEST(ReadLine, EndOfFileIsMetAgainAndAgain) {
    const TempFile path("a");
    File file;
    ASSERT_TRUE(file.OpenForReading(path.Path()));
    LineBuffer buffer(file);
    EXPECT_EQ(buffer.ReadLine(), LineBuffer::Result::Line);
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(buffer.ReadLine(), LineBuffer::Result::EndOfFile);
    }
    EXPECT_EQ(buffer.Text(), "a\n");
}

// Around the ends of the blocks of 65536 bytes that files are read in.
TEST(ReadLine, LineEndsAroundBlockBoundaries) {
    for (const size_t block : {size_t{65536}, size_t{131072}}) {
        for (size_t size = block - 4; size <= block + 4; ++size) {
            SCOPED_TRACE(size);
            const std::string line(size, 'x');
            EXPECT_TRUE(ReadLines(line) == (Lines{line + '\n'}));
            EXPECT_TRUE(ReadLines(line + '\n') == (Lines{line + '\n'}));
            EXPECT_TRUE(ReadLines(line + "\r\n") == (Lines{line + '\n'}));
            EXPECT_TRUE(ReadLines(line + '\r') == (Lines{line + "\r\n"}));
            EXPECT_TRUE(ReadLines(line + "\r\r\n\nb") == (Lines{line + "\r\n", "\n", "b\n"}));
            EXPECT_TRUE(ReadLines(line + "\nab\r\nc") == (Lines{line + '\n', "ab\n", "c\n"}));
            EXPECT_TRUE(ReadLines(line + "\x01\xC3\n") == (Lines{line + "_\n"}));
            EXPECT_TRUE(ReadLines(line + "\xE2\x82\xAC\n") == (Lines{line + "\xE2\x82\xAC\n"}));
        }
    }
}

TEST(ReadLine, LineOfSeveralMegabytes) {
    const std::string line(3000000, 'x');
    EXPECT_TRUE(ReadLines(line) == (Lines{line + '\n'}));
    EXPECT_TRUE(ReadLines("a\r\n" + line + "\r\nb\n") == (Lines{"a\n", line + '\n', "b\n"}));
    EXPECT_TRUE(ReadLines(line + '\x02' + line + '\n' + line) == (Lines{line + line + '\n', line + '\n'}));
}

// Compares the buffer, over files of some hundred kilobytes, with a text that is put together line by line.
TEST(LineBuffer, AgreesWithAPlainText) {
    Random random(20240311);
    for (int round = 0; round < 40; ++round) {
        SCOPED_TRACE(testing::Message() << "round " << round);
        std::string bytes;
        Lines lines;
        const size_t longest = size_t{10} << random.Below(14);
        const size_t count = 20 + random.Below(400000 / longest + 1);
        for (size_t i = 0; i < count; ++i) {
            std::string line(random.Below(longest), static_cast<char>('a' + random.Below(26)));
            const std::string removed(random.Below(3) == 0 ? random.Below(longest) : 0, '\x03');
            bytes += line + removed + (random.Below(2) == 0 ? "\r\n" : "\n");
            lines.push_back(line + '\n');
        }
        const TempFile path(bytes);
        File file;
        ASSERT_TRUE(file.OpenForReading(path.Path()));
        LineBuffer buffer(file);
        std::string text;
        for (size_t i = 0; i < lines.size(); ++i) {
            ASSERT_EQ(buffer.ReadLine(), LineBuffer::Result::Line);
            text += lines[i];
            ASSERT_TRUE(buffer.Text() == text) << "line " << i;
            const size_t choice = random.Below(4);
            if (choice == 0) {
                buffer.Clear();
                text.clear();
            } else if (choice == 1) {
                const size_t size = random.Below(text.size() + 1);
                buffer.Drop(size);
                text.erase(0, size);
            }
        }
        EXPECT_EQ(buffer.ReadLine(), LineBuffer::Result::EndOfFile);
        EXPECT_TRUE(buffer.Text() == text);
    }
}

// One piece of memory serves for all of a file, when lines are dropped as they come.
TEST(LineBuffer, ShortLinesTakeTheRoomOfAFewBlocks) {
    std::string bytes;
    while (bytes.size() < 2000000) {
        bytes += "some short line\n";
    }
    const TempFile path(bytes);
    File file;
    ASSERT_TRUE(file.OpenForReading(path.Path()));
    LineBuffer buffer(file);
    uintptr_t least = UINTPTR_MAX;
    uintptr_t most = 0;
    while (buffer.ReadLine() == LineBuffer::Result::Line) {
        const auto place = reinterpret_cast<uintptr_t>(buffer.Text().data());
        least = std::min(least, place);
        most = std::max(most, place);
        buffer.Clear();
    }
    EXPECT_LT(most - least, 4U * 65536U);
}

TEST(LineBuffer, StartsAnewWithTheNextFile) {
    const TempFile first("a\nb\nc", "first");
    const TempFile second("d\ne", "second");
    File file;
    LineBuffer buffer(file);
    for (int reads = 0; reads <= 4; ++reads) {
        SCOPED_TRACE(reads);
        ASSERT_TRUE(file.OpenForReading(first.Path()));
        for (int i = 0; i < reads; ++i) {
            buffer.ReadLine();
        }
        file.Close();
        buffer.Reset();
        EXPECT_EQ(buffer.Text(), "");
        ASSERT_TRUE(file.OpenForReading(second.Path()));
        EXPECT_EQ(buffer.ReadLine(), LineBuffer::Result::Line);
        EXPECT_EQ(buffer.Text(), "d\n");
        EXPECT_EQ(buffer.ReadLine(), LineBuffer::Result::Line);
        EXPECT_EQ(buffer.Text(), "d\ne\n");
        EXPECT_EQ(buffer.ReadLine(), LineBuffer::Result::EndOfFile);
        file.Close();
        buffer.Reset();
    }
}

}  // namespace
}  // namespace tabrin
