// Whole files, as a caller sees them: the two samples, and files that are no DBC files at all.
#include <vector>

#include "abi/interface_test.h"

namespace tabrin_test {
namespace {

class ReadFileContents : public InterfaceTest {};

struct SignalRow {
    const char* identifierName;
    const char* name;
    const char* unit;
    const char* unitAsWritten;
    const char* receivers;
    const char* comment;
    uint32_t multiplexKind;
    uint32_t multiplexValue;
    uint32_t startBit;
    uint32_t length;
    uint32_t byteOrder;
    uint32_t valueType;
    double factor;
    double offset;
    double minimum;
    double maximum;
    uint32_t startValue;
    uint32_t inactiveValue;
    const char* enums;
};

void ExpectSignal(uint32_t message, uint32_t signal, const SignalRow& row) {
    SCOPED_TRACE(row.name);
    const CanSignalData data = SignalAt(message, signal);
    EXPECT_EQ(Field(data.identifierName), row.identifierName);
    EXPECT_EQ(Field(data.name), row.name);
    EXPECT_EQ(Field(data.unit), row.unit);
    EXPECT_EQ(Field(data.unitAsWritten), row.unitAsWritten);
    EXPECT_EQ(Field(data.receivers), row.receivers);
    EXPECT_EQ(Field(data.comment), row.comment);
    EXPECT_EQ(data.multiplexKind, row.multiplexKind);
    EXPECT_EQ(data.multiplexValue, row.multiplexValue);
    EXPECT_EQ(data.startBit, row.startBit);
    EXPECT_EQ(data.length, row.length);
    EXPECT_EQ(data.byteOrder, row.byteOrder);
    EXPECT_EQ(data.valueType, row.valueType);
    EXPECT_EQ(data.factor, row.factor);
    EXPECT_EQ(data.offset, row.offset);
    EXPECT_EQ(data.minimum, row.minimum);
    EXPECT_EQ(data.maximum, row.maximum);
    EXPECT_EQ(data.startValue, row.startValue);
    EXPECT_EQ(data.inactiveValue, row.inactiveValue);
    EXPECT_EQ(EnumsOf(message, signal), row.enums);
}

TEST_F(ReadFileContents, OfTheEngineSampleAreComplete) {
    ASSERT_EQ(ReadFile(std::string(TABRIN_TEST_DATA_DIR) + "/engine.dbc"), kDone);
    EXPECT_EQ(Info().protocolType, 1U);
    EXPECT_EQ(Info().canFd, 1U);
    EXPECT_EQ(NumErrors(), 0U);
    ASSERT_EQ(NumMessages(), 3U);
    EXPECT_EQ(Dump(MessageAt(0)), "100|EngineStatus|EngineStatus|8|ECU|Sent every \\\"10\\\" ms|Cyclic|20|4");
    EXPECT_EQ(Dump(MessageAt(1)), "2364540158|Engine_Data|Engine Data|64|Node_1||On_Change|100|1");
    EXPECT_EQ(Dump(MessageAt(2)), "5|NoSignals|Nothing inside|0|||On_Change|100|0");
    constexpr uint32_t kMinusOne = 0xFFFFFFFFU;
    const SignalRow status[] = {
        {"Mode", "Mode", "", "", "Dash", "", 1, 0, 0, 4, 1, 0, 1.0, 0.0, 0.0, 15.0, 3, kMinusOne,
         "-1=Error;0=Off;1=On - Running;"},
        {"EngineSpeed", "Engine speed", "rpm", "rpm", "Dash,Log", "", 0, 0, 8, 16, 1, 0, 0.125, 0.0, 0.0, 8031.875, 3,
         kMinusOne, ""},
        {"OilTemp", "OilTemp", "_C",
         "\xC2\xB0"
         "C",
         "Dash", "First line\nsecond line", 2, 2, 24, 8, 1, 1, 0.5, -40.0, -40.0, 215.0, 3, kMinusOne, ""},
        {"Torque", "Torque", "Nm", "Nm", "", "", 0, 0, 39, 32, 0, 2, 1.0, 0.0, -1000000.0, 1000000.0, 7, kMinusOne, ""},
    };
    for (uint32_t signal = 0; signal < 4; ++signal) {
        ExpectSignal(0, signal, status[signal]);
    }
    ExpectSignal(
        1, 0,
        {"Exact_Value", "Exact Value", "", "", "Dash", "", 0, 0, 0, 64, 1, 3, 1.0, 0.0, 0.0, 0.0, 3, kMinusOne, ""});
}

TEST_F(ReadFileContents, OfTheFaultySampleAreItsErrors) {
    ASSERT_EQ(ReadFile(std::string(TABRIN_TEST_DATA_DIR) + "/faulty.dbc"), kDone);
    EXPECT_EQ(DumpDatabase(),
              "info 0 0\n"
              "message 10|Good|Good|8|ECU|||0|1\n"
              "  signal First|First|||Dash||0 0 0 8 1 0 0 0 0 3ff0000000000000 0000000000000000 0000000000000000 "
              "406fe00000000000 \n"
              "    \n"
              "message 50|Next|Next|8|ECU|||0|0\n"
              "message 60|Next|Next|8|ECU|||0|0\n"
              "message 70|Next|Next|8|ECU|||0|0\n"
              "error 4 5 SG_ Second : 8|x@1+ (1,0) [0|255] \"\" Dash\n\n"
              "error 0 8 BO_ 0x20 Hexadecimal: 8 ECU\n\n"
              "error 1 11 BO_ 30 : 8 ECU\n"
              "error 2 12 BO_ 40 NoLength: ECU\n"
              "error 3 14 SG_ NoColon 0|8@1+ (1,0) [0|255] \"\" Dash\n"
              "error 5 16 SG_ NoFactor : 0|8@1+ (,0) [0|255] \"\" Dash\n"
              "error 6 18 SG_ NoRange : 0|8@1+ (1,0) [0-255] \"\" Dash\n"
              "error 1 18 BO_ 80 NoColonAtTheEnd\n");
}

TEST_F(ReadFileContents, AreEmptyForAFileWithoutStatements) {
    const std::string files[] = {
        "",
        "\n",
        "\r\n\r\n",
        " ",
        "VERSION \"\"\n",
        "no keyword anywhere\nBO_\x01: BO_1 bo_ \n",
        std::string(1, '\0'),
        std::string(5000, '\0'),
        "\xEF\xBB\xBF",
        "\x1A",
        "{\"messages\": [1, 2, 3]}",
        "PK\x03\x04",
        "\xFF\xFE" + std::string("B\0O\0_\0 \0", 8),
    };
    for (const std::string& file : files) {
        SCOPED_TRACE(Shown(file));
        ASSERT_TRUE(AppendMessage(1, "Old"));
        EXPECT_EQ(ReadText(file), kDone);
        EXPECT_EQ(DumpDatabase(), "info 0 0\n");
    }
}

TEST_F(ReadFileContents, DoNotDependOnLineEnds) {
    const std::string lines[] = {"BO_ 1 M: 8 N",
                                 " SG_ A m1 : 0|8@1+ (1,0) [0|1] \"V\" N",
                                 "",
                                 "BO_ x Bad: 8 N",
                                 "CM_ SG_ 1 A \"comment\";",
                                 "VAL_ 1 A 0 \"Off\" 1 \"On\" ;"};
    const std::string expected =
        "info 0 0\n"
        "message 1|M|M|8|N|||0|1\n"
        "  signal A|A|V|V|N|comment|2 1 0 8 1 0 2 0 0 3ff0000000000000 0000000000000000 0000000000000000 "
        "3ff0000000000000 \n"
        "    0=Off;1=On;\n"
        "error 0 4 BO_ x Bad: 8 N\n";
    for (const char* lineEnd : {"\n", "\r\n"}) {
        for (const bool last : {true, false}) {
            SCOPED_TRACE(testing::Message() << "line end of " << std::strlen(lineEnd) << (last ? ", also last" : ""));
            std::string file;
            for (const std::string& line : lines) {
                file += (file.empty() ? "" : lineEnd) + line;
            }
            EXPECT_EQ(ReadText(last ? file + lineEnd : file), kDone);
            EXPECT_EQ(DumpDatabase(), expected);
        }
    }
}

struct MessageRow {
    std::string file;
    std::string messages;
};

// All messages, such as "1 Name|Transmitter;".
std::string Messages() {
    std::string text;
    for (uint32_t message = 0; message < NumMessages(); ++message) {
        const CanMessageData data = MessageAt(message);
        text += std::to_string(data.id) + " " + Field(data.name) + "|" + Field(data.transmitter) + ";";
    }
    return text;
}

void ExpectMessages(const MessageRow& row) {
    SCOPED_TRACE(Shown(row.file));
    EXPECT_EQ(ReadText(row.file), kDone);
    EXPECT_EQ(Messages(), row.messages);
    EXPECT_EQ(NumErrors(), 0U);
}

TEST_F(ReadFileContents, TakeACarriageReturnAloneForABlank) {
    ExpectMessages({"BO_ 1 A: 8 N\r\rBO_ 2 B: 8\rN\rBO_\r3\rC:\r8\rN\r", "1 A|N;2 B|N;3 C|N;"});
}

TEST_F(ReadFileContents, GoOnBehindAnEndOfTextMark) {
    ExpectMessages(
        {"BO_ 1 A: 8 N\n\x1A\nBO_ 2 B\x1A"
         "C: 8 N\n",
         "1 A|N;2 BC|N;"});
}

TEST_F(ReadFileContents, LeaveOutControlCharactersAlsoInsideKeywords) {
    ExpectMessages({std::string("B\0O\x02_ \x7F"
                                "1 A\x08: 8\x0E N\x1F\n",
                                17),
                    "1 A|N;"});
}

// A byte order mark makes the first word another one; the rest of its line counts from the next keyword on.
TEST_F(ReadFileContents, LoseAStatementDirectlyBehindAByteOrderMark) {
    ExpectMessages(
        {"\xEF\xBB\xBF"
         "BO_ 1 A: 8 N\nBO_ 2 B: 8 N\n",
         "2 B|N;"});
    ExpectMessages(
        {"\xEF\xBB\xBF"
         "VERSION \"\" BO_ 1 A: 8 N\nBO_ 2 B: 8 N\n",
         "1 A|N;2 B|N;"});
    ExpectMessages({"\xEF\xBB\xBF\nBO_ 1 A: 8 N\n", "1 A|N;"});
}

TEST_F(ReadFileContents, HaveBrokenCharactersReplacedByteByByte) {
    ExpectMessages(
        {"BO_ 1 A\xE4"
         "B: 8 N\n",
         "1 A_B|N;"});
    ExpectMessages(
        {"BO_ 1 A\xE4\xB6"
         "B: 8 N\n",
         "1 A__B|N;"});
    ExpectMessages(
        {"BO_ 1 A\xC3\xA4"
         "B: 8 N\n",
         "1 A\xC3\xA4"
         "B|N;"});
    ExpectMessages({"BO_ 1 A\xED\xA0\x80\xF4\x90\x80\x80\xC0\xAF: 8 N\n", "1 A_________|N;"});
    ExpectMessages({"BO_ 1 A: 8 N\xE4\xB6\n", "1 A|N__;"});
    // A character over a line end is none.
    ExpectMessages({"BO_ 1 A: 8 N\xC3\n\xA4\n", "1 A|N___;"});
}

// Every byte in many surroundings: a defined result and valid text, whatever comes out.
TEST_F(ReadFileContents, OfAllByteValuesAreHarmless) {
    std::string all;
    for (int first = 0; first < 256; ++first) {
        for (int second = 0; second < 256; ++second) {
            all += static_cast<char>(first);
            all += static_cast<char>(second);
        }
    }
    EXPECT_EQ(ReadText(all), kDone);
    EXPECT_EQ(DumpDatabase(), "info 0 0\n");
    // A message with all of it behind its length: the longest identifier that it makes.
    EXPECT_EQ(ReadText("BO_ 1 A: 8 " + all + "\nBO_ 2 B: 8 N\n"), kDone);
    ASSERT_EQ(NumMessages(), 2U);
    EXPECT_EQ(Field(MessageAt(0).transmitter).size(), 32U);
    EXPECT_EQ(Field(MessageAt(1).name), "B");
}

constexpr size_t kEightMegabytes = size_t{8} << 20;

TEST_F(ReadFileContents, OfOneLongLineWithoutKeywordAreEmpty) {
    EXPECT_EQ(ReadText(std::string(kEightMegabytes, 'a')), kDone);
    EXPECT_EQ(DumpDatabase(), "info 0 0\n");
    EXPECT_EQ(ReadText(std::string(kEightMegabytes, ' ')), kDone);
    EXPECT_EQ(DumpDatabase(), "info 0 0\n");
    EXPECT_EQ(ReadText(std::string(kEightMegabytes, '\xFF')), kDone);
    EXPECT_EQ(DumpDatabase(), "info 0 0\n");
}

TEST_F(ReadFileContents, OfOneLongStatementAreTaken) {
    EXPECT_EQ(ReadText("BO_ 1 A: 8 " + std::string(kEightMegabytes, 't') + "\nBO_ 2 B: 8 N\n"), kDone);
    EXPECT_EQ(Messages(), "1 A|" + std::string(32, 't') + ";2 B|N;");
}

TEST_F(ReadFileContents, OfOneLongLineFullOfStatementsAreAllTaken) {
    std::string file;
    for (int i = 0; i < 100000; ++i) {
        file += "BO_ 1 A: 8 N ";
    }
    EXPECT_EQ(ReadText(file), kDone);
    EXPECT_EQ(NumMessages(), 100000U);
    EXPECT_EQ(NumErrors(), 0U);
    EXPECT_EQ(Field(MessageAt(99999).transmitter), "N");
}

TEST_F(ReadFileContents, OfALongLineOfKeywordsAloneAreErrors) {
    std::string file;
    for (int i = 0; i < 100000; ++i) {
        file += "BO_ ";
    }
    EXPECT_EQ(ReadText(file), kDone);
    EXPECT_EQ(NumMessages(), 0U);
    EXPECT_EQ(NumErrors(), 100000U);
    EXPECT_EQ(ErrorAt(99999).code, 0U);
}

// A statement of more than 4096 bytes without a keyword behind it ends with the line that made it so long.
TEST_F(ReadFileContents, OfAStatementOver4096BytesAreCutAtALineEnd) {
    // The comment's closing quote is cut off, so that its opening quote is the last one.
    const std::string longLine(5000, 'x');
    ASSERT_EQ(ReadText("BO_ 1 A: 8 N\nCM_ BO_ 1 \"" + longLine + "\nsecond\";\nBO_ 2 B: 8 N\n"), kDone);
    EXPECT_EQ(Field(MessageAt(0).comment), "");
    EXPECT_EQ(Messages(), "1 A|N;2 B|N;");
    const std::string shortLine(4000, 'x');
    ASSERT_EQ(ReadText("BO_ 1 A: 8 N\nCM_ BO_ 1 \"" + shortLine + "\nsecond\";\nBO_ 2 B: 8 N\n"), kDone);
    EXPECT_EQ(Field(MessageAt(0).comment), std::string(255, 'x'));
}

}  // namespace
}  // namespace tabrin_test
