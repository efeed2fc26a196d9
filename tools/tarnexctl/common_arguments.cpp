#include "tools/tarnexctl/common_arguments.h"

#include "tools/tarnexctl/number_text.h"

namespace tarnexctl {

CLI::Validator Between(double lowest, double highest) {
    const auto check = [=](const std::string& text) {
        const auto number = ParseNumber(text);
        return number && *number >= lowest && *number <= highest
                   ? std::string()
                   : "'" + text + "' is not a number from " + Fixed(lowest, 3) + " to " + Fixed(highest, 3);
    };
    return {check, ""};
}

CLI::Validator Level() { return Between(-1000.0, 1000.0); }

void DeclareChannel(CLI::App& app, std::string& channel) {
    app.add_option("CHANNEL", channel, "channel")->type_name("")->required();
}

void DeclareChannels(CLI::App& app, std::vector<std::string>& channels) {
    app.add_option("CHANNEL", channels, "channels; without one, all")->type_name("");
}

} // namespace tarnexctl
