#pragma once

#include "visa_io/visa_io.h"

namespace OpenVisa {

/// Raw TCP sockets: only the termination character marks the end of a reply.
class VisaTCPIPSocket : public VisaIO {
  public:
    ViStatus configure() override;
};

} // namespace OpenVisa
