// The fixture of the contract tests: the driver's exports over empty doubles.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <iomanip>
#include <ostream>
#include <string>
#include <vector>

#include "include/TARNEX.h"
#include "tests/doubles/config_server_double.h"
#include "tests/doubles/script.h"
#include "tests/doubles/session_service_double.h"
#include "tests/doubles/visa_double.h"

namespace contract {

/// A status as tests write it: Status(0xBFFA1190). Failures show it in hexadecimal.
struct Status {
    std::uint32_t code;
    Status(std::uint32_t value) : code(value) {} // NOLINT(google-explicit-constructor)
    explicit Status(ViStatus value) : code(static_cast<std::uint32_t>(value)) {}
    bool operator==(const Status&) const = default;
};

inline void PrintTo(const Status& status, std::ostream* out) {
    *out << "0x" << std::hex << std::uppercase << std::setw(8) << std::setfill('0') << status.code << std::dec;
}

inline constexpr const char* kUsbResource = "USB0::0x1234::0x5678::SN42::INSTR";
inline constexpr const char* kSocketResource = "TCPIP0::192.0.2.7::5025::SOCKET";

struct DriverError {
    Status code;
    std::string description;
    bool operator==(const DriverError&) const = default;
};

inline void PrintTo(const DriverError& error, std::ostream* out) {
    PrintTo(error.code, out);
    *out << " \"" << error.description << '"';
}

/// Returns the address of the export in the driver's library; null when it is not exported. The address of a function
/// in the program may be that of a stub.
const void* ExportedAddress(const char* name);

/// Over USB a query ends with status 0; over a socket with 0x3FFF0005.
class DriverTest : public testing::Test {
  protected:
    DriverTest();
    ~DriverTest() override;

    /// Opens a session over USB; expects success, then forgets the calls, bytes and settings of the opening.
    ViSession Open(const char* optionString = "");
    ViSession OpenOn(const char* resource, const char* optionString = "");

    Status TryOpen(const char* optionString, ViSession* vi = nullptr, ViBoolean idQuery = VI_FALSE,
                   ViBoolean reset = VI_FALSE, const char* resource = kUsbResource);

    /// What TARNEX_GetError gives for the session; for the thread with VI_NULL. Clears it.
    static DriverError LastError(ViSession vi);

    /// What was written to the instrument since it was last asked, each with its line feed.
    static std::vector<std::string> TakeWritten();

    static void Reply(const std::string& query, const std::string& reply) { doubles::TheVisa().Reply(query, reply); }
    static void Fail(const std::string& function, std::uint32_t status, std::size_t nth = 1) {
        doubles::TheScript().Fail(function, static_cast<ViStatus>(status), nth);
    }

    static Status Set(ViSession vi, const char* channel, ViAttr attribute, double value) {
        return Status(TARNEX_SetAttributeViReal64(vi, channel, attribute, value));
    }

  private:
    std::vector<ViSession> opened_;
};

using testing::ElementsAre;
using testing::IsEmpty;

} // namespace contract
