// Unique identifier names for the signals of a message.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "model/can_message.h"
#include "model/can_signal.h"
#include "model/own_arena.h"

namespace tabrin {
namespace {

using Names = std::vector<std::string>;

// The longest that takes a suffix without losing anything, and what is left of all that are longer and begin with it.
const std::string k27 = "abcdefghijklmnopqrstuvwxyzA";

std::shared_ptr<CANSignal> MakeSignal(const std::string& name) {
    auto signal = std::make_shared<OwnSignal>();
    signal->invalid = false;
    signal->name = signal->identifierName = signal->GetArena().Keep(name);
    return signal;
}

void AddSignals(CANMessage& message, const Names& names) {
    for (const std::string& name : names) {
        message.AddSignal(MakeSignal(name));
    }
}

Names NamesOf(const CANMessage& message) {
    Names names;
    for (const auto& signal : message.signals) {
        names.emplace_back(signal->identifierName);
    }
    return names;
}

struct Prepared {
    Names before;
    Names after;
};

TEST(PrepareForWriting, EqualNamesGetSuffixes) {
    const Prepared kRows[] = {
        {{"Speed", "Speed"}, {"Speed_0000", "Speed_0001"}},
        {{"Speed", "Speed", "Speed", "Torque"}, {"Speed_0000", "Speed_0001", "Speed_0002", "Torque"}},
        {{"Torque", "Speed", "Speed"}, {"Torque", "Speed_0000", "Speed_0001"}},
        {{"A", "B", "A", "B", "A"}, {"A_0000", "B_0000", "A_0001", "B_0001", "A_0002"}},
        {{"A", "B", "B", "A"}, {"A_0000", "B_0000", "B_0001", "A_0001"}},
        {{"A", "a", "A"}, {"A_0000", "a", "A_0001"}},
        {{"A", "AB", "A"}, {"A_0000", "AB", "A_0001"}},
        {{"", ""}, {"_0000", "_0001"}},
        {Names(12, "S"),
         {"S_0000", "S_0001", "S_0002", "S_0003", "S_0004", "S_0005", "S_0006", "S_0007", "S_0008", "S_0009", "S_0010",
          "S_0011"}},

        // A name that only looks as if it had a suffix is compared whole.
        {{"S", "S_0001", "S"}, {"S_0000", "S_0001", "S_0001"}},
        {{"S_0001", "S_0001"}, {"S_0001_0000", "S_0001_0001"}},

        // Beyond 27 characters, the suffix takes the place of what follows.
        {{k27.substr(1), k27.substr(1)}, {k27.substr(1) + "_0000", k27.substr(1) + "_0001"}},
        {{k27, k27}, {k27 + "_0000", k27 + "_0001"}},
        {{k27 + "B", k27 + "B"}, {k27 + "_0000", k27 + "_0001"}},
        {{k27 + "BCDE", k27 + "BCDE"}, {k27 + "_0000", k27 + "_0001"}},
        {{k27 + "BCDEF", k27 + "BCDEF"}, {k27 + "_0000", k27 + "_0001"}},
    };
    for (const Prepared& row : kRows) {
        SCOPED_TRACE(testing::PrintToString(row.before));
        OwnMessage message;
        AddSignals(message, row.before);
        EXPECT_TRUE(message.PrepareForWriting());
        EXPECT_EQ(NamesOf(message), row.after);
        // The suffixes stay as they are, and the answer too.
        EXPECT_TRUE(message.PrepareForWriting());
        EXPECT_EQ(NamesOf(message), row.after);
    }
}

TEST(PrepareForWriting, DistinctNamesStay) {
    const Names kRows[] = {
        {},
        {"S"},
        {"A", "B", "C"},
        {"S", "S_0000", "S_0001"},
        {"S", "s"},
        {"", "_0000"},
        {k27, k27 + "B", k27 + "C"},
        {"Position_A_of_pedal", "Position_B_of_pedal"},
    };
    for (const Names& names : kRows) {
        SCOPED_TRACE(testing::PrintToString(names));
        OwnMessage message;
        AddSignals(message, names);
        EXPECT_FALSE(message.PrepareForWriting());
        EXPECT_EQ(NamesOf(message), names);
        for (const auto& signal : message.signals) {
            EXPECT_FALSE(signal->suffixApplied);
        }
    }
}

TEST(PrepareForWriting, OnlyIdentifierNamesChange) {
    OwnMessage message;
    AddSignals(message, {"S", "S"});
    message.name = message.identifierName = "S";
    message.signals[1]->nameAsRead = "S";
    EXPECT_TRUE(message.PrepareForWriting());
    EXPECT_EQ(message.signals[0]->name, "S");
    EXPECT_EQ(message.signals[1]->name, "S");
    EXPECT_EQ(message.signals[1]->nameAsRead, "S");
    EXPECT_EQ(message.identifierName, "S");
}

TEST(PrepareForWriting, SignalsAddedLaterGoOnCounting) {
    OwnMessage message;
    AddSignals(message, {"S", "T", "S"});
    message.PrepareForWriting();
    AddSignals(message, {"S", "T"});
    EXPECT_TRUE(message.PrepareForWriting());
    EXPECT_EQ(NamesOf(message), Names({"S_0000", "T_0000", "S_0001", "S_0002", "T_0001"}));
}

TEST(PrepareForWriting, NameWithItsSuffixIsNoLongerTaken) {
    OwnMessage message;
    AddSignals(message, {"S", "S"});
    message.PrepareForWriting();
    AddSignals(message, {"S_0001"});
    EXPECT_TRUE(message.PrepareForWriting());
    EXPECT_EQ(NamesOf(message), Names({"S_0000", "S_0001", "S_0001"}));
}

// An invalid signal takes part in counting but keeps its name.
TEST(PrepareForWriting, InvalidSignalsKeepTheirNames) {
    OwnMessage message;
    AddSignals(message, {"S", "S", "S"});
    message.signals[1]->invalid = true;
    EXPECT_TRUE(message.PrepareForWriting());
    EXPECT_EQ(NamesOf(message), Names({"S_0000", "S", "S_0002"}));
}

TEST(PrepareForWriting, InvalidFirstSignalKeepsItsName) {
    OwnMessage message;
    AddSignals(message, {"S", "S", "S"});
    message.signals[0]->invalid = true;
    EXPECT_TRUE(message.PrepareForWriting());
    EXPECT_EQ(NamesOf(message), Names({"S", "S_0001", "S_0002"}));
}

TEST(PrepareForWriting, TenThousandEqualNamesAreToldApart) {
    OwnMessage message;
    AddSignals(message, Names(10000, "S"));
    EXPECT_TRUE(message.PrepareForWriting());
    EXPECT_EQ(message.signals.front()->identifierName, "S_0000");
    EXPECT_EQ(message.signals[999]->identifierName, "S_0999");
    EXPECT_EQ(message.signals.back()->identifierName, "S_9999");
    Names names = NamesOf(message);
    EXPECT_TRUE(std::is_sorted(names.begin(), names.end()));
    EXPECT_EQ(std::adjacent_find(names.begin(), names.end()), names.end());
}

// Different names that are cut to the same 27 characters are not told apart at first: each group counts for itself.
// From the second time on they are one group.
struct CutNames {
    Names before;
    Names first;
    Names second;  // and ever after
};

TEST(PrepareForWriting, NamesCutToTheSameAreRenumberedTheSecondTime) {
    const std::string kB = k27 + "BB";
    const std::string kC = k27 + "CCC";
    const Names kFive = {k27 + "_0000", k27 + "_0001", k27 + "_0002", k27 + "_0003", k27 + "_0004"};
    const CutNames kRows[] = {
        // Two groups, either of them 0000 and 0001.
        {{kB, kB, kC, kC},
         {k27 + "_0000", k27 + "_0001", k27 + "_0000", k27 + "_0001"},
         {k27 + "_0000", k27 + "_0001", k27 + "_0002", k27 + "_0003"}},
        {{kB, kC, kB, kC},
         {k27 + "_0000", k27 + "_0000", k27 + "_0001", k27 + "_0001"},
         {k27 + "_0000", k27 + "_0001", k27 + "_0002", k27 + "_0003"}},
        // The last signal was handled for the first one. Cut, it equals the second one, and is counted there again.
        {{kB, k27, kB}, {k27 + "_0000", k27 + "_0000", k27 + "_0001"}, {k27 + "_0000", k27 + "_0001", k27 + "_0002"}},
        {{kB, k27, k27, kB},
         {k27 + "_0000", k27 + "_0000", k27 + "_0001", k27 + "_0002"},
         {k27 + "_0000", k27 + "_0001", k27 + "_0002", k27 + "_0003"}},
        // Those handled for the first and for the second one, in the order of the signals.
        {{kB, kC, k27, kC, kB}, {k27 + "_0000", k27 + "_0000", k27 + "_0000", k27 + "_0001", k27 + "_0002"}, kFive},
        // Handled in front of the short name: only what follows is compared.
        {{kB, kB, k27, kC, kC}, {k27 + "_0000", k27 + "_0001", k27, k27 + "_0000", k27 + "_0001"}, kFive},
        // A group of its own does not mix with one of the same 27 characters that was never cut.
        {{kB, kB, k27}, {k27 + "_0000", k27 + "_0001", k27}, {k27 + "_0000", k27 + "_0001", k27 + "_0002"}},
        {{k27, kB, kB}, {k27, k27 + "_0000", k27 + "_0001"}, {k27 + "_0000", k27 + "_0001", k27 + "_0002"}},
        // 28 to 32 characters, all cut.
        {{k27 + "B", k27 + "B", k27 + "CCCCC", k27 + "CCCCC", k27 + "CCCCC"},
         {k27 + "_0000", k27 + "_0001", k27 + "_0000", k27 + "_0001", k27 + "_0002"},
         kFive},
    };
    for (const CutNames& row : kRows) {
        SCOPED_TRACE(testing::PrintToString(row.before));
        OwnMessage message;
        AddSignals(message, row.before);
        EXPECT_TRUE(message.PrepareForWriting());
        EXPECT_EQ(NamesOf(message), row.first);
        EXPECT_TRUE(message.PrepareForWriting());
        EXPECT_EQ(NamesOf(message), row.second);
        EXPECT_TRUE(message.PrepareForWriting());
        EXPECT_EQ(NamesOf(message), row.second);
    }
}

// The same once more, in the plainest way: every signal compared with every other behind it.
struct PlainSignal {
    std::string name;
    bool suffixed = false;
    bool invalid = false;

