#include "instrument/simulator.h"

#include <algorithm>

#include "tests/unit/instrument/supply_fixture.h"

namespace unit {
namespace {

constexpr int kDraws = 500;

class Simulator : public testing::Test {
  protected:
    Simulator() { doubles::TheScript().Reset(); }
    Simulator(const Simulator&) = delete;
    Simulator& operator=(const Simulator&) = delete;
    ~Simulator() override { EXPECT_TRUE(doubles::TheScript().Calls().empty()) << "the simulator called VISA"; }

    static constexpr std::uint32_t kSeed = 7;
    ORVA::RandomSource random_{kSeed};
    ORVA::TARNEXSimulator simulator_{random_};
};

TEST_F(Simulator, IsOpenBetweenOpenAndClose) {
    EXPECT_FALSE(simulator_.IsOpen());
    EXPECT_EQ(Status(simulator_.Open({})), Status(0U));
    EXPECT_TRUE(simulator_.IsOpen());
    EXPECT_EQ(Status(simulator_.Close()), Status(0U));
    EXPECT_FALSE(simulator_.IsOpen());
    EXPECT_EQ(Status(simulator_.Close()), Status(0U));
}

TEST_F(Simulator, HasOneIdentity) {
    const auto identity = simulator_.GetIdentity();
    EXPECT_EQ(identity->manufacturer, "Keltor Technology");
    EXPECT_EQ(identity->model, "TX6300");
    EXPECT_EQ(identity->serialNumber, "SN12345678901");
    EXPECT_EQ(identity->firmwareRevision, "V1.00");
    EXPECT_EQ(simulator_.GetIdentity(), identity);
}

TEST_F(Simulator, KeepsItsTimeoutWhenAnotherIsSet) {
    EXPECT_EQ(simulator_.GetTimeout(), 2000U);
    EXPECT_EQ(Status(simulator_.SetTimeout(5)), Status(0U));
    EXPECT_EQ(simulator_.GetTimeout(), 2000U);
}

TEST_F(Simulator, AnswersStatusAndErrorQueriesWithoutAnError) {
    std::uint32_t eventStatus = 7;
    EXPECT_EQ(Status(simulator_.QueryEventStatus(eventStatus)), Status(0U));
    EXPECT_EQ(eventStatus, 0U);
    std::int32_t condition = 7;
    EXPECT_EQ(Status(simulator_.QueryQuestionableCondition(1, condition)), Status(0U));
    EXPECT_EQ(condition, 0);
    std::int32_t event = 7;
    EXPECT_EQ(Status(simulator_.QueryQuestionableEvent(2, event)), Status(0U));
    EXPECT_EQ(event, 0);
    std::int32_t code = 7;
    std::string message;
    EXPECT_EQ(Status(simulator_.QueryError(code, message)), Status(0U));
    EXPECT_EQ(code, 0);
    EXPECT_EQ(message, "No error");
}

TEST_F(Simulator, AcceptsRawTextsAndLeavesTheReply) {
    std::string reply = "before";
    EXPECT_EQ(Status(simulator_.WriteRaw("x")), Status(0U));
    EXPECT_EQ(Status(simulator_.QueryRaw("x?", reply)), Status(0U));
    EXPECT_EQ(reply, "before");
}

TEST_F(Simulator, AcceptsEverySettingOutsideTheLimitsAndChannels) {
    for (const auto channel : {1U, 2U, 3U}) {
        EXPECT_EQ(Status(simulator_.SetVoltage(channel, 1e300)), Status(0U));
        EXPECT_EQ(Status(simulator_.SetOverVoltageLevel(channel, -1.0)), Status(0U));
        EXPECT_EQ(Status(simulator_.SetOverVoltageEnabled(channel, true)), Status(0U));
        EXPECT_EQ(Status(simulator_.SetCurrent(channel, 1e300)), Status(0U));
        EXPECT_EQ(Status(simulator_.SetOverCurrentLevel(channel, 1e300)), Status(0U));
        EXPECT_EQ(Status(simulator_.SetOverCurrentEnabled(channel, true)), Status(0U));
        EXPECT_EQ(Status(simulator_.SetOutputEnabled(channel, true)), Status(0U));
    }
    EXPECT_EQ(Status(simulator_.SetAllOutputsOff()), Status(0U));
    EXPECT_EQ(Status(simulator_.SendClear()), Status(0U));
    EXPECT_EQ(Status(simulator_.SendReset()), Status(0U));
}

using RealQuery = ViStatus (ORVA::InstBase::*)(ORVA::ChannelNumber, double&);
constexpr std::array<RealQuery, 4> kLevels{&ORVA::InstBase::GetVoltage, &ORVA::InstBase::GetOverVoltageLevel,
                                           &ORVA::InstBase::GetCurrent, &ORVA::InstBase::GetOverCurrentLevel};

TEST_F(Simulator, DrawsVoltagesAndCurrentsFromTheVoltageLimits) {
    for (const auto query : kLevels) {
        for (const auto& [channel, high] : {std::pair{1U, 22.0}, {2U, 5.5}}) {
            double largest = 0.0;
            for (int i = 0; i < kDraws; ++i) {
                double level = -1.0;
                ASSERT_EQ(Status((simulator_.*query)(channel, level)), Status(0U));
                ASSERT_GE(level, 0.0);
                ASSERT_LT(level, high);
                largest = std::max(largest, level);
            }
            EXPECT_GT(largest, 0.9 * high);
        }
    }
}

TEST_F(Simulator, ThrowsForAnUnknownChannel) {
    double level = -1.0;
    for (const auto query : kLevels) {
        EXPECT_EQ(ThrownBy([&] { (simulator_.*query)(0, level); }), kInvalidKey);
        EXPECT_EQ(ThrownBy([&] { (simulator_.*query)(3, level); }), kInvalidKey);
    }
    EXPECT_EQ(ThrownBy([&] { simulator_.MeasurePower(0, level); }), kInvalidKey);
    EXPECT_EQ(level, -1.0);
    EXPECT_EQ(simulator_.GetChannelLimits(2).maximumCurrent, 16.8);
}

} // namespace
} // namespace unit
