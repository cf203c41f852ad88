#include "dbc/attribute_statements.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "dbc/parsed_attributes.h"
#include "model/attribute_store.h"
#include "model/attribute_text.h"
#include "shown.h"

namespace tabrin {
namespace {

using Texts = std::vector<std::string>;

struct DefinitionRow {
    const char* statement;
    const char* expected;  // empty: dropped
};

void ExpectDefinition(const DefinitionRow& row) {
    SCOPED_TRACE(Shown(row.statement));
    AttributeStore store;
    ParseAttributeStatement(store, row.statement);
    EXPECT_EQ(AttributeTexts(store.Definitions()), *row.expected != '\0' ? Texts{row.expected} : Texts());
    EXPECT_TRUE(store.Values().empty());
}

TEST(AttributeDefinitionStatement, ObjectComesFromTheKeywordInFrontOfTheName) {
    const DefinitionRow rows[] = {
        {"BA_DEF_ \"X\" STRING;", "General String X"},
        {"BA_DEF_ BO_ \"X\" STRING;", "Message String X"},
        {"BA_DEF_ SG_ \"X\" STRING;", "Signal String X"},
        {"BA_DEF_ BU_ \"X\" INT 0 1;", ""},
        {"BA_DEF_ EV_ \"X\" STRING;", ""},
        {"BA_DEF_ bo_ \"X\" STRING;", ""},
        {"BA_DEF_ BO \"X\" STRING;", ""},
        {"BA_DEF_ SG_x \"X\" STRING;", ""},
        {"BA_DEF_ BO_ SG_ \"X\" STRING;", ""},
        {"BA_DEF_ 100 \"X\" STRING;", ""},
        {"BA_DEF_ \"BO_\" STRING;", "General String BO_"},
        {"BA_DEF_ \"BO_\" \"X\" STRING;", ""},
        {"BA_DEF_ \"X\" BO_ STRING;", ""},
    };
    for (const DefinitionRow& row : rows) {
        ExpectDefinition(row);
    }
}

TEST(AttributeDefinitionStatement, NameIsAQuotedTextThatIsNotEmpty) {
    const DefinitionRow rows[] = {
        {"BA_DEF_ \"X Y\" STRING;", "General String X Y"},
        {"BA_DEF_ \"X \t; Y\" STRING;", "General String X Y"},
        {"BA_DEF_ BO_ \"X Y\" STRING;", "Message String X Y"},
        {"BA_DEF_ a\"X\"b STRING;", "General String X"},
        {"BA_DEF_ \"X\"Y\" STRING;", "General String X\"Y"},
        {"BA_DEF_ \"12\" STRING;", "General String 12"},
        {"BA_DEF_ X STRING;", ""},
        {"BA_DEF_ BO_ X STRING;", ""},
        {"BA_DEF_ \"\" STRING;", ""},
        {"BA_DEF_ BO_ \"\" STRING;", ""},
        {"BA_DEF_ 12 STRING;", ""},
        {"BA_DEF_ \"X STRING;", ""},
    };
    for (const DefinitionRow& row : rows) {
        ExpectDefinition(row);
    }
}

TEST(AttributeDefinitionStatement, TypeKeywordIsOneOfThree) {
    const DefinitionRow rows[] = {
        {"BA_DEF_ \"X\" INT 0 1;", "General Int X 0..1"},
        {"BA_DEF_ \"X\" ENUM \"A\";", "General Enum X {A}"},
        {"BA_DEF_ \"X\" STRING ;", "General String X"},
        {"BA_DEF_ BO_ \"GenMsgCycleTime\" FLOAT 0 1000;", ""},
        {"BA_DEF_ \"X\" HEX 0 1;", ""},
        {"BA_DEF_ \"X\" int 0 1;", ""},
        {"BA_DEF_ \"X\" Int 0 1;", ""},
        {"BA_DEF_ \"X\" INTEGER 0 1;", ""},
        {"BA_DEF_ \"X\" enum \"A\";", ""},
        {"BA_DEF_ \"X\" string;", ""},
        {"BA_DEF_ \"X\" 0 1;", ""},
        {"BA_DEF_ BO_ \"X\" 0 1;", ""},
        {"BA_DEF_ \"X\" \"INT\" 0 1;", ""},
        {"BA_DEF_ BO_ \"X\" \"INT\" 0 1;", ""},
        {"BA_DEF_ \"X\";", ""},
        {"BA_DEF_ BO_ \"X\";", ""},
        {"BA_DEF_ BO_;", ""},
        {"BA_DEF_ ;", ""},
    };
    for (const DefinitionRow& row : rows) {
        ExpectDefinition(row);
    }
}

TEST(AttributeDefinitionStatement, IntHasTwoBoundsOneOfThemANumber) {
    const DefinitionRow rows[] = {
        {"BA_DEF_ BO_ \"X\" INT 0 65535;", "Message Int X 0..65535"},
        {"BA_DEF_ SG_ \"X\" INT 1 2;", "Signal Int X 1..2"},
        {"BA_DEF_ \"X\" INT;", ""},
        {"BA_DEF_ \"X\" INT 0;", ""},
        {"BA_DEF_ \"X\" INT 0 1 2;", ""},
        {"BA_DEF_ \"X\" INT 0 1 x;", ""},
        {"BA_DEF_ BO_ \"X\" INT 0;", ""},
        {"BA_DEF_ BO_ \"X\" INT 0 1 2;", ""},
        // A negative bound is a word.
        {"BA_DEF_ BO_ \"GenMsgCycleTime\" INT -10 100;", "Message Int GenMsgCycleTime -10..100"},
        {"BA_DEF_ \"X\" INT 10 -100;", "General Int X 10..-100"},
        {"BA_DEF_ \"X\" INT -10 -5;", ""},
        {"BA_DEF_ BO_ \"GenMsgCycleTime\" INT -10 abc;", ""},
        {"BA_DEF_ \"X\" INT a b;", ""},
        {"BA_DEF_ \"X\" INT \"1\" \"2\";", ""},
        // What does not read as a number counts as 0, next to one that does.
        {"BA_DEF_ \"X\" INT 3 abc;", "General Int X 3..0"},
        {"BA_DEF_ \"X\" INT abc 3;", "General Int X 0..3"},
        {"BA_DEF_ \"X\" INT 3 \"7\";", "General Int X 3..0"},
        {"BA_DEF_ \"X\" INT \"7\" 3;", "General Int X 0..3"},
        {"BA_DEF_ \"X\" INT - 3;", "General Int X 0..3"},
        // The limits of the numbers.
        {"BA_DEF_ \"X\" INT 0 2147483647;", "General Int X 0..2147483647"},
        {"BA_DEF_ \"X\" INT 1 2147483648;", "General Int X 1..0"},
        {"BA_DEF_ \"X\" INT -2147483648 5;", "General Int X -2147483648..5"},
        {"BA_DEF_ \"X\" INT -2147483649 5;", "General Int X 0..5"},
        {"BA_DEF_ \"X\" INT -10 9223372036854775807;", "General Int X -10..0"},
        {"BA_DEF_ \"X\" INT -10 9223372036854775808;", ""},
        {"BA_DEF_ \"X\" INT 99999999999999999999 5;", "General Int X 0..5"},
        // Text behind a number is ignored, a sign makes it a word that still reads as a number.
        {"BA_DEF_ \"X\" INT 12abc 20;", "General Int X 12..20"},
        {"BA_DEF_ \"X\" INT 0 1.9;", "General Int X 0..1"},
        {"BA_DEF_ \"X\" INT +5 6;", "General Int X 5..6"},
        {"BA_DEF_ \"X\" INT -5x 6;", "General Int X -5..6"},
        {"BA_DEF_ \"X\" INT 007 6;", "General Int X 7..6"},
    };
    for (const DefinitionRow& row : rows) {
        ExpectDefinition(row);
    }
}

TEST(AttributeDefinitionStatement, EnumHasQuotedNamesOnly) {
    const DefinitionRow rows[] = {
        {"BA_DEF_ BO_ \"X\" ENUM \"A\",\"B\";", "Message Enum X {A|B}"},
        {"BA_DEF_ SG_ \"X\" ENUM \"A\";", "Signal Enum X {A}"},
        {"BA_DEF_ \"X\" ENUM \"B\" , \"A\" ;", "General Enum X {B|A}"},
        {"BA_DEF_ \"X\" ENUM \"A\" \"B\" \"C\";", "General Enum X {A|B|C}"},
        {"BA_DEF_ \"X\" ENUM \"A\",\"A\";", "General Enum X {A|A}"},
        {"BA_DEF_ \"X\" ENUM,\"A\";", "General Enum X {A}"},
        {"BA_DEF_ \"X\" ENUM \"not used\",\"B\";", "General Enum X {not used|B}"},
        {"BA_DEF_ \"X\" ENUM \"A,B\",\"C;D\";", "General Enum X {A B|C D}"},
        {"BA_DEF_ \"X\" ENUM \"A\"\"B\";", "General Enum X {A\"\"B}"},
        {"BA_DEF_ \"X\" ENUM 1\"A\"2;", "General Enum X {A}"},
        {"BA_DEF_ \"X\" ENUM \"1\",\"0\";", "General Enum X {1|0}"},
        {"BA_DEF_ \"X\" ENUM;", ""},
        {"BA_DEF_ BO_ \"X\" ENUM ;", ""},
        {"BA_DEF_ \"X\" ENUM A;", ""},
        {"BA_DEF_ \"X\" ENUM \"A\",B;", ""},
        {"BA_DEF_ \"X\" ENUM A,\"B\";", ""},
        {"BA_DEF_ \"X\" ENUM \"A\",1;", ""},
        {"BA_DEF_ \"X\" ENUM \"\";", ""},
        {"BA_DEF_ \"X\" ENUM \"A\",\"\",\"B\";", ""},
        // A blank behind the opening quote takes the text apart.
        {"BA_DEF_ \"X\" ENUM \" A\";", ""},
        {"BA_DEF_ \"X\" ENUM \"A\",\"B;", ""},
    };
    for (const DefinitionRow& row : rows) {
        ExpectDefinition(row);
    }
}

TEST(AttributeDefinitionStatement, StringHasNothingBehindIt) {
    const DefinitionRow rows[] = {
        {"BA_DEF_ \"BusType\" STRING ;", "General String BusType"},
        {"BA_DEF_ \"BusType\" STRING", "General String BusType"},
        {"BA_DEF_ \"BusType\" STRING;,; \n", "General String BusType"},
        {"BA_DEF_ \"BusType\" STRING \"\";", ""},
        {"BA_DEF_ \"BusType\" STRING \"a\";", ""},
        {"BA_DEF_ \"BusType\" STRING x;", ""},
        {"BA_DEF_ SG_ \"BusType\" STRING 0;", ""},
    };
    for (const DefinitionRow& row : rows) {
        ExpectDefinition(row);
    }
}

TEST(AttributeDefinitionStatement, BlanksSemicolonsAndCommasOnlySeparate) {
    const DefinitionRow rows[] = {
        {"BA_DEF_\n\"X\"\tINT\r\n0\v1\f", "General Int X 0..1"},
        {"  BA_DEF_ \"X\"  INT  0  1  ;", "General Int X 0..1"},
        {"BA_DEF_ \"X\" INT 0,1;", "General Int X 0..1"},
        {"BA_DEF_;BO_;\"X\";INT;0;1", "Message Int X 0..1"},
        {",;BA_DEF_ \"X\" INT 0 1", "General Int X 0..1"},
        {"BA_DEF_ \"X\" INT 0 1; 2", ""},
        {"BA_DEF_ \"X\"INT 0 1;", ""},
    };
    for (const DefinitionRow& row : rows) {
        ExpectDefinition(row);
    }
}

TEST(AttributeStatement, WithAnotherFirstWordIsIgnored) {
    for (const char* statement :
         {"", ";", "BA_DEF_REL_ \"X\" INT 0 1;", "BA_DEF_X \"X\" INT 0 1;", "ba_def_ \"X\" INT 0 1;",
          "BA_DEF \"X\" INT 0 1;", "x BA_DEF_ \"X\" INT 0 1;", "\"BA_DEF_\" \"X\" INT 0 1;", "\"X\" INT 0 1;",
          "BA_SGTYPE_ \"X\" 1;", "BA_REL_ \"D\" 1;", "BA_DEF_DEF_REL_ \"D\" 1;", "BA \"D\" 1;", "ba_ \"D\" 1;"}) {
        SCOPED_TRACE(Shown(statement));
        AttributeStore store;
        ParseAttributeStatement(store, "BA_DEF_ \"D\" INT 0 1;");
        ParseAttributeStatement(store, statement);
        EXPECT_EQ(AttributeTexts(store.Definitions()), Texts{"General Int D 0..1"});
        EXPECT_TRUE(store.Values().empty());
    }
}

TEST(AttributeDefinitionStatement, FirstOneWins) {
    AttributeStore store;
    Parse(store, {"BA_DEF_ BO_ \"I\" INT 0 1;", "BA_DEF_DEF_ \"I\" 1;", "BA_DEF_ BO_ \"I\" INT 5 9;",
                  "BA_DEF_ \"E\" ENUM \"A\",\"B\";", "BA_DEF_ \"E\" ENUM \"C\";"});
    EXPECT_EQ(AttributeTexts(store.Definitions()), (Texts{"Message Int I 0..1 int=1", "General Enum E {A|B}"}));
}

TEST(AttributeDefinitionStatement, EachObjectAndValueTypeIsADefinitionOfItsOwn) {
    AttributeStore store;
    Parse(store, {"BA_DEF_ \"X\" INT 0 1;", "BA_DEF_ SG_ \"X\" INT 0 2;", "BA_DEF_ BO_ \"X\" INT 0 3;",
                  "BA_DEF_ BO_ \"X\" STRING;", "BA_DEF_ BO_ \"X\" ENUM \"A\";", "BA_DEF_ BO_ \"Y\" INT 0 4;",
                  "BA_DEF_ BO_ \"x\" INT 0 5;"});
    EXPECT_EQ(AttributeTexts(store.Definitions()),
              (Texts{"General Int X 0..1", "Signal Int X 0..2", "Message Int X 0..3", "Message String X",
                     "Message Enum X {A}", "Message Int Y 0..4", "Message Int x 0..5"}));
}

constexpr std::array<std::string_view, 2> kFilter = {"Kept", "Kept too"};

TEST(AttributeStatementFilter, DropsDefinitionsOfOtherNames) {
    AttributeStore store;
    store.Clear(kFilter);
    Parse(store, {"BA_DEF_ \"Other\" INT 0 1;", "BA_DEF_ BO_ \"Kept too\" STRING;", "BA_DEF_ SG_ \"kept\" STRING;",
                  "BA_DEF_ SG_ \"Kept\" ENUM \"A\";", "BA_DEF_ BO_ \"Other\" ENUM \"A\";"});
    EXPECT_EQ(AttributeTexts(store.Definitions()), (Texts{"Message String Kept too", "Signal Enum Kept {A}"}));
}

// A definition that the store was given directly is there in spite of the filter.
TEST(AttributeStatementFilter, DropsDefaultsOfOtherNames) {
    AttributeStore store;
    store.Clear(kFilter);
    store.AddDefinition(MakeAttribute("Other", AttributeObjectType::General, AttributeValueType::Int));
    store.AddDefinition(MakeAttribute("Kept", AttributeObjectType::General, AttributeValueType::Int));
    Parse(store, {"BA_DEF_DEF_ \"Other\" 5;", "BA_DEF_DEF_ \"Kept\" 6;"});
    EXPECT_EQ(AttributeTexts(store.Definitions()),
              (Texts{"General Int Other -2147483648..2147483647", "General Int Kept -2147483648..2147483647 int=6"}));
}

TEST(AttributeStatementFilter, DropsValuesOfOtherNames) {
    AttributeStore store;
    store.Clear(kFilter);
    store.AddDefinition(MakeAttribute("Other", AttributeObjectType::General, AttributeValueType::String));
    store.AddDefinition(MakeAttribute("Kept", AttributeObjectType::General, AttributeValueType::String));
    Parse(store, {"BA_ \"Other\" \"a\";", "BA_ \"Kept\" \"b\";"});
    EXPECT_EQ(AttributeTexts(store.Values()), Texts{"General String Kept text=[b]"});
}

struct DefaultRow {
    std::vector<const char*> statements;  // behind the definitions of the test
    Texts expected;
};

TEST(AttributeDefaultStatement, SetsWhatFits) {
    const DefaultRow rows[] = {
        {{"BA_DEF_DEF_ \"I\" 1;"}, {"General Int I -10..10 int=1", "Message Enum E {A|B}", "Signal String S"}},
        {{"BA_DEF_DEF_ \"I\" -5;"}, {"General Int I -10..10 int=-5", "Message Enum E {A|B}", "Signal String S"}},
        {{"BA_DEF_DEF_ \"I\" 7abc;"}, {"General Int I -10..10 int=7", "Message Enum E {A|B}", "Signal String S"}},
        {{"BA_DEF_DEF_ \"I\" +3;"}, {"General Int I -10..10 int=3", "Message Enum E {A|B}", "Signal String S"}},
        {{"BA_DEF_DEF_ \"I\" 11;"}, {"General Int I -10..10", "Message Enum E {A|B}", "Signal String S"}},
        {{"BA_DEF_DEF_ \"I\" -11;"}, {"General Int I -10..10", "Message Enum E {A|B}", "Signal String S"}},
        {{"BA_DEF_DEF_ \"I\" \"5\";"}, {"General Int I -10..10", "Message Enum E {A|B}", "Signal String S"}},
        {{"BA_DEF_DEF_ \"I\" abc;"}, {"General Int I -10..10", "Message Enum E {A|B}", "Signal String S"}},
        {{"BA_DEF_DEF_ \"E\" \"B\";"}, {"General Int I -10..10", "Message Enum E {A|B} index=1", "Signal String S"}},
        {{"BA_DEF_DEF_ \"E\" 1;"}, {"General Int I -10..10", "Message Enum E {A|B} index=1", "Signal String S"}},
        {{"BA_DEF_DEF_ \"E\" 1;", "BA_DEF_DEF_ \"E\" \"A\";"},
         {"General Int I -10..10", "Message Enum E {A|B}", "Signal String S"}},
        {{"BA_DEF_DEF_ \"E\" 1;", "BA_DEF_DEF_ \"E\" 0;"},
         {"General Int I -10..10", "Message Enum E {A|B}", "Signal String S"}},
        {{"BA_DEF_DEF_ \"E\" \"C\";"}, {"General Int I -10..10", "Message Enum E {A|B}", "Signal String S"}},
        {{"BA_DEF_DEF_ \"E\" 2;"}, {"General Int I -10..10", "Message Enum E {A|B}", "Signal String S"}},
        {{"BA_DEF_DEF_ \"E\" B;"}, {"General Int I -10..10", "Message Enum E {A|B}", "Signal String S"}},
        {{"BA_DEF_DEF_ \"S\" \"a  b\";"},
         {"General Int I -10..10", "Message Enum E {A|B}", "Signal String S text=[a b]"}},
        {{"BA_DEF_DEF_ \"S\" \"a;b,c\";"},
         {"General Int I -10..10", "Message Enum E {A|B}", "Signal String S text=[a b c]"}},
        // A text without quotes, or an empty one, empties a string.
        {{"BA_DEF_DEF_ \"S\" \"x\";", "BA_DEF_DEF_ \"S\" abc;"},
         {"General Int I -10..10", "Message Enum E {A|B}", "Signal String S"}},
        {{"BA_DEF_DEF_ \"S\" \"x\";", "BA_DEF_DEF_ \"S\" 5;"},
         {"General Int I -10..10", "Message Enum E {A|B}", "Signal String S"}},
        {{"BA_DEF_DEF_ \"S\" \"x\";", "BA_DEF_DEF_ \"S\" \"\";"},
         {"General Int I -10..10", "Message Enum E {A|B}", "Signal String S"}},
        // The last of several defaults counts, unless it does not fit.
        {{"BA_DEF_DEF_ \"I\" 1;", "BA_DEF_DEF_ \"I\" 2;"},
         {"General Int I -10..10 int=2", "Message Enum E {A|B}", "Signal String S"}},
        {{"BA_DEF_DEF_ \"I\" 1;", "BA_DEF_DEF_ \"I\" 11;"},
         {"General Int I -10..10 int=1", "Message Enum E {A|B}", "Signal String S"}},
        {{"BA_DEF_DEF_ \"E\" 1;", "BA_DEF_DEF_ \"E\" \"C\";"},
         {"General Int I -10..10", "Message Enum E {A|B} index=1", "Signal String S"}},
    };
    for (const DefaultRow& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.statements));
        AttributeStore store;
        Parse(store, {"BA_DEF_ \"I\" INT -10 10;", "BA_DEF_ BO_ \"E\" ENUM \"A\",\"B\";", "BA_DEF_ SG_ \"S\" STRING;"});
        Parse(store, row.statements);
        EXPECT_EQ(AttributeTexts(store.Definitions()), row.expected);
        EXPECT_TRUE(store.Values().empty());
    }
}

