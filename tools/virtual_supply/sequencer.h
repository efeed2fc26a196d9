// The two sequencers of the supply: tables of groups that run one after another, and the templates that generate them.
//
// Groups are numbered from 0. An invalid group number and a table beyond kMaxGroups are refused with -222.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <optional>
#include <vector>

#include "tools/virtual_supply/channel.h"
#include "tools/virtual_supply/kinds.h"

namespace virtual_supply {

inline constexpr int kMaxGroups = 512;
inline constexpr Range kGroupTimeLimits{0.001, 3600.0}; // s

/// Voltage and current limit of channel 1 for a time, in list mode.
struct ListGroup {
    double voltage = 0.0; // V
    double current = 0.0; // A
    double seconds = kGroupTimeLimits.minimum;
};

/// State of the output of channel 1 for a time, in delay mode.
struct DelayGroup {
    bool on = false;
    double seconds = kGroupTimeLimits.minimum;
};

template <typename Group>
class GroupTable {
  public:
    const std::vector<Group>& Groups() const { return groups_; }
    int size() const { return static_cast<int>(groups_.size()); }

    Group& At(double index) { return groups_[Checked(index, size() - 1)]; }

    /// Inserts a group with default values before the one at `index`, or at the end when `index` is the size.
    void Insert(double index) {
        const auto place = Checked(index, std::min(size(), kMaxGroups - 1));
        if (size() == kMaxGroups) {
            throw Refusal(kDataOutOfRange);
        }
        groups_.insert(groups_.begin() + static_cast<std::ptrdiff_t>(place), Group{});
    }

    void Delete(double index) {
        groups_.erase(groups_.begin() + static_cast<std::ptrdiff_t>(Checked(index, size() - 1)));
    }

    void Clear() { groups_.clear(); }

    /// Replaces all groups from `index` on with `generated`.
    void Replace(double index, const std::vector<Group>& generated) {
        const auto place = Checked(index, size());
        if (place + generated.size() > static_cast<std::size_t>(kMaxGroups)) {
            throw Refusal(kDataOutOfRange);
        }
        groups_.resize(place);
        groups_.insert(groups_.end(), generated.begin(), generated.end());
    }

  private:
    static std::size_t Checked(double index, int last) {
        if (index < 0.0 || index > last) {
            throw Refusal(kDataOutOfRange);
        }
        return static_cast<std::size_t>(index);
    }

    std::vector<Group> groups_;
};

/// The position of a sequence. Group and cycle are numbered from 0.
struct Progress {
    bool running = false;
    double seconds = 0.0; // since the start; constant after the last cycle
    int group = 0;
    int cycle = 0;
};

/// Returns the position of a sequence `elapsed` seconds after its start. 0 cycles run without end.
template <typename Group>
Progress ProgressOf(const std::vector<Group>& groups, int cycles, double elapsed) {
    double cycleTime = 0.0;
    for (const Group& group : groups) {
        cycleTime += group.seconds;
    }
    if (groups.empty()) {
        return {};
    }
    const int lastGroup = static_cast<int>(groups.size()) - 1;
    if (cycles > 0 && elapsed >= cycleTime * cycles) {
        return {false, cycleTime * cycles, lastGroup, cycles - 1};
    }
    Progress progress{true, elapsed, 0, static_cast<int>(elapsed / cycleTime)};
    double rest = elapsed - cycleTime * progress.cycle;
    while (progress.group < lastGroup && rest >= groups[static_cast<std::size_t>(progress.group)].seconds) {
        rest -= groups[static_cast<std::size_t>(progress.group)].seconds;
        ++progress.group;
    }
    return progress;
}

/// Measures the time since a sequence was enabled.
class Stopwatch {
  public:
    using TimePoint = std::chrono::steady_clock::time_point;

    /// Returns the seconds since `enabled` became true; nothing while it is false.
    std::optional<double> Elapsed(bool enabled, TimePoint now) {
        if (!enabled) {
            since_.reset();
            return std::nullopt;
        }
        if (!since_) {
            since_ = now;
        }
        return std::chrono::duration<double>(now - *since_).count();
    }

  private:
    std::optional<TimePoint> since_;
};

/// The parameters of a generated list. A keyword setting holds the value of its keyword (keywords.h).
struct ListTemplate {
    int shape = 0;
    int object = 0;          // 0: the voltage follows the shape; 1: the current
    double otherValue = 0.0; // the constant value of the other one
    double maximum = 1.0;
    double minimum = 0.0;
    double period = 1.0;   // s
    double interval = 0.1; // s, a group's time
    int cycles = 1;        // can be set and read back; has no effect
    bool inverted = false;
    double width = 0.5; // s, the high time of a pulse
    int pulseCount = 1;
    int symmetry = 50; // percent of a ramp's period in which it rises
    int stairs = 10;
    int expPower = 1;
    int expRate = 1;
};

/// Returns the groups of a template: one per stair, two per pulse, or one per interval of the period.
std::vector<ListGroup> Generate(const ListTemplate& source);

/// The parameters of generated delay groups, which are on and off alternately.
struct DelayTemplate {
    int mode = 0;    // 0: fixed times; 1, 2: times that grow or shrink by a step per group
    int pattern = 0; // 0: off first; 1: on first
    int points = 2;
    double onTime = 1.0;   // s, fixed mode
    double offTime = 1.0;  // s, fixed mode
    double baseTime = 1.0; // s, of the first group in the other modes
    double stepTime = 0.1; // s
};

std::vector<DelayGroup> Generate(const DelayTemplate& source);

} // namespace virtual_supply