    [[nodiscard]] std::string Compared() const { return suffixed ? name.substr(0, name.size() - 5) : name; }

    void Suffix(uint32_t number) {
        if (number >= 10000 || invalid) {
            return;
        }
        std::string suffix = "_0000";
        for (size_t place = 4; place > 0; --place) {
            suffix[place] = static_cast<char>('0' + number % 10);
            number /= 10;
        }
        if (suffixed) {
            name.replace(name.size() - 5, 5, suffix);
        } else if (name.size() + 5 <= 32) {
            name += suffix;
        } else {
            name = name.substr(0, 27) + suffix;
        }
        suffixed = true;
    }
};

bool PreparePlainly(std::vector<PlainSignal>& signals) {
    std::vector<size_t> handled;
    bool any = false;
    for (size_t i = 0; i < signals.size(); ++i) {
        if (std::find(handled.begin(), handled.end(), i) != handled.end()) {
            continue;
        }
        uint32_t count = 0;
        for (size_t j = i + 1; j < signals.size(); ++j) {
            if (signals[i].Compared() == signals[j].Compared()) {
                ++count;
                signals[j].Suffix(count);
                handled.push_back(j);
            }
        }
        if (count > 0) {
            signals[i].Suffix(0);
            any = true;
        }
    }
    return any;
}

// Few letters, so that names are equal often, and lengths around the one where names are cut.
std::string RandomName(std::mt19937& random) {
    switch (random() % 8) {
        case 0:
            return std::string(random() % 3, 'a');
        case 1:
            return std::string(random() % 2, 'a') + "_000" + std::to_string(random() % 2);
        case 2:
            return k27 + "_000" + std::to_string(random() % 2);
        default: {
            std::string name = k27.substr(0, 26);
            for (auto more = random() % 7; more > 0; --more) {
                name += random() % 3 == 0 ? 'b' : 'a';
            }
            return name;
        }
    }
}

TEST(PrepareForWriting, AgreesWithThePlainestWay) {
    int renumbered = 0;
    for (uint32_t seed = 1; seed <= 2000; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        OwnMessage message;
        std::vector<PlainSignal> expected;
        for (int write = 0; write < 4; ++write) {
            // From time to time none is added, to see what writing again does.
            for (auto more = write % 2 == 0 ? random() % 12 : 0; more > 0; --more) {
                const bool invalid = random() % 16 == 0;
                expected.push_back({RandomName(random), false, invalid});
                AddSignals(message, {expected.back().name});
                message.signals.back()->invalid = invalid;
            }
            const Names before = NamesOf(message);
            ASSERT_EQ(message.PrepareForWriting(), PreparePlainly(expected)) << testing::PrintToString(before);
            Names names;
            for (const PlainSignal& signal : expected) {
                names.push_back(signal.name);
            }
            ASSERT_EQ(NamesOf(message), names) << testing::PrintToString(before);
            renumbered += write % 2 != 0 && names != before ? 1 : 0;
        }
    }
    // The seeds are worth something only if writing again without any change renumbers now and then.
    EXPECT_GT(renumbered, 100);
}

}  // namespace
}  // namespace tabrin