TEST(AttributeDefaultStatement, HasAQuotedNameAndAThirdToken) {
    const DefaultRow rows[] = {
        {{"BA_DEF_DEF_ \"S\" \"new\" junk 5 \"more\";"}, {"General String S text=[new]"}},
        {{"BA_DEF_DEF_,\"S\";\"new\""}, {"General String S text=[new]"}},
        {{"BA_DEF_DEF_ x\"S\"y \"new\";"}, {"General String S text=[new]"}},
        {{"BA_DEF_DEF_ \"S\";"}, {"General String S text=[old]"}},
        {{"BA_DEF_DEF_ \"S\""}, {"General String S text=[old]"}},
        {{"BA_DEF_DEF_;"}, {"General String S text=[old]"}},
        {{"BA_DEF_DEF_ S \"new\";"}, {"General String S text=[old]"}},
        {{"BA_DEF_DEF_ 5 \"S\" \"new\";"}, {"General String S text=[old]"}},
        {{"BA_DEF_DEF_ BO_ \"S\" \"new\";"}, {"General String S text=[old]"}},
        {{"BA_DEF_DEF_ \"\" \"new\";"}, {"General String S text=[old]"}},
        {{"BA_DEF_DEF_ \"s\" \"new\";"}, {"General String S text=[old]"}},
        {{"BA_DEF_DEF_ \"S2\" \"new\";"}, {"General String S text=[old]"}},
        {{"ba_def_def_ \"S\" \"new\";"}, {"General String S text=[old]"}},
    };
    for (const DefaultRow& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.statements));
        AttributeStore store;
        Parse(store, {"BA_DEF_ \"S\" STRING ;", "BA_DEF_DEF_ \"S\" \"old\";"});
        Parse(store, row.statements);
        EXPECT_EQ(AttributeTexts(store.Definitions()), row.expected);
    }
}

