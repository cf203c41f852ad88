#include "locale/generate_locale.h"

namespace tabrin_test {

// Windows brings all its locales along.
bool GenerateLocaleWithDecimalComma() {
    return false;
}

}  // namespace tabrin_test
