#include "tools/tarnexctl/failure.h"

#include <array>
#include <cstdio>

namespace tarnexctl {

Failure StatusFailure(const std::string& doing, std::int32_t status, const std::string& description) {
    std::array<char, sizeof "0xBFFA4214"> hex{};
    static_cast<void>(std::snprintf(hex.data(), hex.size(), "0x%08X", static_cast<unsigned>(status)));
    return {ExitCode::SupplyFailed, doing + ": " + hex.data() + ": " + description};
}

} // namespace tarnexctl
