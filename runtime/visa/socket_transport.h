// Raw TCP.
#pragma once

#include <memory>

#include "runtime/visa/resource_name.h"
#include "runtime/visa/transport.h"

namespace runtime {

/// Connects to the host of `name`, each of its addresses in turn; null with the reason in `status` when none answers
/// in time.
std::unique_ptr<Transport> ConnectSocket(const ResourceName& name, const Deadline& deadline, ViStatus& status);

} // namespace runtime
