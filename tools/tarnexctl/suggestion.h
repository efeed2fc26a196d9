// Help for mistyped words.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tarnexctl {

/// Returns the known word that differs from `word` in the fewest letters, of several one that begins with `word`; an
/// empty text when none is close.
std::string Suggestion(std::string_view word, const std::vector<std::string>& known);

} // namespace tarnexctl
