#include "model/signal_name_index.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "model/own_arena.h"
#include "random.h"
#include "shown.h"

namespace tabrin {
namespace {

// --- Names in texts

using Names = std::vector<std::string_view>;

Names NamesAt(std::string_view text, size_t pos) {
    Names names;
    for (NameInText name(text, pos); !name.IsAtEnd(); name.Extend()) {
        names.push_back(name.View());
    }
    return names;
}

TEST(NameInText, EndsInFrontOfEachBlank) {
    EXPECT_EQ(NamesAt("My Sig 1;", 0), Names({"My", "My Sig"}));
    EXPECT_EQ(NamesAt("VAL_ 1 My Sig 1;", 7), Names({"My", "My Sig"}));
    EXPECT_EQ(NamesAt("A\tB\nC\vD\fE\rF ", 0),
              Names({"A", "A\tB", "A\tB\nC", "A\tB\nC\vD", "A\tB\nC\vD\fE", "A\tB\nC\vD\fE\rF"}));
    EXPECT_EQ(NamesAt("A  B ", 0), Names({"A", "A ", "A  B"}));
    EXPECT_EQ(NamesAt(" A ", 0), Names({"", " A"}));
    EXPECT_EQ(NamesAt("a_name_that_is_longer_than_a_block 1", 0), Names({"a_name_that_is_longer_than_a_block"}));
}

TEST(NameInText, WithoutABlankThereIsNone) {
    EXPECT_EQ(NamesAt("", 0), Names());
    EXPECT_EQ(NamesAt("My", 0), Names());
    EXPECT_EQ(NamesAt("My Sig", 3), Names());
    EXPECT_EQ(NamesAt("My Sig", 6), Names());
    EXPECT_EQ(NamesAt("My Sig", kNpos), Names());
}

TEST(NameInText, HashIsThatOfTheName) {
    const std::string_view text = "VAL_ 1 My  Sig\tof\n several words 1 \"One\" 0 \"Off\" ;";
    for (NameInText name(text, 7); !name.IsAtEnd(); name.Extend()) {
        EXPECT_EQ(name.Hash(), NameHash(name.View())) << Shown(name.View());
    }
    EXPECT_EQ(NameInText(text, 7).Hash(), TextHash("My"));
}

TEST(NameHash, EveryCharacterCounts) {
    const std::string_view kNames[] = {"",     " ",    "  ",  "A",    " A",   "A ",    "A B",
                                       "A  B", "A\tB", "B A", "A B ", " A B", "A B A", "A A B",
                                       "AB",   "B",    "A A", "B B",  "A C",  "A B C", "A C B"};
    std::map<uint64_t, std::string_view> names;
    for (const std::string_view name : kNames) {
        const auto [other, isNew] = names.try_emplace(NameHash(name), name);
        EXPECT_TRUE(isNew) << Shown(name) << ", " << Shown(other->second);
    }
}

TEST(NameHash, IsTheTextHashOfANameWithoutBlanks) {
    for (const std::string_view name : {"", "A", "EngineSpeed", "a_name_that_is_longer_than_an_identifier"}) {
        EXPECT_EQ(NameHash(name), TextHash(name)) << name;
    }
}

// --- Signals

// Signals with the names that reading would give them, few or many of them.
class TestSignals {
public:
    explicit TestSignals(bool many) : isMany_(many) {}

    void Add(std::string_view nameAsRead, std::string_view identifierName) {
        CANSignal& signal = *signals_.emplace_back(std::make_unique<OwnSignal>());
        signal.nameAsRead = signal.GetArena().Keep(nameAsRead);
        signal.identifierName = signal.GetArena().Keep(identifierName);
        if (nameAsRead == identifierName) {
            names_.push_back({NameKey(TextHash(nameAsRead), NameKind::Both), &signal});
            return;
        }
        names_.push_back({NameKey(NameHash(nameAsRead), NameKind::AsRead), &signal});
        names_.push_back({NameKey(TextHash(identifierName), NameKind::Identifier), &signal});
        if (nameAsRead.find_first_of(" \t") != std::string_view::npos) {
            longestWithBlanks_ = std::max(longestWithBlanks_, nameAsRead.size());
        }
    }

