#include <chrono>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "tools/tarnexctl/commands.h"
#include "tools/tarnexctl/common_arguments.h"
#include "tools/tarnexctl/interrupt.h"
#include "tools/tarnexctl/readings.h"

namespace tarnexctl {

namespace {

struct Options {
    std::vector<std::string> channels; ///< as given
    double interval = 1.0;             ///< s
    int count = 0;                     ///< 0: until Ctrl-C
};

/// Returns `table` with escape sequences that print it over the `lines` lines above the cursor.
std::string InPlace(const std::string& table, std::size_t lines) {
    std::string text = lines == 0 ? "" : "\x1b[" + std::to_string(lines) + "A";
    for (const char c : table) {
        text += c == '\n' ? std::string("\x1b[K\n") : std::string(1, c);
    }
    return text;
}

// Ctrl-C is the usual end of this command, so it is not a failure.
ExitCode Run(const Options& options, const CommonOptions& common, Console& console) {
    using Clock = std::chrono::steady_clock;
    CatchInterrupts();
    const Supply supply(common);
    const auto channels = supply.Channels(options.channels);
    Report report = ReadingsReport();
    const auto start = Clock::now();
    const auto elapsed = [&] { // s, rounded down to milliseconds
        const auto passed = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start);
        return static_cast<double>(passed.count()) / 1000.0;
    };
    for (int taken = 0; !Interrupted() && (options.count == 0 || taken < options.count); ++taken) {
        // Each time counts from the start, so that the duration of the exchanges does not add up.
        if (taken > 0 && !Wait(taken * options.interval - elapsed())) {
            break;
        }
        report.Clear();
        AddReadings(supply, channels, elapsed(), report);
        if (common.json) {
            console.Print(report.JsonLines());
        } else if (console.OnTerminal()) {
            console.Print(InPlace(report.Table(), taken == 0 ? 0 : channels.size() + 1));
        } else {
            console.Print((taken == 0 ? report.Headings() : "") + report.Rows());
        }
    }
    return ExitCode::Done;
}

Action Declare(CLI::App& app) {
    const auto options = std::make_shared<Options>();
    DeclareChannels(app, options->channels);
    app.add_option("--interval", options->interval, "time between readings")
        ->type_name("S")
        ->capture_default_str()
        ->check(Between(0.001, 1000000.0));
    app.add_option("--count", options->count, "end after so many readings; 0: at Ctrl-C")
        ->type_name("N")
        ->capture_default_str()
        ->check(CLI::Range(0, 1000000000).description(""));
    return [options](const CommonOptions& common, Console& console) { return Run(*options, common, console); };
}

} // namespace

const Command kWatch{"watch", "measure again and again, until Ctrl-C", &Declare};

} // namespace tarnexctl
