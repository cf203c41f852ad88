// TabrinWriteDbcFile as a caller sees it. Expected files are written out in full.
#include <algorithm>
#include <string_view>
#include <vector>

#include "abi/interface_test.h"
#include "written_header.h"

namespace tabrin_test {
namespace {

// The node line of databases whose messages and signals name no node.
constexpr std::string_view kDefaultNodes = "BU_ :  Kestrune\r\n\r\n";

class WriteDbcFile : public InterfaceTest {
protected:
    void SetUp() override {
        InterfaceTest::SetUp();
        path_ = TempPath("dbc");
        std::filesystem::remove(FilePath(path_));
    }

    // Writes the database and returns the bytes of the file behind the header.
    std::string Written(uint32_t order = TABRIN_ORDER_DATABASE) const {
        EXPECT_EQ(WriteFile(path_, order), kDone);
        const std::string bytes = ReadBytes(path_);
        EXPECT_EQ(bytes.substr(0, kWrittenHeader.size()), kWrittenHeader);
        return bytes.substr(std::min(kWrittenHeader.size(), bytes.size()));
    }

    std::string path_;
};

// --- Status -------------------------------------------------------------------------------------------------------

TEST_F(WriteDbcFile, RefusesAnEmptyDatabaseInAnyOrder) {
    for (const uint32_t order : {0U, 1U, 2U, 3U}) {
        SCOPED_TRACE(order);
        EXPECT_EQ(WriteFile(path_, order), (Outcome{false, 2}));
    }
}

TEST_F(WriteDbcFile, LeavesTheFileAloneWhenItRefusesTheDatabase) {
    WriteBytes(path_, "kept");
    EXPECT_EQ(WriteFile(path_, TABRIN_ORDER_DATABASE), (Outcome{false, 2}));
    EXPECT_EQ(ReadBytes(path_), "kept");
}

TEST_F(WriteDbcFile, RefusesAnEmptyDatabaseBeforeLookingAtThePath) {
    EXPECT_EQ(WriteFile(path_, 0), (Outcome{false, 2}));
    EXPECT_FALSE(std::filesystem::exists(FilePath(path_)));
    const struct {
        const char* path;
        uint32_t size;
    } rows[] = {{nullptr, 0}, {"", 1}, {"\x80", 2}, {"x", 261}};
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << (row.path == nullptr ? "null" : Shown(row.path)) << " in " << row.size);
        uint32_t status = kUnwritten;
        EXPECT_FALSE(Library().WriteDbcFile(row.path, row.size, 0, &status));
        EXPECT_EQ(status, 2U);
    }
    EXPECT_FALSE(Library().WriteDbcFile(path_.c_str(), static_cast<uint32_t>(path_.size() + 1), 0, nullptr));
}

TEST_F(WriteDbcFile, RefusesADatabaseThatOnlyHasInformationOrErrors) {
    const DatabaseInfo info{1, 1};
    ASSERT_TRUE(Library().SetDatabaseInfo(&info, sizeof info));
    EXPECT_EQ(WriteFile(path_, 0), (Outcome{false, 2}));
    ASSERT_EQ(ReadText("BO_ x: 8\n"), kDone);
    ASSERT_EQ(NumErrors(), 1U);
    EXPECT_EQ(WriteFile(path_, 0), (Outcome{false, 2}));
}

