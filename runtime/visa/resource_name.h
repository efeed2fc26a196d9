// Resource strings of VPP-4.3, taken apart.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace runtime {

enum class Interface {
    Socket, // TCPIP<board>::<host>::<port>::SOCKET
    Serial, // ASRL<port>::INSTR, or a device path in the port's place
    Other,  // well-formed, of a kind that nobody here serves
};

struct ResourceName {
    Interface interface = Interface::Other;
    std::string host;       // socket; without the brackets of an IPv6 address
    std::uint16_t port = 0; // socket; never 0
    std::string device;     // serial: what follows ASRL, in the letter case given
};

/// None when the text is no resource string. Keywords may have any letter case, board numbers may be left out.
std::optional<ResourceName> ParseResourceName(std::string_view text);

} // namespace runtime
