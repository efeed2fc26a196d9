// The output with loads: regulation, measured values, protections and questionable registers.

#include "tools/virtual_supply/virtual_supply.h"

#include <chrono>
#include <gtest/gtest.h>
#include <initializer_list>
#include <limits>
#include <stdexcept>
#include <string>

namespace virtual_supply {
namespace {

using std::chrono::milliseconds;

constexpr auto kNextError = ":SYSTem:ERRor?";
constexpr auto kCondition1 = ":STATus:QUEStionable:INSTrument:ISUMmary1:CONDition?";
constexpr auto kCondition2 = ":STATus:QUEStionable:INSTrument:ISUMmary2:CONDition?";
constexpr auto kEvent1 = ":STATus:QUEStionable:INSTrument:ISUMmary1:EVENt?";
constexpr auto kEvent2 = ":STATus:QUEStionable:INSTrument:ISUMmary2:EVENt?";

/// A supply with a clock that only the test advances.
class Output : public testing::Test {
  protected:
    void Send(std::initializer_list<std::string> lines) {
        for (const std::string& line : lines) {
            ASSERT_EQ(supply_.Execute(line), "") << line;
        }
    }
    std::string Ask(const std::string& line) { return supply_.Execute(line); }

    std::chrono::steady_clock::time_point now_;
    VirtualSupply supply_{{.clock = [this] { return now_; }}};
};

TEST_F(Output, MeasuresZeroWhileOff) {
    supply_.SetLoad(1, 10.0);
    Send({":SOUR1:VOLT 5", ":SOUR1:CURR 1"});
    EXPECT_EQ(Ask(":MEAS:VOLT? CH1"), "0.000000");
    EXPECT_EQ(Ask(":MEAS:CURR? CH1"), "0.000000");
    EXPECT_EQ(Ask(":MEAS:POWE? CH1"), "0.000000");
    EXPECT_EQ(Ask(":MEAS:ALL? CH1"), "0.000000,0.000000,0.000000");
    EXPECT_EQ(Ask(":OUTP:CVCC? CH1"), "CV");
    EXPECT_EQ(Ask(kCondition1), "0");
}

TEST_F(Output, HoldsTheVoltageWithoutALoad) {
    Send({":SOUR1:VOLT 5", ":SOUR1:CURR 0", ":OUTP:STAT CH1,ON"});
    EXPECT_EQ(Ask(":MEAS:ALL? CH1"), "5.000000,0.000000,0.000000");
    EXPECT_EQ(Ask(":OUTP:CVCC? CH1"), "CV");
    EXPECT_EQ(Ask(kCondition1), "2");
}

TEST_F(Output, HoldsTheVoltageUpToTheCurrentLimit) {
    supply_.SetLoad(1, 10.0);
    Send({":SOUR1:VOLT 5", ":SOUR1:CURR 0.5", ":OUTP:STAT CH1,ON"});
    EXPECT_EQ(Ask(":MEAS:VOLT? CH1"), "5.000000");
    EXPECT_EQ(Ask(":MEAS:CURR? CH1"), "0.500000");
    EXPECT_EQ(Ask(":MEAS:POWE? CH1"), "2.500000");
    EXPECT_EQ(Ask(":MEAS:ALL? CH1"), "5.000000,0.500000,2.500000");
    EXPECT_EQ(Ask(":OUTP:CVCC? CH1"), "CV");
    EXPECT_EQ(Ask(kCondition1), "2");
}

TEST_F(Output, HoldsTheCurrentWhenTheLoadDemandsMore) {
    supply_.SetLoad(2, 0.25);
    Send({":SOUR2:VOLT 5", ":SOUR2:CURR 4", ":OUTP:STAT CH2,ON"});
    EXPECT_EQ(Ask(":MEAS:VOLT? CH2"), "1.000000");
    EXPECT_EQ(Ask(":MEAS:CURR? CH2"), "4.000000");
    EXPECT_EQ(Ask(":MEAS:POWE? CH2"), "4.000000");
    EXPECT_EQ(Ask(":MEAS:ALL? CH2"), "1.000000,4.000000,4.000000");
    EXPECT_EQ(Ask(":OUTP:CVCC? CH2"), "CC");
    EXPECT_EQ(Ask(kCondition2), "1");
    EXPECT_EQ(Ask(kCondition1), "0");
}

TEST_F(Output, HoldsTheCurrentIntoAShortCircuit) {
    supply_.SetLoad(1, 0.0);
    Send({":SOUR1:VOLT 5", ":SOUR1:CURR 2", ":OUTP:STAT CH1,ON"});
    EXPECT_EQ(Ask(":MEAS:ALL? CH1"), "0.000000,2.000000,0.000000");
    EXPECT_EQ(Ask(":OUTP:CVCC? CH1"), "CC");
    Send({":SOUR1:VOLT 0"});
    EXPECT_EQ(Ask(":MEAS:ALL? CH1"), "0.000000,0.000000,0.000000");
    EXPECT_EQ(Ask(":OUTP:CVCC? CH1"), "CV");
}

TEST_F(Output, FollowsTheLoad) {
    Send({":SOUR1:VOLT 6", ":SOUR1:CURR 2", ":OUTP:STAT CH1,ON"});
    supply_.SetLoad(1, 6.0);
    EXPECT_EQ(Ask(":MEAS:CURR? CH1"), "1.000000");
    supply_.SetLoad(1, 2.0);
    EXPECT_EQ(Ask(":MEAS:VOLT? CH1"), "4.000000");
    supply_.SetLoad(1, std::nullopt);
    EXPECT_EQ(Ask(":MEAS:CURR? CH1"), "0.000000");
}

TEST_F(Output, KeepsItsLoadAfterReset) {
    supply_.SetLoad(1, 10.0);
    Send({"*RST", ":SOUR1:VOLT 5", ":OUTP:STAT CH1,ON"});
    EXPECT_EQ(Ask(":MEAS:CURR? CH1"), "0.500000");
}

TEST_F(Output, RefusesInvalidLoads) {
    EXPECT_THROW(supply_.SetLoad(0, 1.0), std::invalid_argument);
    EXPECT_THROW(supply_.SetLoad(3, 1.0), std::invalid_argument);
    EXPECT_THROW(supply_.SetLoad(1, -1.0), std::invalid_argument);
    EXPECT_THROW(supply_.SetLoad(1, std::numeric_limits<double>::quiet_NaN()), std::invalid_argument);
    EXPECT_THROW(supply_.SetLoad(1, std::numeric_limits<double>::infinity()), std::invalid_argument);
}

TEST_F(Output, LatchesRisingConditionBitsInTheEventRegister) {
    supply_.SetLoad(1, 10.0);
    EXPECT_EQ(Ask(kEvent1), "0");
    Send({":SOUR1:VOLT 5", ":OUTP:STAT CH1,ON", ":SOUR1:CURR 0.1", ":OUTP:STAT CH1,OFF"});
    EXPECT_EQ(Ask(kCondition1), "0");
    EXPECT_EQ(Ask(kEvent1), "3");
    EXPECT_EQ(Ask(kEvent1), "0");
    EXPECT_EQ(Ask(kEvent2), "0");
}

TEST_F(Output, DoesNotLatchAnUnchangedConditionAgain) {
    Send({":OUTP:STAT CH2,ON"});
    EXPECT_EQ(Ask(kEvent2), "2");
    EXPECT_EQ(Ask(kCondition2), "2");
    EXPECT_EQ(Ask(kEvent2), "0");
}

TEST_F(Output, IsSwitchedOffByTheOverVoltageProtection) {
    Send({":SOUR1:VOLT:PROT 5", ":SOUR1:VOLT:PROT:STAT ON", ":SOUR1:VOLT 5", ":OUTP:STAT CH1,ON"});
    EXPECT_EQ(Ask(":OUTP:STAT? CH1"), "ON");
    Send({":SOUR1:VOLT 5.000001"});
    EXPECT_EQ(Ask(":OUTP:STAT? CH1"), "OFF");
    EXPECT_EQ(Ask(":MEAS:VOLT? CH1"), "0.000000");
    EXPECT_EQ(Ask(":SOUR1:VOLT?"), "5.000001");
    EXPECT_EQ(Ask("*ESR?"), "8");
    EXPECT_EQ(Ask(kNextError), "-300,\"Device-specific error;Over-voltage protection tripped on CH1\"");
    EXPECT_EQ(Ask(kNextError), "0,\"No error\"");
}

TEST_F(Output, IsSwitchedOffByTheOverVoltageProtectionOfItsOwnChannelOnly) {
    Send({":OUTP:OVP:VAL CH2,3", ":OUTP:OVP:STAT CH2,ON", ":SOUR1:VOLT 4", ":SOUR2:VOLT 4", ":OUTPut:STATe ALL,ON"});
    EXPECT_EQ(Ask(":OUTP:STAT? CH1"), "ON");
    EXPECT_EQ(Ask(":OUTP:STAT? CH2"), "OFF");
    EXPECT_EQ(Ask(kNextError), "-300,\"Device-specific error;Over-voltage protection tripped on CH2\"");
}

TEST_F(Output, StaysOnAboveTheLevelOfADisabledProtection) {
    supply_.SetLoad(1, 1.0);
    Send({":SOUR1:VOLT:PROT 1", ":SOUR1:CURR:PROT 1", ":SOUR1:VOLT 4", ":OUTP:STAT CH1,ON"});
    EXPECT_EQ(Ask(":OUTP:STAT? CH1"), "ON");
    EXPECT_EQ(Ask(":MEAS:ALL? CH1"), "4.000000,4.000000,16.000000");
    EXPECT_EQ(Ask(kNextError), "0,\"No error\"");
}

TEST_F(Output, TripsOnTheOutputVoltageInsteadOfTheSetting) {
    supply_.SetLoad(1, 1.0);
    Send({":SOUR1:VOLT:PROT 3", ":SOUR1:VOLT:PROT:STAT ON", ":SOUR1:CURR 2", ":SOUR1:VOLT 4", ":OUTP:STAT CH1,ON"});
    EXPECT_EQ(Ask(":OUTP:STAT? CH1"), "ON");
    supply_.SetLoad(1, std::nullopt);
    EXPECT_EQ(Ask(":OUTP:STAT? CH1"), "OFF");
}

TEST_F(Output, IsSwitchedOffAtOnceByTheOverCurrentProtectionWithoutDelay) {
    supply_.SetLoad(1, 2.0);
    Send({":SOUR1:CURR:PROT 2", ":SOUR1:CURR:PROT:STAT ON", ":SOUR1:VOLT 4", ":OUTP:STAT CH1,ON"});
    EXPECT_EQ(Ask(":OUTP:STAT? CH1"), "ON");
    Send({":SOUR1:VOLT 4.000001"});
    EXPECT_EQ(Ask(":OUTP:STAT? CH1"), "OFF");
    EXPECT_EQ(Ask("*ESR?"), "8");
    EXPECT_EQ(Ask(kNextError), "-300,\"Device-specific error;Over-current protection tripped on CH1\"");
    EXPECT_EQ(Ask(kNextError), "0,\"No error\"");
}

TEST_F(Output, TripsOnTheDemandedCurrentEvenWhenItIsLimited) {
    supply_.SetLoad(2, 1.0);
    Send({":OUTP:OCP:VAL CH2,3", ":SOUR2:CURR 2", ":SOUR2:VOLT 4", ":OUTP:STAT CH2,ON", ":OUTP:OCP:STAT CH2,ON"});
    EXPECT_EQ(Ask(":OUTP:STAT? CH2"), "OFF");
    EXPECT_EQ(Ask(kNextError), "-300,\"Device-specific error;Over-current protection tripped on CH2\"");
}

TEST_F(Output, IsSwitchedOffByTheOverCurrentProtectionAfterItsDelay) {
    supply_.SetLoad(1, 1.0);
    Send({":SOUR1:CURR:PROT 2", ":SOUR1:CURR:PROT:DEL 0.5", ":SOUR1:CURR:PROT:STAT ON", ":SOUR1:VOLT 4",
          ":OUTP:STAT CH1,ON"});
    now_ += milliseconds(499);
    EXPECT_EQ(Ask(":OUTP:STAT? CH1"), "ON");
    now_ += milliseconds(1);
    EXPECT_EQ(Ask(":OUTP:STAT? CH1"), "OFF");
    EXPECT_EQ(Ask(kNextError), "-300,\"Device-specific error;Over-current protection tripped on CH1\"");
}

TEST_F(Output, StartsTheProtectionDelayWhenTheLoadChanges) {
    Send({":SOUR1:CURR:PROT 2", ":SOUR1:CURR:PROT:DEL 0.5", ":SOUR1:CURR:PROT:STAT ON", ":SOUR1:VOLT 4",
          ":OUTP:STAT CH1,ON"});
    supply_.SetLoad(1, 1.0);
    now_ += milliseconds(500);
    EXPECT_EQ(Ask(":OUTP:STAT? CH1"), "OFF");
}

TEST_F(Output, RestartsTheProtectionDelayAfterTheCurrentWasBelowTheLevel) {
    supply_.SetLoad(1, 1.0);
    Send({":SOUR1:CURR:PROT 2", ":SOUR1:CURR:PROT:DEL 0.5", ":SOUR1:CURR:PROT:STAT ON", ":SOUR1:VOLT 4",
          ":OUTP:STAT CH1,ON"});
    now_ += milliseconds(400);
    Send({":SOUR1:VOLT 1", ":SOUR1:VOLT 4"});
    now_ += milliseconds(400);
    EXPECT_EQ(Ask(":OUTP:STAT? CH1"), "ON");
    now_ += milliseconds(100);
    EXPECT_EQ(Ask(":OUTP:STAT? CH1"), "OFF");
}

TEST_F(Output, TripsBeforeALateCommandDisablesTheProtection) {
    supply_.SetLoad(1, 1.0);
    Send({":OUTP:OCP:VAL CH1,2", ":OUTP:OCP:DEL CH1,0.5", ":OUTP:OCP:STAT CH1,ON", ":SOUR1:VOLT 4",
          ":OUTP:STAT CH1,ON"});
    now_ += milliseconds(500);
    Send({":OUTP:OCP:STAT CH1,OFF"});
    EXPECT_EQ(Ask(":OUTP:STAT? CH1"), "OFF");
}

TEST_F(Output, CanBeSwitchedOnAgainAfterATrip) {
    Send({":SOUR1:VOLT:PROT 3", ":SOUR1:VOLT:PROT:STAT ON", ":SOUR1:VOLT 4", ":OUTP:STAT CH1,ON"});
    EXPECT_EQ(Ask(":OUTP:STAT? CH1"), "OFF");
    Send({":SOUR1:VOLT 3", ":OUTP:STAT CH1,ON"});
    EXPECT_EQ(Ask(":OUTP:STAT? CH1"), "ON");
}

TEST_F(Output, ClearsItsConditionWhenAProtectionTrips) {
    Send({":SOUR1:VOLT:PROT 3", ":SOUR1:VOLT:PROT:STAT ON", ":OUTP:STAT CH1,ON"});
    EXPECT_EQ(Ask(kCondition1), "2");
    Send({":SOUR1:VOLT 4"});
    EXPECT_EQ(Ask(kCondition1), "0");
}

} // namespace
} // namespace virtual_supply
