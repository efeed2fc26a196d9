#include "visa_io/visa_tcpip_socket.h"

#include "platform/run_until_error.h"

namespace OpenVisa {

ViStatus VisaTCPIPSocket::configure() {
    return vi::RunUntilError([&] { return VisaIO::configure(); }, [&] { return setTermination(); },
                             [&] { return setIoBuffers(); });
}

} // namespace OpenVisa
