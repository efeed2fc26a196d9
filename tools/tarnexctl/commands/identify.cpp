#include "tools/tarnexctl/commands.h"
#include "tools/tarnexctl/driver_session.h"
#include "tools/tarnexctl/report.h"

namespace tarnexctl {

namespace {

ExitCode Run(const CommonOptions& common, Console& console) {
    const DriverSession session(common);
    Report report({{"manufacturer", "Manufacturer"},
                   {"model", "Model"},
                   {"firmware_revision", "Firmware"},
                   {"driver_revision", "Driver"},
                   {"resource", "Resource"}});
    report.Add({session.Text(TARNEX_ATTR_INSTRUMENT_MANUFACTURER), session.Text(TARNEX_ATTR_INSTRUMENT_MODEL),
                session.Text(TARNEX_ATTR_INSTRUMENT_FIRMWARE_REVISION),
                session.Text(TARNEX_ATTR_SPECIFIC_DRIVER_REVISION), session.Text(TARNEX_ATTR_IO_RESOURCE_DESCRIPTOR)});
    console.Print(common.json ? report.JsonLines() : report.List());
    return ExitCode::Done;
}

Action Declare(CLI::App& /*app*/) { return &Run; }

} // namespace

const Command kIdentify{"identify", "who the instrument is", &Declare};

} // namespace tarnexctl
