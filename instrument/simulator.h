// The simulated supply: no I/O. Every setting succeeds without effect; every query returns a fixed value or a random
// one within plausible bounds.
#pragma once

#include "instrument/inst_base.h"
#include "instrument/random_source.h"

namespace ORVA {

class TARNEXSimulator : public InstBase {
  public:
    explicit TARNEXSimulator(RandomSource& random = RandomSource::OfProcess());

    ViUInt32 GetTimeout() const override { return 2000; }
    ViStatus SetTimeout(ViUInt32 /*milliseconds*/) override { return VI_SUCCESS; }
    ViStatus Open(const ConnectionRecord& /*record*/) override { return SetOpen(true); }
    ViStatus Close() override { return SetOpen(false); }
    [[nodiscard]] bool IsOpen() const override { return open_; }
    ViStatus WriteRaw(std::string_view /*command*/) override { return VI_SUCCESS; }
    ViStatus QueryRaw(std::string_view /*command*/, std::string& /*reply*/) override { return VI_SUCCESS; }

    // clang-format off
    ViStatus SendClear() override { return VI_SUCCESS; }
    ViStatus SendReset() override { return VI_SUCCESS; }
    ViStatus QueryEventStatus(std::uint32_t& value) override { return Answer(value, 0U); }
    ViStatus QueryQuestionableCondition(ChannelNumber /*ch*/, std::int32_t& value) override { return Answer(value, 0); }
    ViStatus QueryQuestionableEvent(ChannelNumber /*ch*/, std::int32_t& value) override { return Answer(value, 0); }
    ViStatus QueryError(std::int32_t& code, std::string& message) override { message = "No error"; return Answer(code, 0); }

    // --- Channel selection and bleeder
    ViStatus SelectChannel(ChannelNumber /*ch*/) override { return VI_SUCCESS; }
    ViStatus GetSelectedChannel(ChannelNumber& ch) override { return Answer(ch, static_cast<ChannelNumber>(random_.Integer(1, static_cast<std::int32_t>(kKeywords<Channel>.size())))); }
    ViStatus SetBleeder(bool /*on*/) override { return VI_SUCCESS; }
    ViStatus GetBleeder(bool& on) override { return Answer(on, random_.Boolean()); }

    // --- Source: volts, amperes, seconds
    ViStatus SetVoltage(ChannelNumber /*ch*/, double /*volts*/) override { return VI_SUCCESS; }
    ViStatus GetVoltage(ChannelNumber ch, double& volts) override { return Answer(volts, DrawVoltage(ch)); }
    ViStatus SetOverVoltageLevel(ChannelNumber /*ch*/, double /*volts*/) override { return VI_SUCCESS; }
    ViStatus GetOverVoltageLevel(ChannelNumber ch, double& volts) override { return Answer(volts, DrawVoltage(ch)); }
    ViStatus SetOverVoltageEnabled(ChannelNumber /*ch*/, bool /*on*/) override { return VI_SUCCESS; }
    ViStatus GetOverVoltageEnabled(ChannelNumber /*ch*/, bool& on) override { return Answer(on, random_.Boolean()); }
    ViStatus SetRemoteSense(ChannelNumber /*ch*/, bool /*on*/) override { return VI_SUCCESS; }
    ViStatus GetRemoteSense(ChannelNumber /*ch*/, bool& on) override { return Answer(on, random_.Boolean()); }
    ViStatus SetCurrent(ChannelNumber /*ch*/, double /*amperes*/) override { return VI_SUCCESS; }
    // Required: the two current levels are drawn within the voltage limits.
    ViStatus GetCurrent(ChannelNumber ch, double& amperes) override { return Answer(amperes, DrawVoltage(ch)); }
    ViStatus SetOverCurrentLevel(ChannelNumber /*ch*/, double /*amperes*/) override { return VI_SUCCESS; }
    ViStatus GetOverCurrentLevel(ChannelNumber ch, double& amperes) override { return Answer(amperes, DrawVoltage(ch)); }
    ViStatus SetOverCurrentEnabled(ChannelNumber /*ch*/, bool /*on*/) override { return VI_SUCCESS; }
    ViStatus GetOverCurrentEnabled(ChannelNumber /*ch*/, bool& on) override { return Answer(on, random_.Boolean()); }
    ViStatus SetOverCurrentDelay(ChannelNumber /*ch*/, double /*seconds*/) override { return VI_SUCCESS; }
    ViStatus GetOverCurrentDelay(ChannelNumber /*ch*/, double& seconds) override { return Answer(seconds, random_.Real(0.0, 1.0)); }
    ViStatus SetOverCurrentDelayMode(ChannelNumber /*ch*/, ProtectionDelayMode /*mode*/) override { return VI_SUCCESS; }
    ViStatus GetOverCurrentDelayMode(ChannelNumber /*ch*/, ProtectionDelayMode& mode) override { return Answer(mode, Draw<ProtectionDelayMode>(0, 1)); }

