#include "tools/tarnexctl/command_layer.h"
#include "tools/tarnexctl/commands.h"
#include "tools/tarnexctl/failure.h"
#include "tools/tarnexctl/interrupt.h"
#include "tools/tarnexctl/report.h"
#include "tools/tarnexctl/sequence_file.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace tarnexctl {

namespace {

constexpr ORVA::ChannelNumber kChannel = 1; // the one that list and delay mode drive
constexpr auto kUploading = "uploading the sequence";

/// What list and delay mode have in common, with what differs between them.
struct Sequence {
    std::size_t groups;
    double seconds; ///< of one cycle
    std::function<ViStatus()> clear{};
    std::function<void(std::size_t)> upload{}; ///< one group, at the end
    std::function<void()> configure{};         ///< cycles and end state
    std::function<ViStatus(bool)> enable{};
    std::function<ViStatus(bool& running, double& seconds, std::int32_t& group, std::int32_t& cycle)> progress{};
};

/// The instrument refuses what it does not like without a status; its error queue tells.
void ExpectNoError(const CommandLayer& supply) {
    std::int32_t code = 0;
    std::string message;
    CommandLayer::Check(supply->QueryError(code, message), "reading the error queue");
    if (code != 0) {
        throw Failure(kSupplyFailed, "the instrument refuses the sequence: " + std::to_string(code) + ", " + message);
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

int Run(const CommandLayer& supply, const Sequence& sequence, const Arguments& arguments, Console& console) {
    using Clock = std::chrono::steady_clock;
    constexpr double kPolling = 0.05;  // s
    constexpr double kPatience = 10.0; // s beyond the sequence's own time
    CatchInterrupts();
    SurviveBrokenPipes();
    Upload(supply, sequence, console);
    bool running = !Interrupted();
    double seconds = 0.0;
    if (running) {
        if (arguments.switch_on) {
            CommandLayer::Check(supply->SetOutputEnabled(kChannel, true), "switching the output on");
        }
        CommandLayer::Check(sequence.enable(true), "starting the sequence");
        ExpectNoError(supply);
    }
    const double total = sequence.seconds * arguments.cycles; // 0: for ever
    const auto start = Clock::now();
    while (running) {
        std::int32_t group = 0;
        std::int32_t cycle = 0;
        CommandLayer::Check(sequence.progress(running, seconds, group, cycle), "asking for the progress");
        console.ShowProgress(total > 0.0 ? seconds / total : 0.0,
                             Fixed(seconds, 1) + " s" + (total > 0.0 ? " of " + Fixed(total, 1) + " s" : "") +
                                 "  group " + std::to_string(group + 1) + ", cycle " + std::to_string(cycle + 1));
        const std::chrono::duration<double> waited = Clock::now() - start;
        if (running && total > 0.0 && waited.count() > total + kPatience) {
            throw Failure(kSupplyFailed, "the instrument still runs the sequence long after its end; it goes on");
        }
        if (running && !Wait(kPolling)) {
            break;
        }
    }
    console.ClearProgress();
    if (Interrupted()) {
        CommandLayer::Check(sequence.enable(false), "STOPPING THE SEQUENCE");
        CommandLayer::Check(supply->SetOutputEnabled(kChannel, false), "SWITCHING THE OUTPUT OFF");
        return kInterrupted;
    }
    Report report({{"groups", "Groups"}, {"cycles", "Cycles"}, {"seconds", "Time/s", 3}});
    report.Add({static_cast<std::int64_t>(sequence.groups), std::int64_t{arguments.cycles}, seconds});
    console.Print(arguments.json ? report.JsonLines() : report.Table());
    return kDone;
}

} // namespace

int RunList(const Arguments& arguments, Console& console) {
    struct Group {
        double volts;
        double amperes;
        double seconds;
    };
    std::vector<Group> groups;
    double cycle_time = 0.0;
    for (const auto& line : ReadSequence(arguments.file, "volts,amperes,seconds")) {
        groups.push_back({NumberIn(line, 0), NumberIn(line, 1), NumberIn(line, 2)});
        cycle_time += groups.back().seconds;
    }
    const CommandLayer supply(arguments);

    Sequence sequence{.groups = groups.size(), .seconds = cycle_time};
    sequence.clear = [&] { return supply->ClearListGroups(); };
    sequence.upload = [&](std::size_t i) {
        const auto& group = groups[i];
        CommandLayer::Check(supply->InsertListGroup(static_cast<std::int32_t>(i)), kUploading);
        CommandLayer::Check(
            supply->SetListGroup(static_cast<std::uint32_t>(i), group.volts, group.amperes, group.seconds), kUploading);
    };
    sequence.configure = [&] {
        const auto end = arguments.end == "last" ? ORVA::ListEndState::Last : ORVA::ListEndState::Off;
        CommandLayer::Check(supply->SetListCycles(arguments.cycles), kUploading);
        CommandLayer::Check(supply->SetListEndState(end), kUploading);
    };
    sequence.enable = [&](bool on) { return supply->SetListEnabled(on); };
    sequence.progress = [&](bool& running, double& seconds, std::int32_t& group, std::int32_t& cycle) {
        ORVA::ListState state{};
        const auto status = supply->GetListStatus(state, seconds, group, cycle);
        running = state == ORVA::ListState::Running || state == ORVA::ListState::Paused;
        return status;
    };
    return Run(supply, sequence, arguments, console);
}

int RunDelay(const Arguments& arguments, Console& console) {
    struct Group {
        bool on;
        double seconds;
    };
    std::vector<Group> groups;
    double cycle_time = 0.0;
    for (const auto& line : ReadSequence(arguments.file, "output,seconds")) {
        const auto& output = line.fields[0];
        if (output != "on" && output != "off") {
            throw Failure(kFileFailed, line.where + ": '" + output.substr(0, 40) + "' is neither on nor off");
        }
        groups.push_back({output == "on", NumberIn(line, 1)});
        cycle_time += groups.back().seconds;
    }
    const CommandLayer supply(arguments);

    Sequence sequence{.groups = groups.size(), .seconds = cycle_time};
    sequence.clear = [&] { return supply->ClearDelayGroups(); };
    sequence.upload = [&](std::size_t i) {
        CommandLayer::Check(supply->InsertDelayGroup(static_cast<std::int32_t>(i)), kUploading);
        CommandLayer::Check(supply->SetDelayGroup(static_cast<std::uint32_t>(i), groups[i].on, groups[i].seconds),
                            kUploading);
    };
    sequence.configure = [&] {
        const auto end = arguments.end == "on"     ? ORVA::DelayEndState::On
                         : arguments.end == "last" ? ORVA::DelayEndState::Last
                                                   : ORVA::DelayEndState::Off;
        CommandLayer::Check(supply->SetDelayCycles(arguments.cycles), kUploading);
        CommandLayer::Check(supply->SetDelayEndState(end), kUploading);
    };
    sequence.enable = [&](bool on) { return supply->SetDelayEnabled(on); };
    sequence.progress = [&](bool& running, double& seconds, std::int32_t& group, std::int32_t& cycle) {
        ORVA::DelayState state{};
        const auto status = supply->GetDelayStatus(state, seconds, group, cycle);
        running = state == ORVA::DelayState::Running;
        return status;
    };
    return Run(supply, sequence, arguments, console);
}

} // namespace tarnexctl
