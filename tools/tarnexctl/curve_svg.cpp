#include "tools/tarnexctl/curve_svg.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <string_view>

#include "tools/tarnexctl/number_text.h"

namespace tarnexctl {

namespace {

/// Returns `text` as XML text, with "?" in place of each byte that is not printable ASCII.
std::string EscapeXml(std::string_view text) {
    std::string escaped;
    for (const char c : text) {
        switch (c) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        default:
            escaped += c < ' ' || c > '~' ? '?' : c;
        }
    }
    return escaped;
}

/// An axis that begins and ends at a tick. The distance of the ticks is 1, 2 or 5 times a power of ten.
struct Axis {
    double low;
    double high;
    double step;
    int decimals;

    Axis(double lowest, double highest, int ticks) {
        const double range = highest > lowest ? highest - lowest : 1.0;
        const double power = std::pow(10.0, std::floor(std::log10(range / ticks)));
        const double rest = range / ticks / power;
        step = power * (rest <= 1.0 ? 1.0 : rest <= 2.0 ? 2.0 : rest <= 5.0 ? 5.0 : 10.0);
        low = std::floor(lowest / step + 1e-9) * step;
        high = std::max(std::ceil(highest / step - 1e-9) * step, low + step);
        decimals = std::max(0, static_cast<int>(-std::floor(std::log10(step) + 1e-9)));
    }

    [[nodiscard]] int Ticks() const { return static_cast<int>(std::lround((high - low) / step)); }
    [[nodiscard]] double Share(double value) const { return (value - low) / (high - low); }
};

class Drawing {
  public:
    explicit Drawing(const Chart& chart)
        : chart_(chart), xAxis_(*std::min_element(chart.x.begin(), chart.x.end()),
                                *std::max_element(chart.x.begin(), chart.x.end()), 10) {}

    std::string Draw() {
        const double height = kTop + static_cast<double>(chart_.panels.size()) * (kPanelHeight + kGap) + kBottom;
        svg_ = R"(<svg xmlns="http://www.w3.org/2000/svg" width=")" + Fixed(kWidth, 0) + R"(" height=")" +
               Fixed(height, 0) + R"(" viewBox="0 0 )" + Fixed(kWidth, 0) + ' ' + Fixed(height, 0) +
               R"(" font-family="sans-serif" font-size="12" fill="#333">)" + '\n' +
               R"(<rect width="100%" height="100%" fill="#fff"/>)" + '\n';
        Text(kLeft, 26.0, chart_.title, R"( font-size="16" font-weight="bold")");
        for (std::size_t i = 0; i < chart_.panels.size(); ++i) {
            DrawPanel(chart_.panels[i], i);
        }
        Text((kLeft + kWidth - kRight) / 2.0, height - 14.0, chart_.xTitle, kMiddle);
        svg_ += "</svg>\n";
        return svg_;
    }

  private:
    static constexpr double kWidth = 720.0;
    static constexpr double kLeft = 64.0;
    static constexpr double kRight = 24.0;
    static constexpr double kTop = 40.0;
    static constexpr double kBottom = 46.0;
    static constexpr double kPanelHeight = 140.0;
    static constexpr double kGap = 36.0; // above a panel, for its title
    static constexpr std::string_view kMiddle = R"( text-anchor="middle")";
    static constexpr std::array<std::string_view, 3> kColours{"#1f5fa8", "#b5480f", "#2f7a3c"};

    [[nodiscard]] double X(double value) const { return kLeft + xAxis_.Share(value) * (kWidth - kLeft - kRight); }

