// Switching an output off with certainty: what is sent, what is believed, and when it is given up.
#include <chrono>
#include <string>

#include "tests/supply/supply_fixture.h"

namespace supply_tests {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr const char* kQuery = ":OUTP:STAT? CH1";

class EnsureOff : public SupplyOverDoubles {
  protected:
    EnsureOff() { Reply(kQuery, "OFF\n"); }

    static Status Run(ViSession vi, ViInt32 giveUpMs = 0) {
        return Status(TARNEXSupply_EnsureOff(vi, kFirst, giveUpMs));
    }
};

TEST_F(EnsureOff, StopsSequencesSwitchesOffAndReadsBack) {
    const auto vi = Open();
    TakeWritten();
    EXPECT_EQ(Run(vi), kSuccess);
    EXPECT_THAT(TakeWritten(),
                ElementsAre(":LIST:STAT OFF\n", ":DELAY:STATe OFF\n", ":OUTP:STAT CH1,OFF\n", ":OUTP:STAT? CH1\n"));
    EXPECT_EQ(LocksHeld(), 0);
}

TEST_F(EnsureOff, LeavesTheSequencesOfChannel1RunningWhenItIsForChannel2) {
    const auto vi = Open();
    TakeWritten();
    Reply(":OUTP:STAT? CH2", "OFF\n");
    EXPECT_EQ(Status(TARNEXSupply_EnsureOff(vi, kSecond, 0)), kSuccess);
    EXPECT_THAT(TakeWritten(), ElementsAre(":OUTP:STAT CH2,OFF\n", ":OUTP:STAT? CH2\n"));
}

TEST_F(EnsureOff, LimitsTheTimeoutBetweenTriesAndRestoresIt) {
    const auto vi = Open();
    ASSERT_EQ(Status(TARNEXSupply_SetTimeout(vi, 30000)), kSuccess);
    doubles::TheVisa().ForgetSettings();
    Fail("viRead", kVisaTimeout);
    EXPECT_EQ(Run(vi, 5000), kSuccess);
    const auto settings = doubles::TheVisa().Settings();
    ASSERT_FALSE(settings.empty());
    EXPECT_EQ(settings.front(), "viSetAttribute 3FFF001A 2000");
    EXPECT_EQ(settings.back(), "viSetAttribute 3FFF001A 30000");
    ViInt32 timeout = 0;
    EXPECT_EQ(Status(TARNEXSupply_GetTimeout(vi, &timeout)), kSuccess);
    EXPECT_EQ(timeout, 30000);
}

TEST_F(EnsureOff, ReportsAnOutputThatIsStillOn) {
    const auto vi = Open();
    Reply(kQuery, "ON\n");
    EXPECT_EQ(Run(vi), Status(0xBFFA4304));
    EXPECT_EQ(LastError(vi), (DriverError{Status(0xBFFA4304), "The output is still on."}));
}

TEST_F(EnsureOff, SwitchesOffEvenWhenASequenceCannotBeStopped) {
    const auto vi = Open();
    TakeWritten();
    Fail("viWrite", 0xBFFF003E); // of the first command
    EXPECT_EQ(Run(vi), kSuccess);
    const auto written = TakeWritten();
    EXPECT_THAT(written, testing::Contains(":OUTP:STAT CH1,OFF\n"));
    EXPECT_EQ(written.back(), ":OUTP:STAT? CH1\n");
}

TEST_F(EnsureOff, RepeatsAllStepsAfterAFailedReadBack) {
    const auto vi = Open();
    TakeWritten();
    Fail("viRead", kVisaTimeout);
    EXPECT_EQ(Run(vi, 5000), kSuccess);
    const auto written = TakeWritten();
    EXPECT_EQ(std::count(written.begin(), written.end(), ":OUTP:STAT CH1,OFF\n"), 2);
    EXPECT_EQ(Status(TARNEX_GetError(vi, nullptr, 0, nullptr)), Status(1U)); // no error is left
}

TEST_F(EnsureOff, GivesUpAfterTheGivenTimeWithTheReason) {
    const auto vi = Open();
    Reply(kQuery, "?\n");
    const auto before = steady_clock::now();
    EXPECT_EQ(Run(vi, 200), kMalformed);
    EXPECT_LT(steady_clock::now() - before, milliseconds(5000));
    EXPECT_EQ(LastError(vi),
              (DriverError{kMalformed, "Unexpected response from instrument.  Command ':OUTP:STAT? CH1', "
                                       "reply '?'."}));
}

TEST_F(EnsureOff, DoesNotRepeatForAnUnknownChannel) {
    const auto vi = Open();
    const auto before = steady_clock::now();
    EXPECT_EQ(Status(TARNEXSupply_EnsureOff(vi, "Nowhere", 60000)), Status(0xBFFA0067));
    EXPECT_LT(steady_clock::now() - before, milliseconds(5000));
}

TEST_F(EnsureOff, SucceedsInSimulationWithoutTraffic) {
    const auto vi = Open("Simulate=1");
    TakeWritten();
    EXPECT_EQ(Run(vi), kSuccess);
    EXPECT_THAT(TakeWritten(), IsEmpty());
}

TEST_F(EnsureOff, RefusesAnUnknownHandle) { EXPECT_EQ(Run(77), Status(0xBFFA1190)); }

} // namespace
} // namespace supply_tests
