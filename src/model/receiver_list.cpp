#include "model/receiver_list.h"

#include <algorithm>
#include <string>

#include "io/identifier.h"
#include "io/short_text.h"
#include "io/text_scan.h"

namespace tabrin {

namespace {

// Calls `use` with each piece of a text between its commas.
template <typename Use>
void ForEachPiece(std::string_view text, Use use) {
    for (size_t start = 0; start <= text.size();) {
        const size_t end = std::min(text.find(',', start), text.size());
        use(text.substr(start, end - start));
        start = end + 1;
    }
}

bool IsListOfIdentifiers(std::string_view text) {
    if (!text.empty() && text.size() <= kLongestIdentifier) {
        const ShortText list(text);
        const uint64_t commas = list.Marks([](const ByteBlock& block) { return block.Equal(','); });
        const uint64_t begins = (commas << 1) | 1;
        return (begins & (commas | list.Marks(MarkDigits))) == 0 && text.back() != ',' &&
               (commas | list.Marks(MarkIdentifierChars)) == EveryMark(text.size());
    }
    bool isList = true;
    ForEachPiece(text, [&](std::string_view piece) { isList = isList && IsIdentifier(piece); });
    return isList;
}

std::string JoinedIdentifiers(std::string_view text) {
    std::string joined;
    ForEachPiece(text, [&](std::string_view piece) {
        const std::string_view name = Trimmed(piece);
        if (!name.empty()) {
            if (!joined.empty()) {
                joined += ',';
            }
            AppendIdentifier(joined, name);
        }
    });
    return joined;
}

}  // namespace

// Usually the text is what it becomes.
void ReceiverList::Assign(Arena& arena, std::string_view text) {
    text = Trimmed(text);
    joined_ = arena.Keep(IsListOfIdentifiers(text) ? text : JoinedIdentifiers(text));
}

}  // namespace tabrin
