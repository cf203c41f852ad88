// How the names of signals are told apart when a database is written, and what that does to the database.
#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "dbc/dbc_writer.h"
#include "dbc/writing.h"
#include "model/own_arena.h"

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
    bool any;
    Names first;   // after writing once
    Names second;  // after writing again
};

const UniqueNamesCase kUniqueNamesCases[] = {
    {"no signals", {}, false, {}, {}},
    {"one signal", {"S"}, false, {"S"}, {"S"}},
    {"distinct", {"A", "B", "AB"}, false, {"A", "B", "AB"}, {"A", "B", "AB"}},
    {"case counts", {"speed", "Speed"}, false, {"speed", "Speed"}, {"speed", "Speed"}},
    {"three and another",
     {"Speed", "Speed", "Other", "Speed"},
     true,
     {"Speed_0000", "Speed_0001", "Other", "Speed_0002"},
     {"Speed_0000", "Speed_0001", "Other", "Speed_0002"}},
    {"two groups, interleaved",
     {"A", "B", "A", "B", "A"},
     true,
     {"A_0000", "B_0000", "A_0001", "B_0001", "A_0002"},
     {"A_0000", "B_0000", "A_0001", "B_0001", "A_0002"}},
    {"equal by identifier form only",
     {"My Sig", "My_Sig", "My-Sig"},
     true,
     {"My_Sig_0000", "My_Sig_0001", "My_Sig_0002"},
     {"My_Sig_0000", "My_Sig_0001", "My_Sig_0002"}},
    {"without a name", {"", ""}, true, {"_0000", "_0001"}, {"_0000", "_0001"}},
    // What looks like a suffix is none, and so the name given by the caller stands twice in the end.
    {"a name that looks suffixed",
     {"Speed", "Speed_0000", "Speed"},
     true,
     {"Speed_0000", "Speed_0000", "Speed_0001"},
     {"Speed_0000", "Speed_0000", "Speed_0001"}},
    {"room for the suffix", {P27, P27}, true, {P27 "_0000", P27 "_0001"}, {P27 "_0000", P27 "_0001"}},
    {"one character too long", {P27 "8", P27 "8"}, true, {P27 "_0000", P27 "_0001"}, {P27 "_0000", P27 "_0001"}},
    {"31 characters",
     {"A_name_of_thirty_one_characters", "A_name_of_thirty_one_characters"},
     true,
     {"A_name_of_thirty_one_charac_0000", "A_name_of_thirty_one_charac_0001"},
     {"A_name_of_thirty_one_charac_0000", "A_name_of_thirty_one_charac_0001"}},
    {"40 characters, equal in their first 32",
     {P27 "89012xxxxxxxx", P27 "89012yyyyyyyy"},
     true,
     {P27 "_0000", P27 "_0001"},
     {P27 "_0000", P27 "_0001"}},
    // The third was told apart from the first and lost its 28th character. Without its suffix it equals the second now,
    // and is numbered again. The first stays behind with a name that the second gets as well; writing again finds all
    // three alike.
    {"handled for an earlier name, equal to a later one",
     {P27 "8", P27, P27 "8"},
     true,
     {P27 "_0000", P27 "_0000", P27 "_0001"},
     {P27 "_0000", P27 "_0001", P27 "_0002"}},
    // The fourth is numbered 1 for the first, and then 2 for the second, behind the third.
    {"handled for an earlier name, behind another",
     {P27 "8", P27, P27, P27 "8"},
     true,
     {P27 "_0000", P27 "_0000", P27 "_0001", P27 "_0002"},
     {P27 "_0000", P27 "_0001", P27 "_0002", P27 "_0003"}},
    // In this order the first is compared while the others still have their 28th character.
    {"the shorter name first",
     {P27, P27 "8", P27 "8"},
     true,
     {P27, P27 "_0000", P27 "_0001"},
     {P27 "_0000", P27 "_0001", P27 "_0002"}},
    // Two pairs that the cut makes one: they are numbered each by itself, and all together only by writing again.
    {"two pairs alike in 27 characters",
     {P27 "A", P27 "A", P27 "B", P27 "B"},
     true,
     {P27 "_0000", P27 "_0001", P27 "_0000", P27 "_0001"},
     {P27 "_0000", P27 "_0001", P27 "_0002", P27 "_0003"}},
    {"alike in 27 characters, but distinct",
     {P27 "A", P27 "B", P27},
     false,
     {P27 "A", P27 "B", P27},
     {P27 "A", P27 "B", P27}},
    // A name as given may be what another one has become: no suffix was applied to it, so it is compared as it stands.
    {"a given name of 32 characters that looks suffixed",
     {P27 "8", P27 "8", P27 "_0001"},
     true,
     {P27 "_0000", P27 "_0001", P27 "_0001"},
     {P27 "_0000", P27 "_0001", P27 "_0001"}},
};

