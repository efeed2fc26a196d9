#include "tools/tarnexctl/commands.h"
#include "tools/tarnexctl/report.h"
#include "tools/tarnexctl/supply.h"

namespace tarnexctl {

namespace {

ExitCode Run(const CommonOptions& common, Console& console) {
    const Supply supply(common);
    Report report({{"manufacturer", "Manufacturer"},
                   {"model", "Model"},
                   {"firmware_revision", "Firmware"},
                   {"driver_revision", "Driver"},
                   {"resource", "Resource"}});
    report.Add({supply.Text(TARNEX_ATTR_INSTRUMENT_MANUFACTURER), supply.Text(TARNEX_ATTR_INSTRUMENT_MODEL),
                supply.Text(TARNEX_ATTR_INSTRUMENT_FIRMWARE_REVISION),
                supply.Text(TARNEX_ATTR_SPECIFIC_DRIVER_REVISION), supply.Text(TARNEX_ATTR_IO_RESOURCE_DESCRIPTOR)});
    console.Print(common.json ? report.JsonLines() : report.List());
    return ExitCode::Done;
}

Action Declare(CLI::App& /*app*/) { return &Run; }

} // namespace

const Command kIdentify{"identify", "who the instrument is", &Declare};

} // namespace tarnexctl
