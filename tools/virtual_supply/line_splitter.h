// Cuts a stream of received bytes into lines.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace virtual_supply {

/// The longest line that is taken in, in bytes without its line feed.
inline constexpr std::size_t kMaxLineLength = 4096;

class LineSplitter {
  public:
    struct Line {
        std::string text;     // without the line feed, and without one carriage return before it
        bool overrun = false; // the line was longer than kMaxLineLength; the text is lost
    };

    /// Takes bytes from the front of `received` up to and including the next line feed, and returns the line that
    /// they complete; nothing when `received` ran out before. An overrun is reported as soon as it happens, once per
    /// line, and the rest of that line is dropped. Never keeps more than kMaxLineLength bytes.
    std::optional<Line> Take(std::string_view& received);

  private:
    std::string pending_;
    bool dropping_ = false;
};

} // namespace virtual_supply
