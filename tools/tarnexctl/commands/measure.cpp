#include <memory>
#include <string>
#include <vector>

#include "tools/tarnexctl/commands.h"
#include "tools/tarnexctl/common_arguments.h"
#include "tools/tarnexctl/readings.h"

namespace tarnexctl {

namespace {

struct Options {
    std::vector<std::string> channels; ///< as given
};

ExitCode Run(const Options& options, const CommonOptions& common, Console& console) {
    const Supply supply(common);
    const auto channels = supply.Channels(options.channels);
    Report report = ReadingsReport();
    AddReadings(supply, channels, 0.0, report);
    report.Hide("time");
    console.Print(common.json ? report.JsonArray() : report.Table());
    return ExitCode::Done;
}

Action Declare(CLI::App& app) {
    const auto options = std::make_shared<Options>();
    DeclareChannels(app, options->channels);
    return [options](const CommonOptions& common, Console& console) { return Run(*options, common, console); };
}

} // namespace

const Command kMeasure{"measure", "measure voltage, current and power at the outputs", &Declare};

} // namespace tarnexctl
