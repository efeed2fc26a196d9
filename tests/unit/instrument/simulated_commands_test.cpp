// Every command on the simulated supply: its answers are drawn by these formulas from a seeded engine.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "instrument/simulator.h"
#include "tests/unit/instrument/command_list.h"

namespace unit {
namespace {

using ORVA::ChannelNumber;
using ORVA::InstBase;

/// The formulas, independent of the code under test: reals from two draws, booleans below one half, integers by
/// multiply and reject.
class Reference {
  public:
    explicit Reference(std::uint32_t seed) : engine_(seed) {}

    double Real(double low, double high) {
        const std::uint64_t a = engine_();
        const std::uint64_t b = engine_();
        const std::uint64_t highBitsOfA = a / 2048U;
        return low + static_cast<double>(b * 2097152U + highBitsOfA) / 9007199254740992.0 * (high - low);
    }
    bool Boolean() { return Real(0.0, 1.0) < 0.5; }
    int Integer(int low, int high) {
        const std::uint64_t n = static_cast<std::uint64_t>(high - low) + 1;
        for (;;) {
            const std::uint64_t product = engine_() * n;
            if (product % 4294967296U >= (4294967296U - n) % n) {
                return low + static_cast<int>(product / 4294967296U);
            }
        }
    }

  private:
    std::mt19937 engine_;
};

struct Answer {
    std::string name;
    std::function<double(Reference& reference)> expected;
    std::function<ViStatus(InstBase& supply, double& value)> ask;
};

template <typename T, typename Call>
Answer Drawn(const char* name, std::function<double(Reference& reference)> expected, Call call) {
    return {name, std::move(expected), [call](InstBase& supply, double& value) {
                T output{};
                const auto status = call(supply, output);
                value = static_cast<double>(output);
                return status;
            }};
}

template <typename T, typename Call>
Answer Untouched(const char* name, Call call) {
    return {name, [](Reference& /*reference*/) { return static_cast<double>(static_cast<T>(77)); },
            [call](InstBase& supply, double& value) {
                auto output = static_cast<T>(77);
                const auto status = call(supply, output);
                value = static_cast<double>(output);
                return status;
            }};
}

// clang-format off
const std::vector<Answer> kAnswers{
    Drawn<ChannelNumber>("GetSelectedChannel", [](Reference& r) { return static_cast<double>(r.Integer(1, 2)); }, [](InstBase& supply, auto& out) { return supply.GetSelectedChannel(out); }),
    Drawn<bool>("GetBleeder", [](Reference& r) { return static_cast<double>(r.Boolean()); }, [](InstBase& supply, auto& out) { return supply.GetBleeder(out); }),
    Drawn<double>("GetVoltage", [](Reference& r) { return static_cast<double>(r.Real(0.0, 5.5)); }, [](InstBase& supply, auto& out) { return supply.GetVoltage(2, out); }),
    Drawn<double>("GetOverVoltageLevel", [](Reference& r) { return static_cast<double>(r.Real(0.0, 5.5)); }, [](InstBase& supply, auto& out) { return supply.GetOverVoltageLevel(2, out); }),
    Drawn<bool>("GetOverVoltageEnabled", [](Reference& r) { return static_cast<double>(r.Boolean()); }, [](InstBase& supply, auto& out) { return supply.GetOverVoltageEnabled(2, out); }),
    Drawn<bool>("GetRemoteSense", [](Reference& r) { return static_cast<double>(r.Boolean()); }, [](InstBase& supply, auto& out) { return supply.GetRemoteSense(2, out); }),
    Drawn<double>("GetCurrent", [](Reference& r) { return static_cast<double>(r.Real(0.0, 5.5)); }, [](InstBase& supply, auto& out) { return supply.GetCurrent(2, out); }),
    Drawn<double>("GetOverCurrentLevel", [](Reference& r) { return static_cast<double>(r.Real(0.0, 5.5)); }, [](InstBase& supply, auto& out) { return supply.GetOverCurrentLevel(2, out); }),
    Drawn<bool>("GetOverCurrentEnabled", [](Reference& r) { return static_cast<double>(r.Boolean()); }, [](InstBase& supply, auto& out) { return supply.GetOverCurrentEnabled(2, out); }),
    Drawn<double>("GetOverCurrentDelay", [](Reference& r) { return static_cast<double>(r.Real(0.0, 1.0)); }, [](InstBase& supply, auto& out) { return supply.GetOverCurrentDelay(2, out); }),
    Drawn<ORVA::ProtectionDelayMode>("GetOverCurrentDelayMode", [](Reference& r) { return static_cast<double>(r.Integer(0, 1)); }, [](InstBase& supply, auto& out) { return supply.GetOverCurrentDelayMode(2, out); }),
    Drawn<bool>("GetOutputEnabled", [](Reference& r) { return static_cast<double>(r.Boolean()); }, [](InstBase& supply, auto& out) { return supply.GetOutputEnabled(2, out); }),
    Drawn<ORVA::RegulationMode>("GetRegulationMode", [](Reference& r) { return static_cast<double>(r.Integer(0, 1)); }, [](InstBase& supply, auto& out) { return supply.GetRegulationMode(1, out); }),
    Drawn<double>("GetOvpLevel", [](Reference& r) { return static_cast<double>(r.Real(0.0, 22.0)); }, [](InstBase& supply, auto& out) { return supply.GetOvpLevel(1, out); }),
    Drawn<bool>("GetOvpEnabled", [](Reference& r) { return static_cast<double>(r.Boolean()); }, [](InstBase& supply, auto& out) { return supply.GetOvpEnabled(1, out); }),
    Drawn<double>("GetOcpLevel", [](Reference& r) { return static_cast<double>(r.Real(0.0, 5.5)); }, [](InstBase& supply, auto& out) { return supply.GetOcpLevel(1, out); }),
    Drawn<bool>("GetOcpEnabled", [](Reference& r) { return static_cast<double>(r.Boolean()); }, [](InstBase& supply, auto& out) { return supply.GetOcpEnabled(1, out); }),
    Drawn<double>("GetOcpDelay", [](Reference& r) { return static_cast<double>(r.Real(0.0, 1.0)); }, [](InstBase& supply, auto& out) { return supply.GetOcpDelay(1, out); }),
    Drawn<ORVA::ProtectionDelayMode>("GetOcpDelayMode", [](Reference& r) { return static_cast<double>(r.Integer(0, 1)); }, [](InstBase& supply, auto& out) { return supply.GetOcpDelayMode(1, out); }),
    Drawn<ORVA::PowerOnState>("GetPowerOnState", [](Reference& r) { return static_cast<double>(r.Integer(0, 2)); }, [](InstBase& supply, auto& out) { return supply.GetPowerOnState(1, out); }),
    Drawn<ORVA::PairMode>("GetPairMode", [](Reference& r) { return static_cast<double>(r.Integer(0, 2)); }, [](InstBase& supply, auto& out) { return supply.GetPairMode(1, out); }),
    Drawn<bool>("GetOutputSense", [](Reference& r) { return static_cast<double>(r.Boolean()); }, [](InstBase& supply, auto& out) { return supply.GetOutputSense(1, out); }),
    Drawn<bool>("GetTracking", [](Reference& r) { return static_cast<double>(r.Boolean()); }, [](InstBase& supply, auto& out) { return supply.GetTracking(1, out); }),
    Drawn<ORVA::OffMode>("GetOffMode", [](Reference& r) { return static_cast<double>(r.Integer(0, 1)); }, [](InstBase& supply, auto& out) { return supply.GetOffMode(1, out); }),
    Drawn<double>("MeasureVoltage", [](Reference& r) { return static_cast<double>(r.Real(0.0, 22.0)); }, [](InstBase& supply, auto& out) { return supply.MeasureVoltage(1, out); }),
    Drawn<double>("MeasureCurrent", [](Reference& r) { return static_cast<double>(r.Real(0.0, 16.8)); }, [](InstBase& supply, auto& out) { return supply.MeasureCurrent(2, out); }),
    Drawn<double>("MeasurePower", [](Reference& r) { return static_cast<double>(r.Real(0.0, 22.0 * 5.5)); }, [](InstBase& supply, auto& out) { return supply.MeasurePower(1, out); }),
    Drawn<ORVA::CurrentRange>("GetCurrentRange", [](Reference& r) { return static_cast<double>(r.Integer(0, 2)); }, [](InstBase& supply, auto& out) { return supply.GetCurrentRange(1, out); }),
    Drawn<ORVA::CurrentRate>("GetCurrentRate", [](Reference& r) { return static_cast<double>(r.Integer(0, 2)); }, [](InstBase& supply, auto& out) { return supply.GetCurrentRate(1, out); }),
    Drawn<bool>("GetListEnabled", [](Reference& r) { return static_cast<double>(r.Boolean()); }, [](InstBase& supply, auto& out) { return supply.GetListEnabled(out); }),
    Drawn<std::int32_t>("GetListCycles", [](Reference& r) { return static_cast<double>(r.Integer(0, 99999)); }, [](InstBase& supply, auto& out) { return supply.GetListCycles(out); }),
    Drawn<ORVA::ListEndState>("GetListEndState", [](Reference& r) { return static_cast<double>(r.Integer(0, 1)); }, [](InstBase& supply, auto& out) { return supply.GetListEndState(out); }),
    Drawn<std::int32_t>("GetListGroupCount", [](Reference& r) { return static_cast<double>(r.Integer(0, 511)); }, [](InstBase& supply, auto& out) { return supply.GetListGroupCount(out); }),
    Drawn<ORVA::ListTemplate>("GetListTemplate", [](Reference& r) { return static_cast<double>(r.Integer(0, 7)); }, [](InstBase& supply, auto& out) { return supply.GetListTemplate(out); }),
    Drawn<double>("GetListTemplateMax", [](Reference& /*r*/) { return 0.0; }, [](InstBase& supply, auto& out) { return supply.GetListTemplateMax(out); }),
    Drawn<double>("GetListTemplateMin", [](Reference& /*r*/) { return 1.0; }, [](InstBase& supply, auto& out) { return supply.GetListTemplateMin(out); }),
    Untouched<double>("GetListTemplatePeriod", [](InstBase& supply, auto& out) { return supply.GetListTemplatePeriod(out); }),
    Drawn<double>("GetListTemplateInterval", [](Reference& r) { return static_cast<double>(r.Real(0.001, 3600.0)); }, [](InstBase& supply, auto& out) { return supply.GetListTemplateInterval(out); }),
    Drawn<std::int32_t>("GetListTemplateCycles", [](Reference& r) { return static_cast<double>(r.Integer(0, 99999)); }, [](InstBase& supply, auto& out) { return supply.GetListTemplateCycles(out); }),
    Drawn<bool>("GetListTemplateInverted", [](Reference& r) { return static_cast<double>(r.Boolean()); }, [](InstBase& supply, auto& out) { return supply.GetListTemplateInverted(out); }),
    Drawn<double>("GetListTemplateWidth", [](Reference& r) { return static_cast<double>(r.Real(0.001, 3600.0)); }, [](InstBase& supply, auto& out) { return supply.GetListTemplateWidth(out); }),
    Drawn<std::int32_t>("GetListTemplatePulseCount", [](Reference& r) { return static_cast<double>(r.Integer(1, 256)); }, [](InstBase& supply, auto& out) { return supply.GetListTemplatePulseCount(out); }),
    Drawn<std::int32_t>("GetListTemplateSymmetry", [](Reference& r) { return static_cast<double>(r.Integer(0, 100)); }, [](InstBase& supply, auto& out) { return supply.GetListTemplateSymmetry(out); }),
    Drawn<std::int32_t>("GetListTemplateStairs", [](Reference& r) { return static_cast<double>(r.Integer(1, 512)); }, [](InstBase& supply, auto& out) { return supply.GetListTemplateStairs(out); }),
    Drawn<std::int32_t>("GetListTemplateExpPower", [](Reference& r) { return static_cast<double>(r.Integer(1, 512)); }, [](InstBase& supply, auto& out) { return supply.GetListTemplateExpPower(out); }),
    Drawn<std::int32_t>("GetListTemplateExpRate", [](Reference& r) { return static_cast<double>(r.Integer(0, 10)); }, [](InstBase& supply, auto& out) { return supply.GetListTemplateExpRate(out); }),
    Drawn<std::int32_t>("GetListTemplatePoints", [](Reference& r) { return static_cast<double>(r.Integer(0, 511)); }, [](InstBase& supply, auto& out) { return supply.GetListTemplatePoints(out); }),
    Drawn<bool>("GetDelayEnabled", [](Reference& r) { return static_cast<double>(r.Boolean()); }, [](InstBase& supply, auto& out) { return supply.GetDelayEnabled(out); }),
    Drawn<std::int32_t>("GetDelayCycles", [](Reference& r) { return static_cast<double>(r.Integer(0, 99999)); }, [](InstBase& supply, auto& out) { return supply.GetDelayCycles(out); }),
    Drawn<ORVA::DelayEndState>("GetDelayEndState", [](Reference& r) { return static_cast<double>(r.Integer(0, 2)); }, [](InstBase& supply, auto& out) { return supply.GetDelayEndState(out); }),
    Drawn<std::int32_t>("GetDelayGroupCount", [](Reference& r) { return static_cast<double>(r.Integer(0, 512)); }, [](InstBase& supply, auto& out) { return supply.GetDelayGroupCount(out); }),
    Drawn<ORVA::DelayGenerateMode>("GetDelayGenerateMode", [](Reference& r) { return static_cast<double>(r.Integer(0, 2)); }, [](InstBase& supply, auto& out) { return supply.GetDelayGenerateMode(out); }),
    Drawn<ORVA::DelayPattern>("GetDelayPattern", [](Reference& r) { return static_cast<double>(r.Integer(0, 1)); }, [](InstBase& supply, auto& out) { return supply.GetDelayPattern(out); }),
    Drawn<std::int32_t>("GetDelayGeneratePoints", [](Reference& r) { return static_cast<double>(r.Integer(1, 512)); }, [](InstBase& supply, auto& out) { return supply.GetDelayGeneratePoints(out); }),
    Drawn<double>("GetDelayOnTime", [](Reference& r) { return static_cast<double>(r.Real(0.001, 3600.0)); }, [](InstBase& supply, auto& out) { return supply.GetDelayOnTime(out); }),
    Drawn<double>("GetDelayOffTime", [](Reference& r) { return static_cast<double>(r.Real(0.001, 3600.0)); }, [](InstBase& supply, auto& out) { return supply.GetDelayOffTime(out); }),
    Drawn<double>("GetDelayBaseTime", [](Reference& r) { return static_cast<double>(r.Real(0.001, 3600.0)); }, [](InstBase& supply, auto& out) { return supply.GetDelayBaseTime(out); }),
    Drawn<double>("GetDelayStepTime", [](Reference& r) { return static_cast<double>(r.Real(0.001, 3600.0)); }, [](InstBase& supply, auto& out) { return supply.GetDelayStepTime(out); }),
    Untouched<bool>("GetTriggerInputEnabled", [](InstBase& supply, auto& out) { return supply.GetTriggerInputEnabled(ORVA::TriggerInput::D4, out); }),
};
// clang-format on

constexpr std::uint32_t kSeed = 20260101;

class SimulatedCommands : public testing::Test {
  protected:
    ORVA::RandomSource random_{kSeed};
    ORVA::TARNEXSimulator supply_{random_};
    Reference reference_{kSeed};
};

TEST_F(SimulatedCommands, AreAllListedInTheseTests) {
    // These have several outputs and tests of their own below.
    std::set<std::string> tested{"MeasureAll",    "GetListStatus",  "GetListGroup",
                                 "GetDelayGroup", "GetDelayStatus", "GetListTemplateObject"};
    for (const auto& setting : kSettings) {
        EXPECT_TRUE(tested.insert(setting.name).second) << setting.name;
    }
    for (const auto& answer : kAnswers) {
        EXPECT_TRUE(tested.insert(answer.name).second) << answer.name;
    }
    EXPECT_EQ(tested, DeclaredCommands());
}

TEST_F(SimulatedCommands, AnswerByTheFormulas) {
    for (const auto& answer : kAnswers) {
        for (int draw = 0; draw < 200; ++draw) {
            double value = -1.0;
            ASSERT_EQ(answer.ask(supply_, value), 0) << answer.name;
            ASSERT_EQ(value, answer.expected(reference_)) << answer.name;
        }
    }
}

TEST_F(SimulatedCommands, SucceedAndDrawNothingWhenTheySet) {
    for (const auto& setting : kSettings) {
        EXPECT_EQ(setting.send(supply_), 0) << setting.name;
    }
    EXPECT_EQ(supply_.SetAllOutputsOff(), 0);
    double volts = 0.0;
    supply_.GetVoltage(1, volts);
    EXPECT_EQ(volts, reference_.Real(0.0, 22.0));
}

TEST_F(SimulatedCommands, MeasureAllWithThePowerOfItsVoltageAndCurrent) {
    for (int draw = 0; draw < 100; ++draw) {
        double volts = 0.0;
        double amperes = 0.0;
        double watts = 0.0;
        EXPECT_EQ(supply_.MeasureAll(2, volts, amperes, watts), 0);
        const double expectedVolts = reference_.Real(0.0, 5.5);
        EXPECT_EQ(volts, expectedVolts);
        const double expectedAmperes = reference_.Real(0.0, 16.8);
        EXPECT_EQ(amperes, expectedAmperes);
        EXPECT_EQ(watts, expectedVolts * expectedAmperes);
    }
}

TEST_F(SimulatedCommands, DrawGroupAndCycleOfAStatusAsTruncatedReals) {
    for (int draw = 0; draw < 100; ++draw) {
        auto list = ORVA::ListState::Stopped;
        auto delay = ORVA::DelayState::Stopped;
        double seconds = 0.0;
        std::int32_t group = -1;
        std::int32_t cycle = -1;
        EXPECT_EQ(supply_.GetListStatus(list, seconds, group, cycle), 0);
        EXPECT_EQ(static_cast<int>(list), reference_.Integer(0, 3));
        EXPECT_EQ(seconds, reference_.Real(0.001, 3600.0));
        EXPECT_EQ(group, static_cast<int>(reference_.Real(0.0, 511.0)));
        EXPECT_EQ(cycle, static_cast<int>(reference_.Real(0.0, 99999.0)));
        EXPECT_EQ(supply_.GetDelayStatus(delay, seconds, group, cycle), 0);
        EXPECT_EQ(static_cast<int>(delay), reference_.Integer(0, 1));
        EXPECT_EQ(seconds, reference_.Real(0.001, 3600.0));
        EXPECT_EQ(group, static_cast<int>(reference_.Real(0.0, 511.0)));
        EXPECT_EQ(cycle, static_cast<int>(reference_.Real(0.0, 99999.0)));
    }
}

TEST_F(SimulatedCommands, DrawEveryListGroupFromTheFirstChannelsBounds) {
    for (std::uint32_t index = 0; index < 100; ++index) {
        double first = 0.0;
        double second = 0.0;
        double third = 0.0;
        EXPECT_EQ(supply_.GetListGroup(index, first, second, third), 0);
        EXPECT_EQ(first, reference_.Real(0.0, 22.0));
        EXPECT_EQ(second, reference_.Real(0.0, 5.5));
        EXPECT_EQ(third, reference_.Real(0.001, 3600.0));
    }
}

TEST_F(SimulatedCommands, DiscardOneRealBeforeADelayGroup) {
    for (std::uint32_t index = 0; index < 100; ++index) {
        bool on = false;
        double seconds = 0.0;
        EXPECT_EQ(supply_.GetDelayGroup(index, on, seconds), 0);
        reference_.Real(0.0, 511.0);
        EXPECT_EQ(on, reference_.Boolean());
        EXPECT_EQ(seconds, reference_.Real(0.001, 3600.0));
    }
}

TEST_F(SimulatedCommands, AnswerATemplateObjectWithAnObjectAndAReal) {
    for (int draw = 0; draw < 100; ++draw) {
        auto object = ORVA::ListTemplateObject::Voltage;
        double value = -1.0;
        EXPECT_EQ(supply_.GetListTemplateObject(object, value), 0);
        EXPECT_EQ(static_cast<int>(object), reference_.Integer(0, 1));
        EXPECT_EQ(value, reference_.Real(0.0, 1.0));
    }
}

} // namespace
} // namespace unit
