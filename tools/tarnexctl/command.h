// What a command consists of.
#pragma once

#include <functional>
#include <string>

#include "tools/tarnexctl/console.h"
#include "tools/tarnexctl/failure.h"

namespace CLI { // NOLINT(readability-identifier-naming): the library's name
class App;
} // namespace CLI

namespace tarnexctl {

/// The options that every command takes.
struct CommonOptions {
    std::string resource; ///< VISA resource string or logical name
    std::string options;  ///< IVI option string
    double timeout = 2.0; ///< of an exchange with the instrument, s
    bool json = false;
    bool trace = false; ///< print what goes over the wire
};

/// Runs a command whose own arguments are parsed. Returns the exit code of the program.
/// On failure: throws Failure.
using Action = std::function<ExitCode(const CommonOptions& common, Console& console)>;

struct Command {
    const char* name = nullptr;
    const char* help = nullptr; ///< one line of --help

    /// Declares the command's own arguments on `app`. The returned action owns the values that they are parsed into.
    Action (*declare)(CLI::App& app) = nullptr;

    bool needsSupply = true; ///< false: --resource is not required
};

} // namespace tarnexctl
