// Switching outputs off with certainty.

#include <algorithm>
#include <chrono>
#include <thread>

#include "include/TARNEX_supply.h"
#include "supply/error_message.h"
#include "supply/operation.h"

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

/// One try: stops sequences, switches the channel off and reads its state back.
ViStatus SwitchOffOnce(ViSession vi, ViConstString channelName) {
    // Every step is sent, also after the failure of another one: reading back decides.
    TARNEXSupply_SetListEnabled(vi, VI_FALSE);
    TARNEXSupply_SetDelayEnabled(vi, VI_FALSE);
    TARNEXSupply_SetOutputEnabled(vi, channelName, VI_FALSE);
    IviSession_ClearError(vi); // keeps the error of reading back
    ViBoolean on = VI_TRUE;
    const auto read = TARNEXSupply_GetOutputEnabled(vi, channelName, &on);
    if (read < 0) {
        return read;
    }
    return on == VI_FALSE ? VI_SUCCESS : TARNEXSUPPLY_ERROR_STILL_ON;
}

} // namespace

ViStatus _VI_FUNC TARNEXSupply_EnsureOff(ViSession vi, ViConstString channelName, ViInt32 giveUpMs) {
    constexpr milliseconds kFirstPause{20};
    constexpr milliseconds kLongestPause{500};
    bool simulated = false;
    const auto found = supply::OnSession(vi, [&](supply::SupplySession& session) -> ViStatus {
        simulated = session.IsSimulated();
        return VI_SUCCESS;
    });
    if (found < 0 || simulated) {
        return found; // a simulated instrument keeps no settings that could be read back
    }
    const auto deadline = Clock::now() + milliseconds(std::max<ViInt32>(giveUpMs, 0));
    auto pause = kFirstPause;
    for (;;) {
        const auto status = SwitchOffOnce(vi, channelName);
        if (status >= 0) {
            return VI_SUCCESS;
        }
        const bool canRecover = status == DRIVER_ERROR_IO || status == DRIVER_ERROR_IO_TIMEOUT ||
                                status == IVI_ERROR_UNEXPECTED_RESPONSE || status == IVI_ERROR_INSTRUMENT_STATUS ||
                                status == TARNEXSUPPLY_ERROR_OUT_OF_STEP || status == TARNEXSUPPLY_ERROR_STILL_ON;
        if (!canRecover || Clock::now() + pause >= deadline) {
            return status == TARNEXSUPPLY_ERROR_STILL_ON
                       ? supply::RecordExceptions(vi, [&] { return supply::RecordOwnError(vi, status); })
                       : status;
        }
        std::this_thread::sleep_for(pause);
        pause = std::min(2 * pause, kLongestPause);
    }
}
