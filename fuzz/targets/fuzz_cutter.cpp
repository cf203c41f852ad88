#include "fuzz/io/cutter_check.h"
#include "fuzz/targets/target.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    return tabrin_fuzz::RunCheck(
        data, size, [](std::string_view bytes) { tabrin_fuzz::CheckCutter(bytes, tabrin_fuzz::ScratchPath()); });
}
