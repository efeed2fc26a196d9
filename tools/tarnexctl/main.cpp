// tarnexctl: a supply of the TARNEX family from the shell.

#include "instrument/option_flags.h"
#include "tools/tarnexctl/commands.h"
#include "tools/tarnexctl/failure.h"
#include "tools/tarnexctl/report.h"
#include "tools/tarnexctl/safe_text.h"

#include <CLI/CLI.hpp>
#include <array>
#include <charconv>
#include <iostream>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

namespace {

using tarnexctl::Arguments;
using tarnexctl::Console;
using tarnexctl::ExitCode;
using tarnexctl::Failure;

constexpr auto kDescription = "A power supply of the TARNEX family from the shell.";

constexpr auto kExplanations = R"(
CHANNEL is 1, 2 or a physical name (OutputChannel1). set, get, on and off also take the driver's selectors
("OutputChannel1,OutputChannel2", virtual names of the configuration store; get takes one channel each).

Exit codes: 0 done; 1 wrong arguments; 2 the driver or the instrument reported an error; 3 a file cannot be read or
written; 130 interrupted (watch ends with 0).

Examples:
  export TARNEX_RESOURCE=TCPIP0::192.168.1.20::5025::SOCKET
  tarnexctl set 1 --voltage 3.3 --current 1.5 --ovp 4
  tarnexctl on 1
  tarnexctl watch
  tarnexctl sweep 1 --to 12 --step 0.5 --limit 1 --csv sweep.csv --plot sweep.svg
)";

/// A number within bounds, which "nan" and "inf" are not.
CLI::Validator Between(double lowest, double highest) {
    const auto check = [=](const std::string& text) {
        double number = 0.0;
        const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), number);
        const bool sound = error == std::errc() && rest == text.data() + text.size();
        return sound && number >= lowest && number <= highest
                   ? std::string()
                   : "'" + text + "' is no number from " + tarnexctl::Fixed(lowest, 3) + " to " +
                         tarnexctl::Fixed(highest, 3);
    };
    return {check, ""};
}

/// V or A. What a channel takes is the driver's to say.
CLI::Validator Level() { return Between(-1000.0, 1000.0); }

void TakeNothing(CLI::App& /*command*/, Arguments& /*arguments*/) {}

void TakeChannels(CLI::App& command, Arguments& arguments) {
    command.add_option("CHANNEL", arguments.channels, "channels; without one, all")->type_name("");
}

void TakeChannelsToSwitchOn(CLI::App& command, Arguments& arguments) {
    command.add_option("CHANNEL", arguments.channels, "channels")->type_name("")->required();
}

void TakeSettings(CLI::App& command, Arguments& arguments) {
    command.add_option("CHANNEL", arguments.channel, "channel")->type_name("")->required();
    command.add_option("--voltage", arguments.voltage, "voltage level")->type_name("V")->check(Level());
    command.add_option("--current", arguments.current, "current limit, and level of the over-current protection")
        ->type_name("A")
        ->check(Level());
    command.add_option("--at-limit", arguments.at_limit, "at the current limit: regulate, or trip and switch off")
        ->type_name("WHAT")
        ->check(CLI::IsMember({"regulate", "trip"}).description(""));
    auto* const ovp = command.add_option("--ovp", arguments.ovp, "over-voltage protection on, with this level")
                          ->type_name("V")
                          ->check(Level());
    command.add_flag("--no-ovp", arguments.no_ovp, "over-voltage protection off")->excludes(ovp);
}

void TakeRepetition(CLI::App& command, Arguments& arguments) {
    TakeChannels(command, arguments);
    command.add_option("--interval", arguments.interval, "time between readings")
        ->type_name("S")
        ->capture_default_str()
        ->check(Between(0.001, 1000000.0));
    command.add_option("--count", arguments.count, "end after so many readings; 0: at Ctrl-C")
        ->type_name("N")
        ->capture_default_str()
        ->check(CLI::Range(0, 1000000000).description(""));
}

void TakeSweep(CLI::App& command, Arguments& arguments) {
    command.add_option("CHANNEL", arguments.channel, "channel")->type_name("")->required();
    command.add_option("--from", arguments.from, "first voltage")
        ->type_name("V")
        ->capture_default_str()
        ->check(Level());
    command.add_option("--to", arguments.to, "last voltage")->type_name("V")->required()->check(Level());
    command.add_option("--step", arguments.step, "distance of the voltages")
        ->type_name("V")
        ->capture_default_str()
        ->check(Between(0.001, 1000000.0));
    command.add_option("--limit", arguments.limit, "current limit; without it, the one that is set")
        ->type_name("A")
        ->check(Level());
    command.add_option("--settle", arguments.settle, "time from setting to measuring")
        ->type_name("S")
        ->capture_default_str()
        ->check(Between(0.0, 3600.0));
    command.add_option("--csv", arguments.csv, "write the points here instead of on standard output")
        ->type_name("FILE");
    command.add_option("--plot", arguments.plot, "draw the curves into this SVG file")->type_name("FILE");
}

