// The real supply: every operation is one exchange with the instrument and one line here.
#pragma once

#include "instrument/inst_base.h"
#include "instrument/option_flags.h"

namespace ORVA {

class TARNEX : public InstBase {
  public:
    /// Creates an instrument that is not connected.
    TARNEX();

    /// The arguments of the latest Open. The instrument itself does not use them.
    [[nodiscard]] bool IdQueryRequested() const { return idQuery_; }
    [[nodiscard]] bool ResetRequested() const { return reset_; }
    [[nodiscard]] const text::InherentOptions& Options() const { return options_; }

    ViUInt32 GetTimeout() const override { return settings_.ioTimeout; }
    ViStatus SetTimeout(ViUInt32 milliseconds) override;
    /// Connects and reads the identity, whether or not `record.idQuery` is set.
    ViStatus Open(const ConnectionRecord& record) override;
    ViStatus Close() override;
    [[nodiscard]] bool IsOpen() const override;
    ViStatus WriteRaw(std::string_view command) override;
    ViStatus QueryRaw(std::string_view command, std::string& reply) override;

    ViStatus SendClear() override { return Send("*CLS"); }
    ViStatus SendReset() override { return Send("*RST"); }
    ViStatus QueryEventStatus(std::uint32_t& value) override;
    ViStatus QueryQuestionableCondition(ChannelNumber ch, std::int32_t& value) override;
    ViStatus QueryQuestionableEvent(ChannelNumber ch, std::int32_t& value) override;
    ViStatus QueryError(std::int32_t& code, std::string& message) override;

    // clang-format off
    // Required: protection levels are checked against the limits of the settings; delays are not checked.
    // --- Channel selection and bleeder
    ViStatus SelectChannel(ChannelNumber ch) override { return Set(":INST:SELE", static_cast<Channel>(ch)); }
    ViStatus GetSelectedChannel(ChannelNumber& ch) override;
    ViStatus SetBleeder(bool on) override { return Set(":SOUR:BLE", on); }
    ViStatus GetBleeder(bool& on) override { return Get(":SOUR:BLE?", on); }

    // --- Source: volts, amperes, seconds
    ViStatus SetVoltage(ChannelNumber ch, double volts) override { return IfVoltage(ch, volts, [&] { return SetSource(":SOUR:VOLT", ch, volts); }); }
    ViStatus GetVoltage(ChannelNumber ch, double& volts) override { return GetSource(":SOUR:VOLT", ch, volts); }
    ViStatus SetOverVoltageLevel(ChannelNumber ch, double volts) override { return IfVoltage(ch, volts, [&] { return SetSource(":SOUR:VOLT:PROT", ch, volts); }); }
    ViStatus GetOverVoltageLevel(ChannelNumber ch, double& volts) override { return GetSource(":SOUR:VOLT:PROT", ch, volts); }
    ViStatus SetOverVoltageEnabled(ChannelNumber ch, bool on) override { return SetSource(":SOUR:VOLT:PROT:STAT", ch, on); }
    ViStatus GetOverVoltageEnabled(ChannelNumber ch, bool& on) override { return GetSource(":SOUR:VOLT:PROT:STAT", ch, on); }
    ViStatus SetRemoteSense(ChannelNumber ch, bool on) override { return SetSource(":SOUR:VOLT:SENS", ch, on); }
    ViStatus GetRemoteSense(ChannelNumber ch, bool& on) override { return GetSource(":SOUR:VOLT:SENS", ch, on); }
    ViStatus SetCurrent(ChannelNumber ch, double amperes) override { return IfCurrent(ch, amperes, [&] { return SetSource(":SOUR:CURR", ch, amperes); }); }
    ViStatus GetCurrent(ChannelNumber ch, double& amperes) override { return GetSource(":SOUR:CURR", ch, amperes); }
    ViStatus SetOverCurrentLevel(ChannelNumber ch, double amperes) override { return IfCurrent(ch, amperes, [&] { return SetSource(":SOUR:CURR:PROT", ch, amperes); }); }
    ViStatus GetOverCurrentLevel(ChannelNumber ch, double& amperes) override { return GetSource(":SOUR:CURR:PROT", ch, amperes); }
    ViStatus SetOverCurrentEnabled(ChannelNumber ch, bool on) override { return SetSource(":SOUR:CURR:PROT:STAT", ch, on); }
    ViStatus GetOverCurrentEnabled(ChannelNumber ch, bool& on) override { return GetSource(":SOUR:CURR:PROT:STAT", ch, on); }
    ViStatus SetOverCurrentDelay(ChannelNumber ch, double seconds) override { return SetSource(":SOUR:CURR:PROT:DEL", ch, seconds); }
    ViStatus GetOverCurrentDelay(ChannelNumber ch, double& seconds) override { return GetSource(":SOUR:CURR:PROT:DEL", ch, seconds); }
    ViStatus SetOverCurrentDelayMode(ChannelNumber ch, ProtectionDelayMode mode) override { return SetSource(":SOUR:CURR:PROT:DEL:MODE", ch, mode); }
    ViStatus GetOverCurrentDelayMode(ChannelNumber ch, ProtectionDelayMode& mode) override { return GetSource(":SOUR:CURR:PROT:DEL:MODE", ch, mode); }

