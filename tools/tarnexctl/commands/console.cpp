#include "tools/tarnexctl/console.h"

#include <iostream>
#include <optional>
#include <string>

#include "tools/tarnexctl/command_line.h"
#include "tools/tarnexctl/commands.h"
#include "tools/tarnexctl/common_arguments.h"
#include "tools/tarnexctl/safe_text.h"
#include "tools/tarnexctl/supply.h"

namespace tarnexctl {

namespace {

ExitCode Run(const CommonOptions& common, Console& console) {
    const Supply supply(common);
    CommandLine input;
    if (input.IsInteractive()) {
        console.Print(Printable(supply.Title()) + "\nCommands of the instrument; exit or Ctrl-D ends.\n");
    }
    ExitCode last = ExitCode::Done;
    while (const auto line = input.Read("> ")) {
        if (*line == "exit" || *line == "quit") {
            break;
        }
        if (line->find_first_not_of(" \t") == std::string::npos) {
            continue;
        }
        try {
            if (const auto reply = supply.Exchange(*line)) {
                console.Print(Printable(*reply) + '\n');
            }
            last = ExitCode::Done;
        } catch (const Failure& failure) {
            if (failure.Code() == ExitCode::FileFailed) {
                throw;
            }
            std::cerr << "tarnexctl: " + Printable(failure.what()) + '\n';
            last = failure.Code();
        }
    }
    return last;
}

Action Declare(CLI::App& /*app*/) {
    return [](const CommonOptions& common, Console& console) { return Run(common, console); };
}

} // namespace

const Command kConsole{"console", "send commands of the instrument line by line, with a history", &Declare};

} // namespace tarnexctl
