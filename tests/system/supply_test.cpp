#include <unistd.h>

#include <array>
#include <cmath>

#include "tests/system/supply_fixture.h"

namespace system_tests {
namespace {

class Supply : public SupplyOverEachLine {};
class SupplyOverTcp : public SupplyTest {};

constexpr const char* kFirst = "OutputChannel1";
constexpr const char* kSecond = "OutputChannel2";

TEST_P(Supply, ReportsItsIdentity) {
    const auto vi = Open("", VI_TRUE);
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_INSTRUMENT_MANUFACTURER), "Keltor Technology");
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_INSTRUMENT_MODEL), "TX4410");
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_INSTRUMENT_FIRMWARE_REVISION), "1.00");
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_IO_RESOURCE_DESCRIPTOR), server_->Resource());
}

TEST_P(Supply, OpensWithoutThePositiveStatusOfItsQueries) {
    ViSession vi = VI_NULL;
    EXPECT_EQ(TryOpen(server_->Resource(), "", vi),
              0); // opening returns 0, not the positive status of its identity query
    EXPECT_NE(vi, 0U);
}

TEST_P(Supply, ReadsBackItsVoltage) {
    const auto vi = Open();
    EXPECT_EQ(TARNEX_ConfigureVoltageLevel(vi, kFirst, 3.3), 0);
    EXPECT_EQ(Measure(vi, kFirst, TARNEX_VAL_MEASURE_VOLTAGE), 3.3);
    EXPECT_EQ(GetReal(vi, kFirst, TARNEX_ATTR_VOLTAGE_LEVEL), 3.3);
    EXPECT_EQ(Measure(vi, kSecond, TARNEX_VAL_MEASURE_VOLTAGE), 0.0);
    EXPECT_EQ(Ask(":SOUR1:VOLT?"), "3.300000");
}

TEST_P(Supply, ReadsBackEveryAttribute) {
    const auto vi = Open();
    EXPECT_EQ(TARNEX_SetAttributeViReal64(vi, kSecond, TARNEX_ATTR_VOLTAGE_LEVEL, 5.0), 0);
    EXPECT_EQ(TARNEX_SetAttributeViBoolean(vi, kSecond, TARNEX_ATTR_OVP_ENABLED, VI_TRUE), 0);
    EXPECT_EQ(TARNEX_SetAttributeViReal64(vi, kSecond, TARNEX_ATTR_OVP_LIMIT, 5.25), 0);
    EXPECT_EQ(TARNEX_SetAttributeViInt32(vi, kSecond, TARNEX_ATTR_CURRENT_LIMIT_BEHAVIOR, TARNEX_VAL_CURRENT_TRIP), 0);
    EXPECT_EQ(TARNEX_SetAttributeViReal64(vi, kSecond, TARNEX_ATTR_CURRENT_LIMIT, 16.8), 0);
    EXPECT_EQ(TARNEX_SetAttributeViBoolean(vi, kSecond, TARNEX_ATTR_OUTPUT_ENABLED, VI_TRUE), 0);

    EXPECT_EQ(GetReal(vi, kSecond, TARNEX_ATTR_VOLTAGE_LEVEL), 5.0);
    EXPECT_TRUE(GetBoolean(vi, kSecond, TARNEX_ATTR_OVP_ENABLED));
    EXPECT_EQ(GetReal(vi, kSecond, TARNEX_ATTR_OVP_LIMIT), 5.25);
    ViInt32 behavior = -1;
    EXPECT_EQ(TARNEX_GetAttributeViInt32(vi, kSecond, TARNEX_ATTR_CURRENT_LIMIT_BEHAVIOR, &behavior), 0);
    EXPECT_EQ(behavior, TARNEX_VAL_CURRENT_TRIP);
    EXPECT_EQ(GetReal(vi, kSecond, TARNEX_ATTR_CURRENT_LIMIT), 16.8);
    EXPECT_TRUE(GetBoolean(vi, kSecond, TARNEX_ATTR_OUTPUT_ENABLED));
    EXPECT_EQ(Ask(":SOUR2:CURR:PROT?"), "16.800000");
    EXPECT_EQ(Ask(":SYSTem:ERRor?"), "0,\"No error\"");
}

