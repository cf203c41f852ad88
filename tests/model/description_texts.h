// Value descriptions as a map of plain texts.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "model/value_descriptions.h"

namespace tabrin {

using DescriptionTexts = std::map<int32_t, std::string>;

inline DescriptionTexts TextsOf(const ValueDescriptions& descriptions) {
    DescriptionTexts texts;
    for (size_t i = 0; i < descriptions.Size(); ++i) {
        const auto [value, text] = descriptions.At(i);
        texts.emplace(value, text);
    }
    return texts;
}

}  // namespace tabrin
