#include <memory>
#include <string>
#include <vector>

#include "tools/tarnexctl/commands.h"
#include "tools/tarnexctl/common_arguments.h"
#include "tools/tarnexctl/report.h"
#include "tools/tarnexctl/supply.h"

namespace tarnexctl {

namespace {

struct Options {
    std::vector<std::string> channels; ///< as given
};

ExitCode Run(const Options& options, const CommonOptions& common, Console& console) {
    const Supply supply(common);
    Report report({{"channel", "Channel"},
                   {"voltage_level", "Voltage/V", 4},
                   {"current_limit", "Limit/A", 4},
                   {"current_limit_behavior", "At limit"},
                   {"ovp_enabled", "OVP"},
                   {"ovp_limit", "OVP/V", 4},
                   {"output_enabled", "Output"},
                   {"regulation", "Mode"}});
    for (const auto& channel : supply.Channels(options.channels)) {
        const bool on = supply.IsOn(channel);
        const bool trips = supply.Read(channel, &TARNEXSupply_GetOverCurrentEnabled) != VI_FALSE;
        Cell mode; // an output that is off regulates nothing
        if (on) {
            mode = RegulationText(supply.Read(channel, &TARNEXSupply_GetRegulationMode));
        }
        report.Add({channel, supply.Read(channel, &TARNEXSupply_GetVoltage),
                    supply.Read(channel, &TARNEXSupply_GetCurrent), trips ? "trip" : "regulate",
                    supply.Read(channel, &TARNEXSupply_GetOverVoltageEnabled) != VI_FALSE,
                    supply.Read(channel, &TARNEXSupply_GetOverVoltageLevel), on, mode});
    }
    console.Print(common.json ? report.JsonArray() : report.Table());
    return ExitCode::Done;
}

Action Declare(CLI::App& app) {
    const auto options = std::make_shared<Options>();
    DeclareChannels(app, options->channels);
    return [options](const CommonOptions& common, Console& console) { return Run(*options, common, console); };
}

} // namespace

const Command kGet{"get", "show what is programmed", &Declare};

} // namespace tarnexctl
