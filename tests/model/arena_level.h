// How far an arena is filled, seen from outside.
#pragma once

#include <gtest/gtest.h>

#include "model/arena.h"

// Under the sanitizer the pieces do not lie one behind the other.
#ifdef TABRIN_SANITIZE
#define TABRIN_SKIP_WITHOUT_LEVELS() GTEST_SKIP() << "under the address sanitizer each piece is a block of its own"
#else
#define TABRIN_SKIP_WITHOUT_LEVELS() static_cast<void>(0)
#endif

namespace tabrin {

// Where the next small piece goes: the same place again when everything since was given back.
inline const char* LevelOf(Arena& arena) {
    const ArenaScope scope(arena);
    return arena.Allocate(1, 1);
}

}  // namespace tabrin
