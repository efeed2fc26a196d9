// From a C function to an operation of the command layer: the types of the operation's parameters decide how arguments
// are converted and checked. An export is one line:
//
//     ViStatus _VI_FUNC TARNEXSupply_GetVoltage(ViSession vi, ViConstString channelName, ViReal64* volts) {
//         return OnChannel<&InstBase::GetVoltage>({vi, __func__, "volts"}, channelName, volts);
//     }
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <string_view>
#include <tuple>
#include <type_traits>

#include "include/TARNEX_supply.h"
#include "supply/session_call.h"
#include "text/characters.h"

namespace supply {

/// The export that runs: its session, its name, and the names of its results for the description of a null pointer.
struct Export {
    ViSession vi;
    const char* function;
    std::string_view results{};
};

/// The position of a group, counted from 0.
struct Index {
    ViInt32 value;
};

/// An argument of an operation that the caller gives.
template <typename Parameter, typename Argument>
class Input {
  public:
    explicit Input(Argument argument) : argument_(argument) {}

    [[nodiscard]] bool IsValid() const {
        if constexpr (std::is_same_v<Argument, Index>) {
            return argument_.value >= 0;
        } else if constexpr (std::is_same_v<Parameter, double>) {
            return std::isfinite(argument_);
        } else if constexpr (ORVA::KeywordEnumeration<Parameter>) {
            const auto& table = ORVA::kKeywords<Parameter>;
            return std::any_of(table.begin(), table.end(),
                               [&](const auto& row) { return static_cast<ViInt32>(row.value) == argument_; });
        } else {
            return true;
        }
    }
    [[nodiscard]] Parameter Value() const {
        if constexpr (std::is_same_v<Argument, Index>) {
            return static_cast<Parameter>(argument_.value);
        } else if constexpr (std::is_same_v<Parameter, bool>) {
            return argument_ != VI_FALSE;
        } else {
            return static_cast<Parameter>(argument_);
        }
    }
    void Store() const {}

  private:
    Argument argument_;
};

/// A result of an operation, stored after it has succeeded.
template <typename Parameter, typename Argument>
class Output {
  public:
    explicit Output(Argument* argument) : argument_(argument) {}

    [[nodiscard]] bool IsValid() const { return true; }
    [[nodiscard]] Parameter& Value() { return value_; }
    void Store() const {
        if constexpr (std::is_same_v<Parameter, bool>) {
            *argument_ = value_ ? VI_TRUE : VI_FALSE;
        } else {
            *argument_ = static_cast<Argument>(value_);
        }
    }

