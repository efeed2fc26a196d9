// The scanners against the regular expressions that they stand for, over random texts.

#include <gtest/gtest.h>

#include <array>
#include <iterator>
#include <regex>
#include <string>
#include <string_view>

#include "tests/unit/support/random_text.h"
#include "text/option_string.h"

namespace {

constexpr std::array<std::string_view, 40> kPieces{
    "DriverSetup", "driversetup", "DRIVERSETUP", "DriverSetu", "Driver", "Setup", "Simulate", "cache", "a",    "B",
    "z9",          "0",           "1",           "=",          "=",      "=",     "=",        ":",     ":",    ",",
    ",",           ",",           " ",           " ",          " ",      "\t",    "\n",       "\r",    "\v",   "\f",
    "+",           "_",           "-",           ".",          "!",      "%s",    "\xC3\xA4", "\xFF",  "\xA0", "true"};
constexpr std::size_t kMostPieces = 14;
constexpr int kTextsPerShard = 12'500;

/// Eight shards, so that they can run beside one another.
class OptionStringScanners : public testing::TestWithParam<std::uint32_t> {
  protected:
    template <typename Check>
    void OverRandomTexts(Check check) {
        unit::RandomText random(GetParam(), kPieces);
        for (int i = 0; i < kTextsPerShard && !HasFailure(); ++i) {
            const auto text = random.Next(kMostPieces);
            SCOPED_TRACE(unit::Shown(text));
            check(text);
        }
    }

    /// Compares all pairs of `text`, in order.
    template <typename Scanner>
    static void ComparePairs(const std::string& text, const std::regex& expression, Scanner next) {
        std::string_view rest = text;
        for (std::sregex_iterator match(text.begin(), text.end(), expression), end; match != end; ++match) {
            const auto pair = next(rest);
            ASSERT_TRUE(pair.has_value());
            ASSERT_EQ(pair->name, (*match)[1].str());
            ASSERT_EQ(pair->value, (*match)[2].str());
            ASSERT_EQ(pair->name.data() - text.data(), match->position(1));
            ASSERT_EQ(pair->value.data() - text.data(), match->position(2));
        }
        ASSERT_FALSE(next(rest).has_value());
        ASSERT_EQ(rest, "");
    }
};

INSTANTIATE_TEST_SUITE_P(Shard, OptionStringScanners, testing::Range(0U, 8U));

TEST_P(OptionStringScanners, SplitLikeTheRegularExpression) {
    const std::regex expression(R"(\s*DriverSetup\s*=(.*))", std::regex::ECMAScript | std::regex::icase);
    int clauses = 0;
    OverRandomTexts([&](const std::string& text) {
        const auto [inherent, setup] = text::SplitOptionString(text);
        std::smatch match;
        if (std::regex_search(text, match, expression)) {
            ++clauses;
            ASSERT_EQ(inherent, match.prefix().str());
            ASSERT_EQ(setup, std::string_view(text).substr(static_cast<std::size_t>(match.position(1)),
                                                           static_cast<std::size_t>(match.length(1))));
        } else {
            ASSERT_EQ(inherent, text);
            ASSERT_EQ(setup, std::nullopt);
        }
    });
    EXPECT_GT(clauses, kTextsPerShard / 50) << "too few texts have a clause";
}

TEST_P(OptionStringScanners, FindTheDriverSetupPairsOfTheRegularExpression) {
    const std::regex expression(R"(([\w+_]+)\s*(?:=|:)\s*([^,]+))");
    OverRandomTexts([&](const std::string& text) { ComparePairs(text, expression, text::NextDriverSetupPair); });
}

TEST_P(OptionStringScanners, FindTheInherentPairsOfTheRegularExpression) {
    const std::regex expression(R"(\s*(\w+)\s*=\s*(\w+)\s*,?)");
    OverRandomTexts([&](const std::string& text) { ComparePairs(text, expression, text::NextInherentPair); });
}

} // namespace
