// Channels as the command line names them.
#pragma once

#include <string>
#include <vector>

#include "instrument/scpi_text.h"

namespace tarnexctl {

/// Returns the physical name for "1" and "2", and any other name unchanged: the driver resolves it.
std::string ChannelName(const std::string& given);

/// Returns the number of the channel "1", "2" or of a physical name.
/// On failure: throws Failure (usage) for every other name.
ORVA::ChannelNumber ChannelNumberOf(const std::string& given);

/// Returns `given`, or the physical names of all channels when it is empty.
std::vector<std::string> ChannelsOr(const std::vector<std::string>& given);

/// Returns "CC" or "CV".
std::string RegulationText(bool constantCurrent);

} // namespace tarnexctl
