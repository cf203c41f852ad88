#include "model/receiver_list.h"

#include <string>

#include "io/identifier.h"
#include "io/text_scan.h"

namespace tabrin {

namespace {

// Calls `use` with each piece of a text between its commas, as long as it answers true.
template <typename Use>
bool AllPieces(std::string_view text, Use use) {
    for (size_t start = 0; start <= text.size();) {
        const size_t comma = text.find(',', start);
        if (!use(text.substr(start, comma - start))) {
            return false;
        }
        start = comma == kNpos ? text.size() + 1 : comma + 1;
    }
    return true;
}

std::string JoinedIdentifiers(std::string_view text) {
    std::string joined;
    AllPieces(text, [&](std::string_view piece) {
        const std::string_view name = Trimmed(piece);
        if (!name.empty()) {
            if (!joined.empty()) {
                joined += ',';
            }
            AppendIdentifier(joined, name);
        }
        return true;
    });
    return joined;
}

}  // namespace

// Usually the text is what it becomes.
void ReceiverList::Assign(Arena& arena, std::string_view text) {
    text = Trimmed(text);
    joined_ = arena.Keep(AllPieces(text, IsIdentifier) ? text : JoinedIdentifiers(text));
}

}  // namespace tabrin
