// One row per function that sends one command: the bytes on the wire, the reply and the values that it stands for.
#pragma once

#include <functional>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "include/TARNEX_supply.h"

namespace supply_tests {

/// A function that sets something of the supply as a whole.
struct Setting {
    const char* name;
    ViStatus (*call)(ViSession vi);
    std::string line;
};

/// A function that sets something of channels.
struct ChannelSetting {
    const char* name;
    ViStatus (*call)(ViSession vi, ViConstString channel);
    std::string lineForFirst;
    std::string lineForSecond;
};

/// A function that reads. `channel` is ignored when `lineForSecond` is empty.
struct QueryRow {
    std::string name;
    std::string line;
    std::string lineForSecond;
    std::string reply;
    std::vector<std::string> results; ///< the names of the parameters
    /// Runs the function and expects the reply's values.
    std::function<ViStatus(ViSession vi, ViConstString channel)> readsTheReply;
    /// Runs the function and expects the results as they were.
    std::function<ViStatus(ViSession vi, ViConstString channel)> leavesItsResults;
    /// Runs the function with a null pointer for one result and expects the others as they were.
    std::function<ViStatus(ViSession vi, ViConstString channel, std::size_t null)> withoutResult;
    /// Runs the function and ignores the values.
    std::function<ViStatus(ViSession vi, ViConstString channel)> call;

