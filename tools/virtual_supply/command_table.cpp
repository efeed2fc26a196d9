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

constexpr Kind kGroupIndex = Integer({0, kMaxGroups - 1});
constexpr Kind kPlace = Integer({0, kMaxGroups});
constexpr Kind kGroupTime = Real(kGroupTimeLimits);
constexpr Kind kCycles = Integer({0, 99999});
constexpr Kind kLevel = Real(Range{0.0, kVoltageLimits[0].maximum});
constexpr Kind kListVolts = Real(kVoltageLimits[0]);
constexpr Kind kListAmperes = Real(kCurrentLimits[0]);

const std::vector<Setting>& Settings() {
    static const std::vector<Setting> table{
        {":INST:SELE", None, Word(kChannels), &C::selectedChannel},
        {":SOUR:BLE", None, kBoolean, &C::bleeder},

        {":SOUR#:VOLT", Header, kVolts, &S::voltage},
        {":SOUR#:VOLT:PROT", Header, kVolts, &S::ovpLevel},
        {":SOUR#:VOLT:PROT:STAT", Header, kBoolean, &S::ovpEnabled},
        {":SOUR#:VOLT:SENS", Header, kBoolean, &S::remoteSense},
        {":SOUR#:CURR", Header, kAmperes, &S::current},
        {":SOUR#:CURR:PROT", Header, kAmperes, &S::ocpLevel},
        {":SOUR#:CURR:PROT:STAT", Header, kBoolean, &S::ocpEnabled},
        {":SOUR#:CURR:PROT:DEL", Header, kSeconds, &S::ocpDelay},
        {":SOUR#:CURR:PROT:DEL:MODE", Header, Word(kProtectionDelayModes), &S::ocpDelayMode},

        {":OUTP:STAT", FirstArgument, kBoolean, &S::output},
        {":OUTP:OVP:VAL", FirstArgument, kVolts, &S::ovpLevel},
        {":OUTP:OVP:STAT", FirstArgument, kBoolean, &S::ovpEnabled},
        {":OUTP:OCP:VAL", FirstArgument, kAmperes, &S::ocpLevel},
        {":OUTP:OCP:STAT", FirstArgument, kBoolean, &S::ocpEnabled},
        {":OUTP:OCP:DEL", FirstArgument, kSeconds, &S::ocpDelay},
        {":OUTP:OCP:DEL:MODE", FirstArgument, Word(kProtectionDelayModes), &S::ocpDelayMode},
        {":OUTP:PONS:STAT", FirstArgument, Word(kPowerOnStates), &S::powerOnState},
        {":OUTP:PAIR", FirstArgument, Word(kPairModes), &S::pairMode},
        {":OUTP:SENS:STAT", FirstArgument, kBoolean, &S::remoteSense},
        {":OUTP:TRAC:STAT", FirstArgument, kBoolean, &S::tracking},
        {":OUTP:OFFM", FirstArgument, Word(kOffModes), &S::offMode},

        {":MEAS:CURR:RANG", FirstArgument, Word(kCurrentRanges), &S::currentRange},
        {":MEAS:CURR:RATE", FirstArgument, Word(kCurrentRates), &S::currentRate},

        {":LIST:STAT", None, kBoolean, &C::listEnabled},
        {":LIST:CYCLE", None, kCycles, &C::listCycles},
        {":LIST:ENDS", None, Word(kListEndStates), &C::listEndState},
        {":LIST:TEMP:SEL", None, Word(kListShapes), &L::shape},
        {":LIST:TEMP:MAXV", None, kLevel, &L::maximum},
        {":LIST:TEMP:MINV", None, kLevel, &L::minimum},
        {":LIST:TEMP:PERI", None, kGroupTime, &L::period},
        {":LIST:TEMP:INTE", None, kGroupTime, &L::interval},
        {":LIST:TEMP:CYCLE", None, kCycles, &L::cycles},
        {":LIST:TEMP:INVE", None, kBoolean, &L::inverted},
        {":LIST:TEMP:WIDT", None, kGroupTime, &L::width},
        {":LIST:TEMP:PULSECount", None, Integer({1, 256}), &L::pulseCount},
        {":LIST:TEMP:SYMM", None, Integer({0, 100}), &L::symmetry},
        {":LIST:TEMP:STAI", None, Integer({1, kMaxGroups}), &L::stairs},
        {":LIST:TEMP:EXPP", None, Integer({1, 512}), &L::expPower},
        {":LIST:TEMP:EXPR", None, Integer({0, 10}), &L::expRate},

        {":DELAY:STATe", None, kBoolean, &C::delayEnabled},
        {":DELAY:CYCLEs", None, kCycles, &C::delayCycles},
        {":DELAY:ENDState", None, Word(kDelayEndStates), &C::delayEndState},
        {":DELAY:GENerate:SELect", None, Word(kDelayModes), &D::mode},
        {":DELAY:GENerate:PATT", None, Word(kDelayPatterns), &D::pattern},
        {":DELAY:GENerate:POINTs", None, Integer({1, kMaxGroups}), &D::points},
        {":DELAY:GENerate:TIMe:ON", None, kGroupTime, &D::onTime},
        {":DELAY:GENerate:TIMe:OFF", None, kGroupTime, &D::offTime},
        {":DELAY:GENerate:TIMe:BASE", None, kGroupTime, &D::baseTime},
        {":DELAY:GENerate:TIMe:STEP", None, kGroupTime, &D::stepTime},
    };
    return table;
}

