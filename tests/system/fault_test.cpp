// An instrument that hangs, is slow, closes the connection or replies nonsense, over TCP and over a pseudo-terminal.
#include <array>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <stdexcept>
#include <thread>

#include "tests/system/supply_fixture.h"

namespace system_tests {
namespace {

using std::chrono::milliseconds;
using virtual_supply::FaultKind;
using Clock = std::chrono::steady_clock;

constexpr auto kTimeOut = milliseconds(2000); // the driver's, for each exchange
constexpr auto kGuard = milliseconds(30000);  // no more than that it does end
constexpr const char* kChannel = "OutputChannel1";
constexpr const char* kNotOpened =
    "I/O error.  Insufficient location information or resource not present in the system";

/// Counts the replies in the server's log, and waits for them.
class Journal {
  public:
    void Note(std::string_view line) {
        const std::lock_guard lock(mutex_);
        replies_ += line.find(" > ") != std::string_view::npos ? 1 : 0;
        changed_.notify_all();
    }
    /// Waits until `count` replies have been sent. Returns false after kGuard.
    bool WaitForReplies(int count) {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, kGuard, [&] { return replies_ >= count; });
    }
    int Replies() {
        const std::lock_guard lock(mutex_);
        return replies_;
    }

  private:
    std::mutex mutex_;
    std::condition_variable changed_;
    int replies_ = 0;
};

/// Constructed before the server that writes to it and destroyed after it.
struct HasJournal {
    Journal journal;
};

class Fault : protected HasJournal, public SupplyOverEachLine {
  protected:
    Fault() : SupplyOverEachLine(Into(journal)) {}

    static virtual_supply::ServerOptions Into(Journal& journal) {
        return {.log = [&journal](std::string_view line) { journal.Note(line); }};
    }

    void Next(FaultKind kind, std::uint64_t value = 0) { server_->Faults().AddForNext(kind, value); }
    ViStatus MeasureVoltage() { return TARNEX_Measure(vi_, kChannel, TARNEX_VAL_MEASURE_VOLTAGE, &volts_); }

    /// Returns the resource of the supply after it has hung up: a pseudo-terminal gets another name.
    std::string ResourceAfter(const std::string& before) {
        const auto deadline = Clock::now() + kGuard;
        while (GetParam() == Line::PseudoTerminal && server_->Resource() == before && Clock::now() < deadline) {
            std::this_thread::sleep_for(milliseconds(1));
        }
        return server_->Resource();
    }

    /// Waits until the server has sent `replies` replies and the line has delivered them.
    bool AllIsSent(int replies) {
        const bool sent = journal.WaitForReplies(replies);
        std::this_thread::sleep_for(milliseconds(50)); // time from the server's log to this end of the line
        return sent;
    }

    /// Runs `call` and writes its duration in ms into the test's report.
    template <typename Call>
    auto Timed(Call call) {
        const auto begin = Clock::now();
        const auto result = call();
        took_ = Clock::now() - begin;
        RecordProperty("took_us", std::to_string(std::chrono::duration_cast<std::chrono::microseconds>(took_).count()));
        return result;
    }

