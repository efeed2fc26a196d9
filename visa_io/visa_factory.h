#pragma once

#include <memory>
#include <string>

#include "visa_io/visa_io.h"

namespace OpenVisa {

/// Opens a connection of the class that matches the resource string (any letter case) and stores it in `connection`.
/// Returns VISA's status. On failure `connection` is unchanged and nothing is left open.
ViStatus OpenConnection(const std::string& resource, const ConnectionSettings& settings,
                        std::shared_ptr<VisaIO>& connection);

} // namespace OpenVisa
