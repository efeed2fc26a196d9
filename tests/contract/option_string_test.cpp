#include <array>

#include "tests/contract/driver_fixture.h"

namespace contract {
namespace {

class OptionString : public DriverTest {
  protected:
    /// The description of a failed opening.
    DriverError ErrorOf(const char* options) {
        TARNEX_ClearError(VI_NULL);
        ViSession vi = 7;
        const auto status = TryOpen(options, &vi);
        EXPECT_EQ(vi, 0U) << options;
        auto error = LastError(VI_NULL);
        EXPECT_EQ(error.code, status) << options;
        return error;
    }

    bool Simulates(const char* options) {
        ViSession vi = VI_NULL;
        EXPECT_EQ(TryOpen(options, &vi), Status(0U)) << options;
        ViBoolean simulate = 7;
        TARNEX_GetAttributeViBoolean(vi, "", TARNEX_ATTR_SIMULATE, &simulate);
        return simulate == VI_TRUE;
    }

    std::string DriverSetup(const char* options) {
        ViSession vi = VI_NULL;
        EXPECT_EQ(TryOpen(options, &vi), Status(0U)) << options;
        std::array<ViChar, 1024> text{};
        TARNEX_GetAttributeViString(vi, "", TARNEX_ATTR_DRIVER_SETUP, 1024, text.data());
        return text.data();
    }
};

TEST_F(OptionString, TakesTheSixWordsInAnyLetterCase) {
    for (const auto* options :
         {"Simulate=true", "SIMULATE=TRUE", "simulate=1", "Simulate=VI_TRUE", "sImUlAtE=Vi_True"}) {
        EXPECT_TRUE(Simulates(options)) << options;
    }
    for (const auto* options : {"Simulate=false", "Simulate=FALSE", "simulate=0", "Simulate=VI_FALSE", ""}) {
        EXPECT_FALSE(Simulates(options)) << options;
    }
}

TEST_F(OptionString, TakesBlanksAroundNamesEqualsSignsAndCommas) {
    EXPECT_TRUE(Simulates("  RangeCheck  =  VI_FALSE  ,\tSimulate\n=\r1  "));
}

TEST_F(OptionString, SkipsFragmentsThatAreNotPairs) {
    EXPECT_TRUE(Simulates("nothing, , =, Simulate = 1, ;;"));
    EXPECT_FALSE(Simulates("Simulate"));
    EXPECT_FALSE(Simulates("Simulate="));
}

TEST_F(OptionString, TakesEveryInherentOption) {
    EXPECT_TRUE(Simulates("Cache=1,InterchangeCheck=0,QueryInstrStatus=1,RangeCheck=1,RecordCoercions=1,Simulate=1"));
}

TEST_F(OptionString, RefusesAnUnknownNameInLowerCase) {
    EXPECT_EQ(ErrorOf("Speed=1"), (DriverError{0xBFFA004B, "The 'speed' name in the option string is unknown."}));
}

TEST_F(OptionString, RefusesAnUnknownValueInLowerCase) {
    EXPECT_EQ(ErrorOf("Simulate=YES"), (DriverError{0xBFFA004C, "The 'yes' value in the option string is unknown."}));
}

TEST_F(OptionString, RefusesAnOptionGivenTwice) {
    EXPECT_EQ(ErrorOf("Cache=1,cache=0"),
              (DriverError{0xBFFA0000, "Failure cannot recover.  Inherent option 'cache' appears more than once."}));
}

TEST_F(OptionString, NeverReadsNamesAsAFormat) {
    EXPECT_EQ(ErrorOf("%s=1"), (DriverError{0xBFFA004B, "The 's' name in the option string is unknown."}));
    EXPECT_EQ(ErrorOf("DriverSetup=a+b=1,a+b=2").description,
              "Failure cannot recover.  DriverSetup option 'a+b' appears more than once.");
}

TEST_F(OptionString, StopsAtTheFirstFailure) {
    EXPECT_EQ(ErrorOf("Speed=1,Simulate=yes").code, Status(0xBFFA004B));
    EXPECT_EQ(ErrorOf("Simulate=yes,Speed=1").code, Status(0xBFFA004C));
    EXPECT_THAT(doubles::TheSessionService().Recorded(), testing::SizeIs(2));
}

TEST_F(OptionString, ParsesTheDriverSetupBeforeTheInherentPart) {
    EXPECT_EQ(ErrorOf("Speed=1, DriverSetup=a=1,a=2").code, Status(0xBFFA0000));
}

TEST_F(OptionString, ExtendsTheDriverSetupToTheEnd) {
    EXPECT_EQ(DriverSetup("Simulate=1, DriverSetup=Model:TX4410"), "Model:TX4410");
    EXPECT_EQ(DriverSetup("driversetup = Model=TX4520, Trailing = 2  "), " Model=TX4520, Trailing = 2  ");
    EXPECT_EQ(DriverSetup("DriverSetup="), "");
    EXPECT_EQ(DriverSetup("DriverSetup=a=1\nb=2"), "a=1");
}

TEST_F(OptionString, TreatsTheTextBehindTheDriverSetupAsAPartOfIt) {
    EXPECT_FALSE(Simulates("DriverSetup=Model=TX4410, Simulate=1"));
}

TEST_F(OptionString, RefusesADriverSetupNameGivenTwice) {
    EXPECT_EQ(ErrorOf("DriverSetup=Model:TX4410,Model:TX4520"),
              (DriverError{0xBFFA0000, "Failure cannot recover.  DriverSetup option 'Model' appears more than once."}));
}

TEST_F(OptionString, ComparesDriverSetupNamesExactly) {
    EXPECT_EQ(DriverSetup("DriverSetup=Model:TX4410,MODEL:TX4520"), "Model:TX4410,MODEL:TX4520");
}

TEST_F(OptionString, CutsADescriptionAt1023Bytes) {
    const auto error = ErrorOf((std::string(5000, 'x') + "=1").c_str());
    EXPECT_EQ(error.description, "The '" + std::string(1018, 'x'));
    EXPECT_EQ(error.description.size(), 1023U);
}

} // namespace
} // namespace contract
