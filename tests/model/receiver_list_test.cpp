#include "model/receiver_list.h"

#include <gtest/gtest.h>
#include <utf8.h>

#include <string>
#include <string_view>
#include <vector>

#include "shown.h"

namespace tabrin {
namespace {

using Names = std::vector<std::string>;

Names NamesOf(const ReceiverList& list) {
    Names names;
    list.ForEach([&names](std::string_view name) { names.emplace_back(name); });
    return names;
}

struct Assigned {
    std::string text;
    Names names;
    std::string joined;
};

TEST(ReceiverList, TextIsSplitIntoIdentifiers) {
    const std::string kNode32 = "Node_efghijklmnopqrstuvwxyz01234";
    const Assigned kRows[] = {
        {"", {}, ""},
        {" \t\n\v\f\r", {}, ""},
        {"A", {"A"}, "A"},
        {" A\n", {"A"}, "A"},
        {"A,B", {"A", "B"}, "A,B"},
        {"ECU1, ECU2", {"ECU1", "ECU2"}, "ECU1,ECU2"},
        {"ECU1 ECU2", {"ECU1_ECU2"}, "ECU1_ECU2"},
        {" A\t,\nB \r\n", {"A", "B"}, "A,B"},
        {"B,A,B", {"B", "A", "B"}, "B,A,B"},  // kept in order, and twice

        // Empty pieces are left out, wherever they are.
        {",", {}, ""},
        {",,,", {}, ""},
        {", ,\t,", {}, ""},
        {",A", {"A"}, "A"},
        {",,A", {"A"}, "A"},
        {"A,", {"A"}, "A"},
        {"A,,", {"A"}, "A"},
        {"A,,B", {"A", "B"}, "A,B"},
        {"A, ,B", {"A", "B"}, "A,B"},
        {"A,B, ", {"A", "B"}, "A,B"},

        // Each becomes an identifier.
        {"A;", {"A_"}, "A_"},
        {"A,B;", {"A", "B_"}, "A,B_"},
        {";", {"_"}, "_"},
        {"1A,23", {"_A", "_3"}, "_A,_3"},
        {"a-b.c", {"a_b_c"}, "a_b_c"},
        {"T\xC3\xBCr,\xE2\x82\xAC", {"T_r", "_"}, "T_r,_"},
        {"a\tb", {"a_b"}, "a_b"},
        {kNode32, {kNode32}, kNode32},
        {kNode32 + "5," + kNode32 + "67", {kNode32, kNode32}, kNode32 + "," + kNode32},
        // A character beyond ASCII counts as one when a name is cut.
        {"\xC3\xA4"
         "bcdefghijklmnopqrstuvwxyz_0123456",
         {"_bcdefghijklmnopqrstuvwxyz_01234"},
         "_bcdefghijklmnopqrstuvwxyz_01234"},
    };
    for (const Assigned& row : kRows) {
        SCOPED_TRACE(Shown(row.text));
        Arena arena;
        ReceiverList list;
        list.Assign(arena, "Old,Older");
        list.Assign(arena, row.text);
        EXPECT_EQ(NamesOf(list), row.names);
        EXPECT_EQ(list.Joined(), row.joined);
        EXPECT_EQ(list.IsEmpty(), row.names.empty());
    }
}

TEST(ReceiverList, NewListIsEmpty) {
    const ReceiverList list;
    EXPECT_TRUE(list.IsEmpty());
    EXPECT_EQ(list.Joined(), "");
    EXPECT_EQ(NamesOf(list), Names());
}

TEST(ReceiverList, ClearLeavesNothing) {
    Arena arena;
    ReceiverList list;
    list.Assign(arena, "A,B");
    list.Clear();
    EXPECT_TRUE(list.IsEmpty());
    EXPECT_EQ(NamesOf(list), Names());
}

TEST(ReceiverList, BrokenUtf8IsThrown) {
    for (const std::string_view text : {"\xFF", "A,B\xC3", "A,\xC3,B", "\xED\xA0\x80"}) {
        SCOPED_TRACE(Shown(text));
        Arena arena;
        ReceiverList list;
        EXPECT_THROW(list.Assign(arena, text), utf8::exception);
    }
}

}  // namespace
}  // namespace tabrin
