#include <memory>
#include <string>
#include <vector>

#include "tools/tarnexctl/commands.h"
#include "tools/tarnexctl/common_arguments.h"
#include "tools/tarnexctl/report.h"
#include "tools/tarnexctl/safe_text.h"
#include "tools/tarnexctl/supply.h"

namespace tarnexctl {

namespace {

struct Options {
    std::string command;
};

ExitCode Run(const Options& options, const CommonOptions& common, Console& console) {
    const Supply supply(common);
    const auto reply = supply.Exchange(options.command);
    if (!reply) {
        return ExitCode::Done;
    }
    Report report(std::vector<Column>{{"reply", "Reply"}});
    report.Add({*reply});
    console.Print(common.json ? report.JsonLines() : Printable(*reply) + '\n');
    return ExitCode::Done;
}

Action Declare(CLI::App& app) {
    const auto options = std::make_shared<Options>();
    app.add_option("COMMAND", options->command, "a command of the instrument")->type_name("")->required();
    return [options](const CommonOptions& common, Console& console) { return Run(*options, common, console); };
}

} // namespace

const Command kQuery{"query", "send a command of the instrument, and print the reply if it asks for one", &Declare};

} // namespace tarnexctl
