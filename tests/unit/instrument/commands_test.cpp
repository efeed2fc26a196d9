// Every command of the instrument: the bytes that it sends, the values that it reads from a reply, and its outputs when
// the exchange fails.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "instrument/tarnex_supply.h"
#include "tests/doubles/script.h"
#include "tests/doubles/visa_double.h"
#include "tests/unit/instrument/command_list.h"
#include "tests/unit/instrument/supply_fixture.h"

namespace unit {
namespace {

using ORVA::ChannelNumber;
using ORVA::InstBase;
using testing::ElementsAre;

constexpr auto kIoError = static_cast<ViStatus>(0xBFFA4214);

/// A query as the tests run it: it returns the status and compares the outputs with what they should be.
struct QueryCase {
    std::string name;
    std::string line;
    std::string reply;
    std::function<ViStatus(InstBase& supply)> readsTheReply;    // expects the reply's values
    std::function<ViStatus(InstBase& supply)> leavesItsOutputs; // expects them as they were
};

/// Something that is not the expected value.
template <typename T>
T OtherThan(const T& expected) {
    if constexpr (std::is_same_v<T, bool>) {
        return !expected;
    } else {
        return static_cast<T>(77);
    }
}

template <typename... Outputs, typename Call>
QueryCase Query(const char* name, const char* line, const char* reply, std::tuple<Outputs...> expected, Call call) {
    const auto before =
        std::apply([](const auto&... values) { return std::tuple<Outputs...>(OtherThan(values)...); }, expected);
    const auto run = [call, before](InstBase& supply, const std::tuple<Outputs...>& after) {
        auto outputs = before;
        const auto status = std::apply([&](auto&... each) { return call(supply, each...); }, outputs);
        EXPECT_TRUE(outputs == after);
        return status;
    };
    return {name, line, reply, [=](InstBase& supply) { return run(supply, expected); },
            [=](InstBase& supply) { return run(supply, before); }};
}

// clang-format off
const std::vector<QueryCase> kQueries{
    Query<ChannelNumber>("GetSelectedChannel", ":INST:SELE?", "CH2", {2U}, [](InstBase& supply, auto&... out) { return supply.GetSelectedChannel(out...); }),
    Query<bool>("GetBleeder", ":SOUR:BLE?", "OFF", {false}, [](InstBase& supply, auto&... out) { return supply.GetBleeder(out...); }),
    Query<double>("GetVoltage", ":SOUR2:VOLT?", "+2.25E+00", {2.25}, [](InstBase& supply, auto&... out) { return supply.GetVoltage(2, out...); }),
    Query<double>("GetOverVoltageLevel", ":SOUR2:VOLT:PROT?", "3.300000", {3.3}, [](InstBase& supply, auto&... out) { return supply.GetOverVoltageLevel(2, out...); }),
    Query<bool>("GetOverVoltageEnabled", ":SOUR2:VOLT:PROT:STAT?", "0", {false}, [](InstBase& supply, auto&... out) { return supply.GetOverVoltageEnabled(2, out...); }),
    Query<bool>("GetRemoteSense", ":SOUR2:VOLT:SENS?", "OFF", {false}, [](InstBase& supply, auto&... out) { return supply.GetRemoteSense(2, out...); }),
    Query<double>("GetCurrent", ":SOUR2:CURR?", "+2.25E+00", {2.25}, [](InstBase& supply, auto&... out) { return supply.GetCurrent(2, out...); }),
    Query<double>("GetOverCurrentLevel", ":SOUR2:CURR:PROT?", "3.300000", {3.3}, [](InstBase& supply, auto&... out) { return supply.GetOverCurrentLevel(2, out...); }),
    Query<bool>("GetOverCurrentEnabled", ":SOUR2:CURR:PROT:STAT?", "0", {false}, [](InstBase& supply, auto&... out) { return supply.GetOverCurrentEnabled(2, out...); }),
    Query<double>("GetOverCurrentDelay", ":SOUR2:CURR:PROT:DEL?", "3.300000", {3.3}, [](InstBase& supply, auto&... out) { return supply.GetOverCurrentDelay(2, out...); }),
    Query<ORVA::ProtectionDelayMode>("GetOverCurrentDelayMode", ":SOUR2:CURR:PROT:DEL:MODE?", "ANY", {ORVA::ProtectionDelayMode::Any}, [](InstBase& supply, auto&... out) { return supply.GetOverCurrentDelayMode(2, out...); }),
    Query<bool>("GetOutputEnabled", ":OUTP:STAT? CH2", "OFF", {false}, [](InstBase& supply, auto&... out) { return supply.GetOutputEnabled(2, out...); }),
    Query<ORVA::RegulationMode>("GetRegulationMode", ":OUTP:CVCC? CH1", "CC", {ORVA::RegulationMode::ConstantCurrent}, [](InstBase& supply, auto&... out) { return supply.GetRegulationMode(1, out...); }),
    Query<double>("GetOvpLevel", ":OUTP:OVP:VAL? CH1", "-0.5", {-0.5}, [](InstBase& supply, auto&... out) { return supply.GetOvpLevel(1, out...); }),
    Query<bool>("GetOvpEnabled", ":OUTP:OVP:STAT? CH1", "ON", {true}, [](InstBase& supply, auto&... out) { return supply.GetOvpEnabled(1, out...); }),
    Query<double>("GetOcpLevel", ":OUTP:OCP:VAL? CH1", "-0.5", {-0.5}, [](InstBase& supply, auto&... out) { return supply.GetOcpLevel(1, out...); }),
    Query<bool>("GetOcpEnabled", ":OUTP:OCP:STAT? CH1", "ON", {true}, [](InstBase& supply, auto&... out) { return supply.GetOcpEnabled(1, out...); }),
    Query<double>("GetOcpDelay", ":OUTP:OCP:DEL? CH1", "-0.5", {-0.5}, [](InstBase& supply, auto&... out) { return supply.GetOcpDelay(1, out...); }),
    Query<ORVA::ProtectionDelayMode>("GetOcpDelayMode", ":OUTP:OCP:DEL:MODE? CH1", "SCH", {ORVA::ProtectionDelayMode::SettingChange}, [](InstBase& supply, auto&... out) { return supply.GetOcpDelayMode(1, out...); }),
    Query<ORVA::PowerOnState>("GetPowerOnState", ":OUTP:PONS:STAT? CH1", "LAST", {ORVA::PowerOnState::Last}, [](InstBase& supply, auto&... out) { return supply.GetPowerOnState(1, out...); }),
    Query<ORVA::PairMode>("GetPairMode", ":OUTP:PAIR? CH1", "OFF", {ORVA::PairMode::Off}, [](InstBase& supply, auto&... out) { return supply.GetPairMode(1, out...); }),
    Query<bool>("GetOutputSense", ":OUTP:SENS:STAT? CH1", "1", {true}, [](InstBase& supply, auto&... out) { return supply.GetOutputSense(1, out...); }),
    Query<bool>("GetTracking", ":OUTP:TRAC:STAT? CH1", "ON", {true}, [](InstBase& supply, auto&... out) { return supply.GetTracking(1, out...); }),
    Query<ORVA::OffMode>("GetOffMode", ":OUTP:OFFM? CH1", "BLEOFF", {ORVA::OffMode::BleederOff}, [](InstBase& supply, auto&... out) { return supply.GetOffMode(1, out...); }),
    Query<double, double, double>("MeasureAll", ":MEAS:ALL? CH2", "3.300000,1.5,+2.25E+00", {3.3, 1.5, 2.25}, [](InstBase& supply, auto&... out) { return supply.MeasureAll(2, out...); }),
    Query<double>("MeasureVoltage", ":MEAS:VOLT? CH1", "1.5", {1.5}, [](InstBase& supply, auto&... out) { return supply.MeasureVoltage(1, out...); }),
    Query<double>("MeasureCurrent", ":MEAS:CURR? CH2", "+2.25E+00", {2.25}, [](InstBase& supply, auto&... out) { return supply.MeasureCurrent(2, out...); }),
    Query<double>("MeasurePower", ":MEAS:POWE? CH1", "-0.5", {-0.5}, [](InstBase& supply, auto&... out) { return supply.MeasurePower(1, out...); }),
    Query<ORVA::CurrentRange>("GetCurrentRange", ":MEAS:CURR:RANG? CH1", "AUTO", {ORVA::CurrentRange::Auto}, [](InstBase& supply, auto&... out) { return supply.GetCurrentRange(1, out...); }),
    Query<ORVA::CurrentRate>("GetCurrentRate", ":MEAS:CURR:RATE? CH1", "8K", {ORVA::CurrentRate::Rate8000}, [](InstBase& supply, auto&... out) { return supply.GetCurrentRate(1, out...); }),
    Query<bool>("GetListEnabled", ":LIST:STAT?", "ON", {true}, [](InstBase& supply, auto&... out) { return supply.GetListEnabled(out...); }),
    Query<ORVA::ListState, double, std::int32_t, std::int32_t>("GetListStatus", ":LIST:STATUS?", "RUNNING,-0.5,+12,-7", {ORVA::ListState::Running, -0.5, 12, -7}, [](InstBase& supply, auto&... out) { return supply.GetListStatus(out...); }),
    Query<std::int32_t>("GetListCycles", ":LIST:CYCLE?", "+12", {12}, [](InstBase& supply, auto&... out) { return supply.GetListCycles(out...); }),
    Query<ORVA::ListEndState>("GetListEndState", ":LIST:ENDS?", "OFF", {ORVA::ListEndState::Off}, [](InstBase& supply, auto&... out) { return supply.GetListEndState(out...); }),
    Query<std::int32_t>("GetListGroupCount", ":LIST:GROUP:NUM?", "+12", {12}, [](InstBase& supply, auto&... out) { return supply.GetListGroupCount(out...); }),
    Query<double, double, double>("GetListGroup", ":LIST:GROUP:PARA? 511", "3.300000,1.5,+2.25E+00", {3.3, 1.5, 2.25}, [](InstBase& supply, auto&... out) { return supply.GetListGroup(511U, out...); }),
    Query<ORVA::ListTemplate>("GetListTemplate", ":LIST:TEMP:SEL?", "RISE", {ORVA::ListTemplate::Rise}, [](InstBase& supply, auto&... out) { return supply.GetListTemplate(out...); }),
    Query<ORVA::ListTemplateObject, double>("GetListTemplateObject", ":LIST:TEMP:OBJ?", "V,1.5", {ORVA::ListTemplateObject::Voltage, 1.5}, [](InstBase& supply, auto&... out) { return supply.GetListTemplateObject(out...); }),
    Query<double>("GetListTemplateMax", ":LIST:TEMP:MAXV?", "+2.25E+00", {2.25}, [](InstBase& supply, auto&... out) { return supply.GetListTemplateMax(out...); }),
    Query<double>("GetListTemplateMin", ":LIST:TEMP:MINV?", "3.300000", {3.3}, [](InstBase& supply, auto&... out) { return supply.GetListTemplateMin(out...); }),
    Query<double>("GetListTemplatePeriod", ":LIST:TEMP:PERI?", "+2.25E+00", {2.25}, [](InstBase& supply, auto&... out) { return supply.GetListTemplatePeriod(out...); }),
    Query<double>("GetListTemplateInterval", ":LIST:TEMP:INTE?", "3.300000", {3.3}, [](InstBase& supply, auto&... out) { return supply.GetListTemplateInterval(out...); }),
    Query<std::int32_t>("GetListTemplateCycles", ":LIST:TEMP:CYCLE?", "-7", {-7}, [](InstBase& supply, auto&... out) { return supply.GetListTemplateCycles(out...); }),
    Query<bool>("GetListTemplateInverted", ":LIST:TEMP:INVE?", "OFF", {false}, [](InstBase& supply, auto&... out) { return supply.GetListTemplateInverted(out...); }),
    Query<double>("GetListTemplateWidth", ":LIST:TEMP:WIDT?", "+2.25E+00", {2.25}, [](InstBase& supply, auto&... out) { return supply.GetListTemplateWidth(out...); }),
    Query<std::int32_t>("GetListTemplatePulseCount", ":LIST:TEMP:PULSECount?", "-7", {-7}, [](InstBase& supply, auto&... out) { return supply.GetListTemplatePulseCount(out...); }),
    Query<std::int32_t>("GetListTemplateSymmetry", ":LIST:TEMP:SYMM?", "+12", {12}, [](InstBase& supply, auto&... out) { return supply.GetListTemplateSymmetry(out...); }),
    Query<std::int32_t>("GetListTemplateStairs", ":LIST:TEMP:STAI?", "511", {511}, [](InstBase& supply, auto&... out) { return supply.GetListTemplateStairs(out...); }),
    Query<std::int32_t>("GetListTemplateExpPower", ":LIST:TEMP:EXPP?", "-7", {-7}, [](InstBase& supply, auto&... out) { return supply.GetListTemplateExpPower(out...); }),
    Query<std::int32_t>("GetListTemplateExpRate", ":LIST:TEMP:EXPR?", "+12", {12}, [](InstBase& supply, auto&... out) { return supply.GetListTemplateExpRate(out...); }),
    Query<std::int32_t>("GetListTemplatePoints", ":LIST:TEMP:POINTs?", "-7", {-7}, [](InstBase& supply, auto&... out) { return supply.GetListTemplatePoints(out...); }),
    Query<bool>("GetDelayEnabled", ":DELAY:STATe?", "OFF", {false}, [](InstBase& supply, auto&... out) { return supply.GetDelayEnabled(out...); }),
    Query<ORVA::DelayState, double, std::int32_t, std::int32_t>("GetDelayStatus", ":DELAY:STATUS?", "RUNNING,+2.25E+00,-7,511", {ORVA::DelayState::Running, 2.25, -7, 511}, [](InstBase& supply, auto&... out) { return supply.GetDelayStatus(out...); }),
    Query<std::int32_t>("GetDelayCycles", ":DELAY:CYCLEs?", "-7", {-7}, [](InstBase& supply, auto&... out) { return supply.GetDelayCycles(out...); }),
    Query<ORVA::DelayEndState>("GetDelayEndState", ":DELAY:ENDState?", "ON", {ORVA::DelayEndState::On}, [](InstBase& supply, auto&... out) { return supply.GetDelayEndState(out...); }),
    Query<std::int32_t>("GetDelayGroupCount", ":DELAY:GROUP:NUM?", "-7", {-7}, [](InstBase& supply, auto&... out) { return supply.GetDelayGroupCount(out...); }),
    Query<bool, double>("GetDelayGroup", ":DELAY:GROUP:PARAmeter? 3", "1,3.300000", {true, 3.3}, [](InstBase& supply, auto&... out) { return supply.GetDelayGroup(3U, out...); }),
    Query<ORVA::DelayGenerateMode>("GetDelayGenerateMode", ":DELAY:GENerate:SELect?", "FIX", {ORVA::DelayGenerateMode::Fixed}, [](InstBase& supply, auto&... out) { return supply.GetDelayGenerateMode(out...); }),
    Query<ORVA::DelayPattern>("GetDelayPattern", ":DELAY:GENerate:PATT?", "10P", {ORVA::DelayPattern::OnFirst}, [](InstBase& supply, auto&... out) { return supply.GetDelayPattern(out...); }),
    Query<std::int32_t>("GetDelayGeneratePoints", ":DELAY:GENerate:POINTs?", "+12", {12}, [](InstBase& supply, auto&... out) { return supply.GetDelayGeneratePoints(out...); }),
    Query<double>("GetDelayOnTime", ":DELAY:GENerate:TIMe:ON?", "-0.5", {-0.5}, [](InstBase& supply, auto&... out) { return supply.GetDelayOnTime(out...); }),
    Query<double>("GetDelayOffTime", ":DELAY:GENerate:TIMe:OFF?", "1.5", {1.5}, [](InstBase& supply, auto&... out) { return supply.GetDelayOffTime(out...); }),
    Query<double>("GetDelayBaseTime", ":DELAY:GENerate:TIMe:BASE?", "-0.5", {-0.5}, [](InstBase& supply, auto&... out) { return supply.GetDelayBaseTime(out...); }),
    Query<double>("GetDelayStepTime", ":DELAY:GENerate:TIMe:STEP?", "1.5", {1.5}, [](InstBase& supply, auto&... out) { return supply.GetDelayStepTime(out...); }),
    Query<bool>("GetTriggerInputEnabled", ":TRIG:IN:ENAB? D4", "OFF", {false}, [](InstBase& supply, auto&... out) { return supply.GetTriggerInputEnabled(ORVA::TriggerInput::D4, out...); }),
};
// clang-format on

/// A supply that releases its connection during an exchange, as a close on another thread does.
class LosesItsConnection : public ORVA::TARNEX {
  public:
    LosesItsConnection() { connection_ = std::make_shared<Connection>(*this); }
    bool destroyed = false;
    bool destroyedWhileWriting = false;
    bool destroyedBeforeTheReply = false;

