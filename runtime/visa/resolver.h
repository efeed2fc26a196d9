// From a host's name to its addresses, in bounded time.
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

/// Looks a host up and takes as long as it takes; null when there is no such host.
using Lookup = std::function<Addresses(const std::string& host, const std::string& service)>;

Addresses LookUpByName(const std::string& host, const std::string& service);

/// The addresses of `host`, null with VI_ERROR_RSRC_NFOUND or VI_ERROR_TMO in `status`. Numeric addresses are
/// recognized on the spot. For anything else `lookup` runs on a thread of its own, which is left behind when it does
/// not come back in time.
Addresses Resolve(const std::string& host, ViUInt16 port, const Deadline& deadline, ViStatus& status,
                  const Lookup& lookup = LookUpByName);

} // namespace runtime
