// Where a text is cut that does not fit into its field: in front of the character that does not fit whole.
#include <functional>
#include <vector>

#include "abi/interface_test.h"

namespace tabrin_test {
namespace {

class TextOut : public InterfaceTest {};

constexpr std::string_view kTwo = "\xC3\xA4";           // U+00E4
constexpr std::string_view kThree = "\xE2\x82\xAC";     // U+20AC
constexpr std::string_view kFour = "\xF0\x9F\x98\x80";  // U+1F600

// `before` letters "a", one character, `behind` letters "z"; the first `kept` bytes of it come back.
struct CutRow {
    size_t before;
    std::string_view character;
    size_t behind;
    size_t kept;
};

// A field of 33 bytes takes 32.
constexpr CutRow kCutsAt32[] = {
    {30, "b", 0, 31},    {31, "b", 0, 32},    {32, "b", 0, 32},    {33, "b", 0, 32},    {29, kTwo, 0, 31},
    {30, kTwo, 0, 32},   {30, kTwo, 1, 32},   {31, kTwo, 0, 31},   {31, kTwo, 5, 31},   {32, kTwo, 0, 32},
    {32, kTwo, 5, 32},   {28, kThree, 0, 31}, {29, kThree, 0, 32}, {29, kThree, 1, 32}, {30, kThree, 0, 30},
    {30, kThree, 5, 30}, {31, kThree, 0, 31}, {31, kThree, 5, 31}, {32, kThree, 0, 32}, {27, kFour, 0, 31},
    {28, kFour, 0, 32},  {28, kFour, 1, 32},  {29, kFour, 0, 29},  {29, kFour, 5, 29},  {30, kFour, 0, 30},
    {30, kFour, 5, 30},  {31, kFour, 0, 31},  {31, kFour, 5, 31},  {32, kFour, 0, 32},
};

// A field of 256 bytes takes 255.
constexpr CutRow kCutsAt255[] = {
    {253, "b", 0, 254},    {254, "b", 0, 255},    {255, "b", 0, 255},    {256, "b", 0, 255},    {299, "b", 0, 255},
    {252, kTwo, 0, 254},   {253, kTwo, 0, 255},   {253, kTwo, 1, 255},   {254, kTwo, 0, 254},   {254, kTwo, 45, 254},
    {255, kTwo, 0, 255},   {255, kTwo, 43, 255},  {251, kThree, 0, 254}, {252, kThree, 0, 255}, {252, kThree, 1, 255},
    {253, kThree, 0, 253}, {253, kThree, 9, 253}, {254, kThree, 0, 254}, {254, kThree, 9, 254}, {255, kThree, 0, 255},
    {250, kFour, 0, 254},  {251, kFour, 0, 255},  {251, kFour, 1, 255},  {252, kFour, 0, 252},  {252, kFour, 9, 252},
    {253, kFour, 0, 253},  {253, kFour, 9, 253},  {254, kFour, 0, 254},  {254, kFour, 9, 254},  {255, kFour, 0, 255},
};

std::string TextOf(const CutRow& row) {
    return std::string(row.before, 'a').append(row.character).append(row.behind, 'z');
}

template <size_t Count>
void ExpectCuts(const CutRow (&rows)[Count], const std::function<std::string(const std::string&)>& fileWith,
                const std::function<std::string()>& ask) {
    for (const CutRow& row : rows) {
        SCOPED_TRACE(testing::Message() << row.before << " letters, a character of " << row.character.size()
                                        << " bytes, " << row.behind << " letters");
        const std::string text = TextOf(row);
        ASSERT_EQ(ReadText(fileWith(text)), kDone);
        EXPECT_EQ(ask(), text.substr(0, row.kept));
    }
}

constexpr const char* kSignal = " SG_ S : 0|8@1+ (1,0) [0|1] \"\" N\n";

TEST_F(TextOut, UnitAsWrittenTakes32Bytes) {
    ExpectCuts(
        kCutsAt32,
        [](const std::string& text) { return "BO_ 1 M: 8 N\nSG_ S : 0|8@1+ (1,0) [0|1] \"" + text + "\" N\n"; },
        [] { return Field(SignalAt(0, 0).unitAsWritten); });
}

TEST_F(TextOut, UnitTakes32Bytes) {
    const struct {
        size_t length;
        size_t kept;
    } rows[] = {{31, 31}, {32, 32}, {33, 32}, {300, 32}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.length);
        const std::string unit(row.length, 'u');
        ASSERT_EQ(ReadText("BO_ 1 M: 8 N\nSG_ S : 0|8@1+ (1,0) [0|1] \"" + unit + "\" N\n"), kDone);
        EXPECT_EQ(Field(SignalAt(0, 0).unit), std::string(row.kept, 'u'));
    }
}

TEST_F(TextOut, MessageNameTakes255Bytes) {
    ExpectCuts(
        kCutsAt255, [](const std::string& text) { return "BO_ 1 " + text + ": 8 N\n"; },
        [] { return Field(MessageAt(0).name); });
}

TEST_F(TextOut, MessageCommentTakes255Bytes) {
    ExpectCuts(
        kCutsAt255, [](const std::string& text) { return "BO_ 1 M: 8 N\nCM_ BO_ 1 \"" + text + "\";\n"; },
        [] { return Field(MessageAt(0).comment); });
}

TEST_F(TextOut, SignalNameTakes255Bytes) {
    ExpectCuts(
        kCutsAt255,
        [](const std::string& text) { return "BO_ 1 M: 8 N\n SG_ " + text + " : 0|8@1+ (1,0) [0|1] \"\" N\n"; },
        [] { return Field(SignalAt(0, 0).name); });
}

TEST_F(TextOut, SignalCommentTakes255Bytes) {
    ExpectCuts(
        kCutsAt255,
        [](const std::string& text) {
            return std::string("BO_ 1 M: 8 N\n") + kSignal + "CM_ SG_ 1 S \"" + text + "\";\n";
        },
        [] { return Field(SignalAt(0, 0).comment); });
}

TEST_F(TextOut, ValueDescriptionTakes255Bytes) {
    ExpectCuts(
        kCutsAt255,
        [](const std::string& text) {
            return std::string("BO_ 1 M: 8 N\n") + kSignal + "VAL_ 1 S 5 \"" + text + "\" ;\n";
        },
        [] { return Field(EnumAt(0, 0, 0).text); });
}

TEST_F(TextOut, ValueOfACutDescriptionIsGiven) {
    ASSERT_EQ(ReadText(std::string("BO_ 1 M: 8 N\n") + kSignal + "VAL_ 1 S -5 \"" + std::string(300, 'd') + "\" ;\n"),
              kDone);
    EXPECT_EQ(EnumAt(0, 0, 0).value, -5);
}

TEST_F(TextOut, ReceiversTake255Bytes) {
    // 26 receivers of 9 letters with their commas are 259 bytes; 250, 254 and 255 are reached with shorter ones.
    std::string ten;
    for (int i = 0; i < 25; ++i) {
        ten += "Receiver1,";
    }
    const struct {
        const char* last;
        std::string expected;
    } rows[] = {
        {"Last", ten + "Last"},       {"Last5", ten + "Last5"},
        {"Last56", ten + "Last5"},    {"Receiver2,Receiver3", ten + "Recei"},
        {"Four,More", ten + "Four,"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.last);
        ASSERT_EQ(ReadText("BO_ 1 M: 8 N\nSG_ S : 0|8@1+ (1,0) [0|1] \"\" " + ten + row.last + "\n"), kDone);
        EXPECT_EQ(Field(SignalAt(0, 0).receivers), row.expected);
    }
}

TEST_F(TextOut, EscapedQuotesCountForTheCut) {
    CanMessageData record = MessageRecord(1, "M");
    SetField(record.comment, "\"" + std::string(253, 'c') + "\"");
    ASSERT_TRUE(Library().AppendCanMessage(&record));
    // 255 bytes became 257: two backslashes more.
    EXPECT_EQ(Field(MessageAt(0).comment), "\\\"" + std::string(253, 'c'));
}

TEST_F(TextOut, JoinedDescriptionsAreCutAsOneText) {
    ASSERT_TRUE(AppendMessage(1, "M"));
    ASSERT_TRUE(AppendSignal(0, "S"));
    ASSERT_TRUE(AppendEnum(0, 0, 1, std::string(200, 'a')));
    ASSERT_TRUE(AppendEnum(0, 0, 1, std::string(200, 'b')));
    EXPECT_EQ(Field(EnumAt(0, 0, 0).text), std::string(200, 'a') + " - " + std::string(52, 'b'));
}

// --- The text of an error: without the last character of its statement, and of at most 254 bytes ------------------

struct ErrorRow {
    size_t statement;  // bytes of the statement, the line feed that it ends in included
    size_t kept;
};

void ExpectErrorTexts(const std::vector<ErrorRow>& rows) {
    for (const ErrorRow& row : rows) {
        SCOPED_TRACE(row.statement);
        const std::string line = "BO_ x " + std::string(row.statement - 7, 'e');
        ASSERT_EQ(ReadText(line + "\nVERSION \"\"\n"), kDone);
        ASSERT_EQ(NumErrors(), 1U);
        EXPECT_EQ(Field(ErrorAt(0).text), line.substr(0, row.kept));
    }
}

TEST_F(TextOut, ErrorTextLosesTheLastCharacter) {
    ExpectErrorTexts({{8, 7}, {253, 252}, {254, 253}, {255, 254}});
}

TEST_F(TextOut, ErrorTextTakes254Bytes) {
    ExpectErrorTexts({{256, 254}, {257, 254}, {300, 254}});
}

TEST_F(TextOut, ErrorTextIsCutInFrontOfASplitCharacter) {
    // The character begins at byte `before`; the text takes the bytes 0 to 253.
    constexpr CutRow rows[] = {
        {252, kTwo, 9, 254},   {253, kTwo, 9, 253},   {254, kTwo, 9, 254},  {251, kThree, 9, 254},
        {252, kThree, 9, 252}, {253, kThree, 9, 253}, {250, kFour, 9, 254}, {251, kFour, 9, 251},
        {252, kFour, 9, 252},  {253, kFour, 9, 253},  {254, kFour, 9, 254},
    };
    for (const CutRow& row : rows) {
        SCOPED_TRACE(testing::Message() << row.before << " bytes, then one of " << row.character.size());
        std::string line = TextOf(row);
        line.replace(0, 6, "BO_ x ");
        ASSERT_EQ(ReadText(line + "\nVERSION \"\"\n"), kDone);
        ASSERT_EQ(NumErrors(), 1U);
        EXPECT_EQ(Field(ErrorAt(0).text), line.substr(0, row.kept));
    }
}

TEST_F(TextOut, ErrorTextKeepsTheIndentationInFrontOfTheNextKeyword) {
    ASSERT_EQ(ReadText("BO_ x Bad: 8 N\n  SG_ S : 0|8@1+ (1,0) [0|1] \"\" N\n"), kDone);
    ASSERT_EQ(NumErrors(), 1U);
    // Two blanks of indentation, of which the last character is lost.
    EXPECT_EQ(Field(ErrorAt(0).text), "BO_ x Bad: 8 N\n ");
}

}  // namespace
}  // namespace tabrin_test