    // --- Output and its protections
    ViStatus SetOutputEnabled(ChannelNumber ch, bool on) override { return SetForChannel(":OUTP:STAT", ch, on); }
    ViStatus GetOutputEnabled(ChannelNumber ch, bool& on) override { return GetForChannel(":OUTP:STAT", ch, on); }
    ViStatus GetRegulationMode(ChannelNumber ch, RegulationMode& mode) override { return GetForChannel(":OUTP:CVCC", ch, mode); }
    ViStatus SetOvpLevel(ChannelNumber ch, double volts) override { return IfVoltage(ch, volts, [&] { return SetForChannel(":OUTP:OVP:VAL", ch, volts); }); }
    ViStatus GetOvpLevel(ChannelNumber ch, double& volts) override { return GetForChannel(":OUTP:OVP:VAL", ch, volts); }
    ViStatus SetOvpEnabled(ChannelNumber ch, bool on) override { return SetForChannel(":OUTP:OVP:STAT", ch, on); }
    ViStatus GetOvpEnabled(ChannelNumber ch, bool& on) override { return GetForChannel(":OUTP:OVP:STAT", ch, on); }
    ViStatus SetOcpLevel(ChannelNumber ch, double amperes) override { return IfCurrent(ch, amperes, [&] { return SetForChannel(":OUTP:OCP:VAL", ch, amperes); }); }
    ViStatus GetOcpLevel(ChannelNumber ch, double& amperes) override { return GetForChannel(":OUTP:OCP:VAL", ch, amperes); }
    ViStatus SetOcpEnabled(ChannelNumber ch, bool on) override { return SetForChannel(":OUTP:OCP:STAT", ch, on); }
    ViStatus GetOcpEnabled(ChannelNumber ch, bool& on) override { return GetForChannel(":OUTP:OCP:STAT", ch, on); }
    ViStatus SetOcpDelay(ChannelNumber ch, double seconds) override { return SetForChannel(":OUTP:OCP:DEL", ch, seconds); }
    ViStatus GetOcpDelay(ChannelNumber ch, double& seconds) override { return GetForChannel(":OUTP:OCP:DEL", ch, seconds); }
    ViStatus SetOcpDelayMode(ChannelNumber ch, ProtectionDelayMode mode) override { return SetForChannel(":OUTP:OCP:DEL:MODE", ch, mode); }
    ViStatus GetOcpDelayMode(ChannelNumber ch, ProtectionDelayMode& mode) override { return GetForChannel(":OUTP:OCP:DEL:MODE", ch, mode); }
    ViStatus SetPowerOnState(ChannelNumber ch, PowerOnState state) override { return SetForChannel(":OUTP:PONS:STAT", ch, state); }
    ViStatus GetPowerOnState(ChannelNumber ch, PowerOnState& state) override { return GetForChannel(":OUTP:PONS:STAT", ch, state); }
    ViStatus SetPairMode(ChannelNumber ch, PairMode mode) override { return SetForChannel(":OUTP:PAIR", ch, mode); }
    ViStatus GetPairMode(ChannelNumber ch, PairMode& mode) override { return GetForChannel(":OUTP:PAIR", ch, mode); }
    ViStatus SetOutputSense(ChannelNumber ch, bool on) override { return SetForChannel(":OUTP:SENS:STAT", ch, on); }
    ViStatus GetOutputSense(ChannelNumber ch, bool& on) override { return GetForChannel(":OUTP:SENS:STAT", ch, on); }
    ViStatus SetTracking(ChannelNumber ch, bool on) override { return SetForChannel(":OUTP:TRAC:STAT", ch, on); }
    ViStatus GetTracking(ChannelNumber ch, bool& on) override { return GetForChannel(":OUTP:TRAC:STAT", ch, on); }
    ViStatus SetOffMode(ChannelNumber ch, OffMode mode) override { return SetForChannel(":OUTP:OFFM", ch, mode); }
    ViStatus GetOffMode(ChannelNumber ch, OffMode& mode) override { return GetForChannel(":OUTP:OFFM", ch, mode); }