    [[nodiscard]] bool HasChannel() const { return !lineForSecond.empty(); }
};

inline std::vector<std::string> SplitNames(const std::string& names) {
    std::vector<std::string> list;
    std::size_t begin = 0;
    for (auto end = names.find(", "); end != std::string::npos; end = names.find(", ", begin)) {
        list.push_back(names.substr(begin, end - begin));
        begin = end + 2;
    }
    list.push_back(names.substr(begin));
    return list;
}

template <typename... Results, typename Call>
QueryRow Query(const char* name, const char* line, const char* lineForSecond, const char* reply, const char* results,
               std::tuple<Results...> expected, Call call) {
    using Values = std::tuple<Results...>;
    const Values before{static_cast<Results>(77 + 0 * sizeof(Results))...};
    const auto run = [call, before](ViSession vi, ViConstString channel, const Values& after, std::size_t null) {
        auto values = before;
        const auto status = std::apply(
            [&](auto&... value) {
                std::size_t position = 0;
                const auto pointer = [&](auto* address) { return position++ == null ? nullptr : address; };
                const std::tuple<Results*...> pointers{pointer(&value)...}; // in order: braces
                return std::apply([&](auto*... each) { return call(vi, channel, each...); }, pointers);
            },
            values);
        EXPECT_TRUE(values == after);
        return status;
    };
    constexpr std::size_t kNone = sizeof...(Results);
    return {name,
            line,
            lineForSecond,
            reply,
            SplitNames(results),
            [=](ViSession vi, ViConstString channel) { return run(vi, channel, expected, kNone); },
            [=](ViSession vi, ViConstString channel) { return run(vi, channel, before, kNone); },
            [=](ViSession vi, ViConstString channel, std::size_t null) { return run(vi, channel, before, null); },
            [=](ViSession vi, ViConstString channel) {
                auto values = before;
                return std::apply([&](auto&... value) { return call(vi, channel, &value...); }, values);
            }};
}

// clang-format off
inline const std::vector<Setting> kSettings{
    {"SetBleeder", [](ViSession vi) { return TARNEXSupply_SetBleeder(vi, VI_FALSE); }, ":SOUR:BLE OFF"},
    {"SetListEnabled", [](ViSession vi) { return TARNEXSupply_SetListEnabled(vi, VI_TRUE); }, ":LIST:STAT ON"},
    {"SetListCycles", [](ViSession vi) { return TARNEXSupply_SetListCycles(vi, 512); }, ":LIST:CYCLE 512"},
    {"SetListEndState", [](ViSession vi) { return TARNEXSupply_SetListEndState(vi, TARNEXSUPPLY_VAL_LIST_END_OFF); }, ":LIST:ENDS OFF"},
    {"InsertListGroup", [](ViSession vi) { return TARNEXSupply_InsertListGroup(vi, 0); }, ":LIST:GROUP:INS 0"},
    {"DeleteListGroup", [](ViSession vi) { return TARNEXSupply_DeleteListGroup(vi, 511); }, ":LIST:GROUP:DEL 511"},
    {"ClearListGroups", [](ViSession vi) { return TARNEXSupply_ClearListGroups(vi); }, ":LIST:GROUP:CLE"},
    {"SetListGroup", [](ViSession vi) { return TARNEXSupply_SetListGroup(vi, 1, 2.0, 0.5, 1.25); }, ":LIST:GROUP:PARA 1,2.000000,0.500000,1.250000"},
    {"SetListTemplate", [](ViSession vi) { return TARNEXSupply_SetListTemplate(vi, TARNEXSUPPLY_VAL_LIST_TEMPLATE_DOWN); }, ":LIST:TEMP:SEL DN"},
    {"SetListTemplateObject", [](ViSession vi) { return TARNEXSupply_SetListTemplateObject(vi, TARNEXSUPPLY_VAL_LIST_OBJECT_VOLTAGE, 0.0005); }, ":LIST:TEMP:OBJ V,0.000500"},
    {"SetListTemplateMax", [](ViSession vi) { return TARNEXSupply_SetListTemplateMax(vi, 5.5); }, ":LIST:TEMP:MAXV 5.500000"},
    {"SetListTemplateMin", [](ViSession vi) { return TARNEXSupply_SetListTemplateMin(vi, 2.0); }, ":LIST:TEMP:MINV 2.000000"},
    {"SetListTemplatePeriod", [](ViSession vi) { return TARNEXSupply_SetListTemplatePeriod(vi, 1.25); }, ":LIST:TEMP:PERI 1.250000"},
    {"SetListTemplateInterval", [](ViSession vi) { return TARNEXSupply_SetListTemplateInterval(vi, 0.0005); }, ":LIST:TEMP:INTE 0.000500"},
    {"SetListTemplateCycles", [](ViSession vi) { return TARNEXSupply_SetListTemplateCycles(vi, 7); }, ":LIST:TEMP:CYCLE 7"},
    {"SetListTemplateInverted", [](ViSession vi) { return TARNEXSupply_SetListTemplateInverted(vi, VI_FALSE); }, ":LIST:TEMP:INVE OFF"},
    {"SetListTemplateWidth", [](ViSession vi) { return TARNEXSupply_SetListTemplateWidth(vi, 3.3); }, ":LIST:TEMP:WIDT 3.300000"},
    {"SetListTemplatePulseCount", [](ViSession vi) { return TARNEXSupply_SetListTemplatePulseCount(vi, 512); }, ":LIST:TEMP:PULSECount 512"},
    {"SetListTemplateSymmetry", [](ViSession vi) { return TARNEXSupply_SetListTemplateSymmetry(vi, 7); }, ":LIST:TEMP:SYMM 7"},
    {"SetListTemplateStairs", [](ViSession vi) { return TARNEXSupply_SetListTemplateStairs(vi, 512); }, ":LIST:TEMP:STAI 512"},
    {"SetListTemplateExpPower", [](ViSession vi) { return TARNEXSupply_SetListTemplateExpPower(vi, 7); }, ":LIST:TEMP:EXPP 7"},
    {"SetListTemplateExpRate", [](ViSession vi) { return TARNEXSupply_SetListTemplateExpRate(vi, 512); }, ":LIST:TEMP:EXPR 512"},
    {"ConstructListTemplate", [](ViSession vi) { return TARNEXSupply_ConstructListTemplate(vi, 511); }, ":LIST:TEMP:CONSTruct 511"},
    {"SetDelayEnabled", [](ViSession vi) { return TARNEXSupply_SetDelayEnabled(vi, VI_FALSE); }, ":DELAY:STATe OFF"},
    {"SetDelayCycles", [](ViSession vi) { return TARNEXSupply_SetDelayCycles(vi, -3); }, ":DELAY:CYCLEs -3"},
    {"SetDelayEndState", [](ViSession vi) { return TARNEXSupply_SetDelayEndState(vi, TARNEXSUPPLY_VAL_DELAY_END_LAST); }, ":DELAY:ENDState LAST"},
    {"InsertDelayGroup", [](ViSession vi) { return TARNEXSupply_InsertDelayGroup(vi, 512); }, ":DELAY:GROUP:INSert 512"},
    {"DeleteDelayGroup", [](ViSession vi) { return TARNEXSupply_DeleteDelayGroup(vi, 0); }, ":DELAY:GROUP:DELete 0"},
    {"ClearDelayGroups", [](ViSession vi) { return TARNEXSupply_ClearDelayGroups(vi); }, ":DELAY:GROUP:CLEar"},
    {"SetDelayGroup", [](ViSession vi) { return TARNEXSupply_SetDelayGroup(vi, 511, VI_FALSE, 1.25); }, ":DELAY:GROUP:PARAmeter 511,OFF,1.250000"},
    {"SetDelayGenerateMode", [](ViSession vi) { return TARNEXSupply_SetDelayGenerateMode(vi, TARNEXSUPPLY_VAL_DELAY_GENERATE_INCREASE); }, ":DELAY:GENerate:SELect INC"},
    {"SetDelayPattern", [](ViSession vi) { return TARNEXSupply_SetDelayPattern(vi, TARNEXSUPPLY_VAL_DELAY_PATTERN_ON_FIRST); }, ":DELAY:GENerate:PATT 10P"},
    {"SetDelayGeneratePoints", [](ViSession vi) { return TARNEXSupply_SetDelayGeneratePoints(vi, 0); }, ":DELAY:GENerate:POINTs 0"},
    {"SetDelayOnTime", [](ViSession vi) { return TARNEXSupply_SetDelayOnTime(vi, 0.5); }, ":DELAY:GENerate:TIMe:ON 0.500000"},
    {"SetDelayOffTime", [](ViSession vi) { return TARNEXSupply_SetDelayOffTime(vi, 3.3); }, ":DELAY:GENerate:TIMe:OFF 3.300000"},
    {"SetDelayBaseTime", [](ViSession vi) { return TARNEXSupply_SetDelayBaseTime(vi, 5.5); }, ":DELAY:GENerate:TIMe:BASE 5.500000"},
    {"SetDelayStepTime", [](ViSession vi) { return TARNEXSupply_SetDelayStepTime(vi, 2.0); }, ":DELAY:GENerate:TIMe:STEP 2.000000"},
    {"ConstructDelayGroups", [](ViSession vi) { return TARNEXSupply_ConstructDelayGroups(vi, 3); }, ":DELAY:GENerate:CONSTruct 3"},
    {"SetTriggerInputEnabled", [](ViSession vi) { return TARNEXSupply_SetTriggerInputEnabled(vi, TARNEXSUPPLY_VAL_TRIGGER_INPUT_D3, VI_TRUE); }, ":TRIG:IN:ENAB D3,ON"},
    {"SetAllOutputsOff", [](ViSession vi) { return TARNEXSupply_SetAllOutputsOff(vi); }, ":OUTPut:STATe ALL,OFF"},
    {"Reset", [](ViSession vi) { return TARNEXSupply_Reset(vi); }, "*RST"},
    {"ClearStatus", [](ViSession vi) { return TARNEXSupply_ClearStatus(vi); }, "*CLS"},
};

inline const std::vector<ChannelSetting> kChannelSettings{
    {"SelectChannel", [](ViSession vi, ViConstString channel) { return TARNEXSupply_SelectChannel(vi, channel); }, ":INST:SELE CH1", ":INST:SELE CH2"},
    {"SetVoltage", [](ViSession vi, ViConstString channel) { return TARNEXSupply_SetVoltage(vi, channel, 0.5); }, ":SOUR1:VOLT 0.500000", ":SOUR2:VOLT 0.500000"},
    {"SetOverVoltageLevel", [](ViSession vi, ViConstString channel) { return TARNEXSupply_SetOverVoltageLevel(vi, channel, 3.3); }, ":SOUR1:VOLT:PROT 3.300000", ":SOUR2:VOLT:PROT 3.300000"},
    {"SetOverVoltageEnabled", [](ViSession vi, ViConstString channel) { return TARNEXSupply_SetOverVoltageEnabled(vi, channel, VI_TRUE); }, ":SOUR1:VOLT:PROT:STAT ON", ":SOUR2:VOLT:PROT:STAT ON"},
    {"SetRemoteSense", [](ViSession vi, ViConstString channel) { return TARNEXSupply_SetRemoteSense(vi, channel, VI_TRUE); }, ":SOUR1:VOLT:SENS ON", ":SOUR2:VOLT:SENS ON"},
    {"SetCurrent", [](ViSession vi, ViConstString channel) { return TARNEXSupply_SetCurrent(vi, channel, 1.25); }, ":SOUR1:CURR 1.250000", ":SOUR2:CURR 1.250000"},
    {"SetOverCurrentLevel", [](ViSession vi, ViConstString channel) { return TARNEXSupply_SetOverCurrentLevel(vi, channel, 0.0005); }, ":SOUR1:CURR:PROT 0.000500", ":SOUR2:CURR:PROT 0.000500"},
    {"SetOverCurrentEnabled", [](ViSession vi, ViConstString channel) { return TARNEXSupply_SetOverCurrentEnabled(vi, channel, VI_TRUE); }, ":SOUR1:CURR:PROT:STAT ON", ":SOUR2:CURR:PROT:STAT ON"},
    {"SetOverCurrentDelay", [](ViSession vi, ViConstString channel) { return TARNEXSupply_SetOverCurrentDelay(vi, channel, 0.5); }, ":SOUR1:CURR:PROT:DEL 0.500000", ":SOUR2:CURR:PROT:DEL 0.500000"},
    {"SetOverCurrentDelayMode", [](ViSession vi, ViConstString channel) { return TARNEXSupply_SetOverCurrentDelayMode(vi, channel, TARNEXSUPPLY_VAL_PROTECTION_DELAY_SETTING_CHANGE); }, ":SOUR1:CURR:PROT:DEL:MODE SCH", ":SOUR2:CURR:PROT:DEL:MODE SCH"},
    {"SetOutputEnabled", [](ViSession vi, ViConstString channel) { return TARNEXSupply_SetOutputEnabled(vi, channel, VI_TRUE); }, ":OUTP:STAT CH1,ON", ":OUTP:STAT CH2,ON"},
    {"SetOvpLevel", [](ViSession vi, ViConstString channel) { return TARNEXSupply_SetOvpLevel(vi, channel, 0.5); }, ":OUTP:OVP:VAL CH1,0.500000", ":OUTP:OVP:VAL CH2,0.500000"},
    {"SetOvpEnabled", [](ViSession vi, ViConstString channel) { return TARNEXSupply_SetOvpEnabled(vi, channel, VI_FALSE); }, ":OUTP:OVP:STAT CH1,OFF", ":OUTP:OVP:STAT CH2,OFF"},
    {"SetOcpLevel", [](ViSession vi, ViConstString channel) { return TARNEXSupply_SetOcpLevel(vi, channel, 5.5); }, ":OUTP:OCP:VAL CH1,5.500000", ":OUTP:OCP:VAL CH2,5.500000"},
    {"SetOcpEnabled", [](ViSession vi, ViConstString channel) { return TARNEXSupply_SetOcpEnabled(vi, channel, VI_FALSE); }, ":OUTP:OCP:STAT CH1,OFF", ":OUTP:OCP:STAT CH2,OFF"},
    {"SetOcpDelay", [](ViSession vi, ViConstString channel) { return TARNEXSupply_SetOcpDelay(vi, channel, 1.25); }, ":OUTP:OCP:DEL CH1,1.250000", ":OUTP:OCP:DEL CH2,1.250000"},
    {"SetOcpDelayMode", [](ViSession vi, ViConstString channel) { return TARNEXSupply_SetOcpDelayMode(vi, channel, TARNEXSUPPLY_VAL_PROTECTION_DELAY_ANY); }, ":OUTP:OCP:DEL:MODE CH1,ANY", ":OUTP:OCP:DEL:MODE CH2,ANY"},
    {"SetPowerOnState", [](ViSession vi, ViConstString channel) { return TARNEXSupply_SetPowerOnState(vi, channel, TARNEXSUPPLY_VAL_POWER_ON_RESET); }, ":OUTP:PONS:STAT CH1,RST", ":OUTP:PONS:STAT CH2,RST"},
    {"SetPairMode", [](ViSession vi, ViConstString channel) { return TARNEXSupply_SetPairMode(vi, channel, TARNEXSUPPLY_VAL_PAIR_PARALLEL); }, ":OUTP:PAIR CH1,PAR", ":OUTP:PAIR CH2,PAR"},
    {"SetOutputSense", [](ViSession vi, ViConstString channel) { return TARNEXSupply_SetOutputSense(vi, channel, VI_FALSE); }, ":OUTP:SENS:STAT CH1,OFF", ":OUTP:SENS:STAT CH2,OFF"},
    {"SetTracking", [](ViSession vi, ViConstString channel) { return TARNEXSupply_SetTracking(vi, channel, VI_FALSE); }, ":OUTP:TRAC:STAT CH1,OFF", ":OUTP:TRAC:STAT CH2,OFF"},
    {"SetOffMode", [](ViSession vi, ViConstString channel) { return TARNEXSupply_SetOffMode(vi, channel, TARNEXSUPPLY_VAL_OFF_MODE_BLEEDER_ON); }, ":OUTP:OFFM CH1,BLEON", ":OUTP:OFFM CH2,BLEON"},
    {"SetCurrentRange", [](ViSession vi, ViConstString channel) { return TARNEXSupply_SetCurrentRange(vi, channel, TARNEXSUPPLY_VAL_CURRENT_RANGE_HIGH); }, ":MEAS:CURR:RANG CH1,HIGH", ":MEAS:CURR:RANG CH2,HIGH"},
    {"SetCurrentRate", [](ViSession vi, ViConstString channel) { return TARNEXSupply_SetCurrentRate(vi, channel, TARNEXSUPPLY_VAL_CURRENT_RATE_4000); }, ":MEAS:CURR:RATE CH1,4000", ":MEAS:CURR:RATE CH2,4000"},
};

inline const std::vector<QueryRow> kQueries{
    Query<ViInt32>("GetSelectedChannel", ":INST:SELE?", "", "CH2", "channel", {2}, [](ViSession vi, ViConstString /*channel*/, auto*... out) { return TARNEXSupply_GetSelectedChannel(vi, out...); }),
    Query<ViBoolean>("GetBleeder", ":SOUR:BLE?", "", "OFF", "enabled", {VI_FALSE}, [](ViSession vi, ViConstString /*channel*/, auto*... out) { return TARNEXSupply_GetBleeder(vi, out...); }),
    Query<ViBoolean>("GetListEnabled", ":LIST:STAT?", "", "ON", "enabled", {VI_TRUE}, [](ViSession vi, ViConstString /*channel*/, auto*... out) { return TARNEXSupply_GetListEnabled(vi, out...); }),
    Query<ViInt32, ViReal64, ViInt32, ViInt32>("GetListStatus", ":LIST:STATUS?", "", "RUNNING,-0.5,+12,-7", "state, seconds, group, cycle", {TARNEXSUPPLY_VAL_LIST_STATE_RUNNING, -0.5, 12, -7}, [](ViSession vi, ViConstString /*channel*/, auto*... out) { return TARNEXSupply_GetListStatus(vi, out...); }),
    Query<ViInt32>("GetListCycles", ":LIST:CYCLE?", "", "+12", "cycles", {12}, [](ViSession vi, ViConstString /*channel*/, auto*... out) { return TARNEXSupply_GetListCycles(vi, out...); }),
    Query<ViInt32>("GetListEndState", ":LIST:ENDS?", "", "OFF", "state", {TARNEXSUPPLY_VAL_LIST_END_OFF}, [](ViSession vi, ViConstString /*channel*/, auto*... out) { return TARNEXSupply_GetListEndState(vi, out...); }),
    Query<ViInt32>("GetListGroupCount", ":LIST:GROUP:NUM?", "", "+12", "count", {12}, [](ViSession vi, ViConstString /*channel*/, auto*... out) { return TARNEXSupply_GetListGroupCount(vi, out...); }),
    Query<ViReal64, ViReal64, ViReal64>("GetListGroup", ":LIST:GROUP:PARA? 511", "", "3.300000,1.5,+2.25E+00", "first, second, third", {3.3, 1.5, 2.25}, [](ViSession vi, ViConstString /*channel*/, auto*... out) { return TARNEXSupply_GetListGroup(vi, 511, out...); }),
    Query<ViInt32>("GetListTemplate", ":LIST:TEMP:SEL?", "", "RISE", "shape", {TARNEXSUPPLY_VAL_LIST_TEMPLATE_RISE}, [](ViSession vi, ViConstString /*channel*/, auto*... out) { return TARNEXSupply_GetListTemplate(vi, out...); }),
    Query<ViInt32, ViReal64>("GetListTemplateObject", ":LIST:TEMP:OBJ?", "", "V,1.5", "object, value", {TARNEXSUPPLY_VAL_LIST_OBJECT_VOLTAGE, 1.5}, [](ViSession vi, ViConstString /*channel*/, auto*... out) { return TARNEXSupply_GetListTemplateObject(vi, out...); }),
    Query<ViReal64>("GetListTemplateMax", ":LIST:TEMP:MAXV?", "", "+2.25E+00", "value", {2.25}, [](ViSession vi, ViConstString /*channel*/, auto*... out) { return TARNEXSupply_GetListTemplateMax(vi, out...); }),
    Query<ViReal64>("GetListTemplateMin", ":LIST:TEMP:MINV?", "", "3.300000", "value", {3.3}, [](ViSession vi, ViConstString /*channel*/, auto*... out) { return TARNEXSupply_GetListTemplateMin(vi, out...); }),
    Query<ViReal64>("GetListTemplatePeriod", ":LIST:TEMP:PERI?", "", "+2.25E+00", "seconds", {2.25}, [](ViSession vi, ViConstString /*channel*/, auto*... out) { return TARNEXSupply_GetListTemplatePeriod(vi, out...); }),
    Query<ViReal64>("GetListTemplateInterval", ":LIST:TEMP:INTE?", "", "3.300000", "seconds", {3.3}, [](ViSession vi, ViConstString /*channel*/, auto*... out) { return TARNEXSupply_GetListTemplateInterval(vi, out...); }),
    Query<ViInt32>("GetListTemplateCycles", ":LIST:TEMP:CYCLE?", "", "-7", "cycles", {-7}, [](ViSession vi, ViConstString /*channel*/, auto*... out) { return TARNEXSupply_GetListTemplateCycles(vi, out...); }),
    Query<ViBoolean>("GetListTemplateInverted", ":LIST:TEMP:INVE?", "", "OFF", "enabled", {VI_FALSE}, [](ViSession vi, ViConstString /*channel*/, auto*... out) { return TARNEXSupply_GetListTemplateInverted(vi, out...); }),
    Query<ViReal64>("GetListTemplateWidth", ":LIST:TEMP:WIDT?", "", "+2.25E+00", "seconds", {2.25}, [](ViSession vi, ViConstString /*channel*/, auto*... out) { return TARNEXSupply_GetListTemplateWidth(vi, out...); }),
    Query<ViInt32>("GetListTemplatePulseCount", ":LIST:TEMP:PULSECount?", "", "-7", "pulses", {-7}, [](ViSession vi, ViConstString /*channel*/, auto*... out) { return TARNEXSupply_GetListTemplatePulseCount(vi, out...); }),
    Query<ViInt32>("GetListTemplateSymmetry", ":LIST:TEMP:SYMM?", "", "+12", "percent", {12}, [](ViSession vi, ViConstString /*channel*/, auto*... out) { return TARNEXSupply_GetListTemplateSymmetry(vi, out...); }),
    Query<ViInt32>("GetListTemplateStairs", ":LIST:TEMP:STAI?", "", "511", "stairs", {511}, [](ViSession vi, ViConstString /*channel*/, auto*... out) { return TARNEXSupply_GetListTemplateStairs(vi, out...); }),
    Query<ViInt32>("GetListTemplateExpPower", ":LIST:TEMP:EXPP?", "", "-7", "value", {-7}, [](ViSession vi, ViConstString /*channel*/, auto*... out) { return TARNEXSupply_GetListTemplateExpPower(vi, out...); }),
    Query<ViInt32>("GetListTemplateExpRate", ":LIST:TEMP:EXPR?", "", "+12", "value", {12}, [](ViSession vi, ViConstString /*channel*/, auto*... out) { return TARNEXSupply_GetListTemplateExpRate(vi, out...); }),
    Query<ViInt32>("GetListTemplatePoints", ":LIST:TEMP:POINTs?", "", "-7", "points", {-7}, [](ViSession vi, ViConstString /*channel*/, auto*... out) { return TARNEXSupply_GetListTemplatePoints(vi, out...); }),
    Query<ViBoolean>("GetDelayEnabled", ":DELAY:STATe?", "", "OFF", "enabled", {VI_FALSE}, [](ViSession vi, ViConstString /*channel*/, auto*... out) { return TARNEXSupply_GetDelayEnabled(vi, out...); }),
    Query<ViInt32, ViReal64, ViInt32, ViInt32>("GetDelayStatus", ":DELAY:STATUS?", "", "RUNNING,+2.25E+00,-7,511", "state, seconds, group, cycle", {TARNEXSUPPLY_VAL_DELAY_STATE_RUNNING, 2.25, -7, 511}, [](ViSession vi, ViConstString /*channel*/, auto*... out) { return TARNEXSupply_GetDelayStatus(vi, out...); }),
    Query<ViInt32>("GetDelayCycles", ":DELAY:CYCLEs?", "", "-7", "cycles", {-7}, [](ViSession vi, ViConstString /*channel*/, auto*... out) { return TARNEXSupply_GetDelayCycles(vi, out...); }),
    Query<ViInt32>("GetDelayEndState", ":DELAY:ENDState?", "", "ON", "state", {TARNEXSUPPLY_VAL_DELAY_END_ON}, [](ViSession vi, ViConstString /*channel*/, auto*... out) { return TARNEXSupply_GetDelayEndState(vi, out...); }),
    Query<ViInt32>("GetDelayGroupCount", ":DELAY:GROUP:NUM?", "", "-7", "count", {-7}, [](ViSession vi, ViConstString /*channel*/, auto*... out) { return TARNEXSupply_GetDelayGroupCount(vi, out...); }),
    Query<ViBoolean, ViReal64>("GetDelayGroup", ":DELAY:GROUP:PARAmeter? 3", "", "1,3.300000", "enabled, seconds", {VI_TRUE, 3.3}, [](ViSession vi, ViConstString /*channel*/, auto*... out) { return TARNEXSupply_GetDelayGroup(vi, 3, out...); }),
    Query<ViInt32>("GetDelayGenerateMode", ":DELAY:GENerate:SELect?", "", "FIX", "mode", {TARNEXSUPPLY_VAL_DELAY_GENERATE_FIXED}, [](ViSession vi, ViConstString /*channel*/, auto*... out) { return TARNEXSupply_GetDelayGenerateMode(vi, out...); }),
    Query<ViInt32>("GetDelayPattern", ":DELAY:GENerate:PATT?", "", "10P", "pattern", {TARNEXSUPPLY_VAL_DELAY_PATTERN_ON_FIRST}, [](ViSession vi, ViConstString /*channel*/, auto*... out) { return TARNEXSupply_GetDelayPattern(vi, out...); }),
    Query<ViInt32>("GetDelayGeneratePoints", ":DELAY:GENerate:POINTs?", "", "+12", "points", {12}, [](ViSession vi, ViConstString /*channel*/, auto*... out) { return TARNEXSupply_GetDelayGeneratePoints(vi, out...); }),
    Query<ViReal64>("GetDelayOnTime", ":DELAY:GENerate:TIMe:ON?", "", "-0.5", "seconds", {-0.5}, [](ViSession vi, ViConstString /*channel*/, auto*... out) { return TARNEXSupply_GetDelayOnTime(vi, out...); }),
    Query<ViReal64>("GetDelayOffTime", ":DELAY:GENerate:TIMe:OFF?", "", "1.5", "seconds", {1.5}, [](ViSession vi, ViConstString /*channel*/, auto*... out) { return TARNEXSupply_GetDelayOffTime(vi, out...); }),
    Query<ViReal64>("GetDelayBaseTime", ":DELAY:GENerate:TIMe:BASE?", "", "-0.5", "seconds", {-0.5}, [](ViSession vi, ViConstString /*channel*/, auto*... out) { return TARNEXSupply_GetDelayBaseTime(vi, out...); }),
    Query<ViReal64>("GetDelayStepTime", ":DELAY:GENerate:TIMe:STEP?", "", "1.5", "seconds", {1.5}, [](ViSession vi, ViConstString /*channel*/, auto*... out) { return TARNEXSupply_GetDelayStepTime(vi, out...); }),
    Query<ViBoolean>("GetTriggerInputEnabled", ":TRIG:IN:ENAB? D4", "", "OFF", "enabled", {VI_FALSE}, [](ViSession vi, ViConstString /*channel*/, auto*... out) { return TARNEXSupply_GetTriggerInputEnabled(vi, TARNEXSUPPLY_VAL_TRIGGER_INPUT_D4, out...); }),
    Query<ViInt32>("QueryEventStatus", "*ESR?", "", "36", "value", {36}, [](ViSession vi, ViConstString /*channel*/, auto*... out) { return TARNEXSupply_QueryEventStatus(vi, out...); }),
    Query<ViReal64>("GetVoltage", ":SOUR1:VOLT?", ":SOUR2:VOLT?", "+2.25E+00", "volts", {2.25}, [](ViSession vi, ViConstString channel, auto*... out) { return TARNEXSupply_GetVoltage(vi, channel, out...); }),
    Query<ViReal64>("GetOverVoltageLevel", ":SOUR1:VOLT:PROT?", ":SOUR2:VOLT:PROT?", "3.300000", "volts", {3.3}, [](ViSession vi, ViConstString channel, auto*... out) { return TARNEXSupply_GetOverVoltageLevel(vi, channel, out...); }),
    Query<ViBoolean>("GetOverVoltageEnabled", ":SOUR1:VOLT:PROT:STAT?", ":SOUR2:VOLT:PROT:STAT?", "0", "enabled", {VI_FALSE}, [](ViSession vi, ViConstString channel, auto*... out) { return TARNEXSupply_GetOverVoltageEnabled(vi, channel, out...); }),
    Query<ViBoolean>("GetRemoteSense", ":SOUR1:VOLT:SENS?", ":SOUR2:VOLT:SENS?", "OFF", "enabled", {VI_FALSE}, [](ViSession vi, ViConstString channel, auto*... out) { return TARNEXSupply_GetRemoteSense(vi, channel, out...); }),
    Query<ViReal64>("GetCurrent", ":SOUR1:CURR?", ":SOUR2:CURR?", "+2.25E+00", "amperes", {2.25}, [](ViSession vi, ViConstString channel, auto*... out) { return TARNEXSupply_GetCurrent(vi, channel, out...); }),
    Query<ViReal64>("GetOverCurrentLevel", ":SOUR1:CURR:PROT?", ":SOUR2:CURR:PROT?", "3.300000", "amperes", {3.3}, [](ViSession vi, ViConstString channel, auto*... out) { return TARNEXSupply_GetOverCurrentLevel(vi, channel, out...); }),
    Query<ViBoolean>("GetOverCurrentEnabled", ":SOUR1:CURR:PROT:STAT?", ":SOUR2:CURR:PROT:STAT?", "0", "enabled", {VI_FALSE}, [](ViSession vi, ViConstString channel, auto*... out) { return TARNEXSupply_GetOverCurrentEnabled(vi, channel, out...); }),
    Query<ViReal64>("GetOverCurrentDelay", ":SOUR1:CURR:PROT:DEL?", ":SOUR2:CURR:PROT:DEL?", "3.300000", "seconds", {3.3}, [](ViSession vi, ViConstString channel, auto*... out) { return TARNEXSupply_GetOverCurrentDelay(vi, channel, out...); }),
    Query<ViInt32>("GetOverCurrentDelayMode", ":SOUR1:CURR:PROT:DEL:MODE?", ":SOUR2:CURR:PROT:DEL:MODE?", "ANY", "mode", {TARNEXSUPPLY_VAL_PROTECTION_DELAY_ANY}, [](ViSession vi, ViConstString channel, auto*... out) { return TARNEXSupply_GetOverCurrentDelayMode(vi, channel, out...); }),
    Query<ViBoolean>("GetOutputEnabled", ":OUTP:STAT? CH1", ":OUTP:STAT? CH2", "OFF", "enabled", {VI_FALSE}, [](ViSession vi, ViConstString channel, auto*... out) { return TARNEXSupply_GetOutputEnabled(vi, channel, out...); }),
    Query<ViInt32>("GetRegulationMode", ":OUTP:CVCC? CH1", ":OUTP:CVCC? CH2", "CC", "mode", {TARNEXSUPPLY_VAL_REGULATION_CONSTANT_CURRENT}, [](ViSession vi, ViConstString channel, auto*... out) { return TARNEXSupply_GetRegulationMode(vi, channel, out...); }),
    Query<ViReal64>("GetOvpLevel", ":OUTP:OVP:VAL? CH1", ":OUTP:OVP:VAL? CH2", "-0.5", "volts", {-0.5}, [](ViSession vi, ViConstString channel, auto*... out) { return TARNEXSupply_GetOvpLevel(vi, channel, out...); }),
    Query<ViBoolean>("GetOvpEnabled", ":OUTP:OVP:STAT? CH1", ":OUTP:OVP:STAT? CH2", "ON", "enabled", {VI_TRUE}, [](ViSession vi, ViConstString channel, auto*... out) { return TARNEXSupply_GetOvpEnabled(vi, channel, out...); }),
    Query<ViReal64>("GetOcpLevel", ":OUTP:OCP:VAL? CH1", ":OUTP:OCP:VAL? CH2", "-0.5", "amperes", {-0.5}, [](ViSession vi, ViConstString channel, auto*... out) { return TARNEXSupply_GetOcpLevel(vi, channel, out...); }),
    Query<ViBoolean>("GetOcpEnabled", ":OUTP:OCP:STAT? CH1", ":OUTP:OCP:STAT? CH2", "ON", "enabled", {VI_TRUE}, [](ViSession vi, ViConstString channel, auto*... out) { return TARNEXSupply_GetOcpEnabled(vi, channel, out...); }),
    Query<ViReal64>("GetOcpDelay", ":OUTP:OCP:DEL? CH1", ":OUTP:OCP:DEL? CH2", "-0.5", "seconds", {-0.5}, [](ViSession vi, ViConstString channel, auto*... out) { return TARNEXSupply_GetOcpDelay(vi, channel, out...); }),
    Query<ViInt32>("GetOcpDelayMode", ":OUTP:OCP:DEL:MODE? CH1", ":OUTP:OCP:DEL:MODE? CH2", "SCH", "mode", {TARNEXSUPPLY_VAL_PROTECTION_DELAY_SETTING_CHANGE}, [](ViSession vi, ViConstString channel, auto*... out) { return TARNEXSupply_GetOcpDelayMode(vi, channel, out...); }),
    Query<ViInt32>("GetPowerOnState", ":OUTP:PONS:STAT? CH1", ":OUTP:PONS:STAT? CH2", "LAST", "state", {TARNEXSUPPLY_VAL_POWER_ON_LAST}, [](ViSession vi, ViConstString channel, auto*... out) { return TARNEXSupply_GetPowerOnState(vi, channel, out...); }),
    Query<ViInt32>("GetPairMode", ":OUTP:PAIR? CH1", ":OUTP:PAIR? CH2", "OFF", "mode", {TARNEXSUPPLY_VAL_PAIR_OFF}, [](ViSession vi, ViConstString channel, auto*... out) { return TARNEXSupply_GetPairMode(vi, channel, out...); }),
    Query<ViBoolean>("GetOutputSense", ":OUTP:SENS:STAT? CH1", ":OUTP:SENS:STAT? CH2", "1", "enabled", {VI_TRUE}, [](ViSession vi, ViConstString channel, auto*... out) { return TARNEXSupply_GetOutputSense(vi, channel, out...); }),
    Query<ViBoolean>("GetTracking", ":OUTP:TRAC:STAT? CH1", ":OUTP:TRAC:STAT? CH2", "ON", "enabled", {VI_TRUE}, [](ViSession vi, ViConstString channel, auto*... out) { return TARNEXSupply_GetTracking(vi, channel, out...); }),
    Query<ViInt32>("GetOffMode", ":OUTP:OFFM? CH1", ":OUTP:OFFM? CH2", "BLEOFF", "mode", {TARNEXSUPPLY_VAL_OFF_MODE_BLEEDER_OFF}, [](ViSession vi, ViConstString channel, auto*... out) { return TARNEXSupply_GetOffMode(vi, channel, out...); }),
    Query<ViReal64, ViReal64, ViReal64>("MeasureAll", ":MEAS:ALL? CH1", ":MEAS:ALL? CH2", "3.300000,1.5,+2.25E+00", "volts, amperes, watts", {3.3, 1.5, 2.25}, [](ViSession vi, ViConstString channel, auto*... out) { return TARNEXSupply_MeasureAll(vi, channel, out...); }),
    Query<ViReal64>("MeasureVoltage", ":MEAS:VOLT? CH1", ":MEAS:VOLT? CH2", "1.5", "volts", {1.5}, [](ViSession vi, ViConstString channel, auto*... out) { return TARNEXSupply_MeasureVoltage(vi, channel, out...); }),
    Query<ViReal64>("MeasureCurrent", ":MEAS:CURR? CH1", ":MEAS:CURR? CH2", "+2.25E+00", "amperes", {2.25}, [](ViSession vi, ViConstString channel, auto*... out) { return TARNEXSupply_MeasureCurrent(vi, channel, out...); }),
    Query<ViReal64>("MeasurePower", ":MEAS:POWE? CH1", ":MEAS:POWE? CH2", "-0.5", "watts", {-0.5}, [](ViSession vi, ViConstString channel, auto*... out) { return TARNEXSupply_MeasurePower(vi, channel, out...); }),
    Query<ViInt32>("GetCurrentRange", ":MEAS:CURR:RANG? CH1", ":MEAS:CURR:RANG? CH2", "AUTO", "range", {TARNEXSUPPLY_VAL_CURRENT_RANGE_AUTO}, [](ViSession vi, ViConstString channel, auto*... out) { return TARNEXSupply_GetCurrentRange(vi, channel, out...); }),
    Query<ViInt32>("GetCurrentRate", ":MEAS:CURR:RATE? CH1", ":MEAS:CURR:RATE? CH2", "8K", "rate", {TARNEXSUPPLY_VAL_CURRENT_RATE_8000}, [](ViSession vi, ViConstString channel, auto*... out) { return TARNEXSupply_GetCurrentRate(vi, channel, out...); }),
    Query<ViInt32>("QueryQuestionableCondition", ":STATus:QUEStionable:INSTrument:ISUMmary1:CONDition?", ":STATus:QUEStionable:INSTrument:ISUMmary2:CONDition?", "3", "value", {3}, [](ViSession vi, ViConstString channel, auto*... out) { return TARNEXSupply_QueryQuestionableCondition(vi, channel, out...); }),
    Query<ViInt32>("QueryQuestionableEvent", ":STATus:QUEStionable:INSTrument:ISUMmary1:EVENt?", ":STATus:QUEStionable:INSTrument:ISUMmary2:EVENt?", "+2", "value", {2}, [](ViSession vi, ViConstString channel, auto*... out) { return TARNEXSupply_QueryQuestionableEvent(vi, channel, out...); }),
};
// clang-format on

} // namespace supply_tests
