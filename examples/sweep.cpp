// Voltage sweep with the supply library: steps OutputChannel1 from 0 V to 20 V with a limit of 1.2 A, measures voltage,
// current and power at each step, and writes the values to sweep.csv and their curves to sweep.svg.
//
// Usage: sweep RESOURCE        for example: sweep TCPIP0::192.168.1.20::5025::SOCKET
#include <TARNEX_supply.h>

#include "curve_svg.h"

#include <array>
#include <chrono>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using curve_svg::Fixed;

constexpr auto kChannel = "OutputChannel1";
constexpr ViInt32 kTimeoutMs = 2000;
constexpr ViInt32 kGiveUpMs = 10000; // for switching the output off after a failure
constexpr double kLimit = 1.2;       // A
constexpr double kStep = 0.5;        // V
constexpr int kSteps = 40;
constexpr auto kSettling = std::chrono::milliseconds(20);

struct Point {
    double set;     // V, programmed
    double volts;   // measured
    double amperes; // measured
    double watts;   // measured
    bool limited;   // in constant current
};

// Only negative statuses are errors. The description is in the session's error record.
void Check(ViSession supply, ViStatus status) {
    if (status < 0) {
        std::array<ViChar, 1024> description{};
        TARNEX_GetError(supply, nullptr, static_cast<ViInt32>(description.size()), description.data());
        throw std::runtime_error(description.data());
    }
}

// Opens the supply, and closes it again in every case.
class Supply {
  public:
    explicit Supply(const char* resource) { Check(VI_NULL, TARNEXSupply_Open(resource, "", kTimeoutMs, &session_)); }
    Supply(const Supply&) = delete;
    Supply& operator=(const Supply&) = delete;
    ~Supply() { TARNEXSupply_Close(session_); }
    [[nodiscard]] ViSession Session() const { return session_; }

  private:
    ViSession session_ = VI_NULL;
};

// Switches the output on, and off again in every case, with the instrument's confirmation.
class OutputOn {
  public:
    explicit OutputOn(ViSession supply) : supply_(supply) {
        const auto status = TARNEXSupply_SetOutputEnabled(supply_, kChannel, VI_TRUE);
        if (status < 0) {
            SwitchOff(); // a command whose sending failed may have arrived
        }
        Check(supply_, status);
    }
    OutputOn(const OutputOn&) = delete;
    OutputOn& operator=(const OutputOn&) = delete;
    ~OutputOn() { SwitchOff(); }

  private:
    void SwitchOff() const {
        if (TARNEXSupply_EnsureOff(supply_, kChannel, kGiveUpMs) < 0) {
            std::cerr << "OUTPUT " << kChannel << " MAY STILL BE ON\n";
        }
    }
    ViSession supply_;
};

Point MeasureAt(ViSession supply, double set) {
    Point point{.set = set, .volts = 0.0, .amperes = 0.0, .watts = 0.0, .limited = false};
    ViInt32 mode = 0;
    Check(supply, TARNEXSupply_SetVoltage(supply, kChannel, set));
    std::this_thread::sleep_for(kSettling);
    Check(supply, TARNEXSupply_MeasureAll(supply, kChannel, &point.volts, &point.amperes, &point.watts));
    Check(supply, TARNEXSupply_GetRegulationMode(supply, kChannel, &mode));
    point.limited = mode == TARNEXSUPPLY_VAL_REGULATION_CONSTANT_CURRENT;
    return point;
}

std::vector<Point> Sweep(ViSession supply) {
    std::vector<Point> points;
    Check(supply, TARNEXSupply_SetVoltage(supply, kChannel, 0.0));
    Check(supply, TARNEXSupply_SetCurrent(supply, kChannel, kLimit));
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
    const Supply supply(resource.c_str());
    const auto points = Sweep(supply.Session());
    std::array<ViChar, 256> model{};
    Check(supply.Session(), TARNEXSupply_GetIdentity(supply.Session(), nullptr, model.data(), nullptr, nullptr));
    WriteCsv(points);
    WriteSvg(points, model.data());

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
        std::cerr << "sweep: " << failure.what() << '\n';
        return 1;
    }
}
