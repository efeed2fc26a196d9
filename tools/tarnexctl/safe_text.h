// Texts that may hold any byte, such as an instrument's replies, made safe for a terminal and for JSON.
#pragma once

#include <string>
#include <string_view>

namespace tarnexctl {

/// Returns `text` with "?" in place of each control character and of each byte that is not UTF-8.
std::string Printable(std::string_view text);

/// Returns `text` as a JSON string with its quotes, with U+FFFD in place of each byte that is not UTF-8.
std::string JsonText(std::string_view text);

} // namespace tarnexctl
