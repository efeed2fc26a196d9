// The SCPI keywords of the command set: one table per enumeration.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <stdexcept>
#include <string_view>
#include <type_traits>

namespace ORVA {

// clang-format off
// Channel and TriggerInput count from 1, all others from 0.
enum class Channel : std::int32_t { CH1 = 1, CH2 };
enum class RegulationMode : std::int32_t { ConstantVoltage, ConstantCurrent };
enum class CurrentRange : std::int32_t { Auto, Low, High };
enum class CurrentRate : std::int32_t { Rate62, Rate4000, Rate8000 };
enum class TriggerInput : std::int32_t { D1 = 1, D2, D3, D4 };
enum class ProtectionDelayMode : std::int32_t { Any, SettingChange };
enum class PowerOnState : std::int32_t { Reset, Last, LastOff };
enum class PairMode : std::int32_t { Off, Series, Parallel };
enum class OffMode : std::int32_t { BleederOn, BleederOff };
enum class ListState : std::int32_t { Stopped, Ready, Running, Paused };
enum class ListEndState : std::int32_t { Off, Last };
enum class ListTemplate : std::int32_t { Sine, Pulse, Ramp, Up, Down, UpDown, Rise, Fall };
enum class ListTemplateObject : std::int32_t { Voltage, Current };
enum class DelayState : std::int32_t { Stopped, Running };
enum class DelayEndState : std::int32_t { Off, On, Last };
enum class DelayGenerateMode : std::int32_t { Fixed, Increase, Decrease };
enum class DelayPattern : std::int32_t { OffFirst, OnFirst };
// clang-format on

/// One value with its keywords. The first is sent, all are accepted in replies. Unused places are empty.
template <typename Enumeration>
struct Keywords {
    Enumeration value;
    std::array<std::string_view, 2> spellings;
};

/// The table of an enumeration, in ascending order of value.
template <typename Enumeration>
inline constexpr auto kKeywords = nullptr;

// clang-format off
template <> inline constexpr auto kKeywords<Channel> = std::to_array<Keywords<Channel>>({{Channel::CH1, {"CH1"}}, {Channel::CH2, {"CH2"}}});
template <> inline constexpr auto kKeywords<RegulationMode> = std::to_array<Keywords<RegulationMode>>({{RegulationMode::ConstantVoltage, {"CV"}}, {RegulationMode::ConstantCurrent, {"CC"}}});
template <> inline constexpr auto kKeywords<CurrentRange> = std::to_array<Keywords<CurrentRange>>({{CurrentRange::Auto, {"AUTO"}}, {CurrentRange::Low, {"LOW"}}, {CurrentRange::High, {"HIGH"}}});
template <> inline constexpr auto kKeywords<CurrentRate> = std::to_array<Keywords<CurrentRate>>({{CurrentRate::Rate62, {"62"}}, {CurrentRate::Rate4000, {"4000", "4K"}}, {CurrentRate::Rate8000, {"8000", "8K"}}});
template <> inline constexpr auto kKeywords<TriggerInput> = std::to_array<Keywords<TriggerInput>>({{TriggerInput::D1, {"D1"}}, {TriggerInput::D2, {"D2"}}, {TriggerInput::D3, {"D3"}}, {TriggerInput::D4, {"D4"}}});
template <> inline constexpr auto kKeywords<ProtectionDelayMode> = std::to_array<Keywords<ProtectionDelayMode>>({{ProtectionDelayMode::Any, {"ANY"}}, {ProtectionDelayMode::SettingChange, {"SCH"}}});
template <> inline constexpr auto kKeywords<PowerOnState> = std::to_array<Keywords<PowerOnState>>({{PowerOnState::Reset, {"RST"}}, {PowerOnState::Last, {"LAST"}}, {PowerOnState::LastOff, {"LOFF"}}});
template <> inline constexpr auto kKeywords<PairMode> = std::to_array<Keywords<PairMode>>({{PairMode::Off, {"OFF"}}, {PairMode::Series, {"SER"}}, {PairMode::Parallel, {"PAR"}}});
template <> inline constexpr auto kKeywords<OffMode> = std::to_array<Keywords<OffMode>>({{OffMode::BleederOn, {"BLEON"}}, {OffMode::BleederOff, {"BLEOFF"}}});
template <> inline constexpr auto kKeywords<ListState> = std::to_array<Keywords<ListState>>({{ListState::Stopped, {"STOPPED"}}, {ListState::Ready, {"READY"}}, {ListState::Running, {"RUNNING"}}, {ListState::Paused, {"PAUSED"}}});
template <> inline constexpr auto kKeywords<ListEndState> = std::to_array<Keywords<ListEndState>>({{ListEndState::Off, {"OFF"}}, {ListEndState::Last, {"LAST"}}});
template <> inline constexpr auto kKeywords<ListTemplate> = std::to_array<Keywords<ListTemplate>>({{ListTemplate::Sine, {"SINE"}}, {ListTemplate::Pulse, {"PULSE"}}, {ListTemplate::Ramp, {"RAMP"}}, {ListTemplate::Up, {"UP"}}, {ListTemplate::Down, {"DN"}}, {ListTemplate::UpDown, {"UPDN"}}, {ListTemplate::Rise, {"RISE"}}, {ListTemplate::Fall, {"FALL"}}});
template <> inline constexpr auto kKeywords<ListTemplateObject> = std::to_array<Keywords<ListTemplateObject>>({{ListTemplateObject::Voltage, {"V"}}, {ListTemplateObject::Current, {"C"}}});
template <> inline constexpr auto kKeywords<DelayState> = std::to_array<Keywords<DelayState>>({{DelayState::Stopped, {"STOPPED"}}, {DelayState::Running, {"RUNNING"}}});
template <> inline constexpr auto kKeywords<DelayEndState> = std::to_array<Keywords<DelayEndState>>({{DelayEndState::Off, {"OFF"}}, {DelayEndState::On, {"ON"}}, {DelayEndState::Last, {"LAST"}}});
template <> inline constexpr auto kKeywords<DelayGenerateMode> = std::to_array<Keywords<DelayGenerateMode>>({{DelayGenerateMode::Fixed, {"FIX"}}, {DelayGenerateMode::Increase, {"INC"}}, {DelayGenerateMode::Decrease, {"DEC"}}});
template <> inline constexpr auto kKeywords<DelayPattern> = std::to_array<Keywords<DelayPattern>>({{DelayPattern::OffFirst, {"01P"}}, {DelayPattern::OnFirst, {"10P"}}});
// clang-format on

template <typename T>
concept KeywordEnumeration = std::is_enum_v<T> && requires {
    kKeywords<T>.size();
};

/// Returns the keyword that is sent for `value`. Throws std::out_of_range("invalid map<K, T> key") when it has none.
template <KeywordEnumeration Enumeration>
std::string_view TokenOf(Enumeration value) {
    for (const auto& row : kKeywords<Enumeration>) {
        if (row.value == value) {
            return row.spellings.front();
        }
    }
    throw std::out_of_range("invalid map<K, T> key");
}

/// Returns whether `reply` is one of the enumeration's keywords.
template <KeywordEnumeration Enumeration>
bool IsKeyword(std::string_view reply) {
    const auto& table = kKeywords<Enumeration>;
    return !reply.empty() && std::any_of(table.begin(), table.end(), [reply](const auto& row) {
        return std::find(row.spellings.begin(), row.spellings.end(), reply) != row.spellings.end();
    });
}

/// Returns the value with the keyword `reply`; upper and lower case differ.
/// Required: an unknown keyword gives the lowest value of the table, which callers cannot distinguish from a valid
/// reply.
template <KeywordEnumeration Enumeration>
Enumeration ValueOf(std::string_view reply) {
    const auto& table = kKeywords<Enumeration>;
    const auto* row = std::find_if(table.begin(), table.end(), [reply](const auto& candidate) {
        return !reply.empty() &&
               std::find(candidate.spellings.begin(), candidate.spellings.end(), reply) != candidate.spellings.end();
    });
    return row == table.end() ? table.front().value : row->value;
}

} // namespace ORVA
