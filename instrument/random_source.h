#pragma once

#include <cstdint>
#include <mutex>
#include <random>

namespace ORVA {

/// Random numbers from a 32-bit Mersenne Twister with formulas that give the same values for a seed on every platform.
/// Thread-safe.
class RandomSource {
  public:
    explicit RandomSource(std::uint32_t seed) : engine_(seed) {}

    double Real(double low, double high);                      ///< in [low, high)
    bool Boolean();                                            ///< true in half of the draws
    std::int32_t Integer(std::int32_t low, std::int32_t high); ///< both ends included

    /// Returns the source of all simulators of the process, seeded from the platform's random device.
    static RandomSource& OfProcess();

  private:
    std::uint32_t Next() { return static_cast<std::uint32_t>(engine_()); }

    std::mutex mutex_;
    std::mt19937 engine_;
};

} // namespace ORVA
