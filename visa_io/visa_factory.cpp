#include "visa_io/visa_factory.h"

#include <algorithm>
#include <array>
#include <utility>

#include "text/characters.h"
#include "visa_io/visa_gpib.h"
#include "visa_io/visa_serial.h"
#include "visa_io/visa_tcpip.h"
#include "visa_io/visa_tcpip_socket.h"
#include "visa_io/visa_usb.h"

namespace OpenVisa {
namespace {

struct InterfaceKind {
    std::string_view prefix;   // the resource string starts with it
    std::string_view contains; // and contains this text
    std::shared_ptr<VisaIO> (*make)();
};

template <typename Connection>
std::shared_ptr<VisaIO> Make() {
    return std::make_shared<Connection>();
}

// The first matching row is used.
constexpr std::array kInterfaceKinds{
    InterfaceKind{"ASRL", "", Make<VisaSerial>}, InterfaceKind{"USB", "", Make<VisaUSB>},
    InterfaceKind{"GPIB", "", Make<VisaGPIB>},   InterfaceKind{"TCPIP", "SOCKET", Make<VisaTCPIPSocket>},
    InterfaceKind{"TCPIP", "", Make<VisaTCPIP>}, InterfaceKind{"", "", Make<VisaIO>},
};

std::shared_ptr<VisaIO> MakeConnection(std::string resource) {
    std::transform(resource.begin(), resource.end(), resource.begin(), [](char c) { return text::ToUpper(c); });
    const auto fits = [&resource](const InterfaceKind& kind) {
        return resource.starts_with(kind.prefix) && resource.find(kind.contains) != std::string::npos;
    };
    return std::find_if(kInterfaceKinds.begin(), kInterfaceKinds.end(), fits)->make();
}

} // namespace

ViStatus OpenConnection(const std::string& resource, const ConnectionSettings& settings,
                        std::shared_ptr<VisaIO>& connection) {
    auto candidate = MakeConnection(resource);
    candidate->apply(settings);
    const auto status = candidate->open(resource);
    if (status >= 0) {
        connection = std::move(candidate);
    }
    return status;
}

} // namespace OpenVisa
