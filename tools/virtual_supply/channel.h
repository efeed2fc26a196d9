// One output of the supply: its settings, what its load makes of them, and its protections.
#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <optional>

namespace virtual_supply {

inline constexpr int kChannelCount = 2;

/// Lowest and highest value that is accepted, both included.
struct Range {
    double minimum;
    double maximum;
};

inline constexpr std::array<Range, kChannelCount> kVoltageLimits{{{0.0, 22.0}, {0.0, 5.5}}}; // V
inline constexpr std::array<Range, kChannelCount> kCurrentLimits{{{0.0, 5.5}, {0.0, 16.8}}}; // A
inline constexpr Range kProtectionDelayLimits{0.0, 3600.0};                                  // s

/// What can be set per channel, at its values after power-on and "*RST". Keyword settings hold the value of their
/// keyword (keywords.h). Remote sense, delay mode, power-on state, pairing, tracking, off mode, current range and
/// current rate are kept and read back; they change nothing at the output.
struct ChannelSettings {
    bool output = false;
    double voltage = 0.0;   // V
    double current = 0.0;   // A; starts at the channel's maximum
    double ovp_level = 0.0; // V; starts at the channel's maximum
    bool ovp_enabled = false;
    double ocp_level = 0.0; // A; starts at the channel's maximum
    bool ocp_enabled = false;
    double ocp_delay = 0.0; // s
    int ocp_delay_mode = 0;
    bool remote_sense = false;
    int power_on_state = 0;
    int pair_mode = 0;
    bool tracking = false;
    int off_mode = 0;
    int current_range = 0;
    int current_rate = 0;
};

enum class Regulation { kConstantVoltage, kConstantCurrent };
enum class Protection { kOverVoltage, kOverCurrent };

/// Bits of a channel's questionable condition and event registers. Both are clear while the output is off.
inline constexpr unsigned kVoltageNotHeld = 0x1; // on, in constant current
inline constexpr unsigned kVoltageHeld = 0x2;    // on, in constant voltage

class Channel {
  public:
    using TimePoint = std::chrono::steady_clock::time_point;

    /// Channel 1 or 2, at its power-on settings, with nothing connected.
    explicit Channel(int number);

    ChannelSettings settings;

    /// Back to the power-on settings. The load stays connected, the event register keeps what it has latched.
    void Reset();

    /// The resistance (ohms, not negative, 0 is a short circuit) at the output; none: nothing is connected.
    void Connect(std::optional<double> ohms) { load_ = ohms; }

    /// What the output does now. Off: 0 V, 0 A, constant voltage.
    Regulation RegulatedBy() const;
    double OutputVoltage() const; // V
    double OutputCurrent() const; // A
    double OutputPower() const;   // W

    unsigned Condition() const;

    /// The condition bits that rose since the last call.
    unsigned TakeEvent();
    void ClearEvent() { event_ = 0; }

    /// Lets the protections and the event register see the present state; to be called before and after every change
    /// of settings or load. Says which protection has just switched the output off.
    std::optional<Protection> Update(TimePoint now);

  private:
    double DemandedCurrent() const;
    std::optional<Protection> DueProtection(TimePoint now);

    std::size_t index_;
    std::optional<double> load_;
    std::optional<TimePoint> over_current_since_;
    unsigned last_condition_ = 0;
    unsigned event_ = 0;
};

} // namespace virtual_supply
