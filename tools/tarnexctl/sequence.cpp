#include "tools/tarnexctl/sequence.h"

#include <CLI/CLI.hpp>
#include <chrono>

#include "tools/tarnexctl/interrupt.h"
#include "tools/tarnexctl/number_text.h"
#include "tools/tarnexctl/report.h"

namespace tarnexctl {

namespace {

constexpr ORVA::ChannelNumber kChannel = 1; // list and delay mode drive this channel only

/// Throws Failure when the error queue is not empty: the instrument refuses a group without a status.
void ExpectNoError(const CommandLayer& supply) {
    std::int32_t code = 0;
    std::string message;
    CommandLayer::Check(supply->QueryError(code, message), "reading the error queue");
    if (code != 0) {
        throw Failure(ExitCode::SupplyFailed,
                      "the instrument refuses the sequence: " + std::to_string(code) + ", " + message);
    }
}

void Upload(const CommandLayer& supply, const Sequence& sequence, Console& console) {
    CommandLayer::Check(supply->SendClear(), "clearing the error queue");
    CommandLayer::Check(sequence.enable(false), "stopping the sequence before");
    CommandLayer::Check(sequence.clear(), "clearing the groups");
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
}

ExitCode RunSequence(const CommandLayer& supply, const Sequence& sequence, const SequenceOptions& options,
                     const CommonOptions& common, Console& console) {
    using Clock = std::chrono::steady_clock;
    constexpr double kPollInterval = 0.05; // s
    constexpr double kTolerance = 10.0;    // s that the instrument may need beyond the duration of the sequence
    CatchInterrupts();
    SurviveBrokenPipes();
    Upload(supply, sequence, console);
    bool running = !Interrupted();
    double seconds = 0.0;
    if (running) {
        if (options.switchOn) {
            CommandLayer::Check(supply->SetOutputEnabled(kChannel, true), "switching the output on");
        }
        CommandLayer::Check(sequence.enable(true), "starting the sequence");
        ExpectNoError(supply);
    }
    const double total = sequence.seconds * options.cycles; // 0: without end
    const auto start = Clock::now();
    while (running) {
        std::int32_t group = 0;
        std::int32_t cycle = 0;
        CommandLayer::Check(sequence.progress(running, seconds, group, cycle), "asking for the progress");
        console.ShowProgress(total > 0.0 ? seconds / total : 0.0,
                             Fixed(seconds, 1) + " s" + (total > 0.0 ? " of " + Fixed(total, 1) + " s" : "") +
                                 "  group " + std::to_string(group + 1) + ", cycle " + std::to_string(cycle + 1));
        const std::chrono::duration<double> waited = Clock::now() - start;
        if (running && total > 0.0 && waited.count() > total + kTolerance) {
            throw Failure(ExitCode::SupplyFailed,
                          "the instrument still runs the sequence long after its end; it goes on");
        }
        if (running && !Wait(kPollInterval)) {
            break;
        }
    }
    console.ClearProgress();
    if (Interrupted()) {
        CommandLayer::Check(sequence.enable(false), "STOPPING THE SEQUENCE");
        CommandLayer::Check(supply->SetOutputEnabled(kChannel, false), "SWITCHING THE OUTPUT OFF");
        return ExitCode::Interrupted;
    }
    Report report({{"groups", "Groups"}, {"cycles", "Cycles"}, {"seconds", "Time/s", 3}});
    report.Add({static_cast<std::int64_t>(sequence.groups), std::int64_t{options.cycles}, seconds});
    console.Print(common.json ? report.JsonLines() : report.Table());
    return ExitCode::Done;
}

} // namespace tarnexctl
