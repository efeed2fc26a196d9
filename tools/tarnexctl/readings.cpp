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

void AddReadings(const Supply& supply, const std::vector<std::string>& channels, double time, Report& report) {
    for (const auto& channel : channels) {
        ViReal64 volts = 0.0;
        ViReal64 amperes = 0.0;
        ViReal64 watts = 0.0;
        supply.Call("measuring " + channel, &TARNEXSupply_MeasureAll, channel.c_str(), &volts, &amperes, &watts);
        const bool on = supply.IsOn(channel);
        Cell regulation; // an output that is off regulates nothing
        if (on) {
            regulation = RegulationText(supply.Read(channel, &TARNEXSupply_GetRegulationMode));
        }
        report.Add({time, channel, volts, amperes, watts, on, regulation});
    }
}

} // namespace tarnexctl
