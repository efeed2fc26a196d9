#include "tools/virtual_supply/channel.h"

#include <limits>
#include <utility>

namespace virtual_supply {

Channel::Channel(int number) : index_(static_cast<std::size_t>(number - 1)) { Reset(); }

void Channel::Reset() {
    settings = ChannelSettings{};
    settings.current = kCurrentLimits.at(index_).maximum;
    settings.ovpLevel = kVoltageLimits.at(index_).maximum;
    settings.ocpLevel = kCurrentLimits.at(index_).maximum;
}

/// Returns the current that the load draws at the programmed voltage without a limit.
double Channel::DemandedCurrent() const {
    if (!load_ || settings.voltage == 0.0) {
        return 0.0;
    }
    return *load_ > 0.0 ? settings.voltage / *load_ : std::numeric_limits<double>::infinity();
}

Regulation Channel::RegulatedBy() const {
    return settings.output && DemandedCurrent() > settings.current ? Regulation::ConstantCurrent
                                                                   : Regulation::ConstantVoltage;
}

double Channel::OutputVoltage() const {
    if (!settings.output) {
        return 0.0;
    }
    return RegulatedBy() == Regulation::ConstantVoltage ? settings.voltage : settings.current * load_.value_or(0.0);
}

double Channel::OutputCurrent() const {
    if (!settings.output) {
        return 0.0;
    }
    return RegulatedBy() == Regulation::ConstantVoltage ? DemandedCurrent() : settings.current;
}

double Channel::OutputPower() const { return OutputVoltage() * OutputCurrent(); }

unsigned Channel::Condition() const {
    if (!settings.output) {
        return 0;
    }
    return RegulatedBy() == Regulation::ConstantVoltage ? kVoltageHeld : kVoltageNotHeld;
}

unsigned Channel::TakeEvent() { return std::exchange(event_, 0); }

std::optional<Protection> Channel::DueProtection(TimePoint now) {
    if (settings.ovpEnabled && OutputVoltage() > settings.ovpLevel) {
        return Protection::OverVoltage;
    }
    if (!settings.output || !settings.ocpEnabled || DemandedCurrent() <= settings.ocpLevel) {
        overCurrentSince_.reset();
        return std::nullopt;
    }
    if (!overCurrentSince_) {
        overCurrentSince_ = now;
    }
    if (now - *overCurrentSince_ < std::chrono::duration<double>(settings.ocpDelay)) {
        return std::nullopt;
    }
    return Protection::OverCurrent;
}

std::optional<Protection> Channel::Update(TimePoint now) {
    const auto tripped = DueProtection(now);
    if (tripped) {
        settings.output = false;
    }
    const unsigned condition = Condition();
    event_ |= condition & ~lastCondition_;
    lastCondition_ = condition;
    return tripped;
}

} // namespace virtual_supply
