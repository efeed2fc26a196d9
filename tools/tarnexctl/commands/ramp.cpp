#include <algorithm>
#include <chrono>
#include <cmath>
#include <memory>
#include <optional>
#include <string>

#include "tools/tarnexctl/commands.h"
#include "tools/tarnexctl/common_arguments.h"
#include "tools/tarnexctl/interrupt.h"
#include "tools/tarnexctl/number_text.h"
#include "tools/tarnexctl/supply.h"

namespace tarnexctl {

namespace {

struct Options {
    std::string channel;        ///< as given
    std::optional<double> from; ///< V; nothing: the level that is set
    double to = 0.0;            ///< V
    double rate = 1.0;          ///< V/s
    double interval = 0.05;     ///< s
    bool switchOn = false;
    double giveUp = 10.0; ///< s
};

/// Moves the level to options.to; returns false when a signal ends it on the way.
bool Move(const Supply& supply, const std::string& channel, double from, const Options& options, Console& console) {
    using Clock = std::chrono::steady_clock;
    const auto start = Clock::now();
    const double distance = std::abs(options.to - from);
    const double direction = options.to < from ? -1.0 : 1.0;
    for (double level = from; level != options.to;) {
        if (!Wait(options.interval)) {
            return false;
        }
        const double covered = options.rate * std::chrono::duration<double>(Clock::now() - start).count();
        level = covered >= distance ? options.to : from + direction * covered;
        supply.Call("setting the voltage to " + Fixed(level, 3) + " V", &TARNEXSupply_SetVoltage, channel.c_str(),
                    level);
        console.ShowProgress(std::min(covered / distance, 1.0), Fixed(level, 3) + " V");
    }
    return true;
}

ExitCode Run(const Options& options, const CommonOptions& common, Console& console) {
    CatchInterrupts();
    const Supply supply(common);
    const auto channel = supply.Channel(options.channel);
    supply.CheckVolts(channel, options.to);
    supply.CheckVolts(channel, options.from.value_or(0.0));
    const double from = options.from ? *options.from : supply.Read(channel, &TARNEXSupply_GetVoltage);

    bool complete = false;
    const auto run = [&] {
        supply.Call("setting the voltage", &TARNEXSupply_SetVoltage, channel.c_str(), from);
        if (Interrupted()) {
            return;
        }
        if (options.switchOn) {
            supply.Call("switching the output on", &TARNEXSupply_SetOutputEnabled, channel.c_str(), ViBoolean{VI_TRUE});
        }
        complete = Move(supply, channel, from, options, console);
        if (complete) {
            supply.ExpectLevel(channel, "the voltage of " + channel, &TARNEXSupply_GetVoltage, options.to);
            if (options.switchOn) {
                supply.ExpectOutput(channel, true);
            }
            complete = !Interrupted(); // a signal at the end counts too
        }
    };
    if (options.switchOn) {
        OffUnless(supply, channel, options.giveUp, run, [&] { return complete; });
    } else {
        run();
    }
    console.ClearProgress();
    return complete ? ExitCode::Done : ExitCode::Interrupted;
}

Action Declare(CLI::App& app) {
    const auto options = std::make_shared<Options>();
    DeclareChannel(app, options->channel);
    app.add_option("--to", options->to, "last voltage")->type_name("V")->required()->check(Level());
    app.add_option("--rate", options->rate, "change per second")
        ->type_name("V/S")
        ->required()
        ->check(Between(0.001, 1000000.0));
    app.add_option("--from", options->from, "first voltage; without it, the one that is set")
        ->type_name("V")
        ->check(Level());
    app.add_option("--interval", options->interval, "time between two settings")
        ->type_name("S")
        ->capture_default_str()
        ->check(Between(0.001, 3600.0));
    app.add_flag("--on", options->switchOn,
                 "switch the output on first; a ramp that does not end well switches it off");
    DeclareGiveUp(app, options->giveUp);
    return [options](const CommonOptions& common, Console& console) { return Run(*options, common, console); };
}

} // namespace

const Command kRamp{"ramp", "move the voltage at a constant rate", &Declare};

} // namespace tarnexctl
