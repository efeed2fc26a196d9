// What the command line says.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace tarnexctl {

/// The values of all options and arguments; each command looks at its own.
struct Arguments {
    // every command
    std::string resource; ///< VISA resource string
    std::string options;  ///< IVI option string
    bool json = false;

    std::vector<std::string> channels; ///< as given
    std::string channel;               ///< as given, of a command that takes exactly one

    // set: V, A
    std::optional<double> voltage;
    std::optional<double> current;
    std::string at_limit; ///< "regulate", "trip" or empty
    std::optional<double> ovp;
    bool no_ovp = false;

    // watch
    double interval = 1.0; ///< s
    int count = 0;         ///< 0: until it is interrupted

    // sweep: V, A, s
    double from = 0.0;
    double to = 0.0;
    double step = 0.1;
    std::optional<double> limit;
    double settle = 0.05;
    std::string csv;
    std::string plot;

    // list, delay
    std::string file;
    int cycles = 1; ///< 0: until it is interrupted
    std::string end = "off";
    bool switch_on = false;
};

} // namespace tarnexctl
