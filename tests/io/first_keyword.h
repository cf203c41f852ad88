// The first keyword behind a position, found as the cutter finds it: by asking every place where one may end.
#pragma once

#include <cstddef>
#include <string_view>

#include "io/statement_cutter.h"

namespace tabrin {

inline bool FirstKeyword(std::string_view text, size_t pos, KeywordHit& hit) {
    for (size_t blank = pos + 1; blank < text.size(); ++blank) {
        if (KeywordEndsAt(text, blank, hit)) {
            return true;
        }
    }
    return false;
}

}  // namespace tabrin
