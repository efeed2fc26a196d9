// The supply's two sequencers: tables of groups that are gone through in time, and what they are generated from.
//
// Groups are numbered from 0. Numbers that name no group, and tables that would grow too long, are refused with -222.
#pragma once

#include "tools/virtual_supply/channel.h"
#include "tools/virtual_supply/kinds.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <optional>
#include <vector>

namespace virtual_supply {

inline constexpr int kMostGroups = 512;
inline constexpr Range kGroupTimeLimits{0.001, 3600.0}; // s

/// What list mode programs at channel 1, for a time.
struct ListGroup {
    double voltage = 0.0; // V
    double current = 0.0; // A
    double seconds = kGroupTimeLimits.minimum;
};

/// Whether delay mode switches channel 1 on, for a time.
struct DelayGroup {
    bool on = false;
    double seconds = kGroupTimeLimits.minimum;
};

template <class Group>
class GroupTable {
  public:
    const std::vector<Group>& groups() const { return groups_; }
    int size() const { return static_cast<int>(groups_.size()); }

    Group& At(double index) { return groups_[Checked(index, size() - 1)]; }

    /// Puts a group at its defaults in front of the one at `index`; at the end when that is the table's size.
    void Insert(double index) {
        const auto place = Checked(index, std::min(size(), kMostGroups - 1));
        if (size() == kMostGroups) {
            throw Refusal(kDataOutOfRange);
        }
        groups_.insert(groups_.begin() + static_cast<std::ptrdiff_t>(place), Group{});
    }

    void Delete(double index) {
        groups_.erase(groups_.begin() + static_cast<std::ptrdiff_t>(Checked(index, size() - 1)));
    }

    void Clear() { groups_.clear(); }

    /// Puts `generated` in the place of all groups from `index` on.
    void Replace(double index, const std::vector<Group>& generated) {
        const auto place = Checked(index, size());
        if (place + generated.size() > static_cast<std::size_t>(kMostGroups)) {
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

/// Where a sequence stands: group and cycle are numbered from 0.
struct Progress {
    bool running = false;
    double seconds = 0.0; // since it was enabled; stops with the last cycle
    int group = 0;
    int cycle = 0;
};

/// How far a sequence of groups has come `elapsed` seconds after its start. 0 cycles go on for ever.
template <class Group>
Progress ProgressOf(const std::vector<Group>& groups, int cycles, double elapsed) {
    double cycle_time = 0.0;
    for (const Group& group : groups) {
        cycle_time += group.seconds;
    }
    if (groups.empty()) {
        return {};
    }
    const int last_group = static_cast<int>(groups.size()) - 1;
    if (cycles > 0 && elapsed >= cycle_time * cycles) {
        return {false, cycle_time * cycles, last_group, cycles - 1};
    }
    Progress progress{true, elapsed, 0, static_cast<int>(elapsed / cycle_time)};
    double rest = elapsed - cycle_time * progress.cycle;
    while (progress.group < last_group && rest >= groups[static_cast<std::size_t>(progress.group)].seconds) {
        rest -= groups[static_cast<std::size_t>(progress.group)].seconds;
        ++progress.group;
    }
    return progress;
}

/// Notices when a sequence is switched on, and measures the time since.
class Stopwatch {
  public:
    using TimePoint = std::chrono::steady_clock::time_point;

    /// Seconds since `enabled` became true; nothing while it is not.
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

/// What a list is generated from. Keyword settings hold the value of their keyword (keywords.h).
struct ListTemplate {
    int shape = 0;
    int object = 0;           // 0: the voltage follows the shape; 1: the current
    double other_value = 0.0; // what the one of the two that does not follow is held at
    double maximum = 1.0;
    double minimum = 0.0;
    double period = 1.0;   // s
    double interval = 0.1; // s, a group's time
    int cycles = 1;        // kept and read back
    bool inverted = false;
    double width = 0.5; // s, the high time of a pulse
    int pulse_count = 1;
    int symmetry = 50; // percent of a ramp's period in which it rises
    int stairs = 10;
    int exp_power = 1;
    int exp_rate = 1;
};

/// The groups that a template stands for: one per stair, two per pulse, else one per interval of the period.
std::vector<ListGroup> Generate(const ListTemplate& source);

/// What delay groups are generated from: on and off in turn.
struct DelayTemplate {
    int mode = 0;    // 0: fixed times; 1, 2: times that grow or shrink by a step from group to group
    int pattern = 0; // 0: off first; 1: on first
    int points = 2;
    double on_time = 1.0;   // s, fixed mode
    double off_time = 1.0;  // s, fixed mode
    double base_time = 1.0; // s, the first group's otherwise
    double step_time = 0.1; // s
};

std::vector<DelayGroup> Generate(const DelayTemplate& source);

} // namespace virtual_supply