    // --- Output and its protections
    ViStatus SetOutputEnabled(ChannelNumber /*ch*/, bool /*on*/) override { return VI_SUCCESS; }
    ViStatus GetOutputEnabled(ChannelNumber /*ch*/, bool& on) override { return Answer(on, random_.Boolean()); }
    ViStatus GetRegulationMode(ChannelNumber /*ch*/, RegulationMode& mode) override { return Answer(mode, Draw<RegulationMode>(0, 1)); }
    ViStatus SetOvpLevel(ChannelNumber /*ch*/, double /*volts*/) override { return VI_SUCCESS; }
    ViStatus GetOvpLevel(ChannelNumber ch, double& volts) override { return Answer(volts, DrawVoltage(ch)); }
    ViStatus SetOvpEnabled(ChannelNumber /*ch*/, bool /*on*/) override { return VI_SUCCESS; }
    ViStatus GetOvpEnabled(ChannelNumber /*ch*/, bool& on) override { return Answer(on, random_.Boolean()); }
    ViStatus SetOcpLevel(ChannelNumber /*ch*/, double /*amperes*/) override { return VI_SUCCESS; }
    ViStatus GetOcpLevel(ChannelNumber ch, double& amperes) override { return Answer(amperes, DrawCurrent(ch)); }
    ViStatus SetOcpEnabled(ChannelNumber /*ch*/, bool /*on*/) override { return VI_SUCCESS; }
    ViStatus GetOcpEnabled(ChannelNumber /*ch*/, bool& on) override { return Answer(on, random_.Boolean()); }
    ViStatus SetOcpDelay(ChannelNumber /*ch*/, double /*seconds*/) override { return VI_SUCCESS; }
    ViStatus GetOcpDelay(ChannelNumber /*ch*/, double& seconds) override { return Answer(seconds, random_.Real(0.0, 1.0)); }
    ViStatus SetOcpDelayMode(ChannelNumber /*ch*/, ProtectionDelayMode /*mode*/) override { return VI_SUCCESS; }
    ViStatus GetOcpDelayMode(ChannelNumber /*ch*/, ProtectionDelayMode& mode) override { return Answer(mode, Draw<ProtectionDelayMode>(0, 1)); }
    ViStatus SetPowerOnState(ChannelNumber /*ch*/, PowerOnState /*state*/) override { return VI_SUCCESS; }
    ViStatus GetPowerOnState(ChannelNumber /*ch*/, PowerOnState& state) override { return Answer(state, Draw<PowerOnState>(0, 2)); }
    ViStatus SetPairMode(ChannelNumber /*ch*/, PairMode /*mode*/) override { return VI_SUCCESS; }
    ViStatus GetPairMode(ChannelNumber /*ch*/, PairMode& mode) override { return Answer(mode, Draw<PairMode>(0, 2)); }
    ViStatus SetOutputSense(ChannelNumber /*ch*/, bool /*on*/) override { return VI_SUCCESS; }
    ViStatus GetOutputSense(ChannelNumber /*ch*/, bool& on) override { return Answer(on, random_.Boolean()); }
    ViStatus SetTracking(ChannelNumber /*ch*/, bool /*on*/) override { return VI_SUCCESS; }
    ViStatus GetTracking(ChannelNumber /*ch*/, bool& on) override { return Answer(on, random_.Boolean()); }
    ViStatus SetOffMode(ChannelNumber /*ch*/, OffMode /*mode*/) override { return VI_SUCCESS; }
    ViStatus GetOffMode(ChannelNumber /*ch*/, OffMode& mode) override { return Answer(mode, Draw<OffMode>(0, 1)); }

