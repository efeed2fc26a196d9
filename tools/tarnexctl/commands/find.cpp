#include "tools/tarnexctl/commands.h"
#include "tools/tarnexctl/common_arguments.h"
#include "tools/tarnexctl/devices.h"
#include "tools/tarnexctl/report.h"

namespace tarnexctl {

namespace {

ExitCode Run(const CommonOptions& common, Console& console) {
    Report report({{"resource", "Resource"}, {"description", "Description"}});
    for (const auto& device : FindDevices()) {
        report.Add({device.resource, device.description});
    }
    if (common.json) {
        console.Print(report.JsonArray());
    } else {
        console.Print(report.IsEmpty() ? "No serial or USB devices.\n" : report.Table());
    }
    return ExitCode::Done;
}

Action Declare(CLI::App& /*app*/) {
    return [](const CommonOptions& common, Console& console) { return Run(common, console); };
}

} // namespace

const Command kFind{"find", "show the serial lines and USB instruments of this computer", &Declare, false};

} // namespace tarnexctl
