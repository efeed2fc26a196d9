#include "tests/contract/driver_fixture.h"

namespace contract {
namespace {

class Selector : public DriverTest {
  protected:
    /// What a voltage of 1 V on `selector` sends, or "" where the selector is refused.
    static std::string Sent(ViSession vi, const char* selector) {
        TARNEX_ConfigureVoltageLevel(vi, selector, 1.0);
        std::string sent;
        for (const auto& line : TakeWritten()) {
            sent += line;
        }
        return sent;
    }

    static DriverError Refusal(ViSession vi, const std::string& selector) {
        TARNEX_ClearError(vi);
        const Status status(TARNEX_ResetOutputProtection(vi, selector.c_str()));
        auto error = LastError(vi);
        EXPECT_EQ(error.code, status) << selector;
        return error;
    }

    ViSession OpenWithVirtualNames(std::vector<doubles::StoredVirtualName> names) {
        doubles::Store store;
        store.driverSession.emplace().virtualNames = std::move(names);
        store.driverSession->resource = kUsbResource;
        store.module.emplace();
        doubles::TheConfigServer().Use(std::move(store));
        return Open();
    }
};

constexpr const char* kFirst = ":SOUR1:VOLT 1.000000\n";
constexpr const char* kSecond = ":SOUR2:VOLT 1.000000\n";
constexpr const char* kFirstThenSecond = ":SOUR1:VOLT 1.000000\n:SOUR2:VOLT 1.000000\n";
constexpr const char* kSecondThenFirst = ":SOUR2:VOLT 1.000000\n:SOUR1:VOLT 1.000000\n";

const DriverError kBadlyFormed{0xBFFA0066, "The repeated capability selector is badly-formed."};

DriverError InvalidRange(const std::string& range, const std::string& elaboration) {
    return {0xBFFA0064, "The range '" + range + "' is not valid for the repeated capability 'OutputChannel'." +
                            (elaboration.empty() ? "" : "  " + elaboration)};
}

DriverError UnknownIdentifier(const std::string& identifier) {
    return {0xBFFA0067, "Unknown physical repeated capability selector.  The identifier '" + identifier +
                            "' is not defined for repeated capability 'OutputChannel'."};
}

TEST_F(Selector, NamesOneChannel) {
    const auto vi = Open();
    EXPECT_EQ(Sent(vi, "OutputChannel1"), kFirst);
    EXPECT_EQ(Sent(vi, "OutputChannel2"), kSecond);
}

TEST_F(Selector, MayHaveBlanksAroundEveryToken) {
    const auto vi = Open();
    EXPECT_EQ(Sent(vi, " \t OutputChannel2 \r\n"), kSecond);
    EXPECT_EQ(Sent(vi, " OutputChannel1 , OutputChannel2 "), kFirstThenSecond);
    EXPECT_EQ(Sent(vi, " OutputChannel1 - OutputChannel2 "), kFirstThenSecond);
    EXPECT_EQ(Sent(vi, " [ OutputChannel1 ]"), kFirst);
}

TEST_F(Selector, NamesChannelsInItsOwnOrder) {
    const auto vi = Open();
    EXPECT_EQ(Sent(vi, "OutputChannel1,OutputChannel2"), kFirstThenSecond);
    EXPECT_EQ(Sent(vi, "OutputChannel2,OutputChannel1"), kSecondThenFirst);
    EXPECT_EQ(Sent(vi, "OutputChannel1-OutputChannel2"), kFirstThenSecond);
}

TEST_F(Selector, MayHaveUnpairedBrackets) {
    const auto vi = Open();
    EXPECT_EQ(Sent(vi, "[OutputChannel1,OutputChannel2]"), kFirstThenSecond);
    EXPECT_EQ(Sent(vi, "[OutputChannel2"), kSecond);
    EXPECT_EQ(Sent(vi, "OutputChannel2]"), kSecond);
}

TEST_F(Selector, MayNotBeFollowedByABlankAfterItsBracket) {
    const auto vi = Open();
    EXPECT_EQ(Refusal(vi, "[OutputChannel1] "), kBadlyFormed);
}

TEST_F(Selector, WithoutANameIsRefusedAndTheDescriptionCountsTheNames) {
    const auto vi = Open();
    const DriverError expected{
        0xBFFA0044,
        "A channel name is required.  No selector was specified for repeated capability 'OutputChannel'.  The repeated "
        "capability identifier can be null or empty only when there is exactly one physical name defined.  Repeated "
        "capability 'OutputChannel' has 2 physical names defined."};
    EXPECT_EQ(Refusal(vi, ""), expected);
    EXPECT_EQ(Refusal(vi, " \t\f\v\n\r"), expected);
    EXPECT_EQ(Status(TARNEX_ResetOutputProtection(vi, nullptr)), Status(0xBFFA0044));
    EXPECT_EQ(LastError(vi), expected);
}

TEST_F(Selector, OutsideTheGrammarIsBadlyFormed) {
    const auto vi = Open();
    for (const auto* selector : {"Output Channel1",
                                 "OutputChannel1;",
                                 ",",
                                 "OutputChannel1,",
                                 ",OutputChannel1",
                                 "[]",
                                 "[[OutputChannel1]]",
                                 "OutputChannel1-",
                                 "-OutputChannel2",
                                 "OutputChannel1-OutputChannel",
                                 "OutputChannel-OutputChannel2",
                                 "OutputChannel1--OutputChannel2",
                                 "OutputChannel1-OutputChannel2-OutputChannel3",
                                 ":",
                                 "OutputChannel1:",
                                 "[OutputChannel1],OutputChannel2",
                                 "OutputChannel1.",
                                 "\xC3\xA4",
                                 "%s",
                                 "OutputChannel1 OutputChannel2"}) {
        EXPECT_EQ(Refusal(vi, selector), kBadlyFormed) << selector;
    }
}

TEST_F(Selector, WithMoreThanOneLevelIsRefused) {
    const auto vi = Open();
    const DriverError expected{
        0xBFFA0063, "The number of levels in the selector is not valid for the 'OutputChannel' repeated capability."};
    EXPECT_EQ(Refusal(vi, "OutputChannel1:OutputChannel2"), expected);
    EXPECT_EQ(Refusal(vi, "[OutputChannel1] : [OutputChannel2,x] : y"), expected);
}

TEST_F(Selector, RangeNeedsTheSameBaseNameAtBothEnds) {
    const auto vi = Open();
    EXPECT_EQ(Refusal(vi, "OutputChannel1-2"), InvalidRange("OutputChannel1-2", "The base names do not match."));
    EXPECT_EQ(Refusal(vi, " OutputChannel1 - Channel2 "),
              InvalidRange("OutputChannel1 - Channel2", "The base names do not match."));
}

TEST_F(Selector, RangeComparesBaseNamesWithoutCaseAndThenTakesTheFirstSpelling) {
    const auto vi = Open();
    EXPECT_EQ(Sent(vi, "OutputChannel1-OUTPUTCHANNEL2"), kFirstThenSecond);
    EXPECT_EQ(Refusal(vi, "outputchannel1-OutputChannel2"), UnknownIdentifier("outputchannel1"));
}

TEST_F(Selector, RangeMustAscend) {
    const auto vi = Open();
    EXPECT_EQ(Refusal(vi, "OutputChannel2-OutputChannel1"),
              InvalidRange("OutputChannel2-OutputChannel1", "The start index must be less than the end index."));
    EXPECT_EQ(Refusal(vi, "OutputChannel1-OutputChannel1"),
              InvalidRange("OutputChannel1-OutputChannel1", "The start index must be less than the end index."));
}

TEST_F(Selector, RangeBeyond32BitsIsInvalidWithoutElaboration) {
    const auto vi = Open();
    EXPECT_EQ(Refusal(vi, "OutputChannel1-OutputChannel2147483648"),
              InvalidRange("OutputChannel1-OutputChannel2147483648", ""));
}

TEST_F(Selector, RangeNumbersMayHaveLeadingZeros) {
    const auto vi = Open();
    EXPECT_EQ(Sent(vi, "OutputChannel01-OutputChannel0002"), kFirstThenSecond);
}

TEST_F(Selector, RangeOfAHugeSpanFailsAtItsFirstUnknownMember) {
    const auto vi = Open();
    EXPECT_EQ(Refusal(vi, "OutputChannel1-OutputChannel2000000000"), UnknownIdentifier("OutputChannel3"));
    EXPECT_EQ(Refusal(vi, "X0-X2147483647"), UnknownIdentifier("X0"));
}

TEST_F(Selector, MayNotNameAChannelTwice) {
    const auto vi = Open();
    const auto* const overlaps = "An identifier in the range overlaps with another range.";
    EXPECT_EQ(Refusal(vi, "OutputChannel1,OutputChannel1"), kBadlyFormed);
    EXPECT_EQ(Refusal(vi, "X,Y,X"), kBadlyFormed);
    EXPECT_EQ(Refusal(vi, "OutputChannel1-OutputChannel2,OutputChannel2"),
              InvalidRange("OutputChannel1-OutputChannel2", overlaps));
    EXPECT_EQ(Refusal(vi, "OutputChannel2,OutputChannel1 - OutputChannel2"),
              InvalidRange("OutputChannel1 - OutputChannel2", overlaps));
    EXPECT_EQ(Refusal(vi, "X1-X5,X5-X9"), InvalidRange("X5-X9", overlaps));
    EXPECT_EQ(Refusal(vi, "X7-X9,X1-X7"), InvalidRange("X1-X7", overlaps));
    EXPECT_EQ(Refusal(vi, "X1-X9,X3-X4"), InvalidRange("X3-X4", overlaps));
}

TEST_F(Selector, RepetitionsAreReportedBeforeUnknownNames) {
    const auto vi = Open();
    EXPECT_EQ(Refusal(vi, "Unknown,OutputChannel1,OutputChannel1"), kBadlyFormed);
    EXPECT_EQ(Refusal(vi, "X01,X1-X2").code, Status(0xBFFA0067)); // "X01" is not a member of the range
}

TEST_F(Selector, NamesMustMatchAChannelExactly) {
    const auto vi = Open();
    EXPECT_EQ(Refusal(vi, "OutputChannel3"), UnknownIdentifier("OutputChannel3"));
    EXPECT_EQ(Refusal(vi, "outputchannel1"), UnknownIdentifier("outputchannel1"));
    EXPECT_EQ(Refusal(vi, "1"), UnknownIdentifier("1"));
    EXPECT_EQ(Refusal(vi, "OutputChannel1,CH2,!"), UnknownIdentifier("CH2"));
}

TEST_F(Selector, VirtualNameMapsToAPhysicalName) {
    const auto vi = OpenWithVirtualNames({{"Core", "OutputChannel1", {}}, {"Io", "OutputChannel2", {}}});
    EXPECT_EQ(Sent(vi, "Core"), kFirst);
    EXPECT_EQ(Sent(vi, "[ Io , Core ]"), kSecondThenFirst);
    EXPECT_EQ(Sent(vi, "OutputChannel2"), kSecond);
    EXPECT_EQ(Refusal(vi, "core"), UnknownIdentifier("core"));
}

TEST_F(Selector, VirtualNameForAListIsPutInBrackets) {
    const auto vi = OpenWithVirtualNames({{"All", "OutputChannel2,OutputChannel1", {}}});
    EXPECT_EQ(Sent(vi, "All"), kSecondThenFirst);
    EXPECT_EQ(Refusal(vi, "[All]"), kBadlyFormed);
    EXPECT_EQ(Refusal(vi, "All,OutputChannel1"), kBadlyFormed);
}

TEST_F(Selector, VirtualNameForARangeOrForLevelsIsInsertedUnchanged) {
    const auto vi = OpenWithVirtualNames(
        {{"All", "OutputChannel1-OutputChannel2", {}}, {"Levels", "a,b:c", {}}, {"Bad", "a b", {}}});
    EXPECT_EQ(Sent(vi, "All"), kFirstThenSecond);
    EXPECT_EQ(Sent(vi, "[All]"), kFirstThenSecond);
    EXPECT_EQ(Refusal(vi, "Levels").code, Status(0xBFFA0063));
    EXPECT_EQ(Refusal(vi, "Bad"), kBadlyFormed);
}

TEST_F(Selector, VirtualRangeNumbersItsNames) {
    const auto vi = OpenWithVirtualNames({{"CH", "OutputChannel", {{1, 2, 1}}}});
    EXPECT_EQ(Sent(vi, "CH1"), kFirst);
    EXPECT_EQ(Sent(vi, "CH2"), kSecond);
    EXPECT_EQ(Sent(vi, "CH1-CH2"), kFirstThenSecond);
    EXPECT_EQ(Refusal(vi, "CH3"), UnknownIdentifier("CH3"));
    EXPECT_EQ(Refusal(vi, "CH01"), UnknownIdentifier("CH01"));
    EXPECT_EQ(Refusal(vi, "CH"), UnknownIdentifier("CH"));
}

TEST_F(Selector, VirtualRangeStartsAtItsStartingIndex) {
    const auto vi = OpenWithVirtualNames({{"Rail", "OutputChannel", {{10, 11, 1}}}, {"None", "X", {{5, 4, 1}}}});
    EXPECT_EQ(Sent(vi, "Rail11"), kSecond);
    EXPECT_EQ(Refusal(vi, "None5"), UnknownIdentifier("None5"));
}

TEST_F(Selector, VirtualRangeOfAHugeSpanIsNotExpanded) {
    const auto vi = OpenWithVirtualNames({{"R", "OutputChannel", {{0, 2000000000, 0}}}});
    EXPECT_EQ(Sent(vi, "R2"), kSecond);
    EXPECT_EQ(Refusal(vi, "R2000000000"), UnknownIdentifier("OutputChannel2000000000"));
    EXPECT_EQ(Refusal(vi, "R2000000001"), UnknownIdentifier("R2000000001"));
}

TEST_F(Selector, VirtualNumbersAreComputedIn64Bits) {
    const auto vi = OpenWithVirtualNames({{"R", "X", {{1, 2147483647, 2147483647}}}});
    EXPECT_EQ(Refusal(vi, "R2147483647"), UnknownIdentifier("X4294967293"));
}

TEST_F(Selector, VirtualNameGivenTwiceHasItsFirstMeaning) {
    const auto vi = OpenWithVirtualNames({{"A1", "OutputChannel1", {}},
                                          {"A1", "OutputChannel2", {}},
                                          {"A", "X", {{1, 2, 1}}},
                                          {"A2", "OutputChannel2", {}}});
    EXPECT_EQ(Sent(vi, "A1"), kFirst);
    EXPECT_EQ(Refusal(vi, "A2"), UnknownIdentifier("X2"));
}

} // namespace
} // namespace contract
