// Every function of the driver with a working instrument: the state of the instrument afterwards, and the results.
#include <array>
#include <cmath>
#include <limits>
#include <string>

#include "tests/system/supply_fixture.h"

namespace system_tests {
namespace {

constexpr const char* kFirst = "OutputChannel1";
constexpr const char* kSecond = "OutputChannel2";
constexpr const char* kBoth = "OutputChannel1,OutputChannel2";
constexpr const char* kRange = "OutputChannel1-OutputChannel2";

constexpr auto kRefused = static_cast<ViStatus>(0xBFFA4217);
constexpr auto kUnknownChannel = static_cast<ViStatus>(0xBFFA0067);
constexpr auto kNullPointer = static_cast<ViStatus>(0xBFFA0058);

class DriverFunctions : public SupplyTest {
  protected:
    /// Returns the supply's reply after it has executed everything that the session sent.
    std::string Holds(ViSession vi, const std::string& query) {
        GetBoolean(vi, kFirst, TARNEX_ATTR_OUTPUT_ENABLED); // its reply follows the execution of all earlier commands
        return Ask(query);
    }
};

TEST_F(DriverFunctions, OutputEnabledSwitchesEachSelectedChannel) {
    const auto vi = Open();
    EXPECT_EQ(TARNEX_ConfigureOutputEnabled(vi, kBoth, 2), 0); // any value but zero
    EXPECT_EQ(Holds(vi, ":OUTP:STAT? CH1"), "ON");
    EXPECT_EQ(Holds(vi, ":OUTP:STAT? CH2"), "ON");
    EXPECT_EQ(TARNEX_ConfigureOutputEnabled(vi, kSecond, VI_FALSE), 0);
    EXPECT_EQ(Holds(vi, ":OUTP:STAT? CH1"), "ON");
    EXPECT_EQ(Holds(vi, ":OUTP:STAT? CH2"), "OFF");
}

TEST_F(DriverFunctions, CurrentLimitSetsLevelProtectionLevelAndProtectionState) {
    const auto vi = Open();
    EXPECT_EQ(TARNEX_ConfigureCurrentLimit(vi, kRange, TARNEX_VAL_CURRENT_TRIP, 1.25), 0);
    for (const std::string channel : {"1", "2"}) {
        EXPECT_EQ(Holds(vi, ":SOUR" + channel + ":CURR?"), "1.250000");
        EXPECT_EQ(Holds(vi, ":SOUR" + channel + ":CURR:PROT?"), "1.250000");
        EXPECT_EQ(Holds(vi, ":SOUR" + channel + ":CURR:PROT:STAT?"), "ON");
    }
    EXPECT_EQ(TARNEX_ConfigureCurrentLimit(vi, kFirst, 7, 2.5), 0); // an unknown behavior regulates
    EXPECT_EQ(Holds(vi, ":SOUR1:CURR?"), "2.500000");
    EXPECT_EQ(Holds(vi, ":SOUR1:CURR:PROT?"), "2.500000");
    EXPECT_EQ(Holds(vi, ":SOUR1:CURR:PROT:STAT?"), "OFF");
    EXPECT_EQ(Holds(vi, ":SOUR2:CURR:PROT:STAT?"), "ON");
}

TEST_F(DriverFunctions, CurrentLimitAttributeSetsTheProtectionLevelTooAndLeavesItsState) {
    const auto vi = Open();
    Ask(":SOUR1:CURR:PROT:STAT ON");
    EXPECT_EQ(TARNEX_SetAttributeViReal64(vi, kFirst, TARNEX_ATTR_CURRENT_LIMIT, 0.75), 0);
    EXPECT_EQ(Holds(vi, ":SOUR1:CURR?"), "0.750000");
    EXPECT_EQ(Holds(vi, ":SOUR1:CURR:PROT?"), "0.750000");
    EXPECT_EQ(Holds(vi, ":SOUR1:CURR:PROT:STAT?"), "ON");
}

TEST_F(DriverFunctions, BehaviorAttributeRefusesValuesThatTheFunctionAccepts) {
    const auto vi = Open();
    Ask(":SOUR1:CURR:PROT:STAT ON");
    EXPECT_EQ(TARNEX_SetAttributeViInt32(vi, kFirst, TARNEX_ATTR_CURRENT_LIMIT_BEHAVIOR, 7), kRefused);
    EXPECT_EQ(
        LastError(vi),
        (DriverError{0xBFFA4217, "Attribute or function parameter value is invalid (out of range or not supported)."}));
    EXPECT_EQ(Holds(vi, ":SOUR1:CURR:PROT:STAT?"), "ON");
}

TEST_F(DriverFunctions, OvpSetsItsLevelEvenWhenItIsSwitchedOff) {
    const auto vi = Open();
    EXPECT_EQ(TARNEX_ConfigureOVP(vi, kFirst, VI_TRUE, 12.5), 0);
    EXPECT_EQ(Holds(vi, ":SOUR1:VOLT:PROT:STAT?"), "ON");
    EXPECT_EQ(TARNEX_ConfigureOVP(vi, kFirst, VI_FALSE, 7.5), 0);
    EXPECT_EQ(Holds(vi, ":SOUR1:VOLT:PROT?"), "7.500000");
    EXPECT_EQ(Holds(vi, ":SOUR1:VOLT:PROT:STAT?"), "OFF");
}

TEST_F(DriverFunctions, OutputRangeAndResetOutputProtectionChangeNothing) {
    const auto vi = Open();
    TARNEX_ConfigureOVP(vi, kFirst, VI_TRUE, 10.0);
    TARNEX_ConfigureVoltageLevel(vi, kFirst, 12.0);
    TARNEX_ConfigureOutputEnabled(vi, kFirst, VI_TRUE); // trips at once
    EXPECT_EQ(TARNEX_ConfigureOutputRange(vi, kFirst, TARNEX_VAL_RANGE_VOLTAGE, 1.0), 0);
    EXPECT_EQ(TARNEX_ResetOutputProtection(vi, kFirst), 0);
    EXPECT_EQ(Holds(vi, ":SOUR1:VOLT?"), "12.000000");
    EXPECT_EQ(Holds(vi, ":OUTP:STAT? CH1"), "OFF");
    EXPECT_EQ(Ask(":SYSTem:ERRor?"), "-300,\"Device-specific error;Over-voltage protection tripped on CH1\"");
    EXPECT_EQ(TARNEX_ConfigureOutputRange(vi, "OutputChannel3", TARNEX_VAL_RANGE_VOLTAGE, 1.0), kUnknownChannel);
    EXPECT_EQ(TARNEX_ResetOutputProtection(vi, "OutputChannel3"), kUnknownChannel);
}

TEST_F(DriverFunctions, StopAtTheChannelThatRefusesItsLevel) {
    const auto vi = Open();
    EXPECT_EQ(TARNEX_ConfigureVoltageLevel(vi, kBoth, 6.0), kRefused); // above the limit of channel 2
    EXPECT_EQ(Holds(vi, ":SOUR1:VOLT?"), "6.000000");
    EXPECT_EQ(Holds(vi, ":SOUR2:VOLT?"), "0.000000");
    EXPECT_EQ(TARNEX_ConfigureVoltageLevel(vi, "OutputChannel2,OutputChannel1", 7.0), kRefused);
    EXPECT_EQ(Holds(vi, ":SOUR1:VOLT?"), "6.000000");
}

TEST_F(DriverFunctions, RefuseLevelsOutsideTheChannelsLimits) {
    const auto vi = Open("RangeCheck=0");
    Ask(":SOUR1:VOLT 3");
    constexpr auto kInfinity = std::numeric_limits<double>::infinity();
    for (const auto level : {1e300, -1e300, kInfinity, -kInfinity, 22.000001, -0.000001}) {
        EXPECT_EQ(TARNEX_ConfigureVoltageLevel(vi, kFirst, level), kRefused) << level;
        EXPECT_EQ(TARNEX_SetAttributeViReal64(vi, kFirst, TARNEX_ATTR_VOLTAGE_LEVEL, level), kRefused) << level;
    }
    EXPECT_EQ(Holds(vi, ":SOUR1:VOLT?"), "3.000000");
    EXPECT_EQ(Holds(vi, ":SYSTem:ERRor?"), "0,\"No error\""); // nothing was sent
}

TEST_F(DriverFunctions, SendZeroesOfAllKinds) {
    const auto vi = Open();
    for (const auto level : {0.0, -0.0, std::numeric_limits<double>::denorm_min()}) {
        Ask(":SOUR1:VOLT 3");
        EXPECT_EQ(TARNEX_ConfigureVoltageLevel(vi, kFirst, level), 0);
        EXPECT_EQ(GetReal(vi, kFirst, TARNEX_ATTR_VOLTAGE_LEVEL), 0.0);
    }
    EXPECT_EQ(Holds(vi, ":SYSTem:ERRor?"), "0,\"No error\"");
}

TEST_F(DriverFunctions, MaximaAreThoseOfTheLastSelectedChannel) {
    const auto vi = Open();
    ViReal64 value = 0.0;
    EXPECT_EQ(TARNEX_QueryMaxVoltageLevel(vi, kFirst, 1.0, &value), 0);
    EXPECT_EQ(value, 22.0);
    EXPECT_EQ(TARNEX_QueryMaxVoltageLevel(vi, kBoth, 1.0, &value), 0);
    EXPECT_EQ(value, 5.5);
    EXPECT_EQ(TARNEX_QueryMaxCurrentLimit(vi, kFirst, 1.0, &value), 0);
    EXPECT_EQ(value, 5.5);
    EXPECT_EQ(TARNEX_QueryMaxCurrentLimit(vi, kBoth, 1.0, &value), 0);
    EXPECT_EQ(value, 16.8);
    TARNEX_ConfigureVoltageLevel(vi, kFirst, 22.0); // the instrument accepts the returned maximum
    TARNEX_ConfigureCurrentLimit(vi, kSecond, TARNEX_VAL_CURRENT_REGULATE, 16.8);
    EXPECT_EQ(Holds(vi, ":SOUR1:VOLT?"), "22.000000");
    EXPECT_EQ(Holds(vi, ":SOUR2:CURR?"), "16.800000");
}

TEST_F(DriverFunctions, OutputStateOfSeveralChannelsIsThatOfTheLast) {
    const auto vi = Open();
    TARNEX_ConfigureVoltageLevel(vi, kFirst, 20.0);
    TARNEX_ConfigureCurrentLimit(vi, kFirst, TARNEX_VAL_CURRENT_REGULATE, 1.0); // 10 ohms: constant current
    TARNEX_ConfigureOutputEnabled(vi, kBoth, VI_TRUE);
    EXPECT_TRUE(InState(vi, kFirst, TARNEX_VAL_OUTPUT_CONSTANT_CURRENT));
    EXPECT_FALSE(InState(vi, kBoth, TARNEX_VAL_OUTPUT_CONSTANT_CURRENT));
    EXPECT_TRUE(InState(vi, kBoth, TARNEX_VAL_OUTPUT_CONSTANT_VOLTAGE));
    EXPECT_TRUE(InState(vi, "OutputChannel2,OutputChannel1", TARNEX_VAL_OUTPUT_CONSTANT_CURRENT));
}

TEST_F(DriverFunctions, OutputStateIsNeverAProtectionStateAndIgnoresUnknownStates) {
    const auto vi = Open();
    TARNEX_ConfigureOVP(vi, kFirst, VI_TRUE, 10.0);
    TARNEX_ConfigureVoltageLevel(vi, kFirst, 12.0);
    TARNEX_ConfigureOutputEnabled(vi, kFirst, VI_TRUE);
    EXPECT_EQ(Holds(vi, ":SYSTem:ERRor?"), "-300,\"Device-specific error;Over-voltage protection tripped on CH1\"");
    EXPECT_FALSE(InState(vi, kFirst, TARNEX_VAL_OUTPUT_OVER_VOLTAGE));
    EXPECT_FALSE(InState(vi, kFirst, TARNEX_VAL_OUTPUT_OVER_CURRENT));
    EXPECT_FALSE(InState(vi, kFirst, TARNEX_VAL_OUTPUT_UNREGULATED));
    ViBoolean untouched = 7;
    EXPECT_EQ(TARNEX_QueryOutputState(vi, kFirst, 9, &untouched), 0);
    EXPECT_EQ(untouched, 7);
}

TEST_F(DriverFunctions, MeasureReadsLevelsBackAndStopsAfterTheFirstChannelOverASocket) {
    const auto vi = Open();
    TARNEX_ConfigureVoltageLevel(vi, kFirst, 12.0);
    TARNEX_ConfigureVoltageLevel(vi, kSecond, 4.0);
    TARNEX_ConfigureCurrentLimit(vi, kFirst, TARNEX_VAL_CURRENT_REGULATE, 0.5);
    EXPECT_EQ(Measure(vi, kSecond, TARNEX_VAL_MEASURE_VOLTAGE), 4.0);
    EXPECT_EQ(Measure(vi, kFirst, TARNEX_VAL_MEASURE_CURRENT), 0.5);
    EXPECT_EQ(Measure(vi, kBoth, TARNEX_VAL_MEASURE_VOLTAGE),
              12.0); // the positive status ends the loop over the channels
    ViReal64 untouched = 7.0;
    EXPECT_EQ(TARNEX_Measure(vi, kFirst, 2, &untouched), kRefused);
    EXPECT_EQ(untouched, 7.0);
}

TEST_F(DriverFunctions, WithANullResultAreRefusedBeforeTheChannelIsChecked) {
    const auto vi = Open();
    EXPECT_EQ(TARNEX_Measure(vi, "Nowhere", TARNEX_VAL_MEASURE_VOLTAGE, nullptr), kNullPointer);
    EXPECT_EQ(LastError(vi),
              (DriverError{0xBFFA0058, "Null pointer passed for function 'TARNEX_Measure', parameter 'Measurement'."}));
    EXPECT_EQ(TARNEX_QueryOutputState(vi, "Nowhere", 0, nullptr), kNullPointer);
    EXPECT_EQ(TARNEX_QueryMaxVoltageLevel(vi, "Nowhere", 0.0, nullptr), kNullPointer);
    EXPECT_EQ(TARNEX_QueryMaxCurrentLimit(vi, "Nowhere", 0.0, nullptr), kNullPointer);
    EXPECT_EQ(TARNEX_GetChannelName(vi, 1, 0, nullptr), kNullPointer);
    EXPECT_EQ(TARNEX_GetAttributeViReal64(vi, "Nowhere", TARNEX_ATTR_VOLTAGE_LEVEL, nullptr), kNullPointer);
}

TEST_F(DriverFunctions, ChannelNamesCountFromOneAndWorkAsSelectors) {
    const auto vi = Open();
    ViInt32 count = 0;
    EXPECT_EQ(TARNEX_GetAttributeViInt32(vi, "", TARNEX_ATTR_CHANNEL_COUNT, &count), 0);
    ASSERT_EQ(count, 2);
    for (ViInt32 index = 1; index <= count; ++index) {
        std::array<ViChar, 32> name{};
        EXPECT_EQ(TARNEX_GetChannelName(vi, index, 32, name.data()), 0);
        EXPECT_EQ(TARNEX_ConfigureVoltageLevel(vi, name.data(), index), 0);
    }
    EXPECT_EQ(Holds(vi, ":SOUR1:VOLT?"), "1.000000");
    EXPECT_EQ(Holds(vi, ":SOUR2:VOLT?"), "2.000000");
}

TEST_F(DriverFunctions, ResetWithDefaultsIsTheReset) {
    const auto vi = Open();
    TARNEX_ConfigureVoltageLevel(vi, kFirst, 7.0);
    TARNEX_ConfigureOutputEnabled(vi, kFirst, VI_TRUE);
    EXPECT_EQ(TARNEX_ResetWithDefaults(vi), 0);
    EXPECT_EQ(Holds(vi, ":SOUR1:VOLT?"), "0.000000");
    EXPECT_EQ(Holds(vi, ":OUTP:STAT? CH1"), "OFF");
}

TEST_F(DriverFunctions, RevisionAndSelfTestNeedNoInstrument) {
    const auto vi = Open();
    std::array<ViChar, 256> driver{};
    std::array<ViChar, 256> firmware{};
    EXPECT_EQ(TARNEX_revision_query(vi, driver.data(), firmware.data()), 0);
    EXPECT_STREQ(driver.data(), "1.0.0.0");
    EXPECT_STREQ(firmware.data(), "1.00");
    ViInt16 result = 7;
    EXPECT_EQ(TARNEX_self_test(vi, &result, driver.data()), 0x3FFA0067);
    EXPECT_EQ(TARNEX_InvalidateAllAttributes(vi), 0);
}

TEST_F(DriverFunctions, IdQueryRefusesAModelThatIsNotSupportedAndDisconnects) {
    virtual_supply::VirtualSupply other({.model = "TX9999"});
    virtual_supply::VirtualSupplyServer server(other);
    ViSession vi = VI_NULL;
    EXPECT_EQ(static_cast<unsigned>(TryOpen(server.Resource(), "", vi, VI_TRUE)), 0xBFFA005EU);
    EXPECT_EQ(vi, 0U);
    EXPECT_EQ(LastError(VI_NULL), (DriverError{0xBFFA005E, "Instrument ID query failed."}));
    EXPECT_EQ(TryOpen(server.Resource(), "", vi), 0); // without the ID query every model is accepted
}

TEST_F(DriverFunctions, IdQueryInSimulationFailsBecauseTheSimulatorIsNotASupportedModel) {
    ViSession vi = VI_NULL;
    EXPECT_EQ(static_cast<unsigned>(TryOpen(server_->Resource(), "Simulate=1", vi, VI_TRUE)), 0xBFFA005EU);
    EXPECT_EQ(vi, 0U);
}

TEST_F(DriverFunctions, NeverLeaveASimulationFromTheStart) {
    const auto vi = Open("Simulate=1");
    EXPECT_EQ(static_cast<unsigned>(TARNEX_SetAttributeViBoolean(vi, "", TARNEX_ATTR_SIMULATE, VI_FALSE)), 0xBFFA0062U);
    EXPECT_EQ(LastError(vi), (DriverError{0xBFFA0062, "The simulation state cannot be changed."}));
    EXPECT_EQ(server_->ConnectionCount(), 0U);
}

TEST_F(DriverFunctions, SendNothingOnceSwitchedIntoSimulation) {
    const auto vi = Open();
    TARNEX_ConfigureVoltageLevel(vi, kFirst, 7.0);
    EXPECT_EQ(Holds(vi, ":SOUR1:VOLT?"), "7.000000");
    EXPECT_EQ(TARNEX_SetAttributeViBoolean(vi, "", TARNEX_ATTR_SIMULATE, VI_TRUE), 0);
    EXPECT_EQ(TARNEX_ConfigureVoltageLevel(vi, kFirst, 3.0), 0);
    EXPECT_EQ(TARNEX_reset(vi), 0);
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_INSTRUMENT_MODEL), "TX4410");                     // no new identity query
    EXPECT_EQ(TARNEX_SetAttributeViBoolean(vi, "", TARNEX_ATTR_SIMULATE, VI_FALSE), 0); // clears the flag alone
    EXPECT_EQ(TARNEX_ConfigureVoltageLevel(vi, kFirst, 3.0), 0);
    const auto second = Open();
    EXPECT_EQ(Holds(second, ":SOUR1:VOLT?"), "7.000000");
}

TEST_F(DriverFunctions, OnAnUnknownHandleReturnOneStatus) {
    const auto vi = Open();
    TARNEX_close(vi);
    ViReal64 value = 7.0;
    constexpr auto kInvalid = static_cast<ViStatus>(0xBFFA1190);
    EXPECT_EQ(TARNEX_ConfigureVoltageLevel(vi, kFirst, 1.0), kInvalid);
    EXPECT_EQ(TARNEX_Measure(vi, kFirst, TARNEX_VAL_MEASURE_VOLTAGE, &value), kInvalid);
    EXPECT_EQ(TARNEX_GetAttributeViReal64(vi, kFirst, TARNEX_ATTR_VOLTAGE_LEVEL, &value), kInvalid);
    EXPECT_EQ(TARNEX_close(vi), kInvalid);
    EXPECT_EQ(value, 7.0);
    EXPECT_EQ(LastError(VI_NULL), (DriverError{0, ""}));
}

} // namespace
} // namespace system_tests
