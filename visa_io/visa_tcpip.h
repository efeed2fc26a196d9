#pragma once

#include "visa_io/visa_io.h"

namespace OpenVisa {

/// Network instruments behind VXI-11 or HiSLIP (TCPIP INSTR resources): the interface itself marks the end of a
/// message.
class VisaTCPIP : public VisaIO {};

} // namespace OpenVisa
