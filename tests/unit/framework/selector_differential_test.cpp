// Compares the selector scanners with their regular expressions, and the rules with a literal implementation, for
// random selectors.

#include <gtest/gtest.h>

#include <array>
#include <map>
#include <optional>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include "framework/selector.h"
#include "tests/unit/framework/framework_fixture.h"
#include "tests/unit/support/random_text.h"

namespace unit {
namespace {

const std::regex& Grammar() {
    static const std::regex grammar = [] {
        const std::string range = R"((?:\s*[\w_!]*?[0-9]+\s*-\s*[\w_!]*?[0-9]+))";
        const std::string name = R"(\s*[\w_!]+)";
        const std::string item = "(?:" + range + "|" + name + ")";
        const std::string list = item + R"((?:\s*,)" + item + ")*";
        const std::string selector = R"(^(?:\s*\[?)" + list + R"(\s*\]?)(?:\s*:\s*\[?)" + list + R"(\s*\]?)*$)";
        return std::regex(selector, std::regex::ECMAScript | std::regex::icase | std::regex::optimize);
    }();
    return grammar;
}

/// What becomes of a selector: names, or a refusal.
struct Outcome {
    std::uint32_t status = 0;
    std::string description;
    std::vector<std::string> names;
    bool operator==(const Outcome&) const = default;
};

void PrintTo(const Outcome& outcome, std::ostream* out) {
    PrintTo(Status(outcome.status), out);
    *out << " \"" << outcome.description << "\" " << testing::PrintToString(outcome.names);
}

const std::vector<std::string> kPhysicalNames{"A1", "A2", "A3", "B", "b1", "a2", "9", "10", "A01"};

const std::map<std::string, std::string> kVirtualNames{
    {"Core", "A1"}, {"All", "A1,A2"}, {"Span", "A1-A3"}, {"Lev", "A1:B"},
    {"Bad", "A B"}, {"V1", "A2"},     {"V2", "A3"},      {"V3", "A4"},
};

std::string Trimmed(const std::string& text) {
    const auto* const blanks = " \t\n\v\f\r";
    const auto begin = text.find_first_not_of(blanks);
    return begin == std::string::npos ? "" : text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

std::vector<std::string> Parts(const std::string& text, char separator) {
    std::vector<std::string> parts(1);
    for (const char c : text) {
        if (c == separator) {
            parts.emplace_back();
        } else {
            parts.back().push_back(c);
        }
    }
    return parts;
}

Outcome BadlyFormed() { return {0xBFFA0066, "The repeated capability selector is badly-formed.", {}}; }

Outcome InvalidRange(const std::string& range, const std::string& elaboration) {
    return {0xBFFA0064,
            "The range '" + range + "' is not valid for the repeated capability 'Rail'." +
                (elaboration.empty() ? "" : "  " + elaboration),
            {}};
}

std::string Substituted(const std::string& selector) {
    static const std::regex name(R"([\w_!]+)");
    std::string result;
    auto rest = selector.begin();
    for (std::sregex_iterator match(selector.begin(), selector.end(), name), end; match != end; ++match) {
        result.append(rest, (*match)[0].first);
        rest = (*match)[0].second;
        const auto replacement = kVirtualNames.find(match->str());
        if (replacement == kVirtualNames.end()) {
            result.append(match->str());
        } else if (replacement->second.find(',') != std::string::npos &&
                   replacement->second.find(':') == std::string::npos) {
            result.append("[" + replacement->second + "]");
        } else {
            result.append(replacement->second);
        }
    }
    return result.append(rest, selector.end());
}

struct Item {
    std::string text;
    bool isRange = false;
    std::vector<std::string> identifiers;
};

/// Ranges beyond this are not written out.
constexpr long long kLongestRange = 1000;

/// The identifiers of one item, every one written out; a refusal otherwise.
std::optional<Outcome> ExpandItem(Item& item) {
    item.isRange = item.text.find('-') != std::string::npos;
    if (!item.isRange) {
        item.identifiers = {item.text};
        return std::nullopt;
    }
    static const std::regex expression(R"(^\s*([\w_!]*?)([0-9]+)\s*-\s*\1([0-9]+)$)",
                                       std::regex::ECMAScript | std::regex::icase);
    std::smatch match;
    if (!std::regex_match(item.text, match, expression)) {
        return InvalidRange(item.text, "The base names do not match.");
    }
    const auto first = std::stoll(match[2].str());
    const auto last = std::stoll(match[3].str());
    if (first > 2147483647 || last > 2147483647) {
        return InvalidRange(item.text, "");
    }
    if (first >= last) {
        return InvalidRange(item.text, "The start index must be less than the end index.");
    }
    if (last - first > kLongestRange) {
        return Outcome{}; // the test skips it
    }
    for (auto number = first; number <= last; ++number) {
        item.identifiers.push_back(match[1].str() + std::to_string(number));
    }
    return std::nullopt;
}

/// Success without a name stands for a range that is too long to be written out.
Outcome Expected(std::string selector, bool virtualNames) {
    if (Trimmed(selector).empty()) {
        return {0xBFFA0044,
                "A channel name is required.  No selector was specified for repeated capability 'Rail'.  The repeated "
                "capability identifier can be null or empty only when there is exactly one physical name defined.  "
                "Repeated capability 'Rail' has 9 physical names defined.",
                {}};
    }
    if (!std::regex_match(selector, Grammar())) {
        return BadlyFormed();
    }
    if (virtualNames) {
        const auto substituted = Substituted(selector);
        if (substituted != selector && !std::regex_match(substituted, Grammar())) {
            return BadlyFormed();
        }
        selector = substituted;
    }
    if (Parts(selector, ':').size() != 1) {
        return {
            0xBFFA0063, "The number of levels in the selector is not valid for the 'Rail' repeated capability.", {}};
    }
    auto level = Trimmed(selector);
    if (level.front() == '[') {
        level.erase(0, 1);
    }
    if (!level.empty() && level.back() == ']') {
        level.pop_back();
    }
    std::vector<Item> items;
    for (const auto& part : Parts(level, ',')) {
        Item item{.text = Trimmed(part), .isRange = false, .identifiers = {}};
        if (const auto refusal = ExpandItem(item)) {
            return *refusal;
        }
        const std::set<std::string> identifiers(item.identifiers.begin(), item.identifiers.end());
        for (const auto& earlier : items) {
            for (const auto& identifier : earlier.identifiers) {
                if (identifiers.count(identifier) == 0) {
                    continue;
                }
                return !item.isRange && !earlier.isRange
                           ? BadlyFormed()
                           : InvalidRange(item.isRange ? item.text : earlier.text,
                                          "An identifier in the range overlaps with another range.");
            }
        }
        items.push_back(std::move(item));
    }
    Outcome outcome;
    for (const auto& item : items) {
        for (const auto& identifier : item.identifiers) {
            if (std::find(kPhysicalNames.begin(), kPhysicalNames.end(), identifier) == kPhysicalNames.end()) {
                return {0xBFFA0067,
                        "Unknown physical repeated capability selector.  The identifier '" + identifier +
                            "' is not defined for repeated capability 'Rail'.",
                        {}};
            }
            outcome.names.push_back(identifier);
        }
    }
    return outcome;
}

constexpr std::array<std::string_view, 36> kNoise{
    "A", "a", "B", "1", "2", "3", "0", "10", "_", "!",  "-",  "-",  "-",  "-",  ",",        ",", ",", ",",
    ":", ":", "[", "[", "]", "]", " ", " ",  " ", "\t", "\n", "\r", "\v", "\f", "\xC3\xA4", ".", ";", "A1"};

/// Mostly well-formed selectors of one level.
class Selectors {
  public:
    explicit Selectors(std::uint32_t seed) : random_(seed, kNoise) {}

    std::string Noise() { return random_.Next(10); }

    std::string Likely() {
        std::string text = Blank() + (Chance(6) ? "[" : "");
        for (auto left = 1 + random_.Below(5); left > 0; --left) {
            text += Blank() + Item() + Blank() + (left > 1 ? "," : "");
        }
        text += Chance(6) ? "]" : "";
        if (Chance(8)) { // one change, which may leave the selector valid
            const auto fault = random_.Next(1);
            const auto place = random_.Below(text.size() + 1);
            Chance(2) || place == text.size() ? text.insert(place, fault) : text.replace(place, 1, fault);
        }
        return text;
    }

  private:
    bool Chance(std::size_t oneIn) { return random_.Below(oneIn) == 0; }

    std::string Blank() { return Chance(8) ? std::string(1, " \t\n\v\f\r"[random_.Below(6)]) : ""; }

    std::string Name() {
        static constexpr std::array<const char*, 20> kNames{"A1",  "A2",   "A3", "A4", "a1", "a2",   "b1",
                                                            "b2",  "B",    "9",  "10", "8",  "Core", "All",
                                                            "A01", "Span", "V1", "V2", "V3", "A!_1"};
        return Chance(40) ? (Chance(2) ? "Lev" : "Bad") : kNames.at(random_.Below(kNames.size()));
    }

    std::string Item() {
        if (!Chance(3)) {
            return Name();
        }
        static constexpr std::array<const char*, 6> kBases{"A", "A", "a", "b", "", "V"};
        const std::string base = kBases.at(random_.Below(kBases.size()));
        const auto first = random_.Below(12);
        const auto last = Chance(60) ? 99999999999999ULL : first + 1 + random_.Below(3) - (Chance(8) ? 2 : 0);
        return base + (Chance(8) ? "0" : "") + std::to_string(first) + Blank() + "-" + Blank() +
               (Chance(10) ? std::string(kBases.at(random_.Below(kBases.size()))) : base) +
               std::to_string(last > 99999999999999ULL ? 0ULL : last);
    }

    RandomText random_;
};

constexpr int kSelectorsPerShard = 7'000;

/// Sixteen shards, so that they can run beside one another.
class SelectorScanners : public testing::TestWithParam<std::uint32_t> {
  protected:
    Outcome Actual(const std::string& selector, const nrt2::VirtualNames* virtualNames) {
        std::vector<std::size_t> indexes(kPhysicalNames.size());
        std::size_t count = 0;
        Outcome outcome;
        doubles::TheSessionService().Reset();
        const Status status(rules_.Expand(selector, virtualNames, kPhysicalNames, indexes, count));
        outcome.status = status.code;
        const auto recorded = doubles::TheSessionService().Recorded();
        if (static_cast<ViStatus>(status.code) < 0) {
            EXPECT_EQ(recorded.size(), 1U);
            EXPECT_EQ(Status(recorded.front().code), status);
            outcome.description = recorded.front().description;
        } else {
            EXPECT_TRUE(recorded.empty());
            for (std::size_t i = 0; i < count; ++i) {
                outcome.names.push_back(kPhysicalNames.at(indexes.at(i)));
            }
        }
        return outcome;
    }

    /// Compares outcomes over random selectors; counts how often each status came up.
    void Compare(const nrt2::VirtualNames* virtualNames) {
        doubles::TheScript().Reset();
        Selectors selectors(GetParam());
        std::map<std::uint32_t, int> statuses;
        int skipped = 0;
        for (int i = 0; i < kSelectorsPerShard && !HasFailure(); ++i) {
            const auto selector = i % 8 == 0 ? selectors.Noise() : selectors.Likely();
            const auto expected = Expected(selector, virtualNames != nullptr);
            if (expected == Outcome{}) {
                ++skipped;
                continue;
            }
            ++statuses[expected.status];
            EXPECT_EQ(Actual(selector, virtualNames), expected) << Shown(selector);
            doubles::TheScript().ForgetCalls();
        }
        for (const auto status : {0x00000000U, 0xBFFA0044U, 0xBFFA0063U, 0xBFFA0064U, 0xBFFA0066U, 0xBFFA0067U}) {
            EXPECT_GT(statuses[status], 0) << "too few selectors end in " << testing::PrintToString(Status(status));
        }
        EXPECT_LT(skipped, kSelectorsPerShard / 100);
    }

    nrt2::SelectorRules rules_{VI_NULL, "Rail"};
};

INSTANTIATE_TEST_SUITE_P(Shard, SelectorScanners, testing::Range(0U, 16U));

TEST_P(SelectorScanners, AcceptWhatTheRegularExpressionMatches) {
    Selectors selectors(1000 + GetParam());
    int wellFormed = 0;
    for (int i = 0; i < kSelectorsPerShard && !HasFailure(); ++i) {
        auto selector = i % 2 == 0 ? selectors.Noise() : selectors.Likely();
        if (i % 5 == 0) {
            selector += ":" + selectors.Likely();
        }
        const bool expected = std::regex_match(selector, Grammar());
        wellFormed += expected ? 1 : 0;
        EXPECT_EQ(nrt2::IsWellFormedSelector(selector), expected) << Shown(selector);
    }
    EXPECT_GT(wellFormed, kSelectorsPerShard / 4) << "too few selectors are well formed";
    EXPECT_LT(wellFormed, kSelectorsPerShard * 3 / 4) << "too few selectors are badly formed";
}

TEST_P(SelectorScanners, ReturnTheNamesAndRefusalsOfTheRules) { Compare(nullptr); }

TEST_P(SelectorScanners, ReturnTheNamesAndRefusalsOfTheRulesWithVirtualNames) {
    nrt2::VirtualNames virtualNames;
    for (const auto& [name, mapTo] : kVirtualNames) {
        if (name.front() != 'V') {
            virtualNames.Add(name, mapTo);
        }
    }
    virtualNames.AddRange("V", "A", 1, 3, 2); // the same names as the table
    Compare(&virtualNames);
}

} // namespace
} // namespace unit
