#include "tools/tarnexctl/common_arguments.h"

#include <cmath>

#include "tools/tarnexctl/number_text.h"

namespace tarnexctl {

CLI::Validator Between(double lowest, double highest) {
    const auto check = [=](const std::string& text) {
        const auto number = ParseNumber(text);
        return number && *number >= lowest && *number <= highest
                   ? std::string()
                   : "'" + text + "' is not a number from " + Plain(lowest) + " to " + Plain(highest);
    };
    return {check, ""};
}

CLI::Validator Level() {
    const auto check = [](const std::string& text) {
        const auto number = ParseNumber(text);
        return number && std::isfinite(*number) ? std::string() : "'" + text + "' is not a number";
    };
    return {check, ""};
}

void DeclareChannel(CLI::App& app, std::string& channel) {
    app.add_option("CHANNEL", channel, "channel")->type_name("")->required();
}

void DeclareChannels(CLI::App& app, std::vector<std::string>& channels) {
    app.add_option("CHANNEL", channels, "channels; without one, all")->type_name("");
}

void DeclareInterval(CLI::App& app, double& interval, int& count) {
    app.add_option("--interval", interval, "time between readings")
        ->type_name("S")
        ->capture_default_str()
        ->check(Between(0.001, 1000000.0));
    app.add_option("--count", count, "end after so many readings; 0: at Ctrl-C")
        ->type_name("N")
        ->capture_default_str()
        ->check(CLI::Range(0, 1000000000).description(""));
}

void DeclareGiveUp(CLI::App& app, double& giveUp) {
    app.add_option("--give-up", giveUp, "longest time for switching the output off after a failure")
        ->type_name("S")
        ->capture_default_str()
        ->check(Between(0.0, 3600.0));
}

void DeclareNoConfirm(CLI::App& app, bool& noConfirm) {
    app.add_flag("--no-confirm", noConfirm, "do not read back what was set");
}

std::string RegulationText(ViInt32 regulationMode) {
    return regulationMode == TARNEXSUPPLY_VAL_REGULATION_CONSTANT_CURRENT ? "CC" : "CV";
}

} // namespace tarnexctl
