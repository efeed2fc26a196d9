#include "tools/virtual_supply/sequencer.h"

#include <cmath>
#include <numbers>

namespace virtual_supply {

namespace {

enum Shape { kSine, kPulse, kRamp, kUp, kDown, kUpDown, kRise, kFall };
enum DelayMode { kFixed, kGrowing, kShrinking };

double Clamped(double seconds) { return std::clamp(seconds, kGroupTimeLimits.minimum, kGroupTimeLimits.maximum); }

/// The exponential rise from 0 to 1: the steeper, the higher the rate, and bent by the power.
double Rise(const ListTemplate& source, double x) {
    const double rate = source.exp_rate;
    const double risen = rate == 0.0 ? x : (1.0 - std::exp(-rate * x)) / (1.0 - std::exp(-rate));
    return std::pow(risen, source.exp_power);
}

double Stair(const ListTemplate& source, int stair) {
    return source.stairs == 1 ? 1.0 : static_cast<double>(stair) / (source.stairs - 1);
}

/// The shape's value, 0 to 1, at group `i` of `count`.
double ValueAt(const ListTemplate& source, int i, int count) {
    const double x = count == 1 ? 0.0 : static_cast<double>(i) / (count - 1); // 0 to 1 over the period
    const double rising = source.symmetry / 100.0;
    switch (source.shape) {
    case kSine:
        return 0.5 + 0.5 * std::sin(2.0 * std::numbers::pi * x);
    case kPulse:
        return i % 2 == 0 ? 1.0 : 0.0;
    case kRamp:
        return x < rising ? x / rising : (rising < 1.0 ? (1.0 - x) / (1.0 - rising) : 1.0);
    case kUp:
        return Stair(source, i);
    case kDown:
        return Stair(source, source.stairs - 1 - i);
    case kUpDown:
        return Stair(source, i < source.stairs ? i : 2 * source.stairs - 1 - i);
    case kRise:
        return Rise(source, x);
    case kFall:
    default:
        return 1.0 - Rise(source, x);
    }
}

int CountOf(const ListTemplate& source) {
    switch (source.shape) {
    case kPulse:
        return 2 * source.pulse_count;
    case kUp:
    case kDown:
        return source.stairs;
    case kUpDown:
        return 2 * source.stairs;
    default:
        return static_cast<int>(std::clamp(std::round(source.period / source.interval), 1.0, double{kMostGroups}));
    }
}

double TimeOf(const ListTemplate& source, int i) {
    if (source.shape != kPulse) {
        return Clamped(source.interval);
    }
    return Clamped(i % 2 == 0 ? source.width : source.period - source.width);
}

} // namespace

std::vector<ListGroup> Generate(const ListTemplate& source) {
    const int count = CountOf(source);
    std::vector<ListGroup> groups;
    groups.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        const double shaped = ValueAt(source, i, count);
        const double level =
            source.minimum + (source.inverted ? 1.0 - shaped : shaped) * (source.maximum - source.minimum);
        const bool voltage_follows = source.object == 0;
        groups.push_back({voltage_follows ? level : source.other_value, voltage_follows ? source.other_value : level,
                          TimeOf(source, i)});
    }
    return groups;
}

std::vector<DelayGroup> Generate(const DelayTemplate& source) {
    std::vector<DelayGroup> groups;
    groups.reserve(static_cast<std::size_t>(source.points));
    for (int i = 0; i < source.points; ++i) {
        const bool on = (i % 2 == 0) == (source.pattern == 1);
        const double step = source.mode == kGrowing ? source.step_time : -source.step_time;
        const double fixed = on ? source.on_time : source.off_time;
        groups.push_back({on, Clamped(source.mode == kFixed ? fixed : source.base_time + i * step)});
    }
    return groups;
}

} // namespace virtual_supply
