#include "tools/tarnexctl/failure.h"

#include <array>
#include <cstdio>

namespace tarnexctl {

std::string StatusText(std::int32_t status) {
    std::array<char, sizeof "0xBFFA4214"> hex{};
    static_cast<void>(std::snprintf(hex.data(), hex.size(), "0x%08X", static_cast<unsigned>(status)));
    return hex.data();
}

Failure StatusFailure(const std::string& doing, std::int32_t status, const std::string& description) {
    return {ExitCode::SupplyFailed, doing + ": " + StatusText(status) + ": " + description};
}

} // namespace tarnexctl
