// Real files and what is counted in them.
#include <algorithm>
#include <iostream>
#include <vector>

#include "abi/corpus.h"
#include "abi/interface_test.h"

namespace tabrin_test {
namespace {

class Corpus : public CorpusTest {};

// --- What holds for any file --------------------------------------------------------------------------------------

// The length of the character that the text begins with, 0 if it is none.
size_t CharacterLength(std::string_view text) {
    const auto byte = [text](size_t index) { return static_cast<unsigned>(static_cast<unsigned char>(text[index])); };
    const unsigned lead = byte(0);
    const size_t length = lead < 0x80 ? 1 : lead < 0xC2 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF5 ? 4 : 0;
    if (length == 0 || length > text.size()) {
        return 0;
    }
    for (size_t index = 1; index < length; ++index) {
        if ((byte(index) & 0xC0U) != 0x80U) {
            return 0;
        }
    }
    const bool overlong = (lead == 0xE0 && byte(1) < 0xA0) || (lead == 0xF0 && byte(1) < 0x90);
    const bool surrogate = lead == 0xED && byte(1) > 0x9F;
    const bool beyondTheLast = lead == 0xF4 && byte(1) > 0x8F;
    return overlong || surrogate || beyondTheLast ? 0 : length;
}

bool IsUtf8(std::string_view text) {
    while (!text.empty()) {
        const size_t length = CharacterLength(text);
        if (length == 0) {
            return false;
        }
        text.remove_prefix(length);
    }
    return true;
}

bool IsAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

bool IsIdentifierOrEmpty(std::string_view text) {
    const bool plain = std::all_of(text.begin(), text.end(), [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
    });
    return plain && text.size() <= 32 && (text.empty() || text[0] < '0' || text[0] > '9');
}

// Neither tab nor line end, nor any other character below the blank.
bool IsOneLine(std::string_view text) {
    return std::none_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20; });
}

// A quote without a backslash in front of it would end the comment when it is written.
bool HasEscapedQuotes(std::string_view text) {
    for (size_t quote = text.find('"'); quote != std::string_view::npos; quote = text.find('"', quote + 1)) {
        if (quote == 0 || text[quote - 1] != '\\') {
            return false;
        }
    }
    return true;
}

bool AreReceivers(std::string_view text) {
    if (text.size() == 255) {
        text = text.substr(0, text.rfind(','));  // cut by its field
    }
    while (!text.empty()) {
        const size_t comma = std::min(text.find(','), text.size());
        if (comma == 0 || !IsIdentifierOrEmpty(text.substr(0, comma)) || comma + 1 == text.size()) {
            return false;
        }
        text.remove_prefix(std::min(comma + 1, text.size()));
    }
    return true;
}

void CheckMessage(uint32_t message) {
    const CanMessageData data = MessageAt(message);
    EXPECT_EQ(data.numSignals, NumSignals(message));
    EXPECT_LE(data.numSignals, 10000U);
    EXPECT_FALSE(Field(data.identifierName).empty());
    EXPECT_TRUE(IsIdentifierOrEmpty(Field(data.identifierName))) << data.identifierName;
    EXPECT_TRUE(IsUtf8(Field(data.name))) << data.name;
    EXPECT_TRUE(IsOneLine(Field(data.name))) << data.name;
    EXPECT_TRUE(IsIdentifierOrEmpty(Field(data.transmitter))) << data.transmitter;
    EXPECT_TRUE(IsUtf8(Field(data.comment))) << data.comment;
    EXPECT_TRUE(HasEscapedQuotes(Field(data.comment))) << data.comment;
    EXPECT_TRUE(IsIdentifierOrEmpty(Field(data.sendType))) << data.sendType;
}

void CheckSignalTexts(const CanSignalData& data) {
    EXPECT_TRUE(IsIdentifierOrEmpty(Field(data.identifierName))) << data.identifierName;
    EXPECT_TRUE(IsUtf8(Field(data.name))) << data.name;
    EXPECT_TRUE(IsOneLine(Field(data.name))) << data.name;
    EXPECT_TRUE(IsAscii(Field(data.unit))) << data.unit;
    EXPECT_TRUE(IsUtf8(Field(data.unitAsWritten))) << data.unitAsWritten;
    EXPECT_TRUE(AreReceivers(Field(data.receivers))) << data.receivers;
    EXPECT_TRUE(IsUtf8(Field(data.comment))) << data.comment;
    EXPECT_TRUE(HasEscapedQuotes(Field(data.comment))) << data.comment;
}