TEST_F(WriteDbcFile, StatusOfWhatCannotBeOpened) {
    ASSERT_TRUE(AppendMessage(1, "M"));
    const std::string before = DumpDatabase();
    const std::string missingFolder = std::string(TABRIN_TEMP_DIR) + "/no such folder";
    const std::string inMissingFolder = missingFolder + "/file.dbc";
    const std::string folder = TABRIN_TEMP_DIR;
    const struct {
        const char* path;
        uint32_t size;
        uint32_t status;
    } rows[] = {
        {path_.c_str(), 261, 3},
        {path_.c_str(), 0xFFFFFFFFU, 3},
        {path_.c_str(), 1, 4},
        {"\x80.dbc", 6, 4},
        {path_.c_str(), 0, 5},
        {"", 1, 5},
        {nullptr, 10, 5},
        {inMissingFolder.c_str(), static_cast<uint32_t>(inMissingFolder.size() + 1), 6},
        {folder.c_str(), static_cast<uint32_t>(folder.size() + 1), 6},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << (row.path == nullptr ? "null" : Shown(row.path)) << " in " << row.size);
        uint32_t status = kUnwritten;
        EXPECT_FALSE(Library().WriteDbcFile(row.path, row.size, 0, &status));
        EXPECT_EQ(status, row.status);
        EXPECT_EQ(DumpDatabase(), before);
    }
    EXPECT_FALSE(std::filesystem::exists(FilePath(path_)));
    EXPECT_FALSE(std::filesystem::exists(FilePath(missingFolder)));
}

// The file is opened before names are made unique.
TEST_F(WriteDbcFile, NamesStayWhenTheFileCannotBeOpened) {
    ASSERT_TRUE(AppendMessage(1, "M"));
    ASSERT_TRUE(AppendSignal(0, "S"));
    ASSERT_TRUE(AppendSignal(0, "S"));
    EXPECT_EQ(WriteFile(TABRIN_TEMP_DIR, 2), (Outcome{false, 6}));
    EXPECT_EQ(Field(SignalAt(0, 0).identifierName), "S");
    EXPECT_EQ(Field(SignalAt(0, 1).identifierName), "S");
}

TEST_F(WriteDbcFile, NeedsNoCell) {
    ASSERT_TRUE(AppendMessage(1, "M"));
    EXPECT_TRUE(Library().WriteDbcFile(path_.c_str(), static_cast<uint32_t>(path_.size() + 1), 2, nullptr));
    EXPECT_TRUE(std::filesystem::exists(FilePath(path_)));
    EXPECT_FALSE(Library().WriteDbcFile(TABRIN_TEMP_DIR, sizeof TABRIN_TEMP_DIR, 2, nullptr));
}

TEST_F(WriteDbcFile, ReplacesALongerFile) {
    WriteBytes(path_, std::string(100000, 'x'));
    ASSERT_TRUE(AppendMessage(1, "M"));
    EXPECT_EQ(Written(), std::string(kDefaultNodes) + "BO_ 1 M: 8 Kestrune\r\n\r\n");
}

TEST_F(WriteDbcFile, TakesAPathBeyondAscii) {
    const std::string path = TempPath("\xC3\xA4\xE6\x97\xA5\xF0\x9F\x98\x80.dbc");
    ASSERT_TRUE(AppendMessage(1, "M"));
    EXPECT_EQ(WriteFile(path, 2), kDone);
    EXPECT_TRUE(std::filesystem::exists(FilePath(path)));
    EXPECT_EQ(ReadFile(path), kDone);
    EXPECT_EQ(NumMessages(), 1U);
    std::filesystem::remove(FilePath(path));
}

// --- Order --------------------------------------------------------------------------------------------------------

constexpr const char* kOf100 = "BO_ 100 B: 8 Kestrune\r\n\r\n";
constexpr const char* kOf2147483748 = "BO_ 2147483748 AB: 8 Kestrune\r\n\r\n";
constexpr const char* kOf5 = "BO_ 5 A: 8 Kestrune\r\n\r\n";
constexpr const char* kOf5Again = "BO_ 5 B: 8 Kestrune\r\n\r\n";
constexpr const char* kOf7 = "BO_ 7 a: 8 Kestrune\r\n\r\n";

