#include "tools/tarnexctl/number_text.h"

#include <array>
#include <charconv>
#include <system_error>

namespace tarnexctl {

namespace {

template <typename... Format>
std::string NumberText(double value, Format... format) {
    std::array<char, 400> text{};
    return {text.data(), std::to_chars(text.data(), text.data() + text.size(), value, format...).ptr};
}

} // namespace

std::optional<double> ParseNumber(std::string_view text) {
    double number = 0.0;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && rest == end ? std::optional(number) : std::nullopt;
}

std::string Fixed(double value, int decimals) { return NumberText(value, std::chars_format::fixed, decimals); }

std::string Shortest(double value) { return NumberText(value); }

} // namespace tarnexctl
