#include <memory>
#include <optional>
#include <string>

#include "tools/tarnexctl/commands.h"
#include "tools/tarnexctl/common_arguments.h"
#include "tools/tarnexctl/supply.h"

namespace tarnexctl {

namespace {

struct Options {
    std::string channel;           ///< as given
    std::optional<double> voltage; ///< V
    std::optional<double> current; ///< A
    std::string atLimit;           ///< "regulate", "trip" or empty
    std::optional<double> ovp;     ///< V
    bool noOvp = false;
    bool noConfirm = false;
};

// The protections come first and the voltage last, so that the load is protected before its voltage rises.
void Program(const Supply& supply, const std::string& name, const Options& options) {
    const char* const channel = name.c_str();
    if (options.ovp) {
        const auto doing = "setting the over-voltage protection of " + name;
        supply.Call(doing, &TARNEXSupply_SetOverVoltageLevel, channel, *options.ovp);
        supply.Call(doing, &TARNEXSupply_SetOverVoltageEnabled, channel, ViBoolean{VI_TRUE});
    }
    if (options.noOvp) {
        supply.Call("switching the over-voltage protection of " + name + " off", &TARNEXSupply_SetOverVoltageEnabled,
                    channel, ViBoolean{VI_FALSE});
    }
    if (options.current) {
        const auto doing = "setting the current limit of " + name;
        supply.Call(doing, &TARNEXSupply_SetCurrent, channel, *options.current);
        supply.Call(doing, &TARNEXSupply_SetOverCurrentLevel, channel, *options.current);
    }
    if (!options.atLimit.empty()) {
        supply.Call("setting what " + name + " does at its current limit", &TARNEXSupply_SetOverCurrentEnabled, channel,
                    static_cast<ViBoolean>(options.atLimit == "trip" ? VI_TRUE : VI_FALSE));
    }
    if (options.voltage) {
        supply.Call("setting the voltage of " + name, &TARNEXSupply_SetVoltage, channel, *options.voltage);
    }
}

void Confirm(const Supply& supply, const std::string& channel, const Options& options) {
    if (options.ovp) {
        supply.ExpectLevel(channel, "the over-voltage protection of " + channel, &TARNEXSupply_GetOverVoltageLevel,
                           *options.ovp);
    }
    if (options.ovp || options.noOvp) {
        supply.ExpectSwitch(channel, "the over-voltage protection of " + channel, &TARNEXSupply_GetOverVoltageEnabled,
                            options.ovp.has_value());
    }
    if (options.current) {
        supply.ExpectLevel(channel, "the current limit of " + channel, &TARNEXSupply_GetCurrent, *options.current);
    }
    if (!options.atLimit.empty()) {
        supply.ExpectSwitch(channel, "the over-current protection of " + channel, &TARNEXSupply_GetOverCurrentEnabled,
                            options.atLimit == "trip");
    }
    if (options.voltage) {
        supply.ExpectLevel(channel, "the voltage of " + channel, &TARNEXSupply_GetVoltage, *options.voltage);
    }
}

ExitCode Run(const Options& options, const CommonOptions& common) {
    if (!options.voltage && !options.current && options.atLimit.empty() && !options.ovp && !options.noOvp) {
        throw Failure(ExitCode::Usage,
                      "set: give at least one of --voltage, --current, --at-limit, --ovp and --no-ovp");
    }
    const Supply supply(common);
    const auto channels = supply.Channels({options.channel});
    for (const auto& channel : channels) { // before the first setting is sent
        for (const auto& volts : {options.voltage, options.ovp}) {
            supply.CheckVolts(channel, volts.value_or(0.0));
        }
        supply.CheckAmperes(channel, options.current.value_or(0.0));
    }
    for (const auto& channel : channels) {
        Program(supply, channel, options);
        if (!options.noConfirm) {
            Confirm(supply, channel, options);
        }
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
    DeclareNoConfirm(app, options->noConfirm);
    return [options](const CommonOptions& common, Console& /*console*/) { return Run(*options, common); };
}

} // namespace

const Command kSet{"set", "program a channel", &Declare};

} // namespace tarnexctl
