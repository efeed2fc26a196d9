#include "tools/tarnexctl/safe_text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>

namespace tarnexctl {

namespace {

/// Returns the length of the UTF-8 sequence at the start of `text`; 0 when there is none.
std::size_t SequenceLength(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned first = byte(0);
    const std::size_t length = first < 0x80   ? 1
                               : first < 0xC2 ? 0
                               : first < 0xE0 ? 2
                               : first < 0xF0 ? 3
                               : first < 0xF5 ? 4
                                              : 0;
    if (length > text.size()) {
        return 0;
    }
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0U) != 0x80U) {
            return 0;
        }
    }
    // Overlong forms, surrogates, and code points beyond U+10FFFF.
    const bool wrong = (first == 0xE0 && byte(1) < 0xA0) || (first == 0xED && byte(1) > 0x9F) ||
                       (first == 0xF0 && byte(1) < 0x90) || (first == 0xF4 && byte(1) > 0x8F);
    return wrong ? 0 : length;
}

/// Returns the code point of a UTF-8 sequence.
std::uint32_t CodePoint(std::string_view sequence) {
    constexpr std::array<std::uint32_t, 5> kFirstByteBits{0, 0x7F, 0x1F, 0x0F, 0x07};
    std::uint32_t code = static_cast<unsigned char>(sequence.front()) & kFirstByteBits[sequence.size()];
    for (const char c : sequence.substr(1)) {
        code = (code << 6U) | (static_cast<unsigned char>(c) & 0x3FU);
    }
    return code;
}

constexpr std::uint32_t kReplacement = 0xFFFD; // for what is not a character

bool IsUnsafe(std::uint32_t code) {
    struct Range {
        std::uint32_t first;
        std::uint32_t last;
    };
    constexpr std::array<Range, 6> kUnsafe{{
        {0x00, 0x1F},
        {0x7F, 0x9F},
        {0x061C, 0x061C}, // direction marks, embeddings, overrides and isolates
        {0x200E, 0x200F},
        {0x202A, 0x202E},
        {0x2066, 0x2069},
    }};
    return std::any_of(kUnsafe.begin(), kUnsafe.end(),
                       [&](const Range& range) { return code >= range.first && code <= range.last; });
}

/// Copies `text` with `replace(sequence)` in place of each unsafe character, of those in `special` and, with an empty
/// sequence, of each byte that is not UTF-8.
template <typename Replace>
std::string Escaped(std::string_view text, std::string_view special, const Replace& replace) {
    std::string escaped;
    while (!text.empty()) {
        const std::size_t length = SequenceLength(text);
        const auto sequence = text.substr(0, length);
        const bool replaced =
            length == 0 || IsUnsafe(CodePoint(sequence)) || special.find(sequence.front()) != std::string_view::npos;
        if (replaced) {
            escaped += replace(sequence);
        } else {
            escaped += sequence;
        }
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return escaped;
}

} // namespace

std::string Printable(std::string_view text) {
    return Escaped(text, "", [](std::string_view /*sequence*/) { return '?'; });
}

std::string JsonText(std::string_view text) {
    const auto escape = [](std::string_view sequence) -> std::string {
        if (sequence == "\"" || sequence == "\\") {
            return '\\' + std::string(sequence);
        }
        std::array<char, sizeof "\\uFFFF"> code{};
        static_cast<void>(std::snprintf(code.data(), code.size(), "\\u%04x",
                                        static_cast<unsigned>(sequence.empty() ? kReplacement : CodePoint(sequence))));
        return code.data();
    };
    return '"' + Escaped(text, "\"\\", escape) + '"';
}

} // namespace tarnexctl