TEST_F(WriteDbcFile, OrderOfMessages) {
    ASSERT_TRUE(AppendMessage(100, "B"));
    ASSERT_TRUE(AppendMessage(2147483748U, "AB"));
    ASSERT_TRUE(AppendMessage(5, "A"));
    ASSERT_TRUE(AppendMessage(5, "B"));
    ASSERT_TRUE(AppendMessage(7, "a"));
    const std::string asAppended = std::string(kOf100) + kOf2147483748 + kOf5 + kOf5Again + kOf7;
    const struct {
        uint32_t order;
        std::string messages;
    } rows[] = {
        // The largest identifier first; equal ones keep their order.
        {0, std::string(kOf2147483748) + kOf100 + kOf7 + kOf5 + kOf5Again},
        // By name, capitals first; of equal names the one appended first.
        {1, std::string(kOf5) + kOf2147483748 + kOf100 + kOf5Again + kOf7},
        {2, asAppended},
        {3, asAppended},
        {0xFFFFFFFFU, asAppended},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.order);
        EXPECT_EQ(Written(row.order), std::string(kDefaultNodes) + row.messages);
        // The database keeps its own order.
        EXPECT_EQ(MessageAt(0).id, 100U);
        EXPECT_EQ(MessageAt(1).id, 2147483748U);
        EXPECT_EQ(MessageAt(4).id, 7U);
    }
}

TEST_F(WriteDbcFile, OrderByNameIsThatOfTheIdentifierName) {
    ASSERT_TRUE(AppendMessage(1, "B"));
    ASSERT_TRUE(AppendMessage(2, "1A"));  // "_A", which is behind "B" in ASCII
    ASSERT_TRUE(AppendMessage(3, "A"));
    EXPECT_EQ(Written(TABRIN_ORDER_NAME),
              "BU_ :  Kestrune\r\n"
              "\r\n"
              "BO_ 3 A: 8 Kestrune\r\n"
              "\r\n"
              "BO_ 1 B: 8 Kestrune\r\n"
              "\r\n"
              "BO_ 2 _A: 8 Kestrune\r\n"
              "\r\n"
              "\r\n"  // in place of a comment, because the message has a long name of its own
              "BA_DEF_ BO_ \"Kestrune_Msg_Name\" STRING ;\r\n"
              "BA_DEF_DEF_ \"Kestrune_Msg_Name\" \"\";\r\n"
              "BA_ \"Kestrune_Msg_Name\" BO_ 2 \"1A\";\r\n");
}

// --- A database built from nothing --------------------------------------------------------------------------------

void AppendExampleSignals() {
    CanSignalData speed = SignalRecord("Engine Speed");
    SetField(speed.unit, "1/min");
    SetField(speed.receivers, "Dash, Log 2");
    SetField(speed.comment, "Crank \"shaft\"");
    speed.startBit = 24;
    speed.length = 16;
    speed.factor = 0.125;
    speed.maximum = 8031.875;
    speed.startValue = 5;  // read from files only, and never written
    ASSERT_TRUE(Library().AppendCanSignalToCanMessage(0, &speed));

    CanSignalData mode = SignalRecord("Mode");
    mode.multiplexKind = TABRIN_MULTIPLEX_MULTIPLEXOR;
    mode.length = 2;
    mode.valueType = TABRIN_VALUE_SIGNED;
    mode.minimum = -2.0;
    mode.maximum = 1.0;
    ASSERT_TRUE(Library().AppendCanSignalToCanMessage(0, &mode));
    ASSERT_TRUE(AppendEnum(0, 1, 1, "On"));
    ASSERT_TRUE(AppendEnum(0, 1, -1, "Error"));
    ASSERT_TRUE(AppendEnum(0, 1, 0, "Off"));
    ASSERT_TRUE(AppendEnum(0, 1, 1, "Ein"));

    CanSignalData oil = SignalRecord("Oil");
    SetField(oil.unit,
             "\xC2\xB0"
             "C");
    SetField(oil.receivers, "Dash");
    oil.multiplexKind = TABRIN_MULTIPLEX_MULTIPLEXED;
    oil.multiplexValue = 3;
    oil.startBit = 7;
    oil.length = 32;
    oil.byteOrder = TABRIN_BYTE_ORDER_BIG_ENDIAN;
    oil.valueType = TABRIN_VALUE_FLOAT;
    oil.factor = 1.0 / 3.0;
    oil.offset = -40.0;
    oil.minimum = 1e10;  // kept the wrong way round
    oil.maximum = 1e-5;
    ASSERT_TRUE(Library().AppendCanSignalToCanMessage(0, &oil));
    ASSERT_TRUE(AppendEnum(0, 2, 0, "kept, and not written"));

    for (int copy = 0; copy < 2; ++copy) {
        CanSignalData same = SignalRecord("Same");
        same.length = 64;
        same.valueType = TABRIN_VALUE_DOUBLE;
        same.maximum = 0.0;
        ASSERT_TRUE(Library().AppendCanSignalToCanMessage(1, &same));
    }
}