    // --- Measurement: volts, amperes, watts
    ViStatus MeasureAll(ChannelNumber ch, double& volts, double& amperes, double& watts) override { volts = DrawVoltage(ch); amperes = DrawCurrent(ch); return Answer(watts, volts * amperes); }
    ViStatus MeasureVoltage(ChannelNumber ch, double& volts) override { return Answer(volts, DrawVoltage(ch)); }
    ViStatus MeasureCurrent(ChannelNumber ch, double& amperes) override { return Answer(amperes, DrawCurrent(ch)); }
    ViStatus MeasurePower(ChannelNumber ch, double& watts) override { return Answer(watts, DrawPower(ch)); }
    ViStatus SetCurrentRange(ChannelNumber /*ch*/, CurrentRange /*range*/) override { return VI_SUCCESS; }
    ViStatus GetCurrentRange(ChannelNumber /*ch*/, CurrentRange& range) override { return Answer(range, Draw<CurrentRange>(0, 2)); }
    ViStatus SetCurrentRate(ChannelNumber /*ch*/, CurrentRate /*rate*/) override { return VI_SUCCESS; }
    ViStatus GetCurrentRate(ChannelNumber /*ch*/, CurrentRate& rate) override { return Answer(rate, Draw<CurrentRate>(0, 2)); }

    // --- List mode
    ViStatus SetListEnabled(bool /*on*/) override { return VI_SUCCESS; }
    ViStatus GetListEnabled(bool& on) override { return Answer(on, random_.Boolean()); }
    ViStatus GetListStatus(ListState& state, double& seconds, std::int32_t& group, std::int32_t& cycle) override { state = Draw<ListState>(0, 3); return DrawProgress(seconds, group, cycle); }
    ViStatus SetListCycles(std::int32_t /*cycles*/) override { return VI_SUCCESS; }
    ViStatus GetListCycles(std::int32_t& cycles) override { return Answer(cycles, random_.Integer(0, 99999)); }
    ViStatus SetListEndState(ListEndState /*state*/) override { return VI_SUCCESS; }
    ViStatus GetListEndState(ListEndState& state) override { return Answer(state, Draw<ListEndState>(0, 1)); }
    ViStatus GetListGroupCount(std::int32_t& count) override { return Answer(count, random_.Integer(0, 511)); }
    ViStatus InsertListGroup(std::int32_t /*index*/) override { return VI_SUCCESS; }
    ViStatus DeleteListGroup(std::uint32_t /*index*/) override { return VI_SUCCESS; }
    ViStatus ClearListGroups() override { return VI_SUCCESS; }
    ViStatus SetListGroup(std::uint32_t /*index*/, double /*first*/, double /*second*/, double /*third*/) override { return VI_SUCCESS; }
    ViStatus GetListGroup(std::uint32_t /*index*/, double& first, double& second, double& third) override { first = DrawVoltage(1); second = DrawCurrent(1); return Answer(third, DrawSeconds()); }

