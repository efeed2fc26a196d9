#pragma once

#include <cstddef>
#include <string_view>

#include "framework/rep_cap.h"
#include "instrument/scpi_text.h"

namespace tarnex {

/// The driver's one repeated capability.
struct OutputChannel {
    static constexpr std::string_view kName = "OutputChannel";
    static constexpr std::string_view kPhysicalNames = "OutputChannel1,OutputChannel2";
    static constexpr std::size_t kMaxPhysicalNames = 2;
};

using OutputChannels = nrt2::RepCapBase<OutputChannel>;
using OutputChannelName = nrt2::PhysicalName<OutputChannel>;

/// The channel that the command layer addresses for a physical name: OutputChannel2 is "CH2" is channel 2.
ORVA::ChannelNumber ChannelOf(const OutputChannelName& name);

} // namespace tarnex
