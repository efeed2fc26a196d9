#pragma once

#include <memory>
#include <string>

#include "visa_io/visa_io.h"

namespace OpenVisa {

/// Makes the connection class that fits the resource string (any letter case), opens it and, on success, puts it in
/// the place of `connection`. On failure `connection` stays as it was and nothing is left open.
ViStatus OpenConnection(const std::string& resource, const ConnectionSettings& settings,
                        std::shared_ptr<VisaIO>& connection);

} // namespace OpenVisa
