#include "tools/tarnexctl/command_layer.h"

#include "instrument/option_flags.h"
#include "instrument/simulator.h"
#include "instrument/tarnex_supply.h"
#include "tools/tarnexctl/driver_session.h"
#include "tools/tarnexctl/failure.h"

namespace tarnexctl {

CommandLayer::CommandLayer(const CommonOptions& common) {
    if (ORVA::ParseOptionFlags(common.options).simulate) {
        supply_ = std::make_unique<ORVA::TARNEXSimulator>();
    } else {
        supply_ = std::make_unique<ORVA::TARNEX>();
    }
    Check(supply_->Open({.resource = common.resource, .options = common.options}), "opening " + common.resource);
}

void CommandLayer::Check(ViStatus status, const std::string& doing) {
    if (status < 0) {
        throw StatusFailure(doing, status, MessageOf(status));
    }
}

} // namespace tarnexctl
