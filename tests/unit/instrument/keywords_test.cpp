// The keyword of every enumeration value, sent and understood.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "instrument/channel_limits.h"
#include "instrument/keywords.h"
#include "tests/unit/instrument/supply_fixture.h"
#include "tests/unit/instrument/test_rate.h"

namespace unit {
namespace {

template <typename Enumeration>
std::string_view Token(std::int32_t value) {
    return ORVA::TokenOf(static_cast<Enumeration>(value));
}

template <typename Enumeration>
std::int32_t Value(std::string_view reply) {
    return static_cast<std::int32_t>(ORVA::ValueOf<Enumeration>(reply));
}

struct Row {
    const char* enumeration;
    std::int32_t value;
    std::vector<std::string> keywords; // the first is sent
    std::string_view (*token)(std::int32_t value);
    std::int32_t (*understood)(std::string_view reply);
};

// clang-format off
const std::vector<Row> kRows{
    {"Channel", 1, {"CH1"}, Token<ORVA::Channel>, Value<ORVA::Channel>},
    {"Channel", 2, {"CH2"}, Token<ORVA::Channel>, Value<ORVA::Channel>},
    {"RegulationMode", 0, {"CV"}, Token<ORVA::RegulationMode>, Value<ORVA::RegulationMode>},
    {"RegulationMode", 1, {"CC"}, Token<ORVA::RegulationMode>, Value<ORVA::RegulationMode>},
    {"CurrentRange", 0, {"AUTO"}, Token<ORVA::CurrentRange>, Value<ORVA::CurrentRange>},
    {"CurrentRange", 1, {"LOW"}, Token<ORVA::CurrentRange>, Value<ORVA::CurrentRange>},
    {"CurrentRange", 2, {"HIGH"}, Token<ORVA::CurrentRange>, Value<ORVA::CurrentRange>},
    {"CurrentRate", 0, {"62"}, Token<ORVA::CurrentRate>, Value<ORVA::CurrentRate>},
    {"CurrentRate", 1, {"4000", "4K"}, Token<ORVA::CurrentRate>, Value<ORVA::CurrentRate>},
    {"CurrentRate", 2, {"8000", "8K"}, Token<ORVA::CurrentRate>, Value<ORVA::CurrentRate>},
    {"TriggerInput", 1, {"D1"}, Token<ORVA::TriggerInput>, Value<ORVA::TriggerInput>},
    {"TriggerInput", 2, {"D2"}, Token<ORVA::TriggerInput>, Value<ORVA::TriggerInput>},
    {"TriggerInput", 3, {"D3"}, Token<ORVA::TriggerInput>, Value<ORVA::TriggerInput>},
    {"TriggerInput", 4, {"D4"}, Token<ORVA::TriggerInput>, Value<ORVA::TriggerInput>},
    {"ProtectionDelayMode", 0, {"ANY"}, Token<ORVA::ProtectionDelayMode>, Value<ORVA::ProtectionDelayMode>},
    {"ProtectionDelayMode", 1, {"SCH"}, Token<ORVA::ProtectionDelayMode>, Value<ORVA::ProtectionDelayMode>},
    {"PowerOnState", 0, {"RST"}, Token<ORVA::PowerOnState>, Value<ORVA::PowerOnState>},
    {"PowerOnState", 1, {"LAST"}, Token<ORVA::PowerOnState>, Value<ORVA::PowerOnState>},
    {"PowerOnState", 2, {"LOFF"}, Token<ORVA::PowerOnState>, Value<ORVA::PowerOnState>},
    {"PairMode", 0, {"OFF"}, Token<ORVA::PairMode>, Value<ORVA::PairMode>},
    {"PairMode", 1, {"SER"}, Token<ORVA::PairMode>, Value<ORVA::PairMode>},
    {"PairMode", 2, {"PAR"}, Token<ORVA::PairMode>, Value<ORVA::PairMode>},
    {"OffMode", 0, {"BLEON"}, Token<ORVA::OffMode>, Value<ORVA::OffMode>},
    {"OffMode", 1, {"BLEOFF"}, Token<ORVA::OffMode>, Value<ORVA::OffMode>},
    {"ListState", 0, {"STOPPED"}, Token<ORVA::ListState>, Value<ORVA::ListState>},
    {"ListState", 1, {"READY"}, Token<ORVA::ListState>, Value<ORVA::ListState>},
    {"ListState", 2, {"RUNNING"}, Token<ORVA::ListState>, Value<ORVA::ListState>},
    {"ListState", 3, {"PAUSED"}, Token<ORVA::ListState>, Value<ORVA::ListState>},
    {"ListEndState", 0, {"OFF"}, Token<ORVA::ListEndState>, Value<ORVA::ListEndState>},
    {"ListEndState", 1, {"LAST"}, Token<ORVA::ListEndState>, Value<ORVA::ListEndState>},
    {"ListTemplate", 0, {"SINE"}, Token<ORVA::ListTemplate>, Value<ORVA::ListTemplate>},
    {"ListTemplate", 1, {"PULSE"}, Token<ORVA::ListTemplate>, Value<ORVA::ListTemplate>},
    {"ListTemplate", 2, {"RAMP"}, Token<ORVA::ListTemplate>, Value<ORVA::ListTemplate>},
    {"ListTemplate", 3, {"UP"}, Token<ORVA::ListTemplate>, Value<ORVA::ListTemplate>},
    {"ListTemplate", 4, {"DN"}, Token<ORVA::ListTemplate>, Value<ORVA::ListTemplate>},
    {"ListTemplate", 5, {"UPDN"}, Token<ORVA::ListTemplate>, Value<ORVA::ListTemplate>},
    {"ListTemplate", 6, {"RISE"}, Token<ORVA::ListTemplate>, Value<ORVA::ListTemplate>},
    {"ListTemplate", 7, {"FALL"}, Token<ORVA::ListTemplate>, Value<ORVA::ListTemplate>},
    {"ListTemplateObject", 0, {"V"}, Token<ORVA::ListTemplateObject>, Value<ORVA::ListTemplateObject>},
    {"ListTemplateObject", 1, {"C"}, Token<ORVA::ListTemplateObject>, Value<ORVA::ListTemplateObject>},
    {"DelayState", 0, {"STOPPED"}, Token<ORVA::DelayState>, Value<ORVA::DelayState>},
    {"DelayState", 1, {"RUNNING"}, Token<ORVA::DelayState>, Value<ORVA::DelayState>},
    {"DelayEndState", 0, {"OFF"}, Token<ORVA::DelayEndState>, Value<ORVA::DelayEndState>},
    {"DelayEndState", 1, {"ON"}, Token<ORVA::DelayEndState>, Value<ORVA::DelayEndState>},
    {"DelayEndState", 2, {"LAST"}, Token<ORVA::DelayEndState>, Value<ORVA::DelayEndState>},
    {"DelayGenerateMode", 0, {"FIX"}, Token<ORVA::DelayGenerateMode>, Value<ORVA::DelayGenerateMode>},
    {"DelayGenerateMode", 1, {"INC"}, Token<ORVA::DelayGenerateMode>, Value<ORVA::DelayGenerateMode>},
    {"DelayGenerateMode", 2, {"DEC"}, Token<ORVA::DelayGenerateMode>, Value<ORVA::DelayGenerateMode>},
    {"DelayPattern", 0, {"01P"}, Token<ORVA::DelayPattern>, Value<ORVA::DelayPattern>},
    {"DelayPattern", 1, {"10P"}, Token<ORVA::DelayPattern>, Value<ORVA::DelayPattern>},
    {"Rate", -3, {"UP", "SLOW"}, Token<Rate>, Value<Rate>},
    {"Rate", 1, {"4000", "4K"}, Token<Rate>, Value<Rate>},
    {"Rate", 7, {"UPDN", "8K"}, Token<Rate>, Value<Rate>},
    {"Rate", 9, {"IDLE"}, Token<Rate>, Value<Rate>},
};
// clang-format on

TEST(Keywords, AreSentByTheirFirstSpelling) {
    for (const auto& row : kRows) {
        EXPECT_EQ(row.token(row.value), row.keywords.front()) << row.enumeration << ' ' << row.value;
    }
}

TEST(Keywords, AreUnderstoodInEverySpelling) {
    for (const auto& row : kRows) {
        for (const auto& keyword : row.keywords) {
            EXPECT_EQ(row.understood(keyword), row.value) << row.enumeration << ' ' << keyword;
        }
    }
}

/// The lowest value that a row of the enumeration has.
std::int32_t Lowest(std::string_view enumeration) {
    auto lowest = std::numeric_limits<std::int32_t>::max();
    for (const auto& row : kRows) {
        if (row.enumeration == enumeration) {
            lowest = std::min(lowest, row.value);
        }
    }
    return lowest;
}

TEST(Keywords, AreReadAsTheLowestValueWhenTheyDoNotMatchExactly) {
    for (const auto& row : kRows) {
        const auto& keyword = row.keywords.front();
        for (const auto& reply : {std::string(), keyword + "\n", keyword + "\r", keyword + " ", " " + keyword,
                                  keyword + "X", std::string(1 << 20, 'A')}) {
            EXPECT_EQ(row.understood(reply), Lowest(row.enumeration)) << row.enumeration << ' ' << reply.substr(0, 20);
        }
    }
    for (const auto* reply : {"CH", "CH3", "ch2", "CH22", "C.2"}) {
        EXPECT_EQ(Value<ORVA::Channel>(reply), 1) << reply;
    }
    for (const auto* reply : {"4", "8000", "updn"}) {
        EXPECT_EQ(Value<Rate>(reply), -3) << reply;
    }
}

TEST(Keywords, ThrowForAValueWithoutAKeyword) {
    for (const auto& row : kRows) {
        for (const std::int32_t value : {-1, 10, 1000000, std::numeric_limits<std::int32_t>::max()}) {
            EXPECT_EQ(ThrownBy([&] { row.token(value); }), kInvalidKey) << row.enumeration << ' ' << value;
        }
    }
    EXPECT_EQ(ThrownBy([] { Token<ORVA::Channel>(0); }), kInvalidKey);
    EXPECT_EQ(ThrownBy([] { Token<ORVA::Channel>(3); }), kInvalidKey);
    EXPECT_EQ(ThrownBy([] { Token<ORVA::TriggerInput>(0); }), kInvalidKey);
    EXPECT_EQ(ThrownBy([] { Token<Rate>(0); }), kInvalidKey);
}

TEST(ChannelLimits, DifferBetweenTheTwoChannels) {
    const auto& first = ORVA::LimitsOf(1);
    EXPECT_EQ(first.minimumVoltage, 0.0);
    EXPECT_EQ(first.maximumVoltage, 22.0);
    EXPECT_EQ(first.minimumCurrent, 0.0);
    EXPECT_EQ(first.maximumCurrent, 5.5);
    const auto& second = ORVA::LimitsOf(2);
    EXPECT_EQ(second.minimumVoltage, 0.0);
    EXPECT_EQ(second.maximumVoltage, 5.5);
    EXPECT_EQ(second.minimumCurrent, 0.0);
    EXPECT_EQ(second.maximumCurrent, 16.8);
}

} // namespace
} // namespace unit
