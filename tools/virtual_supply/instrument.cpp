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
    RunList(now);
    RunDelay(now);
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
    list_template = ListTemplate{};
    delay_template = DelayTemplate{};
    list_.Clear();
    delay_.Clear();
    list_progress_ = {};
    delay_progress_ = {};
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

// Both sequencers drive channel 1. They are off again when their last cycle is over, and leave the output as their end
// state says.

void Instrument::RunList(std::chrono::steady_clock::time_point now) {
    const auto elapsed = list_watch_.Elapsed(common.list_enabled, now);
    if (!elapsed) {
        list_progress_.running = false;
        return;
    }
    list_progress_ = ProgressOf(list_.groups(), common.list_cycles, *elapsed);
    if (list_.size() > 0) {
        const ListGroup& group = list_.At(list_progress_.group);
        channel(1).settings.voltage = group.voltage;
        channel(1).settings.current = group.current;
    }
    if (!list_progress_.running) {
        common.list_enabled = false;
        channel(1).settings.output = channel(1).settings.output && common.list_end_state != 0;
    }
}

void Instrument::RunDelay(std::chrono::steady_clock::time_point now) {
    const auto elapsed = delay_watch_.Elapsed(common.delay_enabled, now);
    if (!elapsed) {
        delay_progress_.running = false;
        return;
    }
    delay_progress_ = ProgressOf(delay_.groups(), common.delay_cycles, *elapsed);
    bool& output = channel(1).settings.output;
    if (delay_.size() > 0) {
        output = delay_.At(delay_progress_.group).on;
    }
    if (!delay_progress_.running) {
        constexpr int kOff = 0;
        constexpr int kOn = 1;
        common.delay_enabled = false;
        output = common.delay_end_state == kOn || (common.delay_end_state != kOff && output);
    }
}

namespace {

Reply ProgressReply(const Progress& progress, int running_word) {
    return {static_cast<double>(progress.running ? running_word : 0), progress.seconds,
            static_cast<double>(progress.group), static_cast<double>(progress.cycle)};
}

} // namespace

Reply Instrument::ListStatus(const Arguments& /*arguments*/) {
    if (!list_progress_.running && list_.size() > 0) {
        return {1.0, list_progress_.seconds, static_cast<double>(list_progress_.group),
                static_cast<double>(list_progress_.cycle)}; // ready
    }
    return ProgressReply(list_progress_, 2);
}

Reply Instrument::ListGroupCount(const Arguments& /*arguments*/) { return {static_cast<double>(list_.size())}; }

Reply Instrument::InsertListGroup(const Arguments& arguments) {
    list_.Insert(arguments.values.at(0));
    return {};
}

Reply Instrument::DeleteListGroup(const Arguments& arguments) {
    list_.Delete(arguments.values.at(0));
    return {};
}

Reply Instrument::ClearListGroups(const Arguments& /*arguments*/) {
    list_.Clear();
    return {};
}

Reply Instrument::SetListGroup(const Arguments& arguments) {
    const auto& values = arguments.values;
    list_.At(values.at(0)) = {values.at(1), values.at(2), values.at(3)};
    return {};
}

Reply Instrument::GetListGroup(const Arguments& arguments) {
    const ListGroup& group = list_.At(arguments.values.at(0));
    return {group.voltage, group.current, group.seconds};
}

Reply Instrument::SetListObject(const Arguments& arguments) {
    list_template.object = static_cast<int>(arguments.values.at(0));
    list_template.other_value = arguments.values.at(1);
    return {};
}

Reply Instrument::GetListObject(const Arguments& /*arguments*/) {
    return {static_cast<double>(list_template.object), list_template.other_value};
}

Reply Instrument::ListTemplatePoints(const Arguments& /*arguments*/) {
    return {static_cast<double>(Generate(list_template).size())};
}

Reply Instrument::ConstructList(const Arguments& arguments) {
    list_.Replace(arguments.values.at(0), Generate(list_template));
    return {};
}

Reply Instrument::DelayStatus(const Arguments& /*arguments*/) { return ProgressReply(delay_progress_, 1); }

Reply Instrument::DelayGroupCount(const Arguments& /*arguments*/) { return {static_cast<double>(delay_.size())}; }

Reply Instrument::InsertDelayGroup(const Arguments& arguments) {
    delay_.Insert(arguments.values.at(0));
    return {};
}

Reply Instrument::DeleteDelayGroup(const Arguments& arguments) {
    delay_.Delete(arguments.values.at(0));
    return {};
}

Reply Instrument::ClearDelayGroups(const Arguments& /*arguments*/) {
    delay_.Clear();
    return {};
}

Reply Instrument::SetDelayGroup(const Arguments& arguments) {
    const auto& values = arguments.values;
    delay_.At(values.at(0)) = {values.at(1) != 0.0, values.at(2)};
    return {};
}

Reply Instrument::GetDelayGroup(const Arguments& arguments) {
    const DelayGroup& group = delay_.At(arguments.values.at(0));
    return {group.on ? 1.0 : 0.0, group.seconds};
}

Reply Instrument::ConstructDelay(const Arguments& arguments) {
    delay_.Replace(arguments.values.at(0), Generate(delay_template));
    return {};
}

Reply Instrument::EnableTriggerInput(const Arguments& arguments) {
    common.trigger_inputs.at(static_cast<std::size_t>(arguments.values.at(0)) - 1) = arguments.values.at(1) != 0.0;
    return {};
}

Reply Instrument::TriggerInputEnabled(const Arguments& arguments) {
    return {common.trigger_inputs.at(static_cast<std::size_t>(arguments.values.at(0)) - 1) ? 1.0 : 0.0};
}

} // namespace virtual_supply
