#include "text/option_string.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "tests/unit/support/small_stack.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

using Pairs = std::vector<std::pair<std::string, std::string>>;

template <typename Scanner>
Pairs PairsOf(Scanner next, std::string_view text) {
    Pairs pairs;
    while (const auto pair = next(text)) {
        pairs.emplace_back(pair->name, pair->value);
    }
    EXPECT_EQ(text, "");
    return pairs;
}

Pairs SetupPairs(std::string_view text) { return PairsOf(text::NextDriverSetupPair, text); }
Pairs InherentPairs(std::string_view text) { return PairsOf(text::NextInherentPair, text); }

std::string Inherent(std::string_view options) { return std::string(text::SplitOptionString(options).inherent); }

/// The clause's text, or "none".
std::string Clause(std::string_view options) {
    return std::string(text::SplitOptionString(options).driverSetup.value_or("none"));
}

TEST(OptionStringSplit, TakesEverythingAsInherentWithoutAClause) {
    EXPECT_EQ(Inherent(" Simulate=1 "), " Simulate=1 ");
    EXPECT_EQ(Clause(" Simulate=1 "), "none");
    EXPECT_EQ(Inherent(""), "");
    EXPECT_EQ(Clause(""), "none");
}

TEST(OptionStringSplit, ExtendsTheClauseToTheEnd) {
    EXPECT_EQ(Inherent("Simulate=1, DriverSetup=Model:TX4410, Cache=1"), "Simulate=1,");
    EXPECT_EQ(Clause("Simulate=1, DriverSetup=Model:TX4410, Cache=1"), "Model:TX4410, Cache=1");
    EXPECT_EQ(Clause("DriverSetup=a=b=DriverSetup=c"), "a=b=DriverSetup=c");
}

TEST(OptionStringSplit, FindsTheKeywordInAnyLetterCaseAndBetweenBlanks) {
    EXPECT_EQ(Inherent("Cache=1 \t\n\v\f\rdRIVERsETUP \t\n\v\f\r= x "), "Cache=1");
    EXPECT_EQ(Clause("Cache=1 \t\n\v\f\rdRIVERsETUP \t\n\v\f\r= x "), " x ");
}

TEST(OptionStringSplit, FindsTheKeywordAtTheEndOfAnotherWord) {
    EXPECT_EQ(Inherent("MyDriverSetup=x"), "My");
    EXPECT_EQ(Clause("MyDriverSetup=x"), "x");
}

TEST(OptionStringSplit, FindsNoKeywordWithoutItsEqualsSign) {
    EXPECT_EQ(Clause("DriverSetup"), "none");
    EXPECT_EQ(Clause("DriverSetup  "), "none");
    EXPECT_EQ(Clause("DriverSetup:x"), "none");
    EXPECT_EQ(Clause("DriverSetups=x"), "none");
    EXPECT_EQ(Clause("DriverSetup, DriverSetup=x"), "x");
    EXPECT_EQ(Inherent("DriverSetup, DriverSetup=x"), "DriverSetup,");
    EXPECT_EQ(Clause("DriverSetupDriverSetup=x"), "x");
    EXPECT_EQ(Clause("DriverDriverSetup=x"), "x");
}

TEST(OptionStringSplit, ReturnsAnEmptyClause) {
    EXPECT_EQ(text::SplitOptionString("DriverSetup=").driverSetup, std::string_view(""));
    EXPECT_EQ(text::SplitOptionString("DriverSetup=\nx").driverSetup, std::string_view(""));
}

TEST(OptionStringSplit, EndsTheClauseAtALineBreakAndDropsTheRest) {
    EXPECT_EQ(Clause("Cache=1 DriverSetup=a\nb"), "a");
    EXPECT_EQ(Inherent("Cache=1 DriverSetup=a\nb"), "Cache=1");
    EXPECT_EQ(Clause("DriverSetup=a\rb"), "a");
    EXPECT_EQ(Clause("DriverSetup=a\v\f\tb"), "a\v\f\tb");
}

TEST(DriverSetupPairs, AreSeparatedByEqualsSignOrColon) {
    EXPECT_THAT(SetupPairs("Model:TX4410"), ElementsAre(Pair("Model", "TX4410")));
    EXPECT_THAT(SetupPairs("Model=TX4410, Simulate=1"), ElementsAre(Pair("Model", "TX4410"), Pair("Simulate", "1")));
    EXPECT_THAT(SetupPairs("a:=b"), ElementsAre(Pair("a", "=b")));
    EXPECT_THAT(SetupPairs("a=b:c=d"), ElementsAre(Pair("a", "b:c=d")));
}

TEST(DriverSetupPairs, HaveNamesOfWordCharactersAndPlusSigns) {
    EXPECT_THAT(SetupPairs("_a+9=1,b-c=2,d e=3"), ElementsAre(Pair("_a+9", "1"), Pair("c", "2"), Pair("e", "3")));
    EXPECT_THAT(SetupPairs("\xC3\xA4x=1"), ElementsAre(Pair("x", "1")));
}

TEST(DriverSetupPairs, KeepTheTrailingBlanksOfTheirValues) {
    EXPECT_THAT(SetupPairs("a = b c \t,d"), ElementsAre(Pair("a", "b c \t")));
}

