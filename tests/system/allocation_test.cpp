// The steady path of a call does not allocate. Allocations are counted per thread, without the virtual supply's thread.
#include <functional>

#include "tests/system/counted_allocations.h"
#include "tests/system/supply_fixture.h"

namespace system_tests {
namespace {

class Allocation : public SupplyTest {
  protected:
    static std::size_t CountIn(const std::function<void()>& call) {
        for (int warmUp = 0; warmUp < 3; ++warmUp) {
            call();
        }
        const auto before = AllocationsOfThisThread();
        for (int round = 0; round < 20; ++round) {
            call();
        }
        return AllocationsOfThisThread() - before;
    }
};

TEST_F(Allocation, InTheDriverIsCounted) {
    EXPECT_GT(CountIn([&] { TARNEX_close(Open("Simulate=1")); }), 20U);
}

TEST_F(Allocation, DoesNotHappenInTheSteadyPathOfACall) {
    const auto vi = Open();
    const auto* const one = "OutputChannel1";
    const auto* const both = "OutputChannel1, OutputChannel2";
    ViReal64 real = 0.0;
    ViBoolean boolean = VI_FALSE;
    ViInt32 integer = 0;
    ViChar text[256];
    EXPECT_EQ(CountIn([&] { TARNEX_ConfigureVoltageLevel(vi, one, 3.3); }), 0U);
    EXPECT_EQ(CountIn([&] { TARNEX_ConfigureVoltageLevel(vi, both, 3.3); }), 0U);
    EXPECT_EQ(CountIn([&] { TARNEX_ConfigureCurrentLimit(vi, one, TARNEX_VAL_CURRENT_TRIP, 1.5); }), 0U);
    EXPECT_EQ(CountIn([&] { TARNEX_ConfigureOVP(vi, one, VI_TRUE, 20.0); }), 0U);
    EXPECT_EQ(CountIn([&] { TARNEX_ConfigureOutputEnabled(vi, one, VI_TRUE); }), 0U);
    EXPECT_EQ(CountIn([&] { TARNEX_Measure(vi, one, TARNEX_VAL_MEASURE_VOLTAGE, &real); }), 0U);
    EXPECT_EQ(CountIn([&] { TARNEX_QueryOutputState(vi, one, TARNEX_VAL_OUTPUT_CONSTANT_CURRENT, &boolean); }), 0U);
    EXPECT_EQ(CountIn([&] { TARNEX_QueryMaxCurrentLimit(vi, one, 1.0, &real); }), 0U);
    EXPECT_EQ(CountIn([&] { TARNEX_SetAttributeViReal64(vi, one, TARNEX_ATTR_VOLTAGE_LEVEL, 3.3); }), 0U);
    EXPECT_EQ(CountIn([&] { TARNEX_GetAttributeViReal64(vi, one, TARNEX_ATTR_VOLTAGE_LEVEL, &real); }), 0U);
    EXPECT_EQ(CountIn([&] { TARNEX_GetAttributeViBoolean(vi, one, TARNEX_ATTR_OUTPUT_ENABLED, &boolean); }), 0U);
    EXPECT_EQ(CountIn([&] { TARNEX_GetAttributeViInt32(vi, one, TARNEX_ATTR_CURRENT_LIMIT_BEHAVIOR, &integer); }), 0U);
    EXPECT_EQ(CountIn([&] { TARNEX_GetAttributeViString(vi, "", TARNEX_ATTR_INSTRUMENT_MODEL, 256, text); }), 0U);
    EXPECT_EQ(CountIn([&] { TARNEX_GetChannelName(vi, 2, 256, text); }), 0U);
    EXPECT_EQ(CountIn([&] {
                  TARNEX_LockSession(vi, nullptr);
                  TARNEX_UnlockSession(vi, nullptr);
              }),
              0U);
    EXPECT_EQ(CountIn([&] { TARNEX_reset(vi); }), 0U);
}

TEST_F(Allocation, DoesNotHappenInTheSteadyPathWithStatusCheckingAndInSimulation) {
    for (const auto* options : {"QueryInstrStatus=1", "Simulate=1"}) {
        const auto vi = Open(options);
        ViReal64 real = 0.0;
        EXPECT_EQ(CountIn([&] { TARNEX_ConfigureVoltageLevel(vi, "OutputChannel2", 3.3); }), 0U) << options;
        EXPECT_EQ(CountIn([&] { TARNEX_Measure(vi, "OutputChannel2", TARNEX_VAL_MEASURE_CURRENT, &real); }), 0U)
            << options;
    }
}

} // namespace
} // namespace system_tests
