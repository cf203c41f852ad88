#include "measure.h"

namespace tabrin::bench {

// GetProcessTimes goes by the ticks of the scheduler, 10 ms and more, which is longer than what is measured here.
const char* const kProcessorTimes = "times on the wall (the clock of the processor is too coarse here)";

double ProcessorClock() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

}  // namespace tabrin::bench
