#include <memory>
#include <optional>
#include <string>

#include "tools/tarnexctl/channels.h"
#include "tools/tarnexctl/commands.h"
#include "tools/tarnexctl/common_arguments.h"
#include "tools/tarnexctl/driver_session.h"

namespace tarnexctl {

namespace {

struct Options {
    std::string channel;           ///< as given
    std::optional<double> voltage; ///< V
    std::optional<double> current; ///< A
    std::string atLimit;           ///< "regulate", "trip" or empty
    std::optional<double> ovp;     ///< V
    bool noOvp = false;
};

ExitCode Run(const Options& options, const CommonOptions& common) {
    if (!options.voltage && !options.current && options.atLimit.empty() && !options.ovp && !options.noOvp) {
        throw Failure(ExitCode::Usage,
                      "set: give at least one of --voltage, --current, --at-limit, --ovp and --no-ovp");
    }
    const DriverSession session(common);
    const ViSession vi = session.Handle();
    const auto name = ChannelName(options.channel);
    const char* const channel = name.c_str();
    // The protections come first and the voltage last, so that the load is protected before its voltage rises.
    if (options.ovp) {
        session.Check(TARNEX_ConfigureOVP(vi, channel, VI_TRUE, *options.ovp),
                      "setting the over-voltage protection of " + name);
    }
    if (options.noOvp) {
        session.Check(TARNEX_SetAttributeViBoolean(vi, channel, TARNEX_ATTR_OVP_ENABLED, VI_FALSE),
                      "switching the over-voltage protection of " + name + " off");
    }
    if (options.current) {
        session.Check(TARNEX_SetAttributeViReal64(vi, channel, TARNEX_ATTR_CURRENT_LIMIT, *options.current),
                      "setting the current limit of " + name);
    }
    if (!options.atLimit.empty()) {
        const ViInt32 behavior = options.atLimit == "trip" ? TARNEX_VAL_CURRENT_TRIP : TARNEX_VAL_CURRENT_REGULATE;
        session.Check(TARNEX_SetAttributeViInt32(vi, channel, TARNEX_ATTR_CURRENT_LIMIT_BEHAVIOR, behavior),
                      "setting what " + name + " does at its current limit");
    }
    if (options.voltage) {
        session.Check(TARNEX_ConfigureVoltageLevel(vi, channel, *options.voltage), "setting the voltage of " + name);
    }
    return ExitCode::Done;
}

Action Declare(CLI::App& app) {
    const auto options = std::make_shared<Options>();
    DeclareChannel(app, options->channel);
    app.add_option("--voltage", options->voltage, "voltage level")->type_name("V")->check(Level());
    app.add_option("--current", options->current, "current limit, and level of the over-current protection")
        ->type_name("A")
        ->check(Level());
    app.add_option("--at-limit", options->atLimit, "at the current limit: regulate, or trip and switch off")
        ->type_name("WHAT")
        ->check(CLI::IsMember({"regulate", "trip"}).description(""));
    auto* const ovp = app.add_option("--ovp", options->ovp, "over-voltage protection on, with this level")
                          ->type_name("V")
                          ->check(Level());
    app.add_flag("--no-ovp", options->noOvp, "over-voltage protection off")->excludes(ovp);
    return [options](const CommonOptions& common, Console& /*console*/) { return Run(*options, common); };
}

} // namespace

const Command kSet{"set", "program a channel", &Declare};

} // namespace tarnexctl
