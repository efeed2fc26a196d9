// tarnexctl: controls a supply of the TARNEX family from the shell.

#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "tools/tarnexctl/commands.h"
#include "tools/tarnexctl/common_arguments.h"
#include "tools/tarnexctl/resource.h"
#include "tools/tarnexctl/safe_text.h"
#include "tools/tarnexctl/suggestion.h"

namespace {

using tarnexctl::ExitCode;
using tarnexctl::Failure;
using tarnexctl::Suggestion;

constexpr auto kDescription = "A power supply of the TARNEX family from the shell.";

constexpr auto kExplanations = R"(
CHANNEL is 1, 2, a list of them (1,2), a physical name (OutputChannel1), a selector of the driver or a virtual name of the
configuration store.

RESOURCE is a VISA resource string, host:port, a host (its port is then 5025), a serial line such as /dev/ttyUSB0, or a
logical name of the configuration store.

Exit codes: 0 done, and confirmed by reading back; 1 wrong arguments; 2 the driver or the instrument reported an error; 3 a
file cannot be read or written; 4 an output may still be on; 130 interrupted (watch and log end with 0).

Examples:
  export TARNEX_RESOURCE=192.168.1.20
  tarnexctl set 1 --voltage 3.3 --current 1.5 --ovp 4
  tarnexctl on 1
  tarnexctl watch
  tarnexctl sweep 1 --to 12 --step 0.5 --limit 1 --csv sweep.csv --plot sweep.svg
)";

/// Returns the names that `app` knows in place of `word`: its options or its commands.
std::vector<std::string> Known(const CLI::App& app, const std::string& word) {
    std::vector<std::string> names;
    if (word.starts_with('-')) {
        for (const auto* const option : app.get_options()) {
            names.push_back(option->get_name());
        }
    } else {
        for (const auto* const command : app.get_subcommands({})) {
            names.push_back(command->get_name());
        }
    }
    return names;
}

/// Returns the text of a parser's error. A word that is close to a known one is the likely cause of any error.
std::string Explain(const CLI::Error& wrong, const CLI::App& app) {
    std::string text = wrong.what();
    for (const auto& word : app.remaining(true)) {
        auto suggestion = Suggestion(word, Known(app, word));
        if (suggestion.empty() && !app.get_subcommands().empty()) {
            suggestion = Suggestion(word, Known(*app.get_subcommands().front(), word));
        }
        if (!suggestion.empty()) {
            text = "'";
            text.append(word).append("' is not known, did you mean ").append(suggestion) += '?';
        }
    }
    return text + " (see --help)";
}

ExitCode Run(int argc, const char* const* argv) {
    tarnexctl::CommonOptions common;
    tarnexctl::Action chosen;
    bool needsSupply = true;

    CLI::App app{kDescription, "tarnexctl"};
    app.set_help_flag("-h,--help", "print this help and exit");
    app.set_version_flag("--version", "tarnexctl " TARNEX_VERSION, "print the version and exit");
    app.require_subcommand(0, 1); // not 1: the message for a missing command is ours, below
    app.fallthrough();            // the common options may also follow the command
    app.add_option("-r,--resource", common.resource, "the supply")->type_name("RESOURCE")->envname("TARNEX_RESOURCE");
    app.add_option("-o,--options", common.options, "IVI option string, for example Simulate=1")->type_name("TEXT");
    app.add_option("-t,--timeout", common.timeout, "time-out of an exchange with the instrument")
        ->type_name("S")
        ->capture_default_str()
        ->check(tarnexctl::Between(0.001, 3600.0));
    app.add_flag("--json", common.json, "print JSON");
    app.add_flag("--trace", common.trace, "print commands and replies on standard error, with the time in s");
    for (const auto* const command : tarnexctl::kCommands) {
        auto* const sub = app.add_subcommand(command->name, command->help);
        sub->callback([&, command, action = command->declare(*sub)] {
            chosen = action;
            needsSupply = command->needsSupply;
        });
    }
    app.footer(kExplanations); // after the commands, which otherwise inherit it
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp&) {
        std::cout << app.help();
        return ExitCode::Done;
    } catch (const CLI::CallForVersion& version) {
        std::cout << version.what() << '\n';
        return ExitCode::Done;
    } catch (const CLI::Error& wrong) {
        throw Failure(ExitCode::Usage, Explain(wrong, app));
    }
    common.resource = tarnexctl::CompleteResource(common.resource);
    if (!chosen) {
        throw Failure(ExitCode::Usage, "no command given (see --help)");
    }
    // A simulated supply needs no resource; the driver parses the options.
    if (needsSupply && common.resource.empty() && common.options.empty()) {
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
