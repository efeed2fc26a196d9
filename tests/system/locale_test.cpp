// The driver in a process whose locale writes 1.5 as "1,5": commands and replies keep the decimal point.
#include <array>
#include <clocale>
#include <cstdlib>

#include "tests/locale/scoped_locale.h"
#include "tests/system/supply_fixture.h"

namespace system_tests {
namespace {

constexpr const char* kFirst = "OutputChannel1";

class DecimalComma : public SupplyTest {
  protected:
    void SetUp() override {
        if (!locale_.InForce()) {
            GTEST_SKIP() << "THE LOCALE WITH A DECIMAL COMMA IS MISSING: localedef could not make it";
        }
        ASSERT_EQ(tests::ScopedLocale::OneAndAHalf(), "1,5");
    }

  private:
    tests::ScopedLocale locale_{tests::kDecimalComma};
};

TEST_F(DecimalComma, DoesNotReachTheInstrument) {
    const auto vi = Open("QueryInstrStatus=1");
    EXPECT_EQ(TARNEX_ConfigureVoltageLevel(vi, kFirst, 3.25), kTermChar);
    EXPECT_EQ(TARNEX_ConfigureCurrentLimit(vi, kFirst, TARNEX_VAL_CURRENT_TRIP, 1.5), kTermChar);
    EXPECT_EQ(TARNEX_SetAttributeViReal64(vi, kFirst, TARNEX_ATTR_OVP_LIMIT, 20.125), kTermChar);
    EXPECT_EQ(Ask(":SOUR1:VOLT?"), "3.250000");
    EXPECT_EQ(Ask(":SOUR1:CURR?"), "1.500000");
    EXPECT_EQ(Ask(":SOUR1:VOLT:PROT?"), "20.125000");
}

TEST_F(DecimalComma, DoesNotChangeHowRepliesAreRead) {
    const auto vi = Open();
    Ask(":SOUR1:VOLT 3.25");
    EXPECT_EQ(Measure(vi, kFirst, TARNEX_VAL_MEASURE_VOLTAGE), 3.25);
    EXPECT_EQ(GetReal(vi, kFirst, TARNEX_ATTR_VOLTAGE_LEVEL), 3.25);
}

TEST_F(DecimalComma, InTheStoreStaysText) {
    UseStore(scratch_.Write("store.xml", R"(<IviConfigStore><SoftwareModules><IviSoftwareModule id="p1">
        <Name>TARNEX</Name><DataComponents><IviStructure id="p2"><Name>Configurable Initial Settings</Name>
        <DataComponents><IviReal id="p3"><Name>level</Name><Type>Real</Type><Value>1.5</Value></IviReal>
        </DataComponents></IviStructure></DataComponents></IviSoftwareModule></SoftwareModules></IviConfigStore>)"));
    EXPECT_NE(Open(), 0U);
}

TEST_F(DecimalComma, StaysInForceForTheCaller) {
    TARNEX_ConfigureVoltageLevel(Open(), kFirst, 3.25);
    EXPECT_EQ(tests::ScopedLocale::OneAndAHalf(), "1,5");
}

} // namespace
} // namespace system_tests
