// How the names of signals are told apart when a database is written, and what that does to the database.
#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "dbc/dbc_writer.h"
#include "dbc/writing.h"

namespace tabrin {
namespace {

using Names = std::vector<std::string>;

Names IdentifierNames(const CANMessage& message) {
    Names names;
    for (const auto& signal : message.signals) {
        names.emplace_back(signal->identifierName);
    }
    return names;
}

// 27 characters: the most that leave room for a suffix.
#define P27 "Abcdefghijklmnopqrstuvwxyz_"

struct UniqueNamesCase {
    const char* what;
    Names names;
    Names first;   // after writing once
    Names second;  // after writing again
};

const UniqueNamesCase kUniqueNamesCases[] = {
    {"no signals", {}, {}, {}},
    {"one signal", {"S"}, {"S"}, {"S"}},
    {"distinct", {"A", "B", "AB"}, {"A", "B", "AB"}, {"A", "B", "AB"}},
    {"case counts", {"speed", "Speed"}, {"speed", "Speed"}, {"speed", "Speed"}},
    {"three and another",
     {"Speed", "Speed", "Other", "Speed"},
     {"Speed_0000", "Speed_0001", "Other", "Speed_0002"},
     {"Speed_0000", "Speed_0001", "Other", "Speed_0002"}},
    {"two groups, interleaved",
     {"A", "B", "A", "B", "A"},
     {"A_0000", "B_0000", "A_0001", "B_0001", "A_0002"},
     {"A_0000", "B_0000", "A_0001", "B_0001", "A_0002"}},
    {"equal by identifier form only",
     {"My Sig", "My_Sig", "My-Sig"},
     {"My_Sig_0000", "My_Sig_0001", "My_Sig_0002"},
     {"My_Sig_0000", "My_Sig_0001", "My_Sig_0002"}},
    {"without a name", {"", ""}, {"_0000", "_0001"}, {"_0000", "_0001"}},
    // What looks like a suffix is none, and so the name given by the caller stands twice in the end.
    {"a name that looks suffixed",
     {"Speed", "Speed_0000", "Speed"},
     {"Speed_0000", "Speed_0000", "Speed_0001"},
     {"Speed_0000", "Speed_0000", "Speed_0001"}},
    {"room for the suffix", {P27, P27}, {P27 "_0000", P27 "_0001"}, {P27 "_0000", P27 "_0001"}},
    {"one character too long", {P27 "8", P27 "8"}, {P27 "_0000", P27 "_0001"}, {P27 "_0000", P27 "_0001"}},
    {"31 characters",
     {"A_name_of_thirty_one_characters", "A_name_of_thirty_one_characters"},
     {"A_name_of_thirty_one_charac_0000", "A_name_of_thirty_one_charac_0001"},
     {"A_name_of_thirty_one_charac_0000", "A_name_of_thirty_one_charac_0001"}},
    {"40 characters, equal in their first 32",
     {P27 "89012xxxxxxxx", P27 "89012yyyyyyyy"},
     {P27 "_0000", P27 "_0001"},
     {P27 "_0000", P27 "_0001"}},
    // The third was told apart from the first and lost its 28th character. Without its suffix it equals the second now,
    // and is numbered again. The first stays behind with a name that the second gets as well; writing again finds all
    // three alike.
    {"handled for an earlier name, equal to a later one",
     {P27 "8", P27, P27 "8"},
     {P27 "_0000", P27 "_0000", P27 "_0001"},
     {P27 "_0000", P27 "_0001", P27 "_0002"}},
    // The fourth is numbered 1 for the first, and then 2 for the second, behind the third.
    {"handled for an earlier name, behind another",
     {P27 "8", P27, P27, P27 "8"},
     {P27 "_0000", P27 "_0000", P27 "_0001", P27 "_0002"},
     {P27 "_0000", P27 "_0001", P27 "_0002", P27 "_0003"}},
    // In this order the first is compared while the others still have their 28th character.
    {"the shorter name first",
     {P27, P27 "8", P27 "8"},
     {P27, P27 "_0000", P27 "_0001"},
     {P27 "_0000", P27 "_0001", P27 "_0002"}},
    // Two pairs that the cut makes one: they are numbered each by itself, and all together only by writing again.
    {"two pairs alike in 27 characters",
     {P27 "A", P27 "A", P27 "B", P27 "B"},
     {P27 "_0000", P27 "_0001", P27 "_0000", P27 "_0001"},
     {P27 "_0000", P27 "_0001", P27 "_0002", P27 "_0003"}},
    {"alike in 27 characters, but distinct", {P27 "A", P27 "B", P27}, {P27 "A", P27 "B", P27}, {P27 "A", P27 "B", P27}},
    // A name as given may be what another one has become: no suffix was applied to it, so it is compared as it stands.
    {"a given name of 32 characters that looks suffixed",
     {P27 "8", P27 "8", P27 "_0001"},
     {P27 "_0000", P27 "_0001", P27 "_0001"},
     {P27 "_0000", P27 "_0001", P27 "_0001"}},
};

TEST(UniqueNames, ArePreparedAgainByWritingAgain) {
    for (const UniqueNamesCase& row : kUniqueNamesCases) {
        SCOPED_TRACE(row.what);
        CANDatabase database;
        CANMessage& message = AddMessage(database);
        for (const std::string& name : row.names) {
            AddNamedSignal(message, name);
        }
        const std::string first = WrittenBytes(database);
        EXPECT_EQ(IdentifierNames(message), row.first);
        const std::string second = WrittenBytes(database);
        EXPECT_EQ(IdentifierNames(message), row.second);
        EXPECT_EQ(second == first, row.second == row.first);
        // From then on nothing changes any more.
        EXPECT_EQ(WrittenBytes(database), second);
        EXPECT_EQ(IdentifierNames(message), row.second);
    }
}

TEST(UniqueNames, LongNamesStay) {
    CANDatabase database;
    CANMessage& message = AddMessage(database);
    AddNamedSignal(message, "Speed");
    AddNamedSignal(message, "Speed");
    WrittenBytes(database);
    for (const auto& signal : message.signals) {
        EXPECT_EQ(signal->name, "Speed");
        EXPECT_EQ(signal->nameAsRead, "Speed");
    }
}

TEST(UniqueNames, SignalAppendedAfterWritingIsNumberedOn) {
    CANDatabase database;
    CANMessage& message = AddMessage(database);
    AddNamedSignal(message, "Speed");
    AddNamedSignal(message, "Speed");
    WrittenBytes(database);
    AddNamedSignal(message, "Speed");
    WrittenBytes(database);
    EXPECT_EQ(IdentifierNames(message), (Names{"Speed_0000", "Speed_0001", "Speed_0002"}));
}

TEST(UniqueNames, MessagesDoNotMatterToEachOther) {
    CANDatabase database;
    CANMessage& first = AddMessage(database);
    AddNamedSignal(first, "Speed");
    CANMessage& second = AddMessage(database);
    AddNamedSignal(second, "Speed");
    AddNamedSignal(second, "Speed");
    WrittenBytes(database);
    EXPECT_EQ(IdentifierNames(first), (Names{"Speed"}));
    EXPECT_EQ(IdentifierNames(second), (Names{"Speed_0000", "Speed_0001"}));
}

TEST(UniqueNames, EveryStatementCarriesTheSuffix) {
    CANDatabase database;
    CANMessage& message = AddMessage(database);
    AddSignal(message, {.name = "S", .comment = "first"}).valueDescriptions.Add(0, "Off");
    AddSignal(message, {.name = "S", .comment = "second", .length = 32, .valueType = TABRIN_VALUE_FLOAT});
    EXPECT_EQ(WrittenBody(database),
              "BU_ :  Kestrune\r\n"
              "\r\n"
              "BO_ 1 Msg: 8 Kestrune\r\n"
              " SG_ S_0000 : 0|8@1+ (1,0) [0|255] \"\" Kestrune\r\n"
              " SG_ S_0001 : 0|32@1- (1,0) [0|255] \"\" Kestrune\r\n"
              "\r\n"
              "CM_ SG_ 1 S_0000 \"first\";\r\n"
              "CM_ SG_ 1 S_0001 \"second\";\r\n"
              "BA_DEF_ SG_ \"Kestrune_Sig_Name\" STRING ;\r\n"
              "BA_DEF_DEF_ \"Kestrune_Sig_Name\" \"\";\r\n"
              "BA_ \"Kestrune_Sig_Name\" SG_ 1 S_0000 \"S\";\r\n"
              "BA_ \"Kestrune_Sig_Name\" SG_ 1 S_0001 \"S\";\r\n"
              "VAL_ 1 S_0000 0 \"Off\";\r\n"
              "SIG_VALTYPE_ 1 S_0001 : 1;\r\n");
}

#undef P27

}  // namespace
}  // namespace tabrin