void CheckSignalNumbers(const CanSignalData& data) {
    EXPECT_LE(data.multiplexKind, 2U);
    EXPECT_TRUE(data.multiplexKind == TABRIN_MULTIPLEX_MULTIPLEXED || data.multiplexValue == 0);
    EXPECT_LE(data.byteOrder, 1U);
    EXPECT_LE(data.valueType, 3U);
    EXPECT_TRUE(data.valueType != TABRIN_VALUE_FLOAT || data.length == 32);
    EXPECT_TRUE(data.valueType != TABRIN_VALUE_DOUBLE || data.length == 64);
    EXPECT_FALSE(data.minimum > data.maximum);  // nothing is said of ranges that are no numbers
}

void CheckValueDescriptions(uint32_t message, uint32_t signal, uint32_t count) {
    EXPECT_EQ(count, NumEnums(message, signal));
    int64_t last = INT64_MIN;
    for (uint32_t index = 0; index < count; ++index) {
        const CanSignalEnumData data = EnumAt(message, signal, index);
        EXPECT_GT(data.value, last);
        EXPECT_TRUE(IsUtf8(Field(data.text))) << data.text;
        last = data.value;
    }
    CanSignalEnumData none{};
    EXPECT_FALSE(Library().GetCanSignalEnumData(message, signal, count, &none));
}

void CheckSignals(uint32_t message) {
    const uint32_t count = NumSignals(message);
    for (uint32_t signal = 0; signal < count; ++signal) {
        SCOPED_TRACE(testing::Message() << "signal " << message << "." << signal);
        const CanSignalData data = SignalAt(message, signal);
        CheckSignalTexts(data);
        CheckSignalNumbers(data);
        CheckValueDescriptions(message, signal, data.numValueDescriptions);
    }
    CanSignalData none{};
    EXPECT_FALSE(Library().GetCanSignalData(message, count, &none));
}

void CheckErrors() {
    const uint32_t count = NumErrors();
    uint32_t lastLine = 0;
    for (uint32_t index = 0; index < count; ++index) {
        const CanErrorData data = ErrorAt(index);
        const std::string text = Field(data.text);
        EXPECT_LE(data.code, 6U);
        EXPECT_EQ(text.substr(0, 3), data.code <= 2 ? "BO_" : "SG_");
        EXPECT_TRUE(IsUtf8(text)) << text;
        EXPECT_LE(text.size(), 254U);
        EXPECT_GE(data.line, lastLine);
        lastLine = data.line;
    }
    CanErrorData none{};
    EXPECT_FALSE(Library().GetErrorData(count, &none));
}

TEST_F(Corpus, EveryFileGivesAConsistentDatabase) {
    std::cout << "files in the folder for real files: " << names_.size() << "\n";
    for (const std::string& name : names_) {
        SCOPED_TRACE(name);
        EXPECT_EQ(ReadFile(PathOf(name)), kDone);
        const int64_t count = Library().GetNumCanMessages();
        for (uint32_t message = 0; message < count; ++message) {
            SCOPED_TRACE(testing::Message() << "message " << message);
            CheckMessage(message);
            CheckSignals(message);
        }
        CanMessageData none{};
        EXPECT_FALSE(Library().GetCanMessageData(static_cast<uint32_t>(count), &none));
        CheckErrors();
        ASSERT_FALSE(HasFailure()) << "the other files are not looked at";
    }
}

TEST_F(Corpus, EveryFileGivesTheSameWhenReadAgain) {
    for (const std::string& name : names_) {
        SCOPED_TRACE(name);
        ASSERT_EQ(ReadFile(PathOf(name)), kDone);
        const std::string first = DumpDatabase();
        ASSERT_EQ(ReadFile(PathOf(name)), kDone);
        EXPECT_TRUE(DumpDatabase() == first);
    }
}

// --- Numbers counted in the files themselves ----------------------------------------------------------------------