TEST_P(Supply, HoldsItsVoltageUntilTheLoadDrawsTheLimit) {
    const auto vi = Open();
    TARNEX_ConfigureCurrentLimit(vi, kFirst, TARNEX_VAL_CURRENT_REGULATE, 1.0);
    TARNEX_ConfigureVoltageLevel(vi, kFirst, 5.0);
    EXPECT_FALSE(InState(vi, kFirst, TARNEX_VAL_OUTPUT_CONSTANT_VOLTAGE)); // it is off
    TARNEX_ConfigureOutputEnabled(vi, kFirst, VI_TRUE);
    EXPECT_TRUE(InState(vi, kFirst, TARNEX_VAL_OUTPUT_CONSTANT_VOLTAGE)); // 5 V at 10 ohms: 0.5 A
    EXPECT_FALSE(InState(vi, kFirst, TARNEX_VAL_OUTPUT_CONSTANT_CURRENT));
    TARNEX_ConfigureVoltageLevel(vi, kFirst, 20.0); // would be 2 A
    EXPECT_FALSE(InState(vi, kFirst, TARNEX_VAL_OUTPUT_CONSTANT_VOLTAGE));
    EXPECT_TRUE(InState(vi, kFirst, TARNEX_VAL_OUTPUT_CONSTANT_CURRENT));
    EXPECT_EQ(Ask(":MEAS:VOLT? CH1"), "10.000000");
    EXPECT_EQ(Measure(vi, kFirst, TARNEX_VAL_MEASURE_VOLTAGE), 20.0); // the programmed level, not the measured one
}

TEST_P(Supply, TripsOnItsOverVoltageProtectionAndReportsIt) {
    const auto vi = Open();
    TARNEX_ConfigureOVP(vi, kFirst, VI_TRUE, 10.0);
    TARNEX_ConfigureVoltageLevel(vi, kFirst, 12.0);
    TARNEX_ConfigureOutputEnabled(vi, kFirst, VI_TRUE);
    EXPECT_FALSE(GetBoolean(vi, kFirst, TARNEX_ATTR_OUTPUT_ENABLED));
    ViInt32 code = 0;
    std::array<ViChar, 1024> text{};
    EXPECT_EQ(TARNEX_error_query(vi, &code, text.data()), 0);
    EXPECT_EQ(code, -300);
    EXPECT_EQ(TARNEX_error_query(vi, &code, text.data()), 0);
    EXPECT_EQ(code, 0);
    EXPECT_STREQ(text.data(), "\"No error\"");
}

TEST_P(Supply, TripsAtItsCurrentLimitWhenTripIsConfigured) {
    const auto vi = Open();
    TARNEX_ConfigureCurrentLimit(vi, kFirst, TARNEX_VAL_CURRENT_TRIP, 1.0);
    TARNEX_ConfigureVoltageLevel(vi, kFirst, 20.0);
    TARNEX_ConfigureOutputEnabled(vi, kFirst, VI_TRUE);
    EXPECT_FALSE(GetBoolean(vi, kFirst, TARNEX_ATTR_OUTPUT_ENABLED));
}

TEST_P(Supply, ReportsACommandThatItRefusedWhenStatusCheckingIsOn) {
    const auto vi = Open("QueryInstrStatus=1");
    EXPECT_EQ(TARNEX_ConfigureVoltageLevel(vi, kFirst, 1.0), kTermChar);
    EXPECT_EQ(static_cast<unsigned>(TARNEX_ConfigureVoltageLevel(vi, kFirst, std::nan(""))), 0xBFFA0001U);
    EXPECT_EQ(LastError(vi).description, "Instrument error detected.  Use ErrorQuery() to determine the error(s).");
    ViInt32 code = 0;
    std::array<ViChar, 1024> text{};
    EXPECT_EQ(TARNEX_error_query(vi, &code, text.data()), 0);
    EXPECT_EQ(code, -104);
    EXPECT_EQ(Measure(vi, kFirst, TARNEX_VAL_MEASURE_VOLTAGE), 1.0);
}