    // --- Measurement: volts, amperes, watts
    ViStatus MeasureAll(ChannelNumber ch, double& volts, double& amperes, double& watts) override { return GetFields(":MEAS:ALL", With(static_cast<Channel>(ch)), volts, amperes, watts); }
    ViStatus MeasureVoltage(ChannelNumber ch, double& volts) override { return GetForChannel(":MEAS:VOLT", ch, volts); }
    ViStatus MeasureCurrent(ChannelNumber ch, double& amperes) override { return GetForChannel(":MEAS:CURR", ch, amperes); }
    ViStatus MeasurePower(ChannelNumber ch, double& watts) override { return GetForChannel(":MEAS:POWE", ch, watts); }
    ViStatus SetCurrentRange(ChannelNumber ch, CurrentRange range) override { return SetForChannel(":MEAS:CURR:RANG", ch, range); }
    ViStatus GetCurrentRange(ChannelNumber ch, CurrentRange& range) override { return GetForChannel(":MEAS:CURR:RANG", ch, range); }
    ViStatus SetCurrentRate(ChannelNumber ch, CurrentRate rate) override { return SetForChannel(":MEAS:CURR:RATE", ch, rate); }
    ViStatus GetCurrentRate(ChannelNumber ch, CurrentRate& rate) override { return GetForChannel(":MEAS:CURR:RATE", ch, rate); }

    // --- List mode
    ViStatus SetListEnabled(bool on) override { return Set(":LIST:STAT", on); }
    ViStatus GetListEnabled(bool& on) override { return Get(":LIST:STAT?", on); }
    ViStatus GetListStatus(ListState& state, double& seconds, std::int32_t& group, std::int32_t& cycle) override { return GetFields(":LIST:STATUS?", With(), state, seconds, group, cycle); }
    ViStatus SetListCycles(std::int32_t cycles) override { return Set(":LIST:CYCLE", cycles); }
    ViStatus GetListCycles(std::int32_t& cycles) override { return Get(":LIST:CYCLE?", cycles); }
    ViStatus SetListEndState(ListEndState state) override { return Set(":LIST:ENDS", state); }
    ViStatus GetListEndState(ListEndState& state) override { return Get(":LIST:ENDS?", state); }
    ViStatus GetListGroupCount(std::int32_t& count) override { return Get(":LIST:GROUP:NUM?", count); }
    ViStatus InsertListGroup(std::int32_t index) override { return Set(":LIST:GROUP:INS", index); }
    ViStatus DeleteListGroup(std::uint32_t index) override { return Set(":LIST:GROUP:DEL", index); }
    ViStatus ClearListGroups() override { return Send(":LIST:GROUP:CLE"); }
    ViStatus SetListGroup(std::uint32_t index, double first, double second, double third) override { return SetArgs(":LIST:GROUP:PARA", index, first, second, third); }
    ViStatus GetListGroup(std::uint32_t index, double& first, double& second, double& third) override { return GetFields(":LIST:GROUP:PARA?", With(index), first, second, third); }

