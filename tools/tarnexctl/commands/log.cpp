#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "tools/tarnexctl/commands.h"
#include "tools/tarnexctl/common_arguments.h"
#include "tools/tarnexctl/interrupt.h"
#include "tools/tarnexctl/log_sink.h"
#include "tools/tarnexctl/number_text.h"
#include "tools/tarnexctl/outage.h"
#include "tools/tarnexctl/schedule.h"

namespace tarnexctl {

namespace {

struct Options {
    std::string file;
    std::vector<std::string> channels; ///< as given
    double interval = 1.0;             ///< s
    int count = 0;                     ///< 0: until Ctrl-C
    bool resume = false;
};

ExitCode Run(const Options& options, const CommonOptions& common, Console& console) {
    using Clock = std::chrono::steady_clock;
    CatchInterrupts();
    const Supply supply(common);
    const auto channels = supply.Channels(options.channels);
    const auto start = Clock::now();
    const auto now = [&] {
        using std::chrono::duration_cast;
        const auto utc = std::chrono::system_clock::now().time_since_epoch();
        return Moment{duration_cast<std::chrono::microseconds>(utc).count(),
                      std::chrono::duration<double>(Clock::now() - start).count()};
    };
    const LogHead head{supply.Title(), options.interval};
    const auto log = OpenLog(options.file, head, now(), options.resume);
    log->Event(now(), options.resume ? "resume" : "start", head.title);
    Outage outage;
    std::int64_t taken = 0;
    Schedule schedule(options.interval);
    for (; options.count == 0 || taken < options.count; ++taken) {
        if (!Wait(schedule.Next(now().seconds) - now().seconds)) {
            break;
        }
        const auto moment = now();
        try {
            const auto readings = Measure(supply, channels);
            if (outage.End()) {
                log->Event(moment, "back", "readings again");
            }
            log->Add(moment, readings);
        } catch (const Failure& failure) {
            if (failure.Code() != ExitCode::SupplyFailed) {
                throw;
            }
            if (outage.Begin(moment.seconds, failure.what())) {
                log->Event(moment, "gap", failure.what());
            }
        }
        console.ShowProgress(options.count == 0 ? 0.0 : static_cast<double>(taken + 1) / options.count,
                             std::to_string(taken + 1) + " readings, " + Fixed(now().seconds, 0) + " s" +
                                 (outage.Text().empty() ? "" : "; " + outage.Text()));
    }
    log->End(now());
    return ExitCode::Done;
}

Action Declare(CLI::App& app) {
    const auto options = std::make_shared<Options>();
    app.add_option("FILE", options->file, "CSV, or an SQLite database when the name ends with .db")
        ->type_name("")
        ->required();
    DeclareChannels(app, options->channels);
    DeclareInterval(app, options->interval, options->count);
    app.add_flag("--resume", options->resume, "add to an existing file");
    return [options](const CommonOptions& common, Console& console) { return Run(*options, common, console); };
}

} // namespace

const Command kLog{"log", "measure again and again into a file, until Ctrl-C", &Declare};

} // namespace tarnexctl
