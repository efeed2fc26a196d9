#include "tools/tarnexctl/safe_text.h"

#include <algorithm>
#include <cstddef>

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

bool IsControl(std::string_view character) {
    constexpr char kDelete = 127;
    const char c = character.front();
    // U+0080 to U+009F are control characters of two bytes.
    return character.size() == 1 ? c < ' ' || c == kDelete : character.size() == 2 && character < "\xC2\xA0";
}

} // namespace

std::string Printable(std::string_view text) {
    std::string printable;
    while (!text.empty()) {
        const std::size_t length = SequenceLength(text);
        const auto character = text.substr(0, length);
        printable += length == 0 || IsControl(character) ? "?" : character;
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return printable;
}

std::string JsonText(std::string_view text) {
    constexpr std::string_view kHex = "0123456789abcdef";
    std::string json = "\"";
    while (!text.empty()) {
        const std::size_t length = SequenceLength(text);
        const char c = text.front();
        if (length == 0) {
            json += "\\ufffd";
        } else if (length == 1 && (c == '"' || c == '\\')) {
            json += {'\\', c};
        } else if (length == 1 && c < ' ') {
            const std::size_t code = static_cast<unsigned char>(c);
            json += {'\\', 'u', '0', '0', kHex[code / 16], kHex[code % 16]};
        } else {
            json += text.substr(0, length);
        }
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return json + '"';
}

} // namespace tarnexctl
