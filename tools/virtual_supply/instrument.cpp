#include "tools/virtual_supply/instrument.h"

#include <cstddef>
#include <utility>

namespace virtual_supply {

namespace {

constexpr auto kOverVoltageTrips = std::to_array<ScpiError>({
    {-300, "Device-specific error;Over-voltage protection tripped on CH1"},
    {-300, "Device-specific error;Over-voltage protection tripped on CH2"},
});
constexpr auto kOverCurrentTrips = std::to_array<ScpiError>({
    {-300, "Device-specific error;Over-current protection tripped on CH1"},
    {-300, "Device-specific error;Over-current protection tripped on CH2"},
});
static_assert(kOverVoltageTrips.size() == kChannelCount && kOverCurrentTrips.size() == kChannelCount);

} // namespace

Instrument::Instrument(std::string identity, Clock clock) : identity_(std::move(identity)), clock_(std::move(clock)) {}

void Instrument::Update() {
    const auto now = clock_();
    RunList(now);
    RunDelay(now);
    for (std::size_t i = 0; i < channels_.size(); ++i) {
        if (const auto tripped = channels_.at(i).Update(now)) {
            status.Report(*tripped == Protection::OverVoltage ? kOverVoltageTrips.at(i) : kOverCurrentTrips.at(i));
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
    listTemplate = ListTemplate{};
    delayTemplate = DelayTemplate{};
    list_.Clear();
    delay_.Clear();
    listProgress_ = {};
    delayProgress_ = {};
    for (Channel& each : channels_) {
        each.Reset();
    }
    return {};
}

Reply Instrument::EventStatus(const Arguments& /*arguments*/) {
    return {static_cast<double>(status.TakeEventStatus())};
}

// Commands run one after another, so every earlier command is complete.
Reply Instrument::OperationComplete(const Arguments& /*arguments*/) { return {1.0}; }

Reply Instrument::NextError(const Arguments& /*arguments*/) {
    const ScpiError error = status.TakeError();
    return {static_cast<double>(error.code), '"' + std::string(error.text) + '"'};
}

Reply Instrument::QuestionableCondition(const Arguments& arguments) {
    return {static_cast<double>(ChannelAt(arguments.channel).Condition())};
}

Reply Instrument::QuestionableEvent(const Arguments& arguments) {
    return {static_cast<double>(ChannelAt(arguments.channel).TakeEvent())};
}

// The first argument is the keyword ALL, which is the only accepted one.
Reply Instrument::SwitchAllOutputs(const Arguments& arguments) {
    for (Channel& each : channels_) {
        each.settings.output = arguments.values.at(1) != 0.0;
    }
    return {};
}

Reply Instrument::RegulationMode(const Arguments& arguments) {
    return {ChannelAt(arguments.channel).RegulatedBy() == Regulation::ConstantVoltage ? 0.0 : 1.0};
}

Reply Instrument::MeasureVoltage(const Arguments& arguments) { return {ChannelAt(arguments.channel).OutputVoltage()}; }

Reply Instrument::MeasureCurrent(const Arguments& arguments) { return {ChannelAt(arguments.channel).OutputCurrent()}; }

Reply Instrument::MeasurePower(const Arguments& arguments) { return {ChannelAt(arguments.channel).OutputPower()}; }

Reply Instrument::MeasureAll(const Arguments& arguments) {
    const Channel& measured = ChannelAt(arguments.channel);
    return {measured.OutputVoltage(), measured.OutputCurrent(), measured.OutputPower()};
}

// Both sequencers drive channel 1. After the last cycle they switch themselves off and apply their end state.

void Instrument::RunList(std::chrono::steady_clock::time_point now) {
    const auto elapsed = listWatch_.Elapsed(common.listEnabled, now);
    if (!elapsed) {
        listProgress_.running = false;
        return;
    }
    listProgress_ = ProgressOf(list_.Groups(), common.listCycles, *elapsed);
    if (list_.size() > 0) {
        const ListGroup& group = list_.At(listProgress_.group);
        ChannelAt(1).settings.voltage = group.voltage;
        ChannelAt(1).settings.current = group.current;
    }
    if (!listProgress_.running) {
        common.listEnabled = false;
        ChannelAt(1).settings.output = ChannelAt(1).settings.output && common.listEndState != 0;
    }
}

void Instrument::RunDelay(std::chrono::steady_clock::time_point now) {
    const auto elapsed = delayWatch_.Elapsed(common.delayEnabled, now);
    if (!elapsed) {
        delayProgress_.running = false;
        return;
    }
    delayProgress_ = ProgressOf(delay_.Groups(), common.delayCycles, *elapsed);
    bool& output = ChannelAt(1).settings.output;
    if (delay_.size() > 0) {
        output = delay_.At(delayProgress_.group).on;
    }
    if (!delayProgress_.running) {
        constexpr int kOff = 0;
        constexpr int kOn = 1;
        common.delayEnabled = false;
        output = common.delayEndState == kOn || (common.delayEndState != kOff && output);
    }
}

namespace {

/// `state` is a value of kListStates or kDelayStates.
Reply ProgressReply(const Progress& progress, double state) {
    return {state, progress.seconds, static_cast<double>(progress.group), static_cast<double>(progress.cycle)};
}

} // namespace

Reply Instrument::ListStatus(const Arguments& /*arguments*/) {
    constexpr double kStopped = 0.0;
    constexpr double kReady = 1.0;
    constexpr double kRunning = 2.0;
    return ProgressReply(listProgress_, listProgress_.running ? kRunning : list_.size() > 0 ? kReady : kStopped);
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
    listTemplate.object = static_cast<int>(arguments.values.at(0));
    listTemplate.otherValue = arguments.values.at(1);
    return {};
}

Reply Instrument::GetListObject(const Arguments& /*arguments*/) {
    return {static_cast<double>(listTemplate.object), listTemplate.otherValue};
}

Reply Instrument::ListTemplatePoints(const Arguments& /*arguments*/) {
    return {static_cast<double>(Generate(listTemplate).size())};
}

Reply Instrument::ConstructList(const Arguments& arguments) {
    list_.Replace(arguments.values.at(0), Generate(listTemplate));
    return {};
}

Reply Instrument::DelayStatus(const Arguments& /*arguments*/) {
    constexpr double kStopped = 0.0;
    constexpr double kRunning = 1.0;
    return ProgressReply(delayProgress_, delayProgress_.running ? kRunning : kStopped);
}

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
    delay_.Replace(arguments.values.at(0), Generate(delayTemplate));
    return {};
}

Reply Instrument::EnableTriggerInput(const Arguments& arguments) {
    common.triggerInputs.at(static_cast<std::size_t>(arguments.values.at(0)) - 1) = arguments.values.at(1) != 0.0;
    return {};
}

Reply Instrument::TriggerInputEnabled(const Arguments& arguments) {
    return {common.triggerInputs.at(static_cast<std::size_t>(arguments.values.at(0)) - 1) ? 1.0 : 0.0};
}

} // namespace virtual_supply
