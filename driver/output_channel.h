#pragma once

#include <string_view>

#include "framework/rep_cap.h"
#include "instrument/scpi_text.h"

namespace tarnex {

/// The driver's repeated capability (IVI-4.4: the output channels).
struct OutputChannel {
    static constexpr std::string_view kName = "OutputChannel";
    static constexpr std::string_view kPhysicalNames = "OutputChannel1,OutputChannel2";
};

using OutputChannels = nrt2::RepCapBase<OutputChannel>;
static_assert(OutputChannels::kCount == ORVA::kKeywords<ORVA::Channel>.size(), "every channel has a physical name");
using OutputChannelName = nrt2::PhysicalName<OutputChannel>;

/// Returns the command layer's channel of a physical name: OutputChannel2 is "CH2", channel 2.
ORVA::ChannelNumber ChannelOf(const OutputChannelName& name);

} // namespace tarnex
