#pragma once

#include "instrument/scpi_text.h"

namespace ORVA {

/// What a channel can be set to, bounds included: volts and amperes.
struct ChannelLimits {
    double minimumVoltage;
    double maximumVoltage;
    double minimumCurrent;
    double maximumCurrent;
};

/// The same for every model. An unknown channel throws std::out_of_range("invalid map<K, T> key").
const ChannelLimits& LimitsOf(ChannelNumber channel);

} // namespace ORVA
