#include "tools/tarnexctl/number_text.h"

#include <array>
#include <charconv>
#include <chrono>
#include <cstdio>
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

std::string UtcText(std::int64_t microseconds) {
    const std::chrono::sys_time<std::chrono::microseconds> exact{std::chrono::microseconds(microseconds)};
    const auto now = std::chrono::floor<std::chrono::milliseconds>(exact);
    const auto days = std::chrono::floor<std::chrono::days>(now);
    const std::chrono::year_month_day date(days);
    const std::chrono::hh_mm_ss time(now - days);
    std::array<char, 40> text{};
    static_cast<void>(std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02d.%03dZ",
                                    static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                                    static_cast<unsigned>(date.day()), static_cast<int>(time.hours().count()),
                                    static_cast<int>(time.minutes().count()), static_cast<int>(time.seconds().count()),
                                    static_cast<int>(time.subseconds().count())));
    return text.data();
}

std::string UtcTime() {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return UtcText(std::chrono::duration_cast<std::chrono::microseconds>(now).count());
}

std::string Shortest(double value) { return NumberText(value); }

std::string Plain(double value) { return NumberText(value, std::chars_format::fixed); }

} // namespace tarnexctl