    // What follows is another message.
    void EndMessage() {
        if (isMany_) {
            many_.Add(std::span(names_).subspan(begin_));
            begin_ = names_.size();
        }
    }

    // Serves until something is added.
    [[nodiscard]] SignalNames Index() {
        EndMessage();
        return isMany_ ? SignalNames(many_, longestWithBlanks_) : SignalNames(names_, longestWithBlanks_);
    }

    [[nodiscard]] const std::vector<std::unique_ptr<OwnSignal>>& Signals() const { return signals_; }

private:
    bool isMany_;
    std::vector<std::unique_ptr<OwnSignal>> signals_;
    std::vector<SignalName> names_;
    size_t begin_ = 0;  // of the last message
    SortedSignalNames many_;
    size_t longestWithBlanks_ = 0;
};

size_t CountRead(const SignalNames& names, std::string_view name) {
    size_t count = 0;
    names.ForEachRead(name, [&](const CANSignal& signal) {
        EXPECT_EQ(signal.nameAsRead, name);
        ++count;
    });
    return count;
}

// Until so many have been used.
size_t CountIdentified(const SignalNames& names, std::string_view name, size_t most) {
    size_t count = 0;
    names.ForEachIdentified(name, [&](const CANSignal& signal) {
        EXPECT_EQ(signal.identifierName, name);
        return ++count < most;
    });
    return count;
}

std::string NameOf(size_t number) {
    return "S" + std::to_string(number);
}

// As if their hashes were one: in several runs, each name of two signals, one of them with an identifier of its own.
TEST(SortedSignalNames, NamesOfOneKeyAreToldApart) {
    constexpr uint64_t kHash = 0x1234567890ABCDE0;
    std::vector<std::unique_ptr<OwnSignal>> signals;
    SortedSignalNames names;
    for (size_t message = 0; message < 3; ++message) {
        std::vector<SignalName> some;
        for (size_t i = 0; i < 100; ++i) {
            auto& signal = *signals.emplace_back(std::make_unique<OwnSignal>());
            signal.nameAsRead = signal.identifierName = signal.GetArena().Keep(NameOf(i * 37 % 50));
            some.push_back({NameKey(kHash, NameKind::Both), &signal});
            auto& other = *signals.emplace_back(std::make_unique<OwnSignal>());
            other.nameAsRead = other.GetArena().Keep(NameOf(i % 50));
            other.identifierName = other.GetArena().Keep(NameOf(100 + i % 50));
            some.push_back({NameKey(kHash, NameKind::AsRead), &other});
            some.push_back({NameKey(kHash, NameKind::Identifier), &other});
        }
        names.Add(some);
    }
    const auto count = [&](NameKind kind, size_t name, size_t most) {
        size_t found = 0;
        names.ForEach(NameKey(kHash, kind), NameOf(name), [&](const CANSignal&) { return ++found < most; });
        return found;
    };
    for (size_t i = 0; i < 50; ++i) {
        EXPECT_EQ(count(NameKind::AsRead, i, 1000), 12U) << i;
        EXPECT_EQ(count(NameKind::Both, i, 1000), 6U) << i;
        EXPECT_EQ(count(NameKind::Both, 100 + i, 1000), 6U) << i;
        EXPECT_EQ(count(NameKind::AsRead, 100 + i, 1000), 0U) << i;
        EXPECT_EQ(count(NameKind::AsRead, i, 5), 5U) << i;
    }
    EXPECT_EQ(count(NameKind::AsRead, 50, 1000), 0U);
}

// The first and the last hashes, and one in the middle, in every order with messages that have no signals.
TEST(SortedSignalNames, AreFoundFromTheFirstToTheLastHash) {
    constexpr uint64_t kHashes[] = {0, 4, 0x7FFF'FFFF'FFFF'FFFC, 0x8000'0000'0000'0000, 0xFFFF'FFFF'FFFF'FFFC};
    OwnSignal signal;
    signal.nameAsRead = signal.identifierName = signal.GetArena().Keep("A");
    for (const uint64_t first : kHashes) {
        for (const uint64_t second : kHashes) {
            SCOPED_TRACE(testing::Message() << first << " and " << second);
            SortedSignalNames names;
            names.Add({});
            names.Add(std::vector<SignalName>{{NameKey(first, NameKind::Both), &signal}});
            names.Add({});
            names.Add(std::vector<SignalName>{{NameKey(second, NameKind::AsRead), &signal}});
            for (const uint64_t wanted : kHashes) {
                size_t count = 0;
                names.ForEach(NameKey(wanted, NameKind::AsRead), "A", [&](const CANSignal&) {
                    ++count;
                    return true;
                });
                EXPECT_EQ(count, (wanted == first ? 1U : 0U) + (wanted == second ? 1U : 0U)) << wanted;
            }
        }
    }
}

TEST(SignalNames, OfNoMessageHasNoSignals) {
    const SignalNames none;
    EXPECT_FALSE(none.HasMessage());
    EXPECT_EQ(CountRead(none, ""), 0U);
    EXPECT_EQ(CountIdentified(none, "", 1), 0U);
    none.ForEachReadAt("S 1", 0, [](const CANSignal&) {
        ADD_FAILURE();
        return true;
    });
}

TEST(SignalNames, OfAMessageWithoutSignalsKnowsTheMessage) {
    for (const bool many : {false, true}) {
        TestSignals signals(many);
        EXPECT_TRUE(signals.Index().HasMessage());
        EXPECT_EQ(CountRead(signals.Index(), ""), 0U);
    }
}

TEST(SignalNames, FewAreFoundWhereverTheyStand) {
    for (size_t size = 0; size <= SignalNames::kFew; ++size) {
        SCOPED_TRACE(size);
        TestSignals signals(false);
        for (size_t i = 0; i < size; ++i) {
            signals.Add(NameOf(i), NameOf(i));
        }
        for (size_t i = 0; i < size; ++i) {
            EXPECT_EQ(CountRead(signals.Index(), NameOf(i)), 1U) << NameOf(i);
        }
        EXPECT_EQ(CountRead(signals.Index(), NameOf(size)), 0U);
    }
}

// One message after the other, however many signals each of them has.
TEST(SignalNames, ManyAreFoundInAllMessages) {
    const size_t kSizes[] = {0, 1, 2, 3, 5, 8};
    for (const size_t first : kSizes) {
        for (const size_t second : kSizes) {
            for (const size_t third : kSizes) {
                SCOPED_TRACE(testing::Message() << first << ", " << second << ", " << third);
                TestSignals signals(true);
                size_t total = 0;
                for (const size_t size : {first, second, third}) {
                    for (size_t i = 0; i < size; ++i) {
                        signals.Add(NameOf(total), NameOf(total));
                        ++total;
                    }
                    signals.EndMessage();
                }
                for (size_t i = 0; i < total; ++i) {
                    EXPECT_EQ(CountRead(signals.Index(), NameOf(i)), 1U) << NameOf(i);
                }
                EXPECT_EQ(CountRead(signals.Index(), NameOf(total)), 0U);
            }
        }
    }
}

TEST(SignalNames, AllOfOneNameAreFound) {
    const std::pair<bool, size_t> kRows[] = {{false, 2}, {false, 64}, {true, 2}, {true, 400}};
    for (const auto& [many, count] : kRows) {
        SCOPED_TRACE(count);
        TestSignals signals(many);
        for (size_t i = 0; i < count; ++i) {
            signals.Add("Same", "Same");
            if (i == count / 2) {
                signals.EndMessage();
            }
        }
        EXPECT_EQ(CountRead(signals.Index(), "Same"), count);
        EXPECT_EQ(CountRead(signals.Index(), "Other"), 0U);
        EXPECT_EQ(CountIdentified(signals.Index(), "Same", count), count);
        EXPECT_EQ(CountIdentified(signals.Index(), "Same", 1), 1U);
        EXPECT_EQ(CountIdentified(signals.Index(), "Same", 2), 2U);
    }
}

// --- A naive search for the same

// Parts of each other, alike but for their blanks, and none at all.
constexpr std::string_view kNames[] = {"",   "A", "A B", "A  B",  "A\tB", "A ", "AB",   "a",     "A_B",
                                       "A_", "B", "B A", "A B A", "A A",  "_",  "A__B", "A B C", "A_B_C"};

std::string Identifier(std::string_view name) {
    std::string identifier(name.empty() ? "_" : name);
    for (char& c : identifier) {
        c = c == ' ' || c == '\t' ? '_' : c;
    }
    return identifier;
}

using Counts = std::map<const CANSignal*, int>;

class NaiveSearch {
public:
    explicit NaiveSearch(const TestSignals& signals) : signals_(signals) {}

    [[nodiscard]] Counts Read(std::string_view name) const {
        return Found([&](const CANSignal& signal) { return signal.nameAsRead == name; });
    }
    [[nodiscard]] Counts Identified(std::string_view name) const {
        return Found([&](const CANSignal& signal) { return signal.identifierName == name; });
    }
    [[nodiscard]] Counts ReadAt(std::string_view text) const {
        return Found([&](const CANSignal& signal) {
            const size_t size = signal.nameAsRead.size();
            return text.starts_with(signal.nameAsRead) && size < text.size() &&
                   (text[size] == ' ' || text[size] == '\t');
        });
    }

private:
    template <typename Test>
    [[nodiscard]] Counts Found(Test test) const {
        Counts found;
        for (const auto& signal : signals_.Signals()) {
            if (test(*signal)) {
                ++found[signal.get()];
            }
        }
        return found;
    }

    const TestSignals& signals_;
};

void ExpectFoundAsNaively(TestSignals& signals) {
    const NaiveSearch expected(signals);
    const SignalNames names = signals.Index();
    for (const std::string_view name : kNames) {
        SCOPED_TRACE(Shown(name));
        Counts found;
        const auto count = [&](const CANSignal& signal) { return ++found[&signal] > 0; };
        names.ForEachRead(name, count);
        EXPECT_EQ(found, expected.Read(name));
        found.clear();
        names.ForEachIdentified(Identifier(name), count);
        EXPECT_EQ(found, expected.Identified(Identifier(name)));
        for (const std::string_view behind : {" ", " 1 \"x\"", "\tB A\t", " B", "", "B ", "  B  C "}) {
            found.clear();
            const std::string text = std::string(name) + std::string(behind);
            names.ForEachReadAt(text, 0, count);
            EXPECT_EQ(found, expected.ReadAt(text)) << Shown(text);
        }
    }
}

TEST(SignalNames, AreFoundAsByTheNaiveSearch) {
    for (uint32_t seed = 0; seed < 200; ++seed) {
        SCOPED_TRACE(seed);
        Random random(seed);
        const bool many = seed % 2 == 1;
        const bool blanks = random.Below(3) != 0;
        TestSignals signals(many);
        for (size_t count = random.Below(many ? 100 : SignalNames::kFew / 2); count > 0; --count) {
            const std::string_view name = kNames[random.Below(std::size(kNames))];
            const std::string identifier = Identifier(name);
            signals.Add(blanks ? name : std::string_view(identifier), identifier);
            if (random.Below(4) == 0) {
                signals.EndMessage();
            }
        }
        ExpectFoundAsNaively(signals);
        ASSERT_FALSE(testing::Test::HasFailure());
    }
}

}  // namespace
}  // namespace tabrin