TEST_P(Supply, ForgetsOldErrorsWhenItIsOpenedWithStatusChecking) {
    Ask("NONSENSE");
    Open("QueryInstrStatus=1");
    EXPECT_EQ(Ask("*ESR?"), "0");
    EXPECT_EQ(Ask(":SYSTem:ERRor?"), "0,\"No error\"");
}

TEST_P(Supply, IsResetOnlyOnRequest) {
    Ask(":SOUR1:VOLT 7");
    const auto vi = Open();
    EXPECT_EQ(Measure(vi, kFirst, TARNEX_VAL_MEASURE_VOLTAGE), 7.0);
    EXPECT_EQ(TARNEX_reset(vi), 0);
    EXPECT_EQ(Measure(vi, kFirst, TARNEX_VAL_MEASURE_VOLTAGE), 0.0);
    Ask(":SOUR1:VOLT 7");
    const auto second = Open("", VI_FALSE, VI_TRUE);
    EXPECT_EQ(Measure(second, kFirst, TARNEX_VAL_MEASURE_VOLTAGE), 0.0);
}

TEST_P(Supply, IsDisabledOnAllChannels) {
    const auto vi = Open();
    TARNEX_ConfigureOutputEnabled(vi, "OutputChannel1,OutputChannel2", VI_TRUE);
    EXPECT_TRUE(GetBoolean(vi, kSecond, TARNEX_ATTR_OUTPUT_ENABLED));
    EXPECT_EQ(TARNEX_Disable(vi), 0);
    EXPECT_FALSE(GetBoolean(vi, kFirst, TARNEX_ATTR_OUTPUT_ENABLED));
    EXPECT_FALSE(GetBoolean(vi, kSecond, TARNEX_ATTR_OUTPUT_ENABLED));
}

TEST_F(SupplyOverTcp, LosesItsConnectionWhenTheSessionIsClosed) {
    const auto vi = Open();
    EXPECT_EQ(Ask("*OPC?"), "1");
    EXPECT_EQ(TARNEX_close(vi), 0);
    EXPECT_EQ(static_cast<unsigned>(TARNEX_reset(vi)), 0xBFFA1190U);
    for (int attempt = 0; attempt < 500 && server_->ConnectionCount() != 0; ++attempt) {
        usleep(10000);
    }
    EXPECT_EQ(server_->ConnectionCount(), 0U);
}

TEST_F(SupplyOverTcp, ReceivesNothingFromASimulatedSession) {
    const auto vi = Open("Simulate=1");
    EXPECT_EQ(TARNEX_ConfigureVoltageLevel(vi, kFirst, 3.3), 0);
    EXPECT_EQ(server_->ConnectionCount(), 0U);
    EXPECT_EQ(Ask(":SOUR1:VOLT?"), "0.000000");
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_INSTRUMENT_MODEL), "TX6300");
}

TEST_P(Supply, OfAnotherModelPassesTheIdQueryToo) {
    virtual_supply::VirtualSupply other({.model = "TX4520"});
    virtual_supply::VirtualSupplyServer server(other, OverThisLine({}));
    ViSession vi = VI_NULL;
    EXPECT_EQ(TryOpen(server.Resource(), "", vi, VI_TRUE), 0);
    EXPECT_EQ(GetText(vi, TARNEX_ATTR_INSTRUMENT_MODEL), "TX4520");
}

INSTANTIATE_TEST_SUITE_P(Over, Supply, testing::Values(Line::Tcp, Line::PseudoTerminal), LineName);

} // namespace
} // namespace system_tests
