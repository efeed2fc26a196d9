#pragma once

#include "instrument/scpi_text.h"

namespace ORVA {

/// The limits of a channel's settings in volts and amperes, inclusive.
struct ChannelLimits {
    double minimumVoltage;
    double maximumVoltage;
    double minimumCurrent;
    double maximumCurrent;
};

/// Returns the limits of a channel; all models have the same.
/// Throws std::out_of_range("invalid map<K, T> key") for an unknown channel.
const ChannelLimits& LimitsOf(ChannelNumber channel);

} // namespace ORVA
