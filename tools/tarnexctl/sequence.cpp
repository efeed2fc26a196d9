#include "tools/tarnexctl/sequence.h"

#include <CLI/CLI.hpp>
#include <array>
#include <chrono>
#include <exception>

#include "tools/tarnexctl/common_arguments.h"
#include "tools/tarnexctl/interrupt.h"
#include "tools/tarnexctl/number_text.h"
#include "tools/tarnexctl/report.h"

namespace tarnexctl {

namespace {

/// Throws Failure when the error queue is not empty: the instrument refuses a group without a status.
void ExpectNoError(const Supply& supply) {
    ViInt32 code = 0;
    std::array<ViChar, 1024> message{};
    supply.Call("reading the error queue", &TARNEXSupply_QueryError, &code, static_cast<ViInt32>(message.size()),
                message.data());
    if (code != 0) {
        throw Failure(ExitCode::SupplyFailed,
                      "the instrument refuses the sequence: " + std::to_string(code) + ", " + message.data());
    }
}

void Upload(const Supply& supply, const Sequence& sequence, Console& console) {
    supply.Call("clearing the error queue", &TARNEXSupply_ClearStatus);
    sequence.enable(false);
    sequence.clear();
    for (std::size_t i = 0; i < sequence.groups; ++i) {
        if (Interrupted()) {
            return;
        }
        sequence.upload(i);
        console.ShowProgress(static_cast<double>(i + 1) / static_cast<double>(sequence.groups), "uploading");
    }
    sequence.configure();
    ExpectNoError(supply);
}

/// Shows the progress until the sequence ends or a signal arrives. Returns its duration in s. A failed query is
/// repeated for some time, because the sequence itself goes on.
double Follow(const Supply& supply, const Sequence& sequence, double total, Console& console) {
    using Clock = std::chrono::steady_clock;
    constexpr double kPollInterval = 0.05; // s
    constexpr double kTolerance = 10.0;    // s that the instrument may need beyond the duration of the sequence
    constexpr int kMaxFailures = 3;        // one after another
    const auto start = Clock::now();
    double seconds = 0.0;
    int failures = 0;
    for (bool running = true; running;) {
        ViInt32 group = 0;
        ViInt32 cycle = 0;
        const auto status = sequence.progress(running, seconds, group, cycle);
        failures = status < 0 ? failures + 1 : 0;
        if (failures == kMaxFailures) {
            supply.Check(status, "reading the progress");
        }
        if (status >= 0) {
            console.ShowProgress(total > 0.0 ? seconds / total : 0.0,
                                 Fixed(seconds, 1) + " s" + (total > 0.0 ? " of " + Fixed(total, 1) + " s" : "") +
                                     "  group " + std::to_string(group + 1) + ", cycle " + std::to_string(cycle + 1));
        } else {
            TARNEX_ClearError(supply.Handle());
            running = true;
        }
        const std::chrono::duration<double> waited = Clock::now() - start;
        if (running && total > 0.0 && waited.count() > total + kTolerance) {
            throw Failure(ExitCode::SupplyFailed, "the instrument still runs the sequence long after its end");
        }
        if (running && !Wait(kPollInterval)) {
            break;
        }
    }
    return seconds;
}

} // namespace

void DeclareSequence(CLI::App& app, SequenceOptions& options, const std::string& format,
                     const std::vector<std::string>& ends) {
    std::string words;
    for (const auto& end : ends) {
        words += (words.empty() ? "" : ", ") + end;
    }
    app.add_option("FILE", options.file, "groups, a line of " + format + " each")->type_name("")->required();
    app.add_option("--cycles", options.cycles, "how often; 0: until Ctrl-C")
        ->type_name("N")
        ->capture_default_str()
        ->check(CLI::Range(0, 99999).description(""));
    app.add_option("--end", options.end, "the output afterwards: " + words)
        ->type_name("STATE")
        ->capture_default_str()
        ->check(CLI::IsMember(ends).description(""));
    app.add_flag("--on", options.switchOn, "switch the output on first");
    DeclareGiveUp(app, options.giveUp);
}

ExitCode RunSequence(const Supply& supply, const Sequence& sequence, const SequenceOptions& options,
                     const CommonOptions& common, Console& console) {
    CatchInterrupts();
    SurviveBrokenPipes();
    const auto channel = supply.Channel("1");               // list and delay mode drive this channel only
    const double total = sequence.seconds * options.cycles; // 0: without end
    double seconds = 0.0;
    bool keepsOutput = false;
    const auto run = [&] {
        Upload(supply, sequence, console);
        if (Interrupted()) {
            return;
        }
        if (options.switchOn) {
            supply.Call("switching the output on", &TARNEXSupply_SetOutputEnabled, channel.c_str(), ViBoolean{VI_TRUE});
        }
        sequence.enable(true);
        ExpectNoError(supply);
        seconds = Follow(supply, sequence, total, console);
        keepsOutput = options.end != "off" && !Interrupted();
    };
    OffUnless(supply, channel, options.giveUp, run, [&] { return keepsOutput; });
    console.ClearProgress();
    if (Interrupted()) {
        return ExitCode::Interrupted;
    }
    Report report({{"groups", "Groups"}, {"cycles", "Cycles"}, {"seconds", "Time/s", 3}});
    report.Add({static_cast<std::int64_t>(sequence.groups), std::int64_t{options.cycles}, seconds});
    console.Print(common.json ? report.JsonLines() : report.Table());
    return ExitCode::Done;
}

} // namespace tarnexctl
