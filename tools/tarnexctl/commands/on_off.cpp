#include <memory>
#include <string>
#include <vector>

#include "tools/tarnexctl/channels.h"
#include "tools/tarnexctl/commands.h"
#include "tools/tarnexctl/common_arguments.h"
#include "tools/tarnexctl/driver_session.h"

namespace tarnexctl {

namespace {

struct Options {
    std::vector<std::string> channels; ///< as given
};

void SwitchOutputs(const DriverSession& session, const std::vector<std::string>& channels, bool on) {
    for (const auto& given : channels) {
        const auto channel = ChannelName(given);
        session.Check(TARNEX_ConfigureOutputEnabled(session.Handle(), channel.c_str(), on ? VI_TRUE : VI_FALSE),
                      "switching " + channel + (on ? " on" : " off"));
    }
}

ExitCode RunOn(const Options& options, const CommonOptions& common) {
    SwitchOutputs(DriverSession(common), options.channels, true);
    return ExitCode::Done;
}

ExitCode RunOff(const Options& options, const CommonOptions& common) {
    const DriverSession session(common);
    if (options.channels.empty()) {
        session.Check(TARNEX_Disable(session.Handle()), "switching all outputs off");
    }
    SwitchOutputs(session, options.channels, false);
    return ExitCode::Done;
}

Action DeclareOn(CLI::App& app) {
    const auto options = std::make_shared<Options>();
    app.add_option("CHANNEL", options->channels, "channels")->type_name("")->required();
    return [options](const CommonOptions& common, Console& /*console*/) { return RunOn(*options, common); };
}

Action DeclareOff(CLI::App& app) {
    const auto options = std::make_shared<Options>();
    DeclareChannels(app, options->channels);
    return [options](const CommonOptions& common, Console& /*console*/) { return RunOff(*options, common); };
}

} // namespace

const Command kOn{"on", "switch outputs on", &DeclareOn};
const Command kOff{"off", "switch outputs off", &DeclareOff};

} // namespace tarnexctl
