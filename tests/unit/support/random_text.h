// Random texts, the same in every run.
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <span>
#include <string>
#include <string_view>

namespace unit {

class RandomText {
  public:
    /// The texts consist of `pieces`, which are equally likely.
    RandomText(std::uint32_t seed, std::span<const std::string_view> pieces) : engine_(seed), pieces_(pieces) {}

    /// Returns a text of 0 to `mostPieces` pieces.
    std::string Next(std::size_t mostPieces) {
        std::string text;
        for (auto left = Below(mostPieces + 1); left > 0; --left) {
            text.append(pieces_[Below(pieces_.size())]);
        }
        return text;
    }

    std::size_t Below(std::size_t bound) { return static_cast<std::size_t>(engine_() % bound); }

  private:
    std::mt19937 engine_;
    std::span<const std::string_view> pieces_;
};

/// A random text as a failure shows it: bytes that are not printable in hexadecimal.
inline std::string Shown(std::string_view text) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string shown = "\"";
    for (const char c : text) {
        if (c >= ' ' && c <= '~') {
            shown.push_back(c);
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        shown.append("\\x").append(1, kDigits[byte >> 4U]).append(1, kDigits[byte & 0xFU]);
    }
    return shown.append("\"");
}

} // namespace unit
