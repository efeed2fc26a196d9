// The supply library over the built-in platform and a misbehaving virtual supply: no fault makes a wrong value a
// success, and the next call works again.
#include <array>
#include <atomic>
#include <chrono>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "include/TARNEX_supply.h"
#include "tests/system/supply_fixture.h"

namespace system_tests {
namespace {

using std::chrono::milliseconds;
using virtual_supply::FaultKind;

constexpr const char* kChannel = "OutputChannel1";
constexpr ViInt32 kTimeoutMs = 200;
constexpr auto kOutOfStep = TARNEXSUPPLY_ERROR_OUT_OF_STEP;

struct Measured {
    ViReal64 volts = -1.0;
    ViReal64 amperes = -1.0;
    ViReal64 watts = -1.0;
    bool operator==(const Measured&) const = default;
};
void PrintTo(const Measured& measured, std::ostream* out) {
    *out << measured.volts << " V, " << measured.amperes << " A, " << measured.watts << " W";
}

/// 5 V at 10 ohms.
constexpr Measured kMeasured{5.0, 0.5, 2.5};
constexpr Measured kUnchanged{};

/// Counts the connections that the server reports.
class Connections {
  public:
    void Note(std::string_view line) {
        const std::lock_guard lock(mutex_);
        count_ += line.ends_with(" connected") ? 1 : 0;
    }
    int Count() {
        const std::lock_guard lock(mutex_);
        return count_;
    }

  private:
    std::mutex mutex_;
    int count_ = 0;
};

/// Made before the server that writes into it, and destroyed after it.
struct HasConnections {
    Connections connections;
};

class SupplyFault : protected HasConnections, public SupplyOverEachLine {
  protected:
    SupplyFault() : SupplyOverEachLine({.log = [this](std::string_view line) { connections.Note(line); }}) {
        EXPECT_EQ(TARNEXSupply_Open(server_->Resource().c_str(), "", kTimeoutMs, &vi_), 0);
        EXPECT_EQ(TARNEXSupply_SetVoltage(vi_, kChannel, 5.0), 0);
        EXPECT_EQ(TARNEXSupply_SetOutputEnabled(vi_, kChannel, VI_TRUE), 0);
        ExpectMeasured();
    }
    ~SupplyFault() override { EXPECT_EQ(TARNEXSupply_Close(vi_), 0); }

    void Next(FaultKind kind, std::uint64_t value = 0) { server_->Faults().AddForNext(kind, value); }

    ViStatus MeasureAll(Measured& measured) const {
        return TARNEXSupply_MeasureAll(vi_, kChannel, &measured.volts, &measured.amperes, &measured.watts);
    }
    void ExpectMeasured() const {
        Measured measured;
        EXPECT_EQ(MeasureAll(measured), 0) << LastError(vi_).description;
        EXPECT_EQ(measured, kMeasured);
    }
    void ExpectFailedMeasurement(ViStatus expected) const {
        Measured measured;
        EXPECT_EQ(MeasureAll(measured), expected);
        EXPECT_EQ(measured, kUnchanged);
        const auto error = LastError(vi_);
        EXPECT_EQ(error.code, static_cast<unsigned>(expected));
        EXPECT_NE(error.description.find("':MEAS:ALL? CH1'"), std::string::npos) << error.description;
    }
    /// Sets the output and reads it back, with a fault of the query.
    void ExpectFailedReadBack(FaultKind kind, std::uint64_t value, ViStatus expected) {
        ViBoolean enabled = 77;
        ViReal64 volts = 0.0;
        EXPECT_EQ(TARNEXSupply_SetOutputEnabled(vi_, kChannel, VI_FALSE), 0);
        EXPECT_EQ(TARNEXSupply_GetVoltage(vi_, kChannel, &volts), 0); // the supply has received both
        Next(kind, value);
        EXPECT_EQ(TARNEXSupply_GetOutputEnabled(vi_, kChannel, &enabled), expected);
        EXPECT_EQ(enabled, 77);
        LastError(vi_);
    }
    /// Sets the output and reads it back.
    void ExpectReadBack() const {
        ViBoolean enabled = 77;
        EXPECT_EQ(TARNEXSupply_GetOutputEnabled(vi_, kChannel, &enabled), 0) << LastError(vi_).description;
        EXPECT_EQ(enabled, VI_FALSE);
        EXPECT_EQ(TARNEXSupply_SetOutputEnabled(vi_, kChannel, VI_TRUE), 0);
        EXPECT_EQ(TARNEXSupply_GetOutputEnabled(vi_, kChannel, &enabled), 0);
        EXPECT_EQ(enabled, VI_TRUE);
    }

