#include <algorithm>
#include <cmath>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/tarnexctl/commands.h"
#include "tools/tarnexctl/common_arguments.h"
#include "tools/tarnexctl/curve_svg.h"
#include "tools/tarnexctl/interrupt.h"
#include "tools/tarnexctl/number_text.h"
#include "tools/tarnexctl/report.h"
#include "tools/tarnexctl/safe_text.h"
#include "tools/tarnexctl/supply.h"

namespace tarnexctl {

namespace {

struct Options {
    std::string channel;         ///< as given
    double from = 0.0;           ///< V
    double to = 0.0;             ///< V
    double step = 0.1;           ///< V
    std::optional<double> limit; ///< A
    double settle = 0.05;        ///< s
    std::string csv;
    std::string plot;
    double giveUp = 10.0; ///< s
};

struct Point {
    double set;     ///< V, programmed
    double volts;   ///< measured
    double amperes; ///< measured
    double watts;   ///< measured
    bool limited;   ///< in constant current
};

/// Removes what binary fractions leave behind: 0.30000000000000004.
double RoundedTo9Digits(double value) { return std::round(value * 1e9) / 1e9; }

/// Returns the voltages of the sweep. The last one is `to`, also when the last step is shorter than the others.
std::vector<double> Levels(const Options& options) {
    constexpr double kMaxPoints = 100000.0;
    constexpr double kTolerance = 5e-7; // of a step: in binary, 0.3 is not exactly three times 0.1
    const double steps = std::floor(std::abs(options.to - options.from) / options.step + kTolerance);
    if (steps >= kMaxPoints) {
        throw Failure(ExitCode::Usage, "sweep: more than 100000 points; give a larger --step");
    }
    const double step = options.to < options.from ? -options.step : options.step;
    std::vector<double> levels;
    const auto [lowest, highest] = std::minmax(options.from, options.to);
    for (int i = 0; i <= static_cast<int>(steps); ++i) {
        levels.push_back(std::clamp(RoundedTo9Digits(options.from + i * step), lowest, highest));
    }
    if (std::abs(levels.back() - options.to) > kTolerance * options.step) {
        levels.push_back(options.to);
    } else {
        levels.back() = options.to;
    }
    return levels;
}

Point MeasureAt(const Supply& supply, const std::string& channel, double set) {
    Point point{.set = set, .volts = 0.0, .amperes = 0.0, .watts = 0.0, .limited = false};
    if (!supply.IsOn(channel)) {
        throw Failure(ExitCode::SupplyFailed,
                      "the output went off at " + Fixed(set, 3) + " V: a protection tripped (see tarnexctl errors)");
    }
    supply.Call("measuring at " + Fixed(set, 3) + " V", &TARNEXSupply_MeasureAll, channel.c_str(), &point.volts,
                &point.amperes, &point.watts);
    point.limited =
        supply.Read(channel, &TARNEXSupply_GetRegulationMode) == TARNEXSUPPLY_VAL_REGULATION_CONSTANT_CURRENT;
    return point;
}

/// Writes each point at once, as a line of CSV or JSON, to a file or to standard output.
class PointWriter {
  public:
    PointWriter(const Options& options, const CommonOptions& common, Console& console)
        : path_(options.csv), json_(common.json), console_(console) {
        if (!path_.empty()) {
            file_.open(path_, std::ios::binary | std::ios::trunc);
            Write("");
        }
    }

    /// Writes the head of a CSV file: a comment that says where the points come from, and the names of the columns.
    void Begin(const std::string& comment) {
        if (!json_) {
            Write("# " + Printable(comment) + '\n');
            Write("set_V,voltage_V,current_A,power_W,mode\n");
        }
    }

    void Write(const Point& point) {
        const std::string mode = point.limited ? "CC" : "CV";
        if (json_) {
            Report report({{"set", ""}, {"voltage", ""}, {"current", ""}, {"power", ""}, {"regulation", ""}});
            report.Add({point.set, point.volts, point.amperes, point.watts, mode});
            Write(report.JsonLines());
        } else {
            Write(Fixed(point.set, 3) + ',' + Fixed(point.volts, 6) + ',' + Fixed(point.amperes, 6) + ',' +
                  Fixed(point.watts, 6) + ',' + mode + '\n');
        }
    }

  private:
    void Write(std::string_view text) {
        if (path_.empty()) {
            console_.Print(text);
        } else if (!(file_ << text << std::flush)) {
            throw Failure(ExitCode::FileFailed, path_ + " cannot be written");
        }
    }

