// Parser of the resource strings of VPP-4.3.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace runtime {

enum class Interface {
    Socket, // TCPIP<board>::<host>::<port>::SOCKET
    Serial, // ASRL<port>::INSTR, or ASRL<device path>::INSTR
    Other,  // well-formed, of a kind that is not served
};

struct ResourceName {
    Interface interface = Interface::Other;
    std::string host;       // socket; without the brackets of an IPv6 address
    std::uint16_t port = 0; // socket; never 0
    std::string device;     // serial: the text after ASRL, in its original letter case
};

/// Parses a resource string; nothing when it is malformed. Keywords may have any letter case, board numbers are
/// optional.
std::optional<ResourceName> ParseResourceName(std::string_view text);

} // namespace runtime
