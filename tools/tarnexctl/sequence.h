// What the commands list and delay have in common: their arguments, and uploading and running a sequence.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "tools/tarnexctl/command.h"
#include "tools/tarnexctl/supply.h"

namespace tarnexctl {

struct SequenceOptions {
    std::string file;
    int cycles = 1;          ///< 0: until Ctrl-C
    std::string end = "off"; ///< the output afterwards
    bool switchOn = false;   ///< before the sequence starts
    double giveUp = 10.0;    ///< s
};

/// Declares the arguments. `format` names the fields of a line of the file; `ends` are the values of --end.
void DeclareSequence(CLI::App& app, SequenceOptions& options, const std::string& format,
                     const std::vector<std::string>& ends);

/// The operations in which list mode and delay mode differ. Operations without a status throw Failure.
struct Sequence {
    std::size_t groups;
    double seconds; ///< of one cycle
    std::function<void()> clear{};
    std::function<void(std::size_t)> upload{}; ///< adds one group at the end of the table
    std::function<void()> configure{};         ///< sets cycles and end state
    std::function<void(bool)> enable{};
    std::function<ViStatus(bool& running, double& seconds, ViInt32& group, ViInt32& cycle)> progress{};
};

/// What Failures of `clear`, `upload` and `configure` say.
inline constexpr auto kUploading = "uploading the sequence";
/// What Failures of `enable` say.
inline constexpr auto kEnabling = "starting or stopping the sequence";

/// Uploads the sequence, runs it on channel 1 and prints a report. After Ctrl-C, after a failure and after the end
/// state "off" the output is off, confirmed by the instrument. On failure: throws Failure.
ExitCode RunSequence(const Supply& supply, const Sequence& sequence, const SequenceOptions& options,
                     const CommonOptions& common, Console& console);

} // namespace tarnexctl