TEST(UniqueNames, GetSuffixesInTheOrderOfTheirSignals) {
    for (const UniqueNamesCase& row : kUniqueNamesCases) {
        SCOPED_TRACE(row.what);
        CANDatabase database;
        CANMessage& message = AddMessage(database);
        for (const std::string& name : row.names) {
            AddNamedSignal(message, name);
        }
        EXPECT_EQ(message.PrepareForWriting(), row.any);
        EXPECT_EQ(IdentifierNames(message), row.first);
    }
}

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

// --- Against the plain walk over all pairs

// The names as the two nested loops leave them. A suffixed name is kept as its front part and its number.
class PairwiseNames {
public:
    explicit PairwiseNames(const Names& names) {
        for (const std::string& name : names) {
            fronts_.push_back(name);
        }
        numbers_.assign(names.size(), -1);
    }

    bool Prepare() {
        std::vector<bool> handled(fronts_.size());
        bool any = false;
        for (size_t i = 0; i < fronts_.size(); ++i) {
            if (handled[i]) {
                continue;
            }
            int count = 0;
            for (size_t j = i + 1; j < fronts_.size(); ++j) {
                if (fronts_[i] == fronts_[j]) {
                    numbers_[j] = ++count;
                    handled[j] = true;
                    CutNow(j);
                }
            }
            if (count > 0) {
                numbers_[i] = 0;
                CutNow(i);
                any = true;
            }
        }
        return any;
    }

    [[nodiscard]] Names All() const {
        Names names;
        for (size_t i = 0; i < fronts_.size(); ++i) {
            std::string name = fronts_[i];
            if (numbers_[i] >= 0) {
                const std::string digits = std::to_string(numbers_[i]);
                name.append("_").append(4 - digits.size(), '0').append(digits);
            }
            names.push_back(name);
        }
        return names;
    }

private:
    void CutNow(size_t index) { fronts_[index] = fronts_[index].substr(0, 27); }

    Names fronts_;
    std::vector<int> numbers_;  // -1 without a suffix
};

TEST(UniqueNames, AreThoseOfThePlainWalkOverAllPairs) {
    const Names choice = {"S", "T", P27, P27 "8", P27 "9", P27 "80", P27 "_0001", "S_0000"};
    uint32_t state = 1;
    const auto random = [&state](uint32_t below) {
        state = state * 1664525U + 1013904223U;
        return (state >> 8) % below;
    };
    for (int round = 0; round < 3000; ++round) {
        Names names(random(9));
        for (std::string& name : names) {
            name = choice[random(static_cast<uint32_t>(choice.size()))];
        }
        OwnMessage message;
        for (const std::string& name : names) {
            AddNamedSignal(message, name);
        }
        PairwiseNames expected(names);
        for (int time = 0; time < 3; ++time) {
            const bool any = expected.Prepare();
            ASSERT_EQ(message.PrepareForWriting(), any) << testing::PrintToString(names) << " time " << time;
            ASSERT_EQ(IdentifierNames(message), expected.All()) << testing::PrintToString(names) << " time " << time;
        }
    }
}

#undef P27

}  // namespace
}  // namespace tabrin
