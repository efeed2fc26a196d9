// The fixture of the framework's tests: empty doubles and a session class without an instrument.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <memory>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "framework/call_frame.h"
#include "framework/driver_session.h"
#include "tests/doubles/config_server_double.h"
#include "tests/doubles/script.h"
#include "tests/doubles/session_service_double.h"
#include "tests/unit/support/status.h"

namespace unit {

/// An error as it was recorded.
struct RecordedError {
    ViSession vi;
    Status code;
    std::string description;
    bool operator==(const RecordedError&) const = default;
};

inline void PrintTo(const RecordedError& error, std::ostream* out) {
    *out << error.vi << ' ';
    PrintTo(error.code, out);
    *out << " \"" << error.description << '"';
}

/// The orders for the sessions of a test, and the log of their calls.
struct SessionScript {
    std::vector<std::string> calls;
    std::map<std::string, std::function<ViStatus()>> answers; ///< by call; others return 0
    nrt2::DriverIdentity identity{.prefix = "UNIT",
                                  .vendor = "V",
                                  .description = "D",
                                  .revision = "1.0",
                                  .groupCapabilities = "G",
                                  .supportedModels = "M1,M2",
                                  .defaultSimulationModel = "M1"};
    std::string model = "M1";
    int alive = 0;
};

/// The one script of the process; every test starts with a new one.
SessionScript& TheSessions();

class TestSession : public nrt2::DriverSession {
  public:
    explicit TestSession(ViSession vi) : DriverSession(vi, TheSessions().identity) { ++TheSessions().alive; }
    TestSession(const TestSession&) = delete;
    TestSession& operator=(const TestSession&) = delete;
    ~TestSession() override {
        Answer("destroy");
        --TheSessions().alive;
    }

    ViStatus ResetInstrument() override { return Answer("reset"); }
    ViStatus CheckStatus() override { return Answer("check"); }

  protected:
    ViStatus InitializeIO() override { return Answer("connect"); }
    ViStatus CloseIO() override { return Answer("disconnect"); }
    ViStatus ClearStatus() override { return Answer("clear"); }
    ViStatus QueryIdentity(std::string& manufacturer, std::string& model, std::string& serialNumber,
                           std::string& firmwareRevision) override {
        manufacturer = "Maker";
        model = TheSessions().model;
        serialNumber = "S";
        firmwareRevision = "F";
        return Answer("identify");
    }
    ViStatus ProcessDriverSetupOption(std::string_view name, std::string_view value) override {
        const auto own = Answer("setup " + std::string(name) + " " + std::string(value));
        return own < 0 ? own : DriverSession::ProcessDriverSetupOption(name, value);
    }

  private:
    static ViStatus Answer(const std::string& call);
};

/// Creates and initializes a TestSession through the framework's frame.
inline ViStatus CreateTestSession(ViConstString resourceName, ViBoolean idQuery, ViBoolean reset,
                                  ViConstString optionString, ViSession* newVi) {
    return nrt2::CreateSession(
        [](ViSession vi) -> std::unique_ptr<nrt2::DriverSession> { return std::make_unique<TestSession>(vi); },
        resourceName, idQuery, reset, optionString, newVi);
}

class FrameworkTest : public testing::Test {
  protected:
    FrameworkTest();
    FrameworkTest(const FrameworkTest&) = delete;
    FrameworkTest& operator=(const FrameworkTest&) = delete;
    ~FrameworkTest() override;

    /// A handle of the session service; without an object.
    static ViSession NewHandle();
    /// Creates and initializes a session, expects success and forgets the calls that it took.
    static ViSession Open(const char* optionString = "");

    static std::vector<RecordedError> TakeRecorded();
    /// The session's own calls since they were last asked for.
    static std::vector<std::string> TakeCalls() { return std::exchange(TheSessions().calls, {}); }

    static void Fail(const std::string& function, std::uint32_t status, std::size_t nth = 1) {
        doubles::TheScript().Fail(function, Code(status), nth);
    }
    /// What `call` of the sessions is to return.
    static void Let(const std::string& call, std::uint32_t status) {
        TheSessions().answers[call] = [status] { return Code(status); };
    }
};

using testing::ElementsAre;
using testing::IsEmpty;

} // namespace unit
