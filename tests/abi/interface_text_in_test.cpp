// Which texts of a caller's record are taken, and how much of them.
#include <functional>
#include <optional>

#include "abi/interface_test.h"

namespace tabrin_test {
namespace {

using Taken = std::optional<std::string>;

// A text field of a record that is appended: puts the text there and says how it reads back, or nothing if the record
// was refused. The texts are such that they are valid names, units and receivers when taken.
struct InputField {
    const char* what;
    size_t size;
    std::function<Taken(std::string_view)> append;
};

template <size_t Size>
Taken AppendMessageWith(char (CanMessageData::*field)[Size], std::string_view text) {
    CanMessageData record = MessageRecord(1, "M");
    SetField(record.*field, text);
    const uint32_t index = NumMessages();
    if (!Library().AppendCanMessage(&record)) {
        EXPECT_EQ(NumMessages(), index);
        return std::nullopt;
    }
    return Field(MessageAt(index).*field);
}

template <size_t Size, size_t OutSize>
Taken AppendSignalWith(char (CanSignalData::*in)[Size], char (CanSignalData::*out)[OutSize], std::string_view text) {
    EXPECT_TRUE(AppendMessage(1, "M"));
    const uint32_t message = NumMessages() - 1;
    CanSignalData record = SignalRecord("S");
    SetField(record.*in, text);
    if (!Library().AppendCanSignalToCanMessage(message, &record)) {
        EXPECT_EQ(NumSignals(message), 0U);
        return std::nullopt;
    }
    return Field(SignalAt(message, 0).*out);
}

Taken AppendEnumWith(std::string_view text) {
    EXPECT_TRUE(AppendMessage(1, "M"));
    const uint32_t message = NumMessages() - 1;
    EXPECT_TRUE(AppendSignal(message, "S"));
    if (!AppendEnum(message, 0, 1, text)) {
        EXPECT_EQ(NumEnums(message, 0), 0U);
        return std::nullopt;
    }
    return Field(EnumAt(message, 0, 0).text);
}

const InputField kInputFields[] = {
    {"message name", 256, [](auto text) { return AppendMessageWith(&CanMessageData::name, text); }},
    {"message transmitter", 33, [](auto text) { return AppendMessageWith(&CanMessageData::transmitter, text); }},
    {"message comment", 256, [](auto text) { return AppendMessageWith(&CanMessageData::comment, text); }},
    {"signal name", 256, [](auto text) { return AppendSignalWith(&CanSignalData::name, &CanSignalData::name, text); }},
    {"signal unit", 33, [](auto text) { return AppendSignalWith(&CanSignalData::unit, &CanSignalData::unit, text); }},
    {"signal unit, as written", 33,
     [](auto text) { return AppendSignalWith(&CanSignalData::unit, &CanSignalData::unitAsWritten, text); }},
    {"signal comment", 256,
     [](auto text) { return AppendSignalWith(&CanSignalData::comment, &CanSignalData::comment, text); }},
    {"value description", 256, [](auto text) { return AppendEnumWith(text); }},
};

// Receivers are identifiers of at most 32 bytes, so that only short texts come back whole.
const InputField kReceivers = {"signal receivers", 256, [](auto text) {
                                   return AppendSignalWith(&CanSignalData::receivers, &CanSignalData::receivers, text);
                               }};

class TextIn : public InterfaceTest {};

struct TextRow {
    std::string_view text;
    Taken taken;
};

void ExpectTaken(const InputField& field, const TextRow& row) {
    SCOPED_TRACE(testing::Message() << field.what << ": " << Shown(row.text));
    EXPECT_EQ(field.append(row.text), row.taken);
}

template <size_t Count>
void ExpectTakenInEveryField(const TextRow (&rows)[Count]) {
    for (const TextRow& row : rows) {
        for (const InputField& field : kInputFields) {
            ExpectTaken(field, row);
        }
        ExpectTaken(kReceivers, row);
    }
}

TEST_F(TextIn, AnEmptyFieldIsAnEmptyText) {
    const TextRow rows[] = {{"", ""}};
    ExpectTakenInEveryField(rows);
}

TEST_F(TextIn, TheTextEndsAtTheFirstNul) {
    const TextRow rows[] = {
        {std::string_view("Abc\0def", 7), "Abc"},
        {std::string_view("\0Abc", 4), ""},
        {std::string_view("Abc\0\x80", 5), "Abc"},  // what stands behind it need not be UTF-8
    };
    ExpectTakenInEveryField(rows);
}

TEST_F(TextIn, ACharacterCutOffAtTheEndIsDropped) {
    const TextRow rows[] = {
        {"Ab\xC3", "Ab"},         {"Ab\xE2", "Ab"}, {"Ab\xE2\x82", "Ab"}, {"Ab\xF0", "Ab"},     {"Ab\xF0\x9F", "Ab"},
        {"Ab\xF0\x9F\x98", "Ab"}, {"\xC3", ""},     {"\xE2\x82", ""},     {"\xF0\x9F\x98", ""},
    };
    ExpectTakenInEveryField(rows);
}

// Only the first byte of the dropped piece is looked at, and only for being large enough.
TEST_F(TextIn, ALargeByteNearTheEndIsTakenForACutCharacterWhateverFollows) {
    const TextRow rows[] = {
        {"Ab\xC0", "Ab"},
        {"Ab\xFF", "Ab"},
        {"Ab\xE0"
         "c",
         "Ab"},
        {"Ab\xFE"
         "c",
         "Ab"},
        {"Ab\xF0"
         "cd",
         "Ab"},
        {"Ab\xFF"
         "cd",
         "Ab"},
        {"Ab\xED\xA0", "Ab"},
        {"Ab\xF4\x90\x80", "Ab"},
        {"\xE4"
         "c",
         ""},
        {"\xF0"
         "cd",
         ""},
        {"\xE4\xC3", ""},
        {"\xF0\x82\xC3", ""},
    };
    ExpectTakenInEveryField(rows);
}

TEST_F(TextIn, OtherBrokenTextsAreRefused) {
    const TextRow rows[] = {
        {"\x80", {}},    // a continuation without a beginning
        {"Ab\xBF", {}},  // likewise, and one less than what is taken for a beginning
        {"\x80"
         "Ab",
         {}},  // at the beginning
        {"A\x80"
         "b",
         {}},  // in the middle
        {"Ab\xC3"
         "c",
         {}},  // two bytes from the end only a beginning of three or four is looked for
        {"Ab\xDF"
         "c",
         {}},
        {"Ab\xC3"
         "cd",
         {}},
        {"Ab\xE4"
         "cd",
         {}},  // three bytes from the end only one of four
        {"Ab\xEF"
         "cd",
         {}},
        {"Ab\xF0"
         "cde",
         {}},  // four bytes from the end nothing
        {"Ab\xFF"
         "cde",
         {}},
        {"Ab\xC0\xAF", {}},  // overlong
        {"Ab\xE0\x80\xAF", {}},
        {"Ab\xF0\x80\x80\xAF", {}},
        {"Ab\xED\xA0\x80", {}},      // a surrogate
        {"Ab\xF4\x90\x80\x80", {}},  // beyond U+10FFFF
        {"A\x80"
         "b\xC3",
         {}},  // a cut character does not help what stands in front of it
        {"\x80\xC3", {}},
        {"\xC3\xC3", {}},
        {"A\xE2\x82"
         "b\xE2\x82",
         {}},
        {"A\xF0\x9F\x98"
         "b\xF0\x9F\x98",
         {}},
    };
    ExpectTakenInEveryField(rows);
}

TEST_F(TextIn, WholeCharactersAreTaken) {
    const std::string_view texts[] = {
        "\xC3\xA4",
        "\xC2\x80",
        "\xDF\xBF",
        "\xE0\xA0\x80",
        "\xE2\x82\xAC",
        "\xED\x9F\xBF",
        "\xEE\x80\x80",
        "\xEF\xBF\xBF",
        "\xF0\x90\x80\x80",
        "\xF0\x9F\x98\x80",
        "\xF4\x8F\xBF\xBF",
        "a\xC3\xA4"
        "b\xE2\x82\xAC"
        "c",
    };
    for (const std::string_view text : texts) {
        for (const InputField& field : kInputFields) {
            const std::string_view what = field.what;
            if (what != "message transmitter" && what != "signal unit") {  // these two become ASCII
                ExpectTaken(field, {text, std::string(text)});
            }
        }
    }
}

// Of a field without NUL the last byte is ignored, whatever it is.
TEST_F(TextIn, AFieldWithoutNulGivesAllButItsLastByte) {
    for (const InputField& field : kInputFields) {
        const std::string most(field.size - 1, 'x');
        ExpectTaken(field, {most, most});
        ExpectTaken(field, {most + "y", most});
        ExpectTaken(field, {most + "\x80", most});
        ExpectTaken(field, {most + "\xC3", most});
    }
}

TEST_F(TextIn, ACharacterCutOffByTheEndOfTheFieldIsDropped) {
    // `inside` bytes of the character stand in front of the byte that is ignored.
    const struct {
        std::string_view character;
        size_t inside;
    } rows[] = {
        {"\xC3\xA4", 1},         {"\xE2\x82\xAC", 1},     {"\xE2\x82\xAC", 2},
        {"\xF0\x9F\x98\x80", 1}, {"\xF0\x9F\x98\x80", 2}, {"\xF0\x9F\x98\x80", 3},
    };
    for (const InputField& field : kInputFields) {
        for (const auto& row : rows) {
            const std::string letters(field.size - 1 - row.inside, 'x');
            std::string text = letters;
            text.append(row.character).resize(field.size, 'y');
            ExpectTaken(field, {text, letters});
        }
    }
}

TEST_F(TextIn, ACutCharacterInFrontOfTheNulOfAFullFieldIsDropped) {
    for (const InputField& field : kInputFields) {
        const std::string letters(field.size - 2, 'x');
        ExpectTaken(field, {letters + "\xC3" + '\0', letters});
    }
}

TEST_F(TextIn, ReceiversWithoutNulLoseTheirLastByte) {
    // 8 pieces of 32 bytes: 31 letters and a comma each, so that the last byte of the field is the last comma.
    std::string field;
    std::string expected;
    for (char letter = 'a'; letter <= 'h'; ++letter) {
        field += std::string(31, letter) + ",";
        expected += (letter == 'a' ? "" : ",") + std::string(31, letter);
    }
    EXPECT_EQ(kReceivers.append(field), expected);
    field.back() = 'y';
    EXPECT_EQ(kReceivers.append(field), expected);
    field[254] = '\xC3';
    expected.pop_back();
    EXPECT_EQ(kReceivers.append(field), expected);
}

// The name of the record that is not read may be anything, and so may the other fields that are only given out.
TEST_F(TextIn, FieldsThatAreOnlyGivenOutAreNotLookedAt) {
    CanMessageData message = MessageRecord(1, "M");
    std::memset(message.identifierName, 0x80, sizeof message.identifierName);
    std::memset(message.sendType, 0x80, sizeof message.sendType);
    message.numSignals = 77;
    message.cycleTime = 78;
    ASSERT_TRUE(Library().AppendCanMessage(&message));
    EXPECT_EQ(Dump(MessageAt(0)), "1|M|M|8||||0|0");

    CanSignalData signal = SignalRecord("S");
    std::memset(signal.identifierName, 0x80, sizeof signal.identifierName);
    std::memset(signal.unitAsWritten, 0x80, sizeof signal.unitAsWritten);
    signal.numValueDescriptions = 79;
    ASSERT_TRUE(Library().AppendCanSignalToCanMessage(0, &signal));
    const CanSignalData got = SignalAt(0, 0);
    EXPECT_EQ(Field(got.identifierName), "S");
    EXPECT_EQ(Field(got.unitAsWritten), "");
    EXPECT_EQ(got.numValueDescriptions, 0U);
    EXPECT_EQ(NumEnums(0, 0), 0U);
}

}  // namespace
}  // namespace tabrin_test
