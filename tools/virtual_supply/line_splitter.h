// Splits a stream of received bytes into lines.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace virtual_supply {

/// The maximum length of a line in bytes, without its line feed.
inline constexpr std::size_t kMaxLineLength = 4096;

class LineSplitter {
  public:
    struct Line {
        std::string text;     // without the line feed, and without one carriage return before it
        bool overrun = false; // the line was longer than kMaxLineLength; the text is lost
    };

    /// Removes bytes from the front of `received` up to and including the next line feed, and returns the completed
    /// line; nothing when `received` has no line feed. Reports an overrun once per line, as soon as it happens, and
    /// drops the rest of that line. Stores at most kMaxLineLength bytes.
    std::optional<Line> Take(std::string_view& received);

  private:
    std::string pending_;
    bool dropping_ = false;
};

} // namespace virtual_supply
