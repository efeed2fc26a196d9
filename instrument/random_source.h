#pragma once

#include <cstdint>
#include <mutex>
#include <random>

namespace ORVA {

/// Draws from a 32-bit Mersenne Twister by formulas of its own, so that a seed gives the same values on every platform.
/// Thread-safe.
class RandomSource {
  public:
    explicit RandomSource(std::uint32_t seed) : engine_(seed) {}

    double Real(double low, double high);                      ///< in [low, high)
    bool Boolean();                                            ///< true in half of the draws
    std::int32_t Integer(std::int32_t low, std::int32_t high); ///< both ends included

    /// The source that all simulators of the process share, seeded from the platform's random device.
    static RandomSource& OfProcess();

  private:
    std::uint32_t Next() { return static_cast<std::uint32_t>(engine_()); }

    std::mutex mutex_;
    std::mt19937 engine_;
};

} // namespace ORVA