TEST(AttributeDefaultStatement, ReachesEveryDefinitionOfTheName) {
    const DefaultRow rows[] = {
        {{"BA_DEF_DEF_ \"X\" 1;"},
         {"General Enum X {A|B} index=1", "Message Int X 0..1 int=1", "Signal Int X 0..100 int=1", "Message String X",
          "Signal Int Y 0..100"}},
        {{"BA_DEF_DEF_ \"X\" 100;"},
         {"General Enum X {A|B}", "Message Int X 0..1", "Signal Int X 0..100 int=100", "Message String X",
          "Signal Int Y 0..100"}},
        {{"BA_DEF_DEF_ \"X\" \"B\";"},
         {"General Enum X {A|B} index=1", "Message Int X 0..1", "Signal Int X 0..100", "Message String X text=[B]",
          "Signal Int Y 0..100"}},
    };
    for (const DefaultRow& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.statements));
        AttributeStore store;
        Parse(store, {"BA_DEF_ \"X\" ENUM \"A\",\"B\";", "BA_DEF_ BO_ \"X\" INT 0 1;", "BA_DEF_ SG_ \"X\" INT 0 100;",
                      "BA_DEF_ BO_ \"X\" STRING;", "BA_DEF_ SG_ \"Y\" INT 0 100;"});
        Parse(store, row.statements);
        EXPECT_EQ(AttributeTexts(store.Definitions()), row.expected);
    }
}

