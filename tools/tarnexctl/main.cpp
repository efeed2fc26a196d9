// tarnexctl: controls a supply of the TARNEX family from the shell.

#include <CLI/CLI.hpp>
#include <iostream>
#include <stdexcept>
#include <string>

#include "instrument/option_flags.h"
#include "tools/tarnexctl/commands.h"
#include "tools/tarnexctl/safe_text.h"

namespace {

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

ExitCode Run(int argc, const char* const* argv) {
    tarnexctl::CommonOptions common;
    tarnexctl::Action chosen;

    CLI::App app{kDescription, "tarnexctl"};
    app.set_help_flag("-h,--help", "print this help and exit");
    app.require_subcommand(0, 1); // not 1: the message for a missing command is ours, below
    app.fallthrough();            // the common options may also follow the command
    app.add_option("-r,--resource", common.resource, "VISA resource string")
        ->type_name("RESOURCE")
        ->envname("TARNEX_RESOURCE");
    app.add_option("-o,--options", common.options, "IVI option string, for example Simulate=1")->type_name("TEXT");
    app.add_flag("--json", common.json, "print JSON");
    for (const auto* const command : tarnexctl::kCommands) {
        auto* const sub = app.add_subcommand(command->name, command->help);
        sub->callback([&chosen, action = command->declare(*sub)] { chosen = action; });
    }
    app.footer(kExplanations); // after the commands, which otherwise inherit it
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp&) {
        std::cout << app.help();
        return ExitCode::Done;
    } catch (const CLI::Error& wrong) {
        throw Failure(ExitCode::Usage, std::string(wrong.what()) + " (see --help)");
    }
    if (!chosen) {
        throw Failure(ExitCode::Usage, "no command given (see --help)");
    }
    if (common.resource.empty() && !ORVA::ParseOptionFlags(common.options).simulate) {
        throw Failure(ExitCode::Usage, "no supply given; use --resource or set TARNEX_RESOURCE, for example to "
                                       "TCPIP0::192.168.1.20::5025::SOCKET");
    }
    tarnexctl::Console console;
    return chosen(common, console);
}

ExitCode Complain(const std::string& what, ExitCode code) {
    std::cerr << "tarnexctl: " + tarnexctl::Printable(what) + '\n';
    return code;
}

ExitCode RunOrComplain(int argc, const char* const* argv) {
    try {
        return Run(argc, argv);
    } catch (const Failure& failure) {
        return Complain(failure.what(), failure.Code());
    } catch (const std::logic_error& malformed) {
        // The driver and the command layer throw std::invalid_argument and std::out_of_range for malformed replies.
        return Complain("the instrument's reply is malformed: " + std::string(malformed.what()),
                        ExitCode::SupplyFailed);
    } catch (const std::exception& failure) {
        return Complain(failure.what(), ExitCode::SupplyFailed);
    }
}

} // namespace

int main(int argc, char* argv[]) { return static_cast<int>(RunOrComplain(argc, argv)); }
