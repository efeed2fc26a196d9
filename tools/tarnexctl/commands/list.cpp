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
    const Supply supply(common);
    const auto channel = supply.Channel("1"); // list mode drives this channel only
    for (const auto& group : groups) {
        supply.CheckVolts(channel, group.volts);
        supply.CheckAmperes(channel, group.amperes);
    }

    Sequence sequence{.groups = groups.size(), .seconds = cycleTime};
    sequence.clear = [&] { supply.Call(kUploading, &TARNEXSupply_ClearListGroups); };
    sequence.upload = [&](std::size_t i) {
        const auto& group = groups[i];
        const auto index = static_cast<ViInt32>(i);
        supply.Call(kUploading, &TARNEXSupply_InsertListGroup, index);
        supply.Call(kUploading, &TARNEXSupply_SetListGroup, index, group.volts, group.amperes, group.seconds);
    };
    sequence.configure = [&] {
        if (options.switchOn) { // the output starts with the first group's levels, not with those of an earlier use
            supply.Call(kUploading, &TARNEXSupply_SetVoltage, channel.c_str(), groups.front().volts);
            supply.Call(kUploading, &TARNEXSupply_SetCurrent, channel.c_str(), groups.front().amperes);
        }
        supply.Call(kUploading, &TARNEXSupply_SetListCycles, ViInt32{options.cycles});
        supply.Call(kUploading, &TARNEXSupply_SetListEndState,
                    ViInt32{options.end == "last" ? TARNEXSUPPLY_VAL_LIST_END_LAST : TARNEXSUPPLY_VAL_LIST_END_OFF});
    };
    sequence.enable = [&](bool on) {
        supply.Call(kEnabling, &TARNEXSupply_SetListEnabled, static_cast<ViBoolean>(on ? VI_TRUE : VI_FALSE));
    };
    sequence.progress = [&](bool& running, double& seconds, ViInt32& group, ViInt32& cycle) {
        ViInt32 state = 0;
        const auto status = TARNEXSupply_GetListStatus(supply.Handle(), &state, &seconds, &group, &cycle);
        running = state == TARNEXSUPPLY_VAL_LIST_STATE_RUNNING || state == TARNEXSUPPLY_VAL_LIST_STATE_PAUSED;
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
