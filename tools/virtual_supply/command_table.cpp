#include "tools/virtual_supply/command_table.h"

#include <array>
#include <map>
#include <string>
#include <type_traits>
#include <utility>

namespace virtual_supply {

namespace {

using enum ChannelIn;
using S = ChannelSettings;
using C = CommonSettings;
using L = ListTemplate;
using D = DelayTemplate;
using I = Instrument;

constexpr Kind kGroupIndex = Integer({0, kMostGroups - 1});
constexpr Kind kPlace = Integer({0, kMostGroups});
constexpr Kind kGroupTime = Real(kGroupTimeLimits);
constexpr Kind kCycles = Integer({0, 99999});
constexpr Kind kLevel = Real(Range{0.0, kVoltageLimits[0].maximum});
constexpr Kind kListVolts = Real(kVoltageLimits[0]);
constexpr Kind kListAmperes = Real(kCurrentLimits[0]);

const std::vector<Setting>& Settings() {
    static const std::vector<Setting> kSettings{
        {":INST:SELE", kNone, Word(kChannels), &C::selected_channel},
        {":SOUR:BLE", kNone, kBoolean, &C::bleeder},

        {":SOUR#:VOLT", kHeader, kVolts, &S::voltage},
        {":SOUR#:VOLT:PROT", kHeader, kVolts, &S::ovp_level},
        {":SOUR#:VOLT:PROT:STAT", kHeader, kBoolean, &S::ovp_enabled},
        {":SOUR#:VOLT:SENS", kHeader, kBoolean, &S::remote_sense},
        {":SOUR#:CURR", kHeader, kAmperes, &S::current},
        {":SOUR#:CURR:PROT", kHeader, kAmperes, &S::ocp_level},
        {":SOUR#:CURR:PROT:STAT", kHeader, kBoolean, &S::ocp_enabled},
        {":SOUR#:CURR:PROT:DEL", kHeader, kSeconds, &S::ocp_delay},
        {":SOUR#:CURR:PROT:DEL:MODE", kHeader, Word(kProtectionDelayModes), &S::ocp_delay_mode},

        {":OUTP:STAT", kWord, kBoolean, &S::output},
        {":OUTP:OVP:VAL", kWord, kVolts, &S::ovp_level},
        {":OUTP:OVP:STAT", kWord, kBoolean, &S::ovp_enabled},
        {":OUTP:OCP:VAL", kWord, kAmperes, &S::ocp_level},
        {":OUTP:OCP:STAT", kWord, kBoolean, &S::ocp_enabled},
        {":OUTP:OCP:DEL", kWord, kSeconds, &S::ocp_delay},
        {":OUTP:OCP:DEL:MODE", kWord, Word(kProtectionDelayModes), &S::ocp_delay_mode},
        {":OUTP:PONS:STAT", kWord, Word(kPowerOnStates), &S::power_on_state},
        {":OUTP:PAIR", kWord, Word(kPairModes), &S::pair_mode},
        {":OUTP:SENS:STAT", kWord, kBoolean, &S::remote_sense},
        {":OUTP:TRAC:STAT", kWord, kBoolean, &S::tracking},
        {":OUTP:OFFM", kWord, Word(kOffModes), &S::off_mode},

        {":MEAS:CURR:RANG", kWord, Word(kCurrentRanges), &S::current_range},
        {":MEAS:CURR:RATE", kWord, Word(kCurrentRates), &S::current_rate},

        {":LIST:STAT", kNone, kBoolean, &C::list_enabled},
        {":LIST:CYCLE", kNone, kCycles, &C::list_cycles},
        {":LIST:ENDS", kNone, Word(kListEndStates), &C::list_end_state},
        {":LIST:TEMP:SEL", kNone, Word(kListShapes), &L::shape},
        {":LIST:TEMP:MAXV", kNone, kLevel, &L::maximum},
        {":LIST:TEMP:MINV", kNone, kLevel, &L::minimum},
        {":LIST:TEMP:PERI", kNone, kGroupTime, &L::period},
        {":LIST:TEMP:INTE", kNone, kGroupTime, &L::interval},
        {":LIST:TEMP:CYCLE", kNone, kCycles, &L::cycles},
        {":LIST:TEMP:INVE", kNone, kBoolean, &L::inverted},
        {":LIST:TEMP:WIDT", kNone, kGroupTime, &L::width},
        {":LIST:TEMP:PULSECount", kNone, Integer({1, 256}), &L::pulse_count},
        {":LIST:TEMP:SYMM", kNone, Integer({0, 100}), &L::symmetry},
        {":LIST:TEMP:STAI", kNone, Integer({1, kMostGroups}), &L::stairs},
        {":LIST:TEMP:EXPP", kNone, Integer({1, 512}), &L::exp_power},
        {":LIST:TEMP:EXPR", kNone, Integer({0, 10}), &L::exp_rate},

        {":DELAY:STATe", kNone, kBoolean, &C::delay_enabled},
        {":DELAY:CYCLEs", kNone, kCycles, &C::delay_cycles},
        {":DELAY:ENDState", kNone, Word(kDelayEndStates), &C::delay_end_state},
        {":DELAY:GENerate:SELect", kNone, Word(kDelayModes), &D::mode},
        {":DELAY:GENerate:PATT", kNone, Word(kDelayPatterns), &D::pattern},
        {":DELAY:GENerate:POINTs", kNone, Integer({1, kMostGroups}), &D::points},
        {":DELAY:GENerate:TIMe:ON", kNone, kGroupTime, &D::on_time},
        {":DELAY:GENerate:TIMe:OFF", kNone, kGroupTime, &D::off_time},
        {":DELAY:GENerate:TIMe:BASE", kNone, kGroupTime, &D::base_time},
        {":DELAY:GENerate:TIMe:STEP", kNone, kGroupTime, &D::step_time},
    };
    return kSettings;
}

const std::vector<Operation>& Operations() {
    static const std::vector<Operation> kOperations{
        {"*IDN?", kNone, {}, {kText}, &I::Identify},
        {"*CLS", kNone, {}, {}, &I::Clear},
        {"*RST", kNone, {}, {}, &I::Reset},
        {"*ESR?", kNone, {}, {kInteger}, &I::EventStatus},
        {"*OPC?", kNone, {}, {kInteger}, &I::OperationComplete},
        {":SYSTem:ERRor?", kNone, {}, {kInteger, kText}, &I::NextError},
        {":STATus:QUEStionable:INSTrument:ISUMmary#:CONDition?", kHeader, {}, {kInteger}, &I::QuestionableCondition},
        {":STATus:QUEStionable:INSTrument:ISUMmary#:EVENt?", kHeader, {}, {kInteger}, &I::QuestionableEvent},

        {":OUTPut:STATe", kNone, {Word(kAllChannels), kBoolean}, {}, &I::SwitchAllOutputs},
        {":OUTP:CVCC?", kWord, {}, {Word(kRegulationModes)}, &I::RegulationMode},

        {":MEAS:VOLT?", kWord, {}, {kReading}, &I::MeasureVoltage},
        {":MEAS:CURR?", kWord, {}, {kReading}, &I::MeasureCurrent},
        {":MEAS:POWE?", kWord, {}, {kReading}, &I::MeasurePower},
        {":MEAS:ALL?", kWord, {}, {kReading, kReading, kReading}, &I::MeasureAll},

        {":LIST:STATUS?", kNone, {}, {Word(kListStates), kReading, kInteger, kInteger}, &I::ListStatus},
        {":LIST:GROUP:NUM?", kNone, {}, {kInteger}, &I::ListGroupCount},
        {":LIST:GROUP:INS", kNone, {kPlace}, {}, &I::InsertListGroup},
        {":LIST:GROUP:DEL", kNone, {kGroupIndex}, {}, &I::DeleteListGroup},
        {":LIST:GROUP:CLE", kNone, {}, {}, &I::ClearListGroups},
        {":LIST:GROUP:PARA", kNone, {kGroupIndex, kListVolts, kListAmperes, kGroupTime}, {}, &I::SetListGroup},
        {":LIST:GROUP:PARA?", kNone, {kGroupIndex}, {kReading, kReading, kReading}, &I::GetListGroup},
        {":LIST:TEMP:OBJ", kNone, {Word(kListObjects), kLevel}, {}, &I::SetListObject},
        {":LIST:TEMP:OBJ?", kNone, {}, {Word(kListObjects), kReading}, &I::GetListObject},
        {":LIST:TEMP:POINTs?", kNone, {}, {kInteger}, &I::ListTemplatePoints},
        {":LIST:TEMP:CONSTruct", kNone, {kPlace}, {}, &I::ConstructList},

        {":DELAY:STATUS?", kNone, {}, {Word(kDelayStates), kReading, kInteger, kInteger}, &I::DelayStatus},
        {":DELAY:GROUP:NUM?", kNone, {}, {kInteger}, &I::DelayGroupCount},
        {":DELAY:GROUP:INSert", kNone, {kPlace}, {}, &I::InsertDelayGroup},
        {":DELAY:GROUP:DELete", kNone, {kGroupIndex}, {}, &I::DeleteDelayGroup},
        {":DELAY:GROUP:CLEar", kNone, {}, {}, &I::ClearDelayGroups},
        {":DELAY:GROUP:PARAmeter", kNone, {kGroupIndex, kBoolean, kGroupTime}, {}, &I::SetDelayGroup},
        {":DELAY:GROUP:PARAmeter?", kNone, {kGroupIndex}, {kBoolean, kReading}, &I::GetDelayGroup},
        {":DELAY:GENerate:CONSTruct", kNone, {kPlace}, {}, &I::ConstructDelay},

        {":TRIG:IN:ENAB", kNone, {Word(kTriggerInputs), kBoolean}, {}, &I::EnableTriggerInput},
        {":TRIG:IN:ENAB?", kNone, {Word(kTriggerInputs)}, {kBoolean}, &I::TriggerInputEnabled},
    };
    return kOperations;
}

template <class Type>
Type& Field(Instrument& instrument, int channel, Type ChannelSettings::*member) {
    return instrument.channel(channel).settings.*member;
}

template <class Type>
Type& Field(Instrument& instrument, int /*channel*/, Type CommonSettings::*member) {
    return instrument.common.*member;
}

template <class Type>
Type& Field(Instrument& instrument, int /*channel*/, Type ListTemplate::*member) {
    return instrument.list_template.*member;
}

template <class Type>
Type& Field(Instrument& instrument, int /*channel*/, Type DelayTemplate::*member) {
    return instrument.delay_template.*member;
}

struct HeaderOrder {
    using is_transparent = void;
    bool operator()(std::string_view left, std::string_view right) const { return LessIgnoringCase(left, right); }
};

using Index = std::map<std::string, Command, HeaderOrder>;

void Add(Index& index, const std::string& header, Command command) {
    if (command.channel_in != ChannelIn::kHeader) {
        index.emplace(header, std::move(command));
        return;
    }
    const auto place = header.find('#');
    for (command.channel = 1; command.channel <= kChannelCount; ++command.channel) {
        std::string numbered = header;
        index.emplace(numbered.replace(place, 1, std::to_string(command.channel)), command);
    }
}

Index BuildIndex() {
    Index index;
    for (const Setting& setting : Settings()) {
        const std::string header(setting.header);
        Add(index, header, {setting.channel_in, 0, {setting.kind}, {}, &setting, nullptr});
        Add(index, header + '?', {setting.channel_in, 0, {}, {setting.kind}, &setting, nullptr});
    }
    for (const Operation& operation : Operations()) {
        Add(index, std::string(operation.header),
            {operation.channel_in, 0, operation.arguments, operation.reply, nullptr, &operation});
    }
    return index;
}

} // namespace

void Setting::Store(Instrument& instrument, const Arguments& arguments) const {
    std::visit(
        [&](auto pointer) {
            auto& field = Field(instrument, arguments.channel, pointer);
            field = static_cast<std::remove_reference_t<decltype(field)>>(arguments.values.at(0));
        },
        member);
}

Value Setting::Load(Instrument& instrument, const Arguments& arguments) const {
    return std::visit([&](auto pointer) { return static_cast<double>(Field(instrument, arguments.channel, pointer)); },
                      member);
}

Reply Command::Run(Instrument& instrument, const Arguments& given) const {
    if (operation != nullptr) {
        return (instrument.*operation->run)(given);
    }
    if (reply.empty()) {
        setting->Store(instrument, given);
        return {};
    }
    return {setting->Load(instrument, given)};
}

const Command* FindCommand(std::string_view header) {
    static const Index kIndex = BuildIndex();
    const auto found = kIndex.find(header);
    return found == kIndex.end() ? nullptr : &found->second;
}

} // namespace virtual_supply
