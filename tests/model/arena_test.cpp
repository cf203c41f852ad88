#include "model/arena.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "model/arena_level.h"

namespace tabrin {
namespace {

bool IsAligned(const void* piece, size_t alignment) {
    return reinterpret_cast<uintptr_t>(piece) % alignment == 0;
}

// A piece of memory, full of one byte.
struct Filled {
    char* begin;
    size_t size;
    char byte;
};

Filled Fill(Arena& arena, size_t size, size_t alignment, char byte) {
    char* begin = arena.Allocate(size, alignment);
    EXPECT_TRUE(IsAligned(begin, alignment)) << size << " bytes, alignment " << alignment;
    std::fill_n(begin, size, byte);
    return {begin, size, byte};
}

void ExpectIntact(const std::vector<Filled>& pieces) {
    for (size_t i = 0; i < pieces.size(); ++i) {
        const Filled& piece = pieces[i];
        ASSERT_EQ(static_cast<size_t>(std::count(piece.begin, piece.begin + piece.size, piece.byte)), piece.size)
            << "piece " << i << " of " << pieces.size();
    }
}

// --- Pieces

constexpr size_t kAlignments[] = {1, 2, 4, 8, alignof(std::max_align_t)};

TEST(Arena, PiecesAreAligned) {
    for (const size_t before : {1U, 3U, 8U, 17U}) {
        for (const size_t alignment : kAlignments) {
            Arena arena;
            arena.Allocate(before, 1);
            EXPECT_TRUE(IsAligned(arena.Allocate(1, alignment), alignment)) << alignment << " behind " << before;
        }
    }
}

TEST(Arena, PiecesDoNotOverlap) {
    std::mt19937 random(1);
    Arena arena;
    std::vector<Filled> pieces;
    for (size_t i = 0; i < 20000; ++i) {
        const size_t alignment = kAlignments[random() % std::size(kAlignments)];
        pieces.push_back(Fill(arena, 1 + random() % 100, alignment, static_cast<char>(i)));
    }
    ExpectIntact(pieces);
}

TEST(Arena, FirstPieceMayHaveAnySize) {
    for (const size_t size : {1U, 2U, 1023U, 1024U, 1025U, 4095U, 4096U, 4097U, 65536U, 1000000U}) {
        SCOPED_TRACE(size);
        Arena arena;
        ExpectIntact({Fill(arena, size, alignof(std::max_align_t), 'a'), Fill(arena, 1, 1, 'b'),
                      Fill(arena, size, alignof(std::max_align_t), 'c')});
    }
}

TEST(Arena, PiecesOfEverySizeStandSideBySide) {
    Arena arena;
    std::vector<Filled> pieces;
    for (size_t size = 1; size < 300000; size += 1 + size / 7) {
        for (const char byte : {'x', 'y'}) {
            pieces.push_back(Fill(arena, size, 8, byte));
            pieces.push_back(Fill(arena, 3, 1, '3'));
        }
    }
    ExpectIntact(pieces);
}

TEST(Arena, SmallPiecesLieOneBehindTheOther) {
    TABRIN_SKIP_WITHOUT_LEVELS();
    Arena arena;
    const char* first = arena.Allocate(3, 1);
    EXPECT_EQ(arena.Allocate(5, 1), first + 3);
    EXPECT_EQ(arena.Allocate(8, 8), first + 8);
    EXPECT_EQ(arena.Allocate(1, 1), first + 16);
    EXPECT_EQ(arena.Allocate(2, 2), first + 18);
}

TEST(Arena, LargePieceLeavesTheSmallOnesTogether) {
    TABRIN_SKIP_WITHOUT_LEVELS();
    Arena arena;
    const char* first = arena.Allocate(3, 1);
    arena.Allocate(1000000, 8);
    EXPECT_EQ(arena.Allocate(1, 1), first + 3);
}

// CopyShortText looks so far behind a text.
TEST(Arena, BehindTheLastPieceOfABlockThereIsMore) {
    TABRIN_SKIP_WITHOUT_LEVELS();
    Arena arena;
    const char* piece = arena.Allocate(1, 1);
    size_t count = 1;
    for (const char* next = arena.Allocate(1, 1); next == piece + 1; next = arena.Allocate(1, 1)) {
        piece = next;
        ++count;
    }
    EXPECT_EQ(count + 31, 4096U) << "the first block has 4 KB";
}

// --- Texts

TEST(Arena, KeepsACopyOfAText) {
    Arena arena;
    std::string text("two\0words", 9);
    const std::string_view kept = arena.Keep(text);
    EXPECT_NE(kept.data(), text.data());
    text.assign(9, 'x');
    EXPECT_EQ(kept, std::string_view("two\0words", 9));
}

TEST(Arena, TextsLieOneBehindTheOther) {
    TABRIN_SKIP_WITHOUT_LEVELS();
    Arena arena;
    const char* first = arena.Keep("abc").data();
    EXPECT_EQ(arena.Keep("de").data(), first + 3);
    GrowingText text;
    text.Append(arena, "f");
    EXPECT_EQ(text.View().data(), first + 5);
    EXPECT_EQ(arena.Keep("g").data(), first + 6);
}

TEST(Arena, KeepsTextsOfAnySizeApart) {
    Arena arena;
    std::vector<std::string_view> kept;
    std::vector<std::string> expected;
    for (size_t size = 1; size < 200000; size += 1 + size / 3) {
        for (const char letter : {'a', 'b'}) {
            expected.emplace_back(size, letter);
            kept.push_back(arena.Keep(expected.back()));
        }
    }
    for (size_t i = 0; i < kept.size(); ++i) {
        ASSERT_EQ(kept[i], expected[i]);
    }
}

TEST(Arena, EmptyTextTakesNothing) {
    Arena arena;
    EXPECT_EQ(arena.Keep(""), "");
    EXPECT_EQ(arena.Keep({}), "");
    arena.Keep("a");
    EXPECT_EQ(arena.Keep(""), "");
}

// --- Giving back

// The first time, a block may be begun that stays, empty; from then on nothing changes.
TEST(ArenaScope, GivesBackWhatWasAllocatedInIt) {
    TABRIN_SKIP_WITHOUT_LEVELS();
    for (const size_t size : {1U, 100U, 5000U, 300000U}) {
        SCOPED_TRACE(size);
        Arena arena;
        arena.Keep("before");
        const char* level = nullptr;
        for (int round = 0; round < 4; ++round) {
            {
                const ArenaScope scope(arena);
                for (int i = 0; i < 70; ++i) {
                    arena.Allocate(size, 1);
                }
            }
            if (round != 0) {
                EXPECT_EQ(LevelOf(arena), level) << "round " << round;
            }
            level = LevelOf(arena);
        }
    }
}

TEST(ArenaScope, GoesBackInsideABlockToWhereItWas) {
    TABRIN_SKIP_WITHOUT_LEVELS();
    Arena arena;
    arena.Keep("before");
    const char* level = LevelOf(arena);
    {
        const ArenaScope scope(arena);
        arena.Allocate(100, 1);
        arena.Allocate(300000, 1);
        arena.Allocate(100, 1);
    }
    EXPECT_EQ(LevelOf(arena), level);
}

TEST(ArenaScope, LeavesWhatWasThereBefore) {
    Arena arena;
    const std::string expected(1000, 'a');
    const std::string_view kept = arena.Keep(expected);
    for (int round = 0; round < 3; ++round) {
        const ArenaScope scope(arena);
        for (int i = 0; i < 200; ++i) {
            Fill(arena, 500, 8, 'b');
        }
    }
    EXPECT_EQ(kept, expected);
    Fill(arena, 1000, 1, 'c');
    EXPECT_EQ(kept, expected);
}

TEST(ArenaScope, KeepsWhenItIsTold) {
    Arena arena;
    std::vector<Filled> pieces;
    {
        ArenaScope scope(arena);
        for (int i = 0; i < 200; ++i) {
            pieces.push_back(Fill(arena, 500, 8, 'a'));
        }
        scope.Keep();
    }
    for (int i = 0; i < 200; ++i) {
        pieces.push_back(Fill(arena, 500, 8, 'b'));
    }
    ExpectIntact(pieces);
}

TEST(ArenaScope, InsideAnotherGivesBackItsOwn) {
    Arena arena;
    std::vector<Filled> pieces = {Fill(arena, 10, 1, 'a')};
    {
        ArenaScope outer(arena);
        pieces.push_back(Fill(arena, 3000, 1, 'b'));
        {
            const ArenaScope inner(arena);
            for (int i = 0; i < 50; ++i) {
                Fill(arena, 3000, 1, 'c');
            }
        }
        pieces.push_back(Fill(arena, 3000, 1, 'd'));
        outer.Keep();
    }
    pieces.push_back(Fill(arena, 3000, 1, 'e'));
    ExpectIntact(pieces);
}

// Each of the two begins a block of small pieces behind large ones.
TEST(ArenaScope, InsideAnotherGoesBeforeIt) {
    Arena arena;
    std::vector<Filled> pieces = {Fill(arena, 10, 1, 'a')};
    {
        const ArenaScope outer(arena);
        Fill(arena, 100000, 1, 'b');
        {
            const ArenaScope inner(arena);
            Fill(arena, 100000, 1, 'c');
            for (int i = 0; i < 50; ++i) {
                Fill(arena, 100, 1, 'd');
            }
        }
        Fill(arena, 300, 1, 'e');
        Fill(arena, 100000, 1, 'f');
    }
    for (int i = 0; i < 2000; ++i) {
        pieces.push_back(Fill(arena, 100, 1, 'g'));
    }
    ExpectIntact(pieces);
}

TEST(ArenaScope, InsideAnotherGoesWithItAlsoWhenKept) {
    TABRIN_SKIP_WITHOUT_LEVELS();
    Arena arena;
    arena.Keep("before");
    const char* level = LevelOf(arena);
    {
        const ArenaScope outer(arena);
        ArenaScope inner(arena);
        arena.Allocate(20000, 1);
        arena.Allocate(20, 1);
        inner.Keep();
    }
    EXPECT_EQ(LevelOf(arena), level);
}

TEST(ArenaScope, OfAnEmptyArenaLeavesItUsable) {
    Arena arena;
    {
        const ArenaScope scope(arena);
        Fill(arena, 100, 8, 'a');
        Fill(arena, 100000, 8, 'b');
    }
    ExpectIntact({Fill(arena, 100, 8, 'c'), Fill(arena, 100000, 8, 'd')});
}

TEST(Arena, IsUsedAnewAfterClearing) {
    Arena arena;
    arena.Clear();
    for (int round = 0; round < 5; ++round) {
        std::vector<Filled> pieces;
        for (size_t i = 0; i < 500; ++i) {
            pieces.push_back(Fill(arena, 1 + i, 8, static_cast<char>(i)));
        }
        ExpectIntact(pieces);
        arena.Clear();
    }
}

// --- Objects

struct Watched {
    explicit Watched(Arena& arena) : madeFor(&arena) { ++alive; }
    ~Watched() { --alive; }
    Watched(const Watched&) = delete;
    Watched& operator=(const Watched&) = delete;
    Watched(Watched&&) = delete;
    Watched& operator=(Watched&&) = delete;

