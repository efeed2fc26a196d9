#include <gtest/gtest.h>

#include "driver/option_text.h"

namespace {

using tarnex::MergeOptions;

TEST(MergedOptions, AreSeparatedByACommaAndABlank) {
    EXPECT_EQ(MergeOptions("", {true, true, ""}), "Simulate=true, QueryInstrStatus=true");
    EXPECT_EQ(MergeOptions("Cache=0", {true, true, "TX4410"}),
              "Cache=0, Simulate=true, QueryInstrStatus=true, Model=TX4410");
    EXPECT_EQ(MergeOptions("", {false, false, "TX4520"}), "Model=TX4520");
}

TEST(MergedOptions, AreUnchangedWhenThereIsNothingToAdd) {
    EXPECT_EQ(MergeOptions("Cache=0", {}), "Cache=0");
    EXPECT_EQ(MergeOptions("", {}), "");
}

TEST(MergedOptions, AreLeftOutForKeysThatTheUserGaveInAnyLetterCase) {
    EXPECT_EQ(MergeOptions("sImUlAtE=false", {true, false, ""}), "sImUlAtE=false");
    EXPECT_EQ(MergeOptions("QUERYINSTRSTATUS=0", {false, true, ""}), "QUERYINSTRSTATUS=0");
}

TEST(MergedOptions, AreLeftOutWhenTheTextContainsTheKey) {
    EXPECT_EQ(MergeOptions("DriverSetup=Remodelled:1", {true, false, "TX4410"}),
              "DriverSetup=Remodelled:1, Simulate=true");
}

} // namespace
