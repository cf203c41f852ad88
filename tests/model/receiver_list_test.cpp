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

// Texts of at most 32 characters are looked at in a way of their own.
TEST(ReceiverList, TextsAroundThirtyTwoCharacters) {
    const Assigned kRows[] = {
        // 30, 31, 32, 33 and 34 characters of two pieces.
        {"Abcdefghijklmn,Opqrstuvwxyz_01", {"Abcdefghijklmn", "Opqrstuvwxyz_01"}, "Abcdefghijklmn,Opqrstuvwxyz_01"},
        {"Abcdefghijklmn,Opqrstuvwxyz_012", {"Abcdefghijklmn", "Opqrstuvwxyz_012"}, "Abcdefghijklmn,Opqrstuvwxyz_012"},
        {"Abcdefghijklmn,Opqrstuvwxyz_0123",
         {"Abcdefghijklmn", "Opqrstuvwxyz_0123"},
         "Abcdefghijklmn,Opqrstuvwxyz_0123"},
        {"Abcdefghijklmn,Opqrstuvwxyz_01234",
         {"Abcdefghijklmn", "Opqrstuvwxyz_01234"},
         "Abcdefghijklmn,Opqrstuvwxyz_01234"},
        {"Abcdefghijklmn,Opqrstuvwxyz_012345",
         {"Abcdefghijklmn", "Opqrstuvwxyz_012345"},
         "Abcdefghijklmn,Opqrstuvwxyz_012345"},
        // Of one piece, which has at most 32 itself.
        {"Abcdefghijklmnopqrstuvwxyz_0123", {"Abcdefghijklmnopqrstuvwxyz_0123"}, "Abcdefghijklmnopqrstuvwxyz_0123"},
        {"Abcdefghijklmnopqrstuvwxyz_01234", {"Abcdefghijklmnopqrstuvwxyz_01234"}, "Abcdefghijklmnopqrstuvwxyz_01234"},
        {"Abcdefghijklmnopqrstuvwxyz_012345", {"Abcdefghijklmnopqrstuvwxyz_01234"}, "Abcdefghijklmnopqrstuvwxyz_01234"},
        // Many of one character: 31, 33 and 35.
        {"a,b,c,d,e,f,g,h,i,j,k,l,m,n,o,p",
         {"a", "b", "c", "d", "e", "f", "g", "h", "i", "j", "k", "l", "m", "n", "o", "p"},
         "a,b,c,d,e,f,g,h,i,j,k,l,m,n,o,p"},
        {"a,b,c,d,e,f,g,h,i,j,k,l,m,n,o,p,q",
         {"a", "b", "c", "d", "e", "f", "g", "h", "i", "j", "k", "l", "m", "n", "o", "p", "q"},
         "a,b,c,d,e,f,g,h,i,j,k,l,m,n,o,p,q"},

        // An empty piece in texts of 31, 32 and 33: first, in the middle, last.
        {",bcdefghijklmnopqrstuvwxyz_0123", {"bcdefghijklmnopqrstuvwxyz_0123"}, "bcdefghijklmnopqrstuvwxyz_0123"},
        {",bcdefghijklmnopqrstuvwxyz_01234", {"bcdefghijklmnopqrstuvwxyz_01234"}, "bcdefghijklmnopqrstuvwxyz_01234"},
        {",bcdefghijklmnopqrstuvwxyz_012345", {"bcdefghijklmnopqrstuvwxyz_012345"}, "bcdefghijklmnopqrstuvwxyz_012345"},
        {"Abcdefghijklmn,,pqrstuvwxyz_012", {"Abcdefghijklmn", "pqrstuvwxyz_012"}, "Abcdefghijklmn,pqrstuvwxyz_012"},
        {"Abcdefghijklmn,,pqrstuvwxyz_0123", {"Abcdefghijklmn", "pqrstuvwxyz_0123"}, "Abcdefghijklmn,pqrstuvwxyz_0123"},
        {"Abcdefghijklmn,,pqrstuvwxyz_01234",
         {"Abcdefghijklmn", "pqrstuvwxyz_01234"},
         "Abcdefghijklmn,pqrstuvwxyz_01234"},
        {"Abcdefghijklmnopqrstuvwxyz_012,", {"Abcdefghijklmnopqrstuvwxyz_012"}, "Abcdefghijklmnopqrstuvwxyz_012"},
        {"Abcdefghijklmnopqrstuvwxyz_0123,", {"Abcdefghijklmnopqrstuvwxyz_0123"}, "Abcdefghijklmnopqrstuvwxyz_0123"},
        {"Abcdefghijklmnopqrstuvwxyz_01234,", {"Abcdefghijklmnopqrstuvwxyz_01234"}, "Abcdefghijklmnopqrstuvwxyz_01234"},

        // A digit in front of a piece: at the beginning, in the middle, at the end.
        {"0bcdefghijklmnopqrstuvwxyz_01234", {"_bcdefghijklmnopqrstuvwxyz_01234"}, "_bcdefghijklmnopqrstuvwxyz_01234"},
        {"9,Abcdefghijklmnopqrstuvwxyz_012",
         {"_", "Abcdefghijklmnopqrstuvwxyz_012"},
         "_,Abcdefghijklmnopqrstuvwxyz_012"},
        {"Abcdefghijklmn,7pqrstuvwxyz_0123",
         {"Abcdefghijklmn", "_pqrstuvwxyz_0123"},
         "Abcdefghijklmn,_pqrstuvwxyz_0123"},
        {"Abcdefghijklmnopqrstuvwxyz_012,4",
         {"Abcdefghijklmnopqrstuvwxyz_012", "_"},
         "Abcdefghijklmnopqrstuvwxyz_012,_"},
        {"A,5", {"A", "_"}, "A,_"},
        {"A,5b,c", {"A", "_b", "c"}, "A,_b,c"},
        {"A5,b6,c7", {"A5", "b6", "c7"}, "A5,b6,c7"},
        {"_5,_", {"_5", "_"}, "_5,_"},

        // A blank inside, where it is one of the 32 characters.
        {"Abcdefghijklmn,Opqrstuv xyz_0123",
         {"Abcdefghijklmn", "Opqrstuv_xyz_0123"},
         "Abcdefghijklmn,Opqrstuv_xyz_0123"},
        {"Abcdefghijklmn, pqrstuvwxyz_0123", {"Abcdefghijklmn", "pqrstuvwxyz_0123"}, "Abcdefghijklmn,pqrstuvwxyz_0123"},
        {"Abcdefghijklm ,Opqrstuvwxyz_0123", {"Abcdefghijklm", "Opqrstuvwxyz_0123"}, "Abcdefghijklm,Opqrstuvwxyz_0123"},
        {"  Abcdefghijklmn,Opqrstuvwxyz_01  ", {"Abcdefghijklmn", "Opqrstuvwxyz_01"}, "Abcdefghijklmn,Opqrstuvwxyz_01"},
        {"Abcdefghijklmnopqrstuvwxyz_01\t34", {"Abcdefghijklmnopqrstuvwxyz_01_34"}, "Abcdefghijklmnopqrstuvwxyz_01_34"},
        // What else no identifier has, at the ends of it.
        {"Abcdefghijklmn,Opqrstuvwxyz_012;",
         {"Abcdefghijklmn", "Opqrstuvwxyz_012_"},
         "Abcdefghijklmn,Opqrstuvwxyz_012_"},
        {";bcdefghijklmn,Opqrstuvwxyz_0123",
         {"_bcdefghijklmn", "Opqrstuvwxyz_0123"},
         "_bcdefghijklmn,Opqrstuvwxyz_0123"},
        {"Abcdefghijklmn,\xC3\xA4qrstuvwxyz_0123",
         {"Abcdefghijklmn", "_qrstuvwxyz_0123"},
         "Abcdefghijklmn,_qrstuvwxyz_0123"},
    };
    for (const Assigned& row : kRows) {
        SCOPED_TRACE(Shown(row.text) + " of " + std::to_string(row.text.size()));
        Arena arena;
        ReceiverList list;
        list.Assign(arena, row.text);
        EXPECT_EQ(NamesOf(list), row.names);
        EXPECT_EQ(list.Joined(), row.joined);
    }
}