struct CountRow {
    const char* name;
    uint32_t messages;
    uint32_t signals;
    uint32_t errors;
};

// Counted with grep in the texts: lines that begin with BO_, lines that begin with blanks and SG_. In all files but the
// ones remarked, all of these are of the plain form, every SG_ line follows a BO_ or SG_ line, and keywords stand
// elsewhere only behind CM_, BA_DEF_ and the name of a BA_, where they belong to that statement.
constexpr CountRow kCounts[] = {
    {"abs.dbc", 18, 89, 0},
    {"actuator.dbc", 5, 21, 0},
    {"attributes.dbc", 2, 2, 0},
    // The value type that does not fit is no error, the signal stays an integer.
    {"bad-float-length.dbc", 1, 1, 0},
    // The second BO_ has a letter for its length: it is the error, and its three SG_ lines are passed over.
    {"bad-midfile.dbc", 1, 3, 1},
    {"bmw-e9x.dbc", 326, 165, 0},
    {"complete.dbc", 4, 15, 0},
    // No BO_ at all. The keywords under NS_ and the comment full of broken bytes are no errors.
    {"cp1252.dbc", 0, 0, 0},
    {"dlc-zero.dbc", 1, 0, 0},
    // Two identifiers appear twice; each BO_ line is a message.
    {"duplicate-ids.dbc", 14, 36, 0},
    // "BO_ 213909870  Magic..." has two blanks, and names may stand directly in front of their colon.
    {"ex1.dbc", 121, 437, 0},
    {"example.dbc", 8, 24, 0},
    {"float-mux.dbc", 4, 35, 0},
    {"float.dbc", 2, 3, 0},
    // Two further SG_ stand in BA_REL_ statements; no BO_ is in front of them, so they are passed over silently.
    {"foobar.dbc", 5, 8, 0},
    {"ford-lincoln.dbc", 331, 2150, 0},
    {"from-sym.dbc", 28, 158, 0},
    {"gm-lowspeed.dbc", 367, 3210, 0},
    // A comment on a signal has "SG_" in its text, on one line: it belongs to the comment. The value descriptions of
    // more than 4096 bytes stand on one line behind all messages and cut nothing off.
    {"hyundai-canfd.dbc", 51, 648, 0},
    {"iso11783.dbc", 2627, 2627, 0},
    {"j1939-small.dbc", 2, 2, 0},
    // The message named "B" has a name of one letter behind its blank, which is enough. Thirteen of the 2390 signals
    // have a maximum beyond the largest double (4.4E+481, 2.7E+4161). They stand at the end of six messages, in groups
    // of 1, 5, 2, 1, 3 and 1: the first of each group is an error, the others are passed over behind it.
    {"j1939.dbc", 357, 2377, 6},
    // CM_ and BA_ stand between the message and its signal, so the signal is passed over silently.
    {"latin1-small.dbc", 1, 0, 0},
    {"long-names.dbc", 10, 13, 0},
    {"mazda-rx8.dbc", 7, 17, 0},
    {"model3.dbc", 148, 3172, 0},
    {"motohawk-fd.dbc", 1, 3, 0},
    // "S1 m0M" and "S0 m3M" are no simple multiplexers and become names: no errors.
    {"mux-extended.dbc", 4, 19, 0},
    {"nmea-pgns.dbc", 345, 1382, 0},
    {"nmea-small.dbc", 1, 18, 0},
    {"obd2.dbc", 2, 2372, 0},
    // Nine messages at the beginning of a line. Behind CAT_ stand six more BO_ ("CAT_ BO_ 66 1;"): each ends the CAT_
    // and is a statement of its own that lacks its colon. Three SG_ in BA_REL_ are passed over. The signal named just
    // "M" is a multiplexor without a name.
    {"parser-test.dbc", 9, 28, 6},
    {"rivian-actuator.dbc", 67, 392, 0},
    {"rivian-park.dbc", 2, 12, 0},
    {"tesla-can.dbc", 44, 572, 0},
    // 18 lines begin with BO_; a nineteenth BO_ follows two carriage returns behind an SG_, and those are blanks.
    {"tesla-lone-cr.dbc", 19, 210, 0},
    // 62 comments go over several lines, none of which begins with or has a keyword behind a blank.
    {"thinkcity.dbc", 501, 548, 0},
    {"utf8-unit.dbc", 1, 6, 0},
    {"vehicle.dbc", 217, 462, 0},
    {"vw-mqb.dbc", 113, 1348, 0},
    // "MO2_Mp_Code m :" has no number behind its "m", so that the whole is a name.
    {"vw-pq.dbc", 86, 1331, 0},
};

