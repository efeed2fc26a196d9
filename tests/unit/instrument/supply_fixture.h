// A real supply's object over a VISA double.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "instrument/tarnex_supply.h"
#include "tests/doubles/script.h"
#include "tests/doubles/visa_double.h"
#include "tests/unit/support/status.h"

namespace unit {

inline constexpr const char* kUsb = "USB0::0x1234::0x5678::SN42::INSTR";
inline constexpr const char* kSocket = "TCPIP0::192.0.2.7::5025::SOCKET";

/// `Supply` is ORVA::TARNEX or derived from it.
template <typename Supply>
class SupplyTest : public testing::Test {
  protected:
    SupplyTest() {
        doubles::TheScript().Reset();
        doubles::TheVisa().Reset();
    }
    SupplyTest(const SupplyTest&) = delete;
    SupplyTest& operator=(const SupplyTest&) = delete;
    ~SupplyTest() override {
        doubles::TheScript().Reset();
        EXPECT_LE(doubles::TheVisa().OpenSessions(), supply_.IsOpen() ? 2U : 0U) << "VISA sessions were left open";
    }

    Status Open(const char* resource = kUsb) {
        return Status(supply_.Open({.resource = resource, .idQuery = false, .reset = false, .options = ""}));
    }
    /// Opens, expects success and forgets what it took.
    void Connect(const char* resource = kUsb) {
        ASSERT_GE(static_cast<ViStatus>(Open(resource).code), 0);
        Forget();
    }
    static void Forget() {
        doubles::TheScript().Reset();
        doubles::TheVisa().ForgetWritten();
        doubles::TheVisa().ForgetSettings();
    }

    static void Reply(const std::string& query, const std::string& reply) { doubles::TheVisa().Reply(query, reply); }
    static void Fail(const std::string& function, std::uint32_t status, std::size_t nth = 1) {
        doubles::TheScript().Fail(function, Code(status), nth);
    }
    static std::vector<std::string> TakeWritten() {
        auto written = doubles::TheVisa().Written();
        doubles::TheVisa().ForgetWritten();
        return written;
    }
    /// The one line that was written, without its line feed.
    static std::string Line() {
        const auto written = TakeWritten();
        EXPECT_EQ(written.size(), 1U);
        if (written.empty()) {
            return "nothing";
        }
        EXPECT_EQ(written.front().back(), '\n');
        return written.front().substr(0, written.front().size() - 1);
    }

    Supply supply_;
};

/// What `call` throws: kind and text of the exception.
template <typename Call>
std::string ThrownBy(const Call& call) {
    try {
        call();
    } catch (const std::invalid_argument& error) {
        return std::string("invalid_argument: ") + error.what();
    } catch (const std::out_of_range& error) {
        return std::string("out_of_range: ") + error.what();
    }
    return "nothing";
}

inline constexpr const char* kInvalidKey = "out_of_range: invalid map<K, T> key";

} // namespace unit
