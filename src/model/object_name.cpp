#include "model/object_name.h"

#include "io/identifier.h"
#include "io/text_scan.h"

namespace tabrin {

void SetName(std::string_view text, std::string& name, std::string& identifierName) {
    name = text;
    if (IsIdentifier(text)) {
        identifierName = text;
        return;
    }
    NormaliseBlanks(name);
    identifierName = MakeIdentifier(name);
}

}  // namespace tabrin
