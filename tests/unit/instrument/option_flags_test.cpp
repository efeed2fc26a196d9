#include "instrument/option_flags.h"

#include <gtest/gtest.h>

#include <string>

namespace {

/// The six flags in their order, as digits.
std::string Flags(std::string_view options) {
    const auto flags = ORVA::ParseOptionFlags(options);
    return std::string() + (flags.cache ? "1" : "0") + (flags.interchangeCheck ? "1" : "0") +
           (flags.queryInstrumentStatus ? "1" : "0") + (flags.rangeCheck ? "1" : "0") +
           (flags.recordCoercions ? "1" : "0") + (flags.simulate ? "1" : "0");
}

TEST(OptionFlags, AreFalseWhenTheyAreNotGiven) {
    EXPECT_EQ(Flags(""), "000000");
    EXPECT_EQ(Flags("Model=TX4410"), "000000");
}

TEST(OptionFlags, AreSetByTheirNames) {
    EXPECT_EQ(Flags("Cache=1"), "100000");
    EXPECT_EQ(Flags("InterchangeCheck=true"), "010000");
    EXPECT_EQ(Flags("QueryInstrStatus=VI_TRUE"), "001000");
    EXPECT_EQ(Flags("RangeCheck=True"), "000100");
    EXPECT_EQ(Flags("RecordCoercions=1"), "000010");
    EXPECT_EQ(Flags("SIMULATE=vi_true"), "000001");
    EXPECT_EQ(Flags(" cache = 1 ,interchangecheck=1,queryinstrstatus=1,rangecheck=1,recordcoercions=1,simulate=1"),
              "111111");
}

TEST(OptionFlags, TakeTheLastOfSeveralValues) { EXPECT_EQ(Flags("Cache=1,Simulate=0,cache=0,simulate=1"), "000001"); }

TEST(OptionFlags, SkipUnknownNamesAndValues) {
    EXPECT_EQ(Flags("Speed=1,Cache=yes,RangeCheck=2,Simulate=on,QueryInstrStatus=1"), "001000");
    EXPECT_EQ(Flags("Cache=1,Cache=maybe,Simulate=1,Simulate=perhaps"), "100001");
    EXPECT_EQ(Flags("Cache,=1,Simulate:1"), "000000");
}

TEST(OptionFlags, AreNotReadBehindTheDriverSetupClause) {
    EXPECT_EQ(Flags("Cache=1, DriverSetup=Model:TX4410, Simulate=1"), "100000");
    EXPECT_EQ(Flags("driversetup=, Simulate=1"), "000000");
}

} // namespace
