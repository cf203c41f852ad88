#include "model/receiver_list.h"

#include "io/identifier.h"
#include "io/text_scan.h"

namespace tabrin {

void ReceiverList::Assign(std::string_view text) {
    joined_.clear();
    for (size_t start = 0; start < text.size();) {
        size_t comma = text.find(',', start);
        if (comma == kNpos) {
            comma = text.size();
        }
        const std::string_view name = Trimmed(text.substr(start, comma - start));
        if (!name.empty()) {
            if (!joined_.empty()) {
                joined_ += ',';
            }
            AppendIdentifier(joined_, name);
        }
        start = comma + 1;
    }
}

}  // namespace tabrin
