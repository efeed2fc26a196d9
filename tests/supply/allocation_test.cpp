// The steady path of the library's calls takes nothing from the heap. Allocations are counted per thread, so that the
// virtual supply's own thread does not count.
#include <algorithm>
#include <functional>

#include "include/TARNEX_supply.h"
#include "tests/system/counted_allocations.h"
#include "tests/system/supply_fixture.h"

namespace system_tests {
namespace {

class SupplyAllocation : public SupplyTest {
  protected:
    static std::size_t CountIn(const std::function<ViStatus()>& call) {
        for (int warmUp = 0; warmUp < 3; ++warmUp) {
            EXPECT_EQ(call(), 0);
        }
        const auto before = AllocationsOfThisThread();
        ViStatus worst = 0;
        for (int round = 0; round < 20; ++round) {
            worst = std::min(worst, call());
        }
        const auto count = AllocationsOfThisThread() - before;
        EXPECT_EQ(worst, 0);
        return count;
    }
};

TEST_F(SupplyAllocation, OfAnOpeningIsCounted) {
    EXPECT_GT(CountIn([&] {
                  ViSession vi = VI_NULL;
                  const auto status = TARNEXSupply_Open("", "Simulate=1", 0, &vi);
                  return status < 0 ? status : TARNEXSupply_Close(vi);
              }),
              20U);
}

TEST_F(SupplyAllocation, DoesNotHappenInTheSteadyPathOfACall) {
    for (const auto* const options : {"", "QueryInstrStatus=1", "Simulate=1"}) {
        SCOPED_TRACE(options);
        ViSession vi = VI_NULL;
        ASSERT_EQ(TARNEXSupply_Open(server_->Resource().c_str(), options, 0, &vi), 0);
        ViReal64 volts = 0.0;
        ViReal64 amperes = 0.0;
        ViReal64 watts = 0.0;
        ViBoolean enabled = VI_FALSE;
        ViInt32 mode = 0;
        const auto* const one = "OutputChannel1";
        EXPECT_EQ(CountIn([&] { return TARNEXSupply_MeasureAll(vi, one, &volts, &amperes, &watts); }), 0U);
        EXPECT_EQ(CountIn([&] { return TARNEXSupply_SetVoltage(vi, one, 3.3); }), 0U);
        EXPECT_EQ(CountIn([&] { return TARNEXSupply_SetVoltage(vi, "OutputChannel1,OutputChannel2", 3.3); }), 0U);
        EXPECT_EQ(CountIn([&] { return TARNEXSupply_GetVoltage(vi, one, &volts); }), 0U);
        EXPECT_EQ(CountIn([&] { return TARNEXSupply_SetOutputEnabled(vi, one, VI_TRUE); }), 0U);
        EXPECT_EQ(CountIn([&] { return TARNEXSupply_GetOutputEnabled(vi, one, &enabled); }), 0U);
        EXPECT_EQ(CountIn([&] { return TARNEXSupply_GetRegulationMode(vi, one, &mode); }), 0U);
        EXPECT_EQ(TARNEXSupply_Close(vi), 0);
    }
}

} // namespace
} // namespace system_tests
