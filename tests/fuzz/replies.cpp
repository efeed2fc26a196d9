// Replies of any bytes to every query of the command layer. Each ends in a value, a status, or an exception with one of
// the texts for malformed replies. An input is the name of a query, a line feed and the reply.
#include <algorithm>
#include <array>
#include <cstdio>
#include <numeric>
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

struct NamedQuery {
    std::string_view name;
    ViStatus (*call)(InstBase& supply);
};

// clang-format off
#define QUERY(name) NamedQuery{#name, Query<&InstBase::name>}
// clang-format on
constexpr std::array kQueries{
    QUERY(QueryEventStatus),
    QUERY(QueryQuestionableCondition),
    QUERY(QueryQuestionableEvent),
    QUERY(QueryError),
    QUERY(GetSelectedChannel),
    QUERY(GetBleeder),
    QUERY(GetVoltage),
    QUERY(GetOverVoltageLevel),
    QUERY(GetOverVoltageEnabled),
    QUERY(GetRemoteSense),
    QUERY(GetCurrent),
    QUERY(GetOverCurrentLevel),
    QUERY(GetOverCurrentEnabled),
    QUERY(GetOverCurrentDelay),
    QUERY(GetOverCurrentDelayMode),
    QUERY(GetOutputEnabled),
    QUERY(GetRegulationMode),
    QUERY(GetOvpLevel),
    QUERY(GetOvpEnabled),
    QUERY(GetOcpLevel),
    QUERY(GetOcpEnabled),
    QUERY(GetOcpDelay),
    QUERY(GetOcpDelayMode),
    QUERY(GetPowerOnState),
    QUERY(GetPairMode),
    QUERY(GetOutputSense),
    QUERY(GetTracking),
    QUERY(GetOffMode),
    QUERY(MeasureAll),
    QUERY(MeasureVoltage),
    QUERY(MeasureCurrent),
    QUERY(MeasurePower),
    QUERY(GetCurrentRange),
    QUERY(GetCurrentRate),
    QUERY(GetListEnabled),
    QUERY(GetListStatus),
    QUERY(GetListCycles),
    QUERY(GetListEndState),
    QUERY(GetListGroupCount),
    QUERY(GetListGroup),
    QUERY(GetListTemplate),
    QUERY(GetListTemplateObject),
    QUERY(GetListTemplateMax),
    QUERY(GetListTemplateMin),
    QUERY(GetListTemplatePeriod),
    QUERY(GetListTemplateInterval),
    QUERY(GetListTemplateCycles),
    QUERY(GetListTemplateInverted),
    QUERY(GetListTemplateWidth),
    QUERY(GetListTemplatePulseCount),
    QUERY(GetListTemplateSymmetry),
    QUERY(GetListTemplateStairs),
    QUERY(GetListTemplateExpPower),
    QUERY(GetListTemplateExpRate),
    QUERY(GetListTemplatePoints),
    QUERY(GetDelayEnabled),
    QUERY(GetDelayStatus),
    QUERY(GetDelayCycles),
    QUERY(GetDelayEndState),
    QUERY(GetDelayGroupCount),
    QUERY(GetDelayGroup),
    QUERY(GetDelayGenerateMode),
    QUERY(GetDelayPattern),
    QUERY(GetDelayGeneratePoints),
    QUERY(GetDelayOnTime),
    QUERY(GetDelayOffTime),
    QUERY(GetDelayBaseTime),
    QUERY(GetDelayStepTime),
    QUERY(GetTriggerInputEnabled),
};
#undef QUERY

/// The query of this name. Any other text selects a query too, so that a mutated name still reaches one.
const NamedQuery& QueryOf(std::string_view text) {
    const auto* const named =
        std::find_if(kQueries.begin(), kQueries.end(), [=](const NamedQuery& query) { return query.name == text; });
    if (named != kQueries.end()) {
        return *named;
    }
    const auto sum = std::accumulate(text.begin(), text.end(), std::size_t{0},
                                     [](std::size_t all, char c) { return all + static_cast<unsigned char>(c); });
    return kQueries[sum % kQueries.size()];
}

bool IsMalformed(std::string_view text) {
    return text == "invalid stoi argument" || text == "invalid stol argument" || text == "invalid stod argument" ||
           text.starts_with("Visa::parseBool Unknown ret:");
}

bool IsOutOfRange(std::string_view text) {
    return text == "stoi argument out of range" || text == "stol argument out of range" ||
           text == "stod argument out of range" || text == "invalid vector subscript";
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // The command layer prints the number of fields that it expects.
    // NOLINTNEXTLINE(cppcoreguidelines-owning-memory): the process owns standard output
    [[maybe_unused]] static auto* const silenced = std::freopen("/dev/null", "w", stdout);
    const auto input = fuzz::ByteSource(data, size).Rest();
    const auto lineEnd = std::min(input.find('\n'), input.size());
    const auto& query = QueryOf(std::string_view(input).substr(0, lineEnd));
    const auto reply = input.substr(std::min(lineEnd + 1, input.size()));
    for (const auto* resource : {"USB0::1::2::3::INSTR", "TCPIP0::192.0.2.7::5025::SOCKET"}) {
        doubles::TheScript().Reset();
        doubles::TheVisa().Reset();
        ORVA::TARNEX supply;
        fuzz::Require(supply.Open({.resource = resource}) >= 0, "the supply opens");
        doubles::TheVisa().ReplyToAll(reply);
        try {
            query.call(supply);
        } catch (const std::invalid_argument& error) {
            fuzz::Require(IsMalformed(error.what()), "an invalid argument has one of the known texts");
        } catch (const std::out_of_range& error) {
            fuzz::Require(IsOutOfRange(error.what()), "a value out of range has one of the known texts");
        }
    }
    return 0;
}
