// Parsing of arguments and formatting of reply fields, for each kind.

#include "tools/virtual_supply/kinds.h"

#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace virtual_supply {
namespace {

int ErrorOf(const Kind& kind, std::string_view text) {
    try {
        ParseArgument(kind, 1, text);
        return 0;
    } catch (const Refusal& refusal) {
        return refusal.Error().code;
    }
}

std::string Written(const Kind& kind, const Value& value) {
    std::string reply = "<";
    AppendReply(kind, value, reply);
    return reply;
}

TEST(Reals, AreReadInAnyNotation) {
    EXPECT_EQ(ParseArgument(kVolts, 1, "1.5"), 1.5);
    EXPECT_EQ(ParseArgument(kVolts, 1, "+1.5"), 1.5);
    EXPECT_EQ(ParseArgument(kVolts, 1, "15E-1"), 1.5);
    EXPECT_EQ(ParseArgument(kVolts, 1, "0.15e+1"), 1.5);
    EXPECT_EQ(ParseArgument(kVolts, 1, ".5"), 0.5);
    EXPECT_EQ(ParseArgument(kVolts, 1, "5."), 5.0);
}

TEST(Reals, AreWrittenWithSixDecimals) {
    EXPECT_EQ(Written(kReading, 3.3), "<3.300000");
    EXPECT_EQ(Written(kReading, 0.0000004), "<0.000000");
    EXPECT_EQ(Written(kReading, -2.5), "<-2.500000");
    EXPECT_EQ(Written(kReading, std::numeric_limits<double>::max()).size(), 1U + 309U + 7U);
}

TEST(Reals, AreWrittenWithoutNegativeZero) {
    EXPECT_EQ(Written(kVolts, ParseArgument(kVolts, 1, "-0.000000")), "<0.000000");
}

TEST(Integers, AreReadWithinTheirRange) {
    const Kind kind = Integer({-2, 512});
    EXPECT_EQ(ParseArgument(kind, 0, "512"), 512.0);
    EXPECT_EQ(ParseArgument(kind, 0, "-2"), -2.0);
    EXPECT_EQ(ParseArgument(kind, 0, "+7"), 7.0);
    EXPECT_EQ(ErrorOf(kind, "513"), -222);
    EXPECT_EQ(ErrorOf(kind, "-3"), -222);
    EXPECT_EQ(ErrorOf(kind, "99999999999999999999"), -222);
    EXPECT_EQ(ErrorOf(kind, "1.0"), -104);
    EXPECT_EQ(ErrorOf(kind, "1e2"), -104);
}

TEST(Integers, AreWrittenInDecimal) {
    EXPECT_EQ(Written(kInteger, 48.0), "<48");
    EXPECT_EQ(Written(kInteger, -113.0), "<-113");
}

TEST(Booleans, AreReadAsWordsOrDigits) {
    EXPECT_EQ(ParseArgument(kBoolean, 1, "ON"), 1.0);
    EXPECT_EQ(ParseArgument(kBoolean, 1, "off"), 0.0);
    EXPECT_EQ(ParseArgument(kBoolean, 1, "1"), 1.0);
    EXPECT_EQ(ParseArgument(kBoolean, 1, "0"), 0.0);
    EXPECT_EQ(ErrorOf(kBoolean, "TRUE"), -104);
    EXPECT_EQ(Written(kBoolean, 1.0), "<ON");
    EXPECT_EQ(Written(kBoolean, 0.0), "<OFF");
}

TEST(Keywords, AcceptEverySpellingAndWriteTheFirst) {
    EXPECT_EQ(ParseArgument(Word(kCurrentRates), 1, "4k"), 1.0);
    EXPECT_EQ(ParseArgument(Word(kCurrentRates), 1, "4000"), 1.0);
    EXPECT_EQ(ErrorOf(Word(kCurrentRates), "400"), -224);
    EXPECT_EQ(Written(Word(kCurrentRates), 1.0), "<4000");
}

TEST(Texts, AreWrittenUnchangedAndNeverAccepted) {
    EXPECT_EQ(Written(kText, std::string("%s{}")), "<%s{}");
    EXPECT_EQ(ErrorOf(kText, "x"), -104);
}

} // namespace
} // namespace virtual_supply
