#include "fuzz/io/scan_check.h"
#include "fuzz/targets/target.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    return tabrin_fuzz::RunCheck(data, size, [](std::string_view bytes) {
        tabrin_fuzz::CheckScan(bytes);
        tabrin_fuzz::CheckDoubles(bytes);
    });
}
