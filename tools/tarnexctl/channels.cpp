#include "tools/tarnexctl/channels.h"

#include <algorithm>
#include <array>

#include "tools/tarnexctl/failure.h"

namespace tarnexctl {

namespace {

const std::array<std::string, 2> kNames{"OutputChannel1", "OutputChannel2"};

} // namespace

std::string ChannelName(const std::string& given) {
    return given == "1" ? kNames[0] : given == "2" ? kNames[1] : given;
}

ORVA::ChannelNumber ChannelNumberOf(const std::string& given) {
    const auto* const found = std::find(kNames.begin(), kNames.end(), ChannelName(given));
    if (found == kNames.end()) {
        throw Failure(ExitCode::Usage,
                      "channel '" + given + "': this command takes 1, 2, OutputChannel1 or OutputChannel2");
    }
    return static_cast<ORVA::ChannelNumber>(found - kNames.begin()) + 1;
}

std::vector<std::string> ChannelsOr(const std::vector<std::string>& given) {
    return given.empty() ? std::vector<std::string>(kNames.begin(), kNames.end()) : given;
}

std::string RegulationText(bool constantCurrent) { return constantCurrent ? "CC" : "CV"; }

} // namespace tarnexctl