    const ViSession vi_ = Open();
    ViReal64 volts_ = 1.25;
    Clock::duration took_{};
};

TEST_P(Fault, OfASilentInstrumentEndsWithTheTimeOutAndANewSessionWorks) {
    Next(FaultKind::Silent);
    EXPECT_EQ(Timed([&] { return MeasureVoltage(); }), kIoError);
    EXPECT_GE(took_, kTimeOut);
    EXPECT_LT(took_, kGuard);
    EXPECT_EQ(LastError(vi_), (DriverError{0xBFFA4214, "I/O error."}));
    EXPECT_EQ(volts_, 1.25);
    EXPECT_EQ(MeasureVoltage(), kTermChar); // this session too: no bytes are left on the line
    EXPECT_EQ(volts_, 0.0);
    EXPECT_EQ(Measure(Open(), kChannel, TARNEX_VAL_MEASURE_VOLTAGE), 0.0);
}

TEST_P(Fault, OfASilentInstrumentFailsEveryQuery) {
    server_->Faults().Add({.kind = FaultKind::Silent});
    ViInt32 code = 0;
    std::array<ViChar, 1024> text{};
    ViBoolean on = VI_FALSE;
    ViReal64 volts = 0.0;
    EXPECT_EQ(Timed([&] { return TARNEX_error_query(vi_, &code, text.data()); }), kIoError);
    EXPECT_GE(took_, kTimeOut);
    EXPECT_EQ(LastError(vi_), (DriverError{0xBFFA4214, "I/O error."}));
    EXPECT_EQ(Timed([&] { return TARNEX_GetAttributeViReal64(vi_, kChannel, TARNEX_ATTR_VOLTAGE_LEVEL, &volts); }),
              kIoError);
    EXPECT_GE(took_, kTimeOut);
    EXPECT_EQ(Timed([&] { return TARNEX_GetAttributeViBoolean(vi_, kChannel, TARNEX_ATTR_OUTPUT_ENABLED, &on); }),
              kIoError);
    EXPECT_GE(took_, kTimeOut);
    EXPECT_EQ(TARNEX_ConfigureVoltageLevel(vi_, kChannel, 1.0),
              0); // no reply is needed, and the instrument still receives
    server_->Faults().Clear();
    EXPECT_EQ(MeasureVoltage(), kTermChar);
    EXPECT_EQ(volts_, 1.0);
}

TEST_P(Fault, OfADroppedConnectionIsAnIoErrorAndANewSessionWorks) {
    const auto before = server_->Resource();
    Next(FaultKind::Drop);
    EXPECT_EQ(Timed([&] { return MeasureVoltage(); }), kIoError);
    EXPECT_LT(took_, kGuard);
    EXPECT_EQ(LastError(vi_), (DriverError{0xBFFA4214, "I/O error."}));
    EXPECT_EQ(MeasureVoltage(), kIoError);
    EXPECT_EQ(TARNEX_ConfigureVoltageLevel(vi_, kChannel, 1.0), kIoError);
    EXPECT_EQ(TARNEX_close(vi_), 0);
    ViSession vi = VI_NULL;
    TARNEX_ClearError(VI_NULL);
    EXPECT_EQ(TryOpen(ResourceAfter(before), "", vi), 0);
    EXPECT_EQ(Measure(vi, kChannel, TARNEX_VAL_MEASURE_VOLTAGE), 0.0);
}

TEST_P(Fault, OfAStoppedServerIsAnIoErrorAndANewSessionWorksAfterItsRestart) {
    server_.reset();
    EXPECT_EQ(Timed([&] { return MeasureVoltage(); }), kIoError);
    EXPECT_LT(took_, kGuard);
    EXPECT_EQ(TARNEX_close(vi_), 0);
    TARNEX_ClearError(VI_NULL);
    server_.emplace(supply_, OverThisLine(Into(journal)));
    EXPECT_EQ(Measure(Open(), kChannel, TARNEX_VAL_MEASURE_VOLTAGE), 0.0);
}

TEST_P(Fault, OfADelayedReplyIsATimeOut) {
    Next(FaultKind::Delay, 300);
    EXPECT_EQ(MeasureVoltage(), kTermChar);
    EXPECT_EQ(volts_, 0.0);
}

// The driver does not clear the device, so a late reply still arrives.
TEST_P(Fault, OfALateReplyAnswersTheNextQueryUntilTheSessionIsClosed) {
    Ask(":SOUR1:VOLT 3");
    Ask(":SOUR1:CURR 2");
    const int before = journal.Replies();
    Next(FaultKind::Delay, 2500);
    EXPECT_EQ(Timed([&] { return MeasureVoltage(); }), kIoError);
    EXPECT_GE(took_, kTimeOut);
    EXPECT_LT(took_, kGuard);
    EXPECT_EQ(volts_, 1.25);
    EXPECT_EQ(Measure(vi_, kChannel, TARNEX_VAL_MEASURE_CURRENT), 3.0); // the voltage
    EXPECT_EQ(Measure(vi_, kChannel, TARNEX_VAL_MEASURE_VOLTAGE), 2.0); // the current

    ASSERT_TRUE(AllIsSent(before + 3));
    EXPECT_EQ(TARNEX_close(vi_), 0);
    const auto vi = Open();
    EXPECT_EQ(Measure(vi, kChannel, TARNEX_VAL_MEASURE_VOLTAGE), 3.0);
    EXPECT_EQ(Measure(vi, kChannel, TARNEX_VAL_MEASURE_CURRENT), 2.0);
}

TEST_P(Fault, OfAGarbledReplyThrowsAndLeavesTheSessionUnlockedAndUsable) {
    Next(FaultKind::Garbage);
    EXPECT_THROW(MeasureVoltage(), std::invalid_argument);
    EXPECT_EQ(MeasureVoltage(), kTermChar);
    EXPECT_EQ(volts_, 0.0);
}

TEST_P(Fault, OfAReplyWithoutItsLineEndIsATimeOut) {
    Next(FaultKind::Cut);
    EXPECT_EQ(Timed([&] { return MeasureVoltage(); }), kIoError);
    EXPECT_GE(took_, kTimeOut);
    EXPECT_LT(took_, kGuard);
    EXPECT_EQ(volts_, 1.25);
    EXPECT_EQ(MeasureVoltage(), kTermChar); // the read that timed out has discarded the first half
    EXPECT_EQ(volts_, 0.0);
}

TEST_P(Fault, OfAnOverlongReplyTruncatesItAndTheRestAnswersTheNextQuery) {
    const int before = journal.Replies();
    Next(FaultKind::Long, 1500);
    EXPECT_EQ(static_cast<unsigned>(MeasureVoltage()), 0x3FFF0006U);
    EXPECT_EQ(volts_, 0.0);
    volts_ = 1.25;
    EXPECT_THROW(MeasureVoltage(), std::invalid_argument); // not a number
    EXPECT_EQ(volts_, 1.25);
    ASSERT_TRUE(AllIsSent(before + 2));
    EXPECT_EQ(TARNEX_close(vi_), 0);
    EXPECT_EQ(Measure(Open(), kChannel, TARNEX_VAL_MEASURE_VOLTAGE), 0.0);
}

TEST_P(Fault, OfACarriageReturnBeforeTheLineEndKeepsNumbersAndStaysInTexts) {
    server_->Faults().Add({.kind = FaultKind::CrLf});
    EXPECT_EQ(MeasureVoltage(), kTermChar);
    EXPECT_EQ(volts_, 0.0);
    const auto vi = Open();
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_INSTRUMENT_FIRMWARE_REVISION), "1.00\r");
}

