// The program's command line.
#pragma once

#include "tools/virtual_supply/faults.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace virtual_supply {

struct ProgramOptions {
    std::string host = "127.0.0.1";
    std::uint16_t port = 0;
    bool pseudo_terminal = false;
    std::string model = "TX4410";
    std::string serial = "SN00000001";
    std::map<int, double> loads; // ohms, by channel
    std::vector<Fault> faults;
    std::optional<double> duration; // s
    bool exit_with_parent = false;
    bool verbose = false;
};

/// Reads the command line. When the program is to end instead (help was asked for, or an argument is wrong), says what
/// there is to say on stdout or stderr and returns nothing, with the exit code: 0 or 2.
std::optional<ProgramOptions> ParseCommandLine(int argc, const char* const* argv, int& exit_code);

} // namespace virtual_supply
