#include "tools/virtual_supply/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <asio/ip/address.hpp>
#include <charconv>
#include <cmath>
#include <iostream>
#include <limits>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <utility>

namespace virtual_supply {

namespace {

constexpr int kWrongArguments = 2;
constexpr double kLongestDuration = 1e9; // s

constexpr auto kDescription =
    "A two-channel DC power supply that exists in software: it answers the supply's commands over TCP on the loopback "
    "interface or on a pseudo-terminal, keeps its settings, and feeds resistive loads.\n\n"
    "When it is ready it prints one line with its VISA resource string:\n"
    "  Virtual TX4410 listening on TCPIP0::127.0.0.1::43210::SOCKET\n"
    "or, with --pty, such a line for each pseudo-terminal that it moves to:\n"
    "  Virtual TX4410 listening on ASRL/dev/pts/3::INSTR\n"
    "It runs until SIGINT or SIGTERM (Ctrl+C). Exit codes: 0 stopped, 1 cannot listen, 2 wrong arguments.";

constexpr auto kExplanations = R"(
Faults: --fault KIND[=VALUE][@N[+M]]
  From the N-th received command on (default 1, counted over all connections), for M commands (default: all).
  drop        close the connection instead of executing the command; with --pty: hang up, and move to another
              pseudo-terminal
  delay=MS    reply MS milliseconds later (1 to 1000000)
  silent      execute the command, but never reply
  garbage     reply bytes that are no sensible reply
  cut         reply the first half of the reply, without a line feed
  long=BYTES  fill the reply up with X to BYTES bytes before its line feed (1 to 1000000)
  crlf        end the reply with CR LF instead of LF

After power-on and *RST: 0 V, current at the channel's maximum, protections disabled with their levels at the maximum,
outputs off. Channel 1: 22 V, 5.5 A. Channel 2: 5.5 V, 16.8 A.

Examples:
  virtual_supply --port 5025 --load 1=10 --load 2=0.5
  virtual_supply --model TX4520 --serial SN20240001 --verbose
  virtual_supply --fault delay=250 --fault drop@20
  virtual_supply --fault silent@3+1 --for 60
  virtual_supply --pty
)";

/// Returns the number that is the whole of `text`; nothing for any other text.
std::optional<double> ParseNumber(std::string_view text) {
    double number = 0.0;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && rest == end ? std::optional(number) : std::nullopt;
}

std::pair<int, double> ParseLoad(const std::string& text) {
    const bool namesChannel = text.starts_with("1=") || text.starts_with("2=");
    const std::string_view digits = namesChannel ? std::string_view(text).substr(2) : std::string_view();
    const auto ohms = ParseNumber(digits);
    if (!ohms || !std::isfinite(*ohms) || *ohms < 0.0) {
        throw std::invalid_argument("load '" + text + "': give a channel and ohms, for example 1=10");
    }
    return {text.front() - '0', *ohms};
}

std::string CheckModel(const std::string& text) {
    const auto isRefused = [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7F' || c == ','; };
    return !text.empty() && std::none_of(text.begin(), text.end(), isRefused)
               ? std::string()
               : "the model is text without commas and control characters";
}

std::string CheckSerial(const std::string& text) {
    const bool plain = std::all_of(text.begin(), text.end(), [](char c) { return c > ' ' && c <= '~' && c != ','; });
    return plain && !text.empty() ? std::string() : "the serial number is printable ASCII without blanks and commas";
}

std::string CheckHost(const std::string& text) {
    asio::error_code error;
    const auto address = asio::ip::make_address(text, error);
    return !error && address.is_loopback() ? std::string()
                                           : "the host is an address of the loopback interface: 127.0.0.1 or ::1";
}

std::string CheckDuration(const std::string& text) {
    const auto seconds = ParseNumber(text);
    return seconds && *seconds > 0.0 && *seconds <= kLongestDuration
               ? std::string()
               : "the time is a number of seconds above 0, up to 1e9";
}

} // namespace

std::optional<ProgramOptions> ParseCommandLine(int argc, const char* const* argv, int& exitCode) {
    ProgramOptions options;
    std::vector<std::string> loads;
    std::vector<std::string> faults;

    CLI::App app{kDescription, "virtual_supply"};
    app.footer(kExplanations);
    app.set_help_flag("-h,--help", "print this help and exit");
    auto* const port =
        app.add_option("--port", options.port, "TCP port to listen on; 0: a free one")
            ->type_name("N")
            ->capture_default_str()
            ->check(CLI::Range(0, static_cast<int>(std::numeric_limits<std::uint16_t>::max())).description(""));
    auto* const host = app.add_option("--host", options.host, "loopback address to listen on: 127.0.0.1 or ::1")
                           ->type_name("ADDRESS")
                           ->capture_default_str()
                           ->check(CLI::Validator(CheckHost, ""));
#ifndef _WIN32
    app.add_flag("--pty", options.pseudoTerminal, "serve on a pseudo-terminal, as a serial line, instead of TCP")
        ->excludes(port)
        ->excludes(host);
#endif
    app.add_option("--model", options.model, "model in the identity: any text without commas and control characters")
        ->type_name("NAME")
        ->capture_default_str()
        ->check(CLI::Validator(CheckModel, ""));
    app.add_option("--serial", options.serial, "serial number in the identity")
        ->type_name("TEXT")
        ->capture_default_str()
        ->check(CLI::Validator(CheckSerial, ""));
    app.add_option("--load", loads,
                   "resistance in ohms at the output of a channel, 0 is a short circuit; once per channel; without it "
                   "nothing is connected")
        ->type_name("CHANNEL=OHMS")
        ->allow_extra_args(false);
    app.add_option("--fault", faults, "misbehave, see below; may be given several times")
        ->type_name("SPEC")
        ->allow_extra_args(false);
    app.add_option("--for", options.duration, "stop by itself after so many seconds")
        ->type_name("SECONDS")
        ->check(CLI::Validator(CheckDuration, ""));
    app.add_flag("--exit-with-parent", options.exitWithParent,
                 "stop when the thread that started the program ends (Linux)");
    app.add_flag("-v,--verbose", options.verbose, "print connections, commands and replies on stderr");

    exitCode = 0;
    try {
        app.parse(argc, argv);
        for (const std::string& load : loads) {
            options.loads.insert_or_assign(ParseLoad(load).first, ParseLoad(load).second);
        }
        for (const std::string& fault : faults) {
            options.faults.push_back(ParseFault(fault));
        }
        return options;
    } catch (const CLI::CallForHelp&) {
        std::cout << app.help();
    } catch (const std::exception& wrong) {
        std::cerr << "virtual_supply: " << wrong.what() << " (see --help)\n";
        exitCode = kWrongArguments;
    }
    return std::nullopt;
}

} // namespace virtual_supply
