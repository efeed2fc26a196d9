#include "driver/output_channel.h"

#include <string>

namespace tarnex {

ORVA::ChannelNumber ChannelOf(const OutputChannelName& name) {
    std::string token("CH");
    token.append(text::IntegerText(OutputChannels::ChannelNumber(name.identifier)).View());
    return static_cast<ORVA::ChannelNumber>(ORVA::ValueOf<ORVA::Channel>(token));
}

} // namespace tarnex
