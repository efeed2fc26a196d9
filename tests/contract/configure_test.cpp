#include <cmath>
#include <limits>

#include "tests/contract/driver_fixture.h"

namespace contract {
namespace {

class Configure : public DriverTest {};

constexpr std::uint32_t kIoError = 0xBFFA4214;
constexpr std::uint32_t kInvalidValue = 0xBFFA4217;

TEST_F(Configure, OutputEnabledTreatsEveryNonZeroValueAsOn) {
    const auto vi = Open();
    EXPECT_EQ(Status(TARNEX_ConfigureOutputEnabled(vi, "OutputChannel1", VI_TRUE)), Status(0U));
    EXPECT_EQ(Status(TARNEX_ConfigureOutputEnabled(vi, "OutputChannel2", 0x8000)), Status(0U));
    EXPECT_EQ(Status(TARNEX_ConfigureOutputEnabled(vi, "OutputChannel1", VI_FALSE)), Status(0U));
    EXPECT_THAT(TakeWritten(), ElementsAre(":OUTP:STAT CH1,ON\n", ":OUTP:STAT CH2,ON\n", ":OUTP:STAT CH1,OFF\n"));
}

TEST_F(Configure, VoltageLevelIsSentWithSixDecimals) {
    const auto vi = Open();
    for (const double level : {3.3, 0.1, 12.3456789, 0.0005, 22.0, 0.0, -0.0}) {
        EXPECT_EQ(Status(TARNEX_ConfigureVoltageLevel(vi, "OutputChannel1", level)), Status(0U)) << level;
    }
    EXPECT_THAT(TakeWritten(),
                ElementsAre(":SOUR1:VOLT 3.300000\n", ":SOUR1:VOLT 0.100000\n", ":SOUR1:VOLT 12.345679\n",
                            ":SOUR1:VOLT 0.000500\n", ":SOUR1:VOLT 22.000000\n", ":SOUR1:VOLT 0.000000\n",
                            ":SOUR1:VOLT -0.000000\n"));
}

TEST_F(Configure, VoltageLevelBeyondTheChannelsLimitsIsRefusedAndRecordedBare) {
    const auto vi = Open();
    const auto infinity = std::numeric_limits<double>::infinity();
    for (const double level : {22.000001, -0.000001, 1e300, -1e300, infinity, -infinity}) {
        EXPECT_EQ(Status(TARNEX_ConfigureVoltageLevel(vi, "OutputChannel1", level)), Status(kInvalidValue)) << level;
        EXPECT_EQ(LastError(vi), (DriverError{kInvalidValue, "Attribute or function parameter value is invalid (out of "
                                                             "range or not supported)."}));
    }
    EXPECT_EQ(Status(TARNEX_ConfigureVoltageLevel(vi, "OutputChannel2", 5.6)), Status(kInvalidValue));
    EXPECT_THAT(TakeWritten(), IsEmpty());
}

TEST_F(Configure, VoltageLevelIsCheckedForEveryRangeCheckOption) {
    const auto vi = Open("RangeCheck=0");
    EXPECT_EQ(Status(TARNEX_ConfigureVoltageLevel(vi, "OutputChannel1", 23.0)), Status(kInvalidValue));
}

TEST_F(Configure, VoltageLevelNanIsSent) {
    const auto vi = Open();
    EXPECT_EQ(Status(TARNEX_ConfigureVoltageLevel(vi, "OutputChannel1", std::nan(""))), Status(0U));
    EXPECT_EQ(Status(TARNEX_ConfigureVoltageLevel(vi, "OutputChannel1", -std::nan(""))), Status(0U));
    EXPECT_EQ(Status(TARNEX_ConfigureVoltageLevel(vi, "OutputChannel1", 4.9e-324)), Status(0U));
    EXPECT_THAT(TakeWritten(), ElementsAre(":SOUR1:VOLT nan\n", ":SOUR1:VOLT nan\n", ":SOUR1:VOLT 0.000000\n"));
}

TEST_F(Configure, CurrentLimitSendsLevelThenProtectionLevelThenProtectionState) {
    const auto vi = Open();
    EXPECT_EQ(Status(TARNEX_ConfigureCurrentLimit(vi, "OutputChannel2", TARNEX_VAL_CURRENT_TRIP, 16.8)), Status(0U));
    EXPECT_THAT(TakeWritten(),
                ElementsAre(":SOUR2:CURR 16.800000\n", ":SOUR2:CURR:PROT 16.800000\n", ":SOUR2:CURR:PROT:STAT ON\n"));
    EXPECT_EQ(Status(TARNEX_ConfigureCurrentLimit(vi, "OutputChannel1", TARNEX_VAL_CURRENT_REGULATE, 1.5)), Status(0U));
    EXPECT_THAT(TakeWritten(),
                ElementsAre(":SOUR1:CURR 1.500000\n", ":SOUR1:CURR:PROT 1.500000\n", ":SOUR1:CURR:PROT:STAT OFF\n"));
}

TEST_F(Configure, CurrentLimitTreatsAnUnknownBehaviorAsProtectionOff) {
    const auto vi = Open();
    EXPECT_EQ(Status(TARNEX_ConfigureCurrentLimit(vi, "OutputChannel1", 7, 1.0)), Status(0U));
    EXPECT_THAT(TakeWritten(),
                ElementsAre(":SOUR1:CURR 1.000000\n", ":SOUR1:CURR:PROT 1.000000\n", ":SOUR1:CURR:PROT:STAT OFF\n"));
}

TEST_F(Configure, CurrentLimitBeyondTheChannelsLimitsEndsTheCall) {
    const auto vi = Open();
    EXPECT_EQ(Status(TARNEX_ConfigureCurrentLimit(vi, "OutputChannel1", 1, 5.6)), Status(kInvalidValue));
    EXPECT_EQ(Status(TARNEX_ConfigureCurrentLimit(vi, "OutputChannel2", 1, -0.1)), Status(kInvalidValue));
    EXPECT_THAT(TakeWritten(), IsEmpty());
}

TEST_F(Configure, OvpSendsTheLevelFirstEvenToSwitchItOff) {
    const auto vi = Open();
    EXPECT_EQ(Status(TARNEX_ConfigureOVP(vi, "OutputChannel1", VI_FALSE, 10.0)), Status(0U));
    EXPECT_EQ(Status(TARNEX_ConfigureOVP(vi, "OutputChannel2", 5, 5.0)), Status(0U));
    EXPECT_THAT(TakeWritten(), ElementsAre(":SOUR1:VOLT:PROT 10.000000\n", ":SOUR1:VOLT:PROT:STAT OFF\n",
                                           ":SOUR2:VOLT:PROT 5.000000\n", ":SOUR2:VOLT:PROT:STAT ON\n"));
}

TEST_F(Configure, OvpBeyondTheChannelsLimitsEndsTheCall) {
    const auto vi = Open();
    EXPECT_EQ(Status(TARNEX_ConfigureOVP(vi, "OutputChannel2", VI_TRUE, 5.500001)), Status(kInvalidValue));
    EXPECT_THAT(TakeWritten(), IsEmpty());
}

TEST_F(Configure, OutputRangeAndResetOutputProtectionSendNothingAndCheckNoStatus) {
    Reply("*ESR?", "0\n");
    const auto vi = Open("QueryInstrStatus=1");
    EXPECT_EQ(Status(TARNEX_ConfigureOutputRange(vi, "OutputChannel1", 99, 1e300)), Status(0U));
    EXPECT_EQ(Status(TARNEX_ResetOutputProtection(vi, "OutputChannel1-OutputChannel2")), Status(0U));
    EXPECT_THAT(TakeWritten(), IsEmpty());
}

TEST_F(Configure, OutputRangeAndResetOutputProtectionValidateTheSelector) {
    const auto vi = Open();
    EXPECT_EQ(Status(TARNEX_ConfigureOutputRange(vi, "OutputChannel3", 0, 1.0)), Status(0xBFFA0067));
    EXPECT_EQ(Status(TARNEX_ResetOutputProtection(vi, "")), Status(0xBFFA0044));
}

TEST_F(Configure, SetsEachChannelCompletelyBeforeTheNext) {
    const auto vi = Open();
    EXPECT_EQ(Status(TARNEX_ConfigureOVP(vi, "OutputChannel2,OutputChannel1", VI_TRUE, 1.0)), Status(0U));
    EXPECT_THAT(TakeWritten(), ElementsAre(":SOUR2:VOLT:PROT 1.000000\n", ":SOUR2:VOLT:PROT:STAT ON\n",
                                           ":SOUR1:VOLT:PROT 1.000000\n", ":SOUR1:VOLT:PROT:STAT ON\n"));
}

TEST_F(Configure, StopsAtTheFirstCommandThatFails) {
    const auto vi = Open();
    Fail("viWrite", 0xBFFF0015, 2);
    EXPECT_EQ(Status(TARNEX_ConfigureCurrentLimit(vi, "OutputChannel1,OutputChannel2", 1, 1.0)), Status(kIoError));
    EXPECT_THAT(TakeWritten(), ElementsAre(":SOUR1:CURR 1.000000\n"));
    EXPECT_EQ(LastError(vi), (DriverError{kIoError, "I/O error."}));
}

TEST_F(Configure, StopsAtTheFirstChannelThatRefusesItsValueAndKeepsEarlierSettings) {
    const auto vi = Open();
    EXPECT_EQ(Status(TARNEX_ConfigureVoltageLevel(vi, "OutputChannel1,OutputChannel2", 12.0)), Status(kInvalidValue));
    EXPECT_THAT(TakeWritten(), ElementsAre(":SOUR1:VOLT 12.000000\n"));
}

TEST_F(Configure, StopsAtTheFirstWarningAndReturnsItUnrecorded) {
    Reply("*ESR?", "0\n");
    const auto vi = Open("QueryInstrStatus=1");
    Fail("viWrite", 0x3FFF0085);
    EXPECT_EQ(Status(TARNEX_ConfigureVoltageLevel(vi, "OutputChannel1,OutputChannel2", 1.0)), Status(0x3FFF0085));
    EXPECT_THAT(TakeWritten(), IsEmpty());
    EXPECT_THAT(doubles::TheSessionService().Recorded(), IsEmpty());
}

TEST_F(Configure, ChecksTheInstrumentsStatusOnceAtTheEnd) {
    Reply("*ESR?", "0\n");
    const auto vi = Open("QueryInstrStatus=1");
    EXPECT_EQ(Status(TARNEX_ConfigureVoltageLevel(vi, "OutputChannel1,OutputChannel2", 1.0)), Status(0U));
    EXPECT_THAT(TakeWritten(), ElementsAre(":SOUR1:VOLT 1.000000\n", ":SOUR2:VOLT 1.000000\n", "*ESR?\n"));
}

TEST_F(Configure, ReportsEachOfTheFourErrorBitsOfTheEventStatusRegister) {
    Reply("*ESR?", "0\n");
    const auto vi = Open("QueryInstrStatus=1");
    for (const auto* value : {"4", "8", "16", "32", "60", "255", " 4"}) {
        Reply("*ESR?", std::string(value) + "\n");
        EXPECT_EQ(Status(TARNEX_ConfigureVoltageLevel(vi, "OutputChannel1", 1.0)), Status(0xBFFA0001)) << value;
        EXPECT_EQ(LastError(vi), (DriverError{0xBFFA0001, "Instrument error detected.  Use ErrorQuery() to determine "
                                                          "the error(s)."}));
    }
    for (const auto* value : {"0", "1", "2", "64", "128", "195", "3;"}) {
        Reply("*ESR?", std::string(value) + "\n");
        EXPECT_EQ(Status(TARNEX_ConfigureVoltageLevel(vi, "OutputChannel1", 1.0)), Status(0U)) << value;
    }
}

TEST_F(Configure, RecordsAStatusQueryThatFails) {
    Reply("*ESR?", "0\n");
    const auto vi = Open("QueryInstrStatus=1");
    Fail("viRead", 0xBFFF0015);
    EXPECT_EQ(Status(TARNEX_ConfigureVoltageLevel(vi, "OutputChannel1", 1.0)), Status(kIoError));
    EXPECT_EQ(LastError(vi), (DriverError{kIoError, "I/O error."}));
}

TEST_F(Configure, ThrowsOnAStatusThatIsNotA32BitNumber) {
    Reply("*ESR?", "0\n");
    const auto vi = Open("QueryInstrStatus=1");
    Reply("*ESR?", "2147483648\n");
    try {
        TARNEX_ConfigureVoltageLevel(vi, "OutputChannel1", 1.0);
        FAIL() << "no exception";
    } catch (const std::out_of_range& exception) {
        EXPECT_STREQ(exception.what(), "stol argument out of range");
    }
    Reply("*ESR?", "\n");
    try {
        TARNEX_ConfigureVoltageLevel(vi, "OutputChannel1", 1.0);
        FAIL() << "no exception";
    } catch (const std::invalid_argument& exception) {
        EXPECT_STREQ(exception.what(), "invalid stol argument");
    }
    EXPECT_EQ(doubles::TheSessionService().LocksHeld(), 0);
}

TEST_F(Configure, ReturnsTheSocketsPositiveStatusOfTheStatusQuery) {
    Reply("*ESR?", "0\n");
    const auto vi = OpenOn(kSocketResource, "QueryInstrStatus=1");
    EXPECT_EQ(Status(TARNEX_ConfigureVoltageLevel(vi, "OutputChannel1", 1.0)), Status(0x3FFF0005));
    EXPECT_THAT(doubles::TheSessionService().Recorded(), IsEmpty());
}

TEST_F(Configure, InSimulationSucceedsWithoutIoAndRefusesNothing) {
    const auto vi = Open("Simulate=1, QueryInstrStatus=1");
    EXPECT_EQ(Status(TARNEX_ConfigureVoltageLevel(vi, "OutputChannel1", 1e300)), Status(0U));
    EXPECT_EQ(Status(TARNEX_ConfigureCurrentLimit(vi, "OutputChannel2", 1, -5.0)), Status(0U));
    EXPECT_EQ(Status(TARNEX_ConfigureOVP(vi, "OutputChannel2", VI_TRUE, 99.0)), Status(0U));
    EXPECT_EQ(Status(TARNEX_ConfigureOutputEnabled(vi, "OutputChannel2", VI_TRUE)), Status(0U));
    EXPECT_EQ(doubles::TheScript().Count("viWrite"), 0U);
}

} // namespace
} // namespace contract
