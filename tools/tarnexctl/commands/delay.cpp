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
    const Supply supply(common);

    Sequence sequence{.groups = groups.size(), .seconds = cycleTime};
    sequence.clear = [&] { supply.Call(kUploading, &TARNEXSupply_ClearDelayGroups); };
    sequence.upload = [&](std::size_t i) {
        const auto index = static_cast<ViInt32>(i);
        supply.Call(kUploading, &TARNEXSupply_InsertDelayGroup, index);
        supply.Call(kUploading, &TARNEXSupply_SetDelayGroup, index,
                    static_cast<ViBoolean>(groups[i].on ? VI_TRUE : VI_FALSE), groups[i].seconds);
    };
    sequence.configure = [&] {
        const auto end = options.end == "on"     ? TARNEXSUPPLY_VAL_DELAY_END_ON
                         : options.end == "last" ? TARNEXSUPPLY_VAL_DELAY_END_LAST
                                                 : TARNEXSUPPLY_VAL_DELAY_END_OFF;
        supply.Call(kUploading, &TARNEXSupply_SetDelayCycles, ViInt32{options.cycles});
        supply.Call(kUploading, &TARNEXSupply_SetDelayEndState, ViInt32{end});
    };
    sequence.enable = [&](bool on) {
        supply.Call(kEnabling, &TARNEXSupply_SetDelayEnabled, static_cast<ViBoolean>(on ? VI_TRUE : VI_FALSE));
    };
    sequence.progress = [&](bool& running, double& seconds, ViInt32& group, ViInt32& cycle) {
        ViInt32 state = 0;
        const auto status = TARNEXSupply_GetDelayStatus(supply.Handle(), &state, &seconds, &group, &cycle);
        running = state == TARNEXSUPPLY_VAL_DELAY_STATE_RUNNING;
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
