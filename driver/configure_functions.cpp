// Configuring the outputs (IviDCPwrBase).

#include "include/TARNEX.h"

#include "driver/channel_calls.h"

using ORVA::ChannelNumber;
using ORVA::InstBase;

ViStatus _VI_FUNC TARNEX_ConfigureOutputEnabled(ViSession vi, ViConstString channelName, ViBoolean enabled) {
    return tarnex::Configure(vi, channelName, [=](InstBase& instrument, ChannelNumber channel) {
        return instrument.SetOutputEnabled(channel, enabled != VI_FALSE);
    });
}

ViStatus _VI_FUNC TARNEX_ConfigureVoltageLevel(ViSession vi, ViConstString channelName, ViReal64 level) {
    return tarnex::Configure(vi, channelName, [=](InstBase& instrument, ChannelNumber channel) {
        return instrument.SetVoltage(channel, level);
    });
}

// Required: every behavior but trip switches the protection off; only the attribute refuses unknown values.
ViStatus _VI_FUNC TARNEX_ConfigureCurrentLimit(ViSession vi, ViConstString channelName, ViInt32 behavior,
                                               ViReal64 limit) {
    return tarnex::Configure(vi, channelName, [=](InstBase& instrument, ChannelNumber channel) {
        return status::RunUntilNonZero(
            [&] { return instrument.SetCurrent(channel, limit); },
            [&] { return instrument.SetOverCurrentLevel(channel, limit); },
            [&] { return instrument.SetOverCurrentEnabled(channel, behavior == TARNEX_VAL_CURRENT_TRIP); });
    });
}

ViStatus _VI_FUNC TARNEX_ConfigureOVP(ViSession vi, ViConstString channelName, ViBoolean enabled, ViReal64 limit) {
    return tarnex::Configure(vi, channelName, [=](InstBase& instrument, ChannelNumber channel) {
        return status::RunUntilNonZero([&] { return instrument.SetOverVoltageLevel(channel, limit); },
                                       [&] { return instrument.SetOverVoltageEnabled(channel, enabled != VI_FALSE); });
    });
}

// Required: these two functions check the selector and send nothing.

ViStatus _VI_FUNC TARNEX_ConfigureOutputRange(ViSession vi, ViConstString channelName, ViInt32 /*rangeType*/,
                                              ViReal64 /*range*/) {
    return tarnex::ValidateSelector(vi, channelName);
}

ViStatus _VI_FUNC TARNEX_ResetOutputProtection(ViSession vi, ViConstString channelName) {
    return tarnex::ValidateSelector(vi, channelName);
}
