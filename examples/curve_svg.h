// Curves of a voltage sweep, one panel below the other, as an SVG image. Needs only the standard library, so that you
// can copy it into your own program.
#pragma once

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace curve_svg {

struct Panel {
    std::string title;             // with the unit, for example "Current, A"
    std::vector<double> values;    // one for each x, not negative
    std::optional<double> limit{}; // the height of a dashed line
    std::string limitLabel{};
};

struct Chart {
    std::string title;
    std::string xTitle;      // with the unit
    std::vector<double> x;   // ascending from 0
    std::size_t limitedFrom; // index of the first x in constant current; x.size() when there is none
    std::vector<Panel> panels;
};

// Fixed notation, independent of the locale.
inline std::string Fixed(double value, int decimals) {
    std::array<char, 400> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed, decimals);
    return {text.data(), end.ptr};
}

// An axis from 0 to the tick at or above `highest`. The distance of the ticks is 1, 2 or 5 times a power of ten.
struct Axis {
    double step;
    int ticks;

    Axis(double highest, int wantedTicks) {
        const double power = std::pow(10.0, std::floor(std::log10(highest / wantedTicks)));
        const double rest = highest / wantedTicks / power;
        step = power * (rest <= 1.0 ? 1.0 : rest <= 2.0 ? 2.0 : rest <= 5.0 ? 5.0 : 10.0);
        ticks = std::max(1, static_cast<int>(std::ceil(highest / step - 1e-9)));
    }
    [[nodiscard]] double Share(double value) const { return value / (ticks * step); }
    [[nodiscard]] std::string Label(int tick) const { return Fixed(tick * step, step < 1.0 ? 1 : 0); }
};

constexpr double kWidth = 720.0;
constexpr double kLeft = 64.0;
constexpr double kRight = kWidth - 24.0;
constexpr double kPanelTop = 68.0; // of the first panel
constexpr double kPanelHeight = 140.0;
constexpr double kPanelDistance = 176.0;
constexpr std::string_view kMiddle = R"( text-anchor="middle")";

inline std::string Text(double x, double y, const std::string& text, std::string_view attributes) {
    std::string escaped; // an instrument's model may hold any byte
    for (const char c : text) {
        escaped += c < ' ' || c > '~' ? "?" : c == '&' ? "&amp;" : c == '<' ? "&lt;" : std::string(1, c);
    }
    return R"(<text x=")" + Fixed(x, 1) + R"(" y=")" + Fixed(y, 1) + '"' + std::string(attributes) + '>' + escaped +
           "</text>\n";
}

inline std::string Line(double x1, double y1, double x2, double y2, std::string_view attributes) {
    return R"(<line x1=")" + Fixed(x1, 1) + R"(" y1=")" + Fixed(y1, 1) + R"(" x2=")" + Fixed(x2, 1) + R"(" y2=")" +
           Fixed(y2, 1) + '"' + std::string(attributes) + "/>\n";
}

inline std::string DrawPanel(const Chart& chart, std::size_t index, const Axis& xAxis) {
    constexpr std::array<const char*, 3> kColours{"#1f5fa8", "#b5480f", "#2f7a3c"};
    const auto& panel = chart.panels[index];
    const double top = kPanelTop + static_cast<double>(index) * kPanelDistance;
    const double bottom = top + kPanelHeight;
    const double highest = *std::max_element(panel.values.begin(), panel.values.end());
    const Axis yAxis(1.05 * std::max({highest, panel.limit.value_or(0.0), 0.001}), 5);
    const auto xOf = [&](double value) { return kLeft + xAxis.Share(value) * (kRight - kLeft); };
    const auto yOf = [&](double value) { return bottom - yAxis.Share(value) * kPanelHeight; };

    std::string svg = Text(kLeft, top - 8.0, panel.title, R"( font-weight="bold")");
    // Constant current begins half-way between the last sample without it and the first one with it.
    double change = xOf(chart.x.back());
    if (chart.limitedFrom > 0 && chart.limitedFrom < chart.x.size()) {
        change = xOf((chart.x[chart.limitedFrom - 1] + chart.x[chart.limitedFrom]) / 2.0);
        svg += index == 0 ? Text((kLeft + change) / 2.0, top - 8.0, "constant voltage", kMiddle) : "";
        svg += R"(<rect x=")" + Fixed(change, 1) + R"(" y=")" + Fixed(top, 1) + R"(" width=")" +
               Fixed(xOf(chart.x.back()) - change, 1) + R"(" height=")" + Fixed(kPanelHeight, 1) +
               R"(" fill="#f6e3c8"/>)" + '\n';
        svg += Line(change, top, change, bottom, R"( stroke="#b08040" stroke-dasharray="2 3")");
        svg += index == 0 ? Text((change + xOf(chart.x.back())) / 2.0, top - 8.0, "constant current", kMiddle) : "";
    }
    for (int tick = 0; tick <= yAxis.ticks; ++tick) {
        const double y = yOf(tick * yAxis.step);
        svg += Line(kLeft, y, kRight, y, R"( stroke="#ddd")");
        svg += Text(kLeft - 6.0, y + 4.0, yAxis.Label(tick), R"( text-anchor="end")");
    }
    for (int tick = 0; tick <= xAxis.ticks; ++tick) {
        const double x = xOf(tick * xAxis.step);
        svg += Line(x, bottom, x, bottom + 4.0, R"( stroke="#333")");
        svg += index + 1 == chart.panels.size() ? Text(x, bottom + 18.0, xAxis.Label(tick), kMiddle) : "";
    }
    svg += Line(kLeft, bottom, kRight, bottom, R"( stroke="#333")");
    if (panel.limit) {
        const double y = yOf(*panel.limit);
        svg += Line(kLeft, y, kRight, y, R"( stroke="#a01c1c" stroke-dasharray="6 4")");
        svg += Text(kLeft + 6.0, y - 5.0, panel.limitLabel, R"( fill="#a01c1c")");
    }
    svg += std::string(R"(<polyline fill="none" stroke-width="2" stroke=")") + kColours.at(index % kColours.size()) +
           R"(" points=")";
    for (std::size_t i = 0; i < chart.x.size(); ++i) {
        svg += (i == 0 ? "" : " ") + Fixed(xOf(chart.x[i]), 1) + ',' + Fixed(yOf(panel.values[i]), 1);
    }
    return svg + "\"/>\n";
}

inline std::string Draw(const Chart& chart) {
    const Axis xAxis(chart.x.back(), 10);
    const double height = kPanelTop + static_cast<double>(chart.panels.size()) * kPanelDistance + 18.0;
    const std::string size = Fixed(kWidth, 0) + R"(" height=")" + Fixed(height, 0);
    std::string svg = R"(<svg xmlns="http://www.w3.org/2000/svg" width=")" + size + R"(" viewBox="0 0 )" +
                      Fixed(kWidth, 0) + ' ' + Fixed(height, 0) +
                      R"(" font-family="sans-serif" font-size="12" fill="#333">)" + '\n' +
                      R"(<rect width="100%" height="100%" fill="#fff"/>)" + '\n' +
                      Text(kLeft, 26.0, chart.title, R"( font-size="16" font-weight="bold")");
    for (std::size_t i = 0; i < chart.panels.size(); ++i) {
        svg += DrawPanel(chart, i, xAxis);
    }
    return svg + Text((kLeft + kRight) / 2.0, height - 14.0, chart.xTitle, kMiddle) + "</svg>\n";
}

} // namespace curve_svg
