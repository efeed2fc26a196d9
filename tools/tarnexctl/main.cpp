// tarnexctl: controls a supply of the TARNEX family from the shell.

#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>
#include <string>

#include "tools/tarnexctl/commands.h"
#include "tools/tarnexctl/common_arguments.h"
#include "tools/tarnexctl/safe_text.h"

namespace {

using tarnexctl::ExitCode;
using tarnexctl::Failure;

constexpr auto kDescription = "A power supply of the TARNEX family from the shell.";

constexpr auto kExplanations = R"(
CHANNEL is 1, 2, a list of them (1,2), a physical name (OutputChannel1), a selector of the driver or a virtual name of the
configuration store.

Exit codes: 0 done, and confirmed by reading back; 1 wrong arguments; 2 the driver or the instrument reported an error; 3 a
file cannot be read or written; 4 an output may still be on; 130 interrupted (watch ends with 0).

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
    app.add_option("-t,--timeout", common.timeout, "time-out of an exchange with the instrument")
        ->type_name("S")
        ->capture_default_str()
        ->check(tarnexctl::Between(0.001, 3600.0));
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
    // A simulated supply needs no resource; the driver parses the options.
    if (common.resource.empty() && common.options.empty()) {
        throw Failure(ExitCode::Usage, "no supply given; use --resource or set TARNEX_RESOURCE, for example to "
                                       "TCPIP0::192.168.1.20::5025::SOCKET");
    }
    tarnexctl::Console console;
    return chosen(common, console);
}

ExitCode Complain(const std::string& what, ExitCode code, const std::string& warning = {}) {
    std::cerr << "tarnexctl: " + tarnexctl::Printable(what) + '\n';
    if (!warning.empty()) {
        std::cerr << tarnexctl::Printable(warning) + '\n';
    }
    return code;
}

ExitCode RunOrComplain(int argc, const char* const* argv) {
    try {
        return Run(argc, argv);
    } catch (const Failure& failure) {
        return Complain(failure.what(), failure.Code(), failure.Warning());
    } catch (const std::exception& failure) {
        return Complain(failure.what(), ExitCode::SupplyFailed);
    }
}

} // namespace

int main(int argc, char* argv[]) { return static_cast<int>(RunOrComplain(argc, argv)); }
