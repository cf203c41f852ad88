// Locales that write a comma where numbers have their point.
#pragma once

#include <clocale>
#include <cstdio>
#include <string>

#include "locale/generate_locale.h"

namespace tabrin_test {

// Puts the locale back that was there before.
class LocaleScope {
public:
    LocaleScope() : before_(std::setlocale(LC_ALL, nullptr)) {}
    ~LocaleScope() { std::setlocale(LC_ALL, before_.c_str()); }
    LocaleScope(const LocaleScope&) = delete;
    LocaleScope& operator=(const LocaleScope&) = delete;
    LocaleScope(LocaleScope&&) = delete;
    LocaleScope& operator=(LocaleScope&&) = delete;

private:
    std::string before_;
};

inline bool HasDecimalComma() {
    char text[8];
    std::snprintf(text, sizeof text, "%.1f", 0.5);
    return std::string(text) == "0,5";
}

inline bool UseLocale(const char* name) {
    return std::setlocale(LC_ALL, name) != nullptr && HasDecimalComma();
}

inline bool UseAnyLocaleWithDecimalComma() {
    for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "German", "German_Germany.1252", "de_DE", "de-DE",
                             "fr_FR.UTF-8", "French", "it_IT.UTF-8", "es_ES.UTF-8", "pl_PL.UTF-8", "nl_NL.UTF-8"}) {
        if (UseLocale(name)) {
            return true;
        }
    }
    return GenerateLocaleWithDecimalComma() && UseLocale("de_DE.UTF-8");
}

// Why a test is skipped then.
inline constexpr char kNoDecimalComma[] =
    "no locale with a decimal comma is installed, and localedef (package locales) could not generate one: what such a "
    "locale does to numbers was not looked at";

}  // namespace tabrin_test
