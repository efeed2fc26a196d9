// Numbers as text, independent of the locale.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tarnexctl {

/// Returns the number that is the whole of `text`, including "nan" and "inf"; nothing for any other text.
std::optional<double> ParseNumber(std::string_view text);

/// Returns `value` in fixed notation with `decimals` digits after the point.
std::string Fixed(double value, int decimals);

/// Returns the shortest text that reads back as `value`.
std::string Shortest(double value);

} // namespace tarnexctl
