// The command layer over a real connection to the virtual supply: every command is read back or checked by its effect.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "instrument/tarnex_supply.h"
#include "tools/virtual_supply/server.h"
#include "tools/virtual_supply/virtual_supply.h"

namespace system_tests {
namespace {

constexpr ViStatus kTermChar = 0x3FFF0005; // the status of every query over a socket

struct Exchange {
    std::string name;
    std::function<void(ORVA::TARNEX& supply)> run;
};

template <typename T, typename SetValue, typename GetValue>
Exchange RoundTrip(const char* name, T value, SetValue set, GetValue get) {
    return {name, [=](ORVA::TARNEX& supply) {
                T before{};
                EXPECT_EQ(get(supply, before), kTermChar);
                EXPECT_FALSE(before == value) << "the value is there already";
                EXPECT_EQ(set(supply, value), 0);
                T after{};
                EXPECT_EQ(get(supply, after), kTermChar);
                EXPECT_TRUE(after == value);
            }};
}

// clang-format off
const std::vector<Exchange> kRoundTrips{
    RoundTrip<bool>("SetBleeder", true, [](ORVA::TARNEX& s, auto v) { return s.SetBleeder(v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetBleeder(v); }),
    RoundTrip<double>("SetVoltage 1", 1.25, [](ORVA::TARNEX& s, auto v) { return s.SetVoltage(1, v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetVoltage(1, v); }),
    RoundTrip<double>("SetVoltage 2", 1.25, [](ORVA::TARNEX& s, auto v) { return s.SetVoltage(2, v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetVoltage(2, v); }),
    RoundTrip<double>("SetOverVoltageLevel 1", 1.25, [](ORVA::TARNEX& s, auto v) { return s.SetOverVoltageLevel(1, v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetOverVoltageLevel(1, v); }),
    RoundTrip<double>("SetOverVoltageLevel 2", 1.25, [](ORVA::TARNEX& s, auto v) { return s.SetOverVoltageLevel(2, v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetOverVoltageLevel(2, v); }),
    RoundTrip<bool>("SetOverVoltageEnabled 1", true, [](ORVA::TARNEX& s, auto v) { return s.SetOverVoltageEnabled(1, v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetOverVoltageEnabled(1, v); }),
    RoundTrip<bool>("SetOverVoltageEnabled 2", true, [](ORVA::TARNEX& s, auto v) { return s.SetOverVoltageEnabled(2, v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetOverVoltageEnabled(2, v); }),
    RoundTrip<bool>("SetRemoteSense 1", true, [](ORVA::TARNEX& s, auto v) { return s.SetRemoteSense(1, v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetRemoteSense(1, v); }),
    RoundTrip<bool>("SetRemoteSense 2", true, [](ORVA::TARNEX& s, auto v) { return s.SetRemoteSense(2, v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetRemoteSense(2, v); }),
    RoundTrip<double>("SetCurrent 1", 1.25, [](ORVA::TARNEX& s, auto v) { return s.SetCurrent(1, v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetCurrent(1, v); }),
    RoundTrip<double>("SetCurrent 2", 1.25, [](ORVA::TARNEX& s, auto v) { return s.SetCurrent(2, v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetCurrent(2, v); }),
    RoundTrip<double>("SetOverCurrentLevel 1", 1.25, [](ORVA::TARNEX& s, auto v) { return s.SetOverCurrentLevel(1, v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetOverCurrentLevel(1, v); }),
    RoundTrip<double>("SetOverCurrentLevel 2", 1.25, [](ORVA::TARNEX& s, auto v) { return s.SetOverCurrentLevel(2, v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetOverCurrentLevel(2, v); }),
    RoundTrip<bool>("SetOverCurrentEnabled 1", true, [](ORVA::TARNEX& s, auto v) { return s.SetOverCurrentEnabled(1, v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetOverCurrentEnabled(1, v); }),
    RoundTrip<bool>("SetOverCurrentEnabled 2", true, [](ORVA::TARNEX& s, auto v) { return s.SetOverCurrentEnabled(2, v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetOverCurrentEnabled(2, v); }),
    RoundTrip<double>("SetOverCurrentDelay 1", 1.25, [](ORVA::TARNEX& s, auto v) { return s.SetOverCurrentDelay(1, v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetOverCurrentDelay(1, v); }),
    RoundTrip<double>("SetOverCurrentDelay 2", 1.25, [](ORVA::TARNEX& s, auto v) { return s.SetOverCurrentDelay(2, v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetOverCurrentDelay(2, v); }),
    RoundTrip<ORVA::ProtectionDelayMode>("SetOverCurrentDelayMode 1", ORVA::ProtectionDelayMode::SettingChange, [](ORVA::TARNEX& s, auto v) { return s.SetOverCurrentDelayMode(1, v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetOverCurrentDelayMode(1, v); }),
    RoundTrip<ORVA::ProtectionDelayMode>("SetOverCurrentDelayMode 2", ORVA::ProtectionDelayMode::SettingChange, [](ORVA::TARNEX& s, auto v) { return s.SetOverCurrentDelayMode(2, v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetOverCurrentDelayMode(2, v); }),
    RoundTrip<bool>("SetOutputEnabled 1", true, [](ORVA::TARNEX& s, auto v) { return s.SetOutputEnabled(1, v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetOutputEnabled(1, v); }),
    RoundTrip<bool>("SetOutputEnabled 2", true, [](ORVA::TARNEX& s, auto v) { return s.SetOutputEnabled(2, v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetOutputEnabled(2, v); }),
    RoundTrip<double>("SetOvpLevel 1", 1.25, [](ORVA::TARNEX& s, auto v) { return s.SetOvpLevel(1, v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetOvpLevel(1, v); }),
    RoundTrip<double>("SetOvpLevel 2", 1.25, [](ORVA::TARNEX& s, auto v) { return s.SetOvpLevel(2, v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetOvpLevel(2, v); }),
    RoundTrip<bool>("SetOvpEnabled 1", true, [](ORVA::TARNEX& s, auto v) { return s.SetOvpEnabled(1, v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetOvpEnabled(1, v); }),
    RoundTrip<bool>("SetOvpEnabled 2", true, [](ORVA::TARNEX& s, auto v) { return s.SetOvpEnabled(2, v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetOvpEnabled(2, v); }),
    RoundTrip<double>("SetOcpLevel 1", 1.25, [](ORVA::TARNEX& s, auto v) { return s.SetOcpLevel(1, v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetOcpLevel(1, v); }),
    RoundTrip<double>("SetOcpLevel 2", 1.25, [](ORVA::TARNEX& s, auto v) { return s.SetOcpLevel(2, v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetOcpLevel(2, v); }),
    RoundTrip<bool>("SetOcpEnabled 1", true, [](ORVA::TARNEX& s, auto v) { return s.SetOcpEnabled(1, v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetOcpEnabled(1, v); }),
    RoundTrip<bool>("SetOcpEnabled 2", true, [](ORVA::TARNEX& s, auto v) { return s.SetOcpEnabled(2, v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetOcpEnabled(2, v); }),
    RoundTrip<double>("SetOcpDelay 1", 1.25, [](ORVA::TARNEX& s, auto v) { return s.SetOcpDelay(1, v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetOcpDelay(1, v); }),
    RoundTrip<double>("SetOcpDelay 2", 1.25, [](ORVA::TARNEX& s, auto v) { return s.SetOcpDelay(2, v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetOcpDelay(2, v); }),
    RoundTrip<ORVA::ProtectionDelayMode>("SetOcpDelayMode 1", ORVA::ProtectionDelayMode::SettingChange, [](ORVA::TARNEX& s, auto v) { return s.SetOcpDelayMode(1, v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetOcpDelayMode(1, v); }),
    RoundTrip<ORVA::ProtectionDelayMode>("SetOcpDelayMode 2", ORVA::ProtectionDelayMode::SettingChange, [](ORVA::TARNEX& s, auto v) { return s.SetOcpDelayMode(2, v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetOcpDelayMode(2, v); }),
    RoundTrip<ORVA::PowerOnState>("SetPowerOnState 1", ORVA::PowerOnState::LastOff, [](ORVA::TARNEX& s, auto v) { return s.SetPowerOnState(1, v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetPowerOnState(1, v); }),
    RoundTrip<ORVA::PowerOnState>("SetPowerOnState 2", ORVA::PowerOnState::LastOff, [](ORVA::TARNEX& s, auto v) { return s.SetPowerOnState(2, v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetPowerOnState(2, v); }),
    RoundTrip<ORVA::PairMode>("SetPairMode 1", ORVA::PairMode::Parallel, [](ORVA::TARNEX& s, auto v) { return s.SetPairMode(1, v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetPairMode(1, v); }),
    RoundTrip<ORVA::PairMode>("SetPairMode 2", ORVA::PairMode::Parallel, [](ORVA::TARNEX& s, auto v) { return s.SetPairMode(2, v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetPairMode(2, v); }),
    RoundTrip<bool>("SetOutputSense 1", true, [](ORVA::TARNEX& s, auto v) { return s.SetOutputSense(1, v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetOutputSense(1, v); }),
    RoundTrip<bool>("SetOutputSense 2", true, [](ORVA::TARNEX& s, auto v) { return s.SetOutputSense(2, v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetOutputSense(2, v); }),
    RoundTrip<bool>("SetTracking 1", true, [](ORVA::TARNEX& s, auto v) { return s.SetTracking(1, v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetTracking(1, v); }),
    RoundTrip<bool>("SetTracking 2", true, [](ORVA::TARNEX& s, auto v) { return s.SetTracking(2, v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetTracking(2, v); }),
    RoundTrip<ORVA::OffMode>("SetOffMode 1", ORVA::OffMode::BleederOff, [](ORVA::TARNEX& s, auto v) { return s.SetOffMode(1, v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetOffMode(1, v); }),
    RoundTrip<ORVA::OffMode>("SetOffMode 2", ORVA::OffMode::BleederOff, [](ORVA::TARNEX& s, auto v) { return s.SetOffMode(2, v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetOffMode(2, v); }),
    RoundTrip<ORVA::CurrentRange>("SetCurrentRange 1", ORVA::CurrentRange::High, [](ORVA::TARNEX& s, auto v) { return s.SetCurrentRange(1, v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetCurrentRange(1, v); }),
    RoundTrip<ORVA::CurrentRange>("SetCurrentRange 2", ORVA::CurrentRange::High, [](ORVA::TARNEX& s, auto v) { return s.SetCurrentRange(2, v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetCurrentRange(2, v); }),
    RoundTrip<ORVA::CurrentRate>("SetCurrentRate 1", ORVA::CurrentRate::Rate8000, [](ORVA::TARNEX& s, auto v) { return s.SetCurrentRate(1, v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetCurrentRate(1, v); }),
    RoundTrip<ORVA::CurrentRate>("SetCurrentRate 2", ORVA::CurrentRate::Rate8000, [](ORVA::TARNEX& s, auto v) { return s.SetCurrentRate(2, v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetCurrentRate(2, v); }),
    RoundTrip<std::int32_t>("SetListCycles", 7, [](ORVA::TARNEX& s, auto v) { return s.SetListCycles(v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetListCycles(v); }),
    RoundTrip<ORVA::ListEndState>("SetListEndState", ORVA::ListEndState::Last, [](ORVA::TARNEX& s, auto v) { return s.SetListEndState(v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetListEndState(v); }),
    RoundTrip<ORVA::ListTemplate>("SetListTemplate", ORVA::ListTemplate::UpDown, [](ORVA::TARNEX& s, auto v) { return s.SetListTemplate(v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetListTemplate(v); }),
    RoundTrip<double>("SetListTemplateMax", 1.25, [](ORVA::TARNEX& s, auto v) { return s.SetListTemplateMax(v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetListTemplateMax(v); }),
    RoundTrip<double>("SetListTemplateMin", 1.25, [](ORVA::TARNEX& s, auto v) { return s.SetListTemplateMin(v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetListTemplateMin(v); }),
    RoundTrip<double>("SetListTemplatePeriod", 1.25, [](ORVA::TARNEX& s, auto v) { return s.SetListTemplatePeriod(v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetListTemplatePeriod(v); }),
    RoundTrip<double>("SetListTemplateInterval", 1.25, [](ORVA::TARNEX& s, auto v) { return s.SetListTemplateInterval(v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetListTemplateInterval(v); }),
    RoundTrip<std::int32_t>("SetListTemplateCycles", 7, [](ORVA::TARNEX& s, auto v) { return s.SetListTemplateCycles(v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetListTemplateCycles(v); }),
    RoundTrip<bool>("SetListTemplateInverted", true, [](ORVA::TARNEX& s, auto v) { return s.SetListTemplateInverted(v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetListTemplateInverted(v); }),
    RoundTrip<double>("SetListTemplateWidth", 1.25, [](ORVA::TARNEX& s, auto v) { return s.SetListTemplateWidth(v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetListTemplateWidth(v); }),
    RoundTrip<std::int32_t>("SetListTemplatePulseCount", 7, [](ORVA::TARNEX& s, auto v) { return s.SetListTemplatePulseCount(v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetListTemplatePulseCount(v); }),
    RoundTrip<std::int32_t>("SetListTemplateSymmetry", 7, [](ORVA::TARNEX& s, auto v) { return s.SetListTemplateSymmetry(v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetListTemplateSymmetry(v); }),
    RoundTrip<std::int32_t>("SetListTemplateStairs", 7, [](ORVA::TARNEX& s, auto v) { return s.SetListTemplateStairs(v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetListTemplateStairs(v); }),
    RoundTrip<std::int32_t>("SetListTemplateExpPower", 7, [](ORVA::TARNEX& s, auto v) { return s.SetListTemplateExpPower(v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetListTemplateExpPower(v); }),
    RoundTrip<std::int32_t>("SetListTemplateExpRate", 7, [](ORVA::TARNEX& s, auto v) { return s.SetListTemplateExpRate(v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetListTemplateExpRate(v); }),
    RoundTrip<std::int32_t>("SetDelayCycles", 7, [](ORVA::TARNEX& s, auto v) { return s.SetDelayCycles(v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetDelayCycles(v); }),
    RoundTrip<ORVA::DelayEndState>("SetDelayEndState", ORVA::DelayEndState::Last, [](ORVA::TARNEX& s, auto v) { return s.SetDelayEndState(v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetDelayEndState(v); }),
    RoundTrip<ORVA::DelayGenerateMode>("SetDelayGenerateMode", ORVA::DelayGenerateMode::Increase, [](ORVA::TARNEX& s, auto v) { return s.SetDelayGenerateMode(v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetDelayGenerateMode(v); }),
    RoundTrip<ORVA::DelayPattern>("SetDelayPattern", ORVA::DelayPattern::OnFirst, [](ORVA::TARNEX& s, auto v) { return s.SetDelayPattern(v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetDelayPattern(v); }),
    RoundTrip<std::int32_t>("SetDelayGeneratePoints", 7, [](ORVA::TARNEX& s, auto v) { return s.SetDelayGeneratePoints(v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetDelayGeneratePoints(v); }),
    RoundTrip<double>("SetDelayOnTime", 1.25, [](ORVA::TARNEX& s, auto v) { return s.SetDelayOnTime(v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetDelayOnTime(v); }),
    RoundTrip<double>("SetDelayOffTime", 1.25, [](ORVA::TARNEX& s, auto v) { return s.SetDelayOffTime(v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetDelayOffTime(v); }),
    RoundTrip<double>("SetDelayBaseTime", 1.25, [](ORVA::TARNEX& s, auto v) { return s.SetDelayBaseTime(v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetDelayBaseTime(v); }),
    RoundTrip<double>("SetDelayStepTime", 1.25, [](ORVA::TARNEX& s, auto v) { return s.SetDelayStepTime(v); }, [](ORVA::TARNEX& s, auto& v) { return s.GetDelayStepTime(v); }),
};
// clang-format on

class CommandLayer : public testing::Test {
  protected:
    CommandLayer() {
        model_.SetLoad(1, 10.0);
        EXPECT_EQ(supply_.Open({.resource = server_.Resource()}), kTermChar);
    }
    ~CommandLayer() override {
        // The supply has accepted all commands.
        EXPECT_EQ(model_.Execute(":SYSTem:ERRor?"), "0,\"No error\"");
    }

    virtual_supply::VirtualSupply model_;
    virtual_supply::VirtualSupplyServer server_{model_};
    ORVA::TARNEX supply_;
};

TEST_F(CommandLayer, ReadsBackItsSettings) {
    for (const auto& exchange : kRoundTrips) {
        SCOPED_TRACE(exchange.name);
        supply_.SendReset();
        exchange.run(supply_);
    }
}

TEST_F(CommandLayer, SelectsAChannel) {
    EXPECT_EQ(supply_.SelectChannel(2), 0);
    ORVA::ChannelNumber channel = 0;
    EXPECT_EQ(supply_.GetSelectedChannel(channel), kTermChar);
    EXPECT_EQ(channel, 2U);
}

TEST_F(CommandLayer, MeasuresTheLoad) {
    double volts = 0.0;
    double amperes = 0.0;
    double watts = 0.0;
    auto mode = ORVA::RegulationMode::ConstantCurrent;
    supply_.SetVoltage(1, 5.0);
    supply_.SetCurrent(1, 2.0);
    supply_.SetOutputEnabled(1, true);
    EXPECT_EQ(supply_.MeasureVoltage(1, volts), kTermChar);
    EXPECT_EQ(volts, 5.0);
    EXPECT_EQ(supply_.MeasureCurrent(1, amperes), kTermChar);
    EXPECT_EQ(amperes, 0.5);
    EXPECT_EQ(supply_.MeasurePower(1, watts), kTermChar);
    EXPECT_EQ(watts, 2.5);
    EXPECT_EQ(supply_.GetRegulationMode(1, mode), kTermChar);
    EXPECT_EQ(mode, ORVA::RegulationMode::ConstantVoltage);
    supply_.SetCurrent(1, 0.25);
    EXPECT_EQ(supply_.MeasureAll(1, volts, amperes, watts), kTermChar);
    EXPECT_EQ(volts, 2.5);
    EXPECT_EQ(amperes, 0.25);
    EXPECT_EQ(watts, 0.625);
    EXPECT_EQ(supply_.GetRegulationMode(1, mode), kTermChar);
    EXPECT_EQ(mode, ORVA::RegulationMode::ConstantCurrent);
    std::int32_t condition = 0;
    EXPECT_EQ(supply_.QueryQuestionableCondition(1, condition), kTermChar);
    EXPECT_EQ(condition, 1);
    EXPECT_EQ(supply_.QueryQuestionableEvent(1, condition), kTermChar);
    EXPECT_EQ(condition, 3);
    EXPECT_EQ(supply_.QueryQuestionableEvent(1, condition), kTermChar);
    EXPECT_EQ(condition, 0);
    EXPECT_EQ(supply_.SetAllOutputsOff(), 0);
    EXPECT_EQ(supply_.MeasureVoltage(1, volts), kTermChar);
    EXPECT_EQ(volts, 0.0);
}

TEST_F(CommandLayer, EditsAList) {
    std::int32_t count = -1;
    double first = 0.0;
    double second = 0.0;
    double third = 0.0;
    EXPECT_EQ(supply_.InsertListGroup(0), 0);
    EXPECT_EQ(supply_.InsertListGroup(1), 0);
    EXPECT_EQ(supply_.SetListGroup(1, 5.0, 1.0, 0.5), 0);
    EXPECT_EQ(supply_.DeleteListGroup(0), 0);
    EXPECT_EQ(supply_.GetListGroupCount(count), kTermChar);
    EXPECT_EQ(count, 1);
    EXPECT_EQ(supply_.GetListGroup(0, first, second, third), kTermChar);
    EXPECT_EQ(std::make_tuple(first, second, third), std::make_tuple(5.0, 1.0, 0.5));
    EXPECT_EQ(supply_.ClearListGroups(), 0);
    EXPECT_EQ(supply_.GetListGroupCount(count), kTermChar);
    EXPECT_EQ(count, 0);
}

TEST_F(CommandLayer, ConstructsAListFromATemplateAndRunsIt) {
    std::int32_t points = -1;
    std::int32_t count = -1;
    EXPECT_EQ(supply_.SetListTemplate(ORVA::ListTemplate::Up), 0);
    EXPECT_EQ(supply_.SetListTemplateObject(ORVA::ListTemplateObject::Voltage, 2.0), 0);
    auto object = ORVA::ListTemplateObject::Current;
    double value = 0.0;
    EXPECT_EQ(supply_.GetListTemplateObject(object, value), kTermChar);
    EXPECT_EQ(object, ORVA::ListTemplateObject::Voltage);
    EXPECT_EQ(value, 2.0);
    EXPECT_EQ(supply_.SetListTemplateStairs(4), 0);
    EXPECT_EQ(supply_.SetListTemplateInterval(3600.0), 0);
    EXPECT_EQ(supply_.GetListTemplatePoints(points), kTermChar);
    EXPECT_EQ(points, 4);
    EXPECT_EQ(supply_.ConstructListTemplate(0), 0);
    EXPECT_EQ(supply_.GetListGroupCount(count), kTermChar);
    EXPECT_EQ(count, 4);

    bool on = true;
    auto state = ORVA::ListState::Paused;
    double seconds = -1.0;
    std::int32_t group = -1;
    std::int32_t cycle = -1;
    EXPECT_EQ(supply_.GetListEnabled(on), kTermChar);
    EXPECT_FALSE(on);
    EXPECT_EQ(supply_.GetListStatus(state, seconds, group, cycle), kTermChar);
    EXPECT_EQ(state, ORVA::ListState::Ready);
    EXPECT_EQ(supply_.SetListEnabled(true), 0);
    EXPECT_EQ(supply_.GetListEnabled(on), kTermChar);
    EXPECT_TRUE(on);
    EXPECT_EQ(supply_.GetListStatus(state, seconds, group, cycle), kTermChar);
    EXPECT_EQ(state, ORVA::ListState::Running);
    EXPECT_GE(seconds, 0.0);
    EXPECT_EQ(group, 0);
    EXPECT_EQ(cycle, 0);
    double volts = 0.0;
    EXPECT_EQ(supply_.SetListEnabled(false), 0);
    EXPECT_EQ(supply_.GetCurrent(1, volts), kTermChar);
    EXPECT_EQ(volts, 2.0); // programmed by the list
}

TEST_F(CommandLayer, EditsADelaySequence) {
    std::int32_t count = -1;
    bool on = false;
    double seconds = 0.0;
    EXPECT_EQ(supply_.InsertDelayGroup(0), 0);
    EXPECT_EQ(supply_.InsertDelayGroup(1), 0);
    EXPECT_EQ(supply_.SetDelayGroup(1, true, 0.25), 0);
    EXPECT_EQ(supply_.DeleteDelayGroup(0), 0);
    EXPECT_EQ(supply_.GetDelayGroupCount(count), kTermChar);
    EXPECT_EQ(count, 1);
    EXPECT_EQ(supply_.GetDelayGroup(0, on, seconds), kTermChar);
    EXPECT_TRUE(on);
    EXPECT_EQ(seconds, 0.25);
    EXPECT_EQ(supply_.ClearDelayGroups(), 0);
    EXPECT_EQ(supply_.GetDelayGroupCount(count), kTermChar);
    EXPECT_EQ(count, 0);
}

TEST_F(CommandLayer, ConstructsADelaySequenceAndRunsIt) {
    std::int32_t count = -1;
    EXPECT_EQ(supply_.SetDelayGeneratePoints(3), 0);
    EXPECT_EQ(supply_.SetDelayOffTime(3600.0), 0);
    EXPECT_EQ(supply_.ConstructDelayGroups(0), 0);
    EXPECT_EQ(supply_.GetDelayGroupCount(count), kTermChar);
    EXPECT_EQ(count, 3);
    bool on = true;
    auto state = ORVA::DelayState::Running;
    double seconds = -1.0;
    std::int32_t group = -1;
    std::int32_t cycle = -1;
    EXPECT_EQ(supply_.GetDelayEnabled(on), kTermChar);
    EXPECT_FALSE(on);
    EXPECT_EQ(supply_.GetDelayStatus(state, seconds, group, cycle), kTermChar);
    EXPECT_EQ(state, ORVA::DelayState::Stopped);
    EXPECT_EQ(supply_.SetDelayEnabled(true), 0);
    EXPECT_EQ(supply_.GetDelayEnabled(on), kTermChar);
    EXPECT_TRUE(on);
    EXPECT_EQ(supply_.GetDelayStatus(state, seconds, group, cycle), kTermChar);
    EXPECT_EQ(state, ORVA::DelayState::Running);
    EXPECT_EQ(group, 0);
    EXPECT_EQ(cycle, 0);
}

TEST_F(CommandLayer, EnablesTriggerInputs) {
    bool on = false;
    EXPECT_EQ(supply_.SetTriggerInputEnabled(ORVA::TriggerInput::D3, true), 0);
    EXPECT_EQ(supply_.GetTriggerInputEnabled(ORVA::TriggerInput::D3, on), kTermChar);
    EXPECT_TRUE(on);
    EXPECT_EQ(supply_.GetTriggerInputEnabled(ORVA::TriggerInput::D4, on), kTermChar);
    EXPECT_FALSE(on);
}

TEST_F(CommandLayer, ReadsStatusAndErrors) {
    supply_.WriteRaw("NONSENSE");
    std::uint32_t events = 0;
    EXPECT_EQ(supply_.QueryEventStatus(events), kTermChar);
    EXPECT_EQ(events, 0x20U);
    std::int32_t code = 0;
    std::string message;
    EXPECT_EQ(supply_.QueryError(code, message), 0);
    EXPECT_EQ(code, -113);
    EXPECT_EQ(message, "\"Undefined header\"");
    supply_.WriteRaw("NONSENSE");
    EXPECT_EQ(supply_.SendClear(), 0);
    EXPECT_EQ(supply_.QueryEventStatus(events), kTermChar);
    EXPECT_EQ(events, 0U);
}

TEST_F(CommandLayer, QueriesRawText) {
    std::string reply;
    EXPECT_EQ(supply_.QueryRaw("*OPC?", reply), 0);
    EXPECT_EQ(reply, "1");
    EXPECT_EQ(supply_.GetIdentity()->model, "TX4410");
}

TEST_F(CommandLayer, WaitsForItsTimeOut) {
    EXPECT_EQ(supply_.GetTimeout(), 2000U);
    EXPECT_EQ(supply_.SetTimeout(50), 0);
    EXPECT_EQ(supply_.GetTimeout(), 50U);
    server_.Faults().AddForNext(virtual_supply::FaultKind::Silent);
    double volts = 1.25;
    EXPECT_EQ(static_cast<unsigned>(supply_.GetVoltage(1, volts)), 0xBFFA4214U);
    EXPECT_EQ(volts, 1.25);
}

TEST_F(CommandLayer, IsOpenUntilItIsClosed) {
    EXPECT_TRUE(supply_.IsOpen());
    EXPECT_EQ(supply_.Close(), 0);
    EXPECT_FALSE(supply_.IsOpen());
    EXPECT_EQ(supply_.Close(), 0);
    EXPECT_EQ(static_cast<unsigned>(supply_.SetVoltage(1, 1.0)), 0xBFFA4214U);
}

} // namespace
} // namespace system_tests