  private:
    class Connection : public OpenVisa::VisaIO {
      public:
        explicit Connection(LosesItsConnection& owner) : owner_(owner) {}
        Connection(const Connection&) = delete;
        Connection& operator=(const Connection&) = delete;
        ~Connection() override { owner_.destroyed = true; }
        ViStatus write(std::string_view /*command*/) override {
            auto& owner = owner_;
            owner.connection_.reset();
            owner.destroyedWhileWriting = owner.destroyed;
            return 0;
        }
        ViStatus read(std::string& reply) override {
            owner_.destroyedBeforeTheReply = owner_.destroyed;
            reply = "5.0";
            return 0;
        }

      private:
        LosesItsConnection& owner_;
    };
};

class Commands : public testing::Test {
  protected:
    Commands() {
        doubles::TheScript().Reset();
        doubles::TheVisa().Reset();
        EXPECT_EQ(supply_.Open({.resource = "USB0::1::2::3::INSTR"}), 0);
        doubles::TheVisa().ForgetWritten();
    }

    static std::vector<std::string> TakeWritten() {
        auto written = doubles::TheVisa().Written();
        doubles::TheVisa().ForgetWritten();
        return written;
    }

    ORVA::TARNEX supply_;
};

class SettingCommands : public Commands {};
class QueryCommands : public Commands {};

TEST_F(Commands, AreAllListedInTheseTests) {
    std::set<std::string> tested;
    for (const auto& setting : kSettings) {
        EXPECT_TRUE(tested.insert(setting.name).second) << setting.name;
    }
    for (const auto& query : kQueries) {
        EXPECT_TRUE(tested.insert(query.name).second) << query.name;
    }
    EXPECT_EQ(tested, DeclaredCommands());
}

TEST_F(SettingCommands, SendExactlyTheirBytes) {
    for (const auto& setting : kSettings) {
        EXPECT_EQ(setting.send(supply_), 0) << setting.name;
        EXPECT_THAT(TakeWritten(), ElementsAre(setting.bytes)) << setting.name;
    }
}

TEST_F(SettingCommands, ReportAFailedWrite) {
    for (const auto& setting : kSettings) {
        doubles::TheScript().Fail("viWrite", VI_ERROR_TMO);
        EXPECT_EQ(setting.send(supply_), kIoError) << setting.name;
    }
}

TEST_F(SettingCommands, ReturnAPositiveStatusUnchanged) {
    for (const auto& setting : kSettings) {
        doubles::TheScript().Fail("viWrite", VI_WARN_NSUP_BUF);
        EXPECT_EQ(setting.send(supply_), VI_WARN_NSUP_BUF) << setting.name;
    }
}

TEST_F(QueryCommands, SendExactlyTheirBytesAndReadTheReply) {
    for (const auto& query : kQueries) {
        SCOPED_TRACE(query.name);
        doubles::TheVisa().Reply(query.line, query.reply + "\n");
        EXPECT_EQ(query.readsTheReply(supply_), 0);
        EXPECT_THAT(TakeWritten(), ElementsAre(query.line + "\n"));
    }
}

TEST_F(QueryCommands, ReturnAPositiveStatusUnchangedWithTheirValues) {
    ORVA::TARNEX supply;
    EXPECT_EQ(supply.Open({.resource = "TCPIP0::192.0.2.7::5025::SOCKET"}), VI_SUCCESS_TERM_CHAR);
    for (const auto& query : kQueries) {
        SCOPED_TRACE(query.name);
        doubles::TheVisa().Reply(query.line, query.reply + "\n");
        EXPECT_EQ(query.readsTheReply(supply), VI_SUCCESS_TERM_CHAR);
    }
}

TEST_F(QueryCommands, ReportAFailedWriteAndLeaveTheirOutputs) {
    for (const auto& query : kQueries) {
        if (query.name != "GetSelectedChannel") {
            SCOPED_TRACE(query.name);
            doubles::TheScript().Fail("viWrite", VI_ERROR_TMO);
            EXPECT_EQ(query.leavesItsOutputs(supply_), kIoError);
        }
    }
}

TEST_F(QueryCommands, ReportAFailedReadAndLeaveTheirOutputs) {
    for (const auto& query : kQueries) {
        if (query.name != "GetSelectedChannel") {
            SCOPED_TRACE(query.name);
            EXPECT_EQ(query.leavesItsOutputs(supply_), kIoError); // no reply has been arranged
            EXPECT_THAT(TakeWritten(), ElementsAre(query.line + "\n"));
        }
    }
}

TEST_F(QueryCommands, ReadTheSelectedChannelAsTheLowestAfterAFailedExchange) {
    ChannelNumber channel = 77;
    EXPECT_EQ(supply_.GetSelectedChannel(channel), kIoError);
    EXPECT_EQ(channel, 1U);
}

TEST_F(Commands, KeepTheirConnectionUntilTheExchangeEnds) {
    LosesItsConnection supply;
    double volts = 0.0;
    EXPECT_EQ(supply.GetVoltage(1, volts), 0);
    EXPECT_EQ(volts, 5.0);
    EXPECT_FALSE(supply.destroyedBeforeTheReply);
    EXPECT_TRUE(supply.destroyed);
    EXPECT_EQ(supply.GetVoltage(1, volts), kIoError);

    LosesItsConnection written;
    EXPECT_EQ(written.SetVoltage(1, 5.0), 0);
    EXPECT_FALSE(written.destroyedWhileWriting);
    EXPECT_TRUE(written.destroyed);
    EXPECT_EQ(written.SetVoltage(1, 5.0), kIoError);
}

using RealSetter = ViStatus (InstBase::*)(ChannelNumber, double);

/// A setter with a range, and the largest value of each channel.
struct RangedSetter {
    const char* name;
    RealSetter set;
    double first;
    double second;
};
constexpr std::array kRangedSetters{
    RangedSetter{"SetVoltage", &InstBase::SetVoltage, 22.0, 5.5},
    RangedSetter{"SetOverVoltageLevel", &InstBase::SetOverVoltageLevel, 22.0, 5.5},
    RangedSetter{"SetOvpLevel", &InstBase::SetOvpLevel, 22.0, 5.5},
    RangedSetter{"SetCurrent", &InstBase::SetCurrent, 5.5, 16.8},
    RangedSetter{"SetOverCurrentLevel", &InstBase::SetOverCurrentLevel, 5.5, 16.8},
    RangedSetter{"SetOcpLevel", &InstBase::SetOcpLevel, 5.5, 16.8},
};

TEST_F(Commands, SendLevelsUpToTheLimitsAndNan) {
    for (const auto& [name, set, first, second] : kRangedSetters) {
        for (const auto& [channel, value] :
             {std::pair{1U, 0.0}, {1U, -0.0}, {1U, first}, {2U, 0.0}, {2U, second}, {2U, 1e-9}}) {
            EXPECT_EQ((supply_.*set)(channel, value), 0) << name << ' ' << value;
            EXPECT_EQ(TakeWritten().size(), 1U);
        }
        EXPECT_EQ((supply_.*set)(2, -0.0), 0) << name;
        EXPECT_THAT(TakeWritten(), ElementsAre(testing::EndsWith("-0.000000\n"))) << name;
        for (const double value : {std::nan(""), -std::nan("")}) {
            EXPECT_EQ((supply_.*set)(2, value), 0) << name;
            EXPECT_THAT(TakeWritten(), ElementsAre(testing::EndsWith("nan\n"))) << name;
        }
    }
}

TEST_F(Commands, RefuseLevelsOutsideTheLimitsAndSendNothing) {
    constexpr auto kInfinity = std::numeric_limits<double>::infinity();
    for (const auto& [name, set, first, second] : kRangedSetters) {
        for (const auto& [channel, value] : {std::pair{1U, first + 0.000001},
                                             {2U, second + 0.000001},
                                             {1U, -0.000001},
                                             {2U, -1e-300},
                                             {1U, 1e300},
                                             {1U, kInfinity},
                                             {2U, -kInfinity}}) {
            EXPECT_EQ((supply_.*set)(channel, value), static_cast<ViStatus>(0xBFFA4217)) << name << ' ' << value;
        }
    }
    EXPECT_THAT(TakeWritten(), testing::IsEmpty());
}

TEST_F(Commands, SendDelaysOfAnyValue) {
    EXPECT_EQ(supply_.SetOverCurrentDelay(1, 1e9), 0);
    EXPECT_EQ(supply_.SetOcpDelay(2, -1.0), 0);
    EXPECT_THAT(TakeWritten(),
                ElementsAre(":SOUR1:CURR:PROT:DEL 1000000000.000000\n", ":OUTP:OCP:DEL CH2,-1.000000\n"));
}

TEST_F(Commands, ThrowForAnUnknownChannelOrValueBeforeAnythingIsSent) {
    bool on = false;
    for (const auto channel : {0U, 3U, 4294967295U}) {
        for (const auto& setter : kRangedSetters) {
            EXPECT_EQ(ThrownBy([&] { (supply_.*setter.set)(channel, 1.0); }), kInvalidKey) << setter.name;
        }
        EXPECT_EQ(ThrownBy([&] { supply_.SelectChannel(channel); }), kInvalidKey);
        EXPECT_EQ(ThrownBy([&] { supply_.SetOutputEnabled(channel, true); }), kInvalidKey);
        EXPECT_EQ(ThrownBy([&] { supply_.GetOutputEnabled(channel, on); }), kInvalidKey);
        EXPECT_EQ(ThrownBy([&] { static_cast<void>(supply_.GetChannelLimits(channel)); }), kInvalidKey);
    }
    using ORVA::TriggerInput;
    EXPECT_EQ(ThrownBy([&] { supply_.SetListTemplate(static_cast<ORVA::ListTemplate>(8)); }), kInvalidKey);
    EXPECT_EQ(ThrownBy([&] { supply_.SetOverCurrentDelayMode(1, static_cast<ORVA::ProtectionDelayMode>(2)); }),
              kInvalidKey);
    EXPECT_EQ(ThrownBy([&] { supply_.SetTriggerInputEnabled(static_cast<TriggerInput>(0), true); }), kInvalidKey);
    EXPECT_EQ(ThrownBy([&] { supply_.GetTriggerInputEnabled(static_cast<TriggerInput>(5), on); }), kInvalidKey);
    EXPECT_THAT(TakeWritten(), testing::IsEmpty());
}

TEST_F(QueryCommands, PrintTheNumberOfFieldsWhenTheyReadSeveral) {
    for (const auto& [query, announced] :
         std::vector<std::pair<std::string, std::string>>{{"MeasureAll", "3"},
                                                          {"GetListStatus", "4"},
                                                          {"GetListGroup", "3"},
                                                          {"GetListTemplateObject", "2"},
                                                          {"GetDelayStatus", "4"},
                                                          {"GetDelayGroup", "2"}}) {
        for (const auto& row : kQueries) {
            if (row.name == query) {
                doubles::TheVisa().Reply(row.line, row.reply + "\n");
                testing::internal::CaptureStdout();
                row.readsTheReply(supply_);
                EXPECT_EQ(testing::internal::GetCapturedStdout(), announced) << query;
            }
        }
    }
}

} // namespace
} // namespace unit
