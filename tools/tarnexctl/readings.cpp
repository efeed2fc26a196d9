#include "tools/tarnexctl/readings.h"

#include "tools/tarnexctl/channels.h"

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

void AddReadings(const CommandLayer& supply, const std::vector<ORVA::ChannelNumber>& channels, double time,
                 Report& report) {
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
        Cell regulation; // an output that is off regulates nothing
        if (on) {
            regulation = RegulationText(mode == ORVA::RegulationMode::ConstantCurrent);
        }
        report.Add({time, name, volts, amperes, watts, on, regulation});
    }
}

std::vector<ORVA::ChannelNumber> ChannelNumbersOr(const std::vector<std::string>& given) {
    std::vector<ORVA::ChannelNumber> numbers;
    for (const auto& channel : ChannelsOr(given)) {
        numbers.push_back(ChannelNumberOf(channel));
    }
    return numbers;
}

} // namespace tarnexctl
