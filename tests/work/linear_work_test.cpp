// What the library does grows in proportion to what it is given: files of eight times the size take eight times the
// work, whatever their shape. Work is counted, not timed.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

#include "bench/dbc_generator.h"
#include "dbc/dbc_writer.h"
#include "dbc/reading.h"
#include "io/text_hash.h"
#include "model/arena.h"
#include "model/value_descriptions.h"
#include "shown.h"
#include "work/work_counter.h"

namespace tabrin {
namespace {

constexpr size_t kFactor = 8;

// Beyond proportion. Ordered containers go a few levels deeper; nothing else may show.
constexpr double kTolerance = 1.1;

struct Effort {
    uint64_t work;
    uint64_t bytes;
};

template <typename Action>
Effort EffortOf(Action action) {
    const Effort before{WorkDone(), BytesAllocated()};
    action();
    return {WorkDone() - before.work, BytesAllocated() - before.bytes};
}

// What `action` does to a database read from `text`.
template <typename Action>
Effort EffortAfterReading(const std::string& text, Action action) {
    CANDatabase database;
    EXPECT_TRUE(ReadText(database, text));
    return EffortOf([&] { action(database); });
}

Effort ReadingEffort(const std::string& text) {
    const TemporaryFile file(text);
    CANDatabase database;
    FileStatus status = FileStatus::Closed;
    return EffortOf([&] { EXPECT_TRUE(ReadDbcFile(database, file.Path().c_str(), kPathBufferSize, status)); });
}

Effort WritingEffort(const std::string& text) {
    return EffortAfterReading(text, [](CANDatabase& database) {
        const TemporaryFile file("");
        FileStatus status = FileStatus::Closed;
        EXPECT_TRUE(WriteDbcFile(database, file.Path().c_str(), kPathBufferSize, TABRIN_ORDER_NAME, status));
    });
}

Effort WalkingEffort(const std::string& text) {
    return EffortAfterReading(text, [](const CANDatabase& database) {
        CanMessageData message;
        CanSignalData data;
        CanSignalEnumData description;
        for (const auto& owner : database.messages) {
            EXPECT_TRUE(owner->GetData(&message));
            for (const auto& signal : owner->signals) {
                EXPECT_TRUE(signal->GetData(&data));
                for (uint32_t i = 0; i < data.numValueDescriptions; ++i) {
                    EXPECT_TRUE(signal->GetValueDescription(i, &description));
                }
            }
        }
    });
}

Effort ClearingEffort(const std::string& text) {
    return EffortAfterReading(text, [](CANDatabase& database) { database.Clear(); });
}

struct Case {
    const char* name;
    size_t largest;
    std::function<std::string(size_t)> generate;
    Effort (*measure)(const std::string& text);
};

template <typename Generate>
auto Counted(Generate generate) {
    return [generate](size_t count) { return generate(static_cast<uint32_t>(count)); };
}

auto Values(bench::ValueOrder order) {
    return Counted([order](uint32_t count) { return bench::ManyValueDescriptions(count, order); });
}

// Signals of one name and as many statements.
auto Namesakes(const std::string& name, const std::string& statement) {
    return [name, statement](size_t count) {
        std::string text = "BA_DEF_ SG_ \"GenSigStartValue\" INT 0 100;\nBO_ 1 M: 8 X\n";
        for (size_t i = 0; i < count; ++i) {
            text += " SG_ " + name + " : 0|16@1+ (1,0) [0|0] \"\" X\n";
        }
        for (size_t i = 0; i < count; ++i) {
            text += statement + "\n";
        }
        return text;
    };
}

// Messages of one identifier, each with a signal and a statement for it.
std::string MessagesOfOneIdentifier(size_t count) {
    std::string text;
    for (size_t i = 0; i < count; ++i) {
        const std::string name = "S" + std::to_string(10'000 + i);
        text += "BO_ 1 M: 8 X\n SG_ " + name + " : 0|8@1+ (1,0) [0|0] \"\" X\nVAL_ 1 " + name + " 0 \"a\";\n";
    }
    return text;
}

// Messages whose identifiers all want the same few places of a table.
std::string CrowdedIdentifiers(size_t count) {
    constexpr uint64_t kPlaces = 0xFFFF;
    std::string text;
    for (uint32_t id = 0; count != 0; ++id) {
        if ((text_hash::Mixed(id) & kPlaces) < 8) {
            text += "BO_ " + std::to_string(id) + " M: 8 X\n";
            --count;
        }
    }
    return text;
}

const Case kCases[] = {
    {"usual mix, reading", 800'000, bench::UsualMix, ReadingEffort},
    {"usual mix, walking", 800'000, bench::UsualMix, WalkingEffort},
    {"usual mix, writing", 800'000, bench::UsualMix, WritingEffort},
    {"usual mix, clearing", 800'000, bench::UsualMix, ClearingEffort},
    {"messages of one signal, reading", 40'000, Counted(bench::ManySmallMessages), ReadingEffort},
    {"messages of one signal, writing", 40'000, Counted(bench::ManySmallMessages), WritingEffort},
    {"signals of one message, with statements, reading", 10'000, Counted(bench::OneLargeMessage), ReadingEffort},
    {"signals of one message, with statements, writing", 10'000, Counted(bench::OneLargeMessage), WritingEffort},
    {"value descriptions ascending, reading", 65'536, Values(bench::ValueOrder::Ascending), ReadingEffort},
    {"value descriptions descending, reading", 65'536, Values(bench::ValueOrder::Descending), ReadingEffort},
    {"value descriptions at random, reading", 65'536, Values(bench::ValueOrder::Random), ReadingEffort},
    {"value descriptions, walking", 65'536, Values(bench::ValueOrder::Random), WalkingEffort},
    {"value descriptions, writing", 65'536, Values(bench::ValueOrder::Random), WritingEffort},
    {"one single line, reading", 4'000'000, bench::SingleLine, ReadingEffort},
    {"no keyword, reading", 4'000'000, bench::NoKeyword, ReadingEffort},
    {"signals of one name, reading", 10'000, Counted(bench::EqualSignalNames), ReadingEffort},
    {"signals of one name, writing", 10'000, Counted(bench::EqualSignalNames), WritingEffort},
    {"messages of one identifier, reading", 40'000, MessagesOfOneIdentifier, ReadingEffort},
    {"identifiers that want one place, reading", 8'000, CrowdedIdentifiers, ReadingEffort},
    {"names that become others, reading", 10'000, Namesakes("A B", "VAL_ 1 A_B 1 \"x\" ;"), ReadingEffort},
    {"comments on what names become, reading", 10'000, Namesakes("A B", "CM_ SG_ 1 A_B \"x\";"), ReadingEffort},
    {"attributes of what names were, reading", 10'000, Namesakes("A-B", "BA_ \"GenSigStartValue\" SG_ 1 A-B 5;"),
     ReadingEffort},
    {"value descriptions that are none, reading", 10'000, Namesakes("S", "VAL_ 1 S x \"\" ;"), ReadingEffort},
    {"value types that are none, reading", 10'000, Namesakes("S", "SIG_VALTYPE_ 1 S : 0;"), ReadingEffort},
    {"comment in pieces, reading", 100'000, Counted(bench::CommentInPieces), ReadingEffort},
    {"comment in pieces, writing", 100'000, Counted(bench::CommentInPieces), WritingEffort},
};

TEST(LinearWork, EightTimesTheFileTakesEightTimesTheWork) {
    for (const Case& row : kCases) {
        SCOPED_TRACE(row.name);
        const std::string small = row.generate(row.largest / kFactor);
        const std::string large = row.generate(row.largest);
        const double growth = static_cast<double>(large.size()) / static_cast<double>(small.size());
        const Effort least = row.measure(small);
        const Effort most = row.measure(large);
        EXPECT_GT(least.work, 0U);
        EXPECT_LE(static_cast<double>(most.work), kTolerance * growth * static_cast<double>(least.work));
        // Buffers double: one may have done so just now.
        EXPECT_LE(static_cast<double>(most.bytes),
                  2 * kTolerance * growth * static_cast<double>(least.bytes) + 300'000);
    }
}

// Number `i` of as many values, each of which comes once.
int32_t ValueOf(bench::ValueOrder order, int32_t i, int32_t count) {
    constexpr int32_t kPrime = 7919;
    switch (order) {
        case bench::ValueOrder::Ascending:
            return i;
        case bench::ValueOrder::Descending:
            return count - i;
        default:
            return static_cast<int32_t>(int64_t{i} * kPrime % count);
    }
}

// Through the interface they come one by one, and may be looked at in between.
TEST(LinearWork, DescriptionsAddedOneByOneTakeEqualWorkEach) {
    for (const auto order : {bench::ValueOrder::Ascending, bench::ValueOrder::Descending, bench::ValueOrder::Random}) {
        SCOPED_TRACE(static_cast<int>(order));
        const auto effortOf = [order](int32_t count) {
            Arena arena;
            ValueDescriptions descriptions(arena);
            return EffortOf([&] {
                for (int32_t i = 0; i < count; ++i) {
                    descriptions.Add(ValueOf(order, i, count), "a text");
                    EXPECT_EQ(descriptions.At(static_cast<size_t>(i / 2)).text, "a text");
                }
            });
        };
        const Effort least = effortOf(8'192);
        const Effort most = effortOf(65'536);
        // In no order each is searched for, in a tree that is three levels higher.
        const double tolerance = order == bench::ValueOrder::Random ? 1.35 : kTolerance;
        EXPECT_LE(static_cast<double>(most.work), tolerance * kFactor * static_cast<double>(least.work));
        EXPECT_LE(static_cast<double>(most.bytes), kTolerance * kFactor * static_cast<double>(least.bytes));
        EXPECT_LE(most.bytes, 65'536U * 60);
    }
}

// One value described again and again.
TEST(LinearWork, TextThatIsJoinedTakesEqualWorkEach) {
    const auto effortOf = [](int32_t count) {
        Arena arena;
        ValueDescriptions descriptions(arena);
        return EffortOf([&] {
            for (int32_t i = 0; i < count; ++i) {
                descriptions.Add(7, "a text");
            }
        });
    };
    const Effort least = effortOf(8'192);
    const Effort most = effortOf(65'536);
    EXPECT_LE(static_cast<double>(most.work), kTolerance * kFactor * static_cast<double>(least.work));
    EXPECT_LE(static_cast<double>(most.bytes), kTolerance * kFactor * static_cast<double>(least.bytes));
}

// Every byte is looked at a small constant number of times.
TEST(LinearWork, ByteOfAFileCostsLittle) {
    const std::string text = bench::UsualMix(800'000);
    const double perByte = static_cast<double>(ReadingEffort(text).work) / static_cast<double>(text.size());
    EXPECT_LT(perByte, 12.0);
}

// A line that may be a keyword everywhere, and never ends. Only the line itself is kept until it is read, in memory that
// doubles.
TEST(LinearWork, LineOfPossibleKeywordsTakesItsOwnRoomOnly) {
    for (const char* piece : {"\t", "_ ", "\xFF_ ", "\x01_ ", "N\r", "CM_ BO_ ", "xCM_ "}) {
        SCOPED_TRACE(Shown(piece));
        std::string text;
        while (text.size() < 4'000'000) {
            text += piece;
        }
        EXPECT_LT(ReadingEffort(text).bytes, 5 * text.size());
    }
}

// Wherever in a block it happens: to take one each time would cost more than all the rest.
TEST(LinearWork, FaultyStatementTakesNoMemoryForGood) {
    for (size_t filling = 0; filling < 300; ++filling) {
        Arena arena;
        for (size_t i = 0; i < filling; ++i) {
            arena.Allocate(100, 1);
        }
        const Effort effort = EffortOf([&] {
            for (int i = 0; i < 1000; ++i) {
                const ArenaScope scope(arena);
                arena.Allocate(300, 8);
            }
        });
        // Of an arena that was empty, the first block goes each time.
        EXPECT_LE(effort.bytes, filling == 0 ? 1000 * 5000U : 70'000U) << filling;
    }
}

// A piece that gets a block of its own has 31 bytes behind it too, at which the copying of short texts looks.
TEST(LinearWork, LargePieceTakesItsSizeAndALittleMore) {
    Arena arena;
    for (int i = 0; i < 3; ++i) {
        arena.Allocate(5000, 1);
    }
    const Effort effort = EffortOf([&] { arena.Allocate(5000, 1); });
    EXPECT_EQ(effort.bytes, 5031U);
}

}  // namespace
}  // namespace tabrin
