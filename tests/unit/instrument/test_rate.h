// An enumeration of the tests' own: one or two spellings per value, and values that do not count from 0.
#pragma once

#include "instrument/keywords.h"

namespace unit {

enum class Rate : std::int32_t { kSlow = -3, kMiddle = 1, kFast = 7, kIdle = 9 };

} // namespace unit

namespace ORVA {

template <>
inline constexpr auto kKeywords<unit::Rate> = std::to_array<Keywords<unit::Rate>>({
    {unit::Rate::kSlow, {"UP", "SLOW"}},
    {unit::Rate::kMiddle, {"4000", "4K"}},
    {unit::Rate::kFast, {"UPDN", "8K"}},
    {unit::Rate::kIdle, {"IDLE"}},
});

} // namespace ORVA
