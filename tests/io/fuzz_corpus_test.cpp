#include "fuzz_corpus.h"

#include "fuzz/io/cutter_check.h"
#include "fuzz/io/scan_check.h"

namespace tabrin_fuzz {
namespace {

TEST(FuzzCorpus, AnyLinesCutIntoStatements) {
    const std::string path = ReplayPath("fuzz_cutter");
    ReplaySavedInputs("fuzz_cutter", [&](std::string_view bytes) { CheckCutter(bytes, path); });
}

TEST(FuzzCorpus, ScanningHelpersAgreeWithTheirRules) {
    ReplaySavedInputs("fuzz_scan", [](std::string_view bytes) { CheckScan(bytes); });
}

}  // namespace
}  // namespace tabrin_fuzz