void TakeSequence(CLI::App& command, Arguments& arguments, const std::string& format,
                  const std::vector<std::string>& ends) {
    std::string words;
    for (const auto& end : ends) {
        words += (words.empty() ? "" : ", ") + end;
    }
    command.add_option("FILE", arguments.file, "groups, a line of " + format + " each")->type_name("")->required();
    command.add_option("--cycles", arguments.cycles, "how often; 0: until Ctrl-C")
        ->type_name("N")
        ->capture_default_str()
        ->check(CLI::Range(0, 99999).description(""));
    command.add_option("--end", arguments.end, "the output afterwards: " + words)
        ->type_name("STATE")
        ->capture_default_str()
        ->check(CLI::IsMember(ends).description(""));
    command.add_flag("--on", arguments.switch_on, "switch the output on first");
}

void TakeList(CLI::App& command, Arguments& arguments) {
    TakeSequence(command, arguments, "volts,amperes,seconds", {"off", "last"});
}

void TakeDelay(CLI::App& command, Arguments& arguments) {
    TakeSequence(command, arguments, "on|off,seconds", {"off", "on", "last"});
}

struct Command {
    const char* name;
    const char* help;
    void (*take)(CLI::App& command, Arguments& arguments);
    int (*run)(const Arguments& arguments, Console& console);
};

// clang-format off
constexpr std::array kCommands{
    Command{"identify", "who the instrument is", &TakeNothing, &tarnexctl::Identify},
    Command{"set", "program a channel", &TakeSettings, &tarnexctl::Set},
    Command{"get", "show what is programmed", &TakeChannels, &tarnexctl::Get},
    Command{"on", "switch outputs on", &TakeChannelsToSwitchOn, &tarnexctl::On},
    Command{"off", "switch outputs off", &TakeChannels, &tarnexctl::Off},
    Command{"reset", "reset the instrument", &TakeNothing, &tarnexctl::ResetSupply},
    Command{"errors", "empty the instrument's error queue and show what was in it", &TakeNothing, &tarnexctl::Errors},
    Command{"measure", "measure voltage, current and power at the outputs", &TakeChannels, &tarnexctl::Measure},
    Command{"watch", "measure again and again, until Ctrl-C", &TakeRepetition, &tarnexctl::Watch},
    Command{"sweep", "step the voltage through a range and measure; the output is off afterwards", &TakeSweep, &tarnexctl::Sweep},
    Command{"list", "run a sequence of voltages and currents on channel 1", &TakeList, &tarnexctl::RunList},
    Command{"delay", "run a sequence of on and off on channel 1", &TakeDelay, &tarnexctl::RunDelay},
};
// clang-format on

int Run(int argc, const char* const* argv) {
    Arguments arguments;
    const Command* chosen = nullptr;

    CLI::App app{kDescription, "tarnexctl"};
    app.set_help_flag("-h,--help", "print this help and exit");
    app.require_subcommand(0, 1); // see below
    app.fallthrough();            // the options of every command may also follow it
    app.add_option("-r,--resource", arguments.resource, "VISA resource string")
        ->type_name("RESOURCE")
        ->envname("TARNEX_RESOURCE");
    app.add_option("-o,--options", arguments.options, "IVI option string, for example Simulate=1")->type_name("TEXT");
    app.add_flag("--json", arguments.json, "print JSON");
    for (const auto& command : kCommands) {
        auto* const sub = app.add_subcommand(command.name, command.help);
        command.take(*sub, arguments);
        sub->callback([&chosen, &command] { chosen = &command; });
    }
    app.footer(kExplanations); // after the commands, which would inherit it
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp&) {
        std::cout << app.help();
        return ExitCode::kDone;
    } catch (const CLI::Error& wrong) {
        throw Failure(ExitCode::kUsage, std::string(wrong.what()) + " (--help tells more)");
    }
    if (chosen == nullptr) { // the library's own words for it would not do
        throw Failure(ExitCode::kUsage, "which command? --help lists them");
    }
    if (arguments.resource.empty() && !ORVA::ParseOptionFlags(arguments.options).simulate) {
        throw Failure(ExitCode::kUsage, "which supply? Give --resource or set TARNEX_RESOURCE, for example to "
                                        "TCPIP0::192.168.1.20::5025::SOCKET");
    }
    Console console;
    return chosen->run(arguments, console);
}

int Complain(const std::string& what, ExitCode code) {
    std::cerr << "tarnexctl: " + tarnexctl::Printable(what) + '\n';
    return code;
}

} // namespace

int main(int argc, char* argv[]) {
    try {
        return Run(argc, argv);
    } catch (const Failure& failure) {
        return Complain(failure.what(), failure.Code());
    } catch (const std::logic_error& malformed) {
        // std::invalid_argument or std::out_of_range out of the driver or the command layer.
        return Complain("the instrument's reply makes no sense: " + std::string(malformed.what()),
                        ExitCode::kSupplyFailed);
    } catch (const std::exception& failure) {
        return Complain(failure.what(), ExitCode::kSupplyFailed);
    }
}
