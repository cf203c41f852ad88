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

// Opens a file, reads so many lines of it and begins anew.
void ReadAndForget(File& file, LineBuffer& buffer, const std::string& path, int lines) {
    ASSERT_TRUE(file.OpenForReading(path));
    for (int i = 0; i < lines; ++i) {
        buffer.ReadLine();
    }
    file.Close();
    buffer.Reset();
}

TEST(LineBuffer, StartsAnewWithTheNextFile) {
    const TempFile first("a\nb\nc", "first");
    const TempFile second("d\ne", "second");
    File file;
    LineBuffer buffer(file);
    for (int reads = 0; reads <= 4; ++reads) {
        SCOPED_TRACE(reads);
        ReadAndForget(file, buffer, first.Path(), reads);
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

// --- Where keywords may end

using Places = std::vector<size_t>;

// The places of the line read last that the buffer has not handed out yet. They lie in the text, each behind the one
// before: a keyword that came twice would begin a statement twice.
Places KeywordEnds(LineBuffer& buffer) {
    Places places;
    size_t place = 0;
    while (buffer.NextKeywordEnd(place)) {
        EXPECT_LT(place, buffer.Text().size());
        EXPECT_TRUE(places.empty() || places.back() < place) << place << " behind " << places.back();
        places.push_back(place);
    }
    return places;
}

// Every blank behind a "_", an "N" or an "R" from `begin` on, byte by byte.
Places BlanksBehindKeywordEnds(std::string_view text, size_t begin) {
    Places places;
    for (size_t i = begin + 1; i < text.size(); ++i) {
        const bool isBlank = text[i] == ' ' || (text[i] >= '\t' && text[i] <= '\r');
        if (isBlank && (text[i - 1] == '_' || text[i - 1] == 'N' || text[i - 1] == 'R')) {
            places.push_back(i);
        }
    }
    return places;
}

// Whether each place that must be handed out was; more are allowed, but none in front of `begin`, where the line does.
void ExpectKeywordEnds(const Places& places, std::string_view text, size_t begin) {
    const Places needed = BlanksBehindKeywordEnds(text, begin);
    EXPECT_TRUE(std::includes(places.begin(), places.end(), needed.begin(), needed.end()))
        << testing::PrintToString(places) << " instead of " << testing::PrintToString(needed) << " in "
        << Shown(text.substr(0, 500));
    EXPECT_TRUE(places.empty() || places.front() >= begin) << places.front() << " in front of " << begin;
}

struct EndsRow {
    std::string_view bytes;
    std::vector<Places> ends;  // of each line: those of its blanks that must be handed out
};

void CheckKeywordEnds(const std::vector<EndsRow>& rows) {
    for (const EndsRow& row : rows) {
        SCOPED_TRACE(Shown(row.bytes));
        const TempFile path(row.bytes);
        File file;
        ASSERT_TRUE(file.OpenForReading(path.Path()));
        LineBuffer buffer(file);
        for (const Places& needed : row.ends) {
            buffer.Clear();
            ASSERT_EQ(buffer.ReadLine(), LineBuffer::Result::Line);
            const Places places = KeywordEnds(buffer);
            EXPECT_TRUE(std::includes(places.begin(), places.end(), needed.begin(), needed.end()))
                << testing::PrintToString(places) << " instead of " << testing::PrintToString(needed);
        }
        EXPECT_EQ(buffer.ReadLine(), LineBuffer::Result::EndOfFile);
        EXPECT_EQ(KeywordEnds(buffer), Places());
    }
}

TEST(NextKeywordEnd, BlanksBehindLettersThatKeywordsEndIn) {
    CheckKeywordEnds({
        {"", {}},
        {"\n", {{}}},
        {"BO_ 100 A: 8 ECU\n", {{3}}},
        {"  BO_ SG_ x\n", {{5, 9}}},
        {"VERSION \"\"\nFILTER x\n", {{7}, {6}}},
        {"a_ bN cR d\n", {{2, 5, 8}}},
        {"_ N R\n", {{1, 3, 5}}},
        {"BO_\tSG_\vCM_\fBA_\rVAL_\n", {{3, 7, 11, 15, 20}}},
        {"BO_  SG_\t\tx\n", {{3, 8}}},
    });
}

TEST(NextKeywordEnd, TheLineEndIsABlankToo) {
    CheckKeywordEnds({
        {"BO_\n", {{3}}},
        {"BO_\r\n", {{3}}},
        {"BO_", {{3}}},
        {"BO_\r", {{3}}},
        {"BO_\r\r\n", {{3}}},
        {"x BO_\nSG_ FILTER\r\nVERSION", {{5}, {3, 10}, {7}}},
        {"_\nN\nR\n", {{1}, {1}, {1}}},
        {"_\r\nN\r\nR", {{1}, {1}, {1}}},
        {"BO_ \n", {{3}}},
        {" BO_ \r\n", {{4}}},
        {"\n\r\nBO_\n", {{}, {}, {3}}},
    });
}

// The places are those of the cleaned line.
TEST(NextKeywordEnd, LinesThatAreCleaned) {
    CheckKeywordEnds({
        {"\x01"
         "BO_ SG_\n",
         {{3, 7}}},
        {"BO_\x01 SG_\x7F\n", {{3, 7}}},
        {"B\x02O_ S\x1FG_\r\n", {{3, 7}}},
        {"BO_\x01\x01\x01\tx\n", {{3}}},
        {"BO_ x\x01", {{3}}},
        {"BO_\x01", {{3}}},
        {"BO_\x01\r\n", {{3}}},
        {"BO_\r\x01\n", {{3}}},
        {"x\0y\0BO_ 1 _\n"sv, {{5, 9}}},
        {"\xE4 BO_ x\n", {{1, 5}}},  // a byte that is replaced makes a "_"
        {"a\xE4 x\n", {{2}}},
        {"a\xE4\n", {{2}}},
        {"a\xE4\xB6\r\n", {{3}}},
        {"a\xC3", {{2}}},
        {"a\xC3\x01 b_ c\n", {{2, 5}}},
        {"\xC3\xA4 BO_ x\n", {{6}}},
        {"\xE2\x82\xAC\xF0\x9F\x9A\x97 SG_ N\n", {{11, 13}}},
        {"\xC3\xA4\x01 BO_ x\n", {{6}}},
        {"\xC3\xA4_\xE2\x82 BO_\n", {{5, 9}}},
        {"x\x01\nBO_ x\n\xFF\nSG_ y\n", {{}, {3}, {1}, {3}}},
    });
}

TEST(NextKeywordEnd, EveryByteInFrontOfABlank) {
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte) {
        if (byte != '\n') {
            bytes += std::string("x") + static_cast<char>(byte) + " BO_\t" + static_cast<char>(byte) + "\n";
        }
    }
    const TempFile path(bytes);
    File file;
    ASSERT_TRUE(file.OpenForReading(path.Path()));
    LineBuffer buffer(file);
    while (buffer.ReadLine() == LineBuffer::Result::Line) {
        ExpectKeywordEnds(KeywordEnds(buffer), buffer.Text(), 0);
        buffer.Clear();
    }
}

TEST(NextKeywordEnd, PositionsCountFromTheFrontOfTheText) {
    const TempFile path("a BO_ x\nSG_ N y\nz_ R VAL_ _ x\nEV_\n");
    File file;
    ASSERT_TRUE(file.OpenForReading(path.Path()));
    LineBuffer buffer(file);
    ASSERT_EQ(buffer.ReadLine(), LineBuffer::Result::Line);
    EXPECT_EQ(KeywordEnds(buffer), Places{5});
    ASSERT_EQ(buffer.ReadLine(), LineBuffer::Result::Line);
    EXPECT_EQ(KeywordEnds(buffer), (Places{11, 13}));
    buffer.Drop(10);  // up to the "_" of SG_
    ASSERT_EQ(buffer.Text(), "_ N y\n");
    size_t place = 77;
    EXPECT_FALSE(buffer.NextKeywordEnd(place));
    ASSERT_EQ(buffer.ReadLine(), LineBuffer::Result::Line);
    ASSERT_TRUE(buffer.NextKeywordEnd(place));
    EXPECT_EQ(place, 8U);
    ASSERT_TRUE(buffer.NextKeywordEnd(place));
    EXPECT_EQ(place, 10U);
    // What is left of the line moves with the text.
    buffer.Drop(9);
    ASSERT_EQ(buffer.Text(), "R VAL_ _ x\n");
    ASSERT_TRUE(buffer.NextKeywordEnd(place));
    EXPECT_EQ(place, 6U);
    buffer.Drop(2);
    ASSERT_TRUE(buffer.NextKeywordEnd(place));
    EXPECT_EQ(place, 6U);
    EXPECT_FALSE(buffer.NextKeywordEnd(place));
    buffer.Clear();
    EXPECT_FALSE(buffer.NextKeywordEnd(place));
    ASSERT_EQ(buffer.ReadLine(), LineBuffer::Result::Line);
    EXPECT_EQ(KeywordEnds(buffer), Places{3});
}

TEST(NextKeywordEnd, NoneOfTheLineBefore) {
    const TempFile path("BO_ SG_ N\nplain\n_ x\n");
    File file;
    ASSERT_TRUE(file.OpenForReading(path.Path()));
    LineBuffer buffer(file);
    size_t place = 77;
    EXPECT_FALSE(buffer.NextKeywordEnd(place));
    // None of them taken, or one.
    ASSERT_EQ(buffer.ReadLine(), LineBuffer::Result::Line);
    EXPECT_TRUE(buffer.NextKeywordEnd(place));
    ASSERT_EQ(buffer.ReadLine(), LineBuffer::Result::Line);
    EXPECT_FALSE(buffer.NextKeywordEnd(place));
    ASSERT_EQ(buffer.ReadLine(), LineBuffer::Result::Line);
    EXPECT_EQ(KeywordEnds(buffer), Places{17});
    EXPECT_EQ(buffer.ReadLine(), LineBuffer::Result::EndOfFile);
    EXPECT_FALSE(buffer.NextKeywordEnd(place));
    EXPECT_EQ(buffer.ReadLine(), LineBuffer::Result::EndOfFile);
    EXPECT_FALSE(buffer.NextKeywordEnd(place));
}

TEST(NextKeywordEnd, StartsAnewWithTheNextFile) {
    const TempFile first("BO_ SG_ x\nN y_ z", "first");
    const TempFile second(" x\n", "second");
    File file;
    LineBuffer buffer(file);
    for (int reads = 0; reads <= 3; ++reads) {
        SCOPED_TRACE(reads);
        ReadAndForget(file, buffer, first.Path(), reads);
        size_t place = 77;
        EXPECT_FALSE(buffer.NextKeywordEnd(place));
        ASSERT_TRUE(file.OpenForReading(second.Path()));
        ASSERT_EQ(buffer.ReadLine(), LineBuffer::Result::Line);
        EXPECT_EQ(buffer.Text(), " x\n");
        EXPECT_FALSE(buffer.NextKeywordEnd(place));
        file.Close();
        buffer.Reset();
    }
}

// The bytes behind `front` are looked at in lines of their own, each around the end of a block.
TEST(NextKeywordEnd, LinesAroundBlockBoundaries) {
    for (const size_t block : {size_t{65536}, size_t{131072}}) {
        for (const bool isOneLine : {false, true}) {
            for (size_t front = block - 12; front <= block + 2; ++front) {
                for (const std::string_view tail :
                     {"BO_ x N\nR SG_", "x_\ty_\r\nN\r\n", "a BO_\x01 SG_ x\n", "\xC3\xA4_ \xE4 _\r\n_ x"}) {
                    SCOPED_TRACE(Shown(tail) + " behind " + std::to_string(front));
                    std::string bytes(front, 'x');
                    bytes.back() = isOneLine ? ' ' : '\n';
                    const TempFile path(bytes.append(tail));
                    File file;
                    ASSERT_TRUE(file.OpenForReading(path.Path()));
                    LineBuffer buffer(file);
                    size_t begin = 0;
                    while (buffer.ReadLine() == LineBuffer::Result::Line) {
                        ExpectKeywordEnds(KeywordEnds(buffer), buffer.Text(), begin);
                        begin = buffer.Text().size();
                    }
                    EXPECT_GT(begin, front);
                }
            }
        }
    }
}

// What lines are made of, and what each piece is cleaned to.
struct Piece {
    std::string_view bytes;
    std::string_view cleaned;
};

Piece RandomPiece(Random& random, bool isClean) {
    static constexpr Piece kPieces[] = {
        {" ", " "},
        {" ", " "},
        {"\t", "\t"},
        {"\v", "\v"},
        {"BO_", "BO_"},
        {"SG_ ", "SG_ "},
        {"N ", "N "},
        {"R", "R"},
        {"_", "_"},
        {"xyz", "xyz"},
        {"] ", "] "},
        {"FILTER\f", "FILTER\f"},
        {"\ra", "\ra"},
        {"a long run of plain text, 0|8@1+ ", "a long run of plain text, 0|8@1+ "},
        {"\x01", ""},
        {"\x7F", ""},
        {"\xC3\xA4", "\xC3\xA4"},
        {"\xE2\x82\xAC ", "\xE2\x82\xAC "},
        {"\xFF", "_"},
        {"\xE4 ", "_ "},
    };
    return kPieces[random.Below(isClean ? 14 : std::size(kPieces))];
}

// Over files of some hundred kilobytes, with what is dropped from the text and what is not, and places left over.
TEST(NextKeywordEnd, AgreesWithASearchOfThePlainText) {
    Random random(13);
    size_t count = 0;
    for (int round = 0; round < 60; ++round) {
        SCOPED_TRACE(testing::Message() << "round " << round);
        std::string bytes;
        Lines lines;
        const size_t longest = size_t{2} << random.Below(12);
        const size_t cleanLines = random.Below(4);  // of four
        while (bytes.size() < 200000) {
            std::string line;
            const bool isClean = random.Below(4) < cleanLines;
            for (size_t i = random.Below(longest); i > 0; --i) {
                const Piece piece = RandomPiece(random, isClean);
                bytes += piece.bytes;
                line += piece.cleaned;
            }
            bytes += random.Below(2) == 0 ? "\r\n" : "\n";
            lines.push_back(line + '\n');
        }
        const TempFile path(bytes);
        File file;
        ASSERT_TRUE(file.OpenForReading(path.Path()));
        LineBuffer buffer(file);
        std::string text;
        for (const std::string& line : lines) {
            ASSERT_EQ(buffer.ReadLine(), LineBuffer::Result::Line);
            size_t begin = text.size();
            text += line;
            ASSERT_TRUE(buffer.Text() == text);
            const size_t choice = random.Below(6);
            if (choice == 0) {
                continue;  // all of its places are left over
            }
            if (choice == 1) {
                // Behind the first place, something is dropped.
                size_t place = 0;
                if (!buffer.NextKeywordEnd(place)) {
                    continue;
                }
                const size_t dropped = random.Below(place + 1);
                buffer.Drop(dropped);
                text.erase(0, dropped);
                begin = place - dropped;
            }
            const Places places = KeywordEnds(buffer);
            ASSERT_NO_FATAL_FAILURE(ExpectKeywordEnds(places, text, begin));
            ASSERT_FALSE(HasFailure());
            count += places.size();
            if (choice <= 3 || text.size() > 50000) {
                const size_t dropped = choice == 2 ? text.size() : random.Below(text.size() + 1);
                buffer.Drop(dropped);
                text.erase(0, dropped);
            }
        }
        EXPECT_EQ(buffer.ReadLine(), LineBuffer::Result::EndOfFile);
    }
    EXPECT_GT(count, 100000U);
}

}  // namespace
}  // namespace tabrin
