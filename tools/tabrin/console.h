#pragma once

#include <string_view>

namespace tabrin_tool {

enum class Stream { Output, Errors };

// Writes UTF-8 text. A Windows console receives it as UTF-16, so that it shows properly whatever its code page is.
// Throws Failure when the output is lost; errors that cannot be reported are lost silently.
void WriteText(Stream stream, std::string_view text);

// Hands on what is still buffered. Throws Failure like WriteText.
void FinishOutput();

// Says whether somebody looks at the stream on a terminal that understands colours. Switches them on where that is
// needed.
bool IsColourTerminal(Stream stream);

}  // namespace tabrin_tool
