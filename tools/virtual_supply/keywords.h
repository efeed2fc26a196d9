// The keywords of arguments and replies. All keywords of a value are accepted; the first one is used in replies.
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
inline constexpr std::array<Keyword, 4> kListStates{{{0, "STOPPED"}, {1, "READY"}, {2, "RUNNING"}, {3, "PAUSED"}}};
inline constexpr std::array<Keyword, 2> kListEndStates{{{0, "OFF"}, {1, "LAST"}}};
inline constexpr std::array<Keyword, 8> kListShapes{
    {{0, "SINE"}, {1, "PULSE"}, {2, "RAMP"}, {3, "UP"}, {4, "DN"}, {5, "UPDN"}, {6, "RISE"}, {7, "FALL"}}};
inline constexpr std::array<Keyword, 2> kListObjects{{{0, "V"}, {1, "C"}}};
inline constexpr std::array<Keyword, 2> kDelayStates{{{0, "STOPPED"}, {1, "RUNNING"}}};
inline constexpr std::array<Keyword, 3> kDelayEndStates{{{0, "OFF"}, {1, "ON"}, {2, "LAST"}}};
inline constexpr std::array<Keyword, 3> kDelayModes{{{0, "FIX"}, {1, "INC"}, {2, "DEC"}}};
inline constexpr std::array<Keyword, 2> kDelayPatterns{{{0, "01P"}, {1, "10P"}}};
inline constexpr std::array<Keyword, 4> kTriggerInputs{{{1, "D1"}, {2, "D2"}, {3, "D3"}, {4, "D4"}}};

} // namespace virtual_supply
