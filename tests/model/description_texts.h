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
    for (const auto& [value, text] : descriptions.Entries()) {
        texts.emplace(value, text.View());
    }
    return texts;
}

}  // namespace tabrin
