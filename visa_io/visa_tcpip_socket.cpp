#include "visa_io/visa_tcpip_socket.h"

#include "status/run_until.h"

namespace OpenVisa {

ViStatus VisaTCPIPSocket::configure() {
    return status::RunUntilNegative([&] { return VisaIO::configure(); }, [&] { return setTermination(); },
                                    [&] { return setIoBuffers(); });
}

} // namespace OpenVisa
