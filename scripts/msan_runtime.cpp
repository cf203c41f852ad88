// For Clang's memory sanitizer: what these two functions of the C++ runtime write counts as written, although the
// runtime is not compiled with the sanitizer. The linker has the library call them in place of the runtime's own
// (option --wrap).
#include <sanitizer/msan_interface.h>

#include <charconv>
#include <cstddef>

extern "C" {

std::to_chars_result __real__ZSt8to_charsPcS_dSt12chars_formati(char* first, char* last, double value,
                                                                std::chars_format format, int precision);
std::from_chars_result __real__ZSt10from_charsPKcS0_RdSt12chars_format(const char* first, const char* last,
                                                                       double& value, std::chars_format format);

std::to_chars_result __wrap__ZSt8to_charsPcS_dSt12chars_formati(char* first, char* last, double value,
                                                                std::chars_format format, int precision) {
    const auto result = __real__ZSt8to_charsPcS_dSt12chars_formati(first, last, value, format, precision);
    __msan_unpoison(&result, sizeof result);
    __msan_unpoison(first, static_cast<size_t>(result.ptr - first));
    return result;
}

std::from_chars_result __wrap__ZSt10from_charsPKcS0_RdSt12chars_format(const char* first, const char* last,
                                                                       double& value, std::chars_format format) {
    const auto result = __real__ZSt10from_charsPKcS0_RdSt12chars_format(first, last, value, format);
    __msan_unpoison(&result, sizeof result);
    if (result.ec == std::errc()) {
        __msan_unpoison(&value, sizeof value);
    }
    return result;
}

}  // extern "C"
