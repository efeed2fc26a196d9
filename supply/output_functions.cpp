// Switching outputs off with certainty.

#include <algorithm>
#include <chrono>
#include <optional>
#include <thread>

#include "include/TARNEX_supply.h"
#include "supply/error_message.h"
#include "supply/operation.h"

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

/// One try: stops the sequences that drive the channel, switches it off and reads its state back.
ViStatus SwitchOffOnce(ViSession vi, ViConstString channelName, bool drivenBySequences) {
    // Every step is sent, also after the failure of another one: reading back decides.
    if (drivenBySequences) {
        TARNEXSupply_SetListEnabled(vi, VI_FALSE);
        TARNEXSupply_SetDelayEnabled(vi, VI_FALSE);
    }
    TARNEXSupply_SetOutputEnabled(vi, channelName, VI_FALSE);
    IviSession_ClearError(vi); // keeps the error of reading back
    ViBoolean on = VI_TRUE;
    const auto read = TARNEXSupply_GetOutputEnabled(vi, channelName, &on);
    if (read < 0) {
        return read;
    }
    return on == VI_FALSE ? VI_SUCCESS : TARNEXSUPPLY_ERROR_STILL_ON;
}

/// Limits the I/O time-out to 2 s, so that several tries fit into the time. Does not touch the error record.
class ShortTimeout {
  public:
    explicit ShortTimeout(ViSession vi) : vi_(vi) {
        supply::OnSession(vi_, [&](supply::SupplySession& session) -> ViStatus {
            const auto present = session.Driver().getTimeout(session.Object());
            if (present > kLongest) {
                original_ = present;
                session.Driver().setTimeout(session.Object(), kLongest);
            }
            return VI_SUCCESS;
        });
    }
    ShortTimeout(const ShortTimeout&) = delete;
    ShortTimeout& operator=(const ShortTimeout&) = delete;
    ~ShortTimeout() {
        if (original_ != 0) {
            supply::OnSession(vi_, [&](supply::SupplySession& session) -> ViStatus {
                session.Driver().setTimeout(session.Object(), original_);
                return VI_SUCCESS;
            });
        }
    }

  private:
    static constexpr ViUInt32 kLongest = 2000; // ms
    ViSession vi_;
    ViUInt32 original_ = 0; ///< ms; 0: unchanged
};

} // namespace

ViStatus _VI_FUNC TARNEXSupply_EnsureOff(ViSession vi, ViConstString channelName, ViInt32 giveUpMs) {
    constexpr milliseconds kFirstPause{20};
    constexpr milliseconds kLongestPause{500};
    bool simulated = false;
    ViUInt32 channel = 0;
    const auto found = supply::OnSession(vi, [&](supply::SupplySession& session) -> ViStatus {
        ViUInt32 count = 0;
        simulated = session.IsSimulated();
        return session.Driver().expand(session.Object(), channelName, VI_TRUE, &channel, 1, &count);
    });
    if (found < 0 || simulated) {
        return found; // a simulated instrument keeps no settings that could be read back
    }
    std::optional<ShortTimeout> shortTimeout;
    const Clock::time_point deadline = Clock::now() + milliseconds(std::max<ViInt32>(giveUpMs, 0));
    auto pause = kFirstPause;
    for (;;) {
        const auto status = SwitchOffOnce(vi, channelName, channel == supply::kSequenceChannel);
        if (status >= 0) {
            return VI_SUCCESS;
        }
        const bool canRecover = status == DRIVER_ERROR_IO || status == DRIVER_ERROR_IO_TIMEOUT ||
                                status == IVI_ERROR_UNEXPECTED_RESPONSE || status == IVI_ERROR_INSTRUMENT_STATUS ||
                                status == TARNEXSUPPLY_ERROR_OUT_OF_STEP || status == TARNEXSUPPLY_ERROR_STILL_ON;
        if (!canRecover || Clock::now() >= deadline) {
            return status == TARNEXSUPPLY_ERROR_STILL_ON
                       ? supply::RecordExceptions(vi, [&] { return supply::RecordOwnError(vi, status); })
                       : status;
        }
        if (!shortTimeout) {
            shortTimeout.emplace(vi);
        }
        std::this_thread::sleep_until(std::min(Clock::now() + pause, deadline)); // the last try is at the deadline
        pause = std::min(2 * pause, kLongestPause);
    }
}
