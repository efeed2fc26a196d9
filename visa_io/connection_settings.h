// The settings of a connection of any interface kind.
#pragma once

#include "platform/visa.h"

namespace OpenVisa {

/// Receives a copy of everything that goes over the wire, while the connection is in use.
struct Trace {
    /// `sent` is VI_TRUE for a command and VI_FALSE for a reply. `status` is VISA's.
    void (*callback)(void* context, ViBoolean sent, ViStatus status, const char* text, ViUInt32 size) = nullptr;
    void* context = nullptr;
};

struct ConnectionSettings {
    char terminationCharacter = '\n';
    bool terminationEnabled = true; ///< reads end at the termination character
    ViUInt32 openTimeout = 2000;    ///< ms
    ViUInt32 ioTimeout = 2000;      ///< ms
    bool appendTermination = true;  ///< on write, unless the text ends in it already
    bool stripTermination = true;   ///< on read, one character
    // Serial lines only; values as VISA numbers them.
    ViInt32 baudRate = 9600;
    ViInt32 dataBits = 8;
    ViInt32 flowControl = VI_ASRL_FLOW_NONE;
    ViInt32 parity = VI_ASRL_PAR_NONE;
    ViInt32 stopBits = VI_ASRL_STOP_ONE;
    Trace trace{};
};

} // namespace OpenVisa