    // --- List templates
    ViStatus SetListTemplate(ListTemplate /*shape*/) override { return VI_SUCCESS; }
    ViStatus GetListTemplate(ListTemplate& shape) override { return Answer(shape, Draw<ListTemplate>(0, 7)); }
    ViStatus SetListTemplateObject(ListTemplateObject /*object*/, double /*value*/) override { return VI_SUCCESS; }
    ViStatus GetListTemplateObject(ListTemplateObject& object, double& value) override { object = Draw<ListTemplateObject>(0, 1); return Answer(value, random_.Real(0.0, 1.0)); }
    ViStatus SetListTemplateMax(double /*value*/) override { return VI_SUCCESS; }
    // Required: the maximum is below the minimum.
    ViStatus GetListTemplateMax(double& value) override { return Answer(value, 0.0); }
    ViStatus SetListTemplateMin(double /*value*/) override { return VI_SUCCESS; }
    ViStatus GetListTemplateMin(double& value) override { return Answer(value, 1.0); }
    ViStatus SetListTemplatePeriod(double /*seconds*/) override { return VI_SUCCESS; }
    ViStatus GetListTemplatePeriod(double& /*seconds*/) override { return VI_SUCCESS; }
    ViStatus SetListTemplateInterval(double /*seconds*/) override { return VI_SUCCESS; }
    ViStatus GetListTemplateInterval(double& seconds) override { return Answer(seconds, DrawSeconds()); }
    ViStatus SetListTemplateCycles(std::int32_t /*cycles*/) override { return VI_SUCCESS; }
    ViStatus GetListTemplateCycles(std::int32_t& cycles) override { return Answer(cycles, random_.Integer(0, 99999)); }
    ViStatus SetListTemplateInverted(bool /*on*/) override { return VI_SUCCESS; }
    ViStatus GetListTemplateInverted(bool& on) override { return Answer(on, random_.Boolean()); }
    ViStatus SetListTemplateWidth(double /*seconds*/) override { return VI_SUCCESS; }
    ViStatus GetListTemplateWidth(double& seconds) override { return Answer(seconds, DrawSeconds()); }
    ViStatus SetListTemplatePulseCount(std::int32_t /*pulses*/) override { return VI_SUCCESS; }
    ViStatus GetListTemplatePulseCount(std::int32_t& pulses) override { return Answer(pulses, random_.Integer(1, 256)); }
    ViStatus SetListTemplateSymmetry(std::int32_t /*percent*/) override { return VI_SUCCESS; }
    ViStatus GetListTemplateSymmetry(std::int32_t& percent) override { return Answer(percent, random_.Integer(0, 100)); }
    ViStatus SetListTemplateStairs(std::int32_t /*stairs*/) override { return VI_SUCCESS; }
    ViStatus GetListTemplateStairs(std::int32_t& stairs) override { return Answer(stairs, random_.Integer(1, 512)); }
    ViStatus SetListTemplateExpPower(std::int32_t /*value*/) override { return VI_SUCCESS; }
    ViStatus GetListTemplateExpPower(std::int32_t& value) override { return Answer(value, random_.Integer(1, 512)); }
    ViStatus SetListTemplateExpRate(std::int32_t /*value*/) override { return VI_SUCCESS; }
    ViStatus GetListTemplateExpRate(std::int32_t& value) override { return Answer(value, random_.Integer(0, 10)); }
    ViStatus GetListTemplatePoints(std::int32_t& points) override { return Answer(points, random_.Integer(0, 511)); }
    ViStatus ConstructListTemplate(std::uint32_t /*index*/) override { return VI_SUCCESS; }

