#include "instrument/random_source.h"

namespace ORVA {

double RandomSource::Real(double low, double high) {
    const std::lock_guard lock(mutex_);
    const std::uint64_t a = Next();
    const std::uint64_t b = Next();
    const std::uint64_t bits53 = (b << 21U) + (a >> 11U);
    constexpr double kUnit = 0x1p-53;
    return low + static_cast<double>(bits53) * kUnit * (high - low);
}

bool RandomSource::Boolean() { return Real(0.0, 1.0) < 0.5; }

// Multiply and reject: the high word of draw * n is uniform when the low words that favour some results are rejected.
std::int32_t RandomSource::Integer(std::int32_t low, std::int32_t high) {
    const std::lock_guard lock(mutex_);
    const auto n = static_cast<std::uint64_t>(std::int64_t{high} - low + 1); // up to 2^32
    const auto rejectBelow = ((std::uint64_t{1} << 32U) - n) % n;
    std::uint64_t product = 0;
    do {
        product = std::uint64_t{Next()} * n;
    } while (static_cast<std::uint32_t>(product) < rejectBelow);
    return static_cast<std::int32_t>(low + static_cast<std::int64_t>(product >> 32U));
}

RandomSource& RandomSource::OfProcess() {
    static RandomSource source{std::random_device{}()};
    return source;
}

} // namespace ORVA
