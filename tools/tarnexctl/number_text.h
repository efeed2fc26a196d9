// Numbers as text, independent of the locale.
#pragma once

#include <cstdint>
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

/// Returns the shortest text without an exponent that reads back as `value`.
std::string Plain(double value);

/// Returns a time in microseconds since 1970 as "2026-11-21T19:30:05.123Z".
std::string UtcText(std::int64_t microseconds);
/// Returns the present time in the same form.
std::string UtcTime();

} // namespace tarnexctl
