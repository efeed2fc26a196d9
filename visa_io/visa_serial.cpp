#include "visa_io/visa_serial.h"

#include "status/run_until.h"

namespace OpenVisa {

ViStatus VisaSerial::configure() {
    const auto& line = settings();
    // The parameters are the VISA values themselves; sign extension keeps what a caller of VISA would have passed.
    const auto set = [this](ViAttr attribute, ViInt32 value) {
        return setAttribute(attribute, static_cast<ViAttrState>(value));
    };
    return status::RunUntilNegative(
        [&] { return VisaIO::configure(); }, [&] { return setTermination(); },
        [&] {
            return setAttribute(VI_ATTR_ASRL_END_IN, line.terminationEnabled ? VI_ASRL_END_TERMCHAR : VI_ASRL_END_NONE);
        },
        [&] { return setAttribute(VI_ATTR_ASRL_END_OUT, VI_ASRL_END_NONE); }, [&] { return setIoBuffers(); },
        [&] { return set(VI_ATTR_ASRL_BAUD, line.baudRate); },
        [&] { return set(VI_ATTR_ASRL_DATA_BITS, line.dataBits); },
        // Stop bits go before parity: with the frame's length settled first, no combination passes
        // through an invalid one.
        [&] { return set(VI_ATTR_ASRL_STOP_BITS, line.stopBits); },
        [&] { return set(VI_ATTR_ASRL_PARITY, line.parity); },
        [&] { return set(VI_ATTR_ASRL_FLOW_CNTRL, line.flowControl); });
}

} // namespace OpenVisa
