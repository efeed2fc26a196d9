#include <memory>
#include <vector>

#include "tools/tarnexctl/commands.h"
#include "tools/tarnexctl/sequence.h"
#include "tools/tarnexctl/sequence_file.h"

namespace tarnexctl {

namespace {

struct Group {
    bool on;
    double seconds;
};

ExitCode Run(const SequenceOptions& options, const CommonOptions& common, Console& console) {
    std::vector<Group> groups;
    double cycleTime = 0.0;
    for (const auto& line : ReadSequence(options.file, "output,seconds")) {
        const auto& output = line.fields[0];
        if (output != "on" && output != "off") {
            throw Failure(ExitCode::FileFailed, line.where + ": '" + output.substr(0, 40) + "' is neither on nor off");
        }
        groups.push_back({output == "on", NumberIn(line, 1)});
        cycleTime += groups.back().seconds;
    }
    const CommandLayer supply(common);

    Sequence sequence{.groups = groups.size(), .seconds = cycleTime};
    sequence.clear = [&] { return supply->ClearDelayGroups(); };
    sequence.upload = [&](std::size_t i) {
        CommandLayer::Check(supply->InsertDelayGroup(static_cast<std::int32_t>(i)), kUploading);
        CommandLayer::Check(supply->SetDelayGroup(static_cast<std::uint32_t>(i), groups[i].on, groups[i].seconds),
                            kUploading);
    };
    sequence.configure = [&] {
        const auto end = options.end == "on"     ? ORVA::DelayEndState::On
                         : options.end == "last" ? ORVA::DelayEndState::Last
                                                 : ORVA::DelayEndState::Off;
        CommandLayer::Check(supply->SetDelayCycles(options.cycles), kUploading);
        CommandLayer::Check(supply->SetDelayEndState(end), kUploading);
    };
    sequence.enable = [&](bool on) { return supply->SetDelayEnabled(on); };
    sequence.progress = [&](bool& running, double& seconds, std::int32_t& group, std::int32_t& cycle) {
        ORVA::DelayState state{};
        const auto status = supply->GetDelayStatus(state, seconds, group, cycle);
        running = state == ORVA::DelayState::Running;
        return status;
    };
    return RunSequence(supply, sequence, options, common, console);
}

Action Declare(CLI::App& app) {
    const auto options = std::make_shared<SequenceOptions>();
    DeclareSequence(app, *options, "on|off,seconds", {"off", "on", "last"});
    return [options](const CommonOptions& common, Console& console) { return Run(*options, common, console); };
}

} // namespace

const Command kDelay{"delay", "run a sequence of on and off on channel 1", &Declare};

} // namespace tarnexctl
