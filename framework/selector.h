// Repeated-capability selectors: the texts with which callers name channels.
//
//     selector  ::= level { ":" level }            blanks are allowed around every token
//     level     ::= [ "[" ] item { "," item } [ "]" ]
//     item      ::= name | name-ending-in-digits "-" name-ending-in-digits
//
// Required: the grammar accepts exactly what a regular expression accepts (it stands beside its scanner). The scanners
// read the text once and without recursion, so a selector of any length and shape returns a status.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "framework/virtual_names.h"
#include "platform/vi_types.h"

namespace nrt2 {

/// Returns whether the whole text matches the selector grammar.
bool IsWellFormedSelector(std::string_view text);

/// One item of a selector's list: a name, or a range of names that is not expanded.
struct SelectorItem {
    std::string_view text; ///< as written, without surrounding blanks
    bool isRange = false;
    std::string_view base; ///< of a range: the text before the number of its first end
    std::int32_t first = 0;
    std::int32_t last = 0;
};

/// The selector rules of a repeated capability. Violations are recorded on a session.
class SelectorRules {
  public:
    /// With VI_NULL errors are recorded for the calling thread.
    SelectorRules(ViSession vi, std::string_view capability) : vi_(vi), capability_(capability) {}

    /// Expands `selector` into `count` distinct indexes of `physicalNames`, in the selector's order. `virtualNames` may
    /// be null. `expanded` must have room for every physical name. On failure the error has been recorded.
    ViStatus Expand(std::string_view selector, const VirtualNames* virtualNames,
                    std::span<const std::string> physicalNames, std::span<std::size_t> expanded,
                    std::size_t& count) const;

    /// Parses a one-level selector into items that view `text`. Checks them for repetitions, but not for existence.
    ViStatus ParseItems(std::string_view text, std::vector<SelectorItem>& items) const;

  private:
    ViStatus ParseItem(std::string_view text, SelectorItem& item) const;
    ViStatus InvalidRange(const SelectorItem& item, std::string_view elaboration) const;
    ViStatus NoSelector(std::size_t physicalNameCount) const;
    ViStatus ResolveItems(std::span<const SelectorItem> items, std::span<const std::string> physicalNames,
                          std::span<std::size_t> expanded, std::size_t& count) const;

    ViSession vi_;
    std::string_view capability_;
};

} // namespace nrt2
