// The time during which a supply gives no readings.
#pragma once

#include <string>
#include <utility>

#include "tools/tarnexctl/number_text.h"

namespace tarnexctl {

class Outage {
  public:
    /// Notes a failure at `time` in s. Returns whether it is the first one after a success.
    bool Begin(double time, const std::string& why) {
        const bool first = text_.empty();
        if (first) {
            text_ = "no readings since " + Fixed(time, 1) + " s: " + why;
        }
        return first;
    }
    /// Notes a success. Returns whether a failure preceded it.
    bool End() { return !std::exchange(text_, {}).empty(); }
    /// Returns since when there are no readings, and why; empty while there are.
    [[nodiscard]] const std::string& Text() const { return text_; }

  private:
    std::string text_;
};

} // namespace tarnexctl
