// Times, and what is taken from many of them.
#pragma once

#include <chrono>
#include <cstddef>
#include <vector>

namespace tabrin::bench {

template <typename Work>
double WallSeconds(const Work& work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

// What others do on the machine does not count here, nor does waiting for a disk: where the system has a clock for that
// which is fine enough. kProcessorTimes says what it is.
double ProcessorClock();
extern const char* const kProcessorTimes;

template <typename Work>
double ProcessorSeconds(const Work& work) {
    const double begin = ProcessorClock();
    work();
    return ProcessorClock() - begin;
}

// The value below which the given part of the values lies: 0.5 for the median.
double Quantile(std::vector<double> values, double part);

}  // namespace tabrin::bench
