// Voltage sweep over the command layer: steps OutputChannel1 from 0 V to 20 V with a limit of 1.2 A, measures voltage,
// current and power at each step, and writes the values to sweep.csv and their curves to sweep.svg.
//
// Usage: sweep RESOURCE        for example: sweep TCPIP0::192.168.1.20::5025::SOCKET
#include <instrument/tarnex_supply.h>

#include "curve_svg.h"

#include <chrono>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using curve_svg::Fixed;

constexpr ORVA::ChannelNumber kChannel = 1;
constexpr double kLimit = 1.2; // A
constexpr double kStep = 0.5;  // V
constexpr int kSteps = 40;
constexpr auto kSettling = std::chrono::milliseconds(20);

struct Point {
    double set;     // V, programmed
    double volts;   // measured
    double amperes; // measured
    double watts;   // measured
    bool limited;   // in constant current
};

// Negative statuses are errors; positive statuses are success with additional information.
void Check(ViStatus status) {
    if (status < 0) {
        throw std::runtime_error("the supply did not accept a command or did not answer");
    }
}

// Switches the output off in every case, also after an exception.
class OutputOn {
  public:
    explicit OutputOn(ORVA::TARNEX& supply) : supply_(supply) { Check(supply_.SetOutputEnabled(kChannel, true)); }
    OutputOn(const OutputOn&) = delete;
    OutputOn& operator=(const OutputOn&) = delete;
    ~OutputOn() { supply_.SetOutputEnabled(kChannel, false); }

  private:
    ORVA::TARNEX& supply_;
};

Point MeasureAt(ORVA::TARNEX& supply, double set) {
    Point point{.set = set, .volts = 0.0, .amperes = 0.0, .watts = 0.0, .limited = false};
    ORVA::RegulationMode mode{};
    Check(supply.SetVoltage(kChannel, set));
    std::this_thread::sleep_for(kSettling);
    // One value at a time: MeasureAll writes the number of its fields to standard output.
    Check(supply.MeasureVoltage(kChannel, point.volts));
    Check(supply.MeasureCurrent(kChannel, point.amperes));
    Check(supply.MeasurePower(kChannel, point.watts));
    Check(supply.GetRegulationMode(kChannel, mode));
    point.limited = mode == ORVA::RegulationMode::ConstantCurrent;
    return point;
}

std::vector<Point> Sweep(ORVA::TARNEX& supply) {
    std::vector<Point> points;
    Check(supply.SetVoltage(kChannel, 0.0));
    Check(supply.SetCurrent(kChannel, kLimit));
    const OutputOn output(supply);
    for (int step = 0; step <= kSteps; ++step) {
        points.push_back(MeasureAt(supply, step * kStep));
    }
    return points;
}

void WriteCsv(const std::vector<Point>& points) {
    std::ofstream csv("sweep.csv", std::ios::binary);
    csv << "set_V,voltage_V,current_A,power_W,mode\n";
    for (const auto& point : points) {
        csv << Fixed(point.set, 3) << ',' << Fixed(point.volts, 6) << ',' << Fixed(point.amperes, 6) << ','
            << Fixed(point.watts, 6) << ',' << (point.limited ? "CC" : "CV") << '\n';
    }
    if (!csv.flush()) {
        throw std::runtime_error("sweep.csv cannot be written");
    }
}

void WriteSvg(const std::vector<Point>& points, const std::string& model) {
    curve_svg::Chart chart{.title = model + ", OutputChannel1",
                           .xTitle = "Programmed voltage, V",
                           .x = {},
                           .limitedFrom = 0,
                           .panels = {{"Voltage, V", {}},
                                      {"Current, A", {}, kLimit, "current limit " + Fixed(kLimit, 2) + " A"},
                                      {"Power, W", {}}}};
    for (const auto& point : points) {
        chart.limitedFrom += point.limited ? 0 : 1; // once in constant current, the rest of the sweep is
        chart.x.push_back(point.set);
        chart.panels[0].values.push_back(point.volts);
        chart.panels[1].values.push_back(point.amperes);
        chart.panels[2].values.push_back(point.watts);
    }
    std::ofstream svg("sweep.svg", std::ios::binary);
    svg << curve_svg::Draw(chart);
    if (!svg.flush()) {
        throw std::runtime_error("sweep.svg cannot be written");
    }
}

void Run(const std::string& resource) {
    ORVA::TARNEX supply;
    Check(supply.Open({.resource = resource}));
    const auto points = Sweep(supply);
    WriteCsv(points);
    WriteSvg(points, supply.GetIdentity()->model);

    std::cout << points.size() << " points, 0 V to " << Fixed(points.back().set, 1) << " V\n";
    for (const auto& point : points) {
        if (point.limited) {
            std::cout << "Constant current from " << Fixed(point.set, 1) << " V on: " << Fixed(point.volts, 3) << " V, "
                      << Fixed(point.amperes, 3) << " A, " << Fixed(point.watts, 3) << " W\n";
            break;
        }
    }
    std::cout << "Written: sweep.csv, sweep.svg\n";
}

} // namespace

int main(int argc, char* argv[]) {
    if (argc != 2) {
        std::cerr << "usage: sweep RESOURCE\n";
        return 2;
    }
    try {
        Run(argv[1]);
        return 0;
    } catch (const std::exception& failure) {
        // The command layer throws std::invalid_argument for a reply that is not a number.
        std::cerr << "sweep: " << failure.what() << '\n';
        return 1;
    }
}
