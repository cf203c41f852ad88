#include <cstdio>
#include <map>

#include "io/dbc_file_stream.h"
#include "io/first_keyword.h"
#include "io/io_test_support.h"
#include "io/naive_statement_reader.h"

namespace tabrin {
namespace {

// Pieces that statements are made of, the ones that matter most more often than the others.
std::string RandomText(Random& random, size_t pieces, size_t longFiller) {
    static constexpr std::string_view kBlanksBetween[] = {" ",  " ",  " ",  "  ", "\n", "\n",    "\r\n",
                                                          "\t", "\f", "\v", "\r", "",   "\n\n ", "\r\r\n"};
    static constexpr std::string_view kFiller[] = {";",
                                                   ";",
                                                   "x;",
                                                   "\";",
                                                   "; x",
                                                   ";\"",
                                                   "x",
                                                   "\"a",
                                                   "b\"",
                                                   "100",
                                                   "BO_1",
                                                   "BU_:",
                                                   "xBO_",
                                                   "BO_;",
                                                   "\"SG_",
                                                   "CM_\"",
                                                   "x_",
                                                   "N",
                                                   "R",
                                                   "_",
                                                   "BA_DEF",
                                                   "BA_DEF_DEF_DEF_",
                                                   "FILTERR",
                                                   "VERSIO",
                                                   "VAL_TABLE",
                                                   "a_very_long_word_that_ends_like_a_keyword_BO_",
                                                   "SIGTYPE_VALTYPE_X_"};
    static constexpr std::string_view kFrequent[] = {"CM_", "BA_", "BA_DEF_", "BO_", "SG_"};
    std::string text;
    for (size_t i = 0; i < pieces; ++i) {
        const size_t choice = random.Below(10);
        if (choice < 2) {
            text += kFrequent[random.Below(std::size(kFrequent))];
        } else if (choice < 3) {
            text += NaiveKeywords()[random.Below(NaiveKeywords().size())].text;
        } else if (choice < 9 || longFiller == 0 || random.Below(8) != 0) {
            text += kFiller[random.Below(std::size(kFiller))];
        } else {
            text.append(random.Below(longFiller), 'y');
        }
        text += kBlanksBetween[random.Below(std::size(kBlanksBetween))];
    }
    return text;
}

// Looks for the first keyword from `pos` on both ways; `end` is where it ends, if there is one.
void CompareFirstKeyword(const std::string& text, size_t pos, bool& found, size_t& end) {
    size_t index = 0;
    size_t start = 0;
    found = NaiveFindKeyword(text, pos, index, start, end);
    KeywordHit hit;
    ASSERT_EQ(FirstKeyword(text, pos, hit), found) << Shown(text) << " at " << pos;
    if (found) {
        ASSERT_EQ(hit.keyword->text, NaiveKeywords()[index].text) << Shown(text) << " at " << pos;
        ASSERT_EQ(hit.start, start) << Shown(text) << " at " << pos;
        ASSERT_EQ(hit.end, end) << Shown(text) << " at " << pos;
    }
}

TEST(FirstKeyword, AgreesWithComparingEachTokenWithEachKeyword) {
    Random random(1);
    size_t hits = 0;
    for (int round = 0; round < 20000; ++round) {
        const std::string text = RandomText(random, 1 + random.Below(12), 0);
        // Searches begin behind a token or at the end of the text, never inside a token.
        size_t pos = random.Below(text.size() + 1);
        while (pos != 0 && pos < text.size() && std::string_view(" \f\n\r\t\v").find(text[pos]) == std::string::npos) {
            ++pos;
        }
        bool found = false;
        size_t end = 0;
        ASSERT_NO_FATAL_FAILURE(CompareFirstKeyword(text, pos, found, end));
        hits += found ? 1 : 0;
    }
    EXPECT_GT(hits, 5000U);
    EXPECT_LT(hits, 19000U);
}

// A keyword in every place of texts of every length from which a block more or less is looked at.
TEST(FirstKeyword, FindsAKeywordWhereverItStandsInAShortText) {
    for (size_t size = 1; size <= 40; ++size) {
        for (const std::string_view keyword : {"BO_", "VERSION", "FILTER", "SIGTYPE_VALTYPE_"}) {
            // Of the fillers, three end like keywords do.
            for (const std::string_view filler : {"x", "_", "N", "X_ ", "P ", " ", "\n", "\x1F"}) {
                for (size_t start = 0; start + keyword.size() + 1 <= size; ++start) {
                    std::string text;
                    while (text.size() < size) {
                        text += filler;
                    }
                    text.resize(size);
                    text.replace(start, keyword.size(), keyword);
                    text[start + keyword.size()] = ' ';
                    if (start != 0) {
                        text[start - 1] = '\t';
                    }
                    KeywordHit hit;
                    ASSERT_TRUE(FirstKeyword(text, 0, hit)) << Shown(text);
                    ASSERT_EQ(hit.keyword->text, keyword) << Shown(text);
                    ASSERT_EQ(hit.start, start) << Shown(text);
                    ASSERT_EQ(hit.end, start + keyword.size()) << Shown(text);
                    // Behind it there is none.
                    ASSERT_FALSE(FirstKeyword(text, hit.end, hit)) << Shown(text);
                    // Without a blank behind it, it is none.
                    text[start + keyword.size()] = ':';
                    ASSERT_FALSE(FirstKeyword(text, 0, hit)) << Shown(text);
                    text.resize(start + keyword.size());
                    ASSERT_FALSE(FirstKeyword(text, 0, hit)) << Shown(text);
                }
            }
        }
    }
}

TEST(FirstKeyword, AgreesInTextsOfEveryLength) {
    static constexpr std::string_view kWords[] = {"BO_", "SG_", "VERSION", "FILTER", "BA_DEF_DEF_REL_", "xBO_", "P",
                                                  "O",   "_",   "^",       "x",      "SIGTYPE_VALTYPE_"};
    Random random(6);
    size_t hits = 0;
    for (size_t size = 1; size <= 80; ++size) {
        for (int round = 0; round < 300; ++round) {
            std::string text;
            while (text.size() < size) {
                text += kWords[random.Below(std::size(kWords))];
                text += " \n\x1F:"[random.Below(4)];
            }
            text.resize(size);
            bool found = true;
            for (size_t from = 0; found;) {
                size_t end = 0;
                ASSERT_NO_FATAL_FAILURE(CompareFirstKeyword(text, from, found, end));
                from = end;
                hits += found ? 1 : 0;
            }
        }
    }
    EXPECT_GT(hits, 10000U);
}

StatementKind KindOf(const std::string& keyword) {
    static const std::map<std::string, StatementKind> kinds = {
        {"BO_", StatementKind::Message},
        {"SG_", StatementKind::Signal},
        {"CM_", StatementKind::Comment},
        {"VAL_", StatementKind::ValueDescription},
        {"SIG_VALTYPE_", StatementKind::ValueType},
        {"BA_DEF_", StatementKind::Attribute},
        {"BA_DEF_DEF_", StatementKind::Attribute},
        {"BA_", StatementKind::Attribute},
    };
    const auto found = kinds.find(keyword);
    return found == kinds.end() ? StatementKind::Other : found->second;
}

// Reads a file with that content both ways; how many statements there were is added to `count`.
void Compare(const std::string& bytes, size_t& count) {
    const std::string path = TempPath("dbc");
    WriteBytes(path, bytes);
    DbcFileStream stream;
    stream.Open(path.c_str(), static_cast<uint32_t>(path.size() + 1), OpenMode::Read);
    ASSERT_EQ(stream.Status(), FileStatus::Reading);
    NaiveStatementReader naive(bytes);
    while (naive.Next()) {
        ASSERT_TRUE(stream.NextStatement()) << Shown(bytes);
        ASSERT_EQ(stream.Statement(), naive.statement) << Shown(bytes);
        ASSERT_EQ(stream.LineNumber(), naive.lineNumber) << Shown(bytes);
        ASSERT_EQ(static_cast<uint32_t>(stream.Status()), naive.status) << Shown(bytes);
        ASSERT_EQ(stream.Kind(), KindOf(NaiveKeywords()[naive.keywordIndex].text)) << Shown(bytes);
        ++count;
    }
    ASSERT_FALSE(stream.NextStatement()) << Shown(bytes);
    ASSERT_EQ(stream.Status(), FileStatus::EndOfFile) << Shown(bytes);
    ASSERT_EQ(stream.LineNumber(), naive.lineNumber) << Shown(bytes);
    stream.Close();
    std::remove(path.c_str());
}

TEST(Statement, AgreesWithTheRulesStepByStep) {
    Random random(2);
    size_t count = 0;
    // Few files and long ones: making a file is what costs time.
    for (int round = 0; round < 500 && !HasFatalFailure(); ++round) {
        Compare(RandomText(random, random.Below(500), 0), count);
    }
    EXPECT_GT(count, 15000U);
}

TEST(LongStatement, AgreesWithTheRulesStepByStep) {
    Random random(3);
    size_t count = 0;
    for (int round = 0; round < 300 && !HasFatalFailure(); ++round) {
        Compare(RandomText(random, 20 + random.Below(600), 5000), count);
    }
    EXPECT_GT(count, 15000U);
}

}  // namespace
}  // namespace tabrin
