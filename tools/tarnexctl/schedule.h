// The times of repeated readings.
#pragma once

#include <algorithm>
#include <cmath>

namespace tarnexctl {

/// Times that are whole multiples of an interval, so that the duration of the readings does not add up. Times that a
/// slow reading has missed are left out.
class Schedule {
  public:
    /// `interval` in s, above 0.
    explicit Schedule(double interval) : interval_(interval) {}

    /// Returns the time in s of the next reading: 0 first, later the first multiple that is not before `now`.
    double Next(double now) {
        multiple_ = std::max(multiple_ + 1.0, multiple_ < 0.0 ? 0.0 : std::ceil(now / interval_));
        return multiple_ * interval_;
    }

  private:
    double interval_;
    double multiple_ = -1.0;
};

} // namespace tarnexctl
