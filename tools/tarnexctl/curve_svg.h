// Curves over a common x axis, one panel below the other, as an SVG image.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace tarnexctl {

/// One curve with axes of its own.
struct Panel {
    std::string title;             ///< with the unit, for example "Current, A"
    std::vector<double> values;    ///< one for each x
    std::optional<double> limit{}; ///< the height of a dashed line
    std::string limitLabel{};
};

struct Chart {
    std::string title;
    std::string xTitle; ///< with the unit
    std::vector<double> x;
    std::vector<bool> shaded; ///< whether the background is shaded, one for each x
    std::string plainLabel;   ///< over a stretch without shading
    std::string shadedLabel;  ///< over a shaded stretch
    std::vector<Panel> panels;
};

/// Returns the chart as an SVG document. The chart must have at least one x.
std::string DrawSvg(const Chart& chart);

} // namespace tarnexctl