TEST_P(Fault, WhileOpeningFailsTheOpening) {
    auto resource = server_->Resource();
    for (const auto kind : {FaultKind::Drop, FaultKind::Garbage, FaultKind::Silent}) {
        TARNEX_ClearError(VI_NULL);
        Next(kind);
        ViSession vi = 7;
        EXPECT_EQ(TryOpen(resource, "", vi), kIoError);
        EXPECT_EQ(vi, 0U);
        EXPECT_EQ(LastError(VI_NULL).description, kNotOpened);
        if (kind == FaultKind::Drop) {
            resource = ResourceAfter(resource);
        }
    }
}

TEST_P(Fault, OfAMissingResourceFailsTheOpening) {
    const auto resource = server_->Resource();
    server_.reset();
    for (const auto& name :
         {resource, std::string("TCPIP0::127.0.0.1::port::SOCKET"), std::string("nonsense"), std::string(),
          std::string("GPIB0::5::INSTR"), std::string("USB0::1::2::3::INSTR"), std::string("TCPIP0::127.0.0.1::INSTR"),
          std::string("ASRL/dev/null::INSTR"), std::string("TCPIP0::no-such-host.invalid::5025::SOCKET")}) {
        TARNEX_ClearError(VI_NULL);
        ViSession vi = 7;
        EXPECT_EQ(TryOpen(name, "", vi), kIoError) << name;
        EXPECT_EQ(vi, 0U);
        EXPECT_EQ(LastError(VI_NULL), (DriverError{0xBFFA4214, kNotOpened})) << name;
    }
}

INSTANTIATE_TEST_SUITE_P(Over, Fault, testing::Values(Line::Tcp, Line::PseudoTerminal), LineName);

} // namespace
} // namespace system_tests
