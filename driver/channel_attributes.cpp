#include "driver/channel_attributes.h"

#include <string_view>

#include "driver/channel_calls.h"
#include "include/TARNEX.h"

namespace tarnex {
namespace {

using ORVA::ChannelNumber;
using ORVA::InstBase;

/// The getters' frame: runs `ask(session, channel)` on the one channel that is named.
template <typename Ask>
ViStatus OnOneChannel(std::string_view function, ViSession vi, ViConstString repCapName, const void* value,
                      const Ask& ask) {
    return LockedCall(vi, [&](TARNEXDriverSession& session) -> ViStatus {
        auto status = nrt2::CheckParameters(vi, function, "AttributeValue", {value});
        OutputChannelName name;
        if (status == VI_SUCCESS) {
            status = OutputChannels::ExpandSingle(session, repCapName, name);
        }
        return status == VI_SUCCESS ? ask(session, ChannelOf(name)) : status;
    });
}

ViStatus GetReal(std::string_view function, ViSession vi, ViConstString repCapName, ViReal64* value,
                 ViStatus (InstBase::*get)(ChannelNumber, double&)) {
    return OnOneChannel(function, vi, repCapName, value, [&](TARNEXDriverSession& session, ChannelNumber channel) {
        const auto status = (session.Instrument().*get)(channel, *value);
        return status == VI_SUCCESS ? session.CheckStatus() : session.RecordIfError(status);
    });
}

ViStatus GetBoolean(std::string_view function, ViSession vi, ViConstString repCapName, ViBoolean* value,
                    ViStatus (InstBase::*get)(ChannelNumber, bool&)) {
    return OnOneChannel(function, vi, repCapName, value, [&](TARNEXDriverSession& session, ChannelNumber channel) {
        bool on = false;
        const auto status = (session.Instrument().*get)(channel, on);
        if (status >= 0) {
            *value = on ? VI_TRUE : VI_FALSE;
        }
        return status == VI_SUCCESS ? session.CheckStatus() : session.RecordIfError(status);
    });
}

} // namespace

ViStatus GetVoltageLevel(ViSession vi, ViConstString repCapName, ViReal64* value) {
    return GetReal("TARNEX_get_VOLTAGE_LEVEL", vi, repCapName, value, &InstBase::GetVoltage);
}

ViStatus SetVoltageLevel(ViSession vi, ViConstString repCapName, ViReal64 value) {
    return Configure(vi, repCapName, [=](InstBase& instrument, ChannelNumber channel) {
        return instrument.SetVoltage(channel, value);
    });
}

ViStatus GetOvpEnabled(ViSession vi, ViConstString repCapName, ViBoolean* value) {
    return GetBoolean("TARNEX_get_OVP_ENABLED", vi, repCapName, value, &InstBase::GetOverVoltageEnabled);
}

ViStatus SetOvpEnabled(ViSession vi, ViConstString repCapName, ViBoolean value) {
    return Configure(vi, repCapName, [=](InstBase& instrument, ChannelNumber channel) {
        return instrument.SetOverVoltageEnabled(channel, value != VI_FALSE);
    });
}

ViStatus GetOvpLimit(ViSession vi, ViConstString repCapName, ViReal64* value) {
    return GetReal("TARNEX_get_OVP_LIMIT", vi, repCapName, value, &InstBase::GetOverVoltageLevel);
}

ViStatus SetOvpLimit(ViSession vi, ViConstString repCapName, ViReal64 value) {
    return Configure(vi, repCapName, [=](InstBase& instrument, ChannelNumber channel) {
        return instrument.SetOverVoltageLevel(channel, value);
    });
}

// Trip is the instrument's over-current protection being on. The query's status is ignored, so that a failed one reads
// as regulate, and the instrument's status is not checked: deliberate.
ViStatus GetCurrentLimitBehavior(ViSession vi, ViConstString repCapName, ViInt32* value) {
    return OnOneChannel("TARNEX_get_CURRENT_LIMIT_BEHAVIOR", vi, repCapName, value,
                        [&](TARNEXDriverSession& session, ChannelNumber channel) {
                            bool on = false;
                            session.Instrument().GetOverCurrentEnabled(channel, on);
                            *value = on ? TARNEX_VAL_CURRENT_TRIP : TARNEX_VAL_CURRENT_REGULATE;
                            return VI_SUCCESS;
                        });
}

ViStatus SetCurrentLimitBehavior(ViSession vi, ViConstString repCapName, ViInt32 value) {
    return Configure(vi, repCapName, [=](InstBase& instrument, ChannelNumber channel) {
        return value == TARNEX_VAL_CURRENT_TRIP || value == TARNEX_VAL_CURRENT_REGULATE
                   ? instrument.SetOverCurrentEnabled(channel, value == TARNEX_VAL_CURRENT_TRIP)
                   : DRIVER_ERROR_INVALID_PARAMETER;
    });
}

ViStatus GetCurrentLimit(ViSession vi, ViConstString repCapName, ViReal64* value) {
    return GetReal("TARNEX_get_CURRENT_LIMIT", vi, repCapName, value, &InstBase::GetCurrent);
}

ViStatus SetCurrentLimit(ViSession vi, ViConstString repCapName, ViReal64 value) {
    return Configure(vi, repCapName, [=](InstBase& instrument, ChannelNumber channel) {
        return status::RunUntilNonZero([&] { return instrument.SetCurrent(channel, value); },
                       [&] { return instrument.SetOverCurrentLevel(channel, value); });
    });
}

ViStatus GetOutputEnabled(ViSession vi, ViConstString repCapName, ViBoolean* value) {
    return GetBoolean("TARNEX_get_OUTPUT_ENABLED", vi, repCapName, value, &InstBase::GetOutputEnabled);
}

ViStatus SetOutputEnabled(ViSession vi, ViConstString repCapName, ViBoolean value) {
    return Configure(vi, repCapName, [=](InstBase& instrument, ChannelNumber channel) {
        return instrument.SetOutputEnabled(channel, value != VI_FALSE);
    });
}

} // namespace tarnex