    static inline int alive = 0;

    Arena* madeFor;
    double number = 0.0;
};

TEST(ArenaObjects, AreMadeForTheirArena) {
    Arena arena;
    arena.Keep("x");  // so that nothing is aligned by chance
    const auto object = MakeInArena<Watched>(arena);
    EXPECT_EQ(object->madeFor, &arena);
    EXPECT_TRUE(IsAligned(object.get(), alignof(Watched)));
}

TEST(ArenaObjects, AreDestroyedWithTheirLastOwner) {
    Arena arena;
    auto object = MakeInArena<Watched>(arena);
    EXPECT_EQ(Watched::alive, 1);
    auto other = object;
    object.reset();
    EXPECT_EQ(Watched::alive, 1);
    other.reset();
    EXPECT_EQ(Watched::alive, 0);
}

TEST(ArenaObjects, LieInTheArena) {
    TABRIN_SKIP_WITHOUT_LEVELS();
    Arena arena;
    arena.Keep("a block that stays");
    const char* before = LevelOf(arena);
    const auto object = MakeInArena<Watched>(arena);
    const char* after = LevelOf(arena);
    EXPECT_LE(reinterpret_cast<uintptr_t>(before), reinterpret_cast<uintptr_t>(object.get()));
    EXPECT_GE(reinterpret_cast<uintptr_t>(after), reinterpret_cast<uintptr_t>(object.get() + 1));
}

TEST(ArenaObjects, ThoseThatArePlacedAreNotDestroyed) {
    struct Placed {
        explicit Placed(Arena& arena) : madeFor(&arena) {}
        ~Placed() { destroyed = true; }

        Arena* madeFor;
        double number = 0.5;
        bool destroyed = false;
    };
    Arena arena;
    arena.Keep("x");
    auto object = PlaceInArena<Placed>(arena);
    Placed* const place = object.get();
    EXPECT_EQ(place->madeFor, &arena);
    EXPECT_TRUE(IsAligned(place, alignof(Placed)));
    const auto other = object;
    EXPECT_EQ(other.get(), place);
    object.reset();
    EXPECT_FALSE(place->destroyed);
    EXPECT_EQ(place->number, 0.5);
}

TEST(ArenaObjects, ContainersTakeTheAllocator) {
    Arena arena;
    std::vector<std::string_view, ArenaAllocator<std::string_view>> texts{ArenaAllocator<std::string_view>(arena)};
    for (int i = 0; i < 5000; ++i) {
        texts.push_back(arena.Keep(std::to_string(i)));
    }
    for (int i = 0; i < 5000; ++i) {
        ASSERT_EQ(texts[static_cast<size_t>(i)], std::to_string(i));
    }
}

TEST(ArenaObjects, AllocatorsAreEqualWhenTheirArenaIsOne) {
    Arena arena;
    Arena other;
    EXPECT_TRUE(ArenaAllocator<int>(arena) == ArenaAllocator<double>(arena));
    EXPECT_FALSE(ArenaAllocator<int>(arena) == ArenaAllocator<int>(other));
    EXPECT_EQ(&ArenaAllocator<int>(ArenaAllocator<char>(arena)).GetArena(), &arena);
}

// --- Texts that grow

TEST(GrowingText, IsWhatWasAppended) {
    Arena arena;
    GrowingText text;
    EXPECT_TRUE(text.IsEmpty());
    EXPECT_EQ(text.View(), "");
    text.Append(arena, "");
    EXPECT_TRUE(text.IsEmpty());
    text.Append(arena, "one");
    text.Append(arena, "");
    text.Append(arena, std::string_view(" \0 ", 3));
    text.Append(arena, "two");
    EXPECT_FALSE(text.IsEmpty());
    EXPECT_EQ(text.View(), std::string_view("one \0 two", 9));
    EXPECT_TRUE(text == std::string_view("one \0 two", 9));
    EXPECT_FALSE(text == "one");
}

TEST(GrowingText, ClearLeavesNothing) {
    Arena arena;
    GrowingText text;
    text.Append(arena, "old");
    text.Clear();
    EXPECT_TRUE(text.IsEmpty());
    EXPECT_EQ(text.View(), "");
    text.Append(arena, "new");
    EXPECT_EQ(text.View(), "new");
}

TEST(GrowingText, SeveralGrowSideBySide) {
    std::mt19937 random(2);
    Arena arena;
    GrowingText texts[5];
    std::string expected[5];
    for (int step = 0; step < 3000; ++step) {
        const size_t which = random() % 5;
        const std::string piece(random() % 40, static_cast<char>('a' + random() % 26));
        texts[which].Append(arena, piece);
        expected[which] += piece;
    }
    for (size_t which = 0; which < 5; ++which) {
        EXPECT_EQ(texts[which].View(), expected[which]);
    }
}

// The bytes that are moved to a new place, all in all: they are what growing costs beyond the bytes themselves.
TEST(GrowingText, GrowsInProportionToWhatIsAppended) {
    for (const size_t pieceSize : {1U, 7U, 100U}) {
        SCOPED_TRACE(pieceSize);
        const std::string piece(pieceSize, 'x');
        Arena arena;
        GrowingText text;
        size_t moved = 0;
        size_t places = 0;
        for (int i = 0; i < 20000; ++i) {
            const std::string_view before = text.View();
            text.Append(arena, piece);
            if (text.View().data() != before.data()) {
                moved += before.size();
                ++places;
            }
        }
        EXPECT_EQ(text.View().size(), 20000 * pieceSize);
        EXPECT_LE(moved, 2 * text.View().size());
        EXPECT_LE(places, 20U);
    }
}

}  // namespace
}  // namespace tabrin
