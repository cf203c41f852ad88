#include "model/object_name.h"

#include <gtest/gtest.h>
#include <utf8.h>

#include <string>
#include <string_view>
#include <vector>

#include "shown.h"

namespace tabrin {
namespace {

const std::string kName32 = "Abcdefghijklmnopqrstuvwxyz_01234";

struct Names {
    std::string given;
    std::string name;
    std::string identifierName;
};

const std::vector<Names>& GivenNames() {
    static const std::vector<Names> rows = {
        {"", "", ""},
        {"Speed", "Speed", "Speed"},
        {"_", "_", "_"},
        {"x9", "x9", "x9"},
        {"Engine Data", "Engine Data", "Engine_Data"},
        {"1 Engine-Temp", "1 Engine-Temp", "__Engine_Temp"},
        {"9", "9", "_"},
        {" A", " A", "_A"},  // nothing is trimmed
        {"A ", "A ", "A_"},
        {"\t\n\v\f\r", "     ", "_____"},
        {"a\tb\nc\vd\fe\rf", "a b c d e f", "a_b_c_d_e_f"},
        {"a\x01"
         "b\x7F",
         "a\x01"
         "b\x7F",
         "a_b_"},  // control characters that are no blanks stay in the name
        {"Gr\xC3\xB6\xC3\x9F"
         "e \xF0\x9F\x9A\x97",
         "Gr\xC3\xB6\xC3\x9F"
         "e \xF0\x9F\x9A\x97",
         "Gr__e__"},
        {kName32, kName32, kName32},
        {kName32 + "5", kName32 + "5", kName32},
        {"1" + kName32, "1" + kName32, "_Abcdefghijklmnopqrstuvwxyz_0123"},
    };
    return rows;
}

TEST(ObjectName, NameIsKept) {
    for (const Names& row : GivenNames()) {
        SCOPED_TRACE(Shown(row.given));
        Arena arena;
        std::string_view name = "old";
        std::string_view identifierName = "old";
        SetName(arena, row.given, name, identifierName);
        EXPECT_EQ(name, row.name);
    }
}

TEST(ObjectName, IdentifierFormIsMadeOfTheName) {
    for (const Names& row : GivenNames()) {
        SCOPED_TRACE(Shown(row.given));
        Arena arena;
        std::string_view name = "old";
        std::string_view identifierName = "old";
        SetName(arena, row.given, name, identifierName);
        EXPECT_EQ(identifierName, row.identifierName);
    }
}

TEST(ObjectName, BrokenUtf8IsThrown) {
    for (const std::string given : {"\xFF", "a\xC3", "\xC0\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80"}) {
        SCOPED_TRACE(Shown(given));
        Arena arena;
        std::string_view name;
        std::string_view identifierName;
        EXPECT_THROW(SetName(arena, given, name, identifierName), utf8::exception);
    }
}

TEST(ObjectName, TabsAndLineBreaksOfATextBecomeSpaces) {
    Arena arena;
    const std::string given = " New\tName\n\v\f\r";
    EXPECT_EQ(KeepNormalised(arena, given), " New Name    ");
    EXPECT_EQ(KeepNormalised(arena, ""), "");
}

}  // namespace
}  // namespace tabrin
