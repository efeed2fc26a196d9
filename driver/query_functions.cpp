// Queries of limits, states and levels (IviDCPwrBase, IviDCPwrMeasurement).

#include "include/TARNEX.h"

#include <algorithm>
#include <cstdint>

#include "driver/channel_calls.h"

using ORVA::ChannelNumber;
using ORVA::InstBase;

namespace {

// Bits of a channel's questionable condition register. In constant voltage the current is questionable, and the other
// way round.
constexpr unsigned kConstantCurrentBit = 0;
constexpr unsigned kConstantVoltageBit = 1;

/// Required: the query's status is ignored; a register that cannot be read counts as 0.
ViBoolean ConditionBit(InstBase& instrument, ChannelNumber channel, unsigned bit) {
    std::int32_t condition = 0;
    instrument.QueryQuestionableCondition(channel, condition);
    return static_cast<ViBoolean>((static_cast<std::uint32_t>(condition) >> bit) & 1U);
}

} // namespace

ViStatus _VI_FUNC TARNEX_GetChannelName(ViSession vi, ViInt32 index, ViInt32 bufferSize, ViChar name[]) {
    return tarnex::LockedCall(vi, [&](TARNEXDriverSession& session) {
        const auto status = nrt2::CheckParameters(vi, "TARNEX_GetChannelName", "Name", {name});
        if (status < 0) {
            return status;
        }
        // 64 bits: subtracting 1 from the lowest index would overflow. An index below the range stays below it.
        const auto zeroBased = std::max<std::int64_t>(std::int64_t{index} - 1, INT32_MIN);
        return tarnex::OutputChannels::GetName(session, static_cast<ViInt32>(zeroBased), bufferSize, name);
    });
}

ViStatus _VI_FUNC TARNEX_QueryMaxCurrentLimit(ViSession vi, ViConstString channelName, ViReal64 /*voltageLevel*/,
                                              ViReal64* maxCurrentLimit) {
    return tarnex::Query("TARNEX_QueryMaxCurrentLimit", "MaxCurrentLimit", maxCurrentLimit, vi, channelName,
                         [=](InstBase& instrument, ChannelNumber channel) {
                             *maxCurrentLimit = instrument.GetChannelLimits(channel).maximumCurrent;
                             return VI_SUCCESS;
                         });
}

ViStatus _VI_FUNC TARNEX_QueryMaxVoltageLevel(ViSession vi, ViConstString channelName, ViReal64 /*currentLimit*/,
                                              ViReal64* maxVoltageLevel) {
    return tarnex::Query("TARNEX_QueryMaxVoltageLevel", "MaxVoltageLevel", maxVoltageLevel, vi, channelName,
                         [=](InstBase& instrument, ChannelNumber channel) {
                             *maxVoltageLevel = instrument.GetChannelLimits(channel).maximumVoltage;
                             return VI_SUCCESS;
                         });
}

ViStatus _VI_FUNC TARNEX_QueryOutputState(ViSession vi, ViConstString channelName, ViInt32 outputState,
                                          ViBoolean* inState) {
    return tarnex::Query("TARNEX_QueryOutputState", "inState", inState, vi, channelName,
                         [=](InstBase& instrument, ChannelNumber channel) {
                             switch (outputState) {
                             case TARNEX_VAL_OUTPUT_CONSTANT_VOLTAGE:
                                 *inState = ConditionBit(instrument, channel, kConstantVoltageBit);
                                 break;
                             case TARNEX_VAL_OUTPUT_CONSTANT_CURRENT:
                                 *inState = ConditionBit(instrument, channel, kConstantCurrentBit);
                                 break;
                             case TARNEX_VAL_OUTPUT_OVER_VOLTAGE:
                             case TARNEX_VAL_OUTPUT_OVER_CURRENT:
                             case TARNEX_VAL_OUTPUT_UNREGULATED:
                                 *inState = VI_FALSE; // Required: these states are never reported
                                 break;
                             default:
                                 break; // Required: an unknown state is not an error and leaves the output unchanged
                             }
                             return VI_SUCCESS;
                         });
}

// Required: queries the programmed level.
ViStatus _VI_FUNC TARNEX_Measure(ViSession vi, ViConstString channelName, ViInt32 measurementType,
                                 ViReal64* measurement) {
    return tarnex::Query("TARNEX_Measure", "Measurement", measurement, vi, channelName,
                         [=](InstBase& instrument, ChannelNumber channel) {
                             switch (measurementType) {
                             case TARNEX_VAL_MEASURE_CURRENT:
                                 return instrument.GetCurrent(channel, *measurement);
                             case TARNEX_VAL_MEASURE_VOLTAGE:
                                 return instrument.GetVoltage(channel, *measurement);
                             default:
                                 return DRIVER_ERROR_INVALID_PARAMETER;
                             }
                         });
}
