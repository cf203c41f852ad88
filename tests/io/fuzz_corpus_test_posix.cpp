// Apart from the others, because it takes a C library whose conversions are exact.
#include "fuzz/io/scan_check.h"
#include "fuzz_corpus.h"

namespace tabrin_fuzz {
namespace {

TEST(FuzzCorpus, NumbersAgreeWithTheCLibrary) {
    ReplaySavedInputs("fuzz_scan", [](std::string_view bytes) { CheckDoubles(bytes); });
}

}  // namespace
}  // namespace tabrin_fuzz
