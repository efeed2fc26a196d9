#include "bench/samples.h"

#include <algorithm>

namespace bench {

double Quantile(Samples& samples, double part) {
    const auto position = static_cast<std::ptrdiff_t>(part * static_cast<double>(samples.size() - 1));
    std::nth_element(samples.begin(), samples.begin() + position, samples.end());
    return samples[static_cast<std::size_t>(position)];
}

double Median(Samples& samples) { return Quantile(samples, 0.5); }

} // namespace bench
