// Channels as the command line names them.
#pragma once

#include "instrument/scpi_text.h"

#include <string>
#include <vector>

namespace tarnexctl {

/// "1" and "2" are short for the physical names; everything else is the driver's to understand.
std::string ChannelName(const std::string& given);

/// The command layer knows channels by number: "1", "OutputChannel1". Another name is a Failure (usage).
ORVA::ChannelNumber ChannelNumberOf(const std::string& given);

/// What was given, or all channels of the supply.
std::vector<std::string> ChannelsOr(const std::vector<std::string>& given);

} // namespace tarnexctl
