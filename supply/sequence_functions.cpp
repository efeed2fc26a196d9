// Whole sequences in one call.

#include <cmath>

#include "include/TARNEX_supply.h"
#include "status/run_until.h"
#include "supply/operation.h"

using supply::ExchangeOn;
using supply::OnSession;
using supply::SupplySession;

namespace {

bool AreFinite(ViInt32 count, const ViReal64 values[]) {
    return std::all_of(values, values + count, [](ViReal64 value) { return std::isfinite(value); });
}

/// Returns whether channel 1, which the list drives, can be set to all levels. Simulation accepts all.
bool AreWithinLimits(const SupplySession& session, ViInt32 count, const ViReal64 volts[], const ViReal64 amperes[]) {
    const auto& limits = ORVA::LimitsOf(supply::kSequenceChannel);
    const auto within = [](double lowest, double highest) {
        return [=](ViReal64 value) { return value >= lowest && value <= highest; };
    };
    return session.IsSimulated() ||
           (std::all_of(volts, volts + count, within(limits.minimumVoltage, limits.maximumVoltage)) &&
            std::all_of(amperes, amperes + count, within(limits.minimumCurrent, limits.maximumCurrent)));
}

} // namespace

ViStatus _VI_FUNC TARNEXSupply_SetListGroup(ViSession vi, ViInt32 index, ViReal64 volts, ViReal64 amperes,
                                            ViReal64 seconds) {
    return OnSession(vi, [&](SupplySession& session) -> ViStatus {
        if (!AreWithinLimits(session, 1, &volts, &amperes)) {
            return nrt2::SetErrorInfo(vi, DRIVER_ERROR_INVALID_PARAMETER);
        }
        return supply::OnSupply<&ORVA::InstBase::SetListGroup>({vi, "TARNEXSupply_SetListGroup"}, supply::Index{index},
                                                               volts, amperes, seconds);
    });
}

ViStatus _VI_FUNC TARNEXSupply_UploadList(ViSession vi, ViInt32 count, const ViReal64 volts[], const ViReal64 amperes[],
                                          const ViReal64 seconds[]) {
    return OnSession(vi, [&](SupplySession& session) -> ViStatus {
        auto status =
            supply::CheckResults({vi, "TARNEXSupply_UploadList", "volts, amperes, seconds"}, volts, amperes, seconds);
        if (status >= 0 && (count < 0 || !AreFinite(count, volts) || !AreFinite(count, amperes) ||
                            !AreFinite(count, seconds) || !AreWithinLimits(session, count, volts, amperes))) {
            status = nrt2::SetErrorInfo(vi, DRIVER_ERROR_INVALID_PARAMETER);
        }
        return status < 0 ? status : ExchangeOn(session, [&](SupplySession& target) {
            auto& instrument = target.Instrument();
            ViStatus result = instrument.ClearListGroups();
            for (ViInt32 i = 0; i < count && result >= 0; ++i) {
                result = status::RunUntilNegative([&] { return instrument.InsertListGroup(i); },
                                                  [&] {
                                                      return instrument.SetListGroup(static_cast<std::uint32_t>(i),
                                                                                     volts[i], amperes[i], seconds[i]);
                                                  });
            }
            return result;
        });
    });
}

ViStatus _VI_FUNC TARNEXSupply_UploadDelay(ViSession vi, ViInt32 count, const ViBoolean enabled[],
                                           const ViReal64 seconds[]) {
    return OnSession(vi, [&](SupplySession& session) -> ViStatus {
        auto status = supply::CheckResults({vi, "TARNEXSupply_UploadDelay", "enabled, seconds"}, enabled, seconds);
        if (status >= 0 && (count < 0 || !AreFinite(count, seconds))) {
            status = nrt2::SetErrorInfo(vi, DRIVER_ERROR_INVALID_PARAMETER);
        }
        return status < 0 ? status : ExchangeOn(session, [&](SupplySession& target) {
            auto& instrument = target.Instrument();
            ViStatus result = instrument.ClearDelayGroups();
            for (ViInt32 i = 0; i < count && result >= 0; ++i) {
                result =
                    status::RunUntilNegative([&] { return instrument.InsertDelayGroup(i); },
                                             [&] {
                                                 return instrument.SetDelayGroup(static_cast<std::uint32_t>(i),
                                                                                 enabled[i] != VI_FALSE, seconds[i]);
                                             });
            }
            return result;
        });
    });
}

ViStatus _VI_FUNC TARNEXSupply_ReadStates(ViSession vi, ViInt32 capacity, TARNEXSupply_ChannelState states[],
                                          ViInt32* count) {
    return OnSession(vi, [&](SupplySession& session) -> ViStatus {
        auto status = supply::CheckResults({vi, "TARNEXSupply_ReadStates", "states, count"}, states, count);
        if (status >= 0 && capacity < TARNEXSUPPLY_CHANNEL_COUNT) {
            status = nrt2::SetErrorInfo(vi, DRIVER_ERROR_INVALID_PARAMETER);
        }
        std::array<TARNEXSupply_ChannelState, TARNEXSUPPLY_CHANNEL_COUNT> read{};
        if (status >= 0) {
            status = ExchangeOn(session, [&](SupplySession& target) {
                auto& instrument = target.Instrument();
                ViStatus result = VI_SUCCESS;
                for (auto& state : read) {
                    const auto channel = static_cast<ORVA::ChannelNumber>(&state - read.data()) + 1;
                    bool on = false;
                    ORVA::RegulationMode mode{};
                    result = status::RunUntilNegative(
                        [&] { return instrument.GetOutputEnabled(channel, on); },
                        [&] { return instrument.GetRegulationMode(channel, mode); },
                        [&] { return instrument.MeasureAll(channel, state.volts, state.amperes, state.watts); },
                        [&] { return instrument.GetVoltage(channel, state.voltageLevel); },
                        [&] { return instrument.GetCurrent(channel, state.currentLimit); });
                    if (result < 0) {
                        break;
                    }
                    state.channel = static_cast<ViInt32>(channel);
                    state.outputEnabled = on ? VI_TRUE : VI_FALSE;
                    state.regulationMode = static_cast<ViInt32>(mode);
                }
                return result;
            });
        }
        if (status >= 0) {
            std::copy(read.begin(), read.end(), states);
            *count = TARNEXSUPPLY_CHANNEL_COUNT;
        }
        return status;
    });
}