    // --- List templates
    ViStatus SetListTemplate(ListTemplate shape) override { return Set(":LIST:TEMP:SEL", shape); }
    ViStatus GetListTemplate(ListTemplate& shape) override { return Get(":LIST:TEMP:SEL?", shape); }
    ViStatus SetListTemplateObject(ListTemplateObject object, double value) override { return SetArgs(":LIST:TEMP:OBJ", object, value); }
    ViStatus GetListTemplateObject(ListTemplateObject& object, double& value) override { return GetFields(":LIST:TEMP:OBJ?", With(), object, value); }
    ViStatus SetListTemplateMax(double value) override { return Set(":LIST:TEMP:MAXV", value); }
    ViStatus GetListTemplateMax(double& value) override { return Get(":LIST:TEMP:MAXV?", value); }
    ViStatus SetListTemplateMin(double value) override { return Set(":LIST:TEMP:MINV", value); }
    ViStatus GetListTemplateMin(double& value) override { return Get(":LIST:TEMP:MINV?", value); }
    ViStatus SetListTemplatePeriod(double seconds) override { return Set(":LIST:TEMP:PERI", seconds); }
    ViStatus GetListTemplatePeriod(double& seconds) override { return Get(":LIST:TEMP:PERI?", seconds); }
    ViStatus SetListTemplateInterval(double seconds) override { return Set(":LIST:TEMP:INTE", seconds); }
    ViStatus GetListTemplateInterval(double& seconds) override { return Get(":LIST:TEMP:INTE?", seconds); }
    ViStatus SetListTemplateCycles(std::int32_t cycles) override { return Set(":LIST:TEMP:CYCLE", cycles); }
    ViStatus GetListTemplateCycles(std::int32_t& cycles) override { return Get(":LIST:TEMP:CYCLE?", cycles); }
    ViStatus SetListTemplateInverted(bool on) override { return Set(":LIST:TEMP:INVE", on); }
    ViStatus GetListTemplateInverted(bool& on) override { return Get(":LIST:TEMP:INVE?", on); }
    ViStatus SetListTemplateWidth(double seconds) override { return Set(":LIST:TEMP:WIDT", seconds); }
    ViStatus GetListTemplateWidth(double& seconds) override { return Get(":LIST:TEMP:WIDT?", seconds); }
    ViStatus SetListTemplatePulseCount(std::int32_t pulses) override { return Set(":LIST:TEMP:PULSECount", pulses); }
    ViStatus GetListTemplatePulseCount(std::int32_t& pulses) override { return Get(":LIST:TEMP:PULSECount?", pulses); }
    ViStatus SetListTemplateSymmetry(std::int32_t percent) override { return Set(":LIST:TEMP:SYMM", percent); }
    ViStatus GetListTemplateSymmetry(std::int32_t& percent) override { return Get(":LIST:TEMP:SYMM?", percent); }
    ViStatus SetListTemplateStairs(std::int32_t stairs) override { return Set(":LIST:TEMP:STAI", stairs); }
    ViStatus GetListTemplateStairs(std::int32_t& stairs) override { return Get(":LIST:TEMP:STAI?", stairs); }
    ViStatus SetListTemplateExpPower(std::int32_t value) override { return Set(":LIST:TEMP:EXPP", value); }
    ViStatus GetListTemplateExpPower(std::int32_t& value) override { return Get(":LIST:TEMP:EXPP?", value); }
    ViStatus SetListTemplateExpRate(std::int32_t value) override { return Set(":LIST:TEMP:EXPR", value); }
    ViStatus GetListTemplateExpRate(std::int32_t& value) override { return Get(":LIST:TEMP:EXPR?", value); }
    ViStatus GetListTemplatePoints(std::int32_t& points) override { return Get(":LIST:TEMP:POINTs?", points); }
    ViStatus ConstructListTemplate(std::uint32_t index) override { return Set(":LIST:TEMP:CONSTruct", index); }

    // --- Delay mode
    ViStatus SetDelayEnabled(bool on) override { return Set(":DELAY:STATe", on); }
    ViStatus GetDelayEnabled(bool& on) override { return Get(":DELAY:STATe?", on); }
    ViStatus GetDelayStatus(DelayState& state, double& seconds, std::int32_t& group, std::int32_t& cycle) override { return GetFields(":DELAY:STATUS?", With(), state, seconds, group, cycle); }
    ViStatus SetDelayCycles(std::int32_t cycles) override { return Set(":DELAY:CYCLEs", cycles); }
    ViStatus GetDelayCycles(std::int32_t& cycles) override { return Get(":DELAY:CYCLEs", cycles); }
    ViStatus SetDelayEndState(DelayEndState state) override { return Set(":DELAY:ENDState", state); }
    ViStatus GetDelayEndState(DelayEndState& state) override { return Get(":DELAY:ENDState?", state); }
    ViStatus GetDelayGroupCount(std::int32_t& count) override { return Get(":DELAY:GROUP:NUM?", count); }
    ViStatus InsertDelayGroup(std::int32_t index) override { return Set(":DELAY:GROUP:INSert", index); }
    ViStatus DeleteDelayGroup(std::int32_t index) override { return Set(":DELAY:GROUP:DELete", index); }
    ViStatus ClearDelayGroups() override { return Send(":DELAY:GROUP:CLEar"); }
    ViStatus SetDelayGroup(std::uint32_t index, bool on, double seconds) override { return SetArgs(":DELAY:GROUP:PARAmeter", index, on, seconds); }
    ViStatus GetDelayGroup(std::uint32_t index, bool& on, double& seconds) override { return GetFields(":DELAY:GROUP:PARAmeter?", With(index), on, seconds); }

