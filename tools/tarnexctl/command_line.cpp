#include "tools/tarnexctl/command_line.h"

#include <cstdlib>
#include <iostream>

#ifdef _WIN32
#include <io.h>
#else
#include <editline/readline.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <system_error>
#endif

namespace tarnexctl {

#ifdef _WIN32

CommandLine::CommandLine() : interactive_(::_isatty(0) != 0) {}

std::optional<std::string> CommandLine::Read(const char* prompt) {
    if (interactive_) {
        std::cout << prompt << std::flush;
    }
    std::string line;
    return std::getline(std::cin, line) ? std::optional(line) : std::nullopt;
}

#else

namespace {

constexpr int kLongestHistory = 1000;

/// Returns the path of the history, with its folder made; empty when there is no place for it.
std::string HistoryFile() {
    const char* const state = std::getenv("XDG_STATE_HOME"); // NOLINT(concurrency-mt-unsafe): nothing changes it
    const char* const home = std::getenv("HOME");            // NOLINT(concurrency-mt-unsafe): as above
    const bool hasState = state != nullptr && *state == '/';
    if (!hasState && (home == nullptr || *home != '/')) {
        return "";
    }
    const auto folder =
        (hasState ? std::filesystem::path(state) : std::filesystem::path(home) / ".local/state") / "tarnexctl";
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    return error ? "" : (folder / "history").string();
}

} // namespace

CommandLine::CommandLine() : interactive_(::isatty(STDIN_FILENO) == 1) {
    if (interactive_) {
        historyFile_ = HistoryFile();
        ::using_history();
        ::stifle_history(kLongestHistory);
        if (!historyFile_.empty()) {
            ::read_history(historyFile_.c_str());
        }
    }
}

std::optional<std::string> CommandLine::Read(const char* prompt) {
    if (!interactive_) {
        std::string line;
        return std::getline(std::cin, line) ? std::optional(line) : std::nullopt;
    }
    const std::unique_ptr<char, decltype(&std::free)> line(::readline(prompt), &std::free);
    if (!line) {
        std::cout << std::endl; // the shell's prompt starts on a line of its own
        return std::nullopt;
    }
    if (line.get()[0] != '\0') {
        ::add_history(line.get());
        if (!historyFile_.empty()) {
            ::write_history(historyFile_.c_str()); // now, because Ctrl-C may end the program
        }
    }
    return std::string(line.get());
}

#endif

} // namespace tarnexctl
