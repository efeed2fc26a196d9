// The commands of the instrument, for the tests on the real supply and on the simulated one.
#pragma once

#include <fstream>
#include <set>
#include <string>
#include <vector>

#include "instrument/inst_base.h"

namespace unit {

/// An operation that sends one command and reads nothing.
struct Setting {
    const char* name;
    ViStatus (*send)(ORVA::InstBase& supply);
    const char* bytes;
};

// clang-format off
inline const std::vector<Setting> kSettings{
    {"SelectChannel", [](ORVA::InstBase& supply) { return supply.SelectChannel(1); }, ":INST:SELE CH1\n"},
    {"SetBleeder", [](ORVA::InstBase& supply) { return supply.SetBleeder(false); }, ":SOUR:BLE OFF\n"},
    {"SetVoltage", [](ORVA::InstBase& supply) { return supply.SetVoltage(1, 0.5); }, ":SOUR1:VOLT 0.500000\n"},
    {"SetOverVoltageLevel", [](ORVA::InstBase& supply) { return supply.SetOverVoltageLevel(1, 3.3); }, ":SOUR1:VOLT:PROT 3.300000\n"},
    {"SetOverVoltageEnabled", [](ORVA::InstBase& supply) { return supply.SetOverVoltageEnabled(1, true); }, ":SOUR1:VOLT:PROT:STAT ON\n"},
    {"SetRemoteSense", [](ORVA::InstBase& supply) { return supply.SetRemoteSense(1, true); }, ":SOUR1:VOLT:SENS ON\n"},
    {"SetCurrent", [](ORVA::InstBase& supply) { return supply.SetCurrent(1, 1.25); }, ":SOUR1:CURR 1.250000\n"},
    {"SetOverCurrentLevel", [](ORVA::InstBase& supply) { return supply.SetOverCurrentLevel(1, 0.0005); }, ":SOUR1:CURR:PROT 0.000500\n"},
    {"SetOverCurrentEnabled", [](ORVA::InstBase& supply) { return supply.SetOverCurrentEnabled(1, true); }, ":SOUR1:CURR:PROT:STAT ON\n"},
    {"SetOverCurrentDelay", [](ORVA::InstBase& supply) { return supply.SetOverCurrentDelay(1, 0.5); }, ":SOUR1:CURR:PROT:DEL 0.500000\n"},
    {"SetOverCurrentDelayMode", [](ORVA::InstBase& supply) { return supply.SetOverCurrentDelayMode(1, ORVA::ProtectionDelayMode::SettingChange); }, ":SOUR1:CURR:PROT:DEL:MODE SCH\n"},
    {"SetOutputEnabled", [](ORVA::InstBase& supply) { return supply.SetOutputEnabled(1, true); }, ":OUTP:STAT CH1,ON\n"},
    {"SetOvpLevel", [](ORVA::InstBase& supply) { return supply.SetOvpLevel(2, 0.5); }, ":OUTP:OVP:VAL CH2,0.500000\n"},
    {"SetOvpEnabled", [](ORVA::InstBase& supply) { return supply.SetOvpEnabled(2, false); }, ":OUTP:OVP:STAT CH2,OFF\n"},
    {"SetOcpLevel", [](ORVA::InstBase& supply) { return supply.SetOcpLevel(2, 5.5); }, ":OUTP:OCP:VAL CH2,5.500000\n"},
    {"SetOcpEnabled", [](ORVA::InstBase& supply) { return supply.SetOcpEnabled(2, false); }, ":OUTP:OCP:STAT CH2,OFF\n"},
    {"SetOcpDelay", [](ORVA::InstBase& supply) { return supply.SetOcpDelay(2, 1.25); }, ":OUTP:OCP:DEL CH2,1.250000\n"},
    {"SetOcpDelayMode", [](ORVA::InstBase& supply) { return supply.SetOcpDelayMode(2, ORVA::ProtectionDelayMode::Any); }, ":OUTP:OCP:DEL:MODE CH2,ANY\n"},
    {"SetPowerOnState", [](ORVA::InstBase& supply) { return supply.SetPowerOnState(2, ORVA::PowerOnState::Reset); }, ":OUTP:PONS:STAT CH2,RST\n"},
    {"SetPairMode", [](ORVA::InstBase& supply) { return supply.SetPairMode(2, ORVA::PairMode::Parallel); }, ":OUTP:PAIR CH2,PAR\n"},
    {"SetOutputSense", [](ORVA::InstBase& supply) { return supply.SetOutputSense(2, false); }, ":OUTP:SENS:STAT CH2,OFF\n"},
    {"SetTracking", [](ORVA::InstBase& supply) { return supply.SetTracking(2, false); }, ":OUTP:TRAC:STAT CH2,OFF\n"},
    {"SetOffMode", [](ORVA::InstBase& supply) { return supply.SetOffMode(2, ORVA::OffMode::BleederOn); }, ":OUTP:OFFM CH2,BLEON\n"},
    {"SetCurrentRange", [](ORVA::InstBase& supply) { return supply.SetCurrentRange(2, ORVA::CurrentRange::High); }, ":MEAS:CURR:RANG CH2,HIGH\n"},
    {"SetCurrentRate", [](ORVA::InstBase& supply) { return supply.SetCurrentRate(2, ORVA::CurrentRate::Rate4000); }, ":MEAS:CURR:RATE CH2,4000\n"},
    {"SetListEnabled", [](ORVA::InstBase& supply) { return supply.SetListEnabled(true); }, ":LIST:STAT ON\n"},
    {"SetListCycles", [](ORVA::InstBase& supply) { return supply.SetListCycles(512); }, ":LIST:CYCLE 512\n"},
    {"SetListEndState", [](ORVA::InstBase& supply) { return supply.SetListEndState(ORVA::ListEndState::Off); }, ":LIST:ENDS OFF\n"},
    {"InsertListGroup", [](ORVA::InstBase& supply) { return supply.InsertListGroup(0); }, ":LIST:GROUP:INS 0\n"},
    {"DeleteListGroup", [](ORVA::InstBase& supply) { return supply.DeleteListGroup(511U); }, ":LIST:GROUP:DEL 511\n"},
    {"ClearListGroups", [](ORVA::InstBase& supply) { return supply.ClearListGroups(); }, ":LIST:GROUP:CLE\n"},
    {"SetListGroup", [](ORVA::InstBase& supply) { return supply.SetListGroup(1U, 2.0, 0.5, 1.25); }, ":LIST:GROUP:PARA 1,2.000000,0.500000,1.250000\n"},
    {"SetListTemplate", [](ORVA::InstBase& supply) { return supply.SetListTemplate(ORVA::ListTemplate::Down); }, ":LIST:TEMP:SEL DN\n"},
    {"SetListTemplateObject", [](ORVA::InstBase& supply) { return supply.SetListTemplateObject(ORVA::ListTemplateObject::Voltage, 0.0005); }, ":LIST:TEMP:OBJ V,0.000500\n"},
    {"SetListTemplateMax", [](ORVA::InstBase& supply) { return supply.SetListTemplateMax(5.5); }, ":LIST:TEMP:MAXV 5.500000\n"},
    {"SetListTemplateMin", [](ORVA::InstBase& supply) { return supply.SetListTemplateMin(2.0); }, ":LIST:TEMP:MINV 2.000000\n"},
    {"SetListTemplatePeriod", [](ORVA::InstBase& supply) { return supply.SetListTemplatePeriod(1.25); }, ":LIST:TEMP:PERI 1.250000\n"},
    {"SetListTemplateInterval", [](ORVA::InstBase& supply) { return supply.SetListTemplateInterval(0.0005); }, ":LIST:TEMP:INTE 0.000500\n"},
    {"SetListTemplateCycles", [](ORVA::InstBase& supply) { return supply.SetListTemplateCycles(7); }, ":LIST:TEMP:CYCLE 7\n"},
    {"SetListTemplateInverted", [](ORVA::InstBase& supply) { return supply.SetListTemplateInverted(false); }, ":LIST:TEMP:INVE OFF\n"},
    {"SetListTemplateWidth", [](ORVA::InstBase& supply) { return supply.SetListTemplateWidth(3.3); }, ":LIST:TEMP:WIDT 3.300000\n"},
    {"SetListTemplatePulseCount", [](ORVA::InstBase& supply) { return supply.SetListTemplatePulseCount(512); }, ":LIST:TEMP:PULSECount 512\n"},
    {"SetListTemplateSymmetry", [](ORVA::InstBase& supply) { return supply.SetListTemplateSymmetry(7); }, ":LIST:TEMP:SYMM 7\n"},
    {"SetListTemplateStairs", [](ORVA::InstBase& supply) { return supply.SetListTemplateStairs(512); }, ":LIST:TEMP:STAI 512\n"},
    {"SetListTemplateExpPower", [](ORVA::InstBase& supply) { return supply.SetListTemplateExpPower(7); }, ":LIST:TEMP:EXPP 7\n"},
    {"SetListTemplateExpRate", [](ORVA::InstBase& supply) { return supply.SetListTemplateExpRate(512); }, ":LIST:TEMP:EXPR 512\n"},
    {"ConstructListTemplate", [](ORVA::InstBase& supply) { return supply.ConstructListTemplate(511U); }, ":LIST:TEMP:CONSTruct 511\n"},
    {"SetDelayEnabled", [](ORVA::InstBase& supply) { return supply.SetDelayEnabled(false); }, ":DELAY:STATe OFF\n"},
    {"SetDelayCycles", [](ORVA::InstBase& supply) { return supply.SetDelayCycles(-3); }, ":DELAY:CYCLEs -3\n"},
    {"SetDelayEndState", [](ORVA::InstBase& supply) { return supply.SetDelayEndState(ORVA::DelayEndState::Last); }, ":DELAY:ENDState LAST\n"},
    {"InsertDelayGroup", [](ORVA::InstBase& supply) { return supply.InsertDelayGroup(512); }, ":DELAY:GROUP:INSert 512\n"},
    {"DeleteDelayGroup", [](ORVA::InstBase& supply) { return supply.DeleteDelayGroup(0); }, ":DELAY:GROUP:DELete 0\n"},
    {"ClearDelayGroups", [](ORVA::InstBase& supply) { return supply.ClearDelayGroups(); }, ":DELAY:GROUP:CLEar\n"},
    {"SetDelayGroup", [](ORVA::InstBase& supply) { return supply.SetDelayGroup(511U, false, 1.25); }, ":DELAY:GROUP:PARAmeter 511,OFF,1.250000\n"},
    {"SetDelayGenerateMode", [](ORVA::InstBase& supply) { return supply.SetDelayGenerateMode(ORVA::DelayGenerateMode::Increase); }, ":DELAY:GENerate:SELect INC\n"},
    {"SetDelayPattern", [](ORVA::InstBase& supply) { return supply.SetDelayPattern(ORVA::DelayPattern::OnFirst); }, ":DELAY:GENerate:PATT 10P\n"},
    {"SetDelayGeneratePoints", [](ORVA::InstBase& supply) { return supply.SetDelayGeneratePoints(0); }, ":DELAY:GENerate:POINTs 0\n"},
    {"SetDelayOnTime", [](ORVA::InstBase& supply) { return supply.SetDelayOnTime(0.5); }, ":DELAY:GENerate:TIMe:ON 0.500000\n"},
    {"SetDelayOffTime", [](ORVA::InstBase& supply) { return supply.SetDelayOffTime(3.3); }, ":DELAY:GENerate:TIMe:OFF 3.300000\n"},
    {"SetDelayBaseTime", [](ORVA::InstBase& supply) { return supply.SetDelayBaseTime(5.5); }, ":DELAY:GENerate:TIMe:BASE 5.500000\n"},
    {"SetDelayStepTime", [](ORVA::InstBase& supply) { return supply.SetDelayStepTime(2.0); }, ":DELAY:GENerate:TIMe:STEP 2.000000\n"},
    {"ConstructDelayGroups", [](ORVA::InstBase& supply) { return supply.ConstructDelayGroups(3U); }, ":DELAY:GENerate:CONSTruct 3\n"},
    {"SetTriggerInputEnabled", [](ORVA::InstBase& supply) { return supply.SetTriggerInputEnabled(ORVA::TriggerInput::D3, true); }, ":TRIG:IN:ENAB D3,ON\n"},
};
// clang-format on

/// The names of the operations that inst_base.h declares for commands: every virtual function with a status, except
/// those that tarnex_supply_test.cpp and simulator_test.cpp test one by one.
inline std::set<std::string> DeclaredCommands() {
    const std::set<std::string> others{"Open",
                                       "Close",
                                       "SetTimeout",
                                       "Reopen",
                                       "VerifyIdentity",
                                       "WriteRaw",
                                       "QueryRaw",
                                       "SendClear",
                                       "SendReset",
                                       "SetAllOutputsOff",
                                       "QueryError",
                                       "QueryEventStatus",
                                       "QueryQuestionableCondition",
                                       "QueryQuestionableEvent"};
    const std::string marker = "virtual ViStatus ";
    std::set<std::string> names;
    std::ifstream header(INST_BASE_HEADER);
    for (std::string line; std::getline(header, line);) {
        if (const auto at = line.find(marker); at != std::string::npos) {
            const auto name = line.substr(at + marker.size(), line.find('(', at) - at - marker.size());
            if (others.count(name) == 0) {
                names.insert(name);
            }
        }
    }
    return names;
}

} // namespace unit