void AppendExample() {
    CanMessageData engine = MessageRecord(256, "Engine data");
    SetField(engine.transmitter, "ECU 1");
    SetField(engine.comment, "Sent \"always\"");
    ASSERT_TRUE(Library().AppendCanMessage(&engine));
    CanMessageData plain = MessageRecord(2364540158U, "EEC1");
    plain.dlc = 64;
    ASSERT_TRUE(Library().AppendCanMessage(&plain));
    AppendExampleSignals();
    const DatabaseInfo info{TABRIN_PROTOCOL_J1939, 1};
    ASSERT_TRUE(Library().SetDatabaseInfo(&info, sizeof info));
}

constexpr std::string_view kExample =
    "BU_ :  Log_2 Kestrune ECU_1 Dash\r\n"
    "\r\n"
    "BO_ 256 Engine_data: 8 ECU_1\r\n"
    " SG_ Engine_Speed : 24|16@1+ (0.125,0) [0|8031.875] \"1/min\" Dash,Log_2\r\n"
    " SG_ Mode M : 0|2@1- (1,0) [-2|1] \"\" Kestrune\r\n"
    " SG_ Oil m3 : 7|32@0- (0.3333333333,-40) [1e+10|1e-05] \"_C\" Dash\r\n"
    "\r\n"
    "BO_ 2364540158 EEC1: 64 Kestrune\r\n"
    " SG_ Same_0000 : 0|64@1- (1,0) [0|0] \"\" Kestrune\r\n"
    " SG_ Same_0001 : 0|64@1- (1,0) [0|0] \"\" Kestrune\r\n"
    "\r\n"
    "CM_ BO_ 256 \"Sent \\\"always\\\"\";\r\n"
    "CM_ SG_ 256 Engine_Speed \"Crank \\\"shaft\\\"\";\r\n"
    "BA_DEF_ \"BusType\" STRING ;\r\n"
    "BA_DEF_ \"J1939PGN\" INT 0 1;\r\n"
    "BA_DEF_ BO_ \"Kestrune_Msg_Name\" STRING ;\r\n"
    "BA_DEF_ SG_ \"Kestrune_Sig_Name\" STRING ;\r\n"
    "BA_DEF_DEF_ \"BusType\" \"CAN FD\";\r\n"
    "BA_DEF_DEF_ \"J1939PGN\" 1;\r\n"
    "BA_DEF_DEF_ \"Kestrune_Msg_Name\" \"\";\r\n"
    "BA_DEF_DEF_ \"Kestrune_Sig_Name\" \"\";\r\n"
    "BA_ \"Kestrune_Msg_Name\" BO_ 256 \"Engine data\";\r\n"
    "BA_ \"Kestrune_Sig_Name\" SG_ 256 Engine_Speed \"Engine Speed\";\r\n"
    "BA_ \"Kestrune_Sig_Name\" SG_ 2364540158 Same_0000 \"Same\";\r\n"
    "BA_ \"Kestrune_Sig_Name\" SG_ 2364540158 Same_0001 \"Same\";\r\n"
    "VAL_ 256 Mode -1 \"Error\" 0 \"Off\" 1 \"On - Ein\";\r\n"
    "SIG_VALTYPE_ 256 Oil : 1;\r\n"
    "SIG_VALTYPE_ 2364540158 Same_0000 : 2;\r\n"
    "SIG_VALTYPE_ 2364540158 Same_0001 : 2;\r\n";

TEST_F(WriteDbcFile, ADatabaseBuiltFromNothingIsWrittenToTheByte) {
    AppendExample();
    EXPECT_EQ(Written(), kExample);
}