    // --- Delay patterns
    ViStatus SetDelayGenerateMode(DelayGenerateMode mode) override { return Set(":DELAY:GENerate:SELect", mode); }
    ViStatus GetDelayGenerateMode(DelayGenerateMode& mode) override { return Get(":DELAY:GENerate:SELect", mode); }
    ViStatus SetDelayPattern(DelayPattern pattern) override { return Set(":DELAY:GENerate:PATT", pattern); }
    ViStatus GetDelayPattern(DelayPattern& pattern) override { return Get(":DELAY:GENerate:PATT", pattern); }
    ViStatus SetDelayGeneratePoints(std::int32_t points) override { return Set(":DELAY:GENerate:POINTs", points); }
    ViStatus GetDelayGeneratePoints(std::int32_t& points) override { return Get(":DELAY:GENerate:POINTs", points); }
    ViStatus SetDelayOnTime(double seconds) override { return Set(":DELAY:GENerate:TIMe:ON", seconds); }
    ViStatus GetDelayOnTime(double& seconds) override { return Get(":DELAY:GENerate:TIMe:ON", seconds); }
    ViStatus SetDelayOffTime(double seconds) override { return Set(":DELAY:GENerate:TIMe:OFF", seconds); }
    ViStatus GetDelayOffTime(double& seconds) override { return Get(":DELAY:GENerate:TIMe:OFF", seconds); }
    ViStatus SetDelayBaseTime(double seconds) override { return Set(":DELAY:GENerate:TIMe:BASE", seconds); }
    ViStatus GetDelayBaseTime(double& seconds) override { return Get(":DELAY:GENerate:TIMe:BASE", seconds); }
    ViStatus SetDelayStepTime(double seconds) override { return Set(":DELAY:GENerate:TIMe:STEP", seconds); }
    ViStatus GetDelayStepTime(double& seconds) override { return Get(":DELAY:GENerate:TIMe:STEP", seconds); }
    ViStatus ConstructDelayGroups(std::uint32_t index) override { return Set(":DELAY:GENerate:CONSTruct", index); }

    // --- Trigger inputs
    ViStatus SetTriggerInputEnabled(TriggerInput input, bool on) override { return SetArgs(":TRIG:IN:ENAB", input, on); }
    ViStatus GetTriggerInputEnabled(TriggerInput input, bool& on) override { return GetIndexed(":TRIG:IN:ENAB", input, on); }

    ViStatus SetAllOutputsOff() override { return Send(":OUTPut:STATe ALL,OFF"); }
    // clang-format on

    void SetTrace(const OpenVisa::Trace& trace) override;
    ViStatus Reopen() override;
    ViStatus VerifyIdentity() override;

  private:
    /// Runs `send` when the value is within the channel's limits, inclusive. NaN passes: it is neither below nor above.
    template <typename Send>
    ViStatus IfVoltage(ChannelNumber channel, double volts, const Send& send) {
        const auto& limits = GetChannelLimits(channel);
        return volts < limits.minimumVoltage || volts > limits.maximumVoltage ? DRIVER_ERROR_INVALID_PARAMETER : send();
    }
    template <typename Send>
    ViStatus IfCurrent(ChannelNumber channel, double amperes, const Send& send) {
        const auto& limits = GetChannelLimits(channel);
        return amperes < limits.minimumCurrent || amperes > limits.maximumCurrent ? DRIVER_ERROR_INVALID_PARAMETER
                                                                                  : send();
    }

    ViStatus QueryIdentity();
    /// Returns false, and leaves `identity` unchanged, when the reply has not exactly four fields.
    static bool ParseIdentity(std::string_view reply, Identity& identity);

    std::string resource_;
    int identitiesDue_ = 0;                 // replies to "*IDN?" of VerifyIdentity that have not been received
    OpenVisa::ConnectionSettings settings_; // of the next open; the time-out is the current one
    bool idQuery_ = false;
    bool reset_ = false;
    text::InherentOptions options_;
};

} // namespace ORVA