    // --- Delay mode
    ViStatus SetDelayEnabled(bool /*on*/) override { return VI_SUCCESS; }
    ViStatus GetDelayEnabled(bool& on) override { return Answer(on, random_.Boolean()); }
    ViStatus GetDelayStatus(DelayState& state, double& seconds, std::int32_t& group, std::int32_t& cycle) override { state = Draw<DelayState>(0, 1); return DrawProgress(seconds, group, cycle); }
    ViStatus SetDelayCycles(std::int32_t /*cycles*/) override { return VI_SUCCESS; }
    ViStatus GetDelayCycles(std::int32_t& cycles) override { return Answer(cycles, random_.Integer(0, 99999)); }
    ViStatus SetDelayEndState(DelayEndState /*state*/) override { return VI_SUCCESS; }
    ViStatus GetDelayEndState(DelayEndState& state) override { return Answer(state, Draw<DelayEndState>(0, 2)); }
    ViStatus GetDelayGroupCount(std::int32_t& count) override { return Answer(count, random_.Integer(0, 512)); }
    ViStatus InsertDelayGroup(std::int32_t /*index*/) override { return VI_SUCCESS; }
    ViStatus DeleteDelayGroup(std::int32_t /*index*/) override { return VI_SUCCESS; }
    ViStatus ClearDelayGroups() override { return VI_SUCCESS; }
    ViStatus SetDelayGroup(std::uint32_t /*index*/, bool /*on*/, double /*seconds*/) override { return VI_SUCCESS; }
    ViStatus GetDelayGroup(std::uint32_t /*index*/, bool& on, double& seconds) override { random_.Real(0.0, 511.0); on = random_.Boolean(); return Answer(seconds, DrawSeconds()); }

    // --- Delay patterns
    ViStatus SetDelayGenerateMode(DelayGenerateMode /*mode*/) override { return VI_SUCCESS; }
    ViStatus GetDelayGenerateMode(DelayGenerateMode& mode) override { return Answer(mode, Draw<DelayGenerateMode>(0, 2)); }
    ViStatus SetDelayPattern(DelayPattern /*pattern*/) override { return VI_SUCCESS; }
    ViStatus GetDelayPattern(DelayPattern& pattern) override { return Answer(pattern, Draw<DelayPattern>(0, 1)); }
    ViStatus SetDelayGeneratePoints(std::int32_t /*points*/) override { return VI_SUCCESS; }
    ViStatus GetDelayGeneratePoints(std::int32_t& points) override { return Answer(points, random_.Integer(1, 512)); }
    ViStatus SetDelayOnTime(double /*seconds*/) override { return VI_SUCCESS; }
    ViStatus GetDelayOnTime(double& seconds) override { return Answer(seconds, DrawSeconds()); }
    ViStatus SetDelayOffTime(double /*seconds*/) override { return VI_SUCCESS; }
    ViStatus GetDelayOffTime(double& seconds) override { return Answer(seconds, DrawSeconds()); }
    ViStatus SetDelayBaseTime(double /*seconds*/) override { return VI_SUCCESS; }
    ViStatus GetDelayBaseTime(double& seconds) override { return Answer(seconds, DrawSeconds()); }
    ViStatus SetDelayStepTime(double /*seconds*/) override { return VI_SUCCESS; }
    ViStatus GetDelayStepTime(double& seconds) override { return Answer(seconds, DrawSeconds()); }
    ViStatus ConstructDelayGroups(std::uint32_t /*index*/) override { return VI_SUCCESS; }

    // --- Trigger inputs
    ViStatus SetTriggerInputEnabled(TriggerInput /*input*/, bool /*on*/) override { return VI_SUCCESS; }
    ViStatus GetTriggerInputEnabled(TriggerInput /*input*/, bool& /*on*/) override { return VI_SUCCESS; }

    ViStatus SetAllOutputsOff() override { return VI_SUCCESS; }
    // clang-format on

  private:
    template <typename T>
    static ViStatus Answer(T& output, T value) {
        output = value;
        return VI_SUCCESS;
    }
    double DrawVoltage(ChannelNumber channel);
    double DrawCurrent(ChannelNumber channel);
    double DrawPower(ChannelNumber channel);
    double DrawSeconds() { return random_.Real(0.001, 3600.0); }
    template <KeywordEnumeration Enumeration>
    Enumeration Draw(std::int32_t low, std::int32_t high) {
        return static_cast<Enumeration>(random_.Integer(low, high));
    }
    /// Draws group and cycle as reals and truncates them.
    ViStatus DrawProgress(double& seconds, std::int32_t& group, std::int32_t& cycle);
    ViStatus SetOpen(bool open);

    RandomSource& random_;
    bool open_ = false;
};

} // namespace ORVA
