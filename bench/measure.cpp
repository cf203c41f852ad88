#include "measure.h"

#include <algorithm>

namespace tabrin::bench {

double Quantile(std::vector<double> values, double part) {
    if (values.empty()) {
        return 0;
    }
    std::sort(values.begin(), values.end());
    return values[static_cast<size_t>(part * static_cast<double>(values.size() - 1) + 0.5)];
}

}  // namespace tabrin::bench
