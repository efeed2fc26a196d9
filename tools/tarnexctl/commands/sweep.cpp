#include <algorithm>
#include <cmath>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/tarnexctl/channels.h"
#include "tools/tarnexctl/command_layer.h"
#include "tools/tarnexctl/commands.h"
#include "tools/tarnexctl/common_arguments.h"
#include "tools/tarnexctl/curve_svg.h"
#include "tools/tarnexctl/interrupt.h"
#include "tools/tarnexctl/number_text.h"
#include "tools/tarnexctl/report.h"

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
};

struct Point {
    double set;     ///< V, programmed
    double volts;   ///< measured
    double amperes; ///< measured
    double watts;   ///< measured
    bool limited;   ///< in constant current
};

std::vector<double> Levels(const Options& options, const ORVA::ChannelLimits& limits) {
    constexpr double kMaxPoints = 100000.0;
    for (const double end : {options.from, options.to}) {
        if (!(end >= limits.minimumVoltage && end <= limits.maximumVoltage)) {
            throw Failure(ExitCode::Usage, "sweep: " + Fixed(end, 3) + " V is beyond the channel's range, " +
                                               Fixed(limits.minimumVoltage, 1) + " V to " +
                                               Fixed(limits.maximumVoltage, 1) + " V");
        }
    }
    // The tolerance of half a millionth of a step: in binary, 0.3 is not exactly three times 0.1.
    const double steps = std::floor(std::abs(options.to - options.from) / options.step + 5e-7);
    if (steps >= kMaxPoints) {
        throw Failure(ExitCode::Usage, "sweep: more than 100000 points; give a larger --step");
    }
    const double step = options.to < options.from ? -options.step : options.step;
    std::vector<double> levels;
    const auto [lowest, highest] = std::minmax(options.from, options.to);
    for (int i = 0; i <= static_cast<int>(steps); ++i) {
        levels.push_back(std::clamp(options.from + i * step, lowest, highest));
    }
    return levels;
}

/// An output that is on as long as the object exists.
class OutputOn {
  public:
    OutputOn(const CommandLayer& supply, ORVA::ChannelNumber channel) : supply_(supply), channel_(channel) {
        CommandLayer::Check(supply_->SetOutputEnabled(channel_, true), "switching the output on");
    }
    OutputOn(const OutputOn&) = delete;
    OutputOn& operator=(const OutputOn&) = delete;
    ~OutputOn() {
        if (!off_) {
            supply_->SetOutputEnabled(channel_, false); // without a check: another failure is on its way
        }
    }
    void SwitchOff() {
        off_ = true;
        CommandLayer::Check(supply_->SetOutputEnabled(channel_, false), "SWITCHING THE OUTPUT OFF");
    }

  private:
    const CommandLayer& supply_;
    ORVA::ChannelNumber channel_;
    bool off_ = false;
};

Point MeasureAt(const CommandLayer& supply, ORVA::ChannelNumber channel, double set) {
    const std::string doing = "measuring at " + Fixed(set, 3) + " V";
    Point point{.set = set, .volts = 0.0, .amperes = 0.0, .watts = 0.0, .limited = false};
    ORVA::RegulationMode mode{};
    bool on = false;
    CommandLayer::Check(supply->GetOutputEnabled(channel, on), doing);
    if (!on) {
        throw Failure(ExitCode::SupplyFailed,
                      "the output went off at " + Fixed(set, 3) + " V: a protection tripped (see tarnexctl errors)");
    }
    CommandLayer::Check(supply->MeasureVoltage(channel, point.volts), doing);
    CommandLayer::Check(supply->MeasureCurrent(channel, point.amperes), doing);
    CommandLayer::Check(supply->MeasurePower(channel, point.watts), doing);
    CommandLayer::Check(supply->GetRegulationMode(channel, mode), doing);
    point.limited = mode == ORVA::RegulationMode::ConstantCurrent;
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

    void Begin() {
        if (!json_) {
            Write("set_V,voltage_V,current_A,power_W,mode\n");
        }
    }

    void Write(const Point& point) {
        const std::string mode = RegulationText(point.limited);
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
    const auto channel = ChannelNumberOf(options.channel);
    CatchInterrupts();
    SurviveBrokenPipes();
    std::ofstream plot;
    if (!options.plot.empty()) {
        plot.open(options.plot, std::ios::binary | std::ios::trunc);
        if (!plot) {
            throw Failure(ExitCode::FileFailed, options.plot + " cannot be written");
        }
    }
    PointWriter writer(options, common, console);
    const CommandLayer supply(common);
    const auto levels = Levels(options, supply->GetChannelLimits(channel));

    double limit = 0.0;
    CommandLayer::Check(supply->SetVoltage(channel, levels.front()), "setting the voltage");
    if (options.limit) {
        CommandLayer::Check(supply->SetCurrent(channel, *options.limit), "setting the current limit");
    }
    CommandLayer::Check(supply->GetCurrent(channel, limit), "reading the current limit");

    writer.Begin();
    std::vector<Point> points;
    OutputOn output(supply, channel);
    for (const double level : levels) {
        CommandLayer::Check(supply->SetVoltage(channel, level), "setting the voltage");
        if (!Wait(options.settle)) {
            break;
        }
        points.push_back(MeasureAt(supply, channel, level));
        writer.Write(points.back());
        console.ShowProgress(static_cast<double>(points.size()) / static_cast<double>(levels.size()),
                             std::to_string(points.size()) + '/' + std::to_string(levels.size()) + "  " +
                                 Fixed(level, 3) + " V");
    }
    output.SwitchOff();
    console.ClearProgress();

    if (!options.plot.empty() && !points.empty()) {
        const auto title = supply->GetIdentity()->model + ", " + ChannelName(options.channel);
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
    return [options](const CommonOptions& common, Console& console) { return Run(*options, common, console); };
}

} // namespace

const Command kSweep{"sweep", "step the voltage through a range and measure; the output is off afterwards", &Declare};

} // namespace tarnexctl
