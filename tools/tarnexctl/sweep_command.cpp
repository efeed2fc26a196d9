#include "examples/curve_svg.h"
#include "tools/tarnexctl/channels.h"
#include "tools/tarnexctl/command_layer.h"
#include "tools/tarnexctl/commands.h"
#include "tools/tarnexctl/failure.h"
#include "tools/tarnexctl/interrupt.h"
#include "tools/tarnexctl/report.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

namespace tarnexctl {

namespace {

struct Point {
    double set;   // V
    double volts; // measured, as the two below
    double amperes;
    double watts;
    bool limited; // in constant current
};

std::vector<double> Levels(const Arguments& arguments, const ORVA::ChannelLimits& limits) {
    constexpr double kMost = 100000.0;
    for (const double end : {arguments.from, arguments.to}) {
        if (!(end >= limits.minimumVoltage && end <= limits.maximumVoltage)) {
            throw Failure(kUsage, "sweep: " + Fixed(end, 3) + " V is beyond the channel's range, " +
                                      Fixed(limits.minimumVoltage, 1) + " V to " + Fixed(limits.maximumVoltage, 1) +
                                      " V");
        }
    }
    // Half a millionth of a step more: 0.1 does not divide 0.3 evenly in binary.
    const double steps = std::floor(std::abs(arguments.to - arguments.from) / arguments.step + 5e-7);
    if (steps >= kMost) {
        throw Failure(kUsage, "sweep: more than 100000 points; give a larger --step");
    }
    const double step = arguments.to < arguments.from ? -arguments.step : arguments.step;
    std::vector<double> levels;
    const auto [lowest, highest] = std::minmax(arguments.from, arguments.to);
    for (int i = 0; i <= static_cast<int>(steps); ++i) {
        levels.push_back(std::clamp(arguments.from + i * step, lowest, highest));
    }
    return levels;
}

/// An output that is on from here to the end of the block, however that comes about.
class OutputOn {
  public:
    OutputOn(const CommandLayer& supply, ORVA::ChannelNumber channel) : supply_(supply), channel_(channel) {
        CommandLayer::Check(supply_->SetOutputEnabled(channel_, true), "switching the output on");
    }
    OutputOn(const OutputOn&) = delete;
    OutputOn& operator=(const OutputOn&) = delete;
    ~OutputOn() {
        if (!off_) {
            supply_->SetOutputEnabled(channel_, false); // a failure is under way already
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
        throw Failure(kSupplyFailed, "the output went off at " + Fixed(set, 3) +
                                         " V: a protection tripped (tarnexctl errors tells which)");
    }
    CommandLayer::Check(supply->MeasureVoltage(channel, point.volts), doing);
    CommandLayer::Check(supply->MeasureCurrent(channel, point.amperes), doing);
    CommandLayer::Check(supply->MeasurePower(channel, point.watts), doing);
    CommandLayer::Check(supply->GetRegulationMode(channel, mode), doing);
    point.limited = mode == ORVA::RegulationMode::ConstantCurrent;
    return point;
}

/// The points as they come: lines of CSV or of JSON, into a file or onto standard output.
class PointWriter {
  public:
    PointWriter(const Arguments& arguments, Console& console)
        : path_(arguments.csv), json_(arguments.json), console_(console) {
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
            throw Failure(kFileFailed, path_ + " cannot be written");
        }
    }

    std::string path_;
    bool json_;
    Console& console_;
    std::ofstream file_;
};

std::string Drawn(const std::vector<Point>& points, const std::string& title, double limit) {
    curve_svg::Chart chart{.title = title,
                           .x_title = "Programmed voltage, V",
                           .x = {},
                           .shaded = {},
                           .plain_label = "constant voltage",
                           .shaded_label = "constant current",
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
    return curve_svg::Draw(chart);
}

} // namespace

// The first thing that can go wrong without touching the output goes wrong first: arguments, files, the connection.
int Sweep(const Arguments& arguments, Console& console) {
    const auto channel = ChannelNumberOf(arguments.channel);
    CatchInterrupts();
    SurviveBrokenPipes();
    std::ofstream plot;
    if (!arguments.plot.empty()) {
        plot.open(arguments.plot, std::ios::binary | std::ios::trunc);
        if (!plot) {
            throw Failure(kFileFailed, arguments.plot + " cannot be written");
        }
    }
    PointWriter writer(arguments, console);
    const CommandLayer supply(arguments);
    const auto levels = Levels(arguments, supply->GetChannelLimits(channel));

    double limit = 0.0;
    CommandLayer::Check(supply->SetVoltage(channel, levels.front()), "setting the voltage");
    if (arguments.limit) {
        CommandLayer::Check(supply->SetCurrent(channel, *arguments.limit), "setting the current limit");
    }
    CommandLayer::Check(supply->GetCurrent(channel, limit), "reading the current limit");

    writer.Begin();
    std::vector<Point> points;
    OutputOn output(supply, channel);
    for (const double level : levels) {
        CommandLayer::Check(supply->SetVoltage(channel, level), "setting the voltage");
        if (!Wait(arguments.settle)) {
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

    if (!arguments.plot.empty() && !points.empty()) {
        const auto title = supply->GetIdentity()->model + ", " + ChannelName(arguments.channel);
        if (!(plot << Drawn(points, title, limit) << std::flush)) {
            throw Failure(kFileFailed, arguments.plot + " cannot be written");
        }
    }
    return points.size() == levels.size() ? kDone : kInterrupted;
}

} // namespace tarnexctl
