#pragma once

#include <string>
#include <string_view>

namespace tabrin_tool {

// Both throw Failure for text that is not valid.
std::wstring WideFromUtf8(std::string_view text);
std::string Utf8FromWide(std::wstring_view text);

}  // namespace tabrin_tool
