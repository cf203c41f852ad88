// DBC identifiers: at most 32 letters, digits and "_", not beginning with a digit.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tabrin {

inline constexpr size_t kLongestIdentifier = 32;

bool IsIdentifier(std::string_view text);

// One "_" for each character beyond ASCII. Throws utf8::exception on text that is not UTF-8.
std::string AsciiFold(std::string_view text);

// The identifier form of any text: folded, cut, and "_" for whatever an identifier cannot have in that place, so that
// "1 Engine-Temp" becomes "__Engine_Temp". A leading digit is replaced, not prefixed. Empty stays empty. Throws like
// AsciiFold.
std::string MakeIdentifier(std::string_view text);
void AppendIdentifier(std::string& out, std::string_view text);

}  // namespace tabrin
