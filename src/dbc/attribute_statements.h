// BA_DEF_ (definition), BA_DEF_DEF_ (default) and BA_ (value) of attributes.
#pragma once

#include <string>
#include <string_view>

#include "model/attribute_store.h"

namespace tabrin {

// Adds at most one definition or one value to the store, or sets defaults. A statement that does not fit is dropped.
void ParseAttributeStatement(AttributeStore& store, std::string_view statement);

// All definitions, then their defaults, then the values: one line each, without a line end behind the last.
std::string WriteAttributeSections(const AttributeStore& store);

}  // namespace tabrin
