#include "tools/tarnexctl/readings.h"

#include "tools/tarnexctl/common_arguments.h"

namespace tarnexctl {

Report ReadingsReport() {
    return Report({{"time", "Time/s", 1, 8},
                   {"channel", "Channel", 0, 14},
                   {"voltage", "Voltage/V", 4},
                   {"current", "Current/A", 4},
                   {"power", "Power/W", 4, 9},
                   {"output_enabled", "Output"},
                   {"regulation", "Mode"}});
}

std::vector<Reading> Measure(const Supply& supply, const std::vector<std::string>& channels) {
    std::vector<Reading> readings;
    for (const auto& channel : channels) {
        Reading reading{.channel = channel};
        supply.Call("measuring " + channel, &TARNEXSupply_MeasureAll, channel.c_str(), &reading.volts, &reading.amperes,
                    &reading.watts);
        reading.on = supply.IsOn(channel);
        if (reading.on) {
            reading.mode = RegulationText(supply.Read(channel, &TARNEXSupply_GetRegulationMode));
        }
        readings.push_back(std::move(reading));
    }
    return readings;
}

void AddReadings(const Supply& supply, const std::vector<std::string>& channels, double time, Report& report) {
    for (const auto& reading : Measure(supply, channels)) {
        const Cell mode = reading.mode.empty() ? Cell() : Cell(reading.mode);
        report.Add({time, reading.channel, reading.volts, reading.amperes, reading.watts, reading.on, mode});
    }
}

void AddGap(const std::vector<std::string>& channels, double time, Report& report) {
    for (const auto& channel : channels) {
        report.Add({time, channel, {}, {}, {}, {}, {}});
    }
}

void FitReadings(std::size_t columns, Report& report) {
    // An output that is off has no mode, so the mode tells what "Output" tells.
    for (const auto* const key : {"time", "power", "output_enabled"}) {
        if (report.Width() <= columns) {
            return;
        }
        report.Hide(key);
    }
    if (report.Width() > columns) {
        report.Narrow();
    }
}

} // namespace tarnexctl
