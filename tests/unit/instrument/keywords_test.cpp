#include "instrument/keywords.h"

#include "instrument/channel_limits.h"
#include "tests/unit/instrument/supply_fixture.h"
#include "tests/unit/instrument/test_rate.h"

namespace unit {
namespace {

using ORVA::Channel;

TEST(Keywords, FirstSpellingIsSent) {
    EXPECT_EQ(ORVA::TokenOf(Channel::CH1), "CH1");
    EXPECT_EQ(ORVA::TokenOf(Channel::CH2), "CH2");
    EXPECT_EQ(ORVA::TokenOf(Rate::kSlow), "UP");
    EXPECT_EQ(ORVA::TokenOf(Rate::kMiddle), "4000");
    EXPECT_EQ(ORVA::TokenOf(Rate::kFast), "UPDN");
}

TEST(Keywords, ValueWithoutOneHasNoToken) {
    for (const auto value : {0, 3, -1, 2147483647}) {
        EXPECT_EQ(ThrownBy([&] { ORVA::TokenOf(static_cast<Channel>(value)); }), kInvalidKey) << value;
    }
    EXPECT_EQ(ThrownBy([] { ORVA::TokenOf(static_cast<Rate>(0)); }), kInvalidKey);
}

TEST(Keywords, EverySpellingIsUnderstood) {
    EXPECT_EQ(ORVA::ValueOf<Channel>("CH1"), Channel::CH1);
    EXPECT_EQ(ORVA::ValueOf<Channel>("CH2"), Channel::CH2);
    EXPECT_EQ(ORVA::ValueOf<Rate>("UP"), Rate::kSlow);
    EXPECT_EQ(ORVA::ValueOf<Rate>("SLOW"), Rate::kSlow);
    EXPECT_EQ(ORVA::ValueOf<Rate>("IDLE"), Rate::kIdle);
    EXPECT_EQ(ORVA::ValueOf<Rate>("UPDN"), Rate::kFast);
    EXPECT_EQ(ORVA::ValueOf<Rate>("8K"), Rate::kFast);
    EXPECT_EQ(ORVA::ValueOf<Rate>("4000"), Rate::kMiddle);
    EXPECT_EQ(ORVA::ValueOf<Rate>("4K"), Rate::kMiddle);
}

TEST(Keywords, ReplyThatIsNoneGivesTheLowestValue) {
    for (const auto* reply : {"", "CH", "CH3", "ch2", "CH2\n", "CH2 ", " CH2", "CH22", "C.2", "CH2\r"}) {
        EXPECT_EQ(ORVA::ValueOf<Channel>(reply), Channel::CH1) << reply;
    }
    for (const auto* reply : {"", "4", "8000", "updn", "8K\n"}) {
        EXPECT_EQ(ORVA::ValueOf<Rate>(reply), Rate::kSlow) << reply;
    }
}

TEST(ChannelLimits, AreThoseOfTheTwoUnlikeChannels) {
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

TEST(ChannelLimits, OfAnyOtherChannelDoNotExist) {
    for (const auto channel : {0U, 3U, 4294967295U}) {
        EXPECT_EQ(ThrownBy([&] { ORVA::LimitsOf(channel); }), kInvalidKey) << channel;
    }
}

} // namespace
} // namespace unit
