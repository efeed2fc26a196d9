// What the commands list and delay have in common: their arguments, and uploading and running a sequence.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "tools/tarnexctl/command.h"
#include "tools/tarnexctl/command_layer.h"

namespace tarnexctl {

struct SequenceOptions {
    std::string file;
    int cycles = 1;          ///< 0: until Ctrl-C
    std::string end = "off"; ///< the output afterwards
    bool switchOn = false;   ///< before the sequence starts
};

/// Declares the arguments. `format` names the fields of a line of the file; `ends` are the values of --end.
void DeclareSequence(CLI::App& app, SequenceOptions& options, const std::string& format,
                     const std::vector<std::string>& ends);

/// The operations in which list mode and delay mode differ. Operations without a result throw Failure.
struct Sequence {
    std::size_t groups;
    double seconds; ///< of one cycle
    std::function<ViStatus()> clear{};
    std::function<void(std::size_t)> upload{}; ///< adds one group at the end of the table
    std::function<void()> configure{};         ///< sets cycles and end state
    std::function<ViStatus(bool)> enable{};
    std::function<ViStatus(bool& running, double& seconds, std::int32_t& group, std::int32_t& cycle)> progress{};
};

/// What Failures of `upload` and `configure` say.
inline constexpr auto kUploading = "uploading the sequence";

/// Uploads the sequence, runs it on channel 1 and prints a report. Ctrl-C stops it and switches the output off.
/// On failure: throws Failure.
ExitCode RunSequence(const CommandLayer& supply, const Sequence& sequence, const SequenceOptions& options,
                     const CommonOptions& common, Console& console);

} // namespace tarnexctl
