#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

#include "dbc/attribute_statements.h"
#include "dbc/parsed_attributes.h"
#include "model/attribute_store.h"
#include "model/attribute_text.h"
#include "shown.h"

namespace tabrin {
namespace {

using Texts = std::vector<std::string>;

struct ValueRow {
    const char* statement;
    const char* expected;  // empty: dropped
};

template <size_t Count>
void ExpectValues(const std::vector<const char*>& definitions, const ValueRow (&rows)[Count]) {
    for (const ValueRow& row : rows) {
        SCOPED_TRACE(Shown(row.statement));
        AttributeStore store;
        Parse(store, definitions);
        const Texts before = AttributeTexts(store.Definitions());
        ASSERT_EQ(before.size(), definitions.size());
        ParseAttributeStatement(store, row.statement);
        EXPECT_EQ(AttributeTexts(store.Values()), *row.expected != '\0' ? Texts{row.expected} : Texts());
        EXPECT_EQ(AttributeTexts(store.Definitions()), before);
    }
}

TEST(AttributeValueStatement, NameIsAQuotedTextThatHasADefinition) {
    const ValueRow rows[] = {
        {"BA_ \"X\" 1;", "General Int X 0..9 int=1"},
        {"BA_,\"X\";1", "General Int X 0..9 int=1"},
        {" \t\r\nBA_\v\"X\"\f1\n", "General Int X 0..9 int=1"},
        {"BA_ a\"X\"b 1;", "General Int X 0..9 int=1"},
        {"BA_ X 1;", ""},
        {"BA_ 5 1;", ""},
        {"BA_ \"\" 1;", ""},
        {"BA_ \"x\" 1;", ""},
        {"BA_ \"Y\" 1;", ""},
        {"BA_ \"X \" 1;", ""},
        {"BA_ 1 \"X\";", ""},
        {"BA_ \"X\"1;", ""},
        {"BA_ ;", ""},
        {"ba_ \"X\" 1;", ""},
        {"\"BA_\" \"X\" 1;", ""},
    };
    ExpectValues({"BA_DEF_ \"X\" INT 0 9;"}, rows);
}

TEST(AttributeValueStatement, OfTheDatabaseHasTheValueBehindTheName) {
    const ValueRow rows[] = {
        {"BA_ \"X\" 1;", "General Int X 0..9 int=1"},
        {"BA_ \"X\" 1 junk \"more\" 7;", "General Int X 0..9 int=1"},
        {"BA_ \"X\";", ""},
        {"BA_ \"X\" junk 1;", ""},
        {"BA_ \"X\" BO_ 100 1;", ""},
        {"BA_ \"X\" SG_ 100 S 1;", ""},
        {"BA_ \"X\" BU_ Node 1;", ""},
    };
    ExpectValues({"BA_DEF_ \"X\" INT 0 9;"}, rows);
}

TEST(AttributeValueStatement, OfAMessageHasItsIdentifierInBetween) {
    const ValueRow rows[] = {
        {"BA_ \"X\" BO_ 100 1;", "Message Int X 0..9 id=100 int=1"},
        {"BA_ \"X\" BO_ 100 1 junk;", "Message Int X 0..9 id=100 int=1"},
        {"BA_ \"X\" BO_ 0 1;", "Message Int X 0..9 int=1"},
        {"BA_ \"X\" BO_ 2147483748 1;", "Message Int X 0..9 id=2147483748 int=1"},
        {"BA_ \"X\" BO_ 4294967295 1;", "Message Int X 0..9 id=4294967295 int=1"},
        {"BA_ \"X\" BO_ 012x 1;", "Message Int X 0..9 id=12 int=1"},
        // Too large for an identifier counts as 0; too large for any number is a word.
        {"BA_ \"X\" BO_ 4294967296 1;", "Message Int X 0..9 int=1"},
        {"BA_ \"X\" BO_ 9223372036854775807 1;", "Message Int X 0..9 int=1"},
        {"BA_ \"X\" BO_ 9223372036854775808 1;", ""},
        {"BA_ \"X\" BO_ -100 1;", ""},
        {"BA_ \"X\" BO_ x 1;", ""},
        {"BA_ \"X\" BO_ \"100\" 1;", ""},
        {"BA_ \"X\" BO_ 100;", ""},
        {"BA_ \"X\" BO_;", ""},
        {"BA_ \"X\";", ""},
        {"BA_ \"X\" 1;", ""},
        {"BA_ \"X\" 1 100 1;", ""},
        {"BA_ \"X\" SG_ 100 1;", ""},
        {"BA_ \"X\" SG_ 100 S 1;", ""},
        {"BA_ \"X\" bo_ 100 1;", ""},
        {"BA_ \"X\" BO 100 1;", ""},
        {"BA_ \"X\" \"BO_\" 100 1;", ""},
        {"BA_ \"X\" BO_ 100 S 1;", ""},
        {"BA_ \"X\" EV_ 100 1;", ""},
    };
    ExpectValues({"BA_DEF_ BO_ \"X\" INT 0 9;"}, rows);
}

TEST(AttributeValueStatement, OfASignalHasIdentifierAndNameInBetween) {
    const ValueRow rows[] = {
        {"BA_ \"X\" SG_ 100 Speed 1;", "Signal Int X 0..9 id=100 signal=Speed int=1"},
        {"BA_ \"X\" SG_ 100 Speed 1 2 3;", "Signal Int X 0..9 id=100 signal=Speed int=1"},
        {"BA_ \"X\" SG_ 4294967295 Speed 1;", "Signal Int X 0..9 id=4294967295 signal=Speed int=1"},
        {"BA_ \"X\" SG_ 4294967296 Speed 1;", "Signal Int X 0..9 signal=Speed int=1"},
        // Whatever is a word is a name, as written.
        {"BA_ \"X\" SG_ 100 -5 1;", "Signal Int X 0..9 id=100 signal=-5 int=1"},
        {"BA_ \"X\" SG_ 100 \"\" 1;", "Signal Int X 0..9 id=100 signal=\"\" int=1"},
        {"BA_ \"X\" SG_ 100 Sp-eed: 1;", "Signal Int X 0..9 id=100 signal=Sp-eed: int=1"},
        {"BA_ \"X\" SG_ 100 \"Speed\" 1;", ""},
        {"BA_ \"X\" SG_ 100 1st 1;", ""},
        {"BA_ \"X\" SG_ 100 7 1;", ""},
        {"BA_ \"X\" SG_ 100 Eng Speed 1;", ""},
        {"BA_ \"X\" SG_ -100 Speed 1;", ""},
        {"BA_ \"X\" SG_ \"100\" Speed 1;", ""},
        {"BA_ \"X\" SG_ Speed 1;", ""},
        {"BA_ \"X\" SG_ 100 Speed;", ""},
        {"BA_ \"X\" SG_ 100 1;", ""},
        {"BA_ \"X\" SG_ 100;", ""},
        {"BA_ \"X\" SG_;", ""},
        {"BA_ \"X\";", ""},
        {"BA_ \"X\" 1;", ""},
        {"BA_ \"X\" BO_ 100 Speed 1;", ""},
        {"BA_ \"X\" BO_ 100 1;", ""},
        {"BA_ \"X\" sg_ 100 Speed 1;", ""},
        {"BA_ \"X\" \"SG_\" 100 Speed 1;", ""},
    };
    ExpectValues({"BA_DEF_ SG_ \"X\" INT 0 9;"}, rows);
}

TEST(AttributeValueStatement, OfAnIntIsANumberWithinItsRange) {
    const ValueRow rows[] = {
        {"BA_ \"X\" BO_ 1 0;", "Message Int X -5..9 id=1"},
        {"BA_ \"X\" BO_ 1 9;", "Message Int X -5..9 id=1 int=9"},
        {"BA_ \"X\" BO_ 1 10;", ""},
        {"BA_ \"X\" BO_ 1 4294967297;", ""},
        {"BA_ \"X\" BO_ 1 7abc;", "Message Int X -5..9 id=1 int=7"},
        {"BA_ \"X\" BO_ 1 7.9;", "Message Int X -5..9 id=1 int=7"},
        // A word, although it would be in the range.
        {"BA_ \"X\" BO_ 1 -1;", ""},
        {"BA_ \"X\" BO_ 1 +1;", ""},
        {"BA_ \"X\" BO_ 1 abc;", ""},
        {"BA_ \"X\" BO_ 1 \"7\";", ""},
        {"BA_ \"X\" BO_ 1 7\"7\";", ""},
    };
    ExpectValues({"BA_DEF_ BO_ \"X\" INT -5 9;"}, rows);
}

TEST(AttributeValueStatement, OfAnEnumIsAnIndex) {
    const ValueRow rows[] = {
        {"BA_ \"X\" BO_ 100 0;", "Message Enum X {Cyclic|Event} id=100"},
        {"BA_ \"X\" BO_ 100 1;", "Message Enum X {Cyclic|Event} id=100 index=1"},
        {"BA_ \"X\" BO_ 100 1x;", "Message Enum X {Cyclic|Event} id=100 index=1"},
        {"BA_ \"X\" BO_ 100 2;", ""},
        {"BA_ \"X\" BO_ 100 -1;", ""},
        {"BA_ \"X\" BO_ 100 \"Cyclic\";", ""},
        {"BA_ \"X\" BO_ 100 Cyclic;", ""},
        {"BA_ \"X\" BO_ 100 1\"Cyclic\";", ""},
        {"BA_ \"X\" BO_ 100 \"\";", ""},
    };
    ExpectValues({"BA_DEF_ BO_ \"X\" ENUM \"Cyclic\",\"Event\";"}, rows);
}

TEST(AttributeValueStatement, OfAStringIsAQuotedTextThatIsNotEmpty) {
    const ValueRow rows[] = {
        {"BA_ \"X\" BO_ 1 \"Engine data\";", "Message String X id=1 text=[Engine data]"},
        {"BA_ \"X\" BO_ 1 \"a \t b;c,d\";", "Message String X id=1 text=[a b c d]"},
        {"BA_ \"X\" BO_ 1 \"a \";", "Message String X id=1 text=[a ]"},
        {"BA_ \"X\" BO_ 1 \"a\"b\";", "Message String X id=1 text=[a\"b]"},
        {"BA_ \"X\" BO_ 1 \"a \"b\" c\";", "Message String X id=1 text=[a \"b]"},
        {"BA_ \"X\" BO_ 1 x\"a\"y;", "Message String X id=1 text=[a]"},
        {"BA_ \"X\" BO_ 1 \"12\";", "Message String X id=1 text=[12]"},
        {"BA_ \"X\" BO_ 1 \"\xC3\xA4\";", "Message String X id=1 text=[\xC3\xA4]"},
        {"BA_ \"X\" BO_ 1 \"\";", ""},
        {"BA_ \"X\" BO_ 1 \" a\";", ""},
        {"BA_ \"X\" BO_ 1 \"a;", ""},
        {"BA_ \"X\" BO_ 1 a;", ""},
        {"BA_ \"X\" BO_ 1 12;", ""},
    };
    ExpectValues({"BA_DEF_ BO_ \"X\" STRING;"}, rows);
}

TEST(AttributeValueStatement, InheritsItsDefinitionAsItIsByThen) {
    AttributeStore store;
    Parse(store, {"BA_DEF_ BO_ \"E\" ENUM \"A\",\"B\",\"C\";", "BA_DEF_ \"I\" INT -3 9;", "BA_DEF_ SG_ \"S\" STRING;",
                  "BA_DEF_DEF_ \"E\" 2;", "BA_DEF_DEF_ \"I\" 5;", "BA_DEF_DEF_ \"S\" \"old\";", "BA_ \"E\" BO_ 7 1;",
                  "BA_ \"I\" 6;", "BA_ \"S\" SG_ 7 Speed \"new\";", "BA_DEF_DEF_ \"E\" 0;", "BA_DEF_DEF_ \"I\" 1;",
                  "BA_DEF_DEF_ \"S\" \"late\";"});
    EXPECT_EQ(AttributeTexts(store.Values()), (Texts{"Message Enum E {A|B|C} id=7 index=1", "General Int I -3..9 int=6",
                                                     "Signal String S id=7 signal=Speed text=[new]"}));
    EXPECT_EQ(AttributeTexts(store.Definitions()),
              (Texts{"Message Enum E {A|B|C}", "General Int I -3..9 int=1", "Signal String S text=[late]"}));
}

TEST(AttributeValueStatement, FirstOneOfAnObjectWins) {
    AttributeStore store;
    Parse(store, {"BA_DEF_ \"G\" INT 0 9;", "BA_DEF_ BO_ \"M\" INT 0 9;", "BA_DEF_ SG_ \"S\" STRING;", "BA_ \"G\" 1;",
                  "BA_ \"G\" 2;", "BA_ \"M\" BO_ 5 3;", "BA_ \"M\" BO_ 5 4;", "BA_ \"S\" SG_ 5 A \"one\";",
                  "BA_ \"S\" SG_ 5 A \"two\";"});
    EXPECT_EQ(AttributeTexts(store.Values()), (Texts{"General Int G 0..9 int=1", "Message Int M 0..9 id=5 int=3",
                                                     "Signal String S id=5 signal=A text=[one]"}));
}

// One that was refused does not keep the next one out.
TEST(AttributeValueStatement, FirstAcceptedOneOfAnObjectWins) {
    AttributeStore store;
    Parse(store, {"BA_DEF_ BO_ \"M\" INT 0 9;", "BA_ \"M\" BO_ 5 10;", "BA_ \"M\" BO_ 5 -1;", "BA_ \"M\" BO_ 5 4;"});
    EXPECT_EQ(AttributeTexts(store.Values()), Texts{"Message Int M 0..9 id=5 int=4"});
}

TEST(AttributeValueStatement, EachObjectHasItsOwn) {
    AttributeStore store;
    Parse(store,
          {"BA_DEF_ BO_ \"M\" INT 0 9;", "BA_DEF_ SG_ \"S\" INT 0 9;", "BA_ \"S\" SG_ 5 B 1;", "BA_ \"M\" BO_ 6 2;",
           "BA_ \"S\" SG_ 5 A 3;", "BA_ \"M\" BO_ 5 4;", "BA_ \"S\" SG_ 6 A 5;", "BA_ \"S\" SG_ 5 a 6;"});
    EXPECT_EQ(AttributeTexts(store.Values()),
              (Texts{"Signal Int S 0..9 id=5 signal=B int=1", "Message Int M 0..9 id=6 int=2",
                     "Signal Int S 0..9 id=5 signal=A int=3", "Message Int M 0..9 id=5 int=4",
                     "Signal Int S 0..9 id=6 signal=A int=5", "Signal Int S 0..9 id=5 signal=a int=6"}));
}

// All identifiers that are too large are the identifier 0.
TEST(AttributeValueStatement, TooLargeIdentifiersAreOneObject) {
    AttributeStore store;
    Parse(store, {"BA_DEF_ BO_ \"M\" INT 0 9;", "BA_ \"M\" BO_ 4294967296 1;", "BA_ \"M\" BO_ 0 2;",
                  "BA_ \"M\" BO_ 5000000000 3;"});
    EXPECT_EQ(AttributeTexts(store.Values()), Texts{"Message Int M 0..9 int=1"});
}

TEST(AttributeValueStatement, InFrontOfTheDefinitionIsDropped) {
    AttributeStore store;
    Parse(store, {"BA_ \"M\" BO_ 5 1;", "BA_DEF_ BO_ \"M\" INT 0 9;"});
    EXPECT_TRUE(store.Values().empty());
}

// A name with several definitions: which of them a statement is held against. The definitions stand in the file in the
// opposite of the order in which they are tried.
TEST(AttributeValueStatement, BindsToTheFirstDefinitionInASetOrder) {
    const struct {
        std::vector<const char*> definitions;
        const char* statement;
        const char* expected;
    } rows[] = {
        // The database before messages before signals, whatever the value types.
        {{"BA_DEF_ BO_ \"X\" INT 0 9;", "BA_DEF_ \"X\" INT 0 5;"}, "BA_ \"X\" 4;", "General Int X 0..5 int=4"},
        {{"BA_DEF_ BO_ \"X\" INT 0 9;", "BA_DEF_ \"X\" INT 0 5;"}, "BA_ \"X\" BO_ 1 4;", ""},
        {{"BA_DEF_ BO_ \"X\" INT 0 9;", "BA_DEF_ \"X\" ENUM \"A\",\"B\";"}, "BA_ \"X\" BO_ 1 1;", ""},
        {{"BA_DEF_ BO_ \"X\" INT 0 9;", "BA_DEF_ \"X\" ENUM \"A\",\"B\";"},
         "BA_ \"X\" 1;",
         "General Enum X {A|B} index=1"},
        {{"BA_DEF_ BO_ \"X\" INT 0 9;", "BA_DEF_ \"X\" STRING;"}, "BA_ \"X\" BO_ 1 1;", ""},
        {{"BA_DEF_ BO_ \"X\" INT 0 9;", "BA_DEF_ \"X\" STRING;"}, "BA_ \"X\" \"a\";", "General String X text=[a]"},
        {{"BA_DEF_ SG_ \"X\" INT 0 9;", "BA_DEF_ \"X\" ENUM \"A\";"}, "BA_ \"X\" SG_ 1 S 1;", ""},
        {{"BA_DEF_ SG_ \"X\" INT 0 9;", "BA_DEF_ \"X\" ENUM \"A\";"}, "BA_ \"X\" 0;", "General Enum X {A}"},
        {{"BA_DEF_ SG_ \"X\" INT 0 9;", "BA_DEF_ BO_ \"X\" ENUM \"A\";"}, "BA_ \"X\" SG_ 1 S 1;", ""},
        {{"BA_DEF_ SG_ \"X\" INT 0 9;", "BA_DEF_ BO_ \"X\" ENUM \"A\";"},
         "BA_ \"X\" BO_ 1 0;",
         "Message Enum X {A} id=1"},
        // For one object, numbers before texts before lists.
        {{"BA_DEF_ \"X\" STRING;", "BA_DEF_ \"X\" INT 0 9;"}, "BA_ \"X\" \"a\";", ""},
        {{"BA_DEF_ \"X\" STRING;", "BA_DEF_ \"X\" INT 0 9;"}, "BA_ \"X\" 1;", "General Int X 0..9 int=1"},
        {{"BA_DEF_ \"X\" ENUM \"A\",\"B\";", "BA_DEF_ \"X\" STRING;"}, "BA_ \"X\" 1;", ""},
        {{"BA_DEF_ \"X\" ENUM \"A\",\"B\";", "BA_DEF_ \"X\" STRING;"}, "BA_ \"X\" \"a\";", "General String X text=[a]"},
        {{"BA_DEF_ \"X\" ENUM \"A\",\"B\";", "BA_DEF_ \"X\" INT 0 9;"}, "BA_ \"X\" 1;", "General Int X 0..9 int=1"},
        {{"BA_DEF_ BO_ \"X\" STRING;", "BA_DEF_ BO_ \"X\" INT 0 9;"}, "BA_ \"X\" BO_ 1 \"a\";", ""},
        {{"BA_DEF_ BO_ \"X\" ENUM \"A\",\"B\";", "BA_DEF_ BO_ \"X\" STRING;"}, "BA_ \"X\" BO_ 1 1;", ""},
        {{"BA_DEF_ BO_ \"X\" ENUM \"A\",\"B\";", "BA_DEF_ BO_ \"X\" INT 0 9;"},
         "BA_ \"X\" BO_ 1 1;",
         "Message Int X 0..9 id=1 int=1"},
        {{"BA_DEF_ SG_ \"X\" STRING;", "BA_DEF_ SG_ \"X\" INT 0 9;"}, "BA_ \"X\" SG_ 1 S \"a\";", ""},
        {{"BA_DEF_ SG_ \"X\" ENUM \"A\",\"B\";", "BA_DEF_ SG_ \"X\" STRING;"}, "BA_ \"X\" SG_ 1 S 1;", ""},
        {{"BA_DEF_ SG_ \"X\" ENUM \"A\",\"B\";", "BA_DEF_ SG_ \"X\" INT 0 9;"},
         "BA_ \"X\" SG_ 1 S 1;",
         "Signal Int X 0..9 id=1 signal=S int=1"},
        // A value that the first one refuses is not offered to the second.
        {{"BA_DEF_ \"X\" ENUM \"A\",\"B\";", "BA_DEF_ \"X\" INT 5 9;"}, "BA_ \"X\" 1;", ""},
        // Definitions of other names do not matter.
        {{"BA_DEF_ BO_ \"X\" INT 0 9;", "BA_DEF_ \"Y\" INT 0 9;"},
         "BA_ \"X\" BO_ 1 1;",
         "Message Int X 0..9 id=1 int=1"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << testing::PrintToString(row.definitions) << " " << row.statement);
        AttributeStore store;
        Parse(store, row.definitions);
        ASSERT_EQ(store.Definitions().size(), 2U);
        ParseAttributeStatement(store, row.statement);
        EXPECT_EQ(AttributeTexts(store.Values()), *row.expected != '\0' ? Texts{row.expected} : Texts());
    }
}

}  // namespace
}  // namespace tabrin
