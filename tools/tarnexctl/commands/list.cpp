#include <memory>
#include <vector>

#include "tools/tarnexctl/commands.h"
#include "tools/tarnexctl/sequence.h"
#include "tools/tarnexctl/sequence_file.h"

namespace tarnexctl {

namespace {

constexpr auto kFormat = "volts,amperes,seconds";

struct Group {
    double volts;
    double amperes;
    double seconds;
};

ExitCode Run(const SequenceOptions& options, const CommonOptions& common, Console& console) {
    std::vector<Group> groups;
    double cycleTime = 0.0;
    for (const auto& line : ReadSequence(options.file, kFormat)) {
        groups.push_back({NumberIn(line, 0), NumberIn(line, 1), NumberIn(line, 2)});
        cycleTime += groups.back().seconds;
    }
    const CommandLayer supply(common);

    Sequence sequence{.groups = groups.size(), .seconds = cycleTime};
    sequence.clear = [&] { return supply->ClearListGroups(); };
    sequence.upload = [&](std::size_t i) {
        const auto& group = groups[i];
        CommandLayer::Check(supply->InsertListGroup(static_cast<std::int32_t>(i)), kUploading);
        CommandLayer::Check(
            supply->SetListGroup(static_cast<std::uint32_t>(i), group.volts, group.amperes, group.seconds), kUploading);
    };
    sequence.configure = [&] {
        const auto end = options.end == "last" ? ORVA::ListEndState::Last : ORVA::ListEndState::Off;
        CommandLayer::Check(supply->SetListCycles(options.cycles), kUploading);
        CommandLayer::Check(supply->SetListEndState(end), kUploading);
    };
    sequence.enable = [&](bool on) { return supply->SetListEnabled(on); };
    sequence.progress = [&](bool& running, double& seconds, std::int32_t& group, std::int32_t& cycle) {
        ORVA::ListState state{};
        const auto status = supply->GetListStatus(state, seconds, group, cycle);
        running = state == ORVA::ListState::Running || state == ORVA::ListState::Paused;
        return status;
    };
    return RunSequence(supply, sequence, options, common, console);
}

Action Declare(CLI::App& app) {
    const auto options = std::make_shared<SequenceOptions>();
    DeclareSequence(app, *options, kFormat, {"off", "last"});
    return [options](const CommonOptions& common, Console& console) { return Run(*options, common, console); };
}

} // namespace

const Command kList{"list", "run a sequence of voltages and currents on channel 1", &Declare};

} // namespace tarnexctl
