// Every allocation of a session's life fails once: each function ends with a status, and nothing is left.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>

#include "include/TARNEX_supply.h"
#include "tests/doubles/config_server_double.h"
#include "tests/doubles/script.h"
#include "tests/doubles/session_service_double.h"
#include "tests/doubles/visa_double.h"
#include "tests/hostile/allocations.h"

namespace supply_tests {
namespace {

constexpr auto kOutOfMemory = static_cast<ViStatus>(0xBFFA0056);

void StartAnew() {
    doubles::TheScript().Reset();
    doubles::TheSessionService().Reset();
    doubles::TheConfigServer().Reset();
    doubles::TheVisa().Reset();
    doubles::TheVisa().Reply(":MEAS:ALL? CH1", "1.000000,1.000000,1.000000\n");
    doubles::TheVisa().Reply("*ESR?", "0\n");
    doubles::TheVisa().Reply(":SYSTem:ERRor?", "0,\"No error\"\n");
}

template <typename Call>
ViStatus Counted(const Call& call) {
    const hostile::DriverCall here;
    return call();
}

/// The lowest status of all calls.
ViStatus Live() {
    ViSession vi = VI_NULL;
    const auto opened = Counted(
        [&] { return TARNEXSupply_Open("USB0::1::2::3::INSTR", "QueryInstrStatus=1,DriverSetup=Trace:1", 250, &vi); });
    if (opened < 0) {
        EXPECT_EQ(vi, 0U);
        return opened;
    }
    std::array<ViChar, 256> text{};
    ViReal64 volts = 0.0;
    ViReal64 amperes = 0.0;
    ViReal64 watts = 0.0;
    ViInt32 code = 0;
    ViStatus lowest = 0;
    const auto note = [&](ViStatus status) { lowest = std::min(lowest, status); };
    note(Counted([&] { return TARNEXSupply_SetVoltage(vi, "OutputChannel1,OutputChannel2", 1.0); }));
    note(Counted([&] { return TARNEXSupply_MeasureAll(vi, "[OutputChannel1]", &volts, &amperes, &watts); }));
    note(Counted([&] { return TARNEXSupply_QueryError(vi, &code, 256, text.data()); }));
    doubles::TheScript().Fail("viRead", static_cast<ViStatus>(0xBFFF0015));
    Counted([&] { return TARNEXSupply_MeasureAll(vi, "OutputChannel1", &volts, &amperes, &watts); });
    doubles::TheScript().Fail("viClear", static_cast<ViStatus>(0xBFFF0067));
    note(Counted([&] { return TARNEXSupply_MeasureAll(vi, "OutputChannel1", &volts, &amperes, &watts); }));
    note(Counted([&] { return TARNEXSupply_Close(vi); }));
    return lowest;
}

TEST(EveryAllocation, MayFailOnceAndNothingIsLeft) {
    StartAnew();
    EXPECT_EQ(Live(), 0);
    StartAnew();
    hostile::TakeAllocationCount();
    EXPECT_EQ(Live(), 0);
    const auto allocations = hostile::TakeAllocationCount();
    ASSERT_GT(allocations, 20U);
    std::size_t outOfMemory = 0;
    for (std::size_t nth = 1; nth <= allocations; ++nth) {
        SCOPED_TRACE(nth);
        StartAnew();
        hostile::FailAllocation(nth);
        outOfMemory += Live() == kOutOfMemory ? 1 : 0;
        EXPECT_FALSE(hostile::AllocationFailurePending());
        hostile::FailAllocation(0);
        EXPECT_EQ(doubles::TheVisa().OpenSessions(), 0U);
        EXPECT_EQ(doubles::TheConfigServer().OpenHandles(), 0U);
        EXPECT_EQ(doubles::TheSessionService().LocksHeld(), 0);
    }
    EXPECT_GT(outOfMemory, allocations / 2);
}

} // namespace
} // namespace supply_tests
