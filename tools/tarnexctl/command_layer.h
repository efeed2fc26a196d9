// A supply through the command layer: what the IVI functions do not reach.
#pragma once

#include "instrument/inst_base.h"
#include "tools/tarnexctl/arguments.h"

#include <memory>
#include <string>

namespace tarnexctl {

/// Opens in the constructor, closes with the object; simulated when the option string says so.
class CommandLayer {
  public:
    explicit CommandLayer(const Arguments& arguments);

    ORVA::InstBase* operator->() const { return supply_.get(); }

    /// A negative status is a Failure, whose text says what did not work.
    static void Check(ViStatus status, const std::string& doing);

  private:
    std::unique_ptr<ORVA::InstBase> supply_;
};

} // namespace tarnexctl
