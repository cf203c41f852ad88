// DBC files of given size and shape, the same on every machine.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace tabrin::bench {

// About `size` bytes of what real files are made of: ten signals a message, a quarter of them with value descriptions,
// a third with a comment, the usual attributes, some multiplexing, some floats, a unit beyond ASCII.
std::string UsualMix(size_t size);

// Shapes that a reader with a weak spot would be slow with.
std::string ManySmallMessages(uint32_t messages);  // of one signal each
// One message; every signal has CM_, VAL_, SIG_VALTYPE_ and BA_ statements.
std::string OneLargeMessage(uint32_t signals);
enum class ValueOrder { Ascending, Descending, Random };
std::string ManyValueDescriptions(uint32_t count, ValueOrder order);
std::string SingleLine(size_t size);  // a whole database without a line end
std::string NoKeyword(size_t size);
std::string EqualSignalNames(uint32_t signals);
std::string CommentInPieces(uint32_t statements);  // all for one message

}  // namespace tabrin::bench
