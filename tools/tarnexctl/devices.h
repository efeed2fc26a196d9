// The devices of this computer that can be a supply.
#pragma once

#include <string>
#include <vector>

namespace tarnexctl {

struct Device {
    std::string resource;    ///< VISA resource string
    std::string description; ///< what the operating system knows
};

/// Returns the serial lines that have hardware and the USB instruments (class USBTMC), ordered by resource. Opens none
/// of them.
std::vector<Device> FindDevices();

} // namespace tarnexctl