TEST(AttributeDefaultStatement, InFrontOfTheDefinitionIsLost) {
    AttributeStore store;
    Parse(store, {"BA_DEF_ BO_ \"X\" INT 0 9;", "BA_DEF_DEF_ \"X\" 5;", "BA_DEF_ SG_ \"X\" INT 0 9;"});
    EXPECT_EQ(AttributeTexts(store.Definitions()), (Texts{"Message Int X 0..9 int=5", "Signal Int X 0..9"}));
}

TEST(AttributeDefaultStatement, NameAndIndexSelectTheSameEnumValue) {
    for (const char* statement : {"BA_DEF_DEF_ \"GenMsgSendType\" \"Cyclic\";", "BA_DEF_DEF_ \"GenMsgSendType\" 0;"}) {
        SCOPED_TRACE(Shown(statement));
        AttributeStore store;
        Parse(store,
              {"BA_DEF_ BO_ \"GenMsgSendType\" ENUM \"Cyclic\",\"Event\";", "BA_DEF_DEF_ \"GenMsgSendType\" 1;"});
        ParseAttributeStatement(store, statement);
        EXPECT_EQ(AttributeTexts(store.Definitions()), Texts{"Message Enum GenMsgSendType {Cyclic|Event}"});
    }
}

}  // namespace
}  // namespace tabrin
