// Arguments that several commands take, and the checks of numbers.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "include/TARNEX_supply.h"

namespace tarnexctl {

/// Accepts a number from `lowest` to `highest`; refuses "nan" and "inf".
CLI::Validator Between(double lowest, double highest);

/// Accepts a voltage in V or a current in A. Supply checks the limits of the channel.
CLI::Validator Level();

/// Declares one required CHANNEL.
void DeclareChannel(CLI::App& app, std::string& channel);

/// Declares any number of CHANNELs; none means all channels.
void DeclareChannels(CLI::App& app, std::vector<std::string>& channels);

/// Declares --interval, the time in s between readings, and --count, their number; 0: until Ctrl-C.
void DeclareInterval(CLI::App& app, double& interval, int& count);

/// Declares --give-up: the time in s after which switching an output off is given up.
void DeclareGiveUp(CLI::App& app, double& giveUp);

/// Declares --no-confirm.
void DeclareNoConfirm(CLI::App& app, bool& noConfirm);

/// Returns "CC" or "CV".
std::string RegulationText(ViInt32 regulationMode);

} // namespace tarnexctl
