// The simulated supply: no I/O, every setting succeeds without effect and every query answers with a fixed value or one
// drawn within plausible bounds. Settings are not remembered.
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

    ViStatus SetVoltage(ChannelNumber /*ch*/, double /*volts*/) override { return VI_SUCCESS; }
    ViStatus GetVoltage(ChannelNumber ch, double& volts) override { return Answer(volts, DrawVoltage(ch)); }
    ViStatus SetOverVoltageLevel(ChannelNumber /*ch*/, double /*volts*/) override { return VI_SUCCESS; }
    ViStatus GetOverVoltageLevel(ChannelNumber ch, double& volts) override { return Answer(volts, DrawVoltage(ch)); }
    ViStatus SetOverVoltageEnabled(ChannelNumber /*ch*/, bool /*enabled*/) override { return VI_SUCCESS; }
    ViStatus GetOverVoltageEnabled(ChannelNumber /*ch*/, bool& enabled) override { return Answer(enabled, random_.Boolean()); }
    ViStatus SetCurrent(ChannelNumber /*ch*/, double /*amperes*/) override { return VI_SUCCESS; }
    // The two current levels are drawn from the voltage bounds, on purpose.
    ViStatus GetCurrent(ChannelNumber ch, double& amperes) override { return Answer(amperes, DrawVoltage(ch)); }
    ViStatus SetOverCurrentLevel(ChannelNumber /*ch*/, double /*amperes*/) override { return VI_SUCCESS; }
    ViStatus GetOverCurrentLevel(ChannelNumber ch, double& amperes) override { return Answer(amperes, DrawVoltage(ch)); }
    ViStatus SetOverCurrentEnabled(ChannelNumber /*ch*/, bool /*enabled*/) override { return VI_SUCCESS; }
    ViStatus GetOverCurrentEnabled(ChannelNumber /*ch*/, bool& enabled) override { return Answer(enabled, random_.Boolean()); }

    ViStatus SetOutputEnabled(ChannelNumber /*ch*/, bool /*enabled*/) override { return VI_SUCCESS; }
    ViStatus GetOutputEnabled(ChannelNumber /*ch*/, bool& enabled) override { return Answer(enabled, random_.Boolean()); }
    ViStatus SetAllOutputsOff() override { return VI_SUCCESS; }
    // clang-format on

  private:
    template <typename T>
    static ViStatus Answer(T& output, T value) {
        output = value;
        return VI_SUCCESS;
    }
    double DrawVoltage(ChannelNumber channel);
    ViStatus SetOpen(bool open);

    RandomSource& random_;
    bool open_ = false;
};

} // namespace ORVA
