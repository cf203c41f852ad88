#include "model/object_name.h"

#include <string>

#include "io/identifier.h"
#include "io/text_scan.h"

namespace tabrin {

void SetName(Arena& arena, std::string_view given, std::string_view& name, std::string_view& identifierName) {
    name = identifierName = given;
    if (!IsIdentifier(given)) {
        name = KeepNormalised(arena, given);
        identifierName = arena.Keep(MakeIdentifier(name));
    }
}

std::string_view KeepIdentifier(Arena& arena, std::string_view text) {
    return arena.Keep(IsIdentifier(text) ? text : MakeIdentifier(text));
}

std::string_view KeepNormalised(Arena& arena, std::string_view text) {
    std::string normalised(text);
    NormaliseBlanks(normalised);
    return arena.Keep(normalised);
}

}  // namespace tabrin
