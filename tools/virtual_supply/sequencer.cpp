#include "tools/virtual_supply/sequencer.h"

#include <cmath>
#include <numbers>

namespace virtual_supply {

namespace {

// The values of kListShapes and kDelayModes.
enum class Shape { Sine, Pulse, Ramp, Up, Down, UpDown, Rise, Fall };
enum class DelayMode { Fixed, Growing, Shrinking };

double Clamped(double seconds) { return std::clamp(seconds, kGroupTimeLimits.minimum, kGroupTimeLimits.maximum); }

/// Returns an exponential rise from 0 to 1 for `x` from 0 to 1: a higher rate is steeper, and the result is raised to
/// the power.
double Rise(const ListTemplate& source, double x) {
    const double rate = source.expRate;
    const double risen = rate == 0.0 ? x : (1.0 - std::exp(-rate * x)) / (1.0 - std::exp(-rate));
    return std::pow(risen, source.expPower);
}

double Stair(const ListTemplate& source, int stair) {
    return source.stairs == 1 ? 1.0 : static_cast<double>(stair) / (source.stairs - 1);
}

/// Returns the value of the shape, 0 to 1, at group `i` of `count`.
double ValueAt(const ListTemplate& source, int i, int count) {
    const double x = count == 1 ? 0.0 : static_cast<double>(i) / (count - 1); // 0 to 1 over the period
    const double rising = source.symmetry / 100.0;
    switch (static_cast<Shape>(source.shape)) {
    case Shape::Sine:
        return 0.5 + 0.5 * std::sin(2.0 * std::numbers::pi * x);
    case Shape::Pulse:
        return i % 2 == 0 ? 1.0 : 0.0;
    case Shape::Ramp:
        return x < rising ? x / rising : (rising < 1.0 ? (1.0 - x) / (1.0 - rising) : 1.0);
    case Shape::Up:
        return Stair(source, i);
    case Shape::Down:
        return Stair(source, source.stairs - 1 - i);
    case Shape::UpDown:
        return Stair(source, i < source.stairs ? i : 2 * source.stairs - 1 - i);
    case Shape::Rise:
        return Rise(source, x);
    case Shape::Fall:
    default:
        return 1.0 - Rise(source, x);
    }
}

int CountOf(const ListTemplate& source) {
    switch (static_cast<Shape>(source.shape)) {
    case Shape::Pulse:
        return 2 * source.pulseCount;
    case Shape::Up:
    case Shape::Down:
        return source.stairs;
    case Shape::UpDown:
        return 2 * source.stairs;
    default:
        return static_cast<int>(std::clamp(std::round(source.period / source.interval), 1.0, double{kMaxGroups}));
    }
}

double TimeOf(const ListTemplate& source, int i) {
    if (static_cast<Shape>(source.shape) != Shape::Pulse) {
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
        const bool voltageFollows = source.object == 0;
        groups.push_back({voltageFollows ? level : source.otherValue, voltageFollows ? source.otherValue : level,
                          TimeOf(source, i)});
    }
    return groups;
}

std::vector<DelayGroup> Generate(const DelayTemplate& source) {
    const auto mode = static_cast<DelayMode>(source.mode);
    std::vector<DelayGroup> groups;
    groups.reserve(static_cast<std::size_t>(source.points));
    for (int i = 0; i < source.points; ++i) {
        const bool on = (i % 2 == 0) == (source.pattern == 1);
        const double step = mode == DelayMode::Growing ? source.stepTime : -source.stepTime;
        const double fixed = on ? source.onTime : source.offTime;
        groups.push_back({on, Clamped(mode == DelayMode::Fixed ? fixed : source.baseTime + i * step)});
    }
    return groups;
}

} // namespace virtual_supply
