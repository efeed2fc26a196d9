#pragma once

#include "visa_io/visa_io.h"

namespace OpenVisa {

/// USB devices of the test and measurement class: the interface itself marks the end of a message.
class VisaUSB : public VisaIO {};

} // namespace OpenVisa
