// Every command of the instrument: the bytes that it sends, what is read out of a reply, and what is left alone when
// the exchange fails.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "instrument/tarnex_supply.h"
#include "tests/doubles/script.h"
#include "tests/doubles/visa_double.h"

namespace {

using ORVA::ChannelNumber;
using ORVA::InstBase;
using testing::ElementsAre;

constexpr auto kIoError = static_cast<ViStatus>(0xBFFA4214);

struct Setting {
    const char* name;
    ViStatus (*send)(InstBase& supply);
    const char* bytes;
};

// clang-format off
const std::vector<Setting> kSettings{
    {"SelectChannel", [](InstBase& supply) { return supply.SelectChannel(1); }, ":INST:SELE CH1\n"},
    {"SetBleeder", [](InstBase& supply) { return supply.SetBleeder(false); }, ":SOUR:BLE OFF\n"},
    {"SetVoltage", [](InstBase& supply) { return supply.SetVoltage(1, 0.5); }, ":SOUR1:VOLT 0.500000\n"},
    {"SetOverVoltageLevel", [](InstBase& supply) { return supply.SetOverVoltageLevel(1, 3.3); }, ":SOUR1:VOLT:PROT 3.300000\n"},
    {"SetOverVoltageEnabled", [](InstBase& supply) { return supply.SetOverVoltageEnabled(1, true); }, ":SOUR1:VOLT:PROT:STAT ON\n"},
    {"SetRemoteSense", [](InstBase& supply) { return supply.SetRemoteSense(1, true); }, ":SOUR1:VOLT:SENS ON\n"},
    {"SetCurrent", [](InstBase& supply) { return supply.SetCurrent(1, 1.25); }, ":SOUR1:CURR 1.250000\n"},
    {"SetOverCurrentLevel", [](InstBase& supply) { return supply.SetOverCurrentLevel(1, 0.0005); }, ":SOUR1:CURR:PROT 0.000500\n"},
    {"SetOverCurrentEnabled", [](InstBase& supply) { return supply.SetOverCurrentEnabled(1, true); }, ":SOUR1:CURR:PROT:STAT ON\n"},
    {"SetOverCurrentDelay", [](InstBase& supply) { return supply.SetOverCurrentDelay(1, 0.5); }, ":SOUR1:CURR:PROT:DEL 0.500000\n"},
    {"SetOverCurrentDelayMode", [](InstBase& supply) { return supply.SetOverCurrentDelayMode(1, ORVA::ProtectionDelayMode::SettingChange); }, ":SOUR1:CURR:PROT:DEL:MODE SCH\n"},
    {"SetOutputEnabled", [](InstBase& supply) { return supply.SetOutputEnabled(1, true); }, ":OUTP:STAT CH1,ON\n"},
    {"SetOvpLevel", [](InstBase& supply) { return supply.SetOvpLevel(2, 0.5); }, ":OUTP:OVP:VAL CH2,0.500000\n"},
    {"SetOvpEnabled", [](InstBase& supply) { return supply.SetOvpEnabled(2, false); }, ":OUTP:OVP:STAT CH2,OFF\n"},
    {"SetOcpLevel", [](InstBase& supply) { return supply.SetOcpLevel(2, 5.5); }, ":OUTP:OCP:VAL CH2,5.500000\n"},
    {"SetOcpEnabled", [](InstBase& supply) { return supply.SetOcpEnabled(2, false); }, ":OUTP:OCP:STAT CH2,OFF\n"},
    {"SetOcpDelay", [](InstBase& supply) { return supply.SetOcpDelay(2, 1.25); }, ":OUTP:OCP:DEL CH2,1.250000\n"},
    {"SetOcpDelayMode", [](InstBase& supply) { return supply.SetOcpDelayMode(2, ORVA::ProtectionDelayMode::Any); }, ":OUTP:OCP:DEL:MODE CH2,ANY\n"},
    {"SetPowerOnState", [](InstBase& supply) { return supply.SetPowerOnState(2, ORVA::PowerOnState::Reset); }, ":OUTP:PONS:STAT CH2,RST\n"},
    {"SetPairMode", [](InstBase& supply) { return supply.SetPairMode(2, ORVA::PairMode::Parallel); }, ":OUTP:PAIR CH2,PAR\n"},
    {"SetOutputSense", [](InstBase& supply) { return supply.SetOutputSense(2, false); }, ":OUTP:SENS:STAT CH2,OFF\n"},
    {"SetTracking", [](InstBase& supply) { return supply.SetTracking(2, false); }, ":OUTP:TRAC:STAT CH2,OFF\n"},
    {"SetOffMode", [](InstBase& supply) { return supply.SetOffMode(2, ORVA::OffMode::BleederOn); }, ":OUTP:OFFM CH2,BLEON\n"},
    {"SetCurrentRange", [](InstBase& supply) { return supply.SetCurrentRange(2, ORVA::CurrentRange::High); }, ":MEAS:CURR:RANG CH2,HIGH\n"},
    {"SetCurrentRate", [](InstBase& supply) { return supply.SetCurrentRate(2, ORVA::CurrentRate::Rate4000); }, ":MEAS:CURR:RATE CH2,4000\n"},
    {"SetListEnabled", [](InstBase& supply) { return supply.SetListEnabled(true); }, ":LIST:STAT ON\n"},
    {"SetListCycles", [](InstBase& supply) { return supply.SetListCycles(512); }, ":LIST:CYCLE 512\n"},
    {"SetListEndState", [](InstBase& supply) { return supply.SetListEndState(ORVA::ListEndState::Off); }, ":LIST:ENDS OFF\n"},
    {"InsertListGroup", [](InstBase& supply) { return supply.InsertListGroup(0); }, ":LIST:GROUP:INS 0\n"},
    {"DeleteListGroup", [](InstBase& supply) { return supply.DeleteListGroup(511U); }, ":LIST:GROUP:DEL 511\n"},
    {"ClearListGroups", [](InstBase& supply) { return supply.ClearListGroups(); }, ":LIST:GROUP:CLE\n"},
    {"SetListGroup", [](InstBase& supply) { return supply.SetListGroup(1U, 2.0, 0.5, 1.25); }, ":LIST:GROUP:PARA 1,2.000000,0.500000,1.250000\n"},
    {"SetListTemplate", [](InstBase& supply) { return supply.SetListTemplate(ORVA::ListTemplate::Down); }, ":LIST:TEMP:SEL DN\n"},
    {"SetListTemplateObject", [](InstBase& supply) { return supply.SetListTemplateObject(ORVA::ListTemplateObject::Voltage, 0.0005); }, ":LIST:TEMP:OBJ V,0.000500\n"},
    {"SetListTemplateMax", [](InstBase& supply) { return supply.SetListTemplateMax(5.5); }, ":LIST:TEMP:MAXV 5.500000\n"},
    {"SetListTemplateMin", [](InstBase& supply) { return supply.SetListTemplateMin(2.0); }, ":LIST:TEMP:MINV 2.000000\n"},
    {"SetListTemplatePeriod", [](InstBase& supply) { return supply.SetListTemplatePeriod(1.25); }, ":LIST:TEMP:PERI 1.250000\n"},
    {"SetListTemplateInterval", [](InstBase& supply) { return supply.SetListTemplateInterval(0.0005); }, ":LIST:TEMP:INTE 0.000500\n"},
    {"SetListTemplateCycles", [](InstBase& supply) { return supply.SetListTemplateCycles(7); }, ":LIST:TEMP:CYCLE 7\n"},
    {"SetListTemplateInverted", [](InstBase& supply) { return supply.SetListTemplateInverted(false); }, ":LIST:TEMP:INVE OFF\n"},
    {"SetListTemplateWidth", [](InstBase& supply) { return supply.SetListTemplateWidth(3.3); }, ":LIST:TEMP:WIDT 3.300000\n"},
    {"SetListTemplatePulseCount", [](InstBase& supply) { return supply.SetListTemplatePulseCount(512); }, ":LIST:TEMP:PULSECount 512\n"},
    {"SetListTemplateSymmetry", [](InstBase& supply) { return supply.SetListTemplateSymmetry(7); }, ":LIST:TEMP:SYMM 7\n"},
    {"SetListTemplateStairs", [](InstBase& supply) { return supply.SetListTemplateStairs(512); }, ":LIST:TEMP:STAI 512\n"},
    {"SetListTemplateExpPower", [](InstBase& supply) { return supply.SetListTemplateExpPower(7); }, ":LIST:TEMP:EXPP 7\n"},
    {"SetListTemplateExpRate", [](InstBase& supply) { return supply.SetListTemplateExpRate(512); }, ":LIST:TEMP:EXPR 512\n"},
    {"ConstructListTemplate", [](InstBase& supply) { return supply.ConstructListTemplate(511U); }, ":LIST:TEMP:CONSTruct 511\n"},
    {"SetDelayEnabled", [](InstBase& supply) { return supply.SetDelayEnabled(false); }, ":DELAY:STATe OFF\n"},
    {"SetDelayCycles", [](InstBase& supply) { return supply.SetDelayCycles(-3); }, ":DELAY:CYCLEs -3\n"},
    {"SetDelayEndState", [](InstBase& supply) { return supply.SetDelayEndState(ORVA::DelayEndState::Last); }, ":DELAY:ENDState LAST\n"},
    {"InsertDelayGroup", [](InstBase& supply) { return supply.InsertDelayGroup(512); }, ":DELAY:GROUP:INSert 512\n"},
    {"DeleteDelayGroup", [](InstBase& supply) { return supply.DeleteDelayGroup(0); }, ":DELAY:GROUP:DELete 0\n"},
    {"ClearDelayGroups", [](InstBase& supply) { return supply.ClearDelayGroups(); }, ":DELAY:GROUP:CLEar\n"},
    {"SetDelayGroup", [](InstBase& supply) { return supply.SetDelayGroup(511U, false, 1.25); }, ":DELAY:GROUP:PARAmeter 511,OFF,1.250000\n"},
    {"SetDelayGenerateMode", [](InstBase& supply) { return supply.SetDelayGenerateMode(ORVA::DelayGenerateMode::Increase); }, ":DELAY:GENerate:SELect INC\n"},
    {"SetDelayPattern", [](InstBase& supply) { return supply.SetDelayPattern(ORVA::DelayPattern::OnFirst); }, ":DELAY:GENerate:PATT 10P\n"},
    {"SetDelayGeneratePoints", [](InstBase& supply) { return supply.SetDelayGeneratePoints(0); }, ":DELAY:GENerate:POINTs 0\n"},
    {"SetDelayOnTime", [](InstBase& supply) { return supply.SetDelayOnTime(0.5); }, ":DELAY:GENerate:TIMe:ON 0.500000\n"},
    {"SetDelayOffTime", [](InstBase& supply) { return supply.SetDelayOffTime(3.3); }, ":DELAY:GENerate:TIMe:OFF 3.300000\n"},
    {"SetDelayBaseTime", [](InstBase& supply) { return supply.SetDelayBaseTime(5.5); }, ":DELAY:GENerate:TIMe:BASE 5.500000\n"},
    {"SetDelayStepTime", [](InstBase& supply) { return supply.SetDelayStepTime(2.0); }, ":DELAY:GENerate:TIMe:STEP 2.000000\n"},
    {"ConstructDelayGroups", [](InstBase& supply) { return supply.ConstructDelayGroups(3U); }, ":DELAY:GENerate:CONSTruct 3\n"},
    {"SetTriggerInputEnabled", [](InstBase& supply) { return supply.SetTriggerInputEnabled(ORVA::TriggerInput::D3, true); }, ":TRIG:IN:ENAB D3,ON\n"},
};
// clang-format on

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

/// A supply whose connection is let go of while an exchange is under way, as a close on another thread would.
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

TEST_F(Commands, AreAllHere) { EXPECT_EQ(kSettings.size() + kQueries.size(), 128U); }

TEST_F(Commands, ThatSetSendExactlyTheirBytes) {
    for (const auto& setting : kSettings) {
        EXPECT_EQ(setting.send(supply_), 0) << setting.name;
        EXPECT_THAT(TakeWritten(), ElementsAre(setting.bytes)) << setting.name;
    }
}

TEST_F(Commands, ThatSetReportAFailedWrite) {
    for (const auto& setting : kSettings) {
        doubles::TheScript().Fail("viWrite", VI_ERROR_TMO);
        EXPECT_EQ(setting.send(supply_), kIoError) << setting.name;
    }
}

TEST_F(Commands, ThatSetPassAPositiveStatusOn) {
    for (const auto& setting : kSettings) {
        doubles::TheScript().Fail("viWrite", VI_WARN_NSUP_BUF);
        EXPECT_EQ(setting.send(supply_), VI_WARN_NSUP_BUF) << setting.name;
    }
}

TEST_F(Commands, ThatQuerySendExactlyTheirBytesAndReadTheReply) {
    for (const auto& query : kQueries) {
        SCOPED_TRACE(query.name);
        doubles::TheVisa().Reply(query.line, query.reply + "\n");
        EXPECT_EQ(query.readsTheReply(supply_), 0);
        EXPECT_THAT(TakeWritten(), ElementsAre(query.line + "\n"));
    }
}

TEST_F(Commands, ThatQueryPassAPositiveStatusOnWithTheirValues) {
    ORVA::TARNEX supply;
    EXPECT_EQ(supply.Open({.resource = "TCPIP0::192.0.2.7::5025::SOCKET"}), VI_SUCCESS_TERM_CHAR);
    for (const auto& query : kQueries) {
        SCOPED_TRACE(query.name);
        doubles::TheVisa().Reply(query.line, query.reply + "\n");
        EXPECT_EQ(query.readsTheReply(supply), VI_SUCCESS_TERM_CHAR);
    }
}

TEST_F(Commands, ThatQueryReportAFailedWriteAndLeaveTheirOutputs) {
    for (const auto& query : kQueries) {
        if (query.name != "GetSelectedChannel") {
            SCOPED_TRACE(query.name);
            doubles::TheScript().Fail("viWrite", VI_ERROR_TMO);
            EXPECT_EQ(query.leavesItsOutputs(supply_), kIoError);
        }
    }
}

TEST_F(Commands, ThatQueryReportAFailedReadAndLeaveTheirOutputs) {
    for (const auto& query : kQueries) {
        if (query.name != "GetSelectedChannel") {
            SCOPED_TRACE(query.name);
            EXPECT_EQ(query.leavesItsOutputs(supply_), kIoError); // no reply has been arranged
            EXPECT_THAT(TakeWritten(), ElementsAre(query.line + "\n"));
        }
    }
}

TEST_F(Commands, SelectedChannelIsTheLowestAfterAFailedExchange) {
    ChannelNumber channel = 77;
    EXPECT_EQ(supply_.GetSelectedChannel(channel), kIoError);
    EXPECT_EQ(channel, 1U);
}

TEST_F(Commands, KeepTheirConnectionUntilTheExchangeIsOver) {
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

TEST_F(Commands, WithARangeTakeBothBoundsAndNothingBeyondThem) {
    using Setter = ViStatus (InstBase::*)(ChannelNumber, double);
    struct Range {
        ChannelNumber channel;
        double maximum;
        double beyond;
    };
    const auto check = [&](Setter set, const Range& range) {
        EXPECT_EQ((supply_.*set)(range.channel, 0.0), 0);
        EXPECT_EQ((supply_.*set)(range.channel, range.maximum), 0);
        EXPECT_EQ((supply_.*set)(range.channel, std::nan("")), 0);
        EXPECT_EQ(TakeWritten().size(), 3U);
        for (const double value : {-0.000001, range.beyond, 1e300, std::numeric_limits<double>::infinity()}) {
            EXPECT_EQ((supply_.*set)(range.channel, value), static_cast<ViStatus>(0xBFFA4217)) << value;
        }
        EXPECT_THAT(TakeWritten(), testing::IsEmpty());
        EXPECT_THROW((supply_.*set)(3, 1.0), std::out_of_range);
        EXPECT_THROW((supply_.*set)(0, 1.0), std::out_of_range);
        EXPECT_THAT(TakeWritten(), testing::IsEmpty());
    };
    for (const auto set : {&InstBase::SetVoltage, &InstBase::SetOverVoltageLevel, &InstBase::SetOvpLevel}) {
        check(set, {1, 22.0, 22.000001});
        check(set, {2, 5.5, 5.500001});
    }
    for (const auto set : {&InstBase::SetCurrent, &InstBase::SetOverCurrentLevel, &InstBase::SetOcpLevel}) {
        check(set, {1, 5.5, 5.500001});
        check(set, {2, 16.8, 16.800001});
    }
}

TEST_F(Commands, ForDelaysHaveNoRange) {
    EXPECT_EQ(supply_.SetOverCurrentDelay(1, 1e9), 0);
    EXPECT_EQ(supply_.SetOcpDelay(2, -1.0), 0);
    EXPECT_THAT(TakeWritten(),
                ElementsAre(":SOUR1:CURR:PROT:DEL 1000000000.000000\n", ":OUTP:OCP:DEL CH2,-1.000000\n"));
}

TEST_F(Commands, WithAnUnknownChannelOrValueThrowBeforeAnythingIsSent) {
    const auto throws = [](const auto& call) {
        try {
            call();
            ADD_FAILURE() << "no exception";
        } catch (const std::out_of_range& exception) {
            EXPECT_STREQ(exception.what(), "invalid map<K, T> key");
        }
    };
    bool on = false;
    throws([&] { supply_.SelectChannel(3); });
    throws([&] { supply_.SetOutputEnabled(0, true); });
    throws([&] { supply_.GetOutputEnabled(3, on); });
    throws([&] { supply_.SetListTemplate(static_cast<ORVA::ListTemplate>(8)); });
    throws([&] { supply_.SetOverCurrentDelayMode(1, static_cast<ORVA::ProtectionDelayMode>(2)); });
    throws([&] { supply_.SetTriggerInputEnabled(static_cast<ORVA::TriggerInput>(0), true); });
    throws([&] { supply_.GetTriggerInputEnabled(static_cast<ORVA::TriggerInput>(5), on); });
    EXPECT_THAT(TakeWritten(), testing::IsEmpty());
}

TEST_F(Commands, WithAKeywordReplyThatMatchesNothingGiveTheLowestValue) {
    doubles::TheVisa().Reply(":OUTP:PAIR? CH1", "par\n");
    auto mode = ORVA::PairMode::Series;
    EXPECT_EQ(supply_.GetPairMode(1, mode), 0);
    EXPECT_EQ(mode, ORVA::PairMode::Off);
}

TEST_F(Commands, WithSeveralFieldsAnnounceTheirNumberOnStandardOutput) {
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

TEST_F(Commands, WithSeveralFieldsTrimLineEndsAndIgnoreWhatIsTooMuch) {
    doubles::TheVisa().Reply(":MEAS:ALL? CH1", "1.0,\t2.0\t,3.0\r,4.0\r\n");
    double volts = 0.0;
    double amperes = 0.0;
    double watts = 0.0;
    EXPECT_EQ(supply_.MeasureAll(1, volts, amperes, watts), 0);
    EXPECT_EQ(std::make_tuple(volts, amperes, watts), std::make_tuple(1.0, 2.0, 3.0));
}

TEST_F(Commands, WithSeveralFieldsWriteTheOutputsBeforeAMissingField) {
    doubles::TheVisa().Reply(":MEAS:ALL? CH1", "1.0,2.0\n");
    double volts = 77.0;
    double amperes = 77.0;
    double watts = 77.0;
    try {
        supply_.MeasureAll(1, volts, amperes, watts);
        ADD_FAILURE() << "no exception";
    } catch (const std::out_of_range& exception) {
        EXPECT_STREQ(exception.what(), "invalid vector subscript");
    }
    EXPECT_EQ(std::make_tuple(volts, amperes, watts), std::make_tuple(1.0, 2.0, 77.0));
}

} // namespace
