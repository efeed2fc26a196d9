// The grammar of option strings: inherent options, then an optional DriverSetup clause that runs to the end.
//
//     Simulate=1, RangeCheck=VI_FALSE, DriverSetup=Model:TX4410
//
// Each scanner finds exactly what the regular expression named beside it finds, in one pass and without recursion: a
// text of any length and shape is safe. Fragments that do not match are skipped.
#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace text {

/// The inherent options of IVI-3.2, in the order in which the configuration store numbers them.
struct InherentOptions {
    bool cache = false;
    bool interchangeCheck = false;
    bool queryInstrumentStatus = false;
    bool rangeCheck = false;
    bool recordCoercions = false;
    bool simulate = false;
};

struct InherentOption {
    std::string_view name; ///< in lower case
    bool InherentOptions::*flag;
};

/// The rows of all inherent options, in the order of the struct.
inline constexpr std::array kInherentOptions{
    InherentOption{"cache", &InherentOptions::cache},
    InherentOption{"interchangecheck", &InherentOptions::interchangeCheck},
    InherentOption{"queryinstrstatus", &InherentOptions::queryInstrumentStatus},
    InherentOption{"rangecheck", &InherentOptions::rangeCheck},
    InherentOption{"recordcoercions", &InherentOptions::recordCoercions},
    InherentOption{"simulate", &InherentOptions::simulate},
};

/// Returns the option with this lower-case name, null when there is none.
const InherentOption* FindInherentOption(std::string_view name);

struct OptionString {
    std::string_view inherent;                   ///< the text before the clause
    std::optional<std::string_view> driverSetup; ///< the text of the clause, up to a line break; may be empty
};

/// Splits the text at "\s*DriverSetup\s*=(.*)", in any letter case.
OptionString SplitOptionString(std::string_view options);

struct OptionPair {
    std::string_view name;
    std::string_view value;
};

/// Removes the next pair from the front of `text`: "([\w+_]+)\s*(?:=|:)\s*([^,]+)".
std::optional<OptionPair> NextDriverSetupPair(std::string_view& text);

/// Removes the next pair from the front of `text`: "\s*(\w+)\s*=\s*(\w+)\s*,?".
std::optional<OptionPair> NextInherentPair(std::string_view& text);

/// Returns the value of "true", "vi_true", "1", "false", "vi_false" or "0" (lower case); nothing for other words.
std::optional<bool> BooleanWord(std::string_view word);

} // namespace text
