// Texts from outside, an instrument's above all, made fit for a terminal and for JSON: they may hold any byte.
#pragma once

#include <string>
#include <string_view>

namespace tarnexctl {

/// Without what would steer a terminal or break a line: control characters, and bytes that are no UTF-8, become "?".
std::string Printable(std::string_view text);

/// A JSON string with its quotes. Bytes that are no UTF-8 become U+FFFD.
std::string JsonText(std::string_view text);

} // namespace tarnexctl
