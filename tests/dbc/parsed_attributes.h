// Stores of attributes in the middle of being read.
#pragma once

#include <vector>

#include "dbc/attribute_statements.h"
#include "model/attribute_store.h"

namespace tabrin {

inline void Parse(AttributeStore& store, const std::vector<const char*>& statements) {
    for (const char* statement : statements) {
        ParseAttributeStatement(store, statement);
    }
}

}  // namespace tabrin
