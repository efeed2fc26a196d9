// The words that stand for choices. Where a value has several, all are accepted and the first is answered.
#pragma once

#include <array>
#include <string_view>

namespace virtual_supply {

struct Keyword {
    int value;
    std::string_view word;
};

inline constexpr std::array<Keyword, 2> kChannels{{{1, "CH1"}, {2, "CH2"}}};
inline constexpr std::array<Keyword, 1> kAllChannels{{{0, "ALL"}}};
inline constexpr std::array<Keyword, 2> kRegulationModes{{{0, "CV"}, {1, "CC"}}};
inline constexpr std::array<Keyword, 3> kCurrentRanges{{{0, "AUTO"}, {1, "LOW"}, {2, "HIGH"}}};
inline constexpr std::array<Keyword, 5> kCurrentRates{{{0, "62"}, {1, "4000"}, {1, "4K"}, {2, "8000"}, {2, "8K"}}};
inline constexpr std::array<Keyword, 2> kProtectionDelayModes{{{0, "ANY"}, {1, "SCH"}}};
inline constexpr std::array<Keyword, 3> kPowerOnStates{{{0, "RST"}, {1, "LAST"}, {2, "LOFF"}}};
inline constexpr std::array<Keyword, 3> kPairModes{{{0, "OFF"}, {1, "SER"}, {2, "PAR"}}};
inline constexpr std::array<Keyword, 2> kOffModes{{{0, "BLEON"}, {1, "BLEOFF"}}};

} // namespace virtual_supply
