#include <memory>

#include "tools/tarnexctl/commands.h"
#include "tools/tarnexctl/common_arguments.h"
#include "tools/tarnexctl/supply.h"

namespace tarnexctl {

namespace {

struct Options {
    bool noConfirm = false;
};

ExitCode Run(const Options& options, const CommonOptions& common) {
    const Supply supply(common);
    supply.Call("resetting", &TARNEXSupply_Reset);
    if (!options.noConfirm) {
        for (const auto& channel : supply.Channels({})) {
            supply.ExpectOutput(channel, false);
        }
    }
    return ExitCode::Done;
}

Action Declare(CLI::App& app) {
    const auto options = std::make_shared<Options>();
    DeclareNoConfirm(app, options->noConfirm);
    return [options](const CommonOptions& common, Console& /*console*/) { return Run(*options, common); };
}

} // namespace

const Command kReset{"reset", "reset the instrument", &Declare};

} // namespace tarnexctl
