#include "text/numbers.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>

#include "tests/locale/scoped_locale.h"

namespace {

/// Runs each of its tests under the classic locale and under one that writes 1.5 as "1,5".
class Numbers : public testing::TestWithParam<const char*> {
  protected:
    void SetUp() override {
        if (!locale_.InForce()) {
            GTEST_SKIP() << "THE LOCALE WITH A DECIMAL COMMA IS MISSING: localedef could not make it";
        }
        ASSERT_EQ(tests::ScopedLocale::OneAndAHalf(), std::string(GetParam()) == "C" ? "1.5" : "1,5");
    }

    /// What the conversion of `text` throws: kind and text of the exception.
    template <typename Convert>
    static std::string ThrownBy(Convert convert, std::string_view text) {
        try {
            convert(text);
        } catch (const std::invalid_argument& error) {
            return std::string("invalid_argument: ") + error.what();
        } catch (const std::out_of_range& error) {
            return std::string("out_of_range: ") + error.what();
        }
        return "nothing";
    }

  private:
    tests::ScopedLocale locale_{GetParam()};
};

INSTANTIATE_TEST_SUITE_P(Locale, Numbers, testing::Values("C", tests::kDecimalComma),
                         [](const auto& tested) { return std::string(tested.param); });

constexpr auto kSmallest = std::numeric_limits<std::int32_t>::min();
constexpr auto kLargest = std::numeric_limits<std::int32_t>::max();

TEST_P(Numbers, ReadTheLongestPrefixOfDigitsAsAnInteger) {
    EXPECT_EQ(text::ToInt("0"), 0);
    EXPECT_EQ(text::ToInt("12"), 12);
    EXPECT_EQ(text::ToInt("+12 V"), 12);
    EXPECT_EQ(text::ToInt("-12V"), -12);
    EXPECT_EQ(text::ToInt("-0"), 0);
    EXPECT_EQ(text::ToInt("007"), 7);
    EXPECT_EQ(text::ToInt("1.9"), 1);
    EXPECT_EQ(text::ToInt("1,900"), 1);
    EXPECT_EQ(text::ToInt("1.000"), 1);
    EXPECT_EQ(text::ToInt("0x10"), 0);
    EXPECT_EQ(text::ToInt(std::string_view("1\0002", 3)), 1);
    EXPECT_EQ(text::ToInt(std::string_view("123", 2)), 12);
}

TEST_P(Numbers, SkipWhiteSpaceBeforeAnInteger) {
    EXPECT_EQ(text::ToInt(" \t\n\v\f\r-5"), -5);
    EXPECT_EQ(text::ToLong(" \t\n\v\f\r+5"), 5);
}

TEST_P(Numbers, LimitIntegersTo32Bits) {
    EXPECT_EQ(text::ToInt("2147483647"), kLargest);
    EXPECT_EQ(text::ToInt("-2147483648"), kSmallest);
    EXPECT_EQ(text::ToInt("000000000002147483647"), kLargest);
    for (const auto* text : {"2147483648", "-2147483649", "+2147483648", "99999999999999999999999999999999999999",
                             " -99999999999999999999 "}) {
        EXPECT_EQ(ThrownBy(text::ToInt, text), "out_of_range: stoi argument out of range") << text;
    }
}

TEST_P(Numbers, LimitLongsTo32Bits) {
    EXPECT_EQ(text::ToLong("2147483647"), kLargest);
    EXPECT_EQ(text::ToLong("-2147483648"), kSmallest);
    for (const auto* text : {"2147483648", "-2147483649", "4294967295", "99999999999999999999999"}) {
        EXPECT_EQ(ThrownBy(text::ToLong, text), "out_of_range: stol argument out of range") << text;
    }
}

TEST_P(Numbers, RefuseATextThatDoesNotBeginWithANumber) {
    for (const auto* text :
         {"", " ", "\n", "+", "-", "+-5", "-+5", "--5", "++5", "- 5", "+ 5", "V5", ".5", ",5", "\xC2\xA0-5"}) {
        EXPECT_EQ(ThrownBy(text::ToInt, text), "invalid_argument: invalid stoi argument") << text;
        EXPECT_EQ(ThrownBy(text::ToLong, text), "invalid_argument: invalid stol argument") << text;
    }
    for (const auto* text :
         {"", " ", "+", "-", "+-5", "-+5", "--5", "++5", "- 5", "V5", ",5", ".", "e5", "-.", ".e5", "\xC2\xA0-5"}) {
        EXPECT_EQ(ThrownBy(text::ToReal, text), "invalid_argument: invalid stod argument") << text;
    }
    EXPECT_EQ(ThrownBy(text::ToInt, std::string_view("\0005", 2)), "invalid_argument: invalid stoi argument");
}

TEST_P(Numbers, ReadTheLongestPrefixWithADecimalPointAsAReal) {
    EXPECT_EQ(text::ToReal("1.5"), 1.5);
    EXPECT_EQ(text::ToReal("+1.5"), 1.5);
    EXPECT_EQ(text::ToReal("-1.5"), -1.5);
    EXPECT_EQ(text::ToReal(" \t\n\v\f\r1.5 V"), 1.5);
    EXPECT_EQ(text::ToReal("1,5"), 1.0);
    EXPECT_EQ(text::ToReal("1.5.5"), 1.5);
    EXPECT_EQ(text::ToReal("5."), 5.0);
    EXPECT_EQ(text::ToReal(".5"), 0.5);
    EXPECT_EQ(text::ToReal("-.5"), -0.5);
    EXPECT_EQ(text::ToReal("1e3"), 1000.0);
    EXPECT_EQ(text::ToReal("1E+3"), 1000.0);
    EXPECT_EQ(text::ToReal("1.5E-3,2"), 0.0015);
    EXPECT_EQ(text::ToReal("2e"), 2.0);
    EXPECT_EQ(text::ToReal("2e+"), 2.0);
    EXPECT_EQ(text::ToReal("2e-x"), 2.0);
    EXPECT_EQ(text::ToReal("0.1"), 0.1);
    EXPECT_EQ(text::ToReal("12345678901234567890"), 12345678901234567890.0);
}

TEST_P(Numbers, KeepTheSignOfZeroWhenTheyReadAReal) {
    EXPECT_EQ(text::ToReal("0"), 0.0);
    EXPECT_FALSE(std::signbit(text::ToReal("0")));
    EXPECT_TRUE(std::signbit(text::ToReal("-0.0")));
    EXPECT_EQ(text::ToReal("0e999999"), 0.0);
    EXPECT_EQ(text::ToReal("0.000e-999999"), 0.0);
}

TEST_P(Numbers, RefuseRealsThatOverflow) {
    EXPECT_EQ(text::ToReal("1.7976931348623157e308"), std::numeric_limits<double>::max());
    EXPECT_EQ(text::ToReal("-1.7976931348623157e308"), std::numeric_limits<double>::lowest());
    const auto digits = std::string(400, '9');
    for (const auto& text :
         {std::string("1.8e308"), std::string("-1.8e308"), std::string("1e999999999999"), digits, "-" + digits}) {
        EXPECT_EQ(ThrownBy(text::ToReal, text), "out_of_range: stod argument out of range") << text;
    }
}

TEST_P(Numbers, RefuseRealsThatBecomeZeroButNotSubnormals) {
    EXPECT_EQ(text::ToReal("2.2250738585072014e-308"), std::numeric_limits<double>::min());
    EXPECT_EQ(text::ToReal("1e-310"), 1e-310);
    EXPECT_EQ(text::ToReal("5e-324"), std::numeric_limits<double>::denorm_min());
    EXPECT_EQ(text::ToReal("-5e-324"), -std::numeric_limits<double>::denorm_min());
    const auto tiny = "0." + std::string(400, '0') + "1";
    for (const auto& text :
         {std::string("1e-400"), std::string("-1e-400"), std::string("1e-999999999999"), tiny, "-" + tiny}) {
        EXPECT_EQ(ThrownBy(text::ToReal, text), "out_of_range: stod argument out of range") << text;
    }
}

TEST_P(Numbers, FormatIntegersInDecimalWithoutGrouping) {
    EXPECT_EQ(text::IntegerText(0).View(), "0");
    EXPECT_EQ(text::IntegerText(-1).View(), "-1");
    EXPECT_EQ(text::IntegerText(1234567).View(), "1234567");
    EXPECT_EQ(text::IntegerText(std::uint32_t{4294967295U}).View(), "4294967295");
    EXPECT_EQ(text::IntegerText(std::numeric_limits<std::int64_t>::max()).View(), "9223372036854775807");
    EXPECT_EQ(text::IntegerText(std::numeric_limits<std::int64_t>::min()).View(), "-9223372036854775808");
}

TEST_P(Numbers, FormatRealsWithSixDecimalsAndAPoint) {
    EXPECT_EQ(text::RealText(1.5).View(), "1.500000");
    EXPECT_EQ(text::RealText(0.0005).View(), "0.000500");
    EXPECT_EQ(text::RealText(30).View(), "30.000000");
    EXPECT_EQ(text::RealText(0.1).View(), "0.100000");
    EXPECT_EQ(text::RealText(12.3456789).View(), "12.345679");
    EXPECT_EQ(text::RealText(-12.3456789).View(), "-12.345679");
    EXPECT_EQ(text::RealText(1234567.25).View(), "1234567.250000");
    EXPECT_EQ(text::RealText(0.9999999).View(), "1.000000");
    EXPECT_EQ(text::RealText(0.0000005).View(), "0.000000"); // the nearest double lies below the half
    EXPECT_EQ(text::RealText(0.0000015).View(), "0.000002"); // and this one's does not
    EXPECT_EQ(text::RealText(5e-324).View(), "0.000000");
}

TEST_P(Numbers, KeepTheSignOfZeroWhenTheyFormatAReal) {
    EXPECT_EQ(text::RealText(0.0).View(), "0.000000");
    EXPECT_EQ(text::RealText(-0.0).View(), "-0.000000");
    EXPECT_EQ(text::RealText(-1e-9).View(), "-0.000000");
}

TEST_P(Numbers, FormatRealsWithoutAnExponent) {
    EXPECT_EQ(text::RealText(1e22).View(), "10000000000000000000000.000000");
    EXPECT_EQ(text::RealText(std::ldexp(1.0, 80)).View(), "1208925819614629174706176.000000");
    EXPECT_EQ(text::RealText(1e300).View(),
              "100000000000000005250476025520442024870446858110815915491585411551180245798890819578637137"
              "508044786404370444383288387817694252323536043057564479218478670698284838720092657580373783"
              "023379478809005936895323497079994508111903896764088007465274278014249457925878882005684283"
              "8115669472196386865459400540160.000000");
    EXPECT_EQ(text::RealText(-1e308).View(),
              "-10000000000000000109790636294404554174049230967731184633681068290315758540491149153716332"
              "897849468889906124966972117251561159028374314008832830700919814604603127166450293302718569"
              "748969958855904333838446616500117842689762621294517762809119578670745812278397017178441510"
              "5291802893207873272974885715430223118336.000000");
    EXPECT_EQ(text::RealText(std::numeric_limits<double>::lowest()).View().size(), 317U);
}

TEST_P(Numbers, FormatInfinitiesAndNan) {
    const auto nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(text::RealText(nan).View(), "nan");
    EXPECT_EQ(text::RealText(std::copysign(nan, -1.0)).View(), "nan");
    EXPECT_EQ(text::RealText(std::numeric_limits<double>::infinity()).View(), "inf");
    EXPECT_EQ(text::RealText(-std::numeric_limits<double>::infinity()).View(), "-inf");
}

} // namespace
