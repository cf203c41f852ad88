#include "model/identifier_index.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "io/text_hash.h"
#include "model/own_arena.h"

namespace tabrin {
namespace {

// An index, with the messages and signals in it.
class TestIndex {
public:
    CANMessage& AddMessage(uint32_t id) {
        CANMessage& message = *messages_.emplace_back(std::make_unique<OwnMessage>());
        message.id = id;
        index.AddMessage(message);
        return message;
    }

    // To the last message.
    CANSignal& AddSignal(std::string_view nameAsRead, std::string_view identifierName) {
        CANSignal& signal = *signals_.emplace_back(std::make_unique<OwnSignal>());
        signal.nameAsRead = signal.identifierName = signal.GetArena().Keep(nameAsRead);
        if (nameAsRead != identifierName) {
            signal.identifierName = signal.GetArena().Keep(identifierName);
        }
        index.AddSignal(signal);
        return signal;
    }
    CANSignal& AddSignal(std::string_view name) { return AddSignal(name, name); }

    std::vector<const CANMessage*> Messages(uint32_t id) {
        std::vector<const CANMessage*> found;
        for (const CANMessage* message : index.FindMessages(id)) {
            found.push_back(message);
        }
        EXPECT_EQ(index.FindMessages(id).empty(), found.empty());
        EXPECT_EQ(index.FindSignalNames(id).HasMessage(), !found.empty());
        return found;
    }

    // In the order of their making.
    std::vector<const CANSignal*> Read(uint32_t id, std::string_view name) {
        std::vector<const CANSignal*> found;
        index.FindSignalNames(id).ForEachRead(name, [&](const CANSignal& signal) { found.push_back(&signal); });
        return Ordered(found);
    }
    std::vector<const CANSignal*> Identified(uint32_t id, std::string_view name) {
        std::vector<const CANSignal*> found;
        index.FindSignalNames(id).ForEachIdentified(name, [&](const CANSignal& signal) {
            found.push_back(&signal);
            return true;
        });
        return Ordered(found);
    }
    std::vector<const CANSignal*> ReadAt(uint32_t id, std::string_view text) {
        std::vector<const CANSignal*> found;
        index.FindSignalNames(id).ForEachReadAt(text, 0, [&](const CANSignal& signal) {
            found.push_back(&signal);
            return true;
        });
        return Ordered(found);
    }

    IdentifierIndex index;

private:
    [[nodiscard]] std::vector<const CANSignal*> Ordered(const std::vector<const CANSignal*>& found) const {
        std::vector<const CANSignal*> ordered;
        for (const auto& signal : signals_) {
            ordered.insert(ordered.end(), static_cast<size_t>(std::count(found.begin(), found.end(), signal.get())),
                           signal.get());
        }
        return ordered;
    }

