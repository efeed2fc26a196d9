// An enumeration of the tests' own: one or two spellings per value, and values that do not count from 0.
#pragma once

#include "instrument/keywords.h"

namespace unit {

enum class Rate : std::int32_t { Slow = -3, Middle = 1, Fast = 7, Idle = 9 };

} // namespace unit

namespace ORVA {

template <>
inline constexpr auto kKeywords<unit::Rate> = std::to_array<Keywords<unit::Rate>>({
    {unit::Rate::Slow, {"UP", "SLOW"}},
    {unit::Rate::Middle, {"4000", "4K"}},
    {unit::Rate::Fast, {"UPDN", "8K"}},
    {unit::Rate::Idle, {"IDLE"}},
});

} // namespace ORVA
