#include "fuzz/io/cutter_check.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>

#include "fuzz/check.h"
#include "fuzz/naive_text.h"
#include "io/dbc_file_stream.h"
#include "io/first_keyword.h"
#include "io/naive_statement_reader.h"

namespace tabrin_fuzz {

namespace {

using tabrin::DbcFileStream;
using tabrin::FileStatus;

// The file: the text as it is, several times, or behind so much filler that it lies across the end of a block.
std::string MakeFile(std::string_view bytes) {
    if (bytes.size() < 2) {
        return std::string(bytes);
    }
    const auto mode = static_cast<unsigned char>(bytes[0]);
    const auto amount = static_cast<unsigned char>(bytes[1]);
    bytes.remove_prefix(2);
    std::string file;
    if (mode >= 0xF8) {
        constexpr size_t kBlock = 65536;
        const size_t filler = kBlock - std::min<size_t>(amount * size_t{4}, bytes.size());
        file.assign(filler, 'y');
        // In one line or in some.
        for (size_t i = 4000; mode % 2 == 0 && i < filler; i += 4000) {
            file[i] = '\n';
        }
        file.back() = mode % 4 < 2 ? '\n' : ' ';
    } else if (mode >= 0xC0) {
        file.assign(amount * size_t{20}, 'y');
    }
    file += bytes;
    for (int i = mode % 4; mode < 0xC0 && i > 0; --i) {
        file += bytes;
    }
    return file;
}

// The same lines, cleaned already, as the naive reader takes them.
std::string CleanedFile(std::string_view bytes) {
    std::string cleaned;
    for (const std::string& line : NaiveLines(bytes)) {
        cleaned += line + "\r\n";
    }
    return cleaned;
}

void WriteFile(const std::string& path, const std::string& bytes) {
    std::FILE* file = std::fopen(path.c_str(), "wb");
    Require(file != nullptr, "cannot make a file for the lines");
    const size_t count = std::fwrite(bytes.data(), 1, bytes.size(), file);
    Require(std::fclose(file) == 0 && count == bytes.size(), "cannot write the lines to a file");
}

void CompareStatements(const std::string& file, const std::string& cleaned, const std::string& path) {
    WriteFile(path, file);
    DbcFileStream stream;
    stream.Open(path.c_str(), static_cast<uint32_t>(path.size() + 1), tabrin::OpenMode::Read);
    Require(stream.Status() == FileStatus::Reading, "the file was not opened");
    tabrin::NaiveStatementReader naive(cleaned);
    while (naive.Next()) {
        Require(stream.NextStatement(), "a statement was missed", [&] { return naive.statement; });
        Require(stream.Statement() == naive.statement, "another statement", [&] { return naive.statement; });
        Require(stream.LineNumber() == naive.lineNumber, "another line number", [&] { return naive.statement; });
        Require(static_cast<uint32_t>(stream.Status()) == naive.status, "another status");
        const std::string& keyword = tabrin::NaiveKeywords()[naive.keywordIndex].text;
        Require(stream.Kind() == tabrin::FindStatementKeyword(keyword)->kind, "another keyword",
                [&] { return naive.statement; });
    }
    Require(!stream.NextStatement(), "a statement behind the last one");
    Require(stream.Status() == FileStatus::EndOfFile, "the status at the end of the file");
    Require(stream.LineNumber() == naive.lineNumber, "the number of lines");
    stream.Close();
    Require(stream.Status() == FileStatus::Closed && stream.LineNumber() == 0, "the state behind closing");
}

void CompareKeywords(const std::string& text) {
    for (size_t pos = 0; pos <= text.size(); ++pos) {
        // Searches begin at the front, behind a token or at the end.
        if (pos != 0 && pos < text.size() && !NaiveIsBlank(text[pos])) {
            continue;
        }
        size_t index = 0;
        size_t start = 0;
        size_t end = 0;
        const bool expected = tabrin::NaiveFindKeyword(text, pos, index, start, end);
        tabrin::KeywordHit hit;
        Require(tabrin::FirstKeyword(text, pos, hit) == expected, "a keyword found or missed");
        Require(!expected || (hit.start == start && hit.end == end), "a keyword found elsewhere");
        Require(!expected || hit.keyword->text == tabrin::NaiveKeywords()[index].text, "another keyword found");
    }
}

}  // namespace

void CheckCutter(std::string_view bytes, const std::string& path) {
    const std::string file = MakeFile(bytes);
    CompareStatements(file, CleanedFile(file), path);
    CompareKeywords(std::string(bytes.substr(0, 200)));
}

}  // namespace tabrin_fuzz
