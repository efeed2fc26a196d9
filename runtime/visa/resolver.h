// Resolution of host names with a deadline.
#pragma once

#ifdef _WIN32
#include <winsock2.h>
#include <ws2tcpip.h>
#else
#include <netdb.h>
#endif

#include <functional>
#include <memory>
#include <string>

#include "platform/visa.h"
#include "runtime/visa/deadline.h"

namespace runtime {

struct FreeAddresses {
    void operator()(addrinfo* list) const { ::freeaddrinfo(list); }
};
using Addresses = std::unique_ptr<addrinfo, FreeAddresses>;

/// Returns the addresses of a host, without a time limit; null when the host is unknown.
using LookupFunction = std::function<Addresses(const std::string& host, const std::string& service)>;

/// Asks the system's resolver.
Addresses GetAddressesByName(const std::string& host, const std::string& service);

/// Returns the addresses of `host`, or null with VI_ERROR_RSRC_NFOUND or VI_ERROR_TMO in `status`. Numeric addresses
/// are converted at once. For names `lookup` runs on a thread of its own, which is detached and may outlive the call.
Addresses Resolve(const std::string& host, ViUInt16 port, const Deadline& deadline, ViStatus& status,
                  const LookupFunction& lookup = GetAddressesByName);

} // namespace runtime
