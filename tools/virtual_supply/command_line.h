// The command line of the program.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tools/virtual_supply/faults.h"

namespace virtual_supply {

struct ProgramOptions {
    std::string host = "127.0.0.1";
    std::uint16_t port = 0;
    bool pseudoTerminal = false;
    std::string model = "TX4410";
    std::string serial = "SN00000001";
    std::map<int, double> loads; // ohms, by channel
    std::vector<Fault> faults;
    std::optional<double> duration; // s
    bool exitWithParent = false;
    bool verbose = false;
};

/// Parses the command line. For --help and for invalid arguments, prints a text on stdout or stderr, sets `exitCode` to
/// 0 or 2 and returns nothing.
std::optional<ProgramOptions> ParseCommandLine(int argc, const char* const* argv, int& exitCode);

} // namespace virtual_supply
