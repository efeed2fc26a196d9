#include <memory>
#include <string>
#include <vector>

#include "tools/tarnexctl/commands.h"
#include "tools/tarnexctl/common_arguments.h"
#include "tools/tarnexctl/supply.h"

namespace tarnexctl {

namespace {

struct Options {
    std::vector<std::string> channels; ///< as given
    bool noConfirm = false;
};

void SwitchOutputs(const Supply& supply, const std::vector<std::string>& channels, bool on) {
    for (const auto& channel : channels) {
        supply.Call("switching " + channel + (on ? " on" : " off"), &TARNEXSupply_SetOutputEnabled, channel.c_str(),
                    static_cast<ViBoolean>(on ? VI_TRUE : VI_FALSE));
    }
}

ExitCode Run(const Options& options, const CommonOptions& common, bool on) {
    const Supply supply(common);
    const auto channels = supply.Channels(options.channels);
    if (options.channels.empty()) {
        supply.Call("switching all outputs off", &TARNEXSupply_SetAllOutputsOff);
    } else {
        SwitchOutputs(supply, channels, on);
    }
    for (const auto& channel : channels) {
        if (!options.noConfirm) {
            supply.ExpectOutput(channel, on);
        }
    }
    return ExitCode::Done;
}

Action DeclareOn(CLI::App& app) {
    const auto options = std::make_shared<Options>();
    app.add_option("CHANNEL", options->channels, "channels")->type_name("")->required();
    DeclareNoConfirm(app, options->noConfirm);
    return [options](const CommonOptions& common, Console& /*console*/) { return Run(*options, common, true); };
}

Action DeclareOff(CLI::App& app) {
    const auto options = std::make_shared<Options>();
    DeclareChannels(app, options->channels);
    DeclareNoConfirm(app, options->noConfirm);
    return [options](const CommonOptions& common, Console& /*console*/) { return Run(*options, common, false); };
}

} // namespace

const Command kOn{"on", "switch outputs on", &DeclareOn};
const Command kOff{"off", "switch outputs off", &DeclareOff};

} // namespace tarnexctl
