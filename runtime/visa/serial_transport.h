// Serial lines and pseudo-terminals.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "runtime/visa/resource_name.h"
#include "runtime/visa/transport.h"

namespace runtime {

/// The device file that a port of a resource name stands for: the path itself, or the n-th of the system's own ports,
/// counted from 1. Empty for port 0.
std::string SerialDevice(std::string_view port);

/// Opens the line of `name` with 9600 baud, 8 data bits, no parity, one stop bit and no flow control; null with the
/// reason in `status` when it cannot be had. What it received before is dropped.
std::unique_ptr<Transport> OpenSerialLine(const ResourceName& name, const Deadline& deadline, ViStatus& status);

} // namespace runtime
