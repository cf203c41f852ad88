#include <ctime>

#include "measure.h"

namespace tabrin::bench {

const char* const kProcessorTimes = "processor times";

double ProcessorClock() {
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

}  // namespace tabrin::bench