    void Text(double x, double y, std::string_view text, std::string_view attributes) {
        svg_ += R"(<text x=")" + Fixed(x, 1) + R"(" y=")" + Fixed(y, 1) + '"' + std::string(attributes) + '>' +
                EscapeXml(text) + "</text>\n";
    }

    void Line(double x1, double y1, double x2, double y2, std::string_view attributes) {
        svg_ += R"(<line x1=")" + Fixed(x1, 1) + R"(" y1=")" + Fixed(y1, 1) + R"(" x2=")" + Fixed(x2, 1) + R"(" y2=")" +
                Fixed(y2, 1) + '"' + std::string(attributes) + "/>\n";
    }

    void DrawPanel(const Panel& panel, std::size_t index) {
        const double top = kTop + static_cast<double>(index) * (kPanelHeight + kGap) + kGap - 8.0;
        const double bottom = top + kPanelHeight;
        double highest = *std::max_element(panel.values.begin(), panel.values.end());
        highest = std::max(highest, panel.limit.value_or(highest));
        const double lowest = std::min(0.0, *std::min_element(panel.values.begin(), panel.values.end()));
        const Axis axis(lowest, highest > lowest ? highest * 1.05 : lowest + 1.0, 5);
        const auto y = [&](double value) { return bottom - axis.Share(value) * kPanelHeight; };

        Text(kLeft, top - 8.0, panel.title, R"( font-weight="bold")");
        DrawBackground(top, index == 0);
        for (int tick = 0; tick <= axis.Ticks(); ++tick) {
            const double value = axis.low + tick * axis.step;
            Line(kLeft, y(value), kWidth - kRight, y(value), R"( stroke="#ddd")");
            Text(kLeft - 6.0, y(value) + 4.0, Fixed(value, axis.decimals), R"( text-anchor="end")");
        }
        for (int tick = 0; tick <= xAxis_.Ticks(); ++tick) {
            const double value = xAxis_.low + tick * xAxis_.step;
            Line(X(value), bottom, X(value), bottom + 4.0, R"( stroke="#333")");
            if (index + 1 == chart_.panels.size()) {
                Text(X(value), bottom + 18.0, Fixed(value, xAxis_.decimals), kMiddle);
            }
        }
        Line(kLeft, bottom, kWidth - kRight, bottom, R"( stroke="#333")");
        if (panel.limit) {
            Line(kLeft, y(*panel.limit), kWidth - kRight, y(*panel.limit),
                 R"( stroke="#a01c1c" stroke-dasharray="6 4")");
            Text(kLeft + 6.0, y(*panel.limit) - 5.0, panel.limitLabel, R"( fill="#a01c1c")");
        }

        const std::string colour(kColours[index % kColours.size()]);
        svg_ += R"(<polyline fill="none" stroke-width="2" stroke=")" + colour + R"(" points=")";
        for (std::size_t i = 0; i < chart_.x.size(); ++i) {
            svg_ += (i == 0 ? "" : " ") + Fixed(X(chart_.x[i]), 1) + ',' + Fixed(y(panel.values[i]), 1);
        }
        svg_ += "\"/>\n";
    }

    /// Draws stretches of equal background. Two stretches meet half-way between the samples on both sides.
    void DrawBackground(double top, bool labelled) {
        const auto& x = chart_.x;
        for (std::size_t first = 0, next = 0; first < x.size(); first = next) {
            for (next = first; next < x.size() && chart_.shaded[next] == chart_.shaded[first]; ++next) {
            }
            const double from = X(first == 0 ? x.front() : (x[first - 1] + x[first]) / 2.0);
            const double to = X(next == x.size() ? x.back() : (x[next - 1] + x[next]) / 2.0);
            if (chart_.shaded[first]) {
                svg_ += R"(<rect x=")" + Fixed(std::min(from, to), 1) + R"(" y=")" + Fixed(top, 1) + R"(" width=")" +
                        Fixed(std::abs(to - from), 1) + R"(" height=")" + Fixed(kPanelHeight, 1) +
                        R"(" fill="#f6e3c8"/>)" + '\n';
            }
            if (first != 0) {
                Line(from, top, from, top + kPanelHeight, R"( stroke="#b08040" stroke-dasharray="2 3")");
            }
            constexpr double kRoom = 110.0; // for a label; the title of the panel needs as much at the left
            const double middle = std::max((from + to) / 2.0, kLeft + 1.5 * kRoom);
            if (labelled && std::abs(to - from) >= kRoom && middle + kRoom / 2.0 <= std::max(from, to)) {
                Text(middle, top - 8.0, chart_.shaded[first] ? chart_.shadedLabel : chart_.plainLabel, kMiddle);
            }
        }
    }

    const Chart& chart_;
    Axis xAxis_;
    std::string svg_;
};

} // namespace

std::string DrawSvg(const Chart& chart) { return Drawing(chart).Draw(); }

} // namespace tarnexctl