TEST(DriverSetupPairs, HaveTheLastBlankAsValueWhenTheValueIsBlank) {
    EXPECT_THAT(SetupPairs("Model: ,x=1"), ElementsAre(Pair("Model", " "), Pair("x", "1")));
    EXPECT_THAT(SetupPairs("Model: \t"), ElementsAre(Pair("Model", "\t")));
}

TEST(DriverSetupPairs, AreSkippedWhenTheyAreMalformed) {
    EXPECT_THAT(SetupPairs("a=,b:,=c,:d,e,,f=1"), ElementsAre(Pair("f", "1")));
    EXPECT_THAT(SetupPairs("a="), IsEmpty());
    EXPECT_THAT(SetupPairs("a"), IsEmpty());
    EXPECT_THAT(SetupPairs("  "), IsEmpty());
    EXPECT_THAT(SetupPairs(""), IsEmpty());
}

TEST(InherentPairs, MayHaveBlanksOfEveryKindAroundEveryToken) {
    EXPECT_THAT(InherentPairs(" \ta\n=\v1\f ,\r b = 2 "), ElementsAre(Pair("a", "1"), Pair("b", "2")));
}

TEST(InherentPairs, AreReadWithoutACommaBetweenThem) {
    EXPECT_THAT(InherentPairs("a=1 b=2;c=3"), ElementsAre(Pair("a", "1"), Pair("b", "2"), Pair("c", "3")));
}

TEST(InherentPairs, AreSkippedWhenTheyAreMalformed) {
    EXPECT_THAT(InherentPairs("x, a=, b==1, =2, c:3, d e=4, f=-5, g=6"), ElementsAre(Pair("e", "4"), Pair("g", "6")));
    EXPECT_THAT(InherentPairs("a=b=c"), ElementsAre(Pair("a", "b")));
    EXPECT_THAT(InherentPairs("a= b=c"), ElementsAre(Pair("a", "b")));
    EXPECT_THAT(InherentPairs("a"), IsEmpty());
    EXPECT_THAT(InherentPairs("a="), IsEmpty());
    EXPECT_THAT(InherentPairs(""), IsEmpty());
}

TEST(InherentPairs, KeepWordCharactersOnly) {
    EXPECT_THAT(InherentPairs("x+y=z+1,vi_1=_"), ElementsAre(Pair("y", "z"), Pair("vi_1", "_")));
    EXPECT_THAT(InherentPairs("\xC4=1,a=\xC4"), IsEmpty());
}

TEST(BooleanWords, AreSixInLowerCase) {
    for (const auto* word : {"true", "vi_true", "1"}) {
        EXPECT_EQ(text::BooleanWord(word), true) << word;
    }
    for (const auto* word : {"false", "vi_false", "0"}) {
        EXPECT_EQ(text::BooleanWord(word), false) << word;
    }
    for (const auto* word : {"", "True", "VI_TRUE", "yes", "2", "01", "true ", "tru", "vi_truex", "on"}) {
        EXPECT_EQ(text::BooleanWord(word), std::nullopt) << word;
    }
}

// What a scanner does with a text of one mebibyte, on a stack of a quarter of one.
std::string Repeated(std::string_view piece) {
    std::string text;
    while (text.size() < unit::kMebibyte) {
        text.append(piece);
    }
    return text;
}

TEST(OptionStringOfAMebibyte, IsScannedOnASmallStackInEveryShape) {
    unit::RunOnSmallStack([] {
        for (const std::string_view piece : {"a", " ", "=", ",", "DriverSetup", "DriverSetup ", "a ", "a= ", "a=,", "+",
                                             ":", "\n", "\xFF", "d", "= ", "a\t=\t"}) {
            const auto text = Repeated(piece);
            EXPECT_EQ(Clause(text), "none") << piece;
            EXPECT_LE(SetupPairs(text).size(), text.size());
            EXPECT_LE(InherentPairs(text).size(), text.size());
        }
    });
}

TEST(OptionStringOfAMebibyte, IsSplitIntoEveryPair) {
    unit::RunOnSmallStack([] {
        const auto text = Repeated("ab=c,");
        EXPECT_EQ(SetupPairs(text).size(), text.size() / 5);
        EXPECT_EQ(InherentPairs(text).size(), text.size() / 5);
        EXPECT_EQ(SetupPairs(text).back(), (std::pair<std::string, std::string>("ab", "c")));
    });
}

TEST(OptionStringOfAMebibyte, KeepsALongNameALongValueAndALongClause) {
    unit::RunOnSmallStack([] {
        const auto letters = Repeated("a");
        EXPECT_THAT(SetupPairs(letters + "=x"), ElementsAre(Pair(letters, "x")));
        EXPECT_THAT(SetupPairs("x=" + letters), ElementsAre(Pair("x", letters)));
        EXPECT_THAT(InherentPairs(letters + "=" + letters), ElementsAre(Pair(letters, letters)));
        EXPECT_THAT(SetupPairs("x=" + Repeated(" ")), ElementsAre(Pair("x", " ")));
        EXPECT_THAT(InherentPairs("x" + Repeated(" ") + "=" + Repeated(" ") + "y"), ElementsAre(Pair("x", "y")));
        EXPECT_EQ(Clause("DriverSetup=" + letters), letters);
        EXPECT_EQ(Inherent("x" + Repeated(" ") + "DriverSetup=y"), "x");
        EXPECT_EQ(Inherent(letters + "DriverSetup=y"), letters);
    });
}

} // namespace