TEST_F(WriteDbcFile, WritingAgainGivesTheSameBytes) {
    AppendExample();
    const std::string first = Written();
    EXPECT_EQ(Written(), first);
}

TEST_F(WriteDbcFile, MakesTheNamesOfSignalsUniqueForGood) {
    AppendExample();
    Written();
    EXPECT_EQ(Field(SignalAt(1, 0).identifierName), "Same_0000");
    EXPECT_EQ(Field(SignalAt(1, 1).identifierName), "Same_0001");
    EXPECT_EQ(Field(SignalAt(1, 1).name), "Same");
    EXPECT_EQ(Field(SignalAt(0, 1).identifierName), "Mode");
}

// The identifier names of the signals of a message.
std::vector<std::string> IdentifierNames(uint32_t message) {
    std::vector<std::string> names;
    for (uint32_t signal = 0; signal < NumSignals(message); ++signal) {
        names.push_back(Field(SignalAt(message, signal).identifierName));
    }
    return names;
}

TEST_F(WriteDbcFile, SuffixesFollowTheOrderOfTheSignals) {
    ASSERT_TRUE(AppendMessage(1, "M"));
    for (const char* name : {"Speed", "Torque", "Speed", "Other", "Torque", "Speed"}) {
        ASSERT_TRUE(AppendSignal(0, name));
    }
    Written();
    EXPECT_EQ(IdentifierNames(0), (std::vector<std::string>{"Speed_0000", "Torque_0000", "Speed_0001", "Other",
                                                            "Torque_0001", "Speed_0002"}));
}

TEST_F(WriteDbcFile, SuffixesKeepNamesAt32Characters) {
    ASSERT_TRUE(AppendMessage(1, "M"));
    for (int copy = 0; copy < 2; ++copy) {
        ASSERT_TRUE(AppendSignal(0, "ABCDEFGHIJKLMNOPQRSTUVWXYZabcde"));  // 31 characters
    }
    Written();
    EXPECT_EQ(IdentifierNames(0),
              (std::vector<std::string>{"ABCDEFGHIJKLMNOPQRSTUVWXYZa_0000", "ABCDEFGHIJKLMNOPQRSTUVWXYZa_0001"}));
}

// What a file cannot carry changes on the way: the unit beyond ASCII, the range the wrong way round, the exact third,
// the start value, and the value descriptions of a float.
TEST_F(WriteDbcFile, ADatabaseBuiltFromNothingReadsBack) {
    AppendExample();
    Written();
    ASSERT_TRUE(Library().ClearData());
    const DatabaseInfo none{};
    ASSERT_TRUE(Library().SetDatabaseInfo(&none, sizeof none));

    ASSERT_EQ(ReadFile(path_), kDone);
    EXPECT_EQ(NumErrors(), 0U);
    EXPECT_EQ(Info().protocolType, 1U);
    EXPECT_EQ(Info().canFd, 1U);
    ASSERT_EQ(NumMessages(), 2U);
    EXPECT_EQ(Dump(MessageAt(0)), "256|Engine_data|Engine data|8|ECU_1|Sent \\\"always\\\"||0|3");
    // It had no transmitter; the file names the default one.
    EXPECT_EQ(Dump(MessageAt(1)), "2364540158|EEC1|EEC1|64|Kestrune|||0|2");

    EXPECT_EQ(Field(SignalAt(0, 0).name), "Engine Speed");
    EXPECT_EQ(Field(SignalAt(0, 0).comment), "Crank \\\"shaft\\\"");
    EXPECT_EQ(Field(SignalAt(0, 0).receivers), "Dash,Log_2");
    EXPECT_EQ(SignalAt(0, 0).startValue, 0U);
    EXPECT_EQ(Field(SignalAt(0, 1).receivers), "Kestrune");
    EXPECT_EQ(Field(SignalAt(0, 1).name), "Mode");
    EXPECT_EQ(SignalAt(0, 1).multiplexKind, 1U);
    EXPECT_EQ(EnumsOf(0, 1), "-1=Error;0=Off;1=On - Ein;");

    const CanSignalData oil = SignalAt(0, 2);
    EXPECT_EQ(oil.valueType, 2U);
    EXPECT_EQ(oil.multiplexValue, 3U);
    EXPECT_EQ(oil.byteOrder, 0U);
    EXPECT_EQ(oil.factor, 0.3333333333);
    EXPECT_EQ(oil.minimum, 1e-5);
    EXPECT_EQ(oil.maximum, 1e10);
    EXPECT_EQ(Field(oil.unitAsWritten), "_C");
    EXPECT_EQ(NumEnums(0, 2), 0U);

    EXPECT_EQ(Field(SignalAt(1, 1).name), "Same");
    EXPECT_EQ(Field(SignalAt(1, 1).identifierName), "Same_0001");
    EXPECT_EQ(SignalAt(1, 1).valueType, 3U);
}

