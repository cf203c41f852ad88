#include "dbc/value_statements.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "dbc/parsed.h"
#include "dbc/reading.h"
#include "dbc/writing.h"
#include "shown.h"

namespace tabrin {
namespace {

// "-1=Reverse|0=Neutral": the value descriptions in their order.
std::string Listed(const CANSignal& signal) {
    std::string list;
    for (size_t i = 0; i < signal.valueDescriptions.Size(); ++i) {
        const auto [value, text] = signal.valueDescriptions.At(i);
        list += list.empty() ? "" : "|";
        list.append(std::to_string(value)).append("=").append(text);
    }
    return list;
}

// --- Reading VAL_: what is described

struct DescriptionCase {
    std::string_view statement;
    std::string_view descriptions;  // of the signal S
};

constexpr DescriptionCase kDescriptionCases[] = {
    {R"(VAL_ 100 S 0 "Off" 1 "On" ;)", "0=Off|1=On"},
    {R"(VAL_ 100 S 0 "Off" 1 "On";)", "0=Off|1=On"},
    {R"(VAL_ 100 S 0 "Off" 1 "On")", "0=Off|1=On"},
    {R"(VAL_ 100 S 0 "Off" 1 "On"; and more)", "0=Off|1=On"},
    {R"(VAL_ 100 S 0"Off"1"On";)", "0=Off|1=On"},
    {"VAL_ 100 S\n0\t\"Off\"\n\r 1\v\f\"On\"\n;\n", "0=Off|1=On"},
    {R"(VAL_ 100 S 1 "On" 0 "Off" -1 "Error";)", "-1=Error|0=Off|1=On"},
    {R"(VAL_ 100 S ;)", ""},
    {R"(VAL_ 100 S )", ""},
    // Texts are kept to the byte.
    {R"(VAL_ 100 S 0 "" 1 " ";)", "0=|1= "},
    {"VAL_ 100 S 0 \"  two\twords\n \";", "0=  two\twords\n "},
    {R"(VAL_ 100 S 0 "back\slash\" 1 "x;y";)", R"(0=back\slash\|1=x;y)"},
    {"VAL_ 100 S 0 \"\xC3\x84\";", "0=\xC3\x84"},
    // A value described again.
    {R"(VAL_ 100 S 0 "a" 0 "b" 0 "" 0 "a";)", "0=a - b -  - a"},
    // Numbers: signed, decimal, of 32 bits; what follows the digits does not matter.
    {R"(VAL_ 100 S 2147483647 "most" -2147483648 "least";)", "-2147483648=least|2147483647=most"},
    {R"(VAL_ 100 S 2147483648 "more" 1 "x";)", "1=x"},
    {R"(VAL_ 100 S -2147483649 "less" 1 "x";)", "1=x"},
    {R"(VAL_ 100 S 99999999999999999999 "far" 1 "x";)", "1=x"},
    {R"(VAL_ 100 S +2 "plus" 007 "zeros" -0 "minus";)", "0=minus|2=plus|7=zeros"},
    {R"(VAL_ 100 S 1234567 "seven" 12345678 "eight" 123456789 "nine" 1 "x";)",
     "1=x|1234567=seven|12345678=eight|123456789=nine"},
    {R"(VAL_ 100 S 1234567 "";)", "1234567="},
    {R"(VAL_ 100 S 12345678 "";)", "12345678="},
    // With anything but one blank around them.
    {R"(VAL_ 100 S  1 "two blanks"  22  "and two" 3"none"4 "none" -5 "sign" 6a "letter" 7  "x";)",
     "-5=sign|1=two blanks|3=none|4=none|6=letter|7=x|22=and two"},
    {"VAL_ 100 S\t1\t\"tabs\"\t2 \"x\" 3\t\"y\" 4 \"far from the end\";", "1=tabs|2=x|3=y|4=far from the end"},
    {R"(VAL_ 100 S 1.9 "point" 0x10 "hex" 3e2 "power" 4,5 "comma";)", "0=hex|1=point|3=power|4=comma"},
    // Nothing but blanks, signs and digits makes a number, and it ends in front of the quote.
    {R"(VAL_ 100 S 1 "a"-5 "b"+6 "c" 7 "far from the end";)", "-5=b|1=a|6=c|7=far from the end"},
    {R"(VAL_ 100 S 1 "a"x5 "b" 6 "far from the end";)", "1=a|6=far from the end"},
    {R"(VAL_ 100 S 1 "a"!5 "b" 6 "far from the end";)", "1=a|6=far from the end"},
    {R"(VAL_ 100 S 5 #"a" 6 "far from the end";)", "5=a|6=far from the end"},
    // A text where a number should be is passed over, and so is its description, because that is the next one tried.
    {R"(VAL_ 100 S abc "x" 3 "y";)", "3=y"},
    {R"(VAL_ 100 S 1 "a" - "x" 3 "y";)", "1=a|3=y"},
    {R"(VAL_ 100 S "a" 1 "b";)", "1=b"},
    {R"(VAL_ 100 S "" 1 "b";)", "1=b"},
    {R"(VAL_ 100 S 1 "a" "b" 2 "c";)", "1=a|2=c"},
    {R"(VAL_ 100 S 1 "a""b" 2 "c";)", "1=a|2=c"},
    // But a description that looks like a number is taken for the value, with what follows it for the description.
    {R"(VAL_ 100 S abc "5" 3 "y";)", "5= 3 "},
    {R"(VAL_ 100 S abc "5" 3 "6" 7 "y";)", "5= 3 |6= 7 "},
    {R"(VAL_ 100 S 1 "a" "2";)", "1=a|2="},
    // The end of the statement in the middle of a pair.
    {R"(VAL_ 100 S 0 "Off" 1)", "0=Off"},
    {R"(VAL_ 100 S 0 "Off" 1 ")", "0=Off|1="},
    {R"(VAL_ 100 S 0 "Off" 1 "On)", "0=Off|1="},
    {R"(VAL_ 100 S 0 "Off" x "On)", "0=Off"},
    {R"(VAL_ 100 S 0)", ""},
};

TEST(ValueDescriptionStatement, PairsAreRead) {
    for (const DescriptionCase& row : kDescriptionCases) {
        SCOPED_TRACE(Shown(row.statement));
        CANDatabase database;
        CANMessage& message = AddRead(database, "BO_ 100 Msg: 8 X");
        const CANSignal& signal = AddReadSignal(message, "S");
        EXPECT_TRUE(ReadValueDescriptionStatement(database, row.statement));
        EXPECT_EQ(Listed(signal), row.descriptions);
    }
}

// What a statement that ends anywhere in a piece is read as, whatever stands behind it.
TEST(ValueDescriptionStatement, NothingBehindItIsLookedAt) {
    const DescriptionCase kPieces[] = {
        {"VAL_ 100 S 5 ", ""},          {"\"abc", "5="},
        {"\" 1234567 ", "5=abc"},       {"\"d", "5=abc|1234567="},
        {"\" 8 ", "5=abc|1234567=d"},   {"\"e", "5=abc|8=|1234567=d"},
        {"\";", "5=abc|8=e|1234567=d"},
    };
    std::string text;
    for (const DescriptionCase& piece : kPieces) {
        text += piece.statement;
    }
    size_t size = 0;
    for (const DescriptionCase& piece : kPieces) {
        for (size_t i = 0; i < piece.statement.size(); ++i) {
            ++size;
            SCOPED_TRACE(size);
            CANDatabase database;
            CANMessage& message = AddRead(database, "BO_ 100 Msg: 8 X");
            const CANSignal& signal = AddReadSignal(message, "S");
            ReadValueDescriptionStatement(database, std::string_view(text).substr(0, size));
            EXPECT_EQ(Listed(signal), piece.descriptions);
        }
    }
}

TEST(ValueDescriptionStatement, ReadAgainItsTextsAreJoined) {
    CANDatabase database;
    CANMessage& message = AddRead(database, "BO_ 100 Msg: 8 X");
    const CANSignal& signal = AddReadSignal(message, "S");
    EXPECT_TRUE(ReadValueDescriptionStatement(database, R"(VAL_ 100 S 0 "Off" 1 "On" ;)"));
    EXPECT_TRUE(ReadValueDescriptionStatement(database, R"(VAL_ 100 S 0 "Off" 1 "On" ;)"));
    EXPECT_EQ(Listed(signal), "0=Off - Off|1=On - On");
}

// 7919 and 1000 have no common divisor, so that each value comes once.
TEST(ValueDescriptionStatement, ManyPairsInNoOrderAreRead) {
    constexpr int kCount = 1000;
    std::string statement = "VAL_ 100 S";
    std::string expected;
    for (int i = 0; i < kCount; ++i) {
        const std::string value = std::to_string(i * 7919 % kCount);
        statement.append(" ").append(value).append(" \"text ").append(value).append("\"");
        expected.append(i == 0 ? "" : "|").append(std::to_string(i)).append("=text ").append(std::to_string(i));
    }
    CANDatabase database;
    CANMessage& message = AddRead(database, "BO_ 100 Msg: 8 X");
    const CANSignal& signal = AddReadSignal(message, "S");
    EXPECT_TRUE(ReadValueDescriptionStatement(database, statement));
    EXPECT_EQ(Listed(signal), expected);
}

// --- Reading: which signals are meant. The rules are those of both statements.

struct TargetCase {
    std::string_view target;  // what stands between the keyword and the rest
    bool result;
    std::string_view takers;  // the names as read of the signals that took it, each in brackets
};

constexpr TargetCase kTargetCases[] = {
    {" 100 S", true, "[S]"},
    {"\t100\v\f\r\nS", true, "[S]"},
    {" 0100 S", true, "[S]"},
    {" 100 Twin", true, "[Twin][Twin]"},
    // The name as it was read, not its identifier form.
    {" 100 Big Sig", true, "[Big Sig]"},
    {" 100  Big Sig", true, "[Big Sig]"},
    {" 100 Big_Sig", true, ""},
    {" 100 Big  Sig", true, ""},
    {" 100 Big\tSig", true, ""},
    {" 100 Tab\tbed", true, "[Tab\tbed]"},
    // The whole name, in its own case.
    {" 100 Bi", true, ""},
    {" 100 Biggest", true, ""},
    {" 100 big", true, ""},
    {" 100 SS", true, ""},
    {" 100 S;", true, ""},
    // Nothing finds a signal without a name.
    {" 100 ", true, ""},
    {" 100 M", true, ""},
    // Declined.
    {" 300 S", false, ""},
    {" 10 S", false, ""},
    {" S", false, ""},
    {" 100, S", false, ""},
    {" +100 S", false, ""},
    {" 100.0 S", false, ""},
    {"100 S", false, ""},
    {"_ 100 S", false, ""},
};

// A message 100 with signals of 32 bits, and another message.
struct TargetDatabase {
    TargetDatabase() : message(AddRead(database, "BO_ 100 Msg: 8 X")) {
        for (const char* name : {"S", "Big Sig", "Tab\tbed", "Twin", "Twin", "M"}) {
            AddReadSignal(message, name, 32);
        }
        other = &AddReadSignal(AddRead(database, "BO_ 200 Other: 8 X"), "S", 32);
    }

