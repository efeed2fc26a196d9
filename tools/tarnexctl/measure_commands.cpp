#include "tools/tarnexctl/channels.h"
#include "tools/tarnexctl/command_layer.h"
#include "tools/tarnexctl/commands.h"
#include "tools/tarnexctl/failure.h"
#include "tools/tarnexctl/interrupt.h"
#include "tools/tarnexctl/report.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace tarnexctl {

namespace {

Report Readings() {
    return Report({{"time", "Time/s", 1, 8},
                   {"channel", "Channel", 0, 14},
                   {"voltage", "Voltage/V", 4},
                   {"current", "Current/A", 4},
                   {"power", "Power/W", 4, 9},
                   {"output_enabled", "Output"},
                   {"regulation", "Mode"}});
}

/// A row of Readings for each channel.
void Read(const CommandLayer& supply, const std::vector<ORVA::ChannelNumber>& channels, double time, Report& report) {
    for (const auto channel : channels) {
        const auto name = ChannelName(std::to_string(channel));
        const auto doing = "measuring " + name;
        double volts = 0.0;
        double amperes = 0.0;
        double watts = 0.0;
        bool on = false;
        ORVA::RegulationMode mode{};
        CommandLayer::Check(supply->MeasureVoltage(channel, volts), doing);
        CommandLayer::Check(supply->MeasureCurrent(channel, amperes), doing);
        CommandLayer::Check(supply->MeasurePower(channel, watts), doing);
        CommandLayer::Check(supply->GetOutputEnabled(channel, on), doing);
        CommandLayer::Check(supply->GetRegulationMode(channel, mode), doing);
        Cell regulation; // nothing is regulated while the output is off
        if (on) {
            regulation = mode == ORVA::RegulationMode::ConstantCurrent ? "CC" : "CV";
        }
        report.Add({time, name, volts, amperes, watts, on, regulation});
    }
}

std::vector<ORVA::ChannelNumber> ChannelNumbers(const Arguments& arguments) {
    std::vector<ORVA::ChannelNumber> numbers;
    for (const auto& given : ChannelsOr(arguments.channels)) {
        numbers.push_back(ChannelNumberOf(given));
    }
    return numbers;
}

/// Over what the last call printed, when `lines` is not 0.
std::string InPlace(const std::string& table, std::size_t lines) {
    std::string text = lines == 0 ? "" : "\x1b[" + std::to_string(lines) + "A";
    for (const char c : table) {
        text += c == '\n' ? std::string("\x1b[K\n") : std::string(1, c);
    }
    return text;
}

} // namespace

int Measure(const Arguments& arguments, Console& console) {
    const auto channels = ChannelNumbers(arguments);
    const CommandLayer supply(arguments);
    Report report = Readings();
    Read(supply, channels, 0.0, report);
    report.HideFirstColumn();
    console.Print(arguments.json ? report.JsonArray() : report.Table());
    return kDone;
}

// Ctrl-C is the usual end of it, and no failure.
int Watch(const Arguments& arguments, Console& console) {
    using Clock = std::chrono::steady_clock;
    const auto channels = ChannelNumbers(arguments);
    CatchInterrupts();
    const CommandLayer supply(arguments);
    Report report = Readings();
    const auto start = Clock::now();
    const auto elapsed = [&] { // s, of which no more than milliseconds make sense
        const auto passed = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start);
        return static_cast<double>(passed.count()) / 1000.0;
    };
    for (int taken = 0; !Interrupted() && (arguments.count == 0 || taken < arguments.count); ++taken) {
        // Counted from the start, so that the times of the exchanges do not add up.
        if (taken > 0 && !Wait(taken * arguments.interval - elapsed())) {
            break;
        }
        report.Clear();
        Read(supply, channels, elapsed(), report);
        if (arguments.json) {
            console.Print(report.JsonLines());
        } else if (console.OnTerminal()) {
            console.Print(InPlace(report.Table(), taken == 0 ? 0 : channels.size() + 1));
        } else {
            console.Print((taken == 0 ? report.Headings() : "") + report.Rows());
        }
    }
    return kDone;
}

} // namespace tarnexctl
