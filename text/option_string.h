// The grammar of option strings: inherent options, then an optional DriverSetup clause that runs to the end.
//
//     Simulate=1, RangeCheck=VI_FALSE, DriverSetup=Model:TX4410
//
// Each scanner finds exactly what the regular expression named beside it finds, in one pass and without recursion, so
// that a text of any length and shape ends in a status. Fragments that do not fit are skipped.
#pragma once

#include <optional>
#include <string_view>

namespace text {

struct OptionString {
    std::string_view inherent;                   ///< the text in front of the clause
    std::optional<std::string_view> driverSetup; ///< the clause's text, up to a line break; empty text is a clause too
};

/// "\s*DriverSetup\s*=(.*)", in any letter case.
OptionString SplitOptionString(std::string_view options);

struct OptionPair {
    std::string_view name;
    std::string_view value;
};

/// Takes the next pair off the front of `text`: "([\w+_]+)\s*(?:=|:)\s*([^,]+)".
std::optional<OptionPair> NextDriverSetupPair(std::string_view& text);

/// Takes the next pair off the front of `text`: "\s*(\w+)\s*=\s*(\w+)\s*,?".
std::optional<OptionPair> NextInherentPair(std::string_view& text);

/// One of the words "true", "vi_true", "1", "false", "vi_false", "0" (lower case), else nothing.
std::optional<bool> BooleanWord(std::string_view word);

} // namespace text
