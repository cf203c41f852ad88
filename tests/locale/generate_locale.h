// A locale with a decimal comma for machines that have none.
#pragma once

namespace tabrin_test {

// Makes de_DE.UTF-8 known to setlocale. False where that cannot be done.
bool GenerateLocaleWithDecimalComma();

}  // namespace tabrin_test