    ViSession vi_ = VI_NULL;
};

TEST_P(SupplyFault, OfASilentInstrumentIsATimeoutAndTheNextCallWorks) {
    Next(FaultKind::Silent);
    ExpectFailedMeasurement(TARNEX_ERROR_IO_TIMEOUT);
    ExpectMeasured();
    ExpectFailedReadBack(FaultKind::Silent, 0, TARNEX_ERROR_IO_TIMEOUT);
    ExpectReadBack();
}

TEST_P(SupplyFault, OfADelayBeyondTheTimeoutNeverAnswersALaterQuestion) {
    Next(FaultKind::Delay, 300);
    ExpectFailedMeasurement(TARNEX_ERROR_IO_TIMEOUT);
    ExpectMeasured();
    ExpectFailedReadBack(FaultKind::Delay, 300, TARNEX_ERROR_IO_TIMEOUT);
    ExpectReadBack();
}

TEST_P(SupplyFault, OfADelayBeyondTheRecoveryIsOutOfStepUntilTheInstrumentAnswers) {
    Next(FaultKind::Delay, 700);
    ExpectFailedMeasurement(TARNEX_ERROR_IO_TIMEOUT);
    const auto deadline = std::chrono::steady_clock::now() + milliseconds(20000);
    std::array<ViChar, 256> reply{};
    for (;;) {
        // A raw query accepts every reply, so only the recovery keeps the late ones away.
        const auto status = TARNEXSupply_Query(vi_, ":SOUR1:VOLT?", 256, reply.data());
        if (status >= 0) {
            EXPECT_STREQ(reply.data(), "5.000000");
            break;
        }
        ASSERT_EQ(status, kOutOfStep);
        LastError(vi_);
        ASSERT_LT(std::chrono::steady_clock::now(), deadline);
    }
    ExpectMeasured();
}

TEST_P(SupplyFault, OfADelayWithinTheTimeoutIsNone) {
    Next(FaultKind::Delay, 50);
    ExpectMeasured();
}

TEST_P(SupplyFault, OfGarbageIsAMalformedReplyAndTheNextCallWorks) {
    Next(FaultKind::Garbage);
    ExpectFailedMeasurement(TARNEX_ERROR_UNEXPECTED_RESPONSE);
    ExpectMeasured();
    ExpectFailedReadBack(FaultKind::Garbage, 0, TARNEX_ERROR_UNEXPECTED_RESPONSE);
    ExpectReadBack();
}

TEST_P(SupplyFault, OfACutReplyIsATimeoutAndTheNextCallWorks) {
    Next(FaultKind::Cut);
    ExpectFailedMeasurement(TARNEX_ERROR_IO_TIMEOUT);
    ExpectMeasured();
    ExpectFailedReadBack(FaultKind::Cut, 0, TARNEX_ERROR_IO_TIMEOUT);
    ExpectReadBack();
}

TEST_P(SupplyFault, OfAnOverlongReplyIsAMalformedReplyAndTheNextCallWorks) {
    for (const std::uint64_t size : {100U, 1023U, 1024U, 1500U, 5000U}) {
        SCOPED_TRACE(size);
        Next(FaultKind::Long, size);
        ExpectFailedMeasurement(TARNEX_ERROR_UNEXPECTED_RESPONSE);
        ExpectMeasured();
        ExpectFailedReadBack(FaultKind::Long, size, TARNEX_ERROR_UNEXPECTED_RESPONSE);
        ExpectReadBack();
    }
}

TEST_P(SupplyFault, OfACarriageReturnBeforeTheLineFeedChangesNothing) {
    Next(FaultKind::CrLf);
    ExpectMeasured();
    ViInt32 mode = 77;
    Next(FaultKind::CrLf);
    EXPECT_EQ(TARNEXSupply_GetRegulationMode(vi_, kChannel, &mode), 0);
    EXPECT_EQ(mode, TARNEXSUPPLY_VAL_REGULATION_CONSTANT_VOLTAGE);
    std::array<ViChar, 256> reply{};
    Next(FaultKind::CrLf);
    EXPECT_EQ(TARNEXSupply_Query(vi_, ":OUTP:CVCC? CH1", 256, reply.data()), 0);
    EXPECT_STREQ(reply.data(), "CV");
}

TEST_P(SupplyFault, OfADroppedConnectionIsAnIoErrorAndOverTcpTheNextCallWorks) {
    Next(FaultKind::Drop);
    ExpectFailedMeasurement(TARNEX_ERROR_IO);
    if (GetParam() == Line::Tcp) {
        ExpectMeasured();
        ExpectFailedReadBack(FaultKind::Drop, 0, TARNEX_ERROR_IO);
        ExpectReadBack();
    } else {
        // The supply has moved to another pseudo-terminal.
        Measured measured;
        EXPECT_EQ(MeasureAll(measured), kOutOfStep);
        EXPECT_EQ(MeasureAll(measured), kOutOfStep);
        EXPECT_EQ(measured, kUnchanged);
    }
}

TEST_P(SupplyFault, DuringTheRecoveryIsAStatusAndTheNextCallWorks) {
    for (const auto kind : {FaultKind::Silent, FaultKind::Cut}) {
        Next(FaultKind::Silent);
        ExpectFailedMeasurement(TARNEX_ERROR_IO_TIMEOUT);
        Next(kind);
        Measured measured;
        EXPECT_EQ(MeasureAll(measured), kOutOfStep);
        EXPECT_EQ(measured, kUnchanged);
        LastError(vi_);
        ExpectMeasured();
    }
}

TEST_P(SupplyFault, CausedByTheDriversFunctionsIsRepairedByTheLibrary) {
    ViReal64 volts = 77.0;
    Next(FaultKind::Garbage);
    EXPECT_THROW(TARNEX_Measure(vi_, kChannel, TARNEX_VAL_MEASURE_VOLTAGE, &volts), std::invalid_argument);
    ExpectMeasured();
    Next(FaultKind::Delay, 300);
    EXPECT_EQ(TARNEX_Measure(vi_, kChannel, TARNEX_VAL_MEASURE_VOLTAGE, &volts), kIoError);
    ExpectMeasured();
    EXPECT_EQ(volts, 77.0);
}

TEST_P(SupplyFault, IsAbsentFromALongRow) {
    for (int round = 0; round < 200; ++round) {
        ExpectMeasured();
        EXPECT_EQ(TARNEXSupply_SetOutputEnabled(vi_, kChannel, VI_FALSE), 0);
        ExpectReadBack();
    }
    if (GetParam() == Line::Tcp) {
        EXPECT_EQ(server_->ConnectionCount(), 1U);
        EXPECT_EQ(connections.Count(), 1);
    }
}

INSTANTIATE_TEST_SUITE_P(Over, SupplyFault, testing::Values(Line::Tcp, Line::PseudoTerminal), LineName);

class SupplyServerGone : public SupplyTest {};

TEST_F(SupplyServerGone, IsOutOfStepUntilItIsBack) {
    const auto port = server_->Port();
    ViSession vi = VI_NULL;
    ASSERT_EQ(TARNEXSupply_Open(server_->Resource().c_str(), "", kTimeoutMs, &vi), 0);
    server_.reset();
    ViReal64 volts = -1.0;
    EXPECT_EQ(TARNEXSupply_MeasureVoltage(vi, kChannel, &volts), TARNEX_ERROR_IO);
    EXPECT_EQ(TARNEXSupply_MeasureVoltage(vi, kChannel, &volts), kOutOfStep);
    EXPECT_EQ(volts, -1.0);
    server_.emplace(supply_, virtual_supply::ServerOptions{.port = port});
    EXPECT_EQ(TARNEXSupply_MeasureVoltage(vi, kChannel, &volts), 0);
    EXPECT_EQ(volts, 0.0);
    EXPECT_EQ(server_->ConnectionCount(), 1U);
    EXPECT_EQ(TARNEXSupply_Close(vi), 0);
}

class SupplySimulation : public SupplyTest {};

TEST_F(SupplySimulation, OfALiveSessionClosesTheConnectionAndTheLibraryFollows) {
    ViSession vi = VI_NULL;
    ASSERT_EQ(TARNEXSupply_Open(server_->Resource().c_str(), "", 0, &vi), 0);
    EXPECT_EQ(TARNEXSupply_SetVoltage(vi, kChannel, 5.0), 0);
    ViReal64 volts = 0.0;
    EXPECT_EQ(TARNEXSupply_GetVoltage(vi, kChannel, &volts), 0); // the supply has received both
    EXPECT_EQ(TARNEX_SetAttributeViBoolean(vi, "", TARNEX_ATTR_SIMULATE, VI_TRUE), 0);
    EXPECT_EQ(TARNEXSupply_SetVoltage(vi, kChannel, 7.0), 0);
    std::array<TARNEXSupply_ChannelState, 2> states{};
    ViInt32 count = 0;
    EXPECT_EQ(TARNEXSupply_ReadStates(vi, 2, states.data(), &count), 0);
    EXPECT_EQ(count, 2);
    EXPECT_EQ(Ask(":SOUR1:VOLT?"), "5.000000"); // the supply itself was not told
    EXPECT_EQ(TARNEXSupply_Close(vi), 0);
}

class SupplyLock : public SupplyTest {};

TEST_F(SupplyLock, OfACallerBlocksTheLibraryOnOtherThreadsOnly) {
    const auto vi = Open();
    EXPECT_EQ(TARNEX_LockSession(vi, nullptr), 0);
    EXPECT_EQ(TARNEXSupply_SetVoltage(vi, kChannel, 1.0), 0); // the holder itself goes on
    std::atomic<bool> passed{false};
    ViStatus status = -1;
    std::thread other([&] {
        status = TARNEXSupply_SetVoltage(vi, kChannel, 2.0);
        passed = true;
    });
    std::this_thread::sleep_for(milliseconds(100));
    EXPECT_FALSE(passed);
    ViReal64 volts = 0.0;
    EXPECT_EQ(TARNEXSupply_GetVoltage(vi, kChannel, &volts), 0);
    EXPECT_EQ(volts, 1.0);
    EXPECT_EQ(TARNEX_UnlockSession(vi, nullptr), 0);
    other.join();
    EXPECT_EQ(status, 0);
    EXPECT_EQ(TARNEXSupply_GetVoltage(vi, kChannel, &volts), 0);
    EXPECT_EQ(volts, 2.0);
}

TEST_F(SupplyLock, LetsACloseWaitForACallAndEndsTheCallsThatWait) {
    ViSession vi = VI_NULL;
    ASSERT_EQ(TARNEXSupply_Open(server_->Resource().c_str(), "", 2000, &vi), 0);
    server_->Faults().AddForNext(FaultKind::Delay, 300);
    ViReal64 volts = -1.0;
    ViStatus measured = -1;
    std::thread measuring([&] { measured = TARNEXSupply_MeasureVoltage(vi, kChannel, &volts); });
    std::this_thread::sleep_for(milliseconds(100));
    std::array<ViStatus, 4> statuses{};
    std::vector<std::thread> waiting;
    waiting.reserve(statuses.size());
    for (auto& status : statuses) {
        waiting.emplace_back([&status, vi] { status = TARNEXSupply_SetBleeder(vi, VI_TRUE); });
    }
    EXPECT_EQ(TARNEXSupply_Close(vi), 0);
    measuring.join();
    EXPECT_EQ(measured, 0);
    EXPECT_EQ(volts, 0.0);
    for (auto& thread : waiting) {
        thread.join();
    }
    for (const auto status : statuses) {
        EXPECT_TRUE(status == 0 || status == TARNEX_ERROR_INVALID_SESSION_HANDLE) << status;
    }
    EXPECT_EQ(TARNEXSupply_SetBleeder(vi, VI_TRUE), TARNEX_ERROR_INVALID_SESSION_HANDLE);
}

TEST_F(SupplyLock, KeepsTheExchangesOfManyThreadsApart) {
    ViSession vi = VI_NULL;
    ASSERT_EQ(TARNEXSupply_Open(server_->Resource().c_str(), "", 2000, &vi), 0);
    ASSERT_EQ(TARNEXSupply_SetVoltage(vi, "OutputChannel1", 3.0), 0);
    ASSERT_EQ(TARNEXSupply_SetVoltage(vi, "OutputChannel2", 2.0), 0);
    std::atomic<int> wrong{0};
    std::vector<std::thread> threads;
    for (int number = 0; number < 4; ++number) {
        threads.emplace_back([&wrong, vi, number] {
            for (int round = 0; round < 100; ++round) {
                ViReal64 volts = 0.0;
                const bool first = (number + round) % 2 == 0;
                const auto status =
                    number == 3 ? TARNEX_Measure(vi, first ? "OutputChannel1" : "OutputChannel2",
                                                 TARNEX_VAL_MEASURE_VOLTAGE, &volts)
                                : TARNEXSupply_GetVoltage(vi, first ? "OutputChannel1" : "OutputChannel2", &volts);
                wrong += status < 0 || volts != (first ? 3.0 : 2.0) ? 1 : 0;
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(TARNEXSupply_Close(vi), 0);
}

} // namespace
} // namespace system_tests
