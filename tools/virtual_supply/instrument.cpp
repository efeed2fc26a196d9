#include "tools/virtual_supply/instrument.h"

#include <cstddef>
#include <utility>

namespace virtual_supply {

namespace {

constexpr std::array<ScpiError, kChannelCount> kOverVoltageTrips{{
    {-300, "Device-specific error;Over-voltage protection tripped on CH1"},
    {-300, "Device-specific error;Over-voltage protection tripped on CH2"},
}};
constexpr std::array<ScpiError, kChannelCount> kOverCurrentTrips{{
    {-300, "Device-specific error;Over-current protection tripped on CH1"},
    {-300, "Device-specific error;Over-current protection tripped on CH2"},
}};

} // namespace

Instrument::Instrument(std::string identity, Clock clock) : identity_(std::move(identity)), clock_(std::move(clock)) {}

void Instrument::Update() {
    const auto now = clock_();
    for (std::size_t i = 0; i < channels_.size(); ++i) {
        if (const auto tripped = channels_.at(i).Update(now)) {
            status.Report(*tripped == Protection::kOverVoltage ? kOverVoltageTrips.at(i) : kOverCurrentTrips.at(i));
        }
    }
}

Reply Instrument::Identify(const Arguments& /*arguments*/) { return {identity_}; }

Reply Instrument::Clear(const Arguments& /*arguments*/) {
    status.Clear();
    for (Channel& each : channels_) {
        each.ClearEvent();
    }
    return {};
}

Reply Instrument::Reset(const Arguments& /*arguments*/) {
    common = CommonSettings{};
    for (Channel& each : channels_) {
        each.Reset();
    }
    return {};
}

Reply Instrument::EventStatus(const Arguments& /*arguments*/) {
    return {static_cast<double>(status.TakeEventStatus())};
}

// Every command is complete when the next one is read.
Reply Instrument::OperationComplete(const Arguments& /*arguments*/) { return {1.0}; }

Reply Instrument::NextError(const Arguments& /*arguments*/) {
    const ScpiError error = status.TakeError();
    return {static_cast<double>(error.code), '"' + std::string(error.text) + '"'};
}

Reply Instrument::QuestionableCondition(const Arguments& arguments) {
    return {static_cast<double>(channel(arguments.channel).Condition())};
}

Reply Instrument::QuestionableEvent(const Arguments& arguments) {
    return {static_cast<double>(channel(arguments.channel).TakeEvent())};
}

// The first argument is the word ALL, which says nothing more.
Reply Instrument::SwitchAllOutputs(const Arguments& arguments) {
    for (Channel& each : channels_) {
        each.settings.output = arguments.values.at(1) != 0.0;
    }
    return {};
}

Reply Instrument::RegulationMode(const Arguments& arguments) {
    return {channel(arguments.channel).RegulatedBy() == Regulation::kConstantVoltage ? 0.0 : 1.0};
}

Reply Instrument::MeasureVoltage(const Arguments& arguments) { return {channel(arguments.channel).OutputVoltage()}; }

Reply Instrument::MeasureCurrent(const Arguments& arguments) { return {channel(arguments.channel).OutputCurrent()}; }

Reply Instrument::MeasurePower(const Arguments& arguments) { return {channel(arguments.channel).OutputPower()}; }

Reply Instrument::MeasureAll(const Arguments& arguments) {
    const Channel& measured = channel(arguments.channel);
    return {measured.OutputVoltage(), measured.OutputCurrent(), measured.OutputPower()};
}

} // namespace virtual_supply
