#pragma once

#include <string>
#include <string_view>

namespace tarnex {

/// What the driver session adds to the caller's option string for the instrument object.
struct OptionPairs {
    bool simulate = false;
    bool queryInstrumentStatus = false;
    std::string_view model; ///< empty: none
};

/// The option string with the pairs "Simulate=true", "QueryInstrStatus=true" and "Model=..." merged in, in this order,
/// each behind ", " where there is text before it. A pair is left out when the text holds its key anywhere, in any
/// letter case: what the user gave wins, and a text that merely contains the key counts as given, deliberately.
std::string MergeOptions(std::string options, const OptionPairs& pairs);

} // namespace tarnex
