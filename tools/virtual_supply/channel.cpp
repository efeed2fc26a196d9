#include "tools/virtual_supply/channel.h"

#include <limits>
#include <utility>

namespace virtual_supply {

Channel::Channel(int number) : index_(static_cast<std::size_t>(number - 1)) { Reset(); }

void Channel::Reset() {
    settings = ChannelSettings{};
    settings.current = kCurrentLimits.at(index_).maximum;
    settings.ovp_level = kVoltageLimits.at(index_).maximum;
    settings.ocp_level = kCurrentLimits.at(index_).maximum;
}

/// The current that the load draws at the set voltage when nothing limits it.
double Channel::DemandedCurrent() const {
    if (!load_ || settings.voltage == 0.0) {
        return 0.0;
    }
    return *load_ > 0.0 ? settings.voltage / *load_ : std::numeric_limits<double>::infinity();
}

Regulation Channel::RegulatedBy() const {
    return settings.output && DemandedCurrent() > settings.current ? Regulation::kConstantCurrent
                                                                   : Regulation::kConstantVoltage;
}

double Channel::OutputVoltage() const {
    if (!settings.output) {
        return 0.0;
    }
    return RegulatedBy() == Regulation::kConstantVoltage ? settings.voltage : settings.current * load_.value_or(0.0);
}

double Channel::OutputCurrent() const {
    if (!settings.output) {
        return 0.0;
    }
    return RegulatedBy() == Regulation::kConstantVoltage ? DemandedCurrent() : settings.current;
}

double Channel::OutputPower() const { return OutputVoltage() * OutputCurrent(); }

unsigned Channel::Condition() const {
    if (!settings.output) {
        return 0;
    }
    return RegulatedBy() == Regulation::kConstantVoltage ? kVoltageHeld : kVoltageNotHeld;
}

unsigned Channel::TakeEvent() { return std::exchange(event_, 0); }

std::optional<Protection> Channel::DueProtection(TimePoint now) {
    if (settings.ovp_enabled && OutputVoltage() > settings.ovp_level) {
        return Protection::kOverVoltage;
    }
    if (!settings.output || !settings.ocp_enabled || DemandedCurrent() <= settings.ocp_level) {
        over_current_since_.reset();
        return std::nullopt;
    }
    if (!over_current_since_) {
        over_current_since_ = now;
    }
    if (now - *over_current_since_ < std::chrono::duration<double>(settings.ocp_delay)) {
        return std::nullopt;
    }
    return Protection::kOverCurrent;
}

std::optional<Protection> Channel::Update(TimePoint now) {
    const auto tripped = DueProtection(now);
    if (tripped) {
        settings.output = false;
    }
    const unsigned condition = Condition();
    event_ |= condition & ~last_condition_;
    last_condition_ = condition;
    return tripped;
}

} // namespace virtual_supply
