// Texts that may hold any byte, such as an instrument's replies, made safe for a terminal and for JSON.
#pragma once

#include <string>
#include <string_view>

namespace tarnexctl {

/// Returns `text` with "?" in place of each unsafe character and of each byte that is not UTF-8. Unsafe are the control
/// characters (C0, DEL, C1) and those that change the direction of writing.
std::string Printable(std::string_view text);

/// Returns `text` as a JSON string with its quotes, with unsafe characters escaped and U+FFFD in place of each byte
/// that is not UTF-8.
std::string JsonText(std::string_view text);

} // namespace tarnexctl
