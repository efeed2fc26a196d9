// The fixture of the supply library's tests over the doubles.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "include/TARNEX_supply.h"
#include "tests/contract/driver_fixture.h"

namespace supply_tests {

using contract::DriverError;
using contract::kSocketResource;
using contract::kUsbResource;
using contract::Status;
using testing::ElementsAre;
using testing::IsEmpty;

inline constexpr const char* kFirst = "OutputChannel1";
inline constexpr const char* kSecond = "OutputChannel2";

inline constexpr std::uint32_t kSuccess = 0;
inline constexpr std::uint32_t kIo = 0xBFFA4214;
inline constexpr std::uint32_t kTimeout = 0xBFFA4215;
inline constexpr std::uint32_t kInvalidParameter = 0xBFFA4217;
inline constexpr std::uint32_t kNullPointer = 0xBFFA0058;
inline constexpr std::uint32_t kMalformed = 0xBFFA0059;
inline constexpr std::uint32_t kInvalidHandle = 0xBFFA1190;
inline constexpr std::uint32_t kOtherDriver = 0xBFFA4301;
inline constexpr std::uint32_t kOtherVersion = 0xBFFA4302;
inline constexpr std::uint32_t kOutOfStep = 0xBFFA4303;
inline constexpr std::uint32_t kVisaTimeout = 0xBFFF0015;

inline const std::string kInvalidParameterText =
    "Attribute or function parameter value is invalid (out of range or not supported).";

/// Sessions of the driver over the doubles, on which the tests call the supply library.
class SupplyOverDoubles : public contract::DriverTest {
  protected:
    /// Names of the VISA functions called since the log was last cleared, in order. Clears the log.
    static std::vector<std::string> TakeVisaCalls() {
        std::vector<std::string> calls;
        for (const auto& call : doubles::TheScript().Calls()) {
            if (call.starts_with("vi")) {
                calls.push_back(call);
            }
        }
        doubles::TheScript().ForgetCalls();
        return calls;
    }
    static int LocksHeld() { return doubles::TheSessionService().LocksHeld(); }

    static Status GetVoltage(ViSession vi) {
        ViReal64 volts = 0.0;
        return Status(TARNEXSupply_GetVoltage(vi, kFirst, &volts));
    }
};

} // namespace supply_tests
