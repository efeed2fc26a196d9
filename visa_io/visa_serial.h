#pragma once

#include "visa_io/visa_io.h"

namespace OpenVisa {

/// Serial lines: the termination character marks the end of a reply, and the line's parameters are set.
class VisaSerial : public VisaIO {
  public:
    ViStatus configure() override;
};

} // namespace OpenVisa
