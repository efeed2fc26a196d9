#pragma once

#include <string_view>

#include "framework/rep_cap.h"
#include "instrument/scpi_text.h"
#include "text/characters.h"

namespace tarnex {

/// The driver's repeated capability (IVI-4.4: the output channels).
struct OutputChannel {
    static constexpr std::string_view kName = "OutputChannel";
    static constexpr std::string_view kPhysicalNames = "OutputChannel1,OutputChannel2";
};

using OutputChannels = nrt2::RepCapBase<OutputChannel>;
static_assert(OutputChannels::kCount == ORVA::kKeywords<ORVA::Channel>.size(), "every channel has a physical name");

/// Returns whether each name of the list is "OutputChannel" and its position, counted from 1.
constexpr bool AreNumberedFromOne(std::string_view names) {
    bool numbered = true;
    char digit = '1';
    text::ForEachElement(names, ',', [&](std::string_view name) {
        numbered = numbered && name.starts_with(OutputChannel::kName) &&
                   name.substr(OutputChannel::kName.size()) == std::string_view(&digit, 1);
        ++digit;
    });
    return numbered;
}
static_assert(OutputChannels::kCount <= 9 && AreNumberedFromOne(OutputChannel::kPhysicalNames),
              "ChannelOf takes the channel's number from the last digit of its name");

using OutputChannelName = nrt2::PhysicalName<OutputChannel>;

/// Returns the command layer's channel of a physical name: OutputChannel2 is "CH2", channel 2.
ORVA::ChannelNumber ChannelOf(const OutputChannelName& name);

} // namespace tarnex