// --- Values outside the lists -------------------------------------------------------------------------------------

TEST_F(WriteDbcFile, ValuesOutsideTheListsAreWrittenByTheRulesAsTheyStand) {
    ASSERT_TRUE(AppendMessage(1, "M"));
    CanSignalData odd = SignalRecord("S");
    odd.multiplexKind = 7;
    odd.multiplexValue = 9;
    odd.byteOrder = 5;
    odd.valueType = 7;
    ASSERT_TRUE(Library().AppendCanSignalToCanMessage(0, &odd));
    ASSERT_TRUE(AppendEnum(0, 0, 1, "One"));
    const DatabaseInfo info{7, 2};
    ASSERT_TRUE(Library().SetDatabaseInfo(&info, sizeof info));
    EXPECT_EQ(Written(),
              "BU_ :  Kestrune\r\n"
              "\r\n"
              "BO_ 1 M: 8 Kestrune\r\n"
              " SG_ S : 0|8@1- (1,0) [0|255] \"\" Kestrune\r\n"
              "\r\n"
              "VAL_ 1 S 1 \"One\";\r\n");
}

TEST_F(WriteDbcFile, NamesAreNotTrimmedBeforeTheyAreMadeIdentifiers) {
    CanMessageData message = MessageRecord(1, " A");
    SetField(message.transmitter, " T");
    ASSERT_TRUE(Library().AppendCanMessage(&message));
    ASSERT_TRUE(AppendSignal(0, " S"));
    EXPECT_EQ(Written(),
              "BU_ :  _T Kestrune\r\n"
              "\r\n"
              "BO_ 1 _A: 8 _T\r\n"
              " SG_ _S : 0|8@1+ (1,0) [0|255] \"\" Kestrune\r\n"
              "\r\n"
              "\r\n"
              "BA_DEF_ BO_ \"Kestrune_Msg_Name\" STRING ;\r\n"
              "BA_DEF_ SG_ \"Kestrune_Sig_Name\" STRING ;\r\n"
              "BA_DEF_DEF_ \"Kestrune_Msg_Name\" \"\";\r\n"
              "BA_DEF_DEF_ \"Kestrune_Sig_Name\" \"\";\r\n"
              "BA_ \"Kestrune_Msg_Name\" BO_ 1 \" A\";\r\n"
              "BA_ \"Kestrune_Sig_Name\" SG_ 1 _S \" S\";\r\n");
}

TEST_F(WriteDbcFile, EmptyNamesAreWrittenAsTheyStand) {
    ASSERT_TRUE(AppendMessage(1, ""));
    CanSignalData nameless = SignalRecord("");
    SetField(nameless.comment, "c");
    ASSERT_TRUE(Library().AppendCanSignalToCanMessage(0, &nameless));
    EXPECT_EQ(Written(),
              "BU_ :  Kestrune\r\n"
              "\r\n"
              "BO_ 1 : 8 Kestrune\r\n"
              " SG_  : 0|8@1+ (1,0) [0|255] \"\" Kestrune\r\n"
              "\r\n"
              "CM_ SG_ 1  \"c\";\r\n");
}

}  // namespace
}  // namespace tabrin_test
