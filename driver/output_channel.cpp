#include "driver/output_channel.h"

#include <algorithm>
#include <array>

namespace tarnex {

ORVA::ChannelNumber ChannelOf(const OutputChannelName& name) {
    constexpr std::size_t kPrefix = 2;
    const text::IntegerText number(OutputChannels::ChannelNumber(name.identifier));
    std::array<char, kPrefix + text::IntegerText::kCapacity> token{'C', 'H'};
    std::copy_n(number.View().data(), number.View().size(), token.data() + kPrefix);
    return static_cast<ORVA::ChannelNumber>(
        ORVA::ValueOf<ORVA::Channel>({token.data(), kPrefix + number.View().size()}));
}

} // namespace tarnex
