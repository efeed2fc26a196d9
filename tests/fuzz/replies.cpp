// Replies of any bytes to every query of the command layer: a value, a status, or one of the exceptions that say how a
// reply is malformed.
#include <cstdio>
#include <stdexcept>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>

#include "instrument/tarnex_supply.h"
#include "tests/doubles/script.h"
#include "tests/doubles/visa_double.h"
#include "tests/fuzz/byte_source.h"

namespace {

using ORVA::InstBase;

/// Every argument is 1 of its type (channel 1, trigger input D1), every output starts as 1.
template <typename T>
T One() {
    if constexpr (std::is_same_v<T, std::string>) {
        return "1";
    } else {
        return static_cast<T>(1);
    }
}

template <typename... Arguments>
ViStatus CallWithOnes(InstBase& supply, ViStatus (InstBase::*query)(Arguments...)) {
    std::tuple<std::remove_cvref_t<Arguments>...> arguments{One<std::remove_cvref_t<Arguments>>()...};
    return std::apply([&](auto&... each) { return (supply.*query)(each...); }, arguments);
}

template <auto kQuery>
ViStatus Query(InstBase& supply) {
    return CallWithOnes(supply, kQuery);
}

// clang-format off
constexpr ViStatus (*kQueries[])(InstBase&) = {Query<&InstBase::QueryEventStatus>,
                                               Query<&InstBase::QueryQuestionableCondition>,
                                               Query<&InstBase::QueryQuestionableEvent>,
                                               Query<&InstBase::QueryError>,
                                               Query<&InstBase::GetSelectedChannel>,
                                               Query<&InstBase::GetBleeder>,
                                               Query<&InstBase::GetVoltage>,
                                               Query<&InstBase::GetOverVoltageLevel>,
                                               Query<&InstBase::GetOverVoltageEnabled>,
                                               Query<&InstBase::GetRemoteSense>,
                                               Query<&InstBase::GetCurrent>,
                                               Query<&InstBase::GetOverCurrentLevel>,
                                               Query<&InstBase::GetOverCurrentEnabled>,
                                               Query<&InstBase::GetOverCurrentDelay>,
                                               Query<&InstBase::GetOverCurrentDelayMode>,
                                               Query<&InstBase::GetOutputEnabled>,
                                               Query<&InstBase::GetRegulationMode>,
                                               Query<&InstBase::GetOvpLevel>,
                                               Query<&InstBase::GetOvpEnabled>,
                                               Query<&InstBase::GetOcpLevel>,
                                               Query<&InstBase::GetOcpEnabled>,
                                               Query<&InstBase::GetOcpDelay>,
                                               Query<&InstBase::GetOcpDelayMode>,
                                               Query<&InstBase::GetPowerOnState>,
                                               Query<&InstBase::GetPairMode>,
                                               Query<&InstBase::GetOutputSense>,
                                               Query<&InstBase::GetTracking>,
                                               Query<&InstBase::GetOffMode>,
                                               Query<&InstBase::MeasureAll>,
                                               Query<&InstBase::MeasureVoltage>,
                                               Query<&InstBase::MeasureCurrent>,
                                               Query<&InstBase::MeasurePower>,
                                               Query<&InstBase::GetCurrentRange>,
                                               Query<&InstBase::GetCurrentRate>,
                                               Query<&InstBase::GetListEnabled>,
                                               Query<&InstBase::GetListStatus>,
                                               Query<&InstBase::GetListCycles>,
                                               Query<&InstBase::GetListEndState>,
                                               Query<&InstBase::GetListGroupCount>,
                                               Query<&InstBase::GetListGroup>,
                                               Query<&InstBase::GetListTemplate>,
                                               Query<&InstBase::GetListTemplateObject>,
                                               Query<&InstBase::GetListTemplateMax>,
                                               Query<&InstBase::GetListTemplateMin>,
                                               Query<&InstBase::GetListTemplatePeriod>,
                                               Query<&InstBase::GetListTemplateInterval>,
                                               Query<&InstBase::GetListTemplateCycles>,
                                               Query<&InstBase::GetListTemplateInverted>,
                                               Query<&InstBase::GetListTemplateWidth>,
                                               Query<&InstBase::GetListTemplatePulseCount>,
                                               Query<&InstBase::GetListTemplateSymmetry>,
                                               Query<&InstBase::GetListTemplateStairs>,
                                               Query<&InstBase::GetListTemplateExpPower>,
                                               Query<&InstBase::GetListTemplateExpRate>,
                                               Query<&InstBase::GetListTemplatePoints>,
                                               Query<&InstBase::GetDelayEnabled>,
                                               Query<&InstBase::GetDelayStatus>,
                                               Query<&InstBase::GetDelayCycles>,
                                               Query<&InstBase::GetDelayEndState>,
                                               Query<&InstBase::GetDelayGroupCount>,
                                               Query<&InstBase::GetDelayGroup>,
                                               Query<&InstBase::GetDelayGenerateMode>,
                                               Query<&InstBase::GetDelayPattern>,
                                               Query<&InstBase::GetDelayGeneratePoints>,
                                               Query<&InstBase::GetDelayOnTime>,
                                               Query<&InstBase::GetDelayOffTime>,
                                               Query<&InstBase::GetDelayBaseTime>,
                                               Query<&InstBase::GetDelayStepTime>,
                                               Query<&InstBase::GetTriggerInputEnabled>};

bool IsMalformedInteger(std::string_view text) {
    return text == "invalid stoi argument" || text == "invalid stol argument" || text == "invalid stod argument" ||
           text.starts_with("Visa::parseBool Unknown ret:");
}

bool IsBeyondItsType(std::string_view text) {
    return text == "stoi argument out of range" || text == "stol argument out of range" ||
           text == "stod argument out of range" || text == "invalid vector subscript";
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // The command layer announces the fields that it expects; nobody wants to read that here.
    // NOLINTNEXTLINE(cppcoreguidelines-owning-memory): standard output is the process's
    [[maybe_unused]] static auto* const silenced = std::freopen("/dev/null", "w", stdout);
    fuzz::ByteSource source(data, size);
    doubles::TheScript().Reset();
    doubles::TheVisa().Reset();
    ORVA::TARNEX supply;
    const bool socket = source.Flag();
    const auto query = source.Below(std::size(kQueries));
    const auto reply = source.Rest();
    const auto opened = supply.Open({.resource = socket ? "TCPIP0::192.0.2.7::5025::SOCKET" : "USB0::1::2::3::INSTR"});
    fuzz::Require(opened >= 0, "the supply opens");
    doubles::TheVisa().ReplyToAll(reply);
    try {
        kQueries[query](supply);
    } catch (const std::invalid_argument& error) {
        fuzz::Require(IsMalformedInteger(error.what()), "an invalid argument is told of in its text");
    } catch (const std::out_of_range& error) {
        fuzz::Require(IsBeyondItsType(error.what()), "a value out of range is told of in its text");
    }
    return 0;
}
