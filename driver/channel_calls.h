// The frames of the channel functions and channel attributes. An export adds the one line that differs.
#pragma once

#include <string_view>

#include "driver/output_channel.h"
#include "driver/tarnex_driver_session.h"
#include "framework/call_frame.h"
#include "status/run_until.h"

namespace tarnex {

template <typename Body>
ViStatus LockedCall(ViSession vi, const Body& body) {
    return nrt2::LockedCall<TARNEXDriverSession>(vi, body);
}

/// Runs `operate(instrument, channel)` on each selected channel in the selector's order, until one returns a non-zero
/// status. A negative status has been recorded on return.
template <typename Operate>
ViStatus ForEachChannel(TARNEXDriverSession& session, ViConstString selector, const Operate& operate) {
    OutputChannels::NameList names;
    const auto resolved = OutputChannels::Expand(session, selector, names);
    if (resolved < 0) {
        return resolved;
    }
    for (const auto& name : names) {
        const ViStatus status = operate(session.Instrument(), ChannelOf(name));
        if (status != VI_SUCCESS) {
            return session.RecordIfError(status);
        }
    }
    return VI_SUCCESS;
}

/// The frame of the configuring functions and of the attribute setters: runs `operate` on every selected channel, then
/// checks the instrument's status.
template <typename Operate>
ViStatus Configure(ViSession vi, ViConstString selector, const Operate& operate) {
    return LockedCall(vi, [&](TARNEXDriverSession& session) {
        const auto status = ForEachChannel(session, selector, operate);
        return status == VI_SUCCESS ? session.CheckStatus() : status;
    });
}

/// The frame of the functions that send nothing: checks the selector.
inline ViStatus ValidateSelector(ViSession vi, ViConstString selector) {
    return LockedCall(vi, [&](TARNEXDriverSession& session) {
        OutputChannels::NameList names;
        return OutputChannels::Expand(session, selector, names);
    });
}

/// The frame of the querying functions: checks `output` for null, then the selector, then runs as Configure.
template <typename Operate>
ViStatus Query(std::string_view function, std::string_view parameter, const void* output, ViSession vi,
               ViConstString selector, const Operate& operate) {
    return LockedCall(vi, [&](TARNEXDriverSession& session) {
        auto status = nrt2::CheckParameters(vi, function, parameter, {output});
        if (status == VI_SUCCESS) {
            status = ForEachChannel(session, selector, operate);
        }
        return status == VI_SUCCESS ? session.CheckStatus() : status;
    });
}

} // namespace tarnex
