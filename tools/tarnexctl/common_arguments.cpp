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
