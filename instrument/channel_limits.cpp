#include "instrument/channel_limits.h"

#include <array>
#include <stdexcept>

namespace ORVA {
namespace {

// Channel 2 is the low-voltage, high-current channel.
constexpr std::array kLimits{
    ChannelLimits{0.0, 22.0, 0.0, 5.5},
    ChannelLimits{0.0, 5.5, 0.0, 16.8},
};

static_assert(kLimits.size() == kKeywords<Channel>.size(), "every channel has its limits");

} // namespace

const ChannelLimits& LimitsOf(ChannelNumber channel) {
    if (channel == 0 || channel > kLimits.size()) {
        throw std::out_of_range("invalid map<K, T> key");
    }
    return kLimits[channel - 1];
}

} // namespace ORVA
