// Repeated-capability selectors: the text by which a caller names channels.
//
//     selector  ::= level { ":" level }            blanks are allowed around every token
//     level     ::= [ "[" ] item { "," item } [ "]" ]
//     item      ::= name | name-ending-in-digits "-" name-ending-in-digits
//
// The grammar is that of a regular expression (written out beside its scanner) down to its oddities; the scanners go
// through the text once, without recursion, so that a selector of any length and shape ends in a status.
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

/// Whether the whole text matches the selector grammar.
bool IsWellFormedSelector(std::string_view text);

/// One item of a selector's list: a plain name, or a range of names kept as a range, whatever its span.
struct SelectorItem {
    std::string_view text; ///< as written, blanks outside trimmed
    bool isRange = false;
    std::string_view base; ///< of a range: what stands in front of the numbers, spelled as in its first end
    std::int32_t first = 0;
    std::int32_t last = 0;
};

/// The rules of a repeated capability, and where their violations are recorded.
class SelectorRules {
  public:
    /// `vi` may be VI_NULL: what is recorded then goes to the calling thread.
    SelectorRules(ViSession vi, std::string_view capability) : vi_(vi), capability_(capability) {}

    /// Expands `selector` into indexes of `physicalNames`, in the selector's order. `virtualNames` is null when there
    /// is no session. `expanded` has room for every physical name; no name is found twice. `count` tells how many
    /// were. Failures have been recorded.
    ViStatus Expand(std::string_view selector, const VirtualNames* virtualNames,
                    std::span<const std::string> physicalNames, std::span<std::size_t> expanded,
                    std::size_t& count) const;

    /// The items of a one-level selector, checked among themselves but not against any physical names. The items view
    /// `text`.
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
