#pragma once

#include "visa_io/visa_io.h"

namespace OpenVisa {

/// Instruments on a GPIB board. The interface itself marks the end of a message.
class VisaGPIB : public VisaIO {};

} // namespace OpenVisa
