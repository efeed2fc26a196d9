#include "instrument/reply_parsers.h"

#include "tests/unit/instrument/supply_fixture.h"

namespace unit {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(ParseBool, ReadsTheWordAtTheBeginningOfTheReply) {
    for (const auto* reply : {"ON", "1", "ON\n", "1\r\n", "ONX", "ON OFF", "ON,OFF", "1 V", "1.0"}) {
        EXPECT_TRUE(Visa::parseBool(reply)) << reply;
    }
    for (const auto* reply : {"OFF", "0", "OFF\r\n", "0\n", "OFFX", "OFF ON", "0.5", "OFf"}) {
        const bool expected = std::string_view(reply) == "OFf"; // the prefix is "OF": no word at all
        if (expected) {
            EXPECT_THROW(Visa::parseBool(reply), std::invalid_argument);
        } else {
            EXPECT_FALSE(Visa::parseBool(reply)) << reply;
        }
    }
}

TEST(ParseBool, ThrowsWithTheWholeReplyWhenThereIsNoSuchWord) {
    for (const auto* reply : {"", "NO", "on", "off", " ON", "\nON", "TRUE", "10", "11", "00", "01", "ONON", "ON1", "OF",
                              "O", "OFFF", "+1", "%s", "2"}) {
        EXPECT_EQ(ThrownBy([&] { Visa::parseBool(reply); }),
                  std::string("invalid_argument: Visa::parseBool Unknown ret:") + reply);
    }
    EXPECT_EQ(ThrownBy([] { Visa::parseBool("NO\r\n"); }), "invalid_argument: Visa::parseBool Unknown ret:NO\r\n");
}

TEST(ParseInt, ConvertsThePrefixOfDigitsAndSigns) {
    EXPECT_EQ(Visa::parseInt("12"), 12);
    EXPECT_EQ(Visa::parseInt("+12 V"), 12);
    EXPECT_EQ(Visa::parseInt("-12\n"), -12);
    EXPECT_EQ(Visa::parseInt("12-3"), 12);
    EXPECT_EQ(Visa::parseInt("1.9"), 1);
    EXPECT_EQ(Visa::parseInt("1e3"), 1);
    EXPECT_EQ(Visa::parseInt("-2147483648"), -2147483647 - 1);
}

TEST(ParseInt, ThrowsWhenThereIsNoInteger) {
    for (const auto* reply : {"", " 12", "\n12", "V", "+", "-", "+-1", "--1", ".5"}) {
        EXPECT_EQ(ThrownBy([&] { Visa::parseInt(reply); }), "invalid_argument: invalid stoi argument") << reply;
    }
    for (const auto* reply : {"2147483648", "-2147483649", "99999999999999999999"}) {
        EXPECT_EQ(ThrownBy([&] { Visa::parseInt(reply); }), "out_of_range: stoi argument out of range") << reply;
    }
}

TEST(ParseDouble, ConvertsThePrefixOfNumberCharacters) {
    EXPECT_EQ(Visa::parseDouble("1.5E-3,2"), 0.0015);
    EXPECT_EQ(Visa::parseDouble("+1.5"), 1.5);
    EXPECT_EQ(Visa::parseDouble("-1.5e+2 V"), -150.0);
    EXPECT_EQ(Visa::parseDouble("5\r\n"), 5.0);
    EXPECT_EQ(Visa::parseDouble("1.5V"), 1.5);
    EXPECT_EQ(Visa::parseDouble("1.5E"), 1.5);
    EXPECT_EQ(Visa::parseDouble("1-2"), 1.0);
    EXPECT_EQ(Visa::parseDouble("1,5"), 1.0);
    EXPECT_EQ(Visa::parseDouble("0x1F"), 0.0);
}

TEST(ParseDouble, ThrowsWhenThereIsNoReal) {
    for (const auto* reply : {"", " 1.5", "\n1.5", "E5", ".", "+", "-.", "nan", "NAN", "inf", "-inf", "INF", "V"}) {
        EXPECT_EQ(ThrownBy([&] { Visa::parseDouble(reply); }), "invalid_argument: invalid stod argument") << reply;
    }
    for (const auto* reply : {"1e999", "-1e999", "1e-999", "9.9E37E5E9999999999999999999", "1E+400V"}) {
        const bool fits = std::string_view(reply).starts_with("9.9E37");
        EXPECT_EQ(ThrownBy([&] { Visa::parseDouble(reply); }),
                  fits ? "nothing" : "out_of_range: stod argument out of range")
            << reply;
    }
}

TEST(Split, ReturnsTheFieldsBetweenTheSeparators) {
    EXPECT_THAT(Visa::split("a,b,c", ',', false), ElementsAre("a", "b", "c"));
    EXPECT_THAT(Visa::split("a;b,c", ';', false), ElementsAre("a", "b,c"));
    EXPECT_THAT(Visa::split("a", ',', false), ElementsAre("a"));
    EXPECT_THAT(Visa::split(",a,,b", ',', false), ElementsAre("", "a", "", "b"));
}

TEST(Split, ReturnsNoEmptyFieldAfterTheLastSeparator) {
    EXPECT_THAT(Visa::split("", ',', false), IsEmpty());
    EXPECT_THAT(Visa::split("a,", ',', false), ElementsAre("a"));
    EXPECT_THAT(Visa::split(",", ',', false), ElementsAre(""));
    EXPECT_THAT(Visa::split(",,", ',', false), ElementsAre("", ""));
    EXPECT_THAT(Visa::split("a,\n", ',', true), ElementsAre("a", ""));
}

TEST(Split, TrimsLineEndsAndTabsButNotBlanks) {
    EXPECT_THAT(Visa::split("1.0, 2.0\r\n", ',', true), ElementsAre("1.0", " 2.0"));
    EXPECT_THAT(Visa::split("\t\r\n a\tb \n\t,\r\n\t,\v\f", ',', true), ElementsAre(" a\tb ", "", "\v\f"));
    EXPECT_THAT(Visa::split("1.0, 2.0\r\n", ',', false), ElementsAre("1.0", " 2.0\r\n"));
}

TEST(IsWholeInt, AcceptsOneSignedIntegerWithWhiteSpaceAtItsEnd) {
    for (const auto* reply : {"0", "12", "+7", "-7", "007 ", "5\r\n\t"}) {
        EXPECT_TRUE(Visa::IsWholeInt(reply)) << reply;
    }
    for (const auto* reply : {"", " ", "+", "-", " 5", "1-2", "1+", "--1", "1.0", "1e3", "12x", "1 2", "0x10"}) {
        EXPECT_FALSE(Visa::IsWholeInt(reply)) << reply;
    }
}

TEST(IsWholeDouble, AcceptsOneRealOfAnyNotationWithWhiteSpaceAtItsEnd) {
    for (const auto* reply : {"0", "-12", "+1.5", ".5", "5.", "1E3", "+2.25E+00", "1.5e-3 ", "9.9E37\r\n"}) {
        EXPECT_TRUE(Visa::IsWholeDouble(reply)) << reply;
    }
    for (const auto* reply : {"",   " ",   "+",     ".",   "-.",    "e5",    "E",   "1e",  "1e+", " 5",
                              "1V", "1-2", "1.5.2", "1..", "1e2e3", "1e2.5", "nan", "inf", "0x1", "1 2"}) {
        EXPECT_FALSE(Visa::IsWholeDouble(reply)) << reply;
    }
}

TEST(IsWholeBool, AcceptsNothingBehindTheWordButWhiteSpace) {
    EXPECT_TRUE(Visa::IsWholeBool("ON"));
    EXPECT_TRUE(Visa::IsWholeBool("0 \r\n"));
    for (const auto* reply : {"ONX", "OFF,", "1.5", "1 2"}) {
        EXPECT_FALSE(Visa::IsWholeBool(reply)) << reply;
    }
}

TEST(ToUpper, ChangesAsciiLettersOnly) {
    EXPECT_EQ(Visa::toUpper("sour:Volt?_9 az{`"), "SOUR:VOLT?_9 AZ{`");
    EXPECT_EQ(Visa::toUpper("\xE4\xFF"), "\xE4\xFF");
    EXPECT_EQ(Visa::toUpper(""), "");
}

TEST(StartsWithAnyCase, ReturnsTheFirstElementWhoseUpperCaseTextHasThePrefix) {
    const std::vector<std::string_view> list{"SOU", "outp", "sOuRce", "SOUR"};
    EXPECT_EQ(Visa::startsWithAnyCase(list, "SOUR"), &list[2]);
    EXPECT_EQ(Visa::startsWithAnyCase(list, "SO"), &list[0]);
    EXPECT_EQ(Visa::startsWithAnyCase(list, ""), &list[0]);
    EXPECT_EQ(Visa::startsWithAnyCase(list, "sour"), nullptr); // the texts are raised, the prefix is not
    EXPECT_EQ(Visa::startsWithAnyCase({}, "SOUR"), nullptr);
}

} // namespace
} // namespace unit
