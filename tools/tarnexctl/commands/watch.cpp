#include <algorithm>
#include <chrono>
#include <cstddef>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "tools/tarnexctl/commands.h"
#include "tools/tarnexctl/common_arguments.h"
#include "tools/tarnexctl/interrupt.h"
#include "tools/tarnexctl/number_text.h"
#include "tools/tarnexctl/outage.h"
#include "tools/tarnexctl/readings.h"
#include "tools/tarnexctl/safe_text.h"
#include "tools/tarnexctl/schedule.h"

namespace tarnexctl {

namespace {

struct Options {
    std::vector<std::string> channels; ///< as given
    double interval = 1.0;             ///< s
    int count = 0;                     ///< 0: until Ctrl-C
};

/// A table on a terminal that replaces its previous one, with a line below it.
class TableInPlace {
  public:
    void Print(Report report, const std::string& below, Console& console) {
        const std::size_t room = console.Columns() - 1; // a line that reaches the last column would take two
        FitReadings(room, report);
        std::string text = lines_ == 0 ? "" : "\x1b[" + std::to_string(lines_) + "A";
        const auto table = report.Table() + (below.empty() ? "" : Printable(below).substr(0, room) + '\n');
        for (const char c : table) {
            text += c == '\n' ? std::string("\x1b[K\n") : std::string(1, c);
        }
        lines_ = static_cast<std::size_t>(std::count(table.begin(), table.end(), '\n'));
        console.Print(text + "\x1b[J"); // the previous table may have had a line more
    }

  private:
    std::size_t lines_ = 0;
};

// Ctrl-C is the usual end of this command, so it is not a failure.
ExitCode Run(const Options& options, const CommonOptions& common, Console& console) {
    using Clock = std::chrono::steady_clock;
    CatchInterrupts();
    const Supply supply(common);
    const auto channels = supply.Channels(options.channels);
    Report report = ReadingsReport();
    TableInPlace table;
    Outage outage;
    const bool inPlace = !common.json && !common.trace && console.OnTerminal(); // a trace would tear the table
    const auto tell = [&](const std::string& text) {
        if (!inPlace) {
            std::cerr << "tarnexctl: " + Printable(text) + '\n';
        }
    };
    const auto start = Clock::now();
    const auto elapsed = [&] { // s, rounded down to milliseconds
        const auto passed = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start);
        return static_cast<double>(passed.count()) / 1000.0;
    };
    Schedule schedule(options.interval);
    for (int taken = 0; !Interrupted() && (options.count == 0 || taken < options.count); ++taken) {
        if (!Wait(schedule.Next(elapsed()) - elapsed())) {
            break;
        }
        report.Clear();
        const double time = elapsed();
        try {
            AddReadings(supply, channels, time, report);
            if (outage.End()) {
                tell("readings again at " + Fixed(time, 1) + " s");
            }
        } catch (const Failure& failure) {
            if (outage.Begin(time, failure.what())) {
                tell(outage.Text());
            }
            report.Clear();
            AddGap(channels, time, report);
        }
        if (common.json) {
            console.Print(report.JsonLines());
        } else if (inPlace) {
            table.Print(report, outage.Text(), console);
        } else {
            console.Print((taken == 0 ? report.Headings() : "") + report.Rows());
        }
    }
    return ExitCode::Done;
}

Action Declare(CLI::App& app) {
    const auto options = std::make_shared<Options>();
    DeclareChannels(app, options->channels);
    DeclareInterval(app, options->interval, options->count);
    return [options](const CommonOptions& common, Console& console) { return Run(*options, common, console); };
}

} // namespace

const Command kWatch{"watch", "measure again and again, until Ctrl-C", &Declare};

} // namespace tarnexctl
