#include "framework/virtual_names.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace {

constexpr auto kLargest = std::numeric_limits<std::int32_t>::max();
constexpr auto kSmallest = std::numeric_limits<std::int32_t>::min();

class VirtualNames : public testing::Test {
  protected:
    /// What a name stands for, or "none".
    std::string Of(std::string_view name) const { return names_.Find(name).value_or("none"); }

    nrt2::VirtualNames names_;
};

TEST_F(VirtualNames, WithoutAnyFindNothing) {
    EXPECT_TRUE(names_.Empty());
    EXPECT_EQ(Of("Core"), "none");
    EXPECT_EQ(Of("1"), "none");
    EXPECT_EQ(Of(""), "none");
}

TEST_F(VirtualNames, PlainNameMatchesExactly) {
    names_.Add("Core", "OutputChannel1");
    EXPECT_FALSE(names_.Empty());
    EXPECT_EQ(Of("Core"), "OutputChannel1");
    EXPECT_EQ(Of("core"), "none");
    EXPECT_EQ(Of("Core1"), "none");
    EXPECT_EQ(Of("Cor"), "none");
}

TEST_F(VirtualNames, PlainNameMayMapToNothingOrToAList) {
    names_.Add("Nothing", "");
    names_.Add("All", "A,B");
    EXPECT_EQ(names_.Find("Nothing"), "");
    EXPECT_EQ(Of("All"), "A,B");
}

TEST_F(VirtualNames, RangeMapsOnlyItsMembers) {
    names_.AddRange("R", "X", 9, 11, 1);
    EXPECT_EQ(Of("R8"), "none");
    EXPECT_EQ(Of("R9"), "X1");
    EXPECT_EQ(Of("R10"), "X2");
    EXPECT_EQ(Of("R11"), "X3");
    EXPECT_EQ(Of("R12"), "none");
    EXPECT_EQ(Of("R"), "none");
    EXPECT_EQ(Of("R09"), "none");
    EXPECT_EQ(Of("R+9"), "none");
}

TEST_F(VirtualNames, RangeMayHaveOneMemberOrNone) {
    names_.AddRange("R", "X", 3, 3, 7);
    names_.AddRange("N", "X", 4, 3, 7);
    EXPECT_EQ(Of("R3"), "X7");
    EXPECT_EQ(Of("N3"), "none");
    EXPECT_EQ(Of("N4"), "none");
}

TEST_F(VirtualNames, RangeOfZeroHasNoLeadingZeros) {
    names_.AddRange("R", "X", 0, 10, 0);
    EXPECT_EQ(Of("R0"), "X0");
    EXPECT_EQ(Of("R00"), "none");
    EXPECT_EQ(Of("R10"), "X10");
}

TEST_F(VirtualNames, RangeMayHaveANameThatEndsInDigitsOrNoneAtAll) {
    names_.AddRange("R1", "X", 0, 99, 0);
    names_.AddRange("", "Y", 5, 6, 1);
    EXPECT_EQ(Of("R15"), "X5");
    EXPECT_EQ(Of("R115"), "X15");
    EXPECT_EQ(Of("R105"), "none");
    EXPECT_EQ(Of("5"), "Y1");
}

TEST_F(VirtualNames, NegativeMembersCannotBeNamed) {
    names_.AddRange("R", "X", -2, 1, 5);
    EXPECT_EQ(Of("R0"), "X7");
    EXPECT_EQ(Of("R1"), "X8");
    EXPECT_EQ(Of("R-1"), "none"); // not a name: names have no hyphen
}

TEST_F(VirtualNames, NumbersAreCountedIn64Bits) {
    names_.AddRange("R", "X", 0, kLargest, kLargest);
    names_.AddRange("S", "X", kSmallest, kLargest, kLargest);
    names_.AddRange("T", "X", 0, kLargest, kSmallest);
    EXPECT_EQ(Of("R2147483647"), "X4294967294");
    EXPECT_EQ(Of("R2147483648"), "none");
    EXPECT_EQ(Of("S2147483647"), "X6442450942");
    EXPECT_EQ(Of("T0"), "X-2147483648");
    EXPECT_EQ(Of("R99999999999999999999"), "none");
}

TEST_F(VirtualNames, FirstGivenWinsAmongNamesAndRanges) {
    names_.AddRange("R", "X", 1, 5, 1);
    names_.Add("R2", "Plain");
    names_.AddRange("R", "Y", 4, 8, 1);
    names_.Add("R7", "Late");
    EXPECT_EQ(Of("R2"), "X2");
    EXPECT_EQ(Of("R4"), "X4");
    EXPECT_EQ(Of("R6"), "Y3");
    EXPECT_EQ(Of("R7"), "Y4");
    EXPECT_EQ(Of("R8"), "Y5");
}

TEST_F(VirtualNames, FirstGivenWinsAmongRangesOfDifferentNames) {
    names_.AddRange("R1", "X", 0, 9, 0);
    names_.AddRange("R", "Y", 0, 99, 0);
    EXPECT_EQ(Of("R15"), "X5");
    EXPECT_EQ(Of("R25"), "Y25");
    EXPECT_EQ(Of("R1"), "Y1");
}

TEST_F(VirtualNames, PlainNameGivenFirstWinsOverARange) {
    names_.Add("R2", "Plain");
    names_.Add("R2", "Second");
    names_.AddRange("R", "X", 1, 5, 1);
    EXPECT_EQ(Of("R2"), "Plain");
    EXPECT_EQ(Of("R3"), "X3");
}

TEST_F(VirtualNames, ClearedNamesAreForgottenWithTheirOrder) {
    names_.Add("R2", "Plain");
    names_.Clear();
    EXPECT_TRUE(names_.Empty());
    EXPECT_EQ(Of("R2"), "none");
    names_.AddRange("R", "X", 1, 5, 1);
    names_.Add("R2", "Plain");
    EXPECT_EQ(Of("R2"), "X2");
}

TEST_F(VirtualNames, NameOfOneMebibyteIsLookedUp) {
    names_.AddRange("R", "X", 1, 5, 1);
    EXPECT_EQ(Of(std::string(1UL << 20U, '1')), "none");
    EXPECT_EQ(Of(std::string(1UL << 20U, 'R')), "none");
}

} // namespace