    CANDatabase database;
    CANMessage& message;
    CANSignal* other;
};

TEST(ValueDescriptionStatement, SignalIsFoundByIdentifierAndNameAsRead) {
    for (const TargetCase& row : kTargetCases) {
        SCOPED_TRACE(Shown(row.target));
        TargetDatabase target;
        const std::string statement = std::string("VAL_") + std::string(row.target) + " 7 \"x\";";
        EXPECT_EQ(ReadValueDescriptionStatement(target.database, statement), row.result);
        std::string takers;
        for (const auto& signal : target.message.signals) {
            if (signal->valueDescriptions.Size() != 0) {
                takers.append("[").append(signal->nameAsRead).append("]");
            }
        }
        EXPECT_EQ(takers, row.takers);
        EXPECT_EQ(Listed(*target.other), "");
    }
}

TEST(ValueTypeStatement, SignalIsFoundByIdentifierAndNameAsRead) {
    for (const TargetCase& row : kTargetCases) {
        SCOPED_TRACE(Shown(row.target));
        TargetDatabase target;
        const std::string statement = std::string("SIG_VALTYPE_") + std::string(row.target) + " : 1;";
        EXPECT_EQ(ReadValueTypeStatement(target.database, statement), row.result);
        std::string takers;
        for (const auto& signal : target.message.signals) {
            if (signal->valueType == TABRIN_VALUE_FLOAT) {
                takers.append("[").append(signal->nameAsRead).append("]");
            }
        }
        EXPECT_EQ(takers, row.takers);
        EXPECT_EQ(target.other->valueType, static_cast<uint32_t>(TABRIN_VALUE_UNSIGNED));
    }
}

struct EntryCase {
    std::string_view statement;
    bool described;  // the result of either entry
    bool typed;
};

constexpr EntryCase kEntryCases[] = {
    {R"(VAL_ 100 S 0 "x";)", true, false},
    {R"(VAL_ 100 Unknown 0 "x";)", true, false},
    {R"(VAL_ 100 )", true, false},
    {R"(VAL_ 100)", false, false},
    {R"(VAL_ )", false, false},
    {R"( 	VAL_ 100 S 0 "x";)", true, false},
    {R"(val_ 100 S 0 "x";)", false, false},
    {R"(VAL_TABLE_ 100 S 0 "x";)", false, false},
    {R"(VAL_ Variable 0 "x";)", false, false},
    {R"(SIG_VALTYPE_ 100 S : 1;)", false, true},
    {R"(SIG_VALTYPE_ 100 Unknown : 1;)", false, true},
    {R"(SIG_VALTYPE_ 100 )", false, true},
    {R"(SIG_VALTYPE_ 100)", false, false},
    {R"(SIG_VALTYPE_ 101 S : 1;)", false, false},
    {R"(sig_valtype_ 100 S : 1;)", false, false},
    {R"(CM_ SG_ 100 S "x";)", false, false},
    {R"()", false, false},
};

TEST(ValueStatements, AreConsumedOnceTheirMessageIsFound) {
    for (const EntryCase& row : kEntryCases) {
        SCOPED_TRACE(Shown(row.statement));
        TargetDatabase target;
        EXPECT_EQ(ReadValueDescriptionStatement(target.database, row.statement), row.described);
        EXPECT_EQ(ReadValueTypeStatement(target.database, row.statement), row.typed);
    }
}

TEST(ValueStatements, ReachEveryMessageOfTheIdentifier) {
    CANDatabase database;
    const CANSignal& first = AddReadSignal(AddRead(database, "BO_ 100 First: 8 X"), "S", 32);
    const CANSignal& second = AddReadSignal(AddRead(database, "BO_ 100 Second: 8 X"), "S", 32);
    EXPECT_TRUE(ReadValueDescriptionStatement(database, R"(VAL_ 100 S 0 "Off";)"));
    EXPECT_TRUE(ReadValueTypeStatement(database, "SIG_VALTYPE_ 100 S : 1;"));
    EXPECT_EQ(Listed(first), "0=Off");
    EXPECT_EQ(Listed(second), "0=Off");
    EXPECT_EQ(first.valueType, static_cast<uint32_t>(TABRIN_VALUE_FLOAT));
    EXPECT_EQ(second.valueType, static_cast<uint32_t>(TABRIN_VALUE_FLOAT));
}

TEST(ValueStatements, ReachMessagesReadSinceTheStatementBefore) {
    CANDatabase database;
    ASSERT_TRUE(ReadText(database,
                         "BO_ 100 First: 8 X\n"
                         " SG_ S : 0|32@1+ (1,0) [0|255] \"\" X\n"
                         "VAL_ 100 S 0 \"Off\";\n"
                         "BO_ 100 Second: 8 X\n"
                         " SG_ S : 0|32@1+ (1,0) [0|255] \"\" X\n"
                         "VAL_ 100 S 1 \"On\";\n"
                         "SIG_VALTYPE_ 100 S : 1;\n"));
    ASSERT_EQ(database.messages.size(), 2U);
    EXPECT_EQ(Listed(*database.messages[0]->signals.at(0)), "0=Off|1=On");
    EXPECT_EQ(Listed(*database.messages[1]->signals.at(0)), "1=On");
    EXPECT_EQ(database.messages[1]->signals.at(0)->valueType, static_cast<uint32_t>(TABRIN_VALUE_FLOAT));
}

TEST(ValueStatements, DoNotFindAppendedMessages) {
    CANDatabase database;
    const CANSignal& signal = AddSignal(AddMessage(database, {.id = 100}), {.length = 32});
    EXPECT_FALSE(ReadValueDescriptionStatement(database, R"(VAL_ 100 S 0 "Off";)"));
    EXPECT_FALSE(ReadValueTypeStatement(database, "SIG_VALTYPE_ 100 S : 1;"));
    EXPECT_EQ(Listed(signal), "");
    EXPECT_EQ(signal.valueType, static_cast<uint32_t>(TABRIN_VALUE_UNSIGNED));
}

// Where one name goes on behind another one, a statement is for both: to the signal of the shorter name, the rest of
// the longer one is part of the first value.
TEST(ValueDescriptionStatement, NameInFrontOfALongerOneIsMeantToo) {
    CANDatabase database;
    CANMessage& message = AddRead(database, "BO_ 100 Msg: 8 X");
    const CANSignal& gear = AddReadSignal(message, "Gear");
    const CANSignal& gearOne = AddReadSignal(message, "Gear 1");
    const CANSignal& gearOneTwo = AddReadSignal(message, "Gear 1 2");
    const CANSignal& gearBox = AddReadSignal(message, "Gear box");
    EXPECT_TRUE(ReadValueDescriptionStatement(database, R"(VAL_ 100 Gear 1 2 "x";)"));
    EXPECT_EQ(Listed(gear), "1=x");
    EXPECT_EQ(Listed(gearOne), "2=x");
    EXPECT_EQ(Listed(gearOneTwo), "");
    EXPECT_TRUE(ReadValueDescriptionStatement(database, R"(VAL_ 100 Gear box 3 "4" 5 "y";)"));
    EXPECT_EQ(Listed(gear), "1=x|4= 5 ");
    EXPECT_EQ(Listed(gearBox), "3=4|5=y");
}

// What one name means is not taken over for another one: three times Gear, with the longer one in between.
TEST(ValueDescriptionStatement, EverySignalOfANameGetsWhatIsBehindThatName) {
    CANDatabase database;
    CANMessage& message = AddRead(database, "BO_ 100 Msg: 8 X");
    const CANSignal& first = AddReadSignal(message, "Gear");
    const CANSignal& longer = AddReadSignal(message, "Gear 1");
    const CANSignal& second = AddReadSignal(message, "Gear");
    const CANSignal& third = AddReadSignal(AddRead(database, "BO_ 100 Other: 8 X"), "Gear");
    EXPECT_TRUE(ReadValueDescriptionStatement(database, R"(VAL_ 100 Gear 1 2 "x" 3 "y";)"));
    EXPECT_EQ(Listed(first), "1=x|3=y");
    EXPECT_EQ(Listed(second), "1=x|3=y");
    EXPECT_EQ(Listed(third), "1=x|3=y");
    EXPECT_EQ(Listed(longer), "2=x|3=y");
}

TEST(ValueDescriptionStatement, NameWithoutDescriptionsDoesNotHideALongerOne) {
    CANDatabase database;
    CANMessage& message = AddRead(database, "BO_ 100 Msg: 8 X");
    const CANSignal& gear = AddReadSignal(message, "Gear");
    const CANSignal& box = AddReadSignal(message, "Gear box");
    EXPECT_TRUE(ReadValueDescriptionStatement(database, R"(VAL_ 100 Gear box 3 "x";)"));
    EXPECT_EQ(Listed(gear), "");
    EXPECT_EQ(Listed(box), "3=x");
}

// More descriptions than are taken at a time, and behind them nothing that is one.
TEST(ValueDescriptionStatement, LongOneIsForEverySignalOfTheName) {
    for (const int count : {127, 128, 129, 65'535, 65'536, 65'537, 131'072}) {
        SCOPED_TRACE(count);
        CANDatabase database;
        CANMessage& message = AddRead(database, "BO_ 100 Msg: 8 X");
        const CANSignal& first = AddReadSignal(message, "S");
        const CANSignal& second = AddReadSignal(message, "S");
        std::string statement = "VAL_ 100 S";
        for (int i = 0; i < count; ++i) {
            statement += " " + std::to_string(i % 1000) + " \"\"";
        }
        EXPECT_TRUE(ReadValueDescriptionStatement(database, statement + " 7 \"end\" x \"\";"));
        for (const CANSignal* signal : {&first, &second}) {
            ASSERT_EQ(signal->valueDescriptions.Size(), std::min<size_t>(static_cast<size_t>(count), 1000));
            const std::string_view joined = signal->valueDescriptions.At(7).text;
            EXPECT_EQ(joined.size(), 3U * static_cast<size_t>((count + 992) / 1000) + 3U);
            EXPECT_TRUE(joined.ends_with(" - end"));
        }
    }
}

TEST(ValueTypeStatement, SignalItDoesNotFitDoesNotHideOthersOfItsName) {
    CANDatabase database;
    CANMessage& message = AddRead(database, "BO_ 100 Msg: 8 X");
    const CANSignal& shorter = AddReadSignal(message, "S", 32);
    const CANSignal& other = AddReadSignal(message, "S", 16);
    const CANSignal& longer = AddReadSignal(message, "S", 64);
    EXPECT_TRUE(ReadValueTypeStatement(database, "SIG_VALTYPE_ 100 S : 2;"));
    EXPECT_TRUE(ReadValueTypeStatement(database, "SIG_VALTYPE_ 100 S : 1;"));
    EXPECT_EQ(shorter.valueType, static_cast<uint32_t>(TABRIN_VALUE_FLOAT));
    EXPECT_EQ(other.valueType, static_cast<uint32_t>(TABRIN_VALUE_UNSIGNED));
    EXPECT_EQ(longer.valueType, static_cast<uint32_t>(TABRIN_VALUE_DOUBLE));
}

TEST(ValueDescriptionStatement, LaterLongNameDoesNotMatter) {
    CANDatabase database;
    CANSignal& signal = AddReadSignal(AddRead(database, "BO_ 100 Msg: 8 X"), "Short");
    signal.name = "Long";
    EXPECT_TRUE(ReadValueDescriptionStatement(database, R"(VAL_ 100 Long 0 "wrong";)"));
    EXPECT_TRUE(ReadValueDescriptionStatement(database, R"(VAL_ 100 Short 1 "right";)"));
    EXPECT_EQ(Listed(signal), "1=right");
}

// A line for the own parser of the signal S, which is told the identifier of its message.
struct OwnParserCase {
    std::string_view line;
    uint32_t id;
    bool result;
};

TEST(ValueDescriptionStatement, OwnParserTakesItsOwnLinesOnly) {
    const OwnParserCase rows[] = {
        {R"(VAL_ 100 S 0 "x";)", 100, true},
        {R"(VAL_ 101 S 0 "x";)", 101, true},
        {R"(VAL_ 101 S 0 "x";)", 100, false},
        {R"(VAL_ 100 T 0 "x";)", 100, false},
        {R"(VAL_ x S 0 "x";)", 0, false},
        {"VAL_ 100 ", 100, false},
        {R"(SIG_VALTYPE_ 100 S 0 "x";)", 100, false},
    };
    for (const OwnParserCase& row : rows) {
        SCOPED_TRACE(testing::Message() << Shown(row.line) << " for " << row.id);
        CANDatabase database;
        CANSignal& signal = AddReadSignal(AddRead(database, "BO_ 100 Msg: 8 X"), "S");
        EXPECT_EQ(signal.ParseValueDescriptionLine(row.line, row.id), row.result);
        EXPECT_EQ(Listed(signal), row.result ? "0=x" : "");
    }
}

// --- Reading SIG_VALTYPE_

struct ValueTypeCase {
    std::string_view rest;  // behind `SIG_VALTYPE_ 100 S`
    uint32_t length;
    uint32_t valueType;  // afterwards; unsigned before
};

constexpr ValueTypeCase kValueTypeCases[] = {
    {" : 1;", 32, TABRIN_VALUE_FLOAT},
    {" : 2;", 64, TABRIN_VALUE_DOUBLE},
    {" : 1;", 64, TABRIN_VALUE_UNSIGNED},
    {" : 2;", 32, TABRIN_VALUE_UNSIGNED},
    {" : 1;", 16, TABRIN_VALUE_UNSIGNED},
    {" : 1;", 31, TABRIN_VALUE_UNSIGNED},
    {" : 1;", 33, TABRIN_VALUE_UNSIGNED},
    {" : 2;", 63, TABRIN_VALUE_UNSIGNED},
    {" : 2;", 65, TABRIN_VALUE_UNSIGNED},
    {" : 0;", 32, TABRIN_VALUE_UNSIGNED},
    {" : 0;", 64, TABRIN_VALUE_UNSIGNED},
    {" : 3;", 32, TABRIN_VALUE_UNSIGNED},
    {" : 3;", 64, TABRIN_VALUE_UNSIGNED},
    // The colon: the first thing behind the name and the blank that must follow it.
    {" :1;", 32, TABRIN_VALUE_FLOAT},
    {"\t\n\r\v\f : 1;", 32, TABRIN_VALUE_FLOAT},
    {": 1;", 32, TABRIN_VALUE_UNSIGNED},
    {" 1;", 32, TABRIN_VALUE_UNSIGNED},
    {" x : 1;", 32, TABRIN_VALUE_UNSIGNED},
    {" ; : 1;", 32, TABRIN_VALUE_UNSIGNED},
    {" :: 1;", 32, TABRIN_VALUE_UNSIGNED},
    {" ", 32, TABRIN_VALUE_UNSIGNED},
    {"", 32, TABRIN_VALUE_UNSIGNED},
    // The semicolon has to be there.
    {" : 1", 32, TABRIN_VALUE_UNSIGNED},
    {" : 1\n", 32, TABRIN_VALUE_UNSIGNED},
    {" : 2", 64, TABRIN_VALUE_UNSIGNED},
    {" :;", 32, TABRIN_VALUE_UNSIGNED},
    {" : ;", 32, TABRIN_VALUE_UNSIGNED},
    {" :", 32, TABRIN_VALUE_UNSIGNED},
    {" : ; 1;", 32, TABRIN_VALUE_UNSIGNED},
    {" : 1; 2;", 32, TABRIN_VALUE_FLOAT},
    // The code is an unsigned number; what follows its digits does not matter.
    {" : 01 ;", 32, TABRIN_VALUE_FLOAT},
    {" : +1;", 32, TABRIN_VALUE_FLOAT},
    {" : 1 \n;", 32, TABRIN_VALUE_FLOAT},
    {" : 1x;", 32, TABRIN_VALUE_FLOAT},
    {" : 1.9;", 32, TABRIN_VALUE_FLOAT},
    {" : 12;", 32, TABRIN_VALUE_UNSIGNED},
    {" : -1;", 32, TABRIN_VALUE_UNSIGNED},
    {" : x1;", 32, TABRIN_VALUE_UNSIGNED},
    {" : 4294967297;", 32, TABRIN_VALUE_UNSIGNED},
    {" : 4294967298;", 64, TABRIN_VALUE_UNSIGNED},
};

TEST(ValueTypeStatement, CodeMustFitTheLength) {
    for (const ValueTypeCase& row : kValueTypeCases) {
        SCOPED_TRACE(Shown(row.rest) + " with " + std::to_string(row.length) + " bits");
        CANDatabase database;
        const CANSignal& signal = AddReadSignal(AddRead(database, "BO_ 100 Msg: 8 X"), "S", row.length);
        const std::string statement = std::string("SIG_VALTYPE_ 100 S") + std::string(row.rest);
        EXPECT_TRUE(ReadValueTypeStatement(database, statement));
        EXPECT_EQ(signal.valueType, row.valueType);
    }
}

TEST(ValueTypeStatement, OwnParserTellsWhetherTheCodeFits) {
    for (const ValueTypeCase& row : kValueTypeCases) {
        SCOPED_TRACE(Shown(row.rest) + " with " + std::to_string(row.length) + " bits");
        CANDatabase database;
        CANSignal& signal = AddReadSignal(AddRead(database, "BO_ 100 Msg: 8 X"), "S", row.length);
        const std::string statement = std::string("SIG_VALTYPE_ 100 S") + std::string(row.rest);
        EXPECT_EQ(signal.ParseValueTypeLine(statement, 100), row.valueType != TABRIN_VALUE_UNSIGNED);
    }
}

TEST(ValueTypeStatement, UnfitCodeLeavesSignedAndFloat) {
    CANDatabase database;
    CANMessage& message = AddRead(database, "BO_ 100 Msg: 8 X");
    const CANSignal& negative = AddReadLine(message, R"(SG_ Negative : 0|32@1- (1,0) [0|1] "" X)");
    const CANSignal& single = AddReadSignal(message, "Single", 32);
    EXPECT_TRUE(ReadValueTypeStatement(database, "SIG_VALTYPE_ 100 Negative : 2;"));
    EXPECT_EQ(negative.valueType, static_cast<uint32_t>(TABRIN_VALUE_SIGNED));
    EXPECT_TRUE(ReadValueTypeStatement(database, "SIG_VALTYPE_ 100 Single : 1;"));
    EXPECT_TRUE(ReadValueTypeStatement(database, "SIG_VALTYPE_ 100 Single : 0;"));
    EXPECT_EQ(single.valueType, static_cast<uint32_t>(TABRIN_VALUE_FLOAT));
}

TEST(ValueTypeStatement, OwnParserTakesItsOwnLinesOnly) {
    const OwnParserCase rows[] = {
        {"SIG_VALTYPE_ 100 S : 1;", 100, true},  {"SIG_VALTYPE_ 101 S : 1;", 101, true},
        {"SIG_VALTYPE_ 101 S : 1;", 100, false}, {"SIG_VALTYPE_ 100 T : 1;", 100, false},
        {"VAL_ 100 S : 1;", 100, false},
    };
    for (const OwnParserCase& row : rows) {
        SCOPED_TRACE(testing::Message() << Shown(row.line) << " for " << row.id);
        CANDatabase database;
        CANSignal& signal = AddReadSignal(AddRead(database, "BO_ 100 Msg: 8 X"), "S", 32);
        EXPECT_EQ(signal.ParseValueTypeLine(row.line, row.id), row.result);
        EXPECT_EQ(signal.valueType, static_cast<uint32_t>(row.result ? TABRIN_VALUE_FLOAT : TABRIN_VALUE_UNSIGNED));
    }
}

TEST(ValueTypeStatement, FloatIsWrittenSigned) {
    CANDatabase database;
    const CANSignal& signal = AddReadSignal(AddRead(database, "BO_ 100 Msg: 8 X"), "S", 32);
    ASSERT_TRUE(ReadValueTypeStatement(database, "SIG_VALTYPE_ 100 S : 1;"));
    EXPECT_EQ(signal.WriteDefinitionLine(), R"( SG_ S : 0|32@1- (1,0) [0|255] "" X)");
}

TEST(ValueTypeStatement, FloatKeepsItsDescriptionsUnwritten) {
    CANDatabase database;
    const CANSignal& signal = AddReadSignal(AddRead(database, "BO_ 100 Msg: 8 X"), "S", 32);
    ASSERT_TRUE(ReadValueDescriptionStatement(database, R"(VAL_ 100 S 0 "Off";)"));
    EXPECT_EQ(signal.WriteValueDescriptionLine(100), R"(VAL_ 100 S 0 "Off";)");
    ASSERT_TRUE(ReadValueTypeStatement(database, "SIG_VALTYPE_ 100 S : 1;"));
    EXPECT_EQ(signal.WriteValueDescriptionLine(100), "");
    EXPECT_EQ(Listed(signal), "0=Off");
}

// --- In a file

TEST(ValueDescriptionStatement, LongNameWithABlankIsWrittenAndFoundByItsIdentifierForm) {
    CANDatabase database;
    ASSERT_TRUE(ReadText(database,
                         "BO_ 100 Msg: 8 X\n"
                         " SG_ My Sig : 0|8@1+ (1,0) [0|255] \"\" X\n"
                         "VAL_ 100 My Sig 0 \"Off\";\n"
                         "VAL_ 100 My_Sig 1 \"On\";\n"));
    EXPECT_EQ(Listed(*database.messages.at(0)->signals.at(0)), "0=Off");
    const std::string written = WrittenBytes(database);
    EXPECT_NE(written.find("\r\nVAL_ 100 My_Sig 0 \"Off\";\r\n"), std::string::npos) << written;
    ASSERT_TRUE(ReadText(database, written));
    EXPECT_EQ(Listed(*database.messages.at(0)->signals.at(0)), "0=Off");
}

TEST(ValueStatements, InFrontOfTheirMessageAreLostWithoutAnError) {
    CANDatabase database;
    ASSERT_TRUE(ReadText(database,
                         "VAL_ 100 S 0 \"Off\";\n"
                         "SIG_VALTYPE_ 100 S : 1;\n"
                         "BO_ 100 Msg: 8 X\n"
                         " SG_ S : 0|32@1+ (1,0) [0|255] \"\" X\n"));
    EXPECT_EQ(Listed(*database.messages.at(0)->signals.at(0)), "");
    EXPECT_EQ(database.messages.at(0)->signals.at(0)->valueType, static_cast<uint32_t>(TABRIN_VALUE_UNSIGNED));
    EXPECT_TRUE(database.errors.empty());
}

}  // namespace
}  // namespace tabrin
