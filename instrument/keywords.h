// The SCPI keywords of the command set: one table per enumeration, value by value.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <stdexcept>
#include <string_view>
#include <type_traits>

namespace ORVA {

enum class Channel : std::int32_t { CH1 = 1, CH2 = 2 };

/// One value with its keywords: the first is sent, every one is understood in replies. Unused places stay empty.
template <typename Enumeration>
struct Keywords {
    Enumeration value;
    std::array<std::string_view, 2> spellings;
};

/// The table of an enumeration, in ascending order of value.
template <typename Enumeration>
inline constexpr auto kKeywords = nullptr;

template <>
inline constexpr auto kKeywords<Channel> = std::to_array<Keywords<Channel>>({
    {Channel::CH1, {"CH1"}},
    {Channel::CH2, {"CH2"}},
});

template <typename T>
concept KeywordEnumeration = std::is_enum_v<T> && requires {
    kKeywords<T>.size();
};

/// The keyword that is sent for `value`; a value without one throws std::out_of_range("invalid map<K, T> key").
template <KeywordEnumeration Enumeration>
std::string_view TokenOf(Enumeration value) {
    for (const auto& row : kKeywords<Enumeration>) {
        if (row.value == value) {
            return row.spellings.front();
        }
    }
    throw std::out_of_range("invalid map<K, T> key");
}

/// The value whose keyword `reply` is, to the letter. A reply that is none of them gives the table's lowest value: the
/// instrument's word is taken for what it cannot be helped to mean.
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