// The rule for ASCII texts: pieces between commas, without the blanks around them, with "_" for what an identifier
// cannot have.
std::string JoinedPlainly(const std::string& text) {
    std::string joined;
    std::string piece;
    const auto finish = [&] {
        const size_t first = piece.find_first_not_of(" \t");
        if (first != std::string::npos) {
            std::string name = piece.substr(first, piece.find_last_not_of(" \t") - first + 1).substr(0, 32);
            for (size_t i = 0; i < name.size(); ++i) {
                const char c = name[i];
                const bool isLetter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
                name[i] = isLetter || (i != 0 && c >= '0' && c <= '9') ? c : '_';
            }
            joined += (joined.empty() ? "" : ",") + name;
        }
        piece.clear();
    };
    for (const char c : text) {
        if (c == ',') {
            finish();
        } else {
            piece += c;
        }
    }
    finish();
    return joined;
}

// With one character of any kind at any place of a list of any length.
TEST(ReceiverList, EveryCharacterInEveryPlace) {
    for (const std::string_view front :
         {"Abcdefghijklmnopqrstuvwxyz_0123456789", "ab,cd,ef,gh,ij,kl,mn,op,qr,st,uv,wx,yz"}) {
        for (size_t size = 1; size <= 35; ++size) {
            for (size_t place = 0; place < size; ++place) {
                for (int byte = 0x20; byte < 0x7F; ++byte) {
                    std::string text(front.substr(0, size));
                    text[place] = static_cast<char>(byte);
                    Arena arena;
                    ReceiverList list;
                    list.Assign(arena, text);
                    ASSERT_EQ(list.Joined(), JoinedPlainly(text)) << Shown(text);
                }
            }
        }
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
