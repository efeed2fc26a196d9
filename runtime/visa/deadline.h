// A point on the monotonic clock by which a call must finish.
#pragma once

#include <algorithm>
#include <chrono>
#include <limits>

#include "platform/visa.h"

namespace runtime {

class Deadline {
  public:
    using Clock = std::chrono::steady_clock;

    /// VI_TMO_IMMEDIATE has passed at once, VI_TMO_INFINITE never passes.
    explicit Deadline(ViUInt32 milliseconds)
        : at_(milliseconds == VI_TMO_INFINITE ? Clock::time_point::max()
                                              : Clock::now() + std::chrono::milliseconds(milliseconds)) {}

    [[nodiscard]] bool IsInfinite() const { return at_ == Clock::time_point::max(); }
    [[nodiscard]] bool HasPassed() const { return !IsInfinite() && Clock::now() >= at_; }
    [[nodiscard]] Clock::time_point At() const { return at_; }

    /// Returns the remaining time for poll() in ms, rounded up and at most INT_MAX; -1 without a limit.
    [[nodiscard]] int PollTime() const {
        if (IsInfinite()) {
            return -1;
        }
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(at_ - Clock::now()).count();
        return static_cast<int>(std::clamp<decltype(left)>(left, 0, std::numeric_limits<int>::max()));
    }

    /// Returns the end of the first of `parts` equal parts of the remaining time.
    [[nodiscard]] Deadline Share(std::size_t parts) const {
        if (IsInfinite() || parts <= 1) {
            return *this;
        }
        const auto now = Clock::now();
        Deadline share = *this;
        share.at_ = now + std::max(at_ - now, Clock::duration::zero()) / static_cast<Clock::rep>(parts);
        return share;
    }

  private:
    Clock::time_point at_;
};

} // namespace runtime
