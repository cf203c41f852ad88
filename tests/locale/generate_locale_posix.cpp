#include <cstdlib>
#include <filesystem>
#include <string>

#include "locale/generate_locale.h"

namespace tabrin_test {

// Machines set up for programs alone have no locale but "C"; the sources of the others are there with package locales.
bool GenerateLocaleWithDecimalComma() {
    const std::string folder = std::string(TABRIN_TEMP_DIR) + "/locale";
    std::filesystem::create_directories(folder);
    const std::string command = "localedef -i de_DE -f UTF-8 '" + folder + "/de_DE.UTF-8' >/dev/null 2>&1";
    // The command ends with 1 for warnings too, so only what comes of it counts.
    if (std::system(command.c_str()) == -1) {
        return false;
    }
    return setenv("LOCPATH", folder.c_str(), 1) == 0;
}

}  // namespace tabrin_test
