// Rows of measured values, for the commands that measure channels.
#pragma once

#include <string>
#include <vector>

#include "tools/tarnexctl/command_layer.h"
#include "tools/tarnexctl/report.h"

namespace tarnexctl {

/// Returns an empty report with the columns of AddReadings.
Report ReadingsReport();

/// Measures each channel and adds a row for it, with `time` in s in the first column.
/// On failure: throws Failure.
void AddReadings(const CommandLayer& supply, const std::vector<ORVA::ChannelNumber>& channels, double time,
                 Report& report);

/// Returns the numbers of the given channels, or of all channels when none is given.
/// On failure: throws Failure (usage) for a name other than 1, 2 and the physical names.
std::vector<ORVA::ChannelNumber> ChannelNumbersOr(const std::vector<std::string>& given);

} // namespace tarnexctl
