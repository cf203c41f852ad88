// The error records of a read, and files of random pieces.
#include <gtest/gtest.h>
#include <utf8.h>

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "dbc/reading.h"
#include "shown.h"

namespace tabrin {
namespace {

struct ReadError {
    uint32_t code;
    uint32_t line;
    std::string text;
};

struct File {
    std::string text;
    std::vector<ReadError> errors;
};

void ExpectErrors(const File& row) {
    SCOPED_TRACE(Shown(row.text));
    CANDatabase database;
    EXPECT_TRUE(ReadText(database, row.text));
    ASSERT_EQ(database.errors.size(), row.errors.size());
    for (size_t i = 0; i < row.errors.size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(database.errors[i].code, row.errors[i].code);
        EXPECT_EQ(database.errors[i].line, row.errors[i].line);
        EXPECT_EQ(std::string(database.errors[i].text), row.errors[i].text);
    }
}

TEST(DbcReaderErrors, LineIsThatOfTheStatementWhenTheNextOneFollowsAtOnce) {
    ExpectErrors(
        {"VERSION \"\"\n"
         "BO_ x A: 8 E\n"
         "BO_ 100 : 8 E\n"
         "BO_ 100 Msg: E\n"
         "BO_ 100 Msg: 8 E\n"
         "SG_ x\n"
         "BO_ 100 Msg: 8 E\n"
         "SG_ S : x\n"
         "BO_ 100 Msg: 8 E\n"
         "SG_ S : 0|8@1+ ()\n"
         "BO_ 100 Msg: 8 E\n"
         "SG_ S : 0|8@1+ (1,0) []\n"
         "VERSION \"\"\n",
         {{0, 2, "BO_ x A: 8 E"},
          {1, 3, "BO_ 100 : 8 E"},
          {2, 4, "BO_ 100 Msg: E"},
          {3, 6, "SG_ x"},
          {4, 8, "SG_ S : x"},
          {5, 10, "SG_ S : 0|8@1+ ()"},
          {6, 12, "SG_ S : 0|8@1+ (1,0) []"}}});
}

TEST(DbcReaderErrors, LineIsCountedWhenTheStatementIsComplete) {
    const File kRows[] = {
        // Empty lines behind a statement raise it.
        {"BO_ x A: 8 E\n\n\nBO_ 1 B: 8 E\n", {{0, 3, "BO_ x A: 8 E\n\n"}}},
        {"BO_ x A: 8 E\n \t\nVERSION \"\"\n", {{0, 2, "BO_ x A: 8 E\n \t"}}},
        // The last statement has one line less than were read.
        {"BO_ x A: 8 E", {{0, 0, "BO_ x A: 8 E"}}},
        {"BO_ x A: 8 E\n", {{0, 0, "BO_ x A: 8 E"}}},
        {"BO_ x A: 8 E\n\n\n", {{0, 2, "BO_ x A: 8 E\n\n"}}},
        {"VERSION \"\"\nBO_ x A: 8 E\n", {{0, 1, "BO_ x A: 8 E"}}},
        // Several on a line.
        {"BO_ x A: 8 E BO_ y B: 8 E\nVERSION \"\"\n", {{0, 0, "BO_ x A: 8 E"}, {0, 1, "BO_ y B: 8 E"}}},
        {"BO_ x A: 8 E BO_ y B: 8 E VERSION \"\"\n", {{0, 0, "BO_ x A: 8 E"}, {0, 0, "BO_ y B: 8 E"}}},
        // One on several lines.
        {"BO_ 100\nMsg: 8\nE\n\tSG_ S\n : 0|x@1+ (1,0)\n [0|1] \"\" A\nVERSION \"\"\n",
         {{4, 6, "SG_ S\n : 0|x@1+ (1,0)\n [0|1] \"\" A"}}},
        // Lines in front of the first keyword count.
        {"junk\n\nmore junk BO_ x A: 8 E\nVERSION \"\"\n", {{0, 3, "BO_ x A: 8 E"}}},
        {"BO_ x A: 8 E\r\n\r\nVERSION \"\"\r\n", {{0, 2, "BO_ x A: 8 E\n"}}},
    };
    for (const File& row : kRows) {
        ExpectErrors(row);
    }
}

TEST(DbcReaderErrors, TextIsTheStatementUpToTheNextKeyword) {
    const File kRows[] = {
        // The indentation of the next statement belongs to it; the last character goes.
        {"BO_ x A: 8 E\n SG_ S : x\n", {{0, 1, "BO_ x A: 8 E\n"}}},
        {"BO_ x A: 8 E\n\t SG_ S : x\n", {{0, 1, "BO_ x A: 8 E\n\t"}}},
        // The indentation of the statement itself does not.
        {"  BO_ x A: 8 E\nVERSION \"\"\n", {{0, 1, "BO_ x A: 8 E"}}},
        // As cleaned.
        {"BO_ x \xFF\x01"
         "A\xE2\x82: 8 E\nVERSION \"\"\n",
         {{0, 1, "BO_ x _A__: 8 E"}}},
        {"BO_ x \xC3\xA4: 8 E\nVERSION \"\"\n", {{0, 1, "BO_ x \xC3\xA4: 8 E"}}},
        // At most 254 bytes. A statement that is too long for the buffer is complete with its own line.
        {"BO_ x " + std::string(300, 'a') + "\nVERSION \"\"\n", {{0, 1, "BO_ x " + std::string(248, 'a')}}},
        {"BO_ x " + std::string(5000, 'a') + "\nBO_ y B: 8 E\nVERSION \"\"\n",
         {{0, 0, "BO_ x " + std::string(248, 'a')}, {0, 2, "BO_ y B: 8 E"}}},
    };
    for (const File& row : kRows) {
        ExpectErrors(row);
    }
}

bool IsText(std::string_view text) {
    return utf8::is_valid(text.begin(), text.end());
}

bool IsPlainIdentifier(std::string_view name) {
    const auto isPlain = [](unsigned char c) { return c < 0x80 && (std::isalnum(c) != 0 || c == '_'); };
    return name.size() <= 32 && std::all_of(name.begin(), name.end(), isPlain) &&
           (name.empty() || std::isdigit(static_cast<unsigned char>(name.front())) == 0);
}

void ExpectSoundSignal(const CANSignal& signal) {
    SCOPED_TRACE(Shown(signal.name));
    EXPECT_FALSE(signal.invalid);
    EXPECT_TRUE(IsPlainIdentifier(signal.identifierName));
    EXPECT_TRUE(IsText(signal.name) && IsText(signal.unitAsWritten) && IsText(signal.comment.View()));
    EXPECT_FALSE(signal.minimum > signal.maximum);
    EXPECT_LE(signal.multiplexKind, 2U);
    EXPECT_LE(signal.byteOrder, 1U);
    EXPECT_TRUE(signal.valueType != 2 || signal.length == 32);
    EXPECT_TRUE(signal.valueType != 3 || signal.length == 64);
}

void ExpectSound(const CANDatabase& database) {
    EXPECT_TRUE(database.identifierIndex.IsEmpty());
    EXPECT_TRUE(database.attributes.Definitions().empty());
    EXPECT_TRUE(database.attributes.Values().empty());
    for (const auto& message : database.messages) {
        SCOPED_TRACE(Shown(message->name));
        EXPECT_FALSE(message->invalid);
        EXPECT_TRUE(IsPlainIdentifier(message->identifierName) && !message->identifierName.empty());
        EXPECT_TRUE(IsPlainIdentifier(message->transmitter));
        EXPECT_TRUE(IsText(message->name) && IsText(message->comment.View()));
        for (const auto& signal : message->signals) {
            ExpectSoundSignal(*signal);
        }
    }
    for (const CanErrorData& error : database.errors) {
        EXPECT_LE(error.code, 6U) << Shown(error.text);
        EXPECT_TRUE(IsText(error.text)) << Shown(error.text);
    }
}

std::string RandomText(std::mt19937& random) {
    const std::string_view kPieces[] = {"BO_ ",
                                        "SG_ ",
                                        "CM_ ",
                                        "BA_ ",
                                        "BA_DEF_ ",
                                        "BA_DEF_DEF_ ",
                                        "VAL_ ",
                                        "BU_ ",
                                        "FILTER ",
                                        "SIG_VALTYPE_ ",
                                        "BO_ 100 M: 8 E\n",
                                        "100 ",
                                        "S ",
                                        "M ",
                                        "m1 ",
                                        ": ",
                                        "0|32@1+ ",
                                        "0|8@0- ",
                                        "(1,0) ",
                                        "[0|1] ",
                                        "[1|0] ",
                                        "\"",
                                        "\"u\" ",
                                        "A,B",
                                        ";",
                                        ";\n",
                                        "\n",
                                        "\r\n",
                                        "\r",
                                        " ",
                                        "\t",
                                        "-1 ",
                                        "4294967296 ",
                                        "\xC3\xA4",
                                        "\xFF",
                                        "\xF0\x9F",
                                        "\x1A",
                                        "1;",
                                        "2;",
                                        "ENUM ",
                                        "INT 0 1 ",
                                        "\"GenMsgCycleTime\" ",
                                        "\"\\\"\"",
                                        "\"BusType\" ",
                                        "SG_ S : 0|32@1+ (1,0) [0|1] \"\" A\n"};
    std::string text;
    for (auto more = random() % 200; more > 0; --more) {
        // Now and then a single byte, and a whole message, without which most of a file would be passed over.
        if (random() % 20 == 0) {
            text += static_cast<char>(random() % 256);
        } else if (random() % 8 == 0) {
            text += "\nBO_ 100 M: 8 E\n SG_ S : 0|32@1+ (1,0) [0|1] \"\" A\nSG_ T ";
        } else {
            text += kPieces[random() % std::size(kPieces)];
        }
    }
    return text;
}

TEST(DbcReaderErrors, FilesOfRandomPiecesGiveSoundDatabases) {
    size_t numSignals = 0;
    size_t numErrors = 0;
    for (uint32_t seed = 1; seed <= 300; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        CANDatabase database;
        FileStatus status = FileStatus::Failed;
        const std::string text = RandomText(random);
        EXPECT_TRUE(ReadText(database, text, &status));
        EXPECT_EQ(status, FileStatus::Closed);
        ExpectSound(database);
        ASSERT_FALSE(HasFailure()) << Shown(text);
        for (const auto& message : database.messages) {
            numSignals += message->signals.size();
        }
        numErrors += database.errors.size();
    }
    // The seeds are worth something only if they lead deep enough.
    EXPECT_GT(numSignals, 100U);
    EXPECT_GT(numErrors, 100U);
}

}  // namespace
}  // namespace tabrin