    std::vector<std::unique_ptr<OwnMessage>> messages_;
    std::vector<std::unique_ptr<OwnSignal>> signals_;
};

using Messages = std::vector<const CANMessage*>;
using Signals = std::vector<const CANSignal*>;

TEST(IdentifierIndex, FindsNothingWhereNothingIs) {
    TestIndex test;
    EXPECT_TRUE(test.index.IsEmpty());
    EXPECT_EQ(test.Messages(0), Messages());
    EXPECT_EQ(test.Messages(4294967295U), Messages());
    EXPECT_EQ(test.Read(0, ""), Signals());
}

TEST(IdentifierIndex, ClearForgetsEverything) {
    TestIndex test;
    test.AddMessage(100);
    test.AddSignal("S");
    EXPECT_FALSE(test.index.IsEmpty());
    test.index.Clear();
    EXPECT_TRUE(test.index.IsEmpty());
    EXPECT_EQ(test.Messages(100), Messages());
    const CANMessage& message = test.AddMessage(100);
    EXPECT_EQ(test.Messages(100), Messages({&message}));
    EXPECT_EQ(test.Read(100, "S"), Signals());
}

// In the order of the file, against it, and with leaps.
TEST(IdentifierIndex, FindsMessagesInAnyOrder) {
    for (const size_t count : {1U, 7U, 8U, 9U, 100U, 5000U}) {
        for (const uint32_t factor : {1U, 2U, 16U, 4096U, 65537U, 0x9E3779B9U}) {
            SCOPED_TRACE(testing::Message() << count << " of factor " << factor);
            TestIndex test;
            Messages messages;
            for (size_t i = 0; i < count; ++i) {
                messages.push_back(&test.AddMessage(static_cast<uint32_t>(i) * factor));
            }
            for (const size_t step : {size_t{1}, size_t{7}, size_t{8}, size_t{11}, count - 1}) {
                for (size_t i = 0; i < std::min<size_t>(count, 200); ++i) {
                    const size_t asked = i * step % count;
                    EXPECT_EQ(test.Messages(static_cast<uint32_t>(asked) * factor), Messages({messages[asked]}));
                }
            }
            EXPECT_EQ(test.Messages(static_cast<uint32_t>(count) * factor), Messages());
        }
    }
}

TEST(IdentifierIndex, AnIdentifierThatIsNotThereDoesNotLoseThePlace) {
    TestIndex test;
    const CANMessage& first = test.AddMessage(1);
    const CANMessage& second = test.AddMessage(2);
    EXPECT_EQ(test.Messages(2), Messages({&second}));
    EXPECT_EQ(test.Messages(3), Messages());
    EXPECT_EQ(test.Messages(2), Messages({&second}));
    EXPECT_EQ(test.Messages(1), Messages({&first}));
}

TEST(IdentifierIndex, MessagesOfOneIdentifierKeepTheirOrder) {
    TestIndex test;
    Messages same;
    for (uint32_t i = 0; i < 100; ++i) {
        same.push_back(&test.AddMessage(7));
        test.AddMessage(100 + i % 10);
        EXPECT_EQ(test.Messages(7), same);
    }
    EXPECT_EQ(test.Messages(100).size(), 10U);
}

TEST(IdentifierIndex, SignalsBelongToTheMessageBeforeThem) {
    TestIndex test;
    test.AddMessage(1);
    const CANSignal& ofFirst = test.AddSignal("S");
    test.AddMessage(2);
    test.AddMessage(3);
    const CANSignal& ofThird = test.AddSignal("S");
    const CANSignal& other = test.AddSignal("T");
    EXPECT_EQ(test.Read(1, "S"), Signals({&ofFirst}));
    EXPECT_EQ(test.Read(2, "S"), Signals());
    EXPECT_EQ(test.Read(3, "S"), Signals({&ofThird}));
    EXPECT_EQ(test.Read(1, "T"), Signals());
    EXPECT_EQ(test.Read(3, "T"), Signals({&other}));
    EXPECT_EQ(test.Read(4, "S"), Signals());
}

// Few are looked through, many are put in order.
TEST(IdentifierIndex, FindsSignalsHoweverManyThereAre) {
    for (const size_t count : {1U, 2U, 63U, 64U, 65U, 1000U}) {
        SCOPED_TRACE(count);
        TestIndex test;
        test.AddMessage(1);
        Signals signals;
        for (size_t i = 0; i < count; ++i) {
            signals.push_back(&test.AddSignal("S" + std::to_string(i)));
        }
        test.AddMessage(2);
        test.AddSignal("S0");
        for (size_t i = 0; i < count; ++i) {
            EXPECT_EQ(test.Read(1, "S" + std::to_string(i)), Signals({signals[i]}));
            EXPECT_EQ(test.Identified(1, "S" + std::to_string(i)), Signals({signals[i]}));
        }
        EXPECT_EQ(test.Read(1, "S" + std::to_string(count)), Signals());
    }
}

TEST(IdentifierIndex, SignalsOfLaterMessagesOfTheIdentifierAreFoundToo) {
    TestIndex test;
    Signals same;
    for (size_t i = 0; i < 50; ++i) {
        test.AddMessage(1);
        same.push_back(&test.AddSignal("Same"));
        test.AddSignal("S" + std::to_string(i));
        test.AddMessage(static_cast<uint32_t>(2 + i));
        test.AddSignal("Same");
        // Asked for now and then only.
        if (i % 3 == 0) {
            EXPECT_EQ(test.Read(1, "Same"), same);
            EXPECT_EQ(test.Read(1, "S" + std::to_string(i)).size(), 1U);
        }
    }
    EXPECT_EQ(test.Read(1, "Same"), same);
    EXPECT_EQ(test.Read(1, "S0").size(), 1U);
    EXPECT_EQ(test.Read(1, "S49").size(), 1U);
    EXPECT_EQ(test.Read(1, "S50").size(), 0U);
}

TEST(IdentifierIndex, NamesWithBlanksAreFoundByBothNames) {
    TestIndex test;
    test.AddMessage(1);
    const CANSignal& speed = test.AddSignal("My", "My");
    const CANSignal& blank = test.AddSignal("My Sig", "My_Sig");
    const CANSignal& tab = test.AddSignal("My Sig\tof 1", "My_Sig_of_1");
    const CANSignal& nameless = test.AddSignal("", "_");
    EXPECT_EQ(test.Read(1, "My"), Signals({&speed}));
    EXPECT_EQ(test.Read(1, "My Sig"), Signals({&blank}));
    EXPECT_EQ(test.Read(1, "My Sig\tof 1"), Signals({&tab}));
    EXPECT_EQ(test.Read(1, "My_Sig"), Signals());
    EXPECT_EQ(test.Read(1, ""), Signals({&nameless}));
    EXPECT_EQ(test.Identified(1, "My_Sig"), Signals({&blank}));
    EXPECT_EQ(test.Identified(1, "My Sig"), Signals());
    EXPECT_EQ(test.Identified(1, "_"), Signals({&nameless}));
    EXPECT_EQ(test.ReadAt(1, "My Sig\tof 1 2"), Signals({&speed, &blank, &tab}));
    EXPECT_EQ(test.ReadAt(1, "My Sig\tof 1"), Signals({&speed, &blank}));
    EXPECT_EQ(test.ReadAt(1, "My Sigs 1"), Signals({&speed}));
}

// The longest name with a blank bounds the search: that of any message of the identifier, and of no other.
TEST(IdentifierIndex, NamesWithBlanksMayComeFromAnyMessageOfTheIdentifier) {
    TestIndex test;
    test.AddMessage(1);
    const CANSignal& first = test.AddSignal("A");
    test.AddMessage(2);
    const CANSignal& other = test.AddSignal("A");
    test.AddMessage(1);
    const CANSignal& blanks = test.AddSignal("A B C", "A_B_C");
    test.AddMessage(1);
    const CANSignal& fewer = test.AddSignal("A B", "A_B");
    EXPECT_EQ(test.ReadAt(1, "A B C D"), Signals({&first, &blanks, &fewer}));
    EXPECT_EQ(test.ReadAt(2, "A B C D"), Signals({&other}));
}

// Where the identifier is the front of the name, it is found by that only.
TEST(IdentifierIndex, IdentifierMayBeTheFrontOfTheName) {
    TestIndex test;
    test.AddMessage(1);
    OwnSignal signal;
    signal.nameAsRead = signal.GetArena().Keep("LongName");
    signal.identifierName = signal.nameAsRead.substr(0, 4);
    test.index.AddSignal(signal);
    const auto count = [&](std::string_view name) {
        size_t read = 0;
        size_t identified = 0;
        const SignalNames names = test.index.FindSignalNames(1);
        names.ForEachRead(name, [&](const CANSignal&) { ++read; });
        names.ForEachIdentified(name, [&](const CANSignal&) { return ++identified != 0; });
        return std::pair(read, identified);
    };
    EXPECT_EQ(count("LongName"), std::pair(size_t{1}, size_t{0}));
    EXPECT_EQ(count("Long"), std::pair(size_t{0}, size_t{1}));
}

// Identifiers that all want the same place of the table, whatever size it has by then.
TEST(IdentifierIndex, FindsMessagesThatWantOnePlace) {
    constexpr size_t kCount = 151;
    constexpr uint64_t kPlaces = 0xFFF;
    std::vector<uint32_t> ids;
    for (uint32_t id = 0; ids.size() < kCount; ++id) {
        if ((text_hash::Mixed(id) & kPlaces) == 0) {
            ids.push_back(id);
        }
    }
    const uint32_t absent = ids.back();
    ids.pop_back();
    TestIndex test;
    std::vector<Messages> messages;
    for (const size_t known : {60U, 63U, 64U, 65U, 66U, 100U, 150U}) {
        SCOPED_TRACE(known);
        while (messages.size() < known) {
            messages.push_back({&test.AddMessage(ids[messages.size()])});
        }
        for (size_t i = 0; i < known; ++i) {
            EXPECT_EQ(test.Messages(ids[known - 1 - i]), messages[known - 1 - i]) << ids[known - 1 - i];
        }
        EXPECT_EQ(test.Messages(absent), Messages());
    }
}

}  // namespace
}  // namespace tabrin