TEST_F(Corpus, FilesHaveWhatIsCountedInThem) {
    size_t found = 0;
    for (const CountRow& row : kCounts) {
        if (!HasFile(row.name)) {
            std::cout << row.name << " is not in the folder for real files\n";
            continue;
        }
        SCOPED_TRACE(row.name);
        ++found;
        EXPECT_EQ(ReadFile(PathOf(row.name)), kDone);
        uint32_t signals = 0;
        for (uint32_t message = 0; message < NumMessages(); ++message) {
            signals += NumSignals(message);
        }
        EXPECT_EQ(NumMessages(), row.messages);
        EXPECT_EQ(signals, row.signals);
        EXPECT_EQ(NumErrors(), row.errors);
    }
    EXPECT_GT(found, 0U) << "none of the files counted is there";
}

struct FileError {
    const char* name;
    uint32_t index;
    uint32_t code;
    uint32_t line;
    const char* text;  // what it begins with: the receivers are left out
};

// Followed by an empty line, which raises their numbers: the last one in parser-test.dbc, the first, fourth and sixth
// in j1939.dbc.
constexpr FileError kFileErrors[] = {
    {"bad-midfile.dbc", 0, 2, 40, "BO_ 512 BrakeStatus: X Brake\n"},
    {"j1939.dbc", 0, 6, 199,
     "SG_ Text_Display_Character : 24|1600@1+ (1,0) [0|4.446241647709404462001681407E+481] \"\" "},
    {"j1939.dbc", 1, 6, 1680, "SG_ ECU_Part_Number : 0|1600@1+ (1,0) [0|4.446241647709404462001681407E+481] \"\" "},
    {"j1939.dbc", 2, 6, 2194,
     "SG_ Driver_1_identification : 0|13824@1+ (1,0) [0|2.745744098767810851571364370E+4161] \"\" "},
    {"j1939.dbc", 3, 6, 2816,
     "SG_ Software_Identification : 8|1600@1+ (1,0) [0|4.446241647709404462001681407E+481] \"\" "},
    {"j1939.dbc", 4, 6, 2957, "SG_ Model : 0|1600@1+ (1,0) [0|4.446241647709404462001681407E+481] \"\" "},
    {"j1939.dbc", 5, 6, 2963,
     "SG_ Vehicle_Identification_Number : 0|1600@1+ (1,0) [0|4.446241647709404462001681407E+481] \"\" "},
    {"parser-test.dbc", 0, 1, 225, "BO_ 66 1;"},
    {"parser-test.dbc", 1, 1, 226, "BO_ 67 2;"},
    {"parser-test.dbc", 2, 1, 227, "BO_ 68 3;"},
    {"parser-test.dbc", 3, 1, 228, "BO_ 69 1;"},
    {"parser-test.dbc", 4, 1, 229, "BO_ 70 2;"},
    {"parser-test.dbc", 5, 1, 231, "BO_ 71 3;\n"},
};

TEST_F(Corpus, ErrorsHaveTheLinesCountedInTheFiles) {
    size_t found = 0;
    for (const FileError& row : kFileErrors) {
        if (!HasFile(row.name)) {
            std::cout << row.name << " is not in the folder for real files\n";
            continue;
        }
        SCOPED_TRACE(testing::Message() << row.name << " error " << row.index);
        ++found;
        ASSERT_EQ(ReadFile(PathOf(row.name)), kDone);
        const CanErrorData error = ErrorAt(row.index);
        EXPECT_EQ(error.code, row.code);
        EXPECT_EQ(error.line, row.line);
        EXPECT_EQ(Field(error.text).substr(0, std::string_view(row.text).size()), row.text);
    }
    EXPECT_GT(found, 0U) << "none of the files with errors is there";
}

}  // namespace
}  // namespace tabrin_test
