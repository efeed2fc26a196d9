// The virtual supply as a program: serves on the loopback interface or a pseudo-terminal until a signal stops it.

#include <asio.hpp>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <string>
#include <string_view>

#ifdef __linux__
#include <sys/prctl.h>
#include <unistd.h>
#endif

#include "tools/virtual_supply/command_line.h"
#include "tools/virtual_supply/server.h"
#include "tools/virtual_supply/virtual_supply.h"

namespace {

using virtual_supply::ProgramOptions;
using virtual_supply::VirtualSupply;
using virtual_supply::VirtualSupplyServer;

#ifdef __linux__
/// Makes the system send SIGTERM to this process when its parent ends. Returns false when the parent has ended already.
bool TieToParent() {
    const pid_t parent = getppid();
    return prctl(PR_SET_PDEATHSIG, SIGTERM) == 0 && getppid() == parent;
}
#else
bool TieToParent() { return true; }
#endif

void Log(std::string_view line) { std::cerr << (std::string(line) + '\n') << std::flush; }

int Run(const ProgramOptions& options) {
    asio::io_context context{1};
    // Before the ready line: its reader may send a signal at once.
    asio::signal_set signals(context, SIGINT, SIGTERM);
    signals.async_wait([&](asio::error_code /*error*/, int /*signal*/) { context.stop(); });
    if (options.exitWithParent && !TieToParent()) {
        return EXIT_SUCCESS;
    }
    asio::steady_timer timer(context);
    if (options.duration) {
        timer.expires_after(std::chrono::duration_cast<std::chrono::steady_clock::duration>(
            std::chrono::duration<double>(*options.duration)));
        timer.async_wait([&](asio::error_code /*error*/) { context.stop(); });
    }

    VirtualSupply supply({.model = options.model, .serial = options.serial});
    for (const auto& [channel, ohms] : options.loads) {
        supply.SetLoad(channel, ohms);
    }
    const auto announce = [&supply](std::string_view resource) {
        std::cout << ("Virtual " + supply.Model() + " listening on " + std::string(resource) + '\n') << std::flush;
    };
    const VirtualSupplyServer server(supply, {.host = options.host,
                                              .port = options.port,
                                              .pseudoTerminal = options.pseudoTerminal,
                                              .faults = options.faults,
                                              .log = options.verbose ? &Log : nullptr,
                                              .moved = announce});
    announce(server.Resource());
    context.run();
    return EXIT_SUCCESS;
}

} // namespace

int main(int argc, char** argv) {
    try {
        int exitCode = EXIT_SUCCESS;
        const auto options = virtual_supply::ParseCommandLine(argc, argv, exitCode);
        return options ? Run(*options) : exitCode;
    } catch (const std::exception& failure) {
        std::cerr << "virtual_supply: " << failure.what() << '\n';
        return EXIT_FAILURE;
    }
}
