// The messages of this library's own statuses, beside those of the driver.
#pragma once

#include <string_view>

#include "platform/vi_types.h"

namespace supply {

/// Returns the message of a status of the driver or of this library; empty text for an unknown status.
std::string_view MessageOf(ViStatus status);

/// Records one of this library's own statuses on the session: its message, then two blanks and the elaboration if there
/// is one. Returns the status for the caller. Throws std::bad_alloc.
ViStatus RecordOwnError(ViSession vi, ViStatus status, std::string_view elaboration = {});

} // namespace supply
