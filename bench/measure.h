// Times, and what is taken from many of them.
#pragma once

#include <chrono>
#include <cstddef>
#include <ctime>
#include <vector>

namespace tabrin::bench {

template <typename Work>
double WallSeconds(const Work& work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

// What others do on the machine does not count here, nor does waiting for a disk.
template <typename Work>
double ProcessorSeconds(const Work& work) {
    const std::clock_t begin = std::clock();
    work();
    return static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
}

// The value below which the given part of the values lies: 0.5 for the median.
double Quantile(std::vector<double> values, double part);

}  // namespace tabrin::bench