const std::vector<Operation>& Operations() {
    static const std::vector<Operation> table{
        {"*IDN?", None, {}, {kText}, &I::Identify},
        {"*CLS", None, {}, {}, &I::Clear},
        {"*RST", None, {}, {}, &I::Reset},
        {"*ESR?", None, {}, {kInteger}, &I::EventStatus},
        {"*OPC?", None, {}, {kInteger}, &I::OperationComplete},
        {":SYSTem:ERRor?", None, {}, {kInteger, kText}, &I::NextError},
        {":STATus:QUEStionable:INSTrument:ISUMmary#:CONDition?", Header, {}, {kInteger}, &I::QuestionableCondition},
        {":STATus:QUEStionable:INSTrument:ISUMmary#:EVENt?", Header, {}, {kInteger}, &I::QuestionableEvent},

        {":OUTPut:STATe", None, {Word(kAllChannels), kBoolean}, {}, &I::SwitchAllOutputs},
        {":OUTP:CVCC?", FirstArgument, {}, {Word(kRegulationModes)}, &I::RegulationMode},

        {":MEAS:VOLT?", FirstArgument, {}, {kReading}, &I::MeasureVoltage},
        {":MEAS:CURR?", FirstArgument, {}, {kReading}, &I::MeasureCurrent},
        {":MEAS:POWE?", FirstArgument, {}, {kReading}, &I::MeasurePower},
        {":MEAS:ALL?", FirstArgument, {}, {kReading, kReading, kReading}, &I::MeasureAll},

        {":LIST:STATUS?", None, {}, {Word(kListStates), kReading, kInteger, kInteger}, &I::ListStatus},
        {":LIST:GROUP:NUM?", None, {}, {kInteger}, &I::ListGroupCount},
        {":LIST:GROUP:INS", None, {kPlace}, {}, &I::InsertListGroup},
        {":LIST:GROUP:DEL", None, {kGroupIndex}, {}, &I::DeleteListGroup},
        {":LIST:GROUP:CLE", None, {}, {}, &I::ClearListGroups},
        {":LIST:GROUP:PARA", None, {kGroupIndex, kListVolts, kListAmperes, kGroupTime}, {}, &I::SetListGroup},
        {":LIST:GROUP:PARA?", None, {kGroupIndex}, {kReading, kReading, kReading}, &I::GetListGroup},
        {":LIST:TEMP:OBJ", None, {Word(kListObjects), kLevel}, {}, &I::SetListObject},
        {":LIST:TEMP:OBJ?", None, {}, {Word(kListObjects), kReading}, &I::GetListObject},
        {":LIST:TEMP:POINTs?", None, {}, {kInteger}, &I::ListTemplatePoints},
        {":LIST:TEMP:CONSTruct", None, {kPlace}, {}, &I::ConstructList},

        {":DELAY:STATUS?", None, {}, {Word(kDelayStates), kReading, kInteger, kInteger}, &I::DelayStatus},
        {":DELAY:GROUP:NUM?", None, {}, {kInteger}, &I::DelayGroupCount},
        {":DELAY:GROUP:INSert", None, {kPlace}, {}, &I::InsertDelayGroup},
        {":DELAY:GROUP:DELete", None, {kGroupIndex}, {}, &I::DeleteDelayGroup},
        {":DELAY:GROUP:CLEar", None, {}, {}, &I::ClearDelayGroups},
        {":DELAY:GROUP:PARAmeter", None, {kGroupIndex, kBoolean, kGroupTime}, {}, &I::SetDelayGroup},
        {":DELAY:GROUP:PARAmeter?", None, {kGroupIndex}, {kBoolean, kReading}, &I::GetDelayGroup},
        {":DELAY:GENerate:CONSTruct", None, {kPlace}, {}, &I::ConstructDelay},

        {":TRIG:IN:ENAB", None, {Word(kTriggerInputs), kBoolean}, {}, &I::EnableTriggerInput},
        {":TRIG:IN:ENAB?", None, {Word(kTriggerInputs)}, {kBoolean}, &I::TriggerInputEnabled},
    };
    return table;
}

template <typename Type>
Type& Field(Instrument& instrument, int channel, Type ChannelSettings::*member) {
    return instrument.ChannelAt(channel).settings.*member;
}

template <typename Type>
Type& Field(Instrument& instrument, int /*channel*/, Type CommonSettings::*member) {
    return instrument.common.*member;
}

template <typename Type>
Type& Field(Instrument& instrument, int /*channel*/, Type ListTemplate::*member) {
    return instrument.listTemplate.*member;
}

template <typename Type>
Type& Field(Instrument& instrument, int /*channel*/, Type DelayTemplate::*member) {
    return instrument.delayTemplate.*member;
}

struct HeaderOrder {
    using is_transparent = void;
    bool operator()(std::string_view left, std::string_view right) const { return LessIgnoringCase(left, right); }
};

using Index = std::map<std::string, Command, HeaderOrder>;

void Add(Index& index, const std::string& header, Command command) {
    if (command.channelIn != ChannelIn::Header) {
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
        Add(index, header, {setting.channelIn, 0, {setting.kind}, {}, &setting, nullptr});
        Add(index, header + '?', {setting.channelIn, 0, {}, {setting.kind}, &setting, nullptr});
    }
    for (const Operation& operation : Operations()) {
        Add(index, std::string(operation.header),
            {operation.channelIn, 0, operation.arguments, operation.reply, nullptr, &operation});
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
    static const Index index = BuildIndex();
    const auto found = index.find(header);
    return found == index.end() ? nullptr : &found->second;
}

} // namespace virtual_supply
