// Raw TCP. ConnectSocket is the same on every system; StartSockets and ConnectTo are the system's own.
#pragma once

#include <memory>

#include "runtime/visa/resolver.h"
#include "runtime/visa/resource_name.h"
#include "runtime/visa/transport.h"

namespace runtime {

/// Resolves the host of `name` and connects to its addresses in turn. Returns null with the reason in `status` when no
/// address accepts before the deadline.
std::unique_ptr<Transport> ConnectSocket(const ResourceName& name, const Deadline& deadline, ViStatus& status);

/// Prepares the process for the use of sockets. Idempotent. Returns false when the system has none.
bool StartSockets();

/// Connects to one address. Returns null with the reason in `status` on failure.
std::unique_ptr<Transport> ConnectTo(const addrinfo& address, const Deadline& deadline, ViStatus& status);

} // namespace runtime
