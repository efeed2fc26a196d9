// A supply through the command layer, for operations that the IVI functions do not offer.
#pragma once

#include <memory>
#include <string>

#include "instrument/inst_base.h"
#include "tools/tarnexctl/command.h"

namespace tarnexctl {

/// An open supply; simulated when the option string says so. The destructor closes it.
class CommandLayer {
  public:
    /// On failure: throws Failure.
    explicit CommandLayer(const CommonOptions& common);

    ORVA::InstBase* operator->() const { return supply_.get(); }

    /// Throws Failure for a negative status. `doing` is the start of its text: "measuring OutputChannel1".
    static void Check(ViStatus status, const std::string& doing);

  private:
    std::unique_ptr<ORVA::InstBase> supply_;
};

} // namespace tarnexctl
