// The scanning helpers, each against a plain second formulation of its rule.
#pragma once

#include <string_view>

namespace tabrin_fuzz {

// The first four bytes are positions, sizes and delimiters, the rest is the text.
void CheckScan(std::string_view bytes);

// Numbers with fractions against the C library of a system whose conversions are exact.
void CheckDoubles(std::string_view bytes);

}  // namespace tabrin_fuzz
