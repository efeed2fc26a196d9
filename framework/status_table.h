#pragma once

#include <string_view>

#include "platform/vi_types.h"

namespace nrt2 {

/// The driver's message for a status, its %s placeholders unfilled; empty for a status that the driver does not know.
std::string_view MessageOf(ViStatus status);

} // namespace nrt2
