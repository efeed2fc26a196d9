// Latencies, sample by sample: where Google Benchmark's averages would hide the slow ones.
#pragma once

#include <chrono>
#include <cstddef>
#include <utility>
#include <vector>

namespace bench {

using Samples = std::vector<double>;

/// The value below which the given part (0 to 1) of the samples lies. Reorders them.
double Quantile(Samples& samples, double part);
double Median(Samples& samples);

/// Microseconds that one call takes.
template <typename Call>
double Microseconds(Call call) {
    const auto begin = std::chrono::steady_clock::now();
    call();
    return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - begin).count();
}

/// Calls both in turn and alternates the first one, so that other work of the machine affects both equally.
template <typename First, typename Second>
std::pair<Samples, Samples> Interleave(std::size_t rounds, First first, Second second) {
    std::pair<Samples, Samples> samples;
    samples.first.reserve(rounds);
    samples.second.reserve(rounds);
    for (std::size_t round = 0; round < rounds; ++round) {
        if (round % 2 == 0) {
            samples.first.push_back(first());
            samples.second.push_back(second());
        } else {
            samples.second.push_back(second());
            samples.first.push_back(first());
        }
    }
    return samples;
}

} // namespace bench
