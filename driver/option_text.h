#pragma once

#include <string>
#include <string_view>

namespace tarnex {

/// The options that the driver session adds to the caller's option string.
struct OptionPairs {
    bool simulate = false;
    bool queryInstrumentStatus = false;
    std::string_view model; ///< empty: none
};

/// Appends the pairs "Simulate=true", "QueryInstrStatus=true" and "Model=..." to `options`, in this order and separated
/// by ", ". A pair is left out when the text contains its key in any letter case, so the caller's value wins.
/// Required: a text that contains the key as a part of another word leaves the pair out too.
std::string MergeOptions(std::string options, const OptionPairs& pairs);

} // namespace tarnex
