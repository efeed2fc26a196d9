#include <memory>
#include <string>
#include <vector>

#include "tools/tarnexctl/channels.h"
#include "tools/tarnexctl/commands.h"
#include "tools/tarnexctl/common_arguments.h"
#include "tools/tarnexctl/driver_session.h"
#include "tools/tarnexctl/report.h"

namespace tarnexctl {

namespace {

struct Options {
    std::vector<std::string> channels; ///< as given
};

ExitCode Run(const Options& options, const CommonOptions& common, Console& console) {
    const DriverSession session(common);
    Report report({{"channel", "Channel"},
                   {"voltage_level", "Voltage/V", 4},
                   {"current_limit", "Limit/A", 4},
                   {"current_limit_behavior", "At limit"},
                   {"ovp_enabled", "OVP"},
                   {"ovp_limit", "OVP/V", 4},
                   {"output_enabled", "Output"},
                   {"regulation", "Mode"}});
    for (const auto& given : ChannelsOr(options.channels)) {
        const auto channel = ChannelName(given);
        const bool on = session.Boolean(channel, TARNEX_ATTR_OUTPUT_ENABLED);
        const auto behavior = session.Integer(channel, TARNEX_ATTR_CURRENT_LIMIT_BEHAVIOR);
        Cell mode; // an output that is off regulates nothing
        if (on) {
            mode = RegulationText(session.InState(channel, TARNEX_VAL_OUTPUT_CONSTANT_CURRENT));
        }
        report.Add({channel, session.Real(channel, TARNEX_ATTR_VOLTAGE_LEVEL),
                    session.Real(channel, TARNEX_ATTR_CURRENT_LIMIT),
                    behavior == TARNEX_VAL_CURRENT_TRIP ? "trip" : "regulate",
                    session.Boolean(channel, TARNEX_ATTR_OVP_ENABLED), session.Real(channel, TARNEX_ATTR_OVP_LIMIT), on,
                    mode});
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
