// Serial lines and pseudo-terminals.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "runtime/visa/resource_name.h"
#include "runtime/visa/transport.h"

namespace runtime {

/// Returns the device file of a port in a resource name: the path itself, or the n-th port of the system, counted
/// from 1. Empty for port 0.
std::string SerialDevice(std::string_view port);

/// Opens the line of `name` with 9600 baud, 8 data bits, no parity, one stop bit and no flow control, and discards
/// received bytes. Returns null with the reason in `status` on failure.
std::unique_ptr<Transport> OpenSerialLine(const ResourceName& name, const Deadline& deadline, ViStatus& status);

} // namespace runtime
