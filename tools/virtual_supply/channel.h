// One output of the supply: settings, load, regulation and protections.
#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <optional>

#include "tools/virtual_supply/keywords.h"

namespace virtual_supply {

/// The lowest and the highest accepted value.
struct Range {
    double minimum;
    double maximum;
};

inline constexpr auto kVoltageLimits = std::to_array<Range>({{0.0, 22.0}, {0.0, 5.5}}); // V
inline constexpr auto kCurrentLimits = std::to_array<Range>({{0.0, 5.5}, {0.0, 16.8}}); // A
inline constexpr Range kProtectionDelayLimits{0.0, 3600.0};                             // s

inline constexpr int kChannelCount = static_cast<int>(kVoltageLimits.size());
static_assert(kCurrentLimits.size() == kChannelCount && kChannels.size() == kChannelCount);

/// The settings of a channel, with their values after power-on and "*RST". A keyword setting holds the value of its
/// keyword (keywords.h). Remote sense, delay mode, power-on state, pairing, tracking, off mode, current range and
/// current rate can be set and read back, and have no effect on the output.
struct ChannelSettings {
    bool output = false;
    double voltage = 0.0;  // V
    double current = 0.0;  // A; starts at the channel's maximum
    double ovpLevel = 0.0; // V; starts at the channel's maximum
    bool ovpEnabled = false;
    double ocpLevel = 0.0; // A; starts at the channel's maximum
    bool ocpEnabled = false;
    double ocpDelay = 0.0; // s
    int ocpDelayMode = 0;
    bool remoteSense = false;
    int powerOnState = 0;
    int pairMode = 0;
    bool tracking = false;
    int offMode = 0;
    int currentRange = 0;
    int currentRate = 0;
};

enum class Regulation { ConstantVoltage, ConstantCurrent };
enum class Protection { OverVoltage, OverCurrent };

/// Bits of a channel's questionable condition and event registers. Both are clear while the output is off.
inline constexpr unsigned kVoltageNotHeld = 0x1; // on, in constant current
inline constexpr unsigned kVoltageHeld = 0x2;    // on, in constant voltage

class Channel {
  public:
    using TimePoint = std::chrono::steady_clock::time_point;

    /// Creates the channel of a number, counted from 1, with its power-on settings and without a load.
    explicit Channel(int number);

    ChannelSettings settings;

    /// Restores the power-on settings. The load and the event register stay as they are.
    void Reset();

    /// Connects a resistance in ohms (0 is a short circuit, negative values are invalid), or disconnects the load.
    void Connect(std::optional<double> ohms) { load_ = ohms; }

    /// The present state of the output. An output that is off has 0 V, 0 A and constant voltage.
    Regulation RegulatedBy() const;
    double OutputVoltage() const; // V
    double OutputCurrent() const; // A
    double OutputPower() const;   // W

    unsigned Condition() const;

    /// Returns the condition bits that were set since the last call.
    unsigned TakeEvent();
    void ClearEvent() { event_ = 0; }

    /// Updates the protections and the event register. Returns the protection that switched the output off, if any.
    /// The caller must call it before and after every change of settings or load.
    std::optional<Protection> Update(TimePoint now);

  private:
    double DemandedCurrent() const;
    std::optional<Protection> DueProtection(TimePoint now);

    std::size_t index_;
    std::optional<double> load_;
    std::optional<TimePoint> overCurrentSince_;
    unsigned lastCondition_ = 0;
    unsigned event_ = 0;
};

} // namespace virtual_supply