  private:
    Parameter value_{};
    Argument* argument_;
};

template <typename Parameter, typename Argument>
struct HolderOf {
    using Type = Input<Parameter, Argument>;
};
template <typename Parameter, typename Argument>
struct HolderOf<Parameter&, Argument*> {
    using Type = Output<Parameter, Argument>;
};

/// Holds the arguments of an operation, in the order of its parameters.
template <typename... Parameters, typename... Arguments>
auto Hold(ViStatus (ORVA::InstBase::* /*operation*/)(Parameters...), Arguments... arguments) {
    static_assert(sizeof...(Parameters) == sizeof...(Arguments));
    return std::tuple<typename HolderOf<Parameters, Arguments>::Type...>{arguments...};
}

template <typename Holders>
bool AreValid(const Holders& holders) {
    return std::apply([](const auto&... holder) { return (holder.IsValid() && ...); }, holders);
}

template <auto kOperation, typename Holders>
ViStatus Invoke(ORVA::InstBase& instrument, Holders& holders) {
    return std::apply([&](auto&... holder) { return (instrument.*kOperation)(holder.Value()...); }, holders);
}

template <typename Holders>
void StoreResults(const Holders& holders) {
    std::apply([](const auto&... holder) { (holder.Store(), ...); }, holders);
}

template <typename... Arguments>
ViStatus CheckResults(const Export& call, const Arguments&... arguments) {
    [[maybe_unused]] const auto pointer = [](const auto& argument) -> const void* {
        if constexpr (std::is_pointer_v<std::remove_cvref_t<decltype(argument)>>) {
            return argument;
        } else {
            return &argument; // an input is never null
        }
    };
    // Results follow the inputs in every function, so the names of the inputs are skipped by position.
    constexpr std::ptrdiff_t kInputs = (std::ptrdiff_t{0} + ... + (std::is_pointer_v<Arguments> ? 0 : 1));
    const std::array<const void*, sizeof...(arguments) + 1> all{pointer(arguments)..., &call};
    const auto* const null = std::find(all.begin() + kInputs, all.end(), nullptr);
    if (null == all.end()) {
        return VI_SUCCESS;
    }
    std::string_view name = call.results;
    auto position = null - (all.begin() + kInputs);
    text::ForEachElement(call.results, ',', [&](std::string_view element) {
        if (position-- == 0) {
            name = text::Trim(element);
        }
    });
    return nrt2::SetErrorInfo(call.vi, IVI_ERROR_NULL_POINTER, call.function, name);
}

/// List and delay mode drive this channel only.
constexpr ViUInt32 kSequenceChannel = 1;

using ChannelList = std::array<ViUInt32, TARNEXSUPPLY_CHANNEL_COUNT>;

/// Checks the arguments, runs the operation and stores the results.
template <auto kOperation, typename... Arguments>
ViStatus RunOperation(SupplySession& session, Arguments... arguments) {
    auto holders = Hold(kOperation, arguments...);
    if (!AreValid(holders)) {
        return nrt2::SetErrorInfo(session.Handle(), DRIVER_ERROR_INVALID_PARAMETER);
    }
    const auto status =
        ExchangeOn(session, [&](SupplySession& target) { return Invoke<kOperation>(target.Instrument(), holders); });
    if (status >= 0) {
        StoreResults(holders);
    }
    return status;
}

/// Runs an operation of the supply as a whole.
template <auto kOperation, typename... Arguments>
ViStatus OnSupply(const Export& call, Arguments... arguments) noexcept {
    return OnSession(call.vi, [&](SupplySession& session) -> ViStatus {
        const auto status = CheckResults(call, arguments...);
        return status < 0 ? status : RunOperation<kOperation>(session, arguments...);
    });
}

/// Runs an operation on exactly one channel.
template <auto kOperation, typename... Arguments>
ViStatus OnChannel(const Export& call, ViConstString selector, Arguments... arguments) noexcept {
    return OnSession(call.vi, [&](SupplySession& session) -> ViStatus {
        ChannelList channels{};
        ViUInt32 count = 0;
        auto status = CheckResults(call, arguments...);
        if (status >= 0) {
            status = session.Driver().expand(session.Object(), selector, VI_TRUE, channels.data(),
                                             static_cast<ViUInt32>(channels.size()), &count);
        }
        return status < 0 ? status : RunOperation<kOperation>(session, channels[0], arguments...);
    });
}

/// Runs an operation without results on each selected channel, in the order of the selector, until one fails.
template <auto kOperation, typename... Arguments>
ViStatus OnChannels(const Export& call, ViConstString selector, Arguments... arguments) noexcept {
    return OnSession(call.vi, [&](SupplySession& session) -> ViStatus {
        ChannelList channels{};
        ViUInt32 count = 0;
        const auto status = session.Driver().expand(session.Object(), selector, VI_FALSE, channels.data(),
                                                    static_cast<ViUInt32>(channels.size()), &count);
        if (status < 0) {
            return status;
        }
        if (!AreValid(Hold(kOperation, channels[0], arguments...))) {
            return nrt2::SetErrorInfo(session.Handle(), DRIVER_ERROR_INVALID_PARAMETER);
        }
        return ExchangeOn(session, [&](SupplySession& target) {
            ViStatus result = VI_SUCCESS;
            for (ViUInt32 i = 0; i < count && result >= 0; ++i) {
                auto holders = Hold(kOperation, channels[i], arguments...);
                result = Invoke<kOperation>(target.Instrument(), holders);
            }
            return result;
        });
    });
}

} // namespace supply