    std::string path_;
    bool json_;
    Console& console_;
    std::ofstream file_;
};

std::string Draw(const std::vector<Point>& points, const std::string& title, double limit) {
    Chart chart{.title = title,
                .xTitle = "Programmed voltage, V",
                .x = {},
                .shaded = {},
                .plainLabel = "constant voltage",
                .shadedLabel = "constant current",
                .panels = {{"Voltage, V", {}},
                           {"Current, A", {}, limit, "current limit " + Fixed(limit, 2) + " A"},
                           {"Power, W", {}}}};
    for (const auto& point : points) {
        chart.x.push_back(point.set);
        chart.shaded.push_back(point.limited);
        chart.panels[0].values.push_back(point.volts);
        chart.panels[1].values.push_back(point.amperes);
        chart.panels[2].values.push_back(point.watts);
    }
    return DrawSvg(chart);
}

// Arguments, files and the connection are checked first, because their failures leave the output unchanged.
ExitCode Run(const Options& options, const CommonOptions& common, Console& console) {
    CatchInterrupts();
    SurviveBrokenPipes();
    const Supply supply(common);
    const auto name = supply.Channel(options.channel);
    const char* const channel = name.c_str();
    supply.CheckVolts(name, options.from);
    supply.CheckVolts(name, options.to);
    supply.CheckAmperes(name, options.limit.value_or(0.0));
    const auto levels = Levels(options);

    // The files come after all that can be refused, because opening them empties existing ones.
    std::ofstream plot;
    if (!options.plot.empty()) {
        plot.open(options.plot, std::ios::binary | std::ios::trunc);
        if (!plot) {
            throw Failure(ExitCode::FileFailed, options.plot + " cannot be written");
        }
    }
    PointWriter writer(options, common, console);
    supply.Call("setting the voltage", &TARNEXSupply_SetVoltage, channel, levels.front());
    if (options.limit) {
        supply.Call("setting the current limit", &TARNEXSupply_SetCurrent, channel, *options.limit);
    }
    const double limit = supply.Read(name, &TARNEXSupply_GetCurrent);

    writer.Begin(supply.Title() + ", " + name + ", " + UtcTime() + ", limit " + Plain(limit) + " A, settle " +
                 Plain(options.settle) + " s");
    std::vector<Point> points;
    if (!Interrupted()) {
        const auto run = [&] {
            supply.Call("switching the output on", &TARNEXSupply_SetOutputEnabled, channel, ViBoolean{VI_TRUE});
            for (const double level : levels) {
                supply.Call("setting the voltage", &TARNEXSupply_SetVoltage, channel, level);
                if (!Wait(options.settle)) {
                    break;
                }
                points.push_back(MeasureAt(supply, name, level));
                writer.Write(points.back());
                console.ShowProgress(static_cast<double>(points.size()) / static_cast<double>(levels.size()),
                                     std::to_string(points.size()) + '/' + std::to_string(levels.size()) + "  " +
                                         Fixed(level, 3) + " V");
            }
        };
        OffUnless(supply, name, options.giveUp, run, [] { return false; });
    }
    console.ClearProgress();

    if (!options.plot.empty() && !points.empty()) {
        const auto title = supply.Text(TARNEX_ATTR_INSTRUMENT_MODEL) + ", " + name;
        if (!(plot << Draw(points, title, limit) << std::flush)) {
            throw Failure(ExitCode::FileFailed, options.plot + " cannot be written");
        }
    }
    return points.size() == levels.size() ? ExitCode::Done : ExitCode::Interrupted;
}

Action Declare(CLI::App& app) {
    const auto options = std::make_shared<Options>();
    DeclareChannel(app, options->channel);
    app.add_option("--from", options->from, "first voltage")->type_name("V")->capture_default_str()->check(Level());
    app.add_option("--to", options->to, "last voltage")->type_name("V")->required()->check(Level());
    app.add_option("--step", options->step, "distance of the voltages")
        ->type_name("V")
        ->capture_default_str()
        ->check(Between(0.001, 1000000.0));
    app.add_option("--limit", options->limit, "current limit; without it, the one that is set")
        ->type_name("A")
        ->check(Level());
    app.add_option("--settle", options->settle, "time from setting to measuring")
        ->type_name("S")
        ->capture_default_str()
        ->check(Between(0.0, 3600.0));
    app.add_option("--csv", options->csv, "write the points here instead of on standard output")->type_name("FILE");
    app.add_option("--plot", options->plot, "draw the curves into this SVG file")->type_name("FILE");
    DeclareGiveUp(app, options->giveUp);
    return [options](const CommonOptions& common, Console& console) { return Run(*options, common, console); };
}

} // namespace

const Command kSweep{"sweep", "step the voltage through a range and measure; the output is off afterwards", &Declare};

} // namespace tarnexctl
