// The real supply: every operation is one exchange with the instrument, and its line here is all there is to it.
#pragma once

#include "instrument/inst_base.h"
#include "instrument/option_flags.h"

namespace ORVA {

class TARNEX : public InstBase {
  public:
    /// Not connected yet.
    TARNEX();

    ViUInt32 GetTimeout() const override { return settings_.ioTimeout; }
    ViStatus SetTimeout(ViUInt32 milliseconds) override;
    /// Connects and always reads the identity, whatever `record.idQuery` says.
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
    // The protection levels are checked against the limits of the settings themselves, deliberately.
    ViStatus SetVoltage(ChannelNumber ch, double volts) override { return IfVoltage(ch, volts, [&] { return SetSource(":SOUR:VOLT", ch, volts); }); }
    ViStatus GetVoltage(ChannelNumber ch, double& volts) override { return GetSource(":SOUR:VOLT", ch, volts); }
    ViStatus SetOverVoltageLevel(ChannelNumber ch, double volts) override { return IfVoltage(ch, volts, [&] { return SetSource(":SOUR:VOLT:PROT", ch, volts); }); }
    ViStatus GetOverVoltageLevel(ChannelNumber ch, double& volts) override { return GetSource(":SOUR:VOLT:PROT", ch, volts); }
    ViStatus SetOverVoltageEnabled(ChannelNumber ch, bool enabled) override { return SetSource(":SOUR:VOLT:PROT:STAT", ch, enabled); }
    ViStatus GetOverVoltageEnabled(ChannelNumber ch, bool& enabled) override { return GetSource(":SOUR:VOLT:PROT:STAT", ch, enabled); }
    ViStatus SetCurrent(ChannelNumber ch, double amperes) override { return IfCurrent(ch, amperes, [&] { return SetSource(":SOUR:CURR", ch, amperes); }); }
    ViStatus GetCurrent(ChannelNumber ch, double& amperes) override { return GetSource(":SOUR:CURR", ch, amperes); }
    ViStatus SetOverCurrentLevel(ChannelNumber ch, double amperes) override { return IfCurrent(ch, amperes, [&] { return SetSource(":SOUR:CURR:PROT", ch, amperes); }); }
    ViStatus GetOverCurrentLevel(ChannelNumber ch, double& amperes) override { return GetSource(":SOUR:CURR:PROT", ch, amperes); }
    ViStatus SetOverCurrentEnabled(ChannelNumber ch, bool enabled) override { return SetSource(":SOUR:CURR:PROT:STAT", ch, enabled); }
    ViStatus GetOverCurrentEnabled(ChannelNumber ch, bool& enabled) override { return GetSource(":SOUR:CURR:PROT:STAT", ch, enabled); }

    ViStatus SetOutputEnabled(ChannelNumber ch, bool enabled) override { return SetForChannel(":OUTP:STAT", ch, enabled); }
    ViStatus GetOutputEnabled(ChannelNumber ch, bool& enabled) override { return GetForChannel(":OUTP:STAT", ch, enabled); }
    ViStatus SetAllOutputsOff() override { return Send(":OUTPut:STATe ALL,OFF"); }
    // clang-format on

  private:
    /// Runs `send` when the value lies within the channel's limits, bounds included. NaN passes: it is neither below
    /// nor above.
    template <typename Send>
    ViStatus IfVoltage(ChannelNumber channel, double volts, const Send& send) {
        const auto& limits = GetChannelLimits(channel);
        return volts < limits.minimumVoltage || volts > limits.maximumVoltage ? DRIVER_ERROR_INVALID_VALUE : send();
    }
    template <typename Send>
    ViStatus IfCurrent(ChannelNumber channel, double amperes, const Send& send) {
        const auto& limits = GetChannelLimits(channel);
        return amperes < limits.minimumCurrent || amperes > limits.maximumCurrent ? DRIVER_ERROR_INVALID_VALUE : send();
    }

    ViStatus QueryIdentity();

    OpenVisa::ConnectionSettings settings_; // for the next open; the time-out is the one in force
    bool idQuery_ = false;
    bool reset_ = false;
    OptionFlags options_;
};

} // namespace ORVA
