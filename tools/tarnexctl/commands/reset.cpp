#include "tools/tarnexctl/commands.h"
#include "tools/tarnexctl/driver_session.h"

namespace tarnexctl {

namespace {

ExitCode Run(const CommonOptions& common, Console& /*console*/) {
    const DriverSession session(common);
    session.Check(TARNEX_reset(session.Handle()), "resetting");
    return ExitCode::Done;
}

Action Declare(CLI::App& /*app*/) { return &Run; }

} // namespace

const Command kReset{"reset", "reset the instrument", &Declare};

} // namespace tarnexctl
