#include "runtime/visa/resolver.h"
#include "runtime/visa/socket_transport.h"

namespace runtime {

std::unique_ptr<Transport> ConnectSocket(const ResourceName& name, const Deadline& deadline, ViStatus& status) {
    if (!StartSockets()) {
        status = VI_ERROR_SYSTEM_ERROR;
        return nullptr;
    }
    const auto addresses = Resolve(name.host, name.port, deadline, status);
    std::size_t left = 0;
    for (const auto* address = addresses.get(); address != nullptr; address = address->ai_next) {
        ++left;
    }
    bool timedOut = false;
    for (const auto* address = addresses.get(); address != nullptr; address = address->ai_next, --left) {
        // Each address gets its share of the time, so that a silent one leaves time for the others.
        if (auto transport = ConnectTo(*address, deadline.Share(left), status)) {
            return transport;
        }
        timedOut = timedOut || status == VI_ERROR_TMO;
    }
    // A time-out is reported before the refusal of another address: the host may exist and be slow.
    if (timedOut) {
        status = VI_ERROR_TMO;
    }
    return nullptr;
}

} // namespace runtime
